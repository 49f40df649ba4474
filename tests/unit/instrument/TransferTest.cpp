#include <gmock/gmock.h>

#include <tuple>

#include "InstrumentSession.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class TransferTest : public testing::Test {
 protected:
  clsInstrInterface &Instr() { return *session.instr; }
  std::vector<std::string> Calls() { return session.driver.TakeTrace(); }
  std::vector<std::string> Boxes() { return session.host.TakeBoxes(); }

  InstrumentSession session;
};

TEST_F(TransferTest, ExternalWidthSendsArmingSourceAndTriggerModeOnly) {
  session.Open();
  udtModeInfo info;
  info.TriggerMode = 3;
  info.ArmingSource = 4;
  EXPECT_TRUE(Instr().SetMode(info));
  EXPECT_THAT(
      Calls(),
      ElementsAre("IInstrument{Alpha}.GetTransactionState() -> 7, False", "IInstrument{Alpha}.Transaction(0) -> ok",
                  "IInstrument{Alpha}.GetTriggerSystem() -> ITriggerSystem",
                  "ITriggerSystem{Alpha}.GetArmSource() -> IArmSource", "IArmSource{Alpha}.SetSource(4) -> ok",
                  "IInstrument{Alpha}.GetTriggerSystem() -> ITriggerSystem",
                  "ITriggerSystem{Alpha}.SetTriggerMode(3) -> ok",
                  "IInstrument{Alpha}.GetTransactionState() -> 7, True", "IInstrument{Alpha}.Transaction(1) -> ok"));
}

TEST_F(TransferTest, TriggeredPulsesSendTheArmingAndThePulseTypes) {
  session.Open();
  udtModeInfo info;
  info.TriggerMode = 1;
  info.ArmingSource = 3;
  info.ArmSlope = 2;
  info.PulseType = {1, 2};
  EXPECT_TRUE(Instr().SetMode(info));
  EXPECT_THAT(session.driver.arrTrace, Contains("IModeSetup{Alpha}.SetTriggeredPulses(3, 2) -> ok"));
  EXPECT_THAT(session.driver.arrTrace, Contains("IChannelTiming{Alpha.2}.SetPulseType(2) -> ok"));
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("SetSignalFormat"))));
}

TEST_F(TransferTest, AnUnknownTriggerModeIsShownAndTheChannelsGoOn) {
  session.Open();
  udtModeInfo info;
  info.TriggerMode = 7;
  EXPECT_TRUE(Instr().SetMode(info));
  EXPECT_THAT(Boxes(), ElementsAre("box stop: Illegal case in SetMode"));
  EXPECT_THAT(session.driver.arrTrace, Contains(HasSubstr("SetPulseType(0)")).Times(2));
  EXPECT_EQ(session.driver.arrTrace.back(), "IInstrument{Alpha}.Transaction(1) -> ok");
}

TEST_F(TransferTest, PatternModeSendsTheSignalFormatAndNoPulseType) {
  session.Open();
  udtModeInfo info;
  info.PulseMode = 2;
  info.SignalFormat = {1, 0};
  EXPECT_TRUE(Instr().SetMode(info));
  EXPECT_THAT(session.driver.arrTrace, Contains("IChannel{Alpha.1}.SetSignalFormat(1) -> ok"));
  EXPECT_THAT(session.driver.arrTrace, Contains("IChannel{Alpha.2}.SetSignalFormat(0) -> ok"));
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("SetPulseType"))));
}

TEST_F(TransferTest, APllPeriodComesBackAsAFrequency) {
  session.Open();
  udtModeInfo info;
  info.TriggerMode = 1;
  info.PulseMode = 1;
  info.ArmingSource = 1;
  info.ArmSlope = 1;
  info.PllFormat = 0;
  info.PllPeriodOrFreq = 0.5;
  EXPECT_TRUE(Instr().SetMode(info));
  udtModeInfo back;
  back.ArmSlope = 9;
  EXPECT_TRUE(Instr().GetMode(back));
  EXPECT_EQ(back.PllFormat, 1);
  EXPECT_EQ(back.PllPeriodOrFreq, 2.0);
  EXPECT_EQ(back.ArmSlope, 9) << "the PLL tells no slope";
}

TEST_F(TransferTest, CoupledEdgesAreNeitherAskedNorSentWhereTheyCannotBeSetApart) {
  session.Open({{"mask", 4}});
  udtTimingInfo info;
  EXPECT_TRUE(Instr().GetTiming(info));
  EXPECT_EQ(info.fAutoCoupleLeTe, (ChannelArray<Boolean>(True, True)));
  EXPECT_TRUE(Instr().SetTiming(info));
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("Coupling"))));
}

