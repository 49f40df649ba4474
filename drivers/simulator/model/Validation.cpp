#include "simulator/model/Validation.h"

#include <utility>

#include "simulator/model/Ranges.h"

namespace tarvik::simulator {

namespace {

constexpr Long WarningNearPeriod = 101, WarningSlowEdge = 102, WarningHighLoad = 103;

/// Fraction of the period above which the output stage has too little time to recover.
constexpr Double NearPeriod = 0.95;
/// Load, ohms, above which the actual levels of an open output differ from those set.
constexpr Double HighLoad = 10000;

std::string OfChannel(const char *strWhat, Long lngChannel) {
  return std::string(strWhat) + " of channel " + std::to_string(lngChannel);
}

bool UsesPllForArming(const ModeSettings &mode) {
  return mode.lngTriggerMode == eTriggerTriggered && mode.lngPulseMode != ePulseStream && mode.lngArmSource == eArmPll;
}

void CheckMode(Findings &findings, const ModeSettings &mode, const InstrumentDescription &description) {
  findings.Between("trigger mode", mode.lngTriggerMode, eTriggerContinuous, eTriggerExtWidth);
  findings.Between("pulse mode", mode.lngPulseMode, ePulseStream, ePulsePattern);
  findings.InRange("burst length", mode.lngBurstLength, BurstRange);
  findings.Between("period source", mode.lngPeriodSource, eSourceOscillator, eSourceClkIn);
  findings.OneOf("clock edge", mode.lngClockSlope, {eSlopeFalling, eSlopeRising});
  const bool fVxiLine = mode.lngArmSource >= eVxiEclt0 && mode.lngArmSource <= eVxiTtlt7;
  if (fVxiLine)
    findings.Present(!description.Lacks(eLacksVxiLines), "VXI trigger lines as arming source");
  else
    findings.OneOf("arming source", mode.lngArmSource, {eArmPll, eArmExternal, eArmManual});
  findings.Between("arming slope", mode.lngArmSlope, eSlopeFalling, eSlopeBoth);
  findings.InRange("frequency of the PLL", mode.dblPllFrequency, PllRange);

  if (mode.lngTriggerMode == eTriggerContinuous) return;
  findings.Agree(mode.lngArmSource != eArmPll || UsesPllForArming(mode),
                 "the PLL arms triggered bursts and patterns only");
  findings.Agree(!(UsesPllForArming(mode) && mode.lngPeriodSource == eSourcePll),
                 "the PLL cannot be period source and arming source at once");
}

void CheckTimes(Findings &findings, const ChannelTiming &timing, Long lngChannel) {
  findings.OneOf(OfChannel("pulse type", lngChannel), timing.lngPulseType, {eTypeSingle, eTypeDouble});
  findings.OneOf(OfChannel("signal format", lngChannel), timing.lngSignalFormat, {eFormatNrz, eFormatRz});
  findings.InRange(OfChannel("delay", lngChannel), timing.DelayInForce(), DelayRange);
  findings.InRange(OfChannel("width", lngChannel), timing.dblWidth, WidthRange);
}

void CheckEdges(Findings &findings, const ChannelTiming &timing, Long lngChannel,
                const InstrumentDescription &description) {
  findings.Present(timing.fCoupled || !description.Lacks(eLacksTrailingEdge),
                   OfChannel("separate trailing edge", lngChannel));
  if (description.Lacks(eLacksFreeLeadingEdge))
    findings.OneOf(OfChannel("leading edge", lngChannel), timing.dblLeading, {FastestEdge, SlowerFixedEdge}, "s");
  else
    findings.InRange(OfChannel("leading edge", lngChannel), timing.dblLeading, EdgeRange);
  if (!timing.fCoupled) findings.InRange(OfChannel("trailing edge", lngChannel), timing.dblTrailing, EdgeRange);
}

/// Whether the channel's pulses have a width of their own: in a pattern only with return to zero.
bool HasWidth(const Settings &settings, Long lngChannel) {
  return settings.mode.lngPulseMode != ePulsePattern || settings.timing[lngChannel].lngSignalFormat == eFormatRz;
}

bool IsDoubleNow(const Settings &settings, Long lngChannel) {
  return settings.mode.lngPulseMode != ePulsePattern && settings.timing[lngChannel].IsDouble();
}

void CheckAgainstPeriod(Findings &findings, const Settings &settings, Long lngChannel) {
  const ChannelTiming &timing = settings.timing[lngChannel];
  if (!HasWidth(settings, lngChannel)) return;
  if (IsDoubleNow(settings, lngChannel))
    findings.Agree(NotAbove(timing.dblWidth, timing.dblDoubleDelay),
                   OfChannel("second pulse begins before the first has ended, width above delay", lngChannel),
                   Quantity(timing.dblWidth, "s") + " above " + Quantity(timing.dblDoubleDelay, "s"));
  // A frequency that is out of range is reported as such, once, and not as a conflict of every channel.
  const bool fFrequencyInRange =
      NotAbove(FrequencyRange.dblMin, settings.dblFrequency) && NotAbove(settings.dblFrequency, FrequencyRange.dblMax);
  if (!settings.mode.HasOwnPeriod() || !fFrequencyInRange) return;
  const Double dblPeriod = 1 / settings.dblFrequency;
  const Double dblEnd = timing.DelayInForce() + timing.dblWidth;
  findings.Agree(NotAbove(dblEnd, dblPeriod), OfChannel("period below delay plus width", lngChannel),
                 Quantity(dblPeriod, "s") + " below " + Quantity(dblEnd, "s"));
}

void CheckLevels(Findings &findings, const ChannelLevels &levels, Long lngChannel,
                 const InstrumentDescription &description) {
  findings.OneOf(OfChannel("level type", lngChannel), levels.lngType, {eTypeVoltage, eTypeCurrent});
  const Range &range = levels.lngType == eTypeCurrent ? CurrentRange : VoltageRange;
  findings.InRange(OfChannel("high level", lngChannel), levels.dblHigh, range);
  findings.InRange(OfChannel("low level", lngChannel), levels.dblLow, range);
  findings.Agree(NotAbove(levels.dblLow, levels.dblHigh), OfChannel("low level above high level", lngChannel),
                 Quantity(levels.dblLow, range.strUnit) + " above " + Quantity(levels.dblHigh, range.strUnit));
  findings.InRange(OfChannel("load compensation", lngChannel), levels.dblLoadCompensation, LoadRange);
  findings.OneOf(OfChannel("output impedance", lngChannel), levels.dblImpedance, {50.0, 1000.0}, "Ohm");
  findings.OneOf(OfChannel("polarity", lngChannel), levels.lngPolarity, {ePolarityNormal, ePolarityComplement});

  const ChannelLevels fixed;
  findings.Present(
      !description.Lacks(eLacksLoadCompensation) || levels.dblLoadCompensation == fixed.dblLoadCompensation,
      OfChannel("load compensation", lngChannel));
  findings.Present(!description.Lacks(eLacksImpedance) || levels.dblImpedance == fixed.dblImpedance,
                   OfChannel("choice of the output impedance", lngChannel));
  findings.Present(!description.Lacks(eLacksComplement) || !levels.fComplementOutput,
                   OfChannel("complement output", lngChannel));
}

struct LimitPair {
  Double dblHigh;
  Double dblLow;
  const Range &range;
  const char *strHigh;
  const char *strLow;
};

void CheckLimits(Findings &findings, const ChannelLimits &limits, const ChannelLevels &levels, Long lngChannel) {
  const LimitPair voltage{limits.dblHighVoltage, limits.dblLowVoltage, VoltageRange, "high voltage limit",
                          "low voltage limit"};
  const LimitPair current{limits.dblHighCurrent, limits.dblLowCurrent, CurrentRange, "high current limit",
                          "low current limit"};
  for (const LimitPair &pair : {voltage, current}) {
    findings.InRange(OfChannel(pair.strHigh, lngChannel), pair.dblHigh, pair.range);
    findings.InRange(OfChannel(pair.strLow, lngChannel), pair.dblLow, pair.range);
    findings.Agree(NotAbove(pair.dblLow, pair.dblHigh),
                   OfChannel(pair.strLow, lngChannel) + " above the " + pair.strHigh,
                   Quantity(pair.dblLow, pair.range.strUnit) + " above " + Quantity(pair.dblHigh, pair.range.strUnit));
  }
  if (!limits.fEnabled) return;
  const LimitPair &pair = levels.lngType == eTypeCurrent ? current : voltage;
  findings.Agree(NotAbove(levels.dblHigh, pair.dblHigh),
                 OfChannel("high level", lngChannel) + " above the " + pair.strHigh,
                 Quantity(levels.dblHigh, pair.range.strUnit) + " above " + Quantity(pair.dblHigh, pair.range.strUnit));
  findings.Agree(NotAbove(pair.dblLow, levels.dblLow), OfChannel("low level", lngChannel) + " below the " + pair.strLow,
                 Quantity(levels.dblLow, pair.range.strUnit) + " below " + Quantity(pair.dblLow, pair.range.strUnit));
}

void CheckTriggerLevels(Findings &findings, const TriggerLevelSettings &levels,
                        const InstrumentDescription &description) {
  const std::pair<const char *, const InputSettings &> inputs[] = {{"external input", levels.extInput},
                                                                   {"clock input", levels.clockInput}};
  for (const auto &[strInput, input] : inputs) {
    findings.InRange(std::string("threshold of the ") + strInput, input.dblThreshold, ThresholdRange);
    findings.OneOf(std::string("impedance of the ") + strInput, input.dblImpedance, {50.0, 10000.0}, "Ohm");
  }
  findings.OneOf("level of the trigger output", levels.arrOutLevel[eOutTrigger], {eOutLevelTTL, eOutLevelECL});
  findings.OneOf("level of the strobe output", levels.arrOutLevel[eOutStrobe], {eOutLevelTTL, eOutLevelECL});
  findings.OneOf("source of the VXI trigger", levels.lngVxiSource, {eVxiSourceTrigger, eVxiSourceStrobe});
  findings.Between("line of the VXI trigger", levels.lngVxiLine, eVxiEclt0, eVxiTtlt7);
  const TriggerLevelSettings fixed;
  findings.Present(!description.Lacks(eLacksVxiSource) || levels.lngVxiSource == fixed.lngVxiSource,
                   "source of the VXI trigger");
  findings.Present(!description.Lacks(eLacksVxiEnable) || levels.lngVxiLine == fixed.lngVxiLine,
                   "line of the VXI trigger");
}

void CheckInstrument(Findings &findings, const Settings &settings, const InstrumentDescription &description) {
  findings.InRange("frequency", settings.dblFrequency, FrequencyRange);
  findings.OneOf("outputs added", settings.lngChannelMath, {eMathSeparate, eMathAdded});
  const bool fCanAdd = description.lngChannels > 1 && !description.Lacks(eLacksChannelMath);
  findings.Present(fCanAdd || settings.lngChannelMath == eMathSeparate, "adding of the outputs");
  findings.OneOf("reference of the PLL", settings.dblPllReference, {5e6, 10e6}, "Hz");
  findings.OneOf("source of the PLL reference", settings.lngPllReferenceSource, {ePllRefClkIn, ePllRefInternal});
}

void WarnOfPeriod(std::vector<ScpiError> &warnings, const Settings &settings, Long lngChannel) {
  if (!settings.mode.HasOwnPeriod() || !HasWidth(settings, lngChannel)) return;
  const Double dblPart = settings.timing[lngChannel].dblWidth * settings.dblFrequency;
  if (dblPart > NearPeriod)
    warnings.push_back({WarningNearPeriod, OfChannel("Width", lngChannel) + " close to the period",
                        Quantity(dblPart * 100, "percent")});
}

void WarnOfOutput(std::vector<ScpiError> &warnings, const Settings &settings, Long lngChannel) {
  const ChannelTiming &timing = settings.timing[lngChannel];
  if (HasWidth(settings, lngChannel) && timing.dblLeading > timing.dblWidth)
    warnings.push_back({WarningSlowEdge, OfChannel("Leading edge", lngChannel) + " longer than the width",
                        "the pulse does not reach its high level"});
  const ChannelLevels &levels = settings.levels[lngChannel];
  if ((levels.fOutput || levels.fComplementOutput) && levels.dblLoadCompensation > HighLoad)
    warnings.push_back({WarningHighLoad, OfChannel("Output", lngChannel) + " on with high load compensation",
                        Quantity(levels.dblLoadCompensation, "Ohm")});
}

}  // namespace

std::vector<ScpiError> Violations(const Settings &settings, const InstrumentDescription &description) {
  Findings findings;
  CheckMode(findings, settings.mode, description);
  CheckInstrument(findings, settings, description);
  for (Long lngChannel = 1; lngChannel <= description.lngChannels; ++lngChannel) {
    CheckTimes(findings, settings.timing[lngChannel], lngChannel);
    CheckEdges(findings, settings.timing[lngChannel], lngChannel, description);
    CheckAgainstPeriod(findings, settings, lngChannel);
    CheckLevels(findings, settings.levels[lngChannel], lngChannel, description);
    CheckLimits(findings, settings.limits[lngChannel], settings.levels[lngChannel], lngChannel);
  }
  CheckTriggerLevels(findings, settings.triggerLevels, description);
  return findings.Take();
}

std::vector<ScpiError> ConditionWarnings(const Settings &settings, const InstrumentDescription &description) {
  std::vector<ScpiError> warnings;
  for (Long lngChannel = 1; lngChannel <= description.lngChannels; ++lngChannel) {
    WarnOfPeriod(warnings, settings, lngChannel);
    WarnOfOutput(warnings, settings, lngChannel);
  }
  return warnings;
}

}  // namespace tarvik::simulator
