#include "settings/ModeRules.h"

#include <gtest/gtest.h>

namespace tarvik::test {
namespace {

const Choices Slopes{{"Rising", 1}, {"Falling", 0}};
const Choices SlopesAndBoth{{"Rising", 1}, {"Falling", 0}, {"Both", 2}};
const Choices Gates{{"High Level", 1}, {"Low Level", 0}, {"Always", 2}};
const Choices PllFormats{{"Period", 0}, {"Frequency", 1}};

/// For a caption that stays as it is.
std::string Text(const char *strCaption) { return strCaption ? strCaption : "unchanged"; }

TEST(PulseMode, ThereIsNoneUnderExternalWidth) {
  EXPECT_TRUE(HasPulseMode(0));
  EXPECT_TRUE(HasPulseMode(1));
  EXPECT_TRUE(HasPulseMode(2));
  EXPECT_FALSE(HasPulseMode(3));
}

TEST(PulseTypeList, OffersSingleAndDoublePulsesOutsideOfAPattern) {
  EXPECT_EQ(PulseTypes(False, 1), (Choices{{"Single Pulses at Output 1", 1}, {"Double Pulses at Output 1", 2}}));
  EXPECT_EQ(PulseTypes(False, 2), (Choices{{"Single Pulses at Output 2", 1}, {"Double Pulses at Output 2", 2}}));
}

TEST(PulseTypeList, OffersTheSignalFormatsInAPattern) {
  EXPECT_EQ(PulseTypes(True, 1), (Choices{{"RZ Pulses at Output 1", 1}, {"NRZ Pulses at Output 1", 0}}));
  EXPECT_EQ(PulseTypes(True, 2), (Choices{{"RZ Pulses at Output 2", 1}, {"NRZ Pulses at Output 2", 0}}));
}

TEST(PeriodSourceList, OffersOscillatorPllAndClock) {
  EXPECT_EQ(PeriodSources(), (Choices{{"Internal Oscillator", 0}, {"Internal PLL", 1}, {"CLK-IN", 2}}));
  EXPECT_EQ(ClockEdges(), Slopes);
}

TEST(ClockEdge, IsOfUseWithTheClockAsPeriodSourceOnly) {
  EXPECT_FALSE(IsClockEdgeOfUse(1, 0));
  EXPECT_FALSE(IsClockEdgeOfUse(1, 1));
  EXPECT_TRUE(IsClockEdgeOfUse(1, 2));
  EXPECT_FALSE(IsClockEdgeOfUse(5, 2)) << "triggered pulse stream";
  EXPECT_TRUE(IsClockEdgeOfUse(6, 2));
  EXPECT_FALSE(IsClockEdgeOfUse(14, 2)) << "external width";
}

struct ArmingRow {
  const char *strName;
  Long eTrigger, ePulse;
  const char *strSource, *strLevel;
  bool fPllAllowed;
};

constexpr ArmingRow ArmingRows[] = {
    {"ContinuousPulses", 0, 0, " ", " ", false},
    {"ContinuousBurst", 0, 1, " ", " ", false},
    {"ContinuousPattern", 0, 2, " ", " ", false},
    {"TriggeredPulses", 1, 0, "Triggered By", "unchanged", false},
    {"TriggeredBurst", 1, 1, "Triggered By", "unchanged", true},
    {"TriggeredPattern", 1, 2, "Triggered By", "unchanged", true},
    {"GatedPulses", 2, 0, "Gated By", "unchanged", false},
    {"GatedBurst", 2, 1, "Gated By", "unchanged", false},
    {"GatedPattern", 2, 2, "Gated By", "unchanged", false},
    {"ExternalWidthOverPulses", 3, 0, "Width", " ", false},
    {"ExternalWidthOverBurst", 3, 1, "Width", " ", false},
    {"ExternalWidthOverPattern", 3, 2, "Width", " ", false},
};

class Arming : public testing::TestWithParam<ArmingRow> {};

TEST_P(Arming, HasTheMeaningOfTheTriggerMode) {
  const ArmingRow &row = GetParam();
  const auto meaning = MeaningOfArming(row.eTrigger, row.ePulse);
  ASSERT_TRUE(meaning);
  EXPECT_EQ(Text(meaning->strSourceCaption), row.strSource);
  EXPECT_EQ(Text(meaning->strLevelCaption), row.strLevel);
  EXPECT_EQ(meaning->fPllAllowed, row.fPllAllowed);
}

INSTANTIATE_TEST_SUITE_P(Modes, Arming, testing::ValuesIn(ArmingRows),
                         [](const auto &row) { return row.param.strName; });

TEST(ArmingSourceList, HasTheKeyWhereThereAreNoVxiLines) {
  EXPECT_EQ(ArmingSources(False, False), (Choices{{"Man. Key", 4}, {"External Input", 3}}));
  EXPECT_EQ(ArmingSources(True, False), (Choices{{"Man. Key", 4}, {"External Input", 3}, {"Internal PLL", 1}}));
}

TEST(ArmingSourceList, HasTheTenVxiLines) {
  EXPECT_EQ(ArmingSources(False, True), (Choices{{"External Input", 3},
                                                 {"VXI ECLT 0", 5},
                                                 {"VXI ECLT 1", 6},
                                                 {"VXI TTLT 0", 7},
                                                 {"VXI TTLT 1", 8},
                                                 {"VXI TTLT 2", 9},
                                                 {"VXI TTLT 3", 10},
                                                 {"VXI TTLT 4", 11},
                                                 {"VXI TTLT 5", 12},
                                                 {"VXI TTLT 6", 13},
                                                 {"VXI TTLT 7", 14}}));
  const Choices arrWithPll = ArmingSources(True, True);
  EXPECT_EQ(arrWithPll.size(), 12U);
  EXPECT_EQ(arrWithPll[1], (Choice{"Internal PLL", 1}));
  EXPECT_EQ(arrWithPll[2], (Choice{"VXI ECLT 0", 5}));
}

struct LevelRow {
  const char *strName;
  Long eTrigger, ePulse, eArmingSource, ePeriodSource;
  const char *strCaption;
  Choices arrLevels;
  bool fPll;
};

const LevelRow LevelRows[] = {
    {"Continuous", 0, 0, 0, 0, "unchanged", {}, false},
    {"ExternalWidth", 3, 0, 3, 0, "unchanged", {}, false},
    {"Triggered", 1, 1, 3, 0, "Trigger Slope", SlopesAndBoth, false},
    {"TriggeredByTheClock", 1, 1, 3, 2, "Trigger Slope", SlopesAndBoth, false},
    {"TriggeredBurstOfThePll", 1, 1, 4, 1, "Trigger Slope", Slopes, false},
    {"TriggeredPatternOfThePll", 1, 2, 4, 1, "Trigger Slope", Slopes, false},
    {"TriggeredPulsesOfThePll", 1, 0, 4, 1, "Trigger Slope", SlopesAndBoth, false},
    {"Gated", 2, 1, 5, 0, "Gate Level", Gates, false},
    {"GatedOfThePll", 2, 1, 5, 1, "Gate Level", Gates, false},
    {"ThePllArms", 1, 1, 1, 0, "PLL Mode", PllFormats, true},
    {"ThePllArmsWhateverTheTriggerMode", 2, 1, 1, 0, "PLL Mode", PllFormats, true},
};

class ArmingLevelList : public testing::TestWithParam<LevelRow> {};

TEST_P(ArmingLevelList, FollowsFromModesAndSources) {
  const LevelRow &row = GetParam();
  const auto levels = LevelsOfArming(row.eTrigger, row.ePulse, row.eArmingSource, row.ePeriodSource);
  ASSERT_TRUE(levels);
  EXPECT_EQ(Text(levels->strCaption), row.strCaption);
  EXPECT_EQ(levels->arrLevels, row.arrLevels);
  EXPECT_EQ(levels->fPll, row.fPll);
}

INSTANTIATE_TEST_SUITE_P(Modes, ArmingLevelList, testing::ValuesIn(LevelRows),
                         [](const auto &row) { return row.param.strName; });

TEST(UnknownTriggerMode, HasNoMeaning) {
  EXPECT_FALSE(MeaningOfArming(4, 0));
  EXPECT_FALSE(MeaningOfArming(-1, 0));
  EXPECT_FALSE(LevelsOfArming(4, 0, 3, 0));
}

TEST(UnknownTriggerMode, CanStillBeArmedByThePll) { EXPECT_TRUE(LevelsOfArming(4, 0, 1, 0)); }

TEST(PllFieldShown, IsPeriodOrFrequency) {
  const auto period = PllFieldOf(True, 0);
  ASSERT_TRUE(period);
  EXPECT_STREQ(period->strCaption, "Period");
  EXPECT_STREQ(period->strBaseUnit, "s");
  const auto frequency = PllFieldOf(True, 1);
  ASSERT_TRUE(frequency);
  EXPECT_STREQ(frequency->strCaption, "Frequency");
  EXPECT_STREQ(frequency->strBaseUnit, "Hz");
}

TEST(PllFieldShown, IsNoneForSlopesAndWithoutALevel) {
  EXPECT_FALSE(PllFieldOf(False, 0));
  EXPECT_FALSE(PllFieldOf(False, 1));
  EXPECT_FALSE(PllFieldOf(True, 3));
}

TEST(Pll, ServesOnce) {
  EXPECT_TRUE(ClaimsPllTwice(1, 1));
  EXPECT_FALSE(ClaimsPllTwice(1, 0));
  EXPECT_FALSE(ClaimsPllTwice(3, 1));
}

ModeFields TriggeredBurst() {
  ModeFields fields;
  fields.eTriggerMode = 1;
  fields.ePulseMode = 1;
  fields.dblBurstLength = 12;
  fields.ePulseType = {2, 1};
  fields.ePeriodSource = 2;
  fields.eTriggerSlope = 0;
  fields.eArmingSource = 3;
  fields.lngArmingLevel = 2;
  fields.dblPllPeriodOrFreq = 250000;
  return fields;
}

TEST(ModeRecord, CarriesTheLevelAsSlope) {
  udtModeInfo expected;
  expected.TriggerMode = 1;
  expected.PulseMode = 1;
  expected.BurstLength = 12;
  expected.PulseType = expected.SignalFormat = {2, 1};
  expected.PeriodSource = 2;
  expected.TriggerSlope = 0;
  expected.ArmingSource = 3;
  expected.ArmSlope = 2;
  expected.PllFormat = 3;
  expected.PllPeriodOrFreq = 0;
  EXPECT_EQ(ToModeInfo(TriggeredBurst()), expected);
}

TEST(ModeRecord, CarriesTheLevelAsFormatOfThePllThatArms) {
  ModeFields fields = TriggeredBurst();
  fields.eArmingSource = 1;
  fields.lngArmingLevel = 1;
  const udtModeInfo mode = ToModeInfo(fields);
  EXPECT_EQ(mode.ArmSlope, 3);
  EXPECT_EQ(mode.PllFormat, 1);
  EXPECT_EQ(mode.PllPeriodOrFreq, 250000);
}

TEST(ModeRecord, RoundsTheBurstLengthHalfToEven) {
  ModeFields fields;
  fields.dblBurstLength = 16.5;
  EXPECT_EQ(ToModeInfo(fields).BurstLength, 16);
  fields.dblBurstLength = 17.5;
  EXPECT_EQ(ToModeInfo(fields).BurstLength, 18);
}

TEST(ModeRecord, IsReadBackAsItWasWritten) {
  ModeFields fields = TriggeredBurst();
  fields.eArmingSource = 1;
  fields.lngArmingLevel = 1;
  EXPECT_EQ(ToModeFields(ToModeInfo(fields)), fields);
}

TEST(ModeRecord, GivesNoNumberOfAPllThatDoesNotArm) {
  ModeFields expected = TriggeredBurst();
  expected.dblPllPeriodOrFreq = 0;
  EXPECT_EQ(ToModeFields(ToModeInfo(TriggeredBurst())), expected);
}

TEST(ModeRecord, GivesTheSignalFormatsInAPatternAndTheTypesOtherwise) {
  udtModeInfo mode;
  mode.PulseType = {2, 1};
  mode.SignalFormat = {0, 1};
  mode.PulseMode = 2;
  EXPECT_EQ(ToModeFields(mode).ePulseType, (ChannelArray<Long>{0, 1}));
  mode.PulseMode = 1;
  EXPECT_EQ(ToModeFields(mode).ePulseType, (ChannelArray<Long>{2, 1}));
}

}  // namespace
}  // namespace tarvik::test
