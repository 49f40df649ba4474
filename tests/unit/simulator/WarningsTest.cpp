#include <gtest/gtest.h>

#include "simulator/model/Validation.h"

namespace tarvik::simulator {
namespace {

std::string WarningsOf(const Settings &settings) {
  return JoinEntries(ConditionWarnings(settings, InstrumentDescription{}), false);
}

TEST(Warnings, DefaultsGiveNone) { EXPECT_EQ("", WarningsOf(Settings{})); }

TEST(Warnings, WidthCloseToThePeriodLastsWhileItIsClose) {
  Settings settings;
  settings.timing[1].dblWidth = 0.96e-6;
  EXPECT_EQ(R"~(101,"Width of channel 1 close to the period")~", WarningsOf(settings));
  settings.timing[1].dblWidth = 0.94e-6;
  EXPECT_EQ("", WarningsOf(settings));
}

TEST(Warnings, LeadingEdgeLongerThanTheWidth) {
  Settings settings;
  settings.timing[2].dblLeading = 200e-9;
  EXPECT_EQ(R"~(102,"Leading edge of channel 2 longer than the width")~", WarningsOf(settings));
}

TEST(Warnings, HighLoadCompensationOnlyWhileAnOutputIsOn) {
  Settings settings;
  settings.levels[1].dblLoadCompensation = 50000;
  EXPECT_EQ("", WarningsOf(settings));
  settings.levels[1].fComplementOutput = true;
  EXPECT_EQ(R"~(103,"Output of channel 1 on with high load compensation")~", WarningsOf(settings));
}

TEST(Warnings, SeveralAreSeparatedBySemicolons) {
  Settings settings;
  settings.timing[1].dblWidth = 0.96e-6;
  settings.timing[2].dblWidth = 0.97e-6;
  EXPECT_EQ(R"~(101,"Width of channel 1 close to the period";101,"Width of channel 2 close to the period")~",
            WarningsOf(settings));
}

}  // namespace
}  // namespace tarvik::simulator
