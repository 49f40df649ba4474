// SOURce: the pulses of each channel, their levels and limits, and the reference of the PLL.

#include "scpi/simulator/CommandTable.h"
#include "scpi/simulator/SharedWords.h"
#include "simulator/model/Ranges.h"

namespace tarvik::scpisim {

namespace {

using simulator::Settings;

Parameter InRange(Unit unit, const simulator::Range &range) {
  return Parameter::Number(unit, range.dblMin, range.dblMax);
}
Parameter Hertz() { return InRange(Unit::Hertz, simulator::FrequencyRange); }
Parameter Period() {
  return Parameter::Number(Unit::Second, 1 / simulator::FrequencyRange.dblMax, 1 / simulator::FrequencyRange.dblMin);
}

/// Percent, of the narrowest pulse in the longest period.
constexpr Double SmallestDutyCycle = simulator::WidthRange.dblMin * simulator::FrequencyRange.dblMin * 100;

std::vector<Command> Timing() {
  const Parameter delay = InRange(Unit::Second, simulator::DelayRange);
  const Parameter width = InRange(Unit::Second, simulator::WidthRange);
  const Parameter edge = InRange(Unit::Second, simulator::EdgeRange);
  return {
      Plain(
          "[:SOURce]:FREQuency[:CW]", Hertz(), [](auto &s, Long) -> auto & { return s.dblFrequency; }),
      Setting(
          "[:SOURce]:PULSe:PERiod", Period(), [](const Settings &s, Long) { return 1 / s.dblFrequency; },
          [](Settings &s, Long, Double dblPeriod) { s.dblFrequency = 1 / dblPeriod; }),
      Plain(
          "[:SOURce#]:PULSe:DELay", delay, [](auto &s, Long n) -> auto & { return s.timing[n].dblSingleDelay; }),
      Plain(
          "[:SOURce#]:PULSe:DOUBle:DELay", delay, [](auto &s, Long n) -> auto & { return s.timing[n].dblDoubleDelay; }),
      Setting(
          "[:SOURce#]:PULSe:DOUBle[:STATe]", Parameter::Switch(),
          [](const Settings &s, Long n) { return s.timing[n].IsDouble(); },
          [](Settings &s, Long n, Double f) { s.timing[n].SetPulseType(f != 0 ? eTypeDouble : eTypeSingle); }),
      Plain(
          "[:SOURce#]:PULSe:WIDTh", width, [](auto &s, Long n) -> auto & { return s.timing[n].dblWidth; }),
      // Changes the width now; a later change of the period keeps the width.
      Setting(
          "[:SOURce#]:PULSe:DCYCle", Parameter::Number(Unit::Percent, SmallestDutyCycle, 100),
          [](const Settings &s, Long n) { return s.timing[n].dblWidth * s.dblFrequency * 100; },
          [](Settings &s, Long n, Double dblPercent) { s.timing[n].dblWidth = dblPercent / 100 / s.dblFrequency; }),
      Plain(
          "[:SOURce#]:PULSe:TRANsition[:LEADing]", edge,
          [](auto &s, Long n) -> auto & { return s.timing[n].dblLeading; }),
      Setting(
          "[:SOURce#]:PULSe:TRANsition:TRAiling", edge,
          [](const Settings &s, Long n) { return s.timing[n].TrailingInForce(); },
          [](Settings &s, Long n, Double dblEdge) { s.timing[n].dblTrailing = dblEdge; }),
      Plain(
          "[:SOURce#]:PULSe:TRANsition:TRAiling:AUTO", Parameter::Switch(),
          [](auto &s, Long n) -> auto & { return s.timing[n].fCoupled; }),
      Plain(
          "[:SOURce#]:PULSe:POLarity", Polarity(), [](auto &s, Long n) -> auto & { return s.levels[n].lngPolarity; }),
      Plain(
          "[:SOURce]:PULSe:MODE",
          Parameter::OneWord({{"STReam", ePulseStream}, {"BURSt", ePulseBurst}, {"PATTern", ePulsePattern}}),
          [](auto &s, Long) -> auto & { return s.mode.lngPulseMode; }),
  };
}

/// The forms of the two levels: each reads one number from the pair of them and sets it.
struct LevelForm {
  const char *strNode;
  Double (*get)(const simulator::ChannelLevels &);
  void (*set)(simulator::ChannelLevels &, Double);
  bool fSpan;  ///< a difference of levels, from 0 to twice the range
};

void SetSpan(simulator::ChannelLevels &levels, Double dblOffset, Double dblAmplitude) {
  levels.dblHigh = dblOffset + dblAmplitude / 2;
  levels.dblLow = dblOffset - dblAmplitude / 2;
}
Double OffsetOf(const simulator::ChannelLevels &levels) { return (levels.dblHigh + levels.dblLow) / 2; }
Double AmplitudeOf(const simulator::ChannelLevels &levels) { return levels.dblHigh - levels.dblLow; }

constexpr LevelForm LevelForms[] = {
    {":HIGH", [](const simulator::ChannelLevels &l) { return l.dblHigh; },
     [](simulator::ChannelLevels &l, Double dbl) { l.dblHigh = dbl; }, false},
    {":LOW", [](const simulator::ChannelLevels &l) { return l.dblLow; },
     [](simulator::ChannelLevels &l, Double dbl) { l.dblLow = dbl; }, false},
    {":OFFSet", OffsetOf, [](simulator::ChannelLevels &l, Double dbl) { SetSpan(l, dbl, AmplitudeOf(l)); }, false},
    {"[:AMPLitude]", AmplitudeOf, [](simulator::ChannelLevels &l, Double dbl) { SetSpan(l, OffsetOf(l), dbl); }, true},
};

/// What is different for levels in volts and in amperes.
struct LevelUnit {
  const char *strNode;
  Long lngType;
  Unit unit;
  simulator::Range range;
  /// After a reset the levels are volts. DEF in amperes is what these drive through the load of the reset.
  Double dblDefaultFactor;
};

constexpr LevelUnit LevelUnits[] = {
    {":VOLTage", eTypeVoltage, Unit::Volt, simulator::VoltageRange, 1},
    {":CURRent", eTypeCurrent, Unit::Ampere, simulator::CurrentRange, 1.0 / 50},
};

void NeedUnit(const simulator::ChannelLevels &levels, Long lngType) {
  if (levels.lngType != lngType)
    simulator::Reject(ScpiSettingsConflict, lngType == eTypeCurrent ? "Settings conflict: the levels are in volts"
                                                                    : "Settings conflict: the levels are in amperes");
}

Command Level(const LevelUnit &unit, const LevelForm &form) {
  const Parameter parameter = form.fSpan ? Parameter::Number(unit.unit, 0, unit.range.dblMax - unit.range.dblMin)
                                         : InRange(unit.unit, unit.range);
  const std::string strHeader = std::string("[:SOURce#]") + unit.strNode + "[:LEVel][:IMMediate]" + form.strNode;
  Command command = Setting(
      strHeader, parameter,
      [type = unit.lngType, get = form.get](const Settings &s, Long n) {
        NeedUnit(s.levels[n], type);
        return get(s.levels[n]);
      },
      [type = unit.lngType, set = form.set](Settings &s, Long n, Double dblValue) {
        NeedUnit(s.levels[n], type);
        set(s.levels[n], dblValue);
      });
  command.dblDefault = form.get(simulator::ChannelLevels{}) * unit.dblDefaultFactor;
  return command;
}

std::vector<Command> Levels() {
  std::vector<Command> arrLevels{
      Plain(
          "[:SOURce#]:FUNCtion:MODE", Parameter::OneWord({{"VOLTage", eTypeVoltage}, {"CURRent", eTypeCurrent}}),
          [](auto &s, Long n) -> auto & { return s.levels[n].lngType; }),
  };
  for (const LevelUnit &unit : LevelUnits)
    for (const LevelForm &form : LevelForms) arrLevels.push_back(Level(unit, form));
  return arrLevels;
}

std::vector<Command> Limits() {
  const Parameter volts = InRange(Unit::Volt, simulator::VoltageRange);
  const Parameter amperes = InRange(Unit::Ampere, simulator::CurrentRange);
  const auto fEnabled = [](auto &s, Long n) -> auto & { return s.limits[n].fEnabled; };
  return {
      Plain("[:SOURce#]:VOLTage:LIMit:STATe", Parameter::Switch(), fEnabled),
      Plain("[:SOURce#]:CURRent:LIMit:STATe", Parameter::Switch(), fEnabled),
      Plain(
          "[:SOURce#]:VOLTage:LIMit:HIGH", volts, [](auto &s, Long n) -> auto & { return s.limits[n].dblHighVoltage; }),
      Plain(
          "[:SOURce#]:VOLTage:LIMit:LOW", volts, [](auto &s, Long n) -> auto & { return s.limits[n].dblLowVoltage; }),
      Plain(
          "[:SOURce#]:CURRent:LIMit:HIGH", amperes,
          [](auto &s, Long n) -> auto & { return s.limits[n].dblHighCurrent; }),
      Plain(
          "[:SOURce#]:CURRent:LIMit:LOW", amperes, [](auto &s, Long n) -> auto & { return s.limits[n].dblLowCurrent; }),
  };
}

std::vector<Command> Reference() {
  return {
      Plain(
          "[:SOURce]:ROSCillator:SOURce",
          Parameter::OneWord({{"INTernal", ePllRefInternal}, {"EXTernal", ePllRefClkIn}}),
          [](auto &s, Long) -> auto & { return s.lngPllReferenceSource; }),
      Plain(
          "[:SOURce]:ROSCillator:EXTernal:FREQuency", Parameter::Choice(Unit::Hertz, {5e6, 10e6}),
          [](auto &s, Long) -> auto & { return s.dblPllReference; }),
  };
}

}  // namespace

std::vector<Command> SourceCommands() {
  std::vector<Command> arrCommands;
  for (const auto part : {Timing, Levels, Limits, Reference})
    for (Command &command : part()) arrCommands.push_back(std::move(command));
  return arrCommands;
}

}  // namespace tarvik::scpisim
