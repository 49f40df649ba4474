#include "settings/ModeMask.h"

#include <gtest/gtest.h>

namespace tarvik::test {
namespace {

struct MaskRow {
  Long eTrigger, ePulse;
  Integer intPos;
  bool fBurstLength, fPulseType, fPeriodSource, fTriggerSlope, fArmingSource;
};

constexpr MaskRow Rows[] = {
    {0, 0, 1, false, true, true, true, false},     // continuous
    {0, 1, 2, true, true, true, true, false},      //
    {0, 2, 3, false, true, true, true, false},     //
    {1, 0, 5, false, true, false, false, true},    // triggered
    {1, 1, 6, true, true, true, true, true},       //
    {1, 2, 7, false, true, true, true, true},      //
    {2, 0, 9, false, true, true, true, true},      // gated
    {2, 1, 10, true, true, true, true, true},      //
    {2, 2, 11, false, true, true, true, true},     //
    {3, 0, 13, false, false, false, false, true},  // external width
    {3, 1, 14, false, false, false, false, true},  //
    {3, 2, 15, false, false, false, false, true},  //
};

class ModeMask : public testing::TestWithParam<MaskRow> {};

TEST_P(ModeMask, TellsWhatEachCombinationOfModesLeavesToBeChosen) {
  const MaskRow &row = GetParam();
  EXPECT_EQ(ModePosition(row.eTrigger, row.ePulse), row.intPos);
  EXPECT_EQ(IsEnabledAt(ModeMasks::BurstLength, row.intPos), row.fBurstLength);
  EXPECT_EQ(IsEnabledAt(ModeMasks::PulseType, row.intPos), row.fPulseType);
  EXPECT_EQ(IsEnabledAt(ModeMasks::PeriodSource, row.intPos), row.fPeriodSource);
  EXPECT_EQ(IsEnabledAt(ModeMasks::TriggerSlope, row.intPos), row.fTriggerSlope);
  EXPECT_EQ(IsEnabledAt(ModeMasks::ArmingSource, row.intPos), row.fArmingSource);
}

INSTANTIATE_TEST_SUITE_P(Modes, ModeMask, testing::ValuesIn(Rows),
                         [](const auto &row) { return "AtPosition" + std::to_string(row.param.intPos); });

TEST(ModeMasks, AreThoseThatTheListsRememberBy) {
  EXPECT_STREQ(ModeMasks::PulseType, "000,000,000,DDD");
  EXPECT_STREQ(ModeMasks::PeriodSource, "000,D00,000,DDD");
  EXPECT_STREQ(ModeMasks::TriggerSlope, "000,D00,000,DDD");
  EXPECT_STREQ(ModeMasks::ArmingSource, "DDD,000,000,000");
  EXPECT_STREQ(ModeMasks::ArmingLevel, "DDD,000,000,DDD");
}

TEST(ModeMasks, AControlWithoutAMaskIsEnabledInEveryMode) {
  EXPECT_EQ(GetModeMaskChar("", 1), "");
  EXPECT_TRUE(IsEnabledAt("", 1));
  EXPECT_TRUE(IsEnabledAt("", 15));
}

TEST(ModeMasks, OutsideOfTheMaskThereIsNoCharacter) {
  EXPECT_EQ(GetModeMaskChar("D0D", 1), "D");
  EXPECT_EQ(GetModeMaskChar("D0D", 2), "0");
  EXPECT_EQ(GetModeMaskChar("D0D", 4), "");
  EXPECT_EQ(GetModeMaskChar("D0D", 0), "");
  EXPECT_EQ(GetModeMaskChar("D0D", -1), "");
}

}  // namespace
}  // namespace tarvik::test
