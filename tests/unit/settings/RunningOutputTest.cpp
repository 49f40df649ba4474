#include "settings/RunningOutput.h"

#include <gmock/gmock.h>

#include "SetupSamples.h"

namespace tarvik::test {
namespace {

TEST(RunningOutput, NamesLevelsAndTimesOfTheInstrumentAndTheMarkedValues) {
  KnownSetup known;
  for (const TabNumEnum ePage : {ePageMode, ePageTiming, ePageLevels}) known.TakeRead(ePage, SampleSetup());
  tarvik::Setup shown = SampleSetup();
  shown.Timing.dblWidth[2] = 50e-9;
  shown.Levels.dblAmplOrHigh[2] = 2;
  const auto arrDiffering = Differences(shown, SampleSetup());
  EXPECT_EQ(
      RunningText(known, 2, False, arrDiffering),
      "Output 2 runs with Period 1.000 us, Delay 300.0 ns, Width 100.0 ns, High 3.300 V, Low -700.0 mV and not with "
      "the marked Width 50.00 ns, High 2.000 V");
  EXPECT_EQ(RunningText(known, 2, True, arrDiffering, ',').substr(0, 42), "Inverse output 2 runs with Period 1,000 us");
  EXPECT_EQ(RunningText(known, 1, False, arrDiffering), "") << "nothing of channel 1 differs";
}

TEST(RunningOutput, LeavesOutWhatIsNotKnown) {
  KnownSetup known;
  known.TakeRead(ePageLevels, SampleSetup());
  tarvik::Setup shown = SampleSetup();
  shown.Levels.dblOffsetOrLow[1] = 1;
  EXPECT_EQ(RunningText(known, 1, False, Differences(shown, SampleSetup())),
            "Output 1 runs with High 2.500 V, Low 0.000 V and not with the marked Low 1.000 V");
}

TEST(RunningOutput, TellsWhatTheInstrumentHasOfEverythingMarked) {
  KnownSetup known;
  known.TakeRead(ePageTiming, SampleSetup());
  tarvik::Setup shown = SampleSetup();
  shown.Timing.dblLeading[2] = 5e-9;
  EXPECT_THAT(RunningText(known, 2, False, Differences(shown, SampleSetup())),
              testing::HasSubstr("Leading Edge 3.000 ns"));
}

TEST(RunningOutput, OtherPagesDoNotCount) {
  KnownSetup known;
  known.TakeRead(ePageLimits, SampleSetup());
  tarvik::Setup shown = SampleSetup();
  shown.Limits.dblHighVoltage[1] = 1;
  EXPECT_EQ(RunningText(known, 1, False, Differences(shown, SampleSetup())), "");
}

}  // namespace
}  // namespace tarvik::test
