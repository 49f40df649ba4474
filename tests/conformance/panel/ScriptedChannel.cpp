#include "ScriptedChannel.h"

#include <string_view>

namespace tarvik::paneltest {

Status ScriptedEdges::GetCoupling(Long *pValue) {
  return ChannelAnswer("IEdges.GetCoupling", "timing.fAutoCoupleLeTe", pValue);
}
Status ScriptedEdges::SetCoupling(Long value) { return Leaf("IEdges.SetCoupling", {At().lngChannel, value}); }
Status ScriptedEdges::GetLeading(Long *pSelector, Double *pValue) {
  return Answer("IEdges.GetLeading", {At().lngChannel, *pSelector}, "timing.dblLeading", pValue);
}
Status ScriptedEdges::SetLeading(Long *pSelector, Double value) {
  return Leaf("IEdges.SetLeading", {At().lngChannel, *pSelector, value});
}
Status ScriptedEdges::GetTrailing(Long *pSelector, Double *pValue) {
  return Answer("IEdges.GetTrailing", {At().lngChannel, *pSelector}, "timing.dblTrailing", pValue);
}
Status ScriptedEdges::SetTrailing(Long *pSelector, Double value) {
  return Leaf("IEdges.SetTrailing", {At().lngChannel, *pSelector, value});
}

Status ScriptedSinglePulse::GetDelay(Long *pSelector, Double *pValue) {
  return Answer("ISinglePulse.GetDelay", {At().lngChannel, *pSelector}, "timing.dblDelay", pValue);
}
Status ScriptedSinglePulse::SetDelay(Long *pSelector, Double value) {
  return Leaf("ISinglePulse.SetDelay", {At().lngChannel, *pSelector, value});
}

Status ScriptedDoublePulse::GetEnabled(VariantBool *pValue) {
  return ChannelAnswer("IDoublePulse.GetEnabled", "timing.fDoublePulse", pValue);
}
Status ScriptedDoublePulse::GetDelay(Long *pSelector, Double *pValue) {
  return Answer("IDoublePulse.GetDelay", {At().lngChannel, *pSelector}, "timing.dblDelay", pValue);
}
Status ScriptedDoublePulse::SetDelay(Long *pSelector, Double value) {
  return Leaf("IDoublePulse.SetDelay", {At().lngChannel, *pSelector, value});
}

Status ScriptedTiming::GetSinglePulse(kolven::ISinglePulse **ppObject) { return Hand<ScriptedSinglePulse>(ppObject); }
Status ScriptedTiming::GetDoublePulse(kolven::IDoublePulse **ppObject) { return Hand<ScriptedDoublePulse>(ppObject); }
Status ScriptedTiming::GetFrequency(Double *pValue) {
  return ChannelAnswer("IChannelTiming.GetFrequency", "timing.dblFrequency", pValue);
}
Status ScriptedTiming::SetFrequency(Double value) {
  return Leaf("IChannelTiming.SetFrequency", {At().lngChannel, value});
}
Status ScriptedTiming::GetEdges(kolven::IEdges **ppObject) { return Hand<ScriptedEdges>(ppObject); }
Status ScriptedTiming::GetPulseType(Long *pValue) {
  return ChannelAnswer("IChannelTiming.GetPulseType", "mode.PulseType", pValue);
}
Status ScriptedTiming::SetPulseType(Long value) {
  return Leaf("IChannelTiming.SetPulseType", {At().lngChannel, value});
}
Status ScriptedTiming::GetWidth(Double *pValue) {
  return ChannelAnswer("IChannelTiming.GetWidth", "timing.dblWidth", pValue);
}
Status ScriptedTiming::SetWidth(Double value) { return Leaf("IChannelTiming.SetWidth", {At().lngChannel, value}); }

namespace {

/// The switches are read by both the timing and the levels page; each has answers of its own.
const char *SwitchField(const DriverScript &script, const char *strTiming, const char *strLevels) {
  return script.strOperation == "GetLevels" ? strLevels : strTiming;
}

}  // namespace

Status ScriptedLevels::GetComplementOutput(VariantBool *pValue) {
  return ChannelAnswer("IChannelLevels.GetComplementOutput",
                       SwitchField(Script(), "timing.fChannelOutputInvOn", "levels.fChannelOutputInvOn"), pValue);
}
Status ScriptedLevels::SetComplementOutput(VariantBool on) {
  return Leaf("IChannelLevels.SetComplementOutput", {At().lngChannel, IsTrue(on)});
}
Status ScriptedLevels::GetLoadCompensation(Double *pValue) {
  return ChannelAnswer("IChannelLevels.GetLoadCompensation", "levels.dblLoadCompensation", pValue);
}
Status ScriptedLevels::SetLoadCompensation(Double value) {
  return Leaf("IChannelLevels.SetLoadCompensation", {At().lngChannel, value});
}
Status ScriptedLevels::GetImpedance(Double *pValue) {
  return ChannelAnswer("IChannelLevels.GetImpedance", "levels.dblOutputImpedance", pValue);
}
Status ScriptedLevels::SetImpedance(Double value) {
  return Leaf("IChannelLevels.SetImpedance", {At().lngChannel, value});
}
Status ScriptedLevels::GetOutput(VariantBool *pValue) {
  return ChannelAnswer("IChannelLevels.GetOutput",
                       SwitchField(Script(), "timing.fChannelOutputOn", "levels.fChannelOutputOn"), pValue);
}
Status ScriptedLevels::SetOutput(VariantBool on) {
  return Leaf("IChannelLevels.SetOutput", {At().lngChannel, IsTrue(on)});
}
Status ScriptedLevels::GetPolarity(Long *pValue) {
  return ChannelAnswer("IChannelLevels.GetPolarity", "levels.eOutputPolarity", pValue);
}
Status ScriptedLevels::SetPolarity(Long value) { return Leaf("IChannelLevels.SetPolarity", {At().lngChannel, value}); }
Status ScriptedLevels::GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) {
  return Leaf("IChannelLevels.GetLevel", {At().lngChannel, format}, [&] {
    *pType = static_cast<Long>(Script().Answer("levels.eOutputType", At().lngChannel));
    *pAmplOrHigh = Script().Answer("levels.dblAmplOrHigh", At().lngChannel);
    *pOffsetOrLow = Script().Answer("levels.dblOffsetOrLow", At().lngChannel);
  });
}
Status ScriptedLevels::SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) {
  return Leaf("IChannelLevels.SetLevel", {At().lngChannel, format, type, amplOrHigh, offsetOrLow});
}

