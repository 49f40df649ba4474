#include "settings/SetupDifferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SetupSamples.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One line for each difference.
std::vector<std::string> Lines(const Setup &first, const Setup &second, Double dblTolerance = DriverRounding) {
  std::vector<std::string> arrLines;
  for (const SetupDifference &difference : Differences(first, second, dblTolerance))
    arrLines.push_back(difference.Key() + ": " + difference.strFirst + " | " + difference.strSecond);
  return arrLines;
}

TEST(SetupDifferences, ASetupAgreesWithItself) {
  EXPECT_THAT(Lines(SampleSetup(), SampleSetup()), IsEmpty());
  EXPECT_THAT(Lines(SampleSetup(), SampleSetup(), 0), IsEmpty());
  RandomSetups setups(2);
  for (int i = 0; i < 100; ++i) {
    const tarvik::Setup setup = setups.Next();
    EXPECT_THAT(Lines(setup, setup, 0), IsEmpty());
  }
}

TEST(SetupDifferences, TellsPageSettingChannelAndBothValues) {
  tarvik::Setup other = SampleSetup();
  other.Timing.dblWidth[1] = 100e-9;
  other.Levels.fChannelOutputOn[2] = other.Timing.fChannelOutputOn[2] = True;
  other.Mode.ArmingSource = eVxiTtlt0;
  other.TrgLevels.dblExtInThreshold = 5;
  const auto arrDifferences = Differences(SampleSetup(), other);
  ASSERT_EQ(arrDifferences.size(), 4U);
  EXPECT_EQ(arrDifferences[1].setting->ePage, ePageTiming);
  EXPECT_EQ(arrDifferences[1].setting->Caption(1), "Width, channel 1");
  EXPECT_EQ(arrDifferences[1].lngChannel, 1);
  EXPECT_THAT(Lines(SampleSetup(), other),
              ElementsAre("mode.armingSource: External | Ttlt0", "timing.width[1]: 50.00 ns | 100.0 ns",
                          "levels.output[2]: Off | On", "trglevels.extInThreshold: 2.500 V | 5.000 V"));
}

TEST(SetupDifferences, WhatADriverRoundsIsNone) {
  tarvik::Setup other = SampleSetup();
  other.Timing.dblWidth[1] *= 1 + 0.9e-6;
  other.Levels.dblOffsetOrLow[1] = 1e-17;
  EXPECT_THAT(Lines(SampleSetup(), other), IsEmpty());
  EXPECT_THAT(Lines(SampleSetup(), other, 0),
              ElementsAre("timing.width[1]: 50.00000 ns | 50.00004 ns", "levels.low[1]: 0.000 V | 1e-17 V"));
  other.Timing.dblWidth[1] = 50e-9 * (1 + 1.1e-6);
  EXPECT_THAT(Lines(SampleSetup(), other), ElementsAre("timing.width[1]: 50.00000 ns | 50.00005 ns"));
}

TEST(SetupDifferences, NumbersThatOnlyTheLastBitTellsApartAreWrittenExactly) {
  tarvik::Setup first = SampleSetup(), other = SampleSetup();
  first.Levels.dblAmplOrHigh[1] = 0.3;
  other.Levels.dblAmplOrHigh[1] = 0.1 + 0.2;
  EXPECT_THAT(Lines(first, other, 0), ElementsAre("levels.high[1]: 300mV | 300.00000000000004mV"));
}

TEST(SetupDifferences, LevelsWrittenInTwoWaysAreComparedInTheFirst) {
  tarvik::Setup other = SampleSetup();
  other.Levels.eOutputLevel[1] = eLevelOffsetAmplitude;
  other.Levels.dblAmplOrHigh[1] = 1.25;  // offset
  other.Levels.dblOffsetOrLow[1] = 2.5;  // amplitude
  EXPECT_THAT(Lines(SampleSetup(), other), IsEmpty());
  other.Levels.dblOffsetOrLow[1] = 3.5;
  EXPECT_THAT(Lines(SampleSetup(), other),
              ElementsAre("levels.high[1]: 2.500 V | 3.000 V", "levels.low[1]: 0.000 V | -500.0 mV"));
  EXPECT_THAT(Lines(other, SampleSetup()), ElementsAre("levels.amplitude[1]: 3.500 V | 2.500 V"));
}

