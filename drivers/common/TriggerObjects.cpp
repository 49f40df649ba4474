#include "common/TriggerObjects.h"

namespace tarvik::driver {

Status ArmSourceObject::GetPllFrequency(Double *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.dblPllFrequency; });
}
Status ArmSourceObject::GetSlope(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngArmSlope; });
}
Status ArmSourceObject::GetSource(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngArmSource; });
}
Status ArmSourceObject::SetSource(Long value) {
  return Send([value](Settings &s) { s.mode.SetArming(value, eKeepSlope); });
}

Status ClockInputObject::GetSlope(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngClockSlope; });
}

namespace {
void RequireOutput(Long lngWhich) {
  if (lngWhich != eOutTrigger && lngWhich != eOutStrobe)
    throw CallFailure{automation::StatusBadIndex, "There is no auxiliary output " + std::to_string(lngWhich)};
}
}  // namespace

Status AuxOutputsObject::GetOutLevel(Long which, Long *pValue) {
  return Get(pValue, [&](const Settings &s) {
    RequireOutput(which);
    return s.triggerLevels.arrOutLevel[which];
  });
}
Status AuxOutputsObject::SetOutLevel(Long which, Long value) {
  return Run([&] {
    RequireOutput(which);
    m_session->Send([which, value](Settings &s) { s.triggerLevels.arrOutLevel[which] = value; });
  });
}
Status AuxOutputsObject::GetVxiSource(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.triggerLevels.lngVxiSource; });
}
Status AuxOutputsObject::SetVxiSource(Long value) {
  return Send([value](Settings &s) { s.triggerLevels.lngVxiSource = value; });
}
Status AuxOutputsObject::GetVxiLine(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.triggerLevels.lngVxiLine; });
}
Status AuxOutputsObject::SetVxiLine(Long value) {
  return Send([value](Settings &s) { s.triggerLevels.lngVxiLine = value; });
}

Status TriggerSystemObject::GetArmSource(kolven::IArmSource **ppObject) { return Give<ArmSourceObject>(ppObject); }
Status TriggerSystemObject::GetClockInput(kolven::IClockInput **ppObject) { return Give<ClockInputObject>(ppObject); }
Status TriggerSystemObject::GetBurstLength(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngBurstLength; });
}
Status TriggerSystemObject::GetExtInput(kolven::IExtInput **ppObject) { return Give<ExtInputObject>(ppObject); }
Status TriggerSystemObject::GetTriggerMode(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngTriggerMode; });
}
Status TriggerSystemObject::SetTriggerMode(Long value) {
  return Send([value](Settings &s) { s.mode.SetMode(value, s.mode.lngPulseMode); });
}
Status TriggerSystemObject::GetAuxOutputs(kolven::IAuxOutputs **ppObject) { return Give<AuxOutputsObject>(ppObject); }
Status TriggerSystemObject::GetPeriodSource(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngPeriodSource; });
}

}  // namespace tarvik::driver