Status ScriptedLimitPair::GetEnabled(VariantBool *pValue) {
  return Answer("ILimitPair.GetEnabled", {At().lngChannel, At().strQuantity}, "limits.fEnabled", pValue);
}
Status ScriptedLimitPair::SetEnabled(VariantBool enable) {
  return Leaf("ILimitPair.SetEnabled", {At().lngChannel, At().strQuantity, IsTrue(enable)});
}
Status ScriptedLimitPair::Read(const char *strName, const char *strVoltageField, const char *strCurrentField,
                               Double *pValue) const {
  const bool fVoltage = std::string_view(At().strQuantity) == "voltage";
  return Answer(strName, {At().lngChannel, At().strQuantity}, fVoltage ? strVoltageField : strCurrentField, pValue);
}
Status ScriptedLimitPair::GetHigh(Double *pValue) {
  return Read("ILimitPair.GetHigh", "limits.dblHighVoltage", "limits.dblHighCurrent", pValue);
}
Status ScriptedLimitPair::SetHigh(Double value) {
  return Leaf("ILimitPair.SetHigh", {At().lngChannel, At().strQuantity, value});
}
Status ScriptedLimitPair::GetLow(Double *pValue) {
  return Read("ILimitPair.GetLow", "limits.dblLowVoltage", "limits.dblLowCurrent", pValue);
}
Status ScriptedLimitPair::SetLow(Double value) {
  return Leaf("ILimitPair.SetLow", {At().lngChannel, At().strQuantity, value});
}

Status ScriptedChannel::GetCurrentLimits(kolven::ILimitGroup **ppObject) {
  return Hand<ScriptedLimitGroup>(ppObject, {At().script, At().instrument, At().lngChannel, "current"});
}
Status ScriptedChannel::GetVoltageLimits(kolven::ILimitGroup **ppObject) {
  return Hand<ScriptedLimitGroup>(ppObject, {At().script, At().instrument, At().lngChannel, "voltage"});
}
Status ScriptedChannel::GetSignalFormat(Long *pValue) {
  // One leaf with two scripted answers: that of the mode page and that of the pattern page.
  return ChannelAnswer("IChannel.GetSignalFormat", Script().strOperation == "GetRz" ? "rz" : "mode.SignalFormat",
                       pValue);
}
Status ScriptedChannel::SetSignalFormat(Long value) {
  return Leaf("IChannel.SetSignalFormat", {At().lngChannel, value});
}

}  // namespace tarvik::paneltest
