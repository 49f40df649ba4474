#include "simulator/model/SimulatedInstrument.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tarvik::simulator {
namespace {

class SessionTest : public testing::Test {
 protected:
  static InstrumentDescription Description() {
    InstrumentDescription description;
    description.strName = "bench";
    description.strIdentity = "a,b,c,d";
    description.arrErrors = {{-240, "Hardware error: fan stopped", ""}};
    description.arrWarnings = {{120, "Warming up", ""}};
    return description;
  }
  static Change Frequency(Double dblHertz) {
    return [dblHertz](Settings &s) { s.dblFrequency = dblHertz; };
  }
  static Change Width(Double dblSeconds) {
    return [dblSeconds](Settings &s) { s.timing[1].dblWidth = dblSeconds; };
  }
  Double FrequencyNow() const { return instrument->CurrentSettings().dblFrequency; }

  std::shared_ptr<SimulatedInstrument> instrument = std::make_shared<SimulatedInstrument>(Description());
  Session session{instrument};
};

TEST_F(SessionTest, SettingOutsideATransactionIsTakenAtOnce) {
  session.Open(false, false, true);
  session.Send(Frequency(2e6));
  EXPECT_EQ(2e6, FrequencyNow());
}

TEST_F(SessionTest, EdgeBelowTheFastestIsTheFastest) {
  session.Open(false, false, true);
  session.Send([](Settings &s) {
    s.timing[1].fCoupled = false;
    s.timing[1].dblLeading = 1e-12;
    s.timing[1].dblTrailing = 0.79e-9;
    s.timing[2].dblLeading = 3e-9;
  });
  const Settings settings = instrument->CurrentSettings();
  EXPECT_EQ(0.8e-9, settings.timing[1].dblLeading);
  EXPECT_EQ(0.8e-9, settings.timing[1].dblTrailing);
  EXPECT_EQ(3e-9, settings.timing[2].dblLeading);
}

TEST_F(SessionTest, RefusedSettingOutsideATransactionLeavesTheInstrument) {
  session.Open(false, false, true);
  EXPECT_THROW(session.Send(Frequency(1e12)), Rejected);
  EXPECT_EQ(1e6, FrequencyNow());
}

TEST_F(SessionTest, WithoutErrorDetectionARefusalGoesToTheQueue) {
  session.Open(false, false, false);
  instrument->TakeErrors();
  session.Send(Frequency(1e12));
  EXPECT_EQ(1e6, FrequencyNow());
  EXPECT_EQ(R"~(-222,"Data out of range: frequency")~", JoinEntries(instrument->TakeErrors(), false));
}

TEST_F(SessionTest, TransactionHoldsSettingsBackUntilTheCommit) {
  session.Open(false, false, true);
  EXPECT_EQ(0u, session.BufferedChanges());
  session.Begin();
  session.Send(Width(2e-6));  // above the present period
  session.Send(Frequency(1e5));
  EXPECT_EQ(1e6, FrequencyNow());
  EXPECT_EQ(2u, session.BufferedChanges());
  session.Commit();
  EXPECT_FALSE(session.InTransaction());
  EXPECT_EQ(0u, session.BufferedChanges());
  EXPECT_EQ(1e5, FrequencyNow());
  EXPECT_EQ(2e-6, instrument->CurrentSettings().timing[1].dblWidth);
}

TEST_F(SessionTest, RefusedCommitChangesNothingAndEndsTheTransaction) {
  session.Open(false, false, true);
  session.Begin();
  session.Send(Frequency(2e6));
  session.Send(Width(1e-9));
  session.Send([](Settings &s) { s.levels[1].Set(7, 0, 0, 0); });
  const Settings before = instrument->CurrentSettings();
  try {
    session.Commit();
    FAIL() << "taken";
  } catch (const Rejected &rejected) {
    EXPECT_EQ(R"~(-224,"Illegal parameter value: level format";-222,"Data out of range: width of channel 1")~",
              JoinEntries(rejected.Errors(), false));
  }
  EXPECT_FALSE(session.InTransaction());
  EXPECT_EQ(before, instrument->CurrentSettings());
}

TEST_F(SessionTest, AbortDropsTheSettings) {
  session.Open(false, false, true);
  session.Begin();
  session.Send(Frequency(2e6));
  session.Abort();
  EXPECT_FALSE(session.InTransaction());
  EXPECT_EQ(1e6, FrequencyNow());
  EXPECT_NO_THROW(session.Abort());
}

TEST_F(SessionTest, OneTransactionAtATime) {
  session.Open(false, false, true);
  EXPECT_THROW(session.Commit(), Rejected);
  session.Begin();
  EXPECT_THROW(session.Begin(), Rejected);
  EXPECT_TRUE(session.InTransaction());
}

TEST_F(SessionTest, CloseDropsTheTransactionAndStateOutlivesIt) {
  session.Open(false, false, true);
  session.Send(Frequency(3e6));
  session.Begin();
  session.Send(Frequency(4e6));
  session.Close();
  EXPECT_FALSE(session.IsOpen());
  EXPECT_TRUE(session.Open(false, false, true));
  EXPECT_FALSE(session.InTransaction());
  EXPECT_EQ(3e6, FrequencyNow());
}

TEST_F(SessionTest, CommitKeepsWhatAnotherSessionSetMeanwhile) {
  session.Open(false, false, true);
  session.Begin();
  session.Send(Frequency(2e6));
  Session other(instrument);
  other.Open(false, false, true);
  other.Send(Width(50e-9));
  session.Commit();
  EXPECT_EQ(50e-9, instrument->CurrentSettings().timing[1].dblWidth);
  EXPECT_EQ(2e6, FrequencyNow());
}

TEST_F(SessionTest, ResetBringsTheDefaultsAndEndsTheRacksWarnings) {
  session.Open(false, false, true);
  session.Send(Frequency(2e6));
  EXPECT_EQ(R"~(120,"Warming up")~", JoinEntries(instrument->Warnings(), false));
  session.Begin();
  session.Send(Frequency(5e6));
  session.Reset();
  EXPECT_TRUE(session.InTransaction());
  session.Commit();
  EXPECT_EQ(Settings{}, instrument->CurrentSettings());
  EXPECT_TRUE(instrument->Warnings().empty());
}

TEST_F(SessionTest, OpenWithResetBringsTheDefaults) {
  session.Open(false, false, true);
  session.Send(Frequency(2e6));
  session.Open(false, true, true);
  EXPECT_EQ(1e6, FrequencyNow());
}

TEST_F(SessionTest, OpeningForgetsVerboseWordingAndTimeout) {
  session.Open(false, false, true);
  session.fVerbose = true;
  session.SetTimeout(1);
  session.Open(false, false, true);
  EXPECT_FALSE(session.fVerbose);
  EXPECT_EQ(5000, session.Timeout());
}

TEST_F(SessionTest, IdentityQueryWantsFourFields) {
  EXPECT_TRUE(session.Open(true, false, true));
  InstrumentDescription description = Description();
  description.strIdentity = "a,b,c";
  Session poor(std::make_shared<SimulatedInstrument>(description));
  EXPECT_FALSE(poor.Open(true, false, true));
  EXPECT_FALSE(poor.IsOpen());
  EXPECT_TRUE(poor.Open(false, false, true));
}

TEST_F(SessionTest, ReservedInstrumentDoesNotOpen) {
  InstrumentDescription description = Description();
  description.fOpens = false;
  Session reserved(std::make_shared<SimulatedInstrument>(description));
  EXPECT_FALSE(reserved.Open(false, false, true));
  EXPECT_FALSE(reserved.IsOpen());
}

TEST(ErrorQueue, TellsEachErrorOnce) {
  SimulatedInstrument instrument{{}};
  instrument.Report({-222, "a", ""});
  instrument.Report({-222, "a", ""});
  EXPECT_EQ(2u, instrument.TakeErrors().size());
  EXPECT_TRUE(instrument.TakeErrors().empty());
}

TEST(ErrorQueue, TellsThatItOverflowed) {
  SimulatedInstrument instrument{{}};
  for (int i = 0; i < 40; ++i) instrument.Report({-222, "a", ""});
  const auto errors = instrument.TakeErrors();
  ASSERT_EQ(32u, errors.size());
  EXPECT_EQ(-222, errors[30].lngNumber);
  EXPECT_EQ(-350, errors[31].lngNumber);
}

TEST(SelfTest, FailureEntersTheErrorQueue) {
  InstrumentDescription description;
  description.intSelfTestCode = 3;
  description.strSelfTestText = "RAM check failed";
  SimulatedInstrument instrument(description);
  EXPECT_EQ((std::pair<Integer, std::string>{3, "RAM check failed"}), instrument.SelfTest());
  EXPECT_EQ(R"~(-330,"Self-test failed: RAM check failed")~", JoinEntries(instrument.TakeErrors(), false));
}

TEST(Calibration, TakesItsTime) {
  InstrumentDescription description;
  description.lngCalibrationDelay = 30;
  SimulatedInstrument instrument(description);
  const auto begin = std::chrono::steady_clock::now();
  instrument.Calibrate();
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
}

}  // namespace
}  // namespace tarvik::simulator