TEST(SetupDifferences, APllPeriodAgreesWithItsFrequency) {
  tarvik::Setup first = SampleSetup();
  first.Mode.ArmingSource = eArmPll;
  tarvik::Setup other = first;
  other.Mode.PllFormat = ePllPeriod;
  other.Mode.PllPeriodOrFreq = 500e-9;
  EXPECT_THAT(Lines(first, other), IsEmpty());
  other.Mode.PllPeriodOrFreq = 1e-6;
  EXPECT_THAT(Lines(first, other), ElementsAre("mode.pllFrequency: 2.000 MHz | 1.000 MHz"));
}

TEST(SetupDifferences, WhatNeitherModeSendsIsNotCompared) {
  tarvik::Setup first = SampleSetup();
  first.Mode.PulseMode = ePulseStream;
  tarvik::Setup other = first;
  other.Mode.BurstLength = 12;
  EXPECT_THAT(Lines(first, other), IsEmpty());
  other.Mode.PulseMode = ePulseBurst;
  EXPECT_THAT(Lines(first, other), ElementsAre("mode.pulse: Stream | Burst", "mode.burstLength: 7 | 12"));
}

TEST(SetupDifferences, WhereAModeLeavesNoChoiceTheInstrumentKeepsItsOwn) {
  tarvik::Setup other = SampleSetup();
  other.Mode.TriggerSlope = eKeepSlope;
  other.Mode.ArmSlope = eKeepSlope;
  EXPECT_THAT(Lines(SampleSetup(), other), IsEmpty());
  EXPECT_THAT(Lines(other, SampleSetup()), IsEmpty());
}

TEST(SetupDifferences, TheReferenceFrequencyCountsForAnExternalReference) {
  tarvik::Setup first = SampleSetup(), other = SampleSetup();
  other.dblPllRefFreq = 5e6;
  EXPECT_THAT(Lines(first, other), IsEmpty());
  first.ePllRefSource = other.ePllRefSource = ePllRefClkIn;
  EXPECT_THAT(Lines(first, other), ElementsAre("pll.frequency: 10.00 MHz | 5.000 MHz"));
}

TEST(SetupDifferences, ATrailingEdgeCountsWhereItIsFree) {
  tarvik::Setup other = SampleSetup();
  other.Timing.dblTrailing = {9e-9, 9e-9};
  EXPECT_THAT(Lines(SampleSetup(), other), ElementsAre("timing.trailing[2]: 4.000 ns | 9.000 ns"));
}

TEST(SetupDifferences, ASettingThatOneOfThemLacksIsEmptyThere) {
  tarvik::Setup other = SampleSetup();
  other.lngLacks = eLacksChannelMath;
  EXPECT_THAT(Lines(SampleSetup(), other), ElementsAre("levels.channelMath: Separate | "));
  EXPECT_THAT(Lines(other, SampleSetup()), ElementsAre("levels.channelMath:  | Separate"));
}

TEST(SetupDifferences, PatternsTellTheWordWhereTheyPart) {
  tarvik::Setup first = SampleSetup();
  first.Pattern[0] = {4096, std::vector<Byte>(512)};
  tarvik::Setup other = first;
  other.Pattern[0].arrBytes[40] = 0x01;
  other.Pattern[2] = {4, {0xA0}};
  EXPECT_THAT(Lines(first, other), ElementsAre("pattern.stream[1]: 4096 bits, 0000 at 321 | 4096 bits, 0100 at 321",
                                               "pattern.strobe: 2 bits, 8000 | 4 bits, A000"));
}

}  // namespace
}  // namespace tarvik::test
