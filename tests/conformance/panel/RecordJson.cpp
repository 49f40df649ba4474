#include "RecordJson.h"

namespace tarvik::paneltest {

Json ToJson(const udtModeInfo &mode) {
  return {
      {"TriggerMode", mode.TriggerMode},
      {"PulseMode", mode.PulseMode},
      {"BurstLength", mode.BurstLength},
      {"PulseType", ToJson(mode.PulseType)},
      {"SignalFormat", ToJson(mode.SignalFormat)},
      {"PeriodSource", mode.PeriodSource},
      {"TriggerSlope", mode.TriggerSlope},
      {"ArmingSource", mode.ArmingSource},
      {"ArmSlope", mode.ArmSlope},
      {"PllFormat", mode.PllFormat},
      {"PllPeriodOrFreq", mode.PllPeriodOrFreq},
  };
}

Json ToJson(const udtTimingInfo &timing) {
  return {
      {"dblFrequency", timing.dblFrequency},
      {"fChannelOutputOn", ToJson(timing.fChannelOutputOn)},
      {"fChannelOutputInvOn", ToJson(timing.fChannelOutputInvOn)},
      {"fDoublePulse", ToJson(timing.fDoublePulse)},
      {"fAutoCoupleLeTe", ToJson(timing.fAutoCoupleLeTe)},
      {"dblDelay", ToJson(timing.dblDelay)},
      {"dblWidth", ToJson(timing.dblWidth)},
      {"dblLeading", ToJson(timing.dblLeading)},
      {"dblTrailing", ToJson(timing.dblTrailing)},
  };
}

Json ToJson(const udtLevelInfo &levels) {
  return {
      {"eOutputLevel", ToJson(levels.eOutputLevel)},
      {"eOutputType", ToJson(levels.eOutputType)},
      {"dblAmplOrHigh", ToJson(levels.dblAmplOrHigh)},
      {"dblOffsetOrLow", ToJson(levels.dblOffsetOrLow)},
      {"dblLoadCompensation", ToJson(levels.dblLoadCompensation)},
      {"dblOutputImpedance", ToJson(levels.dblOutputImpedance)},
      {"eOutputPolarity", ToJson(levels.eOutputPolarity)},
      {"fChannelOutputOn", ToJson(levels.fChannelOutputOn)},
      {"fChannelOutputInvOn", ToJson(levels.fChannelOutputInvOn)},
      {"eChannelMath", levels.eChannelMath},
  };
}

Json ToJson(const udtLimitsInfo &limits) {
  return {
      {"fEnabled", ToJson(limits.fEnabled)},           {"dblHighVoltage", ToJson(limits.dblHighVoltage)},
      {"dblLowVoltage", ToJson(limits.dblLowVoltage)}, {"dblHighCurrent", ToJson(limits.dblHighCurrent)},
      {"dblLowCurrent", ToJson(limits.dblLowCurrent)},
  };
}

Json ToJson(const udtTrgLevelsInfo &levels) {
  return {
      {"dblExtInThreshold", levels.dblExtInThreshold}, {"dblExtInInputImp", levels.dblExtInInputImp},
      {"dblClkInThreshold", levels.dblClkInThreshold}, {"dblClkInInputImp", levels.dblClkInInputImp},
      {"eTriggerOutLevel", levels.eTriggerOutLevel},   {"eStrobeOutLevel", levels.eStrobeOutLevel},
      {"eVxiTriggerSource", levels.eVxiTriggerSource}, {"eVxiTriggerLine", levels.eVxiTriggerLine},
  };
}

}  // namespace tarvik::paneltest
