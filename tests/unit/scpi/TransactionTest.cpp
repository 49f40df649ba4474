#include <cstdio>

#include "BenchLine.h"
#include "support/Conversions.h"

namespace tarvik::scpi {
namespace {

using driver::Change;
using driver::Settings;

const std::vector<Byte> Bits{0xF0, 0x0F};

/// A setup in which everything differs from the state after a reset.
void SetEverything(Settings &s) {
  s.mode.SetMode(eTriggerTriggered, ePulseBurst);
  s.mode.lngBurstLength = 9;
  s.mode.SetArming(eArmPll, eSlopeFalling);
  s.mode.SetPll(ePllFrequency, 2e6);
  s.mode.SetPeriod(eSourceOscillator, eSlopeFalling);
  s.dblFrequency = 50e3;
  for (const Long lngChannel : {1, 2}) {
    s.timing[lngChannel].dblWidth = 5e-6;
    s.timing[lngChannel].SetDoubleDelay(8e-6);
    s.timing[lngChannel].fCoupled = false;
    s.timing[lngChannel].dblLeading = 2e-9;
    s.timing[lngChannel].dblTrailing = 3e-9;
    s.levels[lngChannel].dblHigh = 3;
    s.levels[lngChannel].dblLow = -1;
    s.levels[lngChannel].fOutput = true;
    s.limits[lngChannel] = {true, 5, -2, 0.3, -0.3};
  }
  s.levels[2].lngType = eTypeCurrent;
  s.levels[2].dblHigh = 0.1;
  s.levels[2].dblLow = 0.05;
  s.lngChannelMath = eMathAdded;
}

std::vector<Change> WholeUpload() {
  return {Change(&SetEverything), Change([](Settings &s) { s.arrPattern[0].Write(Bits, 16); }, ePatternChan1),
          Change([](Settings &s) { s.arrPattern[1].Write(Bits, 12); }, ePatternChan2),
          Change([](Settings &s) { s.arrPattern[2].Write(Bits, 9); }, ePatternStrobe)};
}

class TransactionOverScpi : public OverBench {
 protected:
  TransactionOverScpi() { instrument->Connect(); }

