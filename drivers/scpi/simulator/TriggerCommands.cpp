// TRIGger: trigger mode and the clock that makes the period. ARM: what arms a trigger or opens a gate.

#include "scpi/simulator/CommandTable.h"
#include "scpi/simulator/SharedWords.h"
#include "simulator/model/Ranges.h"

namespace tarvik::scpisim {

namespace {

using simulator::Settings;

std::vector<Word> ArmingSources() {
  std::vector<Word> arrSources = VxiLines();
  arrSources.insert(arrSources.end(), {{"EXTernal", eArmExternal}, {"MANual", eArmManual}, {"PLL", eArmPll}});
  return arrSources;
}

}  // namespace

std::vector<Command> TriggerCommands() {
  const Parameter threshold =
      Parameter::Number(Unit::Volt, simulator::ThresholdRange.dblMin, simulator::ThresholdRange.dblMax);
  const Parameter impedance = Parameter::Choice(Unit::Ohm, {50, 10000});
  return {
      Setting(
          ":TRIGger:MODE",
          Parameter::OneWord({{"CONTinuous", eTriggerContinuous},
                              {"TRIGgered", eTriggerTriggered},
                              {"GATed", eTriggerGated},
                              {"EWIDth", eTriggerExtWidth}}),
          [](const Settings &s, Long) { return s.mode.lngTriggerMode; },
          [](Settings &s, Long, Double dblMode) { s.mode.SetMode(static_cast<Long>(dblMode), s.mode.lngPulseMode); }),
      Plain(
          ":TRIGger:COUNt", Parameter::Whole(simulator::BurstRange.dblMin, simulator::BurstRange.dblMax),
          [](auto &s, Long) -> auto & { return s.mode.lngBurstLength; }),
      Plain(
          ":TRIGger:SOURce",
          Parameter::OneWord({{"INTernal", eSourceOscillator}, {"EXTernal", eSourceClkIn}, {"PLL", eSourcePll}}),
          [](auto &s, Long) -> auto & { return s.mode.lngPeriodSource; }),
      Plain(
          ":TRIGger:SLOPe", Parameter::OneWord({{"NEGative", eSlopeFalling}, {"POSitive", eSlopeRising}}),
          [](auto &s, Long) -> auto & { return s.mode.lngClockSlope; }),
      Plain(
          ":TRIGger:LEVel", threshold, [](auto &s, Long) -> auto & { return s.triggerLevels.clockInput.dblThreshold; }),
      Plain(
          ":TRIGger:IMPedance", impedance,
          [](auto &s, Long) -> auto & { return s.triggerLevels.clockInput.dblImpedance; }),
      Plain(
          ":ARM:SOURce", Parameter::OneWord(ArmingSources()),
          [](auto &s, Long) -> auto & { return s.mode.lngArmSource; }),
      Plain(
          ":ARM:SLOPe",
          Parameter::OneWord({{"NEGative", eSlopeFalling}, {"POSitive", eSlopeRising}, {"EITHer", eSlopeBoth}}),
          [](auto &s, Long) -> auto & { return s.mode.lngArmSlope; }),
      Plain(
          ":ARM:FREQuency", Parameter::Number(Unit::Hertz, simulator::PllRange.dblMin, simulator::PllRange.dblMax),
          [](auto &s, Long) -> auto & { return s.mode.dblPllFrequency; }),
      Plain(
          ":ARM:LEVel", threshold, [](auto &s, Long) -> auto & { return s.triggerLevels.extInput.dblThreshold; }),
      Plain(
          ":ARM:IMPedance", impedance, [](auto &s, Long) -> auto & { return s.triggerLevels.extInput.dblImpedance; }),
  };
}

}  // namespace tarvik::scpisim
