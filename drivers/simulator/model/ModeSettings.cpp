#include "simulator/model/ModeSettings.h"

namespace tarvik::simulator {

void ModeSettings::SetMode(Long lngTrigger, Long lngPulse) {
  lngTriggerMode = lngTrigger;
  lngPulseMode = lngPulse;
  if (lngTrigger == TriggerContinuous && lngArmSource == ArmPll) lngArmSource = ArmExternal;
}

void ModeSettings::SetPeriod(Long lngSource, Long lngSlope) {
  lngPeriodSource = lngSource;
  if (lngSlope != KeepSelector) lngClockSlope = lngSlope;
}

void ModeSettings::SetArming(Long lngSource, Long lngSlope) {
  if (lngSource != KeepArmSource) lngArmSource = lngSource;
  if (lngSlope != KeepSelector) lngArmSlope = lngSlope;
}

void ModeSettings::SetPll(Long lngFormat, Double dblPeriodOrFreq) {
  if (lngArmSource != ArmPll) return;
  // A period of 0 becomes an infinite frequency, which the range check refuses.
  if (lngFormat == PllAsPeriod) dblPllFrequency = 1 / dblPeriodOrFreq;
  if (lngFormat == PllAsFrequency) dblPllFrequency = dblPeriodOrFreq;
}

bool ModeSettings::HasOwnPeriod() const {
  if (lngPeriodSource == PeriodClockInput || lngTriggerMode == TriggerExtWidth) return false;
  return !(lngTriggerMode == TriggerTriggered && lngPulseMode == PulseStream);
}

}  // namespace tarvik::simulator