TEST_F(TransferTest, AMissingComplementOutputIsNotSentButTheWarningsArePolled) {
  session.Open({{"mask", 512}});
  Instr().LetWarningsEnabled(True);
  EXPECT_TRUE(Instr().Output(1, True, True));
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("SetComplementOutput"))));
  EXPECT_THAT(session.driver.arrTrace, Contains("IErrorQueue{Alpha}.GetWarnings() -> \"\""));
}

TEST_F(TransferTest, TimingComesBackAsItWasSet) {
  session.Open();
  udtTimingInfo info;
  info.dblFrequency = 2e6;
  info.fChannelOutputOn = {True, False};
  info.fDoublePulse = {False, True};
  info.dblDelay = {1e-9, 2e-9};
  info.dblWidth = {3e-9, 4e-9};
  info.dblLeading = {5e-9, 6e-9};
  info.dblTrailing = {7e-9, 8e-9};
  EXPECT_TRUE(Instr().SetTiming(info));
  udtTimingInfo back;
  EXPECT_TRUE(Instr().GetTiming(back));
  EXPECT_EQ(back, info);
}

TEST_F(TransferTest, AThirdChannelFailsOnTheRecordsBounds) {
  session.Open({{"channels", 3}});
  udtTimingInfo info;
  EXPECT_FALSE(Instr().SetTiming(info));
  EXPECT_THAT(Boxes(), ElementsAre("box stop: Subscript out of range"));
  EXPECT_EQ(session.driver.arrTrace.back(), "IInstrument{Alpha}.Transaction(2) -> ok");
}

TEST_F(TransferTest, LackingImpedanceAndCompensationStayUntouched) {
  session.Open({{"mask", 192}});
  udtLevelInfo info;
  info.dblOutputImpedance = {7, 7};
  info.dblLoadCompensation = {8, 8};
  EXPECT_TRUE(Instr().SetLevels(info));
  EXPECT_TRUE(Instr().GetLevels(info));
  EXPECT_EQ(info.dblOutputImpedance, (ChannelArray<Double>(7, 7)));
  EXPECT_EQ(info.dblLoadCompensation, (ChannelArray<Double>(8, 8)));
  EXPECT_THAT(session.driver.arrTrace, Each(AllOf(Not(HasSubstr("Impedance")), Not(HasSubstr("LoadCompensation")))));
}

TEST_F(TransferTest, ASingleChannelLeavesTheSecondEntryAlone) {
  session.Open({{"channels", 1}});
  udtLimitsInfo limits;
  limits.dblHighVoltage = {1, 42};
  EXPECT_TRUE(Instr().SetLimits(limits));
  EXPECT_TRUE(Instr().GetLimits(limits));
  EXPECT_EQ(limits.dblHighVoltage, (ChannelArray<Double>(1, 42)));
  udtLevelInfo levels;
  levels.eOutputLevel = {1, 5};
  levels.dblAmplOrHigh[2] = 43;
  levels.dblOffsetOrLow[2] = 44;
  levels.dblOutputImpedance[2] = 45;
  levels.dblLoadCompensation[2] = 46;
  levels.eOutputPolarity[2] = 47;
  levels.eOutputType[2] = 48;
  levels.fChannelOutputOn[2] = levels.fChannelOutputInvOn[2] = True;
  const auto second = [&levels] {
    return std::tuple(levels.eOutputLevel[2], levels.dblAmplOrHigh[2], levels.dblOffsetOrLow[2],
                      levels.dblOutputImpedance[2], levels.dblLoadCompensation[2], levels.eOutputPolarity[2],
                      levels.eOutputType[2], levels.fChannelOutputOn[2], levels.fChannelOutputInvOn[2]);
  };
  const auto before = second();
  EXPECT_TRUE(Instr().SetLevels(levels));
  EXPECT_TRUE(Instr().GetLevels(levels));
  EXPECT_EQ(second(), before);
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("Alpha.2"))));
}

TEST_F(TransferTest, LevelsComeBackInTheFormAskedFor) {
  session.Open({{"channels", 1}});
  udtLevelInfo info;
  info.eOutputLevel[1] = 1;
  EXPECT_TRUE(Instr().GetLevels(info));
  EXPECT_EQ(info.dblAmplOrHigh[1], 1.0);
  EXPECT_EQ(info.dblOffsetOrLow[1], -0.5);
  info.eOutputLevel[1] = 0;
  EXPECT_TRUE(Instr().GetLevels(info));
  EXPECT_EQ(info.dblAmplOrHigh[1], 1.5);
  EXPECT_EQ(info.dblOffsetOrLow[1], 0.25);
  EXPECT_EQ(info.eOutputLevel[1], 0);
}

TEST_F(TransferTest, LimitsAreSwitchedOnTheCurrentPairOnly) {
  session.Open({{"channels", 1}});
  udtLimitsInfo limits;
  limits.fEnabled[1] = True;
  EXPECT_TRUE(Instr().SetLimits(limits));
  EXPECT_THAT(session.driver.arrTrace, Contains(HasSubstr("SetEnabled")).Times(1));
  EXPECT_THAT(session.driver.arrTrace, Contains("ILimitPair{Alpha.1.C}.SetEnabled(True) -> ok"));
}

