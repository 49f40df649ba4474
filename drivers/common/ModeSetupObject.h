#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// The setters of trigger and pulse mode.
class ModeSetupObject final : public SessionObject<kolven::IModeSetup> {
 public:
  explicit ModeSetupObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) override;
  Status TARVIK_CALL SetContinuousPattern(Long periodSource, Long triggerSlope) override;
  Status TARVIK_CALL SetContinuousPulses(Long periodSource, Long triggerSlope) override;
  Status TARVIK_CALL SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                   Long armSlope) override;
  Status TARVIK_CALL SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) override;
  Status TARVIK_CALL SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) override;
  Status TARVIK_CALL SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                       Long armSlope, Long pllFormat, Double pllPeriodOrFreq) override;
  Status TARVIK_CALL SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                         Long pllFormat, Double pllPeriodOrFreq) override;
  Status TARVIK_CALL SetTriggeredPulses(Long armingSource, Long armSlope) override;
};

}  // namespace tarvik::driver