  /// The trailing edge of a coupled channel cannot be read.
  static Settings Visible(Settings settings) {
    for (const Long lngChannel : {1, 2})
      settings.timing[lngChannel].dblTrailing = settings.timing[lngChannel].TrailingInForce();
    return settings;
  }
};

TEST_F(TransactionOverScpi, WholeUploadTakesAtMostTenMessages) {
  Settings expected = device.CurrentSettings();
  for (const Change &change : WholeUpload()) change(expected);
  EXPECT_LE(MessagesOf([&] { instrument->Apply(WholeUpload()); }), 10u);
  EXPECT_TRUE(expected == device.CurrentSettings());
  EXPECT_TRUE(Visible(expected) == Visible([&] {
                Settings read = instrument->CurrentSettings();
                for (const Long lngRow : {1, 2, 3})
                  read.arrPattern[static_cast<std::size_t>(lngRow - 1)] = instrument->CurrentPattern(lngRow);
                return read;
              }()));
}

TEST_F(TransactionOverScpi, SettingAloneIsSentAtOnceAndReadBackAsTheInstrumentTakesIt) {
  instrument->CurrentSettings();
  line->rewrite = [](const std::string &strMessage) { return Replace(strMessage, "2.34e-09", "2.5e-09"); };
  instrument->Apply({Change([](Settings &s) { s.timing[1].dblLeading = 2.34e-9; })});
  EXPECT_EQ(":SOUR1:PULS:TRAN:LEAD 2.34e-09;*OPC?", *(line->arrMessages.end() - 2));
  EXPECT_EQ(":SYST:ERR?", line->arrMessages.back());
  EXPECT_EQ(2.5e-9, instrument->CurrentSettings().timing[1].dblLeading);
}

TEST_F(TransactionOverScpi, ValueThatTheInstrumentHasIsNotSentAgain) {
  instrument->CurrentSettings();
  EXPECT_EQ(0u, MessagesOf([&] { instrument->Apply({Change([](Settings &s) { s.timing[1].dblWidth = 100e-9; })}); }));
}

TEST_F(TransactionOverScpi, RefusalTellsAllOfTheInstrumentsMessagesAndLeavesItAsItWas) {
  profile.limits.input = 128;  // the width stands in another message than what is refused
  instrument->Disconnect();
  instrument->Connect();
  const Settings before = device.CurrentSettings();
  const std::string strWhy = FailureOf([&] {
    instrument->Apply({Change([](Settings &s) {
      s.timing[1].dblWidth = 50e-9;
      s.timing[2].dblWidth = 60e-9;
      s.triggerLevels.extInput.dblThreshold = 99;
      s.triggerLevels.clockInput.dblThreshold = -99;
    })});
  });
  EXPECT_THAT(strWhy, testing::HasSubstr("-222,\"Data out of range"));
  EXPECT_EQ(1, std::count(strWhy.begin(), strWhy.end(), ';')) << strWhy;
  EXPECT_TRUE(before == device.CurrentSettings());
  EXPECT_EQ(100e-9, instrument->CurrentSettings().timing[1].dblWidth);
}

TEST_F(TransactionOverScpi, EarlierErrorsOfTheInstrumentAreNoRefusal) {
  device.status.Report({-240, "Hardware error: fan stopped", {}});
  instrument->Apply({Change([](Settings &s) { s.timing[1].dblWidth = 50e-9; })});
  EXPECT_EQ(50e-9, device.CurrentSettings().timing[1].dblWidth);
  EXPECT_EQ("-240,\"Hardware error: fan stopped\"", driver::JoinEntries(instrument->TakeErrors(), false));
}

TEST_F(TransactionOverScpi, ValueWithoutAWordOrOutOfTheProfilesRangeIsRefusedBeforeAnythingIsSent) {
  std::ranges::find_if(profile.arrSettings, [](const ProfileSetting &s) {
    return s.pRow->strKey == "timing.width";
  })->dblMax = 1e-6;
  instrument->Disconnect();
  instrument->Connect();
  instrument->CurrentSettings();
  const std::size_t messages = MessagesOf([&] {
    EXPECT_EQ(
        "-224,\"Illegal parameter value: Arming Source (the profile has no word for the value 77)\";"
        "-222,\"Data out of range: Width, channel 1 (2e-06 s, at most 1e-06 s)\"",
        FailureOf([&] {
          instrument->Apply({Change([](Settings &s) {
            s.mode.lngArmSource = 77;
            s.timing[1].dblWidth = 2e-6;
          })});
        }));
  });
  EXPECT_EQ(0u, messages);
}

TEST_F(TransactionOverScpi, ResetPutsTheInstrumentInItsDefaultState) {
  instrument->Apply(WholeUpload());
  instrument->Reset();
  EXPECT_TRUE(Visible(Settings{}) == Visible(instrument->CurrentSettings()));
}

TEST_F(TransactionOverScpi, SelfTestAndCalibrationAnswerWhenTheyHaveEnded) {
  EXPECT_EQ((std::pair<Integer, std::string>(0, "Self test passed")), instrument->SelfTest());
  instrument->Calibrate();
}

// ---- The line fails ----

constexpr std::pair<const char *, LineFault> Faults[] = {{"cut", LineFault::Cut},         {"half", LineFault::Half},
                                                         {"silence", LineFault::Silence}, {"mute", LineFault::Mute},
                                                         {"garbage", LineFault::Garbage}, {"damage", LineFault::Damage},
                                                         {"error", LineFault::Refusal}};

TEST_F(TransactionOverScpi, FaultAtAnyMessageOfADownloadChangesNothingAndTheNextOneWorks) {
  const auto download = [&] {
    instrument->CurrentSettings();
    instrument->CurrentPattern(1);
    instrument->TakeErrors();
    instrument->Warnings();
  };
  now += std::chrono::hours(1);
  const std::size_t messages = MessagesOf(download);
  int failed = 0, done = 0;
  for (const bool fEver : {false, true})
    for (const auto &[strFault, fault] : Faults)
      for (std::size_t at = 1; at <= messages; ++at) {
        const Settings before = device.CurrentSettings();
        now += std::chrono::hours(1);
        line->Plan(fault, at, fEver);
        ++(FailureOf(download) == "done" ? done : failed);
        EXPECT_TRUE(before == device.CurrentSettings()) << strFault << " at " << at;
        line->Mend();
        now += std::chrono::hours(1);
        EXPECT_EQ("done", FailureOf(download)) << strFault << " at " << at;
      }
  std::printf("download: %zu messages, %d failed, %d done in spite of the fault\n", messages, failed, done);
  EXPECT_EQ(0, done);
}

TEST_F(TransactionOverScpi, FaultAtAnyMessageOfAnUploadLeavesTheInstrumentUnchangedOrChangedAsAWhole) {
  now += std::chrono::hours(1);
  const Settings old = device.CurrentSettings();
  Settings all = old;
  for (const Change &change : WholeUpload()) change(all);
  const std::size_t messages = MessagesOf([&] { instrument->Apply(WholeUpload()); });
  int unchanged = 0, changed = 0, taken = 0;
  for (const bool fEver : {false, true})
    for (const auto &[strFault, fault] : Faults)
      for (std::size_t at = 1; at <= messages; ++at) {
        device.Apply({Change([&](Settings &s) { s = old; })});
        now += std::chrono::hours(1);
        line->Plan(fault, at, fEver);
        const std::string strWhy = FailureOf([&] { instrument->Apply(WholeUpload()); });
        const Settings held = device.CurrentSettings();
        const bool fUnchanged = Visible(held) == Visible(old), fChanged = held == all;
        EXPECT_TRUE(fUnchanged || fChanged) << strFault << " at " << at << ": " << strWhy;
        ++(strWhy == "done" ? taken : fChanged ? changed : unchanged);
        if (strWhy == "done") {
          EXPECT_TRUE(fChanged) << strFault << " at " << at;
        }
        line->Mend();
        // What could not be put back then is put back now.
        EXPECT_EQ("done", FailureOf([&] { instrument->CurrentSettings(); })) << strFault << " at " << at;
        if (strWhy != "done") {
          EXPECT_TRUE(Visible(old) == Visible(device.CurrentSettings())) << strFault << " at " << at << ": " << strWhy;
        }
        instrument->TakeErrors();
      }
  std::printf("upload: %zu messages, %d failed and unchanged, %d failed and changed as a whole, %d done\n", messages,
              unchanged, changed, taken);
}

TEST_F(TransactionOverScpi, UploadInManyMessagesIsPutBackWhenTheInstrumentIsReachedAgain) {
  profile.limits.input = 128;
  instrument->Disconnect();
  instrument->Connect();
  const Settings old = device.CurrentSettings();
  const std::size_t messages = MessagesOf([&] { instrument->Apply(WholeUpload()); });
  int between = 0;
  for (const auto &[strFault, fault] : Faults)
    for (std::size_t at = 1; at <= messages; ++at) {
      device.Apply({Change([&](Settings &s) { s = old; })});
      now += std::chrono::hours(1);
      line->Plan(fault, at, true);
      const std::string strWhy = FailureOf([&] { instrument->Apply(WholeUpload()); });
      if (strWhy != "done" && !(Visible(device.CurrentSettings()) == Visible(old))) {
        ++between;
        EXPECT_THAT(strWhy, testing::HasSubstr("is put back when it is reached again"));
      }
      line->Mend();
      instrument->CurrentSettings();
      if (strWhy != "done") {
        EXPECT_TRUE(Visible(old) == Visible(device.CurrentSettings())) << strFault << " at " << at << ": " << strWhy;
      }
      instrument->TakeErrors();
    }
  std::printf("upload in %zu messages over a line that stays broken: %d times put back later\n", messages, between);
}

}  // namespace
}  // namespace tarvik::scpi