TEST_F(TransferTest, AMissingVxiSourceDoesNotKeepTheLineBack) {
  session.Open({{"mask", 1024}});
  EXPECT_TRUE(Instr().SetTriggerLevels({}));
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("VxiSource"))));
  EXPECT_THAT(session.driver.arrTrace, Contains("IAuxOutputs{Alpha}.SetVxiLine(0) -> ok"));
}

TEST_F(TransferTest, ASetWithinAGlobalTransactionLeavesCommitAndWarningsToItsEnd) {
  session.Open();
  Instr().LetWarningsEnabled(True);
  session.driver.arrWarnings = {"W"};
  Instr().TransactionStart(True);
  session.Forget();
  EXPECT_TRUE(Instr().SetLevels({}));
  EXPECT_TRUE(Instr().SetLimits({}));
  EXPECT_TRUE(Instr().SetTriggerLevels({}));
  EXPECT_THAT(session.driver.arrTrace, Each(AllOf(Not(HasSubstr("Transaction")), Not(HasSubstr("GetWarnings")))));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(TransferTest, PatternFlagsAreAddressedByTheChannelNumber) {
  session.Open({{"channels", 1}});
  BooleanArray fRz(1, {False, True});
  session.driver.Find("Alpha")->settings.channels[0].lngSignalFormat = 7;
  EXPECT_TRUE(Instr().GetRz(fRz));
  EXPECT_EQ(fRz[1], True) << "any number but 0 is return to zero";
  EXPECT_EQ(fRz[2], True);
  EXPECT_TRUE(Instr().SetRz(BooleanArray(1, {False})));
  BooleanArray fFromZero(0, {False});
  EXPECT_FALSE(Instr().GetRz(fFromZero)) << "there is no entry 1";
  BooleanArray fFlat = BooleanArray::WithDimensions(2);
  EXPECT_FALSE(Instr().GetRz(fFlat));
}

TEST_F(TransferTest, APatternReadOfflineLeavesTheArgumentsAlone) {
  ByteArray arr(0, {1, 2});
  Long lngLength = 3;
  EXPECT_FALSE(Instr().GetPatternArray(1, arr, lngLength));
  EXPECT_THAT(Boxes(), ElementsAre(OfflineBox));
  EXPECT_THAT(arr.Elements(), ElementsAre(1, 2));
  EXPECT_EQ(lngLength, 3);
}

TEST_F(TransferTest, ThePatternReadTakesTheDriversSize) {
  session.Open();
  ByteArray arr;
  Long lngLength = 0;
  EXPECT_TRUE(Instr().GetPatternArray(3, arr, lngLength));
  EXPECT_THAT(arr.Elements(), ElementsAre(3, 4, 5));
  EXPECT_EQ(lngLength, 24);
}

TEST_F(TransferTest, APatternWithinAGlobalTransactionPollsNoWarning) {
  session.Open();
  Instr().LetWarningsEnabled(True);
  Instr().TransactionStart(True);
  session.Forget();
  ByteArray arr(0, {0xA5});
  EXPECT_TRUE(Instr().SetPatternArray(2, arr, 8));
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.GetPatternMemory() -> IPatternMemory",
                                   "IPatternMemory{Alpha}.SetPattern(2, 2, <a5>, 8) -> ok"));
}

TEST_F(TransferTest, EachTransferOfflineShowsTheMessageAndAnswersFalse) {
  udtModeInfo mode;
  udtTimingInfo timing;
  EXPECT_FALSE(Instr().SetMode(mode));
  EXPECT_FALSE(Instr().GetMode(mode));
  EXPECT_FALSE(Instr().SetTiming(timing));
  EXPECT_FALSE(Instr().GetTiming(timing));
  EXPECT_FALSE(Instr().Output(1, True));
  EXPECT_THAT(Boxes(), ElementsAre(OfflineBox, OfflineBox, OfflineBox, OfflineBox, OfflineBox));
}

TEST_F(TransferTest, ALevelsBlockOfAnotherKindIsATypeMismatch) {
  session.Open();
  session.driver.WrongAt(3);
  EXPECT_FALSE(Instr().Output(1, True));
  EXPECT_THAT(Boxes(), ElementsAre("box stop: Type mismatch"));
}

TEST_F(TransferTest, AnObjectThatIsNotThereIsNotSet) {
  session.Open();
  session.driver.NothingAt(3);
  EXPECT_FALSE(Instr().Output(1, True));
  EXPECT_THAT(Boxes(), ElementsAre("box stop: Object variable or With block variable not set"));
}

}  // namespace
}  // namespace tarvik::test
