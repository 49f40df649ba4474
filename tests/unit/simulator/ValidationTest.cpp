#include "simulator/model/Validation.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace tarvik::simulator {
namespace {

constexpr Double Nan = std::numeric_limits<Double>::quiet_NaN();

struct Case {
  std::string strName;
  Long lngMask;
  Long lngChannels;
  std::function<void(Settings &)> change;
  std::string strEntries;  ///< verbose; empty when the settings are taken
};

void PrintTo(const Case &c, std::ostream *os) { *os << c.strName; }

class Rule : public testing::TestWithParam<Case> {};

TEST_P(Rule, IsJudged) {
  InstrumentDescription description;
  description.lngMask = GetParam().lngMask;
  description.lngChannels = GetParam().lngChannels;
  Settings settings;
  GetParam().change(settings);
  EXPECT_EQ(GetParam().strEntries, JoinEntries(Violations(settings, description), true));
}

using S = Settings;

std::vector<Case> Cases() {
  return {
      {"Defaults", 0, 2, [](S &) {}, ""},
      {"DefaultsWithoutAnything", AllFunctionality, 1, [](S &) {}, ""},
      {"FrequencyLow", 0, 2, [](S &s) { s.dblFrequency = 0.9e-3; },
       R"~(-222,"Data out of range: frequency (9e-04 Hz, allowed 0.001 Hz to 3.3e+08 Hz)")~"},
      {"FrequencyReciprocalOfTheSlowest", 0, 2, [](S &s) { s.dblFrequency = 1 / (1 / 1e-3); }, ""},
      {"FrequencyNoNumber", 0, 2, [](S &s) { s.dblFrequency = Nan; },
       R"~(-222,"Data out of range: frequency (nan Hz, allowed 0.001 Hz to 3.3e+08 Hz)")~"},
      {"DelayNegative", 0, 2, [](S &s) { s.timing[2].SetSingleDelay(-1e-9); },
       R"~(-222,"Data out of range: delay of channel 2 (-1e-09 s, allowed 0 s to 999.5 s)")~"},
      {"WidthShort", 0, 2, [](S &s) { s.timing[1].dblWidth = 1.4e-9; },
       R"~(-222,"Data out of range: width of channel 1 (1.4e-09 s, allowed 1.5e-09 s to 999.5 s)")~"},
      {"WidthShortestOfThePanel", 0, 2, [](S &s) { s.timing[1].dblWidth = 1.5e-9; }, ""},
      {"SecondChannelThatIsNotThere", 0, 1, [](S &s) { s.timing[2].dblWidth = 0; }, ""},
      {"WidthIsThePeriod", 0, 2, [](S &s) { s.timing[1].dblWidth = 1e-6; }, ""},
      {"WidthAbovePeriod", 0, 2, [](S &s) { s.timing[1].dblWidth = 2e-6; },
       R"~(-221,"Settings conflict: period below delay plus width of channel 1 (1e-06 s below 2e-06 s)")~"},
      {"DelayPlusWidthAbovePeriod", 0, 2,
       [](S &s) {
         s.dblFrequency = 1e-2;
         s.timing[2].dblWidth = 50;
         s.timing[2].SetSingleDelay(75);
       },
       R"~(-221,"Settings conflict: period below delay plus width of channel 2 (100 s below 125 s)")~"},
      {"PeriodOfTheClockInputIsUnknown", 0, 2,
       [](S &s) {
         s.timing[1].dblWidth = 2e-6;
         s.mode.lngPeriodSource = eSourceClkIn;
       },
       ""},
      {"TriggeredPulsesHaveNoPeriod", 0, 2,
       [](S &s) {
         s.timing[1].dblWidth = 2e-6;
         s.mode.SetMode(eTriggerTriggered, ePulseStream);
       },
       ""},
      {"NonReturnPatternHasNoWidth", 0, 1,
       [](S &s) {
         s.timing[1].dblWidth = 2e-6;
         s.timing[1].lngSignalFormat = eFormatNrz;
         s.mode.SetMode(eTriggerContinuous, ePulsePattern);
       },
       ""},
      {"DoubleDelayBelowWidth", 0, 2,
       [](S &s) {
         s.dblFrequency = 1;
         s.timing[1].dblWidth = 0.25;
         s.timing[1].SetDoubleDelay(0.125);
       },
       R"~(-221,"Settings conflict: second pulse begins before the first has ended, width above delay of channel 1 (0.25 s above 0.125 s)")~"},
      {"DoubleEndsWithThePeriod", 0, 2,
       [](S &s) {
         s.dblFrequency = 1;
         s.timing[1].dblWidth = 0.5;
         s.timing[1].SetDoubleDelay(0.5);
       },
       ""},
      {"LeadingEdgeSlow", 0, 2, [](S &s) { s.timing[1].dblLeading = 0.25; },
       R"~(-222,"Data out of range: leading edge of channel 1 (0.25 s, allowed 8e-10 s to 0.2 s)")~"},
      {"LeadingEdgeZero", 0, 2, [](S &s) { s.timing[1].dblLeading = 0; },
       R"~(-222,"Data out of range: leading edge of channel 1 (0 s, allowed 8e-10 s to 0.2 s)")~"},
      {"TrailingEdgeSlow", 0, 2,
       [](S &s) {
         s.timing[1].fCoupled = false;
         s.timing[1].dblTrailing = 0.25;
       },
       R"~(-222,"Data out of range: trailing edge of channel 1 (0.25 s, allowed 8e-10 s to 0.2 s)")~"},
      {"TrailingEdgeNotInForce", 0, 2, [](S &s) { s.timing[1].dblTrailing = 0.25; }, ""},
      {"TrailingEdgeCannotBeSeparate", 4, 2, [](S &s) { s.timing[1].fCoupled = false; },
       R"~(-241,"Hardware missing: separate trailing edge of channel 1")~"},
      {"FixedEdgeFirst", 16384, 2, [](S &s) { s.timing[1].dblLeading = 0.8e-9; }, ""},
      {"FixedEdgeSecond", 16384, 2, [](S &s) { s.timing[1].dblLeading = 1.6e-9; }, ""},
      {"FixedEdgeOther", 16384, 2, [](S &s) { s.timing[1].dblLeading = 1e-9; },
       R"~(-224,"Illegal parameter value: leading edge of channel 1 (1e-09 s, allowed 8e-10 s, 1.6e-09 s)")~"},
      {"PulseType", 0, 2, [](S &s) { s.timing[1].SetPulseType(3); },
       R"~(-224,"Illegal parameter value: pulse type of channel 1 (3, allowed 1, 2)")~"},
      {"SignalFormat", 0, 2, [](S &s) { s.timing[2].lngSignalFormat = 2; },
       R"~(-224,"Illegal parameter value: signal format of channel 2 (2, allowed 0, 1)")~"},
      {"TriggerMode", 0, 2, [](S &s) { s.mode.SetMode(4, 0); },
       R"~(-224,"Illegal parameter value: trigger mode (4, allowed 0 to 3)")~"},
      {"PulseMode", 0, 2, [](S &s) { s.mode.SetMode(0, 3); },
       R"~(-224,"Illegal parameter value: pulse mode (3, allowed 0 to 2)")~"},
      {"BurstShort", 0, 2, [](S &s) { s.mode.lngBurstLength = 1; },
       R"~(-222,"Data out of range: burst length (1, allowed 2 to 65536)")~"},
      {"BurstLongest", 0, 2, [](S &s) { s.mode.lngBurstLength = 65536; }, ""},
      {"BurstLong", 0, 2, [](S &s) { s.mode.lngBurstLength = 65537; },
       R"~(-222,"Data out of range: burst length (65537, allowed 2 to 65536)")~"},
      {"PeriodSource", 0, 2, [](S &s) { s.mode.lngPeriodSource = 3; },
       R"~(-224,"Illegal parameter value: period source (3, allowed 0 to 2)")~"},
      {"ClockEdge", 0, 2, [](S &s) { s.mode.lngClockSlope = 2; },
       R"~(-224,"Illegal parameter value: clock edge (2, allowed 0, 1)")~"},
      {"ArmSource", 0, 2, [](S &s) { s.mode.lngArmSource = 2; },
       R"~(-224,"Illegal parameter value: arming source (2, allowed 1, 3, 4)")~"},
      {"ArmSlope", 0, 2, [](S &s) { s.mode.lngArmSlope = 4; },
       R"~(-224,"Illegal parameter value: arming slope (4, allowed 0 to 2)")~"},
      {"ArmVxiLine", 0, 2, [](S &s) { s.mode.lngArmSource = 14; }, ""},
      {"ArmVxiLineMissing", 4096, 2, [](S &s) { s.mode.lngArmSource = 5; },
       R"~(-241,"Hardware missing: VXI trigger lines as arming source")~"},
      {"PllArmsABurst", 0, 2,
       [](S &s) {
         s.mode.SetMode(eTriggerTriggered, ePulseBurst);
         s.mode.lngArmSource = eArmPll;
       },
       ""},
      {"PllArmsAGate", 0, 2,
       [](S &s) {
         s.mode.SetMode(eTriggerGated, ePulseBurst);
         s.mode.lngArmSource = eArmPll;
       },
       R"~(-221,"Settings conflict: the PLL arms triggered bursts and patterns only")~"},
      {"PllTwice", 0, 2,
       [](S &s) {
         s.mode.SetMode(eTriggerTriggered, ePulsePattern);
         s.mode.lngArmSource = eArmPll;
         s.mode.lngPeriodSource = eSourcePll;
       },
       R"~(-221,"Settings conflict: the PLL cannot be period source and arming source at once")~"},
      {"PllFrequency", 0, 2, [](S &s) { s.mode.dblPllFrequency = 0; },
       R"~(-222,"Data out of range: frequency of the PLL (0 Hz, allowed 0.001 Hz to 3.3e+08 Hz)")~"},
      {"LevelType", 0, 2, [](S &s) { s.levels[1].lngType = 2; },
       R"~(-224,"Illegal parameter value: level type of channel 1 (2, allowed 0, 1)")~"},
      {"HighLevel", 0, 2, [](S &s) { s.levels[1].dblHigh = 20.5; },
       R"~(-222,"Data out of range: high level of channel 1 (20.5 V, allowed -20 V to 20 V)")~"},
      {"LowLevel", 0, 2, [](S &s) { s.levels[2].dblLow = -20.5; },
       R"~(-222,"Data out of range: low level of channel 2 (-20.5 V, allowed -20 V to 20 V)")~"},
      {"CurrentLevel", 0, 2, [](S &s) { s.levels[1].Set(eLevelHighLow, eTypeCurrent, 0.9, 0); },
       R"~(-222,"Data out of range: high level of channel 1 (0.9 A, allowed -0.8 A to 0.8 A)")~"},
      {"EqualLevels", 0, 2, [](S &s) { s.levels[1].Set(eLevelHighLow, eTypeVoltage, 0, 0); }, ""},
      {"LowAboveHigh", 0, 2, [](S &s) { s.levels[1].Set(eLevelHighLow, eTypeVoltage, 0.5, 1.5); },
       R"~(-221,"Settings conflict: low level above high level of channel 1 (1.5 V above 0.5 V)")~"},
      {"NegativeAmplitude", 0, 2, [](S &s) { s.levels[1].Set(eLevelOffsetAmplitude, eTypeVoltage, 1, -1); },
       R"~(-221,"Settings conflict: low level above high level of channel 1 (1.5 V above 0.5 V)")~"},
      {"Load", 0, 2, [](S &s) { s.levels[1].dblLoadCompensation = 0; },
       R"~(-222,"Data out of range: load compensation of channel 1 (0 Ohm, allowed 0.1 Ohm to 1e+06 Ohm)")~"},
      {"LoadMissing", 128, 2, [](S &s) { s.levels[1].dblLoadCompensation = 75; },
       R"~(-241,"Hardware missing: load compensation of channel 1")~"},
      {"Impedance", 0, 2, [](S &s) { s.levels[1].dblImpedance = 75; },
       R"~(-224,"Illegal parameter value: output impedance of channel 1 (75 Ohm, allowed 50 Ohm, 1000 Ohm)")~"},
      {"ImpedanceMissing", 64, 2, [](S &s) { s.levels[2].dblImpedance = 1000; },
       R"~(-241,"Hardware missing: choice of the output impedance of channel 2")~"},
      {"Polarity", 0, 2, [](S &s) { s.levels[1].lngPolarity = 2; },
       R"~(-224,"Illegal parameter value: polarity of channel 1 (2, allowed 0, 1)")~"},
      {"ComplementMissing", 512, 2, [](S &s) { s.levels[1].fComplementOutput = true; },
       R"~(-241,"Hardware missing: complement output of channel 1")~"},
      {"MathMissing", 256, 2, [](S &s) { s.lngChannelMath = 1; },
       R"~(-241,"Hardware missing: adding of the outputs")~"},
      {"MathOfOneChannel", 0, 1, [](S &s) { s.lngChannelMath = 1; },
       R"~(-241,"Hardware missing: adding of the outputs")~"},
      {"Math", 0, 2, [](S &s) { s.lngChannelMath = 2; },
       R"~(-224,"Illegal parameter value: outputs added (2, allowed 0, 1)")~"},
      {"LimitRange", 0, 2, [](S &s) { s.limits[1].dblHighCurrent = 1; },
       R"~(-222,"Data out of range: high current limit of channel 1 (1 A, allowed -0.8 A to 0.8 A)")~"},
      {"LimitOrder", 0, 2, [](S &s) { s.limits[2].dblLowVoltage = 1; },
       R"~(-221,"Settings conflict: low voltage limit of channel 2 above the high voltage limit (1 V above 0.5 V)")~"},
      {"LimitsOff", 0, 2, [](S &s) { s.limits[1].dblHighVoltage = 1; }, ""},
      {"LevelAboveLimit", 0, 2, [](S &s) { s.limits[1].fEnabled = true; },
       R"~(-221,"Settings conflict: high level of channel 1 above the high voltage limit (2.5 V above 0.5 V)")~"},
      {"LevelBelowLimit", 0, 2,
       [](S &s) {
         s.limits[1].fEnabled = true;
         s.levels[1].Set(eLevelHighLow, eTypeCurrent, 0.01, -0.02);
       },
       R"~(-221,"Settings conflict: low level of channel 1 below the low current limit (-0.02 A below -0.01 A)")~"},
      {"LevelsAtTheLimits", 0, 2,
       [](S &s) {
         s.limits[1].fEnabled = true;
         s.levels[1].Set(eLevelHighLow, eTypeVoltage, 0.5, -0.5);
       },
       ""},
      {"ExtThreshold", 0, 2, [](S &s) { s.triggerLevels.extInput.dblThreshold = 11; },
       R"~(-222,"Data out of range: threshold of the external input (11 V, allowed -10 V to 10 V)")~"},
      {"ClockImpedance", 0, 2, [](S &s) { s.triggerLevels.clockInput.dblImpedance = 60; },
       R"~(-224,"Illegal parameter value: impedance of the clock input (60 Ohm, allowed 50 Ohm, 10000 Ohm)")~"},
      {"StrobeLevel", 0, 2, [](S &s) { s.triggerLevels.arrOutLevel[2] = 2; },
       R"~(-224,"Illegal parameter value: level of the strobe output (2, allowed 0, 1)")~"},
      {"TriggerLevel", 0, 2, [](S &s) { s.triggerLevels.arrOutLevel[1] = -1; },
       R"~(-224,"Illegal parameter value: level of the trigger output (-1, allowed 0, 1)")~"},
      {"VxiSource", 0, 2, [](S &s) { s.triggerLevels.lngVxiSource = 3; },
       R"~(-224,"Illegal parameter value: source of the VXI trigger (3, allowed 1, 2)")~"},
      {"VxiLine", 0, 2, [](S &s) { s.triggerLevels.lngVxiLine = 15; },
       R"~(-224,"Illegal parameter value: line of the VXI trigger (15, allowed 5 to 14)")~"},
      {"VxiSourceMissing", 1024, 2, [](S &s) { s.triggerLevels.lngVxiSource = 2; },
       R"~(-241,"Hardware missing: source of the VXI trigger")~"},
      {"VxiLineMissing", 2048, 2, [](S &s) { s.triggerLevels.lngVxiLine = 5; },
       R"~(-241,"Hardware missing: line of the VXI trigger")~"},
      {"PllReference", 0, 2, [](S &s) { s.dblPllReference = 7e6; },
       R"~(-224,"Illegal parameter value: reference of the PLL (7e+06 Hz, allowed 5e+06 Hz, 1e+07 Hz)")~"},
      {"PllReferenceSource", 0, 2, [](S &s) { s.lngPllReferenceSource = 2; },
       R"~(-224,"Illegal parameter value: source of the PLL reference (2, allowed 0, 1)")~"},
  };
}

INSTANTIATE_TEST_SUITE_P(Settings, Rule, testing::ValuesIn(Cases()),
                         [](const auto &rule) { return rule.param.strName; });

}  // namespace
}  // namespace tarvik::simulator
