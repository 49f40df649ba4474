#include "BenchLine.h"

namespace tarvik::scpi {
namespace {

using driver::Settings;

class ReadingOverScpi : public OverBench {
 protected:
  ReadingOverScpi() { instrument->Connect(); }
};

TEST_F(ReadingOverScpi, IdentityAndOptionsAreAskedWhenASessionOpens) {
  EXPECT_EQ("Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31", instrument->Description().strIdentity);
  EXPECT_EQ("010 VXI trigger, 020 Complement outputs", instrument->Description().strOptions);
  EXPECT_EQ(2, instrument->Description().lngChannels);
  EXPECT_EQ(0, instrument->Description().lngMask);
}

TEST_F(ReadingOverScpi, SettingsAreThoseOfTheInstrument) {
  device.Apply({[](Settings &s) {
    s.mode.SetMode(eTriggerTriggered, ePulseBurst);
    s.mode.lngBurstLength = 7;
    s.mode.SetArming(eVxiTtlt0 + 3, eSlopeBoth);
    s.mode.lngClockSlope = eSlopeFalling;
    s.dblFrequency = 123456.789;
    s.timing[1].dblWidth = 33e-9;
    s.timing[1].dblSingleDelay = 5e-9;
    s.timing[2].SetDoubleDelay(700e-9);
    s.timing[2].fCoupled = false;
    s.timing[2].dblTrailing = 3e-9;
    s.timing[2].lngSignalFormat = eFormatNrz;
    s.levels[1].lngType = eTypeCurrent;
    s.levels[1].dblHigh = 0.02;
    s.levels[1].dblLow = -0.01;
    s.levels[2].dblHigh = 4.5;
    s.levels[2].lngPolarity = ePolarityComplement;
    s.levels[2].fOutput = true;
    s.levels[1].fComplementOutput = true;
    s.levels[1].dblImpedance = 1000;
    s.levels[2].dblLoadCompensation = 75;
    s.limits[2].dblHighVoltage = 6;
    s.limits[1].dblLowCurrent = -0.5;
    s.lngChannelMath = eMathAdded;
    s.triggerLevels.extInput = {1.25, 50};
    s.triggerLevels.clockInput = {-1.25, 50};
    s.triggerLevels.arrOutLevel[eOutStrobe] = eOutLevelECL;
    s.triggerLevels.lngVxiSource = eVxiSourceStrobe;
    s.triggerLevels.lngVxiLine = eVxiEclt1;
    s.dblPllReference = 10e6;
    s.lngPllReferenceSource = ePllRefClkIn;
  }});
  Settings expected = device.CurrentSettings();
  // A coupled trailing edge is told as what is in force.
  expected.timing[1].dblTrailing = expected.timing[1].dblLeading;
  EXPECT_TRUE(expected == instrument->CurrentSettings());
}

TEST_F(ReadingOverScpi, PatternsAreThoseOfTheInstrument) {
  const std::vector<Byte> bytes{0x3B, 0x0A, 0x23, 0x80};  // ";", line feed and "#" are bytes like others
  device.Apply({[&](Settings &s) {
    s.arrPattern[0].Write(bytes, 25);
    s.arrPattern[2].Write(bytes, 32);
  }});
  EXPECT_EQ(25, instrument->CurrentPattern(1).Length());
  EXPECT_EQ(bytes, instrument->CurrentPattern(1).Read());
  EXPECT_EQ(16, instrument->CurrentPattern(2).Length());
  EXPECT_EQ(bytes, instrument->CurrentPattern(3).Read());
}

TEST_F(ReadingOverScpi, WholeDownloadOfTwoChannelsTakesFiveMessages) {
  const std::size_t messages = MessagesOf([&] {
    for (int i = 0; i < 50; ++i) instrument->CurrentSettings();
    for (const Long lngRow : {1, 2, 3}) instrument->CurrentPattern(lngRow);
    for (int i = 0; i < 10; ++i) {
      instrument->TakeErrors();
      instrument->Warnings();
    }
  });
  // Settings, levels by their unit, patterns, errors, warnings.
  EXPECT_EQ(5u, messages);
}

TEST_F(ReadingOverScpi, SmallBuffersAndSingleQueriesTakeMoreMessages) {
  profile.limits = {64, 4096, true};
  instrument->Disconnect();
  instrument->Connect();
  EXPECT_GT(MessagesOf([&] { instrument->CurrentSettings(); }), 10u);
  for (const std::string &strMessage : line->arrMessages) EXPECT_LT(strMessage.size(), 64u);
  profile.limits.fTogether = false;
  instrument->Disconnect();
  instrument->Connect();
  EXPECT_EQ(62u, MessagesOf([&] { instrument->CurrentSettings(); })) << "each query by itself";
}

TEST_F(ReadingOverScpi, WhatWasTurnedAtTheFrontIsSeenAfterAPause) {
  instrument->CurrentSettings();
  device.Apply({[](Settings &s) { s.dblFrequency = 2e6; }});
  now += Milliseconds(400);
  EXPECT_EQ(1e6, instrument->CurrentSettings().dblFrequency);
  now += Milliseconds(501);
  EXPECT_EQ(2e6, instrument->CurrentSettings().dblFrequency);
}

TEST_F(ReadingOverScpi, WhatWasTurnedAtTheFrontIsSeenByWhoNeverPauses) {
  instrument->CurrentSettings();
  device.Apply({[](Settings &s) { s.dblFrequency = 2e6; }});
  for (int i = 0; i < 5; ++i) {
    now += Milliseconds(401);
    instrument->CurrentSettings();
  }
  EXPECT_EQ(2e6, instrument->CurrentSettings().dblFrequency);
}

TEST_F(ReadingOverScpi, AnswerThatIsNoNumberNamesAddressAndQuery) {
  profile.limits.fTogether = false;
  instrument->Disconnect();
  instrument->Connect();
  ProfileSetting &width = *std::ranges::find_if(
      profile.arrSettings, [](const ProfileSetting &s) { return s.pRow->strKey == "timing.width"; });
  width.arrQuery.fill(":SOUR{channel}:FUNC:MODE?");
  instrument->Disconnect();
  instrument->Connect();
  line->clears = 0;
  EXPECT_EQ("TCPIP::127.0.0.1::5025::SOCKET: :SOUR1:FUNC:MODE?: the answer \"VOLT\" is no number",
            FailureOf([&] { instrument->CurrentSettings(); }));
  EXPECT_EQ(1, line->clears);
}

TEST_F(ReadingOverScpi, QueryThatNobodyAnswersNamesAddressAndMessage) {
  line->Plan(LineFault::Silence, 1, false);
  EXPECT_THAT(FailureOf([&] { instrument->CurrentSettings(); }),
              testing::StartsWith("TCPIP::127.0.0.1::5025::SOCKET: :TRIG:MODE?;:SOUR:PULS:MODE?;:TRIG:COUN?;"));
  EXPECT_EQ(1e6, instrument->CurrentSettings().dblFrequency) << "the next call works";
}

TEST_F(ReadingOverScpi, WarningsAndErrorsAreThoseOfTheInstrument) {
  device.Apply({[](Settings &s) { s.timing[1].dblLeading = 200e-9; }});
  EXPECT_EQ("102,\"Leading edge of channel 1 longer than the width (the pulse does not reach its high level)\"",
            driver::JoinEntries(instrument->Warnings(), false));
  device.status.Report({-240, "Hardware error: fan stopped", {}});
  EXPECT_EQ("-240,\"Hardware error: fan stopped\"", driver::JoinEntries(instrument->TakeErrors(), false));
  EXPECT_EQ("", driver::JoinEntries(instrument->TakeErrors(), false));
}

/// The standard's own subsystems have no command for everything.
class ReadingOverTheStandard : public OverBench {
 protected:
  ReadingOverTheStandard() : OverBench("scpi-99") { instrument->Connect(); }
};

TEST_F(ReadingOverTheStandard, WhatHasNoCommandIsKeptAndAnsweredAsItWasSet) {
  EXPECT_EQ(eLacksChannelMath | eLacksComplement | eLacksLoadCompensation | eLacksVxiEnable | eLacksVxiSource,
            instrument->Description().lngMask);
  const std::size_t messages = MessagesOf([&] {
    instrument->CurrentSettings();
    instrument->Apply({[](Settings &s) { s.mode.SetMode(eTriggerGated, ePulseBurst); }});
  });
  EXPECT_EQ(eTriggerGated, instrument->CurrentSettings().mode.lngTriggerMode);
  EXPECT_EQ(ePulseBurst, instrument->CurrentSettings().mode.lngPulseMode);
  EXPECT_EQ(eTriggerContinuous, device.CurrentSettings().mode.lngTriggerMode);
  EXPECT_LE(messages, 3u) << "nothing was sent";
  const std::vector<Byte> bytes{0xA5};
  instrument->Apply({driver::Change([&](Settings &s) { s.arrPattern[0].Write(bytes, 8); }, ePatternChan1)});
  EXPECT_EQ(bytes, instrument->CurrentPattern(1).Read());
}

}  // namespace
}  // namespace tarvik::scpi
