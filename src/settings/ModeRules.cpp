#include "settings/ModeRules.h"

#include "instrument/Vocabulary.h"
#include "settings/ModeMask.h"
#include "settings/modCboTags.h"
#include "support/Conversions.h"

namespace tarvik {

Boolean HasPulseMode(Long eTriggerMode) { return eTriggerMode != eTriggerExtWidth; }

Choices PulseTypes(Boolean fPatternMode, Integer intChan) {
  const std::string strOutput = " Pulses at Output " + std::to_string(intChan);
  if (fPatternMode) return {{"RZ" + strOutput, eFormatRz}, {"NRZ" + strOutput, eFormatNrz}};
  return {{"Single" + strOutput, eTypeSingle}, {"Double" + strOutput, eTypeDouble}};
}

Choices PeriodSources() {
  return {{"Internal Oscillator", eSourceOscillator}, {"Internal PLL", eSourcePll}, {"CLK-IN", eSourceClkIn}};
}

Choices ClockEdges() { return {{"Rising", eSlopeRising}, {"Falling", eSlopeFalling}}; }

Boolean IsClockEdgeOfUse(Integer intModePos, Long ePeriodSource) {
  return IsEnabledAt(ModeMasks::TriggerSlope, intModePos) && ePeriodSource == eSourceClkIn;
}

std::optional<ArmingMeaning> MeaningOfArming(Long eTriggerMode, Long ePulseMode) {
  constexpr const char *NoMeaning = " ";
  switch (eTriggerMode) {
    case eTriggerContinuous: return ArmingMeaning{NoMeaning, NoMeaning, False};
    case eTriggerTriggered: return ArmingMeaning{"Triggered By", nullptr, ePulseMode != ePulseStream};
    case eTriggerGated: return ArmingMeaning{"Gated By", nullptr, False};
    case eTriggerExtWidth: return ArmingMeaning{"Width", NoMeaning, False};
    default: return std::nullopt;
  }
}

Choices ArmingSources(Boolean fPllAllowed, Boolean fVxiLines) {
  Choices arrSources;
  if (!fVxiLines) arrSources.push_back({"Man. Key", eArmManual});
  arrSources.push_back({"External Input", eArmExternal});
  if (fPllAllowed) arrSources.push_back({"Internal PLL", eArmPll});
  if (fVxiLines)
    for (Long eLine = eVxiEclt0; eLine <= eVxiTtlt7; ++eLine) arrSources.push_back({VxiLineName(eLine), eLine});
  return arrSources;
}

std::optional<ArmingLevels> LevelsOfArming(Long eTriggerMode, Long ePulseMode, Long eArmingSource, Long ePeriodSource) {
  if (eArmingSource == eArmPll)
    return ArmingLevels{"PLL Mode", {{"Period", ePllPeriod}, {"Frequency", ePllFrequency}}, True};
  switch (eTriggerMode) {
    case eTriggerContinuous:
    case eTriggerExtWidth: return ArmingLevels{nullptr, {}, False};
    case eTriggerTriggered: {
      ArmingLevels levels{"Trigger Slope", {{"Rising", eSlopeRising}, {"Falling", eSlopeFalling}}, False};
      if (ePeriodSource != eSourcePll || ePulseMode == ePulseStream) levels.arrLevels.push_back({"Both", eSlopeBoth});
      return levels;
    }
    case eTriggerGated:
      return ArmingLevels{
          "Gate Level", {{"High Level", eSlopeRising}, {"Low Level", eSlopeFalling}, {"Always", eSlopeBoth}}, False};
    default: return std::nullopt;
  }
}

std::optional<PllField> PllFieldOf(Boolean fPllLevels, Long lngLevel) {
  if (fPllLevels && lngLevel == ePllPeriod) return PllField{"Period", "s"};
  if (fPllLevels && lngLevel == ePllFrequency) return PllField{"Frequency", "Hz"};
  return std::nullopt;
}

Boolean ClaimsPllTwice(Long eArmingSource, Long ePeriodSource) {
  return eArmingSource == eArmPll && ePeriodSource == eSourcePll;
}

udtModeInfo ToModeInfo(const ModeFields &fields) {
  const bool fPllArms = fields.eArmingSource == eArmPll;
  udtModeInfo mode;
  mode.TriggerMode = fields.eTriggerMode;
  mode.PulseMode = fields.ePulseMode;
  mode.BurstLength = CLng(fields.dblBurstLength);
  mode.PulseType = mode.SignalFormat = fields.ePulseType;
  mode.PeriodSource = fields.ePeriodSource;
  mode.TriggerSlope = fields.eTriggerSlope;
  mode.ArmingSource = fields.eArmingSource;
  mode.ArmSlope = fPllArms ? Long{eKeepSlope} : fields.lngArmingLevel;
  mode.PllFormat = fPllArms ? fields.lngArmingLevel : Long{eKeepPllFormat};
  mode.PllPeriodOrFreq = fPllArms ? fields.dblPllPeriodOrFreq : 0;
  return mode;
}

ModeFields ToModeFields(const udtModeInfo &mode) {
  const bool fPllArms = mode.ArmingSource == eArmPll;
  ModeFields fields;
  fields.eTriggerMode = mode.TriggerMode;
  fields.ePulseMode = mode.PulseMode;
  fields.dblBurstLength = mode.BurstLength;
  fields.ePulseType = mode.PulseMode == ePulsePattern ? mode.SignalFormat : mode.PulseType;
  fields.ePeriodSource = mode.PeriodSource;
  fields.eTriggerSlope = mode.TriggerSlope;
  fields.eArmingSource = mode.ArmingSource;
  fields.lngArmingLevel = fPllArms ? mode.PllFormat : mode.ArmSlope;
  fields.dblPllPeriodOrFreq = fPllArms ? mode.PllPeriodOrFreq : 0;
  return fields;
}

}  // namespace tarvik
