#include "settings/SetupComparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SetupSamples.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Lines(const SetupComparison &comparison, TabNumEnum ePage = eAllPages,
                               std::string_view strFilter = "") {
  std::vector<std::string> arrLines;
  for (const ComparedRow &row : comparison.Rows(ePage, strFilter, '.'))
    arrLines.push_back(row.setting->Key(row.lngChannel) + ": " + row.arrTexts[0] + " | " + row.arrTexts[1] + " | " +
                       row.arrTexts[2]);
  return arrLines;
}

struct Compared {
  Compared() {
    instrument.Timing.dblWidth[1] = 100e-9;
    file.Levels.dblAmplOrHigh[2] = 5;
    comparison.Set(ComparedSide::Panel, SampleSetup());
  }
  tarvik::Setup instrument = SampleSetup(), file = SampleSetup();
  SetupComparison comparison;
};

TEST(SetupComparison, ASideAloneHasNoDifferences) { EXPECT_THAT(Lines(Compared().comparison), IsEmpty()); }

TEST(SetupComparison, ListsWhatNotAllSidesHaveAlike) {
  Compared compared;
  compared.comparison.Set(ComparedSide::Instrument, compared.instrument);
  EXPECT_THAT(Lines(compared.comparison), ElementsAre("timing.width[1]: 50.00 ns | 100.0 ns | "));
  compared.comparison.Set(ComparedSide::File, compared.file);
  EXPECT_THAT(Lines(compared.comparison), ElementsAre("timing.width[1]: 50.00 ns | 100.0 ns | 50.00 ns",
                                                      "levels.high[2]: 3.300 V | 3.300 V | 5.000 V"));
}

TEST(SetupComparison, ASideThatAgreesWithBothOthersIsShownToo) {
  Compared compared;
  // Each within a driver's rounding of the panel's 50 ns, and not of the other.
  compared.instrument.Timing.dblWidth[1] = 50e-9 * (1 + 0.8e-6);
  compared.file = SampleSetup();
  compared.file.Timing.dblWidth[1] = 50e-9 * (1 - 0.8e-6);
  compared.comparison.Set(ComparedSide::Instrument, compared.instrument);
  compared.comparison.Set(ComparedSide::File, compared.file);
  EXPECT_THAT(Lines(compared.comparison), ElementsAre("timing.width[1]: 50.00 ns | 50.00 ns | 49.99 ns"));
}

TEST(SetupComparison, FindsByPageAndByTextInAnyCase) {
  Compared compared;
  compared.comparison.Set(ComparedSide::Instrument, compared.instrument);
  compared.comparison.Set(ComparedSide::File, compared.file);
  EXPECT_THAT(Lines(compared.comparison, ePageLevels), ElementsAre(testing::StartsWith("levels.high[2]")));
  EXPECT_THAT(Lines(compared.comparison, eAllPages, "WIDTH"), ElementsAre(testing::StartsWith("timing.width[1]")));
  EXPECT_THAT(Lines(compared.comparison, eAllPages, "5.000 v"), ElementsAre(testing::StartsWith("levels.high[2]")));
  EXPECT_THAT(Lines(compared.comparison, eAllPages, "delay"), IsEmpty());
}

TEST(SetupComparison, TakesOverTheChosenRowsAndNoMore) {
  Compared compared;
  compared.file.Timing.dblWidth[1] = 70e-9;
  compared.comparison.Set(ComparedSide::File, compared.file);
  const auto arrRows = compared.comparison.Rows(ePageTiming, "", '.');
  tarvik::Setup expected = SampleSetup();
  expected.Timing.dblWidth[1] = 70e-9;
  EXPECT_EQ(compared.comparison.Taken(ComparedSide::File, arrRows), expected);
}

TEST(SetupComparison, LevelsInAnotherUnitComeTogetherWithIt) {
  Compared compared;
  compared.file = SampleSetup();
  compared.file.Levels.eOutputType[1] = eTypeCurrent;
  compared.file.Levels.dblAmplOrHigh[1] = 0.05;
  compared.file.Levels.dblOffsetOrLow[1] = 0.01;
  compared.comparison.Set(ComparedSide::File, compared.file);
  const auto arrRows = compared.comparison.Rows(eAllPages, "levels.high", '.');
  ASSERT_EQ(arrRows.size(), 1U);
  EXPECT_EQ(compared.comparison.Taken(ComparedSide::File, arrRows).Levels, compared.file.Levels);
}

TEST(SetupComparison, LevelsAreTakenInThePanelsWayOfWriting) {
  Compared compared;
  tarvik::Setup panel = SampleSetup();
  panel.Levels.eOutputLevel[2] = eLevelOffsetAmplitude;
  panel.Levels.dblAmplOrHigh[2] = 1;
  panel.Levels.dblOffsetOrLow[2] = 2;
  compared.comparison.Set(ComparedSide::Panel, panel);
  compared.comparison.Set(ComparedSide::File, compared.file);
  const tarvik::Setup taken =
      compared.comparison.Taken(ComparedSide::File, compared.comparison.Rows(ePageLevels, "", '.'));
  EXPECT_EQ(taken.Levels.eOutputLevel[2], eLevelOffsetAmplitude);
  EXPECT_DOUBLE_EQ(taken.Levels.dblAmplOrHigh[2], 2.15);
  EXPECT_DOUBLE_EQ(taken.Levels.dblOffsetOrLow[2], 5.7);
}

TEST(SetupComparison, IsTextWithTabsForOtherPrograms) {
  Compared compared;
  compared.comparison.Set(ComparedSide::Instrument, compared.instrument);
  EXPECT_EQ(ToText(compared.comparison.Rows(eAllPages, "", '.')),
            "Page\tSetting\tPanel\tInstrument\tFile\nTiming\tWidth, channel 1\t50.00 ns\t100.0 ns\t\n");
}

}  // namespace
}  // namespace tarvik::test
