#include "settings/TimingRules.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvik::test {
namespace {

struct WidestRow {
  const char *strName;
  Long lngCount;
  bool fPattern;
  ChannelWidth first, second;
  bool fCounts;
  Double dblWidth;  ///< 7 where it is left alone
};

ChannelWidth Off() { return {False, False, True, 9e-7}; }
ChannelWidth On(Double dblWidth) { return {True, False, True, dblWidth}; }
ChannelWidth InverseOn(Double dblWidth) { return {False, True, True, dblWidth}; }
ChannelWidth NonReturn(Double dblWidth) { return {True, False, False, dblWidth}; }

const WidestRow WidestRows[] = {
    {"NoChannels", 0, false, On(1e-7), On(2e-7), false, 7},
    {"OneChannel", 1, false, On(1e-7), Off(), true, 1e-7},
    {"OneChannelByItsInverseOutput", 1, false, InverseOn(1e-7), Off(), true, 1e-7},
    {"OneChannelThatIsOff", 1, false, Off(), Off(), false, 7},
    {"OneChannelThatIsOffWithASecondThatIsOn", 1, false, Off(), On(2e-7), true, 7},
    {"OneChannelInAPattern", 1, true, On(1e-7), Off(), true, 1e-7},
    {"OneChannelInAPatternWithoutReturnToZero", 1, true, NonReturn(1e-7), Off(), false, 7},
    {"BothTheFirstWider", 2, false, On(3e-7), On(2e-7), true, 3e-7},
    {"BothTheSecondWider", 2, false, On(1e-7), On(2e-7), true, 2e-7},
    {"TheFirstAlone", 2, false, On(1e-7), Off(), true, 1e-7},
    {"TheSecondAloneByItsInverseOutput", 2, false, Off(), InverseOn(2e-7), true, 2e-7},
    {"BothOff", 2, false, Off(), Off(), false, 7},
    {"NonReturnOutsideOfAPatternCounts", 2, false, NonReturn(1e-7), NonReturn(3e-7), true, 3e-7},
    {"TheOutputsDecideWhichWidthEvenIfNoneCounts", 2, true, NonReturn(1e-7), NonReturn(3e-7), false, 3e-7},
    {"TheOutputsDecideWhichWidthEvenIfTheOtherCounts", 2, true, On(1e-7), NonReturn(3e-7), true, 3e-7},
    {"MoreChannelsThanThereAre", 3, false, On(1e-7), On(2e-7), true, 7},
};

class WidestWidth : public testing::TestWithParam<WidestRow> {};

TEST_P(WidestWidth, IsThatOfTheChannelsThatPulse) {
  const WidestRow &row = GetParam();
  Double dblWidth = 7;
  EXPECT_EQ(GetWidestWidth(row.lngCount, {row.first, row.second}, row.fPattern, dblWidth), row.fCounts);
  EXPECT_EQ(dblWidth, row.dblWidth);
}

INSTANTIATE_TEST_SUITE_P(Channels, WidestWidth, testing::ValuesIn(WidestRows),
                         [](const auto &row) { return row.param.strName; });

struct PushRow {
  const char *strName;
  Double dblPeriod, dblWidth;
  bool fFrequency;
  Double dblShown;
  std::optional<Double> dblPushed;
};

/// 1 / (1 / 7 us) is a hair below 7 us, as it is for one width in twelve.
const Double RoundedPeriod = 1 / (1 / 7e-6);

const PushRow PushRows[] = {
    {"TooShort", 1e-6, 2e-6, false, 1e-6, 2e-6},
    {"TooHighAFrequency", 1e-6, 2e-6, true, 1e6, 5e5},
    {"Equal", 2e-6, 2e-6, false, 2e-6, std::nullopt},
    {"EqualWhateverTheRoundedFrequencyShows", 2e-6, 2e-6, true, 499999.9, std::nullopt},
    {"Longer", 3e-6, 2e-6, false, 3e-6, std::nullopt},
    {"NoWidth", 1e-6, 0, true, 1e6, std::nullopt},
    {"RoundedBelowTheWidthAndShownAlready", RoundedPeriod, 7e-6, true, 1 / 7e-6, std::nullopt},
};

class PeriodPush : public testing::TestWithParam<PushRow> {};

TEST_P(PeriodPush, GrowsThePeriodToTheWidth) {
  const PushRow &row = GetParam();
  EXPECT_EQ(PushedPeriod(row.dblPeriod, row.dblWidth, row.fFrequency, row.dblShown), row.dblPushed);
}

INSTANTIATE_TEST_SUITE_P(Periods, PeriodPush, testing::ValuesIn(PushRows),
                         [](const auto &row) { return row.param.strName; });

TEST(PeriodPush, HasARowInWhichTheRoundedPeriodIsShort) { EXPECT_LT(RoundedPeriod, 7e-6); }

TEST(PeriodForms, NameWhatTheFieldHolds) {
  EXPECT_STREQ(FormOf(False).strCaption, "Period");
  EXPECT_STREQ(FormOf(False).strBaseUnit, "s");
  EXPECT_STREQ(FormOf(True).strCaption, "Frequency");
  EXPECT_STREQ(FormOf(True).strBaseUnit, "Hz");
}

TEST(TimingRanges, OfSinglePulsesReachOverThePeriod) {
  EXPECT_EQ(WidthRange(1e-7, False), (TimeRange{1.515e-9, 1e-7}));
  EXPECT_EQ(DelayRange(1e-7, False, 3e-8), (TimeRange{0, 1e-7}));
}

TEST(TimingRanges, OfDoublePulsesReachOverHalfThePeriod) {
  EXPECT_EQ(WidthRange(1e-7, True), (TimeRange{1.515e-9, 5e-8}));
  EXPECT_EQ(DelayRange(1e-7, True, 2e-8), (TimeRange{2e-8, 1e-7}));
}

TEST(TimingRanges, AfterAWidthEditTheDelayLeavesRoomForTheWidth) {
  const TimeRange single = DelayRangeBesideWidth(1e-7, False, 3e-8);
  EXPECT_EQ(single.dblMin, 0);
  EXPECT_DOUBLE_EQ(single.dblMax, 7e-8);
  const TimeRange pair = DelayRangeBesideWidth(5e-8, True, 2e-8);
  EXPECT_EQ(pair.dblMin, 2e-8);
  EXPECT_DOUBLE_EQ(pair.dblMax, 8e-8);
}

TEST(TimingRanges, OfTheFormAreWiderThanThoseOfTheInstruments) {
  EXPECT_EQ(WidthRangeOfForm, (TimeRange{1.5e-9, 999.5}));
  EXPECT_EQ(DelayRangeOfForm, (TimeRange{0, 999.5}));
}

TEST(TimingRanges, MakeWayForAValueThatStands) {
  const TimeRange range{1.515e-9, 5e-7};
  EXPECT_EQ(range.Holding(1e-7), range);
  EXPECT_EQ(range.Holding(3e-6), (TimeRange{1.515e-9, 3e-6}));
  EXPECT_EQ(range.Holding(1.51e-9), (TimeRange{1.51e-9, 5e-7}));
}

TEST(PulseTypes, AreDoubleOutsideOfAPatternOnly) {
  EXPECT_EQ(DoublePulses(False, 2, 1), (ChannelArray<Boolean>{True, False}));
  EXPECT_EQ(DoublePulses(False, 1, 2), (ChannelArray<Boolean>{False, True}));
  EXPECT_EQ(DoublePulses(False, 0, 0), (ChannelArray<Boolean>{False, False}));
  EXPECT_EQ(DoublePulses(True, 2, 2), (ChannelArray<Boolean>{False, False}));
}

TEST(PulseTypes, ShowInTheCaptionOfTheDelay) {
  EXPECT_STREQ(DelayCaption(False), "Delay");
  EXPECT_STREQ(DelayCaption(True), "Dbl. Delay");
}

TEST(WidthLock, HoldsInAPatternWithoutReturnToZeroOnly) {
  EXPECT_TRUE(IsWidthLocked(True, False));
  EXPECT_FALSE(IsWidthLocked(True, True));
  EXPECT_FALSE(IsWidthLocked(False, False));
  EXPECT_FALSE(IsWidthLocked(False, True));
}

struct EdgeRow {
  const char *strName;
  bool fIsLocked, fTeEqLe, fLocked, fClearLock;
  bool fFollows, fLockedThen, fShowsAsBefore;
};

constexpr EdgeRow EdgeRows[] = {
    {"Coupled", false, true, false, false, true, false, false},
    {"Freed", false, false, false, false, false, false, false},
    {"Locked", false, true, true, false, true, true, false},
    {"LockedEdgesFollowWhateverIsAsked", false, false, true, false, true, true, false},
    {"ALockStandsAgainstBeingFreed", true, false, false, false, true, true, true},
    {"ALockStandsAgainstBeingCoupled", true, true, false, false, true, true, true},
    {"LockedOnceMore", true, true, true, false, true, true, false},
    {"TheLockIsCleared", true, false, false, true, false, false, false},
    {"TheLockIsClearedAndTheCouplingStays", true, true, false, true, true, false, false},
    {"ClearedAndLockedAnew", true, true, true, true, true, true, false},
};

class TrailingEdge : public testing::TestWithParam<EdgeRow> {};

TEST_P(TrailingEdge, FollowsTheLeadingEdge) {
  const EdgeRow &row = GetParam();
  const TrailEdge edge = CoupleTrailEdge(row.fIsLocked, row.fTeEqLe, row.fLocked, row.fClearLock);
  EXPECT_EQ(edge.fTeEqLe, row.fFollows);
  EXPECT_EQ(edge.fLocked, row.fLockedThen);
  EXPECT_EQ(edge.fShowsAsBefore, row.fShowsAsBefore);
}

INSTANTIATE_TEST_SUITE_P(Couplings, TrailingEdge, testing::ValuesIn(EdgeRows),
                         [](const auto &row) { return row.param.strName; });

TEST(LeadingEdge, HasTwoValuesOrIsFree) {
  EXPECT_STREQ(LeadingEdgeValues(True), "0.8E-9;1.6E-9");
  EXPECT_STREQ(LeadingEdgeValues(False), "");
}

}  // namespace
}  // namespace tarvik::test
