#include "ScriptedBlocks.h"

#include <algorithm>

#include "Hex.h"
#include "automation/AutomationArray.h"

namespace tarvik::paneltest {

Status ScriptedPllReference::GetReference(Double *pFreq, Long *pSource) {
  return Leaf("IPllReference.GetReference", Json::array(), [&] {
    *pFreq = Script().Answer("pll", 1);
    *pSource = static_cast<Long>(Script().Answer("pll", 2));
  });
}
Status ScriptedPllReference::SetReference(Double *pFreq, Long source) {
  return Leaf("IPllReference.SetReference", {*pFreq, source});
}

Status ScriptedPatternMemory::CalcPrbs(Long startAddr, Long lastAddr, Long base, automation::AutomationArray **) {
  return Leaf("IPatternMemory.CalcPrbs", {startAddr, lastAddr, base});
}
Status ScriptedPatternMemory::SetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long length) {
  return Leaf("IPatternMemory.SetPattern",
              {channel, form, ToHex(automation::ToByteArray(*ppArray).Elements()), length});
}
Status ScriptedPatternMemory::GetPattern(Long channel, Long form, automation::AutomationArray **ppArray,
                                         Long *pLength) {
  return Leaf("IPatternMemory.GetPattern", {channel, form}, [&] {
    const auto row = static_cast<std::size_t>(std::clamp(channel, Long{1}, Long{3}));
    const PatternScript &pattern = Script().arrRows[row];
    const Long lngLowerBound = *ppArray ? automation::ToByteArray(*ppArray).LowerBound() : 1;
    automation::FreeArray(*ppArray);
    *ppArray = automation::AllocByteArray(lngLowerBound, pattern.arrBytes.data(),
                                          static_cast<std::uint32_t>(pattern.arrBytes.size()));
    *pLength = pattern.lngBits;
  });
}

Status ScriptedAuxOutputs::GetOutLevel(Long which, Long *pValue) {
  return Answer("IAuxOutputs.GetOutLevel", Json::array({which}),
                which == 1 ? "trglev.eTriggerOutLevel" : "trglev.eStrobeOutLevel", pValue);
}
Status ScriptedAuxOutputs::SetOutLevel(Long which, Long value) {
  return Leaf("IAuxOutputs.SetOutLevel", {which, value});
}
Status ScriptedAuxOutputs::GetVxiSource(Long *pValue) {
  return PlainAnswer("IAuxOutputs.GetVxiSource", "trglev.eVxiTriggerSource", pValue);
}
Status ScriptedAuxOutputs::SetVxiSource(Long value) { return Leaf("IAuxOutputs.SetVxiSource", Json::array({value})); }
Status ScriptedAuxOutputs::GetVxiLine(Long *pValue) {
  return PlainAnswer("IAuxOutputs.GetVxiLine", "trglev.eVxiTriggerLine", pValue);
}
Status ScriptedAuxOutputs::SetVxiLine(Long value) { return Leaf("IAuxOutputs.SetVxiLine", Json::array({value})); }

Status ScriptedExtInput::GetImpedance(Double *pValue) {
  return PlainAnswer("IExtInput.GetImpedance", "trglev.dblExtInInputImp", pValue);
}
Status ScriptedExtInput::SetImpedance(Double value) { return Leaf("IExtInput.SetImpedance", Json::array({value})); }
Status ScriptedExtInput::GetThreshold(Double *pValue) {
  return PlainAnswer("IExtInput.GetThreshold", "trglev.dblExtInThreshold", pValue);
}
Status ScriptedExtInput::SetThreshold(Double value) { return Leaf("IExtInput.SetThreshold", Json::array({value})); }

