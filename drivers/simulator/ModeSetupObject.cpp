#include "simulator/ModeSetupObject.h"

namespace tarvik::simulator {

Status ModeSetupObject::SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerContinuous, PulseBurst);
    s.mode.lngBurstLength = burstLength;
    s.mode.SetPeriod(periodSource, triggerSlope);
  });
}

Status ModeSetupObject::SetContinuousPattern(Long periodSource, Long triggerSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerContinuous, PulsePattern);
    s.mode.SetPeriod(periodSource, triggerSlope);
  });
}

Status ModeSetupObject::SetContinuousPulses(Long periodSource, Long triggerSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerContinuous, PulseStream);
    s.mode.SetPeriod(periodSource, triggerSlope);
  });
}

Status ModeSetupObject::SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                      Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerGated, PulseBurst);
    s.mode.lngBurstLength = burstLength;
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
  });
}

Status ModeSetupObject::SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerGated, PulsePattern);
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
  });
}

Status ModeSetupObject::SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerGated, PulseStream);
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
  });
}

Status ModeSetupObject::SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                          Long armSlope, Long pllFormat, Double pllPeriodOrFreq) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerTriggered, PulseBurst);
    s.mode.lngBurstLength = burstLength;
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
    s.mode.SetPll(pllFormat, pllPeriodOrFreq);
  });
}

Status ModeSetupObject::SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                            Long pllFormat, Double pllPeriodOrFreq) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerTriggered, PulsePattern);
    s.mode.SetPeriod(periodSource, triggerSlope);
    s.mode.SetArming(armingSource, armSlope);
    s.mode.SetPll(pllFormat, pllPeriodOrFreq);
  });
}

Status ModeSetupObject::SetTriggeredPulses(Long armingSource, Long armSlope) {
  return Send([=](Settings &s) {
    s.mode.SetMode(TriggerTriggered, PulseStream);
    s.mode.SetArming(armingSource, armSlope);
  });
}

}  // namespace tarvik::simulator
