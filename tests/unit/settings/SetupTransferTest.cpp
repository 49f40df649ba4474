#include "settings/SetupTransfer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InstrumentSession.h"
#include "SetupSamples.h"
#include "settings/SetupDifferences.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SetupTransfer : testing::Test {
  tarvik::Setup Held() {
    tarvik::Setup setup;
    EXPECT_TRUE(ReadSetup(*session.instr, setup));
    return setup;
  }
  /// Operations that a write made at the driver, by their plain names.
  std::vector<std::string> Calls() {
    std::vector<std::string> arrNames;
    for (const std::string &strLine : session.driver.TakeTrace()) {
      const std::size_t begin =
          strLine.find("}.") != std::string::npos ? strLine.find("}.") + 2 : strLine.find('.') + 1;
      const std::string strName = strLine.substr(begin, strLine.find('(') - begin);
      if (strName.starts_with("Set") || strName == "Transaction") arrNames.push_back(strName);
    }
    return arrNames;
  }

  InstrumentSession session;
};

// ---- Reading ----

TEST_F(SetupTransfer, ReadsEverySettingWithLevelsAsHighAndLow) {
  session.Open();
  const tarvik::Setup setup = Held();
  EXPECT_EQ(setup.Instrument.strProductId, "Alpha");
  EXPECT_EQ(setup.Instrument.lngNumChannels, 2);
  EXPECT_EQ(setup.lngLacks, 0);
  EXPECT_EQ(setup.Mode.BurstLength, 2);
  EXPECT_EQ(setup.Mode.ArmingSource, eArmExternal);
  EXPECT_EQ(setup.Timing.dblFrequency, 2e6);
  EXPECT_EQ(setup.Timing.dblWidth, (ChannelArray<Double>{1e-7, 2e-7}));
  EXPECT_EQ(setup.Levels.eOutputLevel, (ChannelArray<Long>{eLevelHighLow, eLevelHighLow}));
  EXPECT_EQ(setup.Levels.dblAmplOrHigh, (ChannelArray<Double>{1, 2}));
  EXPECT_EQ(setup.Levels.dblOffsetOrLow, (ChannelArray<Double>{-0.5, -1}));
  EXPECT_EQ(setup.Limits.dblHighCurrent, (ChannelArray<Double>{0.125, 0.25}));
  EXPECT_EQ(setup.TrgLevels.dblExtInInputImp, 10000);
  EXPECT_EQ(setup.Pattern[0], (PatternStream{8, {1}}));
  EXPECT_EQ(setup.Pattern[1], (PatternStream{16, {2, 3}}));
  EXPECT_EQ(setup.Pattern[2], (PatternStream{24, {3, 4, 5}}));
  EXPECT_EQ(setup.fRz, (ChannelArray<Boolean>{True, True}));
  EXPECT_EQ(setup.dblPllRefFreq, 5e6);
  EXPECT_EQ(setup.ePllRefSource, ePllRefInternal);
  EXPECT_EQ(setup, Canonical(setup));
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(SetupTransfer, ReadsWhatAModelLacksAsFresh) {
  session.Open({{"channels", 1}, {"mask", eLacksTrailingEdge | eLacksImpedance | eLacksVxiLines}});
  const tarvik::Setup setup = Held();
  EXPECT_EQ(setup.Instrument.lngNumChannels, 1);
  EXPECT_EQ(setup.lngLacks, eLacksTrailingEdge | eLacksImpedance | eLacksVxiLines);
  EXPECT_EQ(setup.Timing.dblTrailing[1], 0);
  EXPECT_THAT(session.driver.TakeTrace(), testing::Contains(testing::HasSubstr(".GetPattern(")).Times(2))
      << "the rows of channel 1 and strobe";
  EXPECT_FALSE(setup.Timing.fAutoCoupleLeTe[1]);
  EXPECT_EQ(setup.Levels.dblOutputImpedance[1], 0);
  EXPECT_EQ(setup.Levels.dblLoadCompensation[1], 10);
  EXPECT_EQ(setup.Pattern[1], PatternStream{});
  EXPECT_EQ(setup.Timing.dblWidth[2], 0);
}

TEST_F(SetupTransfer, AReadThatFailsLeavesTheSetupAlone) {
  session.Open();
  session.driver.FailMatching("IExtInput.GetThreshold", 1, {Refused, "no threshold"});
  tarvik::Setup setup = SampleSetup();
  EXPECT_FALSE(ReadSetup(*session.instr, setup));
  EXPECT_EQ(setup, SampleSetup());
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: no threshold"));
}

TEST_F(SetupTransfer, APatternThatIsShorterThanItsLengthIsAFailure) {
  session.Open();
  session.driver.Find("Alpha")->settings.rows[2] = {{1, 2}, 24};
  tarvik::Setup setup;
  EXPECT_FALSE(ReadSetup(*session.instr, setup));
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: The driver tells a pattern of 24 bits in 2 bytes"));
}

TEST_F(SetupTransfer, BitsBehindTheEndOfAPatternAreNoPartOfIt) {
  session.Open();
  session.driver.Find("Alpha")->settings.rows[0] = {{0xFF, 0xFF, 0xFF}, 12};
  EXPECT_EQ(Held().Pattern[0], (PatternStream{12, {0xFF, 0xF0}}));
}

TEST_F(SetupTransfer, WithoutAnInstrumentTheUserIsTold) {
  session.Renew();
  tarvik::Setup setup = SampleSetup();
  EXPECT_FALSE(ReadSetup(*session.instr, setup));
  EXPECT_FALSE(WriteSetup(*session.instr, setup).fDone);
  EXPECT_EQ(setup, SampleSetup());
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box information: You need to be online to an instrument to perform this operation",
                          "box information: You need to be online to an instrument to perform this operation"));
}