Status ScriptedClockInput::GetImpedance(Double *pValue) {
  return PlainAnswer("IClockInput.GetImpedance", "trglev.dblClkInInputImp", pValue);
}
Status ScriptedClockInput::SetImpedance(Double value) { return Leaf("IClockInput.SetImpedance", Json::array({value})); }
Status ScriptedClockInput::GetSlope(Long *pValue) {
  return PlainAnswer("IClockInput.GetSlope", "mode.TriggerSlope", pValue);
}
Status ScriptedClockInput::GetThreshold(Double *pValue) {
  return PlainAnswer("IClockInput.GetThreshold", "trglev.dblClkInThreshold", pValue);
}
Status ScriptedClockInput::SetThreshold(Double value) { return Leaf("IClockInput.SetThreshold", Json::array({value})); }

Status ScriptedArmSource::GetPllFrequency(Double *pValue) {
  return PlainAnswer("IArmSource.GetPllFrequency", "mode.PllFreq", pValue);
}
Status ScriptedArmSource::GetSlope(Long *pValue) { return PlainAnswer("IArmSource.GetSlope", "mode.ArmSlope", pValue); }
Status ScriptedArmSource::GetSource(Long *pValue) {
  return PlainAnswer("IArmSource.GetSource", "mode.ArmingSource", pValue);
}
Status ScriptedArmSource::SetSource(Long value) { return Leaf("IArmSource.SetSource", Json::array({value})); }

Status ScriptedTriggerSystem::GetBurstLength(Long *pValue) {
  return PlainAnswer("ITriggerSystem.GetBurstLength", "mode.BurstLength", pValue);
}
Status ScriptedTriggerSystem::GetTriggerMode(Long *pValue) {
  return PlainAnswer("ITriggerSystem.GetTriggerMode", "mode.TriggerMode", pValue);
}
Status ScriptedTriggerSystem::SetTriggerMode(Long value) {
  return Leaf("ITriggerSystem.SetTriggerMode", Json::array({value}));
}
Status ScriptedTriggerSystem::GetPeriodSource(Long *pValue) {
  return PlainAnswer("ITriggerSystem.GetPeriodSource", "mode.PeriodSource", pValue);
}

Status ScriptedModeSetup::SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) {
  return Leaf("IModeSetup.SetContinuousBurst", {burstLength, periodSource, triggerSlope});
}
Status ScriptedModeSetup::SetContinuousPattern(Long periodSource, Long triggerSlope) {
  return Leaf("IModeSetup.SetContinuousPattern", {periodSource, triggerSlope});
}
Status ScriptedModeSetup::SetContinuousPulses(Long periodSource, Long triggerSlope) {
  return Leaf("IModeSetup.SetContinuousPulses", {periodSource, triggerSlope});
}
Status ScriptedModeSetup::SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                        Long armSlope) {
  return Leaf("IModeSetup.SetGatedBurst", {burstLength, periodSource, triggerSlope, armingSource, armSlope});
}
Status ScriptedModeSetup::SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Leaf("IModeSetup.SetGatedPattern", {periodSource, triggerSlope, armingSource, armSlope});
}
Status ScriptedModeSetup::SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Leaf("IModeSetup.SetGatedPulses", {periodSource, triggerSlope, armingSource, armSlope});
}
Status ScriptedModeSetup::SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                            Long armSlope, Long pllFormat, Double pllPeriodOrFreq) {
  return Leaf("IModeSetup.SetTriggeredBurst",
              {burstLength, periodSource, triggerSlope, armingSource, armSlope, pllFormat, pllPeriodOrFreq});
}
Status ScriptedModeSetup::SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                              Long pllFormat, Double pllPeriodOrFreq) {
  return Leaf("IModeSetup.SetTriggeredPattern",
              {periodSource, triggerSlope, armingSource, armSlope, pllFormat, pllPeriodOrFreq});
}
Status ScriptedModeSetup::SetTriggeredPulses(Long armingSource, Long armSlope) {
  return Leaf("IModeSetup.SetTriggeredPulses", {armingSource, armSlope});
}

}  // namespace tarvik::paneltest
