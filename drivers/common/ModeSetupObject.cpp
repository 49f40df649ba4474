#include "common/ModeSetupObject.h"

namespace tarvik::driver {

Status ModeSetupObject::SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerContinuous, ePulseBurst);
    s.mode.lngBurstLength = burstLength;
    s.mode.SetPeriod(periodSource, triggerSlope);
  });
}

Status ModeSetupObject::SetContinuousPattern(Long periodSource, Long triggerSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerContinuous, ePulsePattern);
    s.mode.SetPeriod(periodSource, triggerSlope);
  });
}

Status ModeSetupObject::SetContinuousPulses(Long periodSource, Long triggerSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerContinuous, ePulseStream);
    s.mode.SetPeriod(periodSource, triggerSlope);
  });
}

Status ModeSetupObject::SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                      Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerGated, ePulseBurst);
    s.mode.lngBurstLength = burstLength;
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
  });
}

Status ModeSetupObject::SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerGated, ePulsePattern);
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
  });
}

Status ModeSetupObject::SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerGated, ePulseStream);
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
  });
}

Status ModeSetupObject::SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                          Long armSlope, Long pllFormat, Double pllPeriodOrFreq) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerTriggered, ePulseBurst);
    s.mode.lngBurstLength = burstLength;
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
    s.mode.SetPll(pllFormat, pllPeriodOrFreq);
  });
}

Status ModeSetupObject::SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                            Long pllFormat, Double pllPeriodOrFreq) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerTriggered, ePulsePattern);
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
    s.mode.SetPll(pllFormat, pllPeriodOrFreq);
  });
}

Status ModeSetupObject::SetTriggeredPulses(Long armingSource, Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(eTriggerTriggered, ePulseStream);
    s.mode.SetArming(armingSource, armSlope);
  });
}

}  // namespace tarvik::driver