// ---- Writing ----

TEST_F(SetupTransfer, AWrittenSetupReadsBackTheSame) {
  session.Open();
  tarvik::Setup sent = SampleSetup();
  sent.Mode.ArmingSource = eArmPll;
  sent.Mode.ArmSlope = eSlopeFalling;
  EXPECT_TRUE(WriteSetup(*session.instr, sent).fDone);
  EXPECT_THAT(Differences(sent, Held(), 0), IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(SetupTransfer, SendsAllInOneTransactionInTheOrderOfAnUpload) {
  session.Open({{"channels", 1}});
  tarvik::Setup sent = Held();
  session.Forget();
  EXPECT_TRUE(WriteSetup(*session.instr, sent).fDone);
  EXPECT_THAT(
      Calls(),
      ElementsAre("Transaction", "Transaction",           // whatever was open is dropped first
                  "SetContinuousPulses", "SetPulseType",  // mode
                  "SetLeading", "SetTrailing", "SetWidth", "SetFrequency", "SetDelay", "SetCoupling", "SetOutput",
                  "SetComplementOutput",  // timing
                  "SetLevel", "SetLoadCompensation", "SetImpedance", "SetPolarity", "SetOutput", "SetComplementOutput",
                  "SetChannelMath",                                        // levels
                  "SetHigh", "SetLow", "SetHigh", "SetLow", "SetEnabled",  // limits
                  "SetOutLevel", "SetOutLevel", "SetVxiSource", "SetVxiLine", "SetImpedance", "SetThreshold",
                  "SetImpedance", "SetThreshold",  // trigger levels
                  "SetReference", "SetSignalFormat", "SetPattern", "SetPattern", "Transaction"));
}

TEST_F(SetupTransfer, ACoupledTrailingEdgeIsSentAsTheLeadingOne) {
  session.Open({{"mask", eLacksTrailingEdge}});
  tarvik::Setup sent = Held();
  EXPECT_TRUE(WriteSetup(*session.instr, sent).fDone);
  EXPECT_EQ(session.driver.Find("Alpha")->settings.channels[1].dblTrailing, 2e-9);
}

TEST_F(SetupTransfer, APatternWithoutBitsIsNotSent) {
  session.Open();
  tarvik::Setup sent = Held();
  sent.Pattern[0] = {};
  EXPECT_TRUE(WriteSetup(*session.instr, sent).fDone);
  EXPECT_EQ(Held().Pattern[0], (PatternStream{8, {1}}));
}

TEST_F(SetupTransfer, ARefusedCommitIsToldInTheInstrumentsWordsAndChangesNothing) {
  session.Open();
  const tarvik::Setup before = Held();
  tarvik::Setup sent = before;
  sent.Timing.dblWidth[1] = 1;
  session.driver.FailMatching("IInstrument.Transaction(1)", 1, {Refused, "\"width too long\";\"high too high\""});
  const SetupWritten written = WriteSetup(*session.instr, sent);
  EXPECT_FALSE(written.fDone);
  EXPECT_EQ(written.strReasons, "width too long\r\nhigh too high");
  EXPECT_EQ(Held(), before);
  EXPECT_FALSE(session.InTransaction());
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box exclamation: Instrument Errors(s):\r\nwidth too long\r\nhigh too high"));
}

TEST_F(SetupTransfer, ASetupThatDoesNotFitIsRefusedBeforeAnythingIsSent) {
  session.Open();
  tarvik::Setup sent = SampleSetup();
  sent.Instrument.lngNumChannels = 1;
  sent.Mode.TriggerMode = 7;
  session.Forget();
  const SetupWritten written = WriteSetup(*session.instr, sent);
  EXPECT_FALSE(written.fDone);
  EXPECT_THAT(written.strReasons,
              testing::StartsWith("mode.trigger: 7 is not Continuous, Triggered, Gated or ExtWidth\r\n"
                                  "mode.pulseType[2]: the setup does not tell it\r\n"));
  EXPECT_THAT(session.driver.TakeTrace(), IsEmpty());
}

TEST_F(SetupTransfer, ADriverThatBeginsNoTransactionIsSentNothing) {
  session.Open();
  session.Forget();
  session.driver.FailMatching("IInstrument.Transaction(0)", 1, {Refused, "busy"});
  const SetupWritten written = WriteSetup(*session.instr, SampleSetup());
  EXPECT_FALSE(written.fDone);
  EXPECT_EQ(written.strReasons, "The instrument does not begin a transaction");
  EXPECT_THAT(Calls(), ElementsAre("Transaction", "Transaction", "Transaction"));
}

// ---- Another model ----

std::vector<std::string> LeftOut(const TakenOver &taken) {
  std::vector<std::string> arrLines;
  for (const SettingLeftOut &left : taken.arrLeftOut) arrLines.push_back(left.strKey + ": " + left.strReason);
  return arrLines;
}

tarvik::Setup SmallModel() {
  tarvik::Setup base = SampleSetup();
  base.Instrument.lngNumChannels = 1;
  base.Instrument.strProductId = "VP-110 Pulse Generator";
  base.lngLacks = eLacksLoadCompensation | eLacksComplement | eLacksVxiLines;
  return Canonical(base);
}

TEST(AnotherModel, TakesWhatItHasAndListsTheRest) {
  tarvik::Setup other = SampleSetup();
  other.Timing.dblWidth[1] = 70e-9;
  other.Mode.ArmingSource = eVxiTtlt0;
  const TakenOver taken = TakeOver(SmallModel(), other);
  EXPECT_EQ(taken.setup.Timing.dblWidth[1], 70e-9);
  EXPECT_EQ(taken.setup.Mode.ArmingSource, eArmExternal);
  EXPECT_EQ(taken.setup.Instrument.strProductId, "VP-110 Pulse Generator");
  EXPECT_EQ(taken.setup, Canonical(taken.setup));
  EXPECT_THAT(
      LeftOut(taken),
      ElementsAre(
          "mode.pulseType[2]: the instrument has one channel", "mode.armingSource: the instrument does not have Ttlt0",
          "timing.delay[2]: the instrument has one channel", "timing.width[2]: the instrument has one channel",
          "timing.leading[2]: the instrument has one channel", "timing.coupled[2]: the instrument has one channel",
          "timing.trailing[2]: the instrument has one channel", "levels.format[2]: the instrument has one channel",
          "levels.unit[2]: the instrument has one channel", "levels.high[2]: the instrument has one channel",
          "levels.low[2]: the instrument has one channel", "levels.impedance[2]: the instrument has one channel",
          "levels.load[1]: the instrument does not have it", "levels.load[2]: the instrument does not have it",
          "levels.polarity[2]: the instrument has one channel", "levels.output[2]: the instrument has one channel",
          "levels.complement[1]: the instrument does not have it",
          "levels.complement[2]: the instrument does not have it", "pattern.rz[2]: the instrument has one channel",
          "pattern.stream[2]: the instrument has one channel", "limits.enabled[2]: the instrument has one channel",
          "limits.highVoltage[2]: the instrument has one channel",
          "limits.lowVoltage[2]: the instrument has one channel",
          "limits.highCurrent[2]: the instrument has one channel",
          "limits.lowCurrent[2]: the instrument has one channel"));
  EXPECT_THAT(taken.arrKept, IsEmpty());
}

TEST(AnotherModel, KeepsWhatTheOtherDoesNotTell) {
  const TakenOver taken = TakeOver(SampleSetup(), SmallModel());
  EXPECT_THAT(LeftOut(taken), IsEmpty());
  EXPECT_EQ(taken.arrKept.size(), 23U);
  EXPECT_THAT(taken.arrKept, testing::IsSupersetOf({"levels.load[1]", "levels.high[2]", "pattern.stream[2]"}));
  EXPECT_EQ(taken.setup.Timing.dblWidth[2], 100e-9);
}

TEST(AnotherModel, TakesALeadingEdgeOnlyIfItHasIt) {
  tarvik::Setup base = SampleSetup();
  base.lngLacks = eLacksFreeLeadingEdge;
  base.Timing.dblLeading = {0.8e-9, 0.8e-9};
  tarvik::Setup other = SampleSetup();
  other.Timing.dblLeading = {1.6e-9, 3e-9};
  const TakenOver taken = TakeOver(base, other);
  EXPECT_EQ(taken.setup.Timing.dblLeading, (ChannelArray<Double>{1.6e-9, 0.8e-9}));
  EXPECT_THAT(LeftOut(taken), ElementsAre("timing.leading[2]: the instrument has 800ps or 1.6ns only"));
}

TEST(AnotherModel, TheSameModelTakesEverything) {
  RandomSetups setups(3);
  for (int i = 0; i < 100; ++i) {
    tarvik::Setup base = setups.Next();
    tarvik::Setup other = setups.Next();
    base.Instrument.lngNumChannels = other.Instrument.lngNumChannels;
    base.lngLacks = other.lngLacks & ~Long{eLacksFreeLeadingEdge};
    const TakenOver taken = TakeOver(Canonical(base), other);
    EXPECT_THAT(Differences(taken.setup, other, 0), IsEmpty());
    EXPECT_THAT(LeftOut(taken), IsEmpty());
  }
}

}  // namespace
}  // namespace tarvik::test
