#include "common/ModeSettings.h"

namespace tarvik::driver {

void ModeSettings::SetMode(Long lngTrigger, Long lngPulse) {
  lngTriggerMode = lngTrigger;
  lngPulseMode = lngPulse;
  if (lngTrigger == eTriggerContinuous && lngArmSource == eArmPll) lngArmSource = eArmExternal;
}

void ModeSettings::SetPeriod(Long lngSource, Long lngSlope) {
  lngPeriodSource = lngSource;
  if (lngSlope != eKeepSlope) lngClockSlope = lngSlope;
}

void ModeSettings::SetArming(Long lngSource, Long lngSlope) {
  if (lngSource != eKeepArmingSource) lngArmSource = lngSource;
  if (lngSlope != eKeepSlope) lngArmSlope = lngSlope;
}

void ModeSettings::SetPll(Long lngFormat, Double dblPeriodOrFreq) {
  if (lngArmSource != eArmPll) return;
  // A period of 0 becomes an infinite frequency, which the range check refuses.
  if (lngFormat == ePllPeriod) dblPllFrequency = 1 / dblPeriodOrFreq;
  if (lngFormat == ePllFrequency) dblPllFrequency = dblPeriodOrFreq;
}

bool ModeSettings::HasOwnPeriod() const {
  if (lngPeriodSource == eSourceClkIn || lngTriggerMode == eTriggerExtWidth) return false;
  return !(lngTriggerMode == eTriggerTriggered && lngPulseMode == ePulseStream);
}

}  // namespace tarvik::driver
