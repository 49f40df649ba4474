#pragma once

#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik::driver {

/// Trigger mode, pulse mode and their sources, with the values of instrument/Vocabulary.h.
struct ModeSettings {
  Long lngTriggerMode = eTriggerContinuous;
  Long lngPulseMode = ePulseStream;
  Long lngBurstLength = 2;  ///< pulses, 2 to 65536
  Long lngPeriodSource = eSourceOscillator;
  Long lngClockSlope = eSlopeRising;
  Long lngArmSource = eArmExternal;
  Long lngArmSlope = eSlopeRising;
  Double dblPllFrequency = 1e6;  ///< hertz

  /// Takes a combination of trigger and pulse mode. Going to continuous frees a PLL that was the arming
  /// source: the one PLL may be wanted as period source there.
  void SetMode(Long lngTrigger, Long lngPulse);
  /// Each takes the selector unless it is the one that keeps the instrument's own.
  void SetPeriod(Long lngSource, Long lngSlope);
  void SetArming(Long lngSource, Long lngSlope);
  /// Another format than the two of PllFormat keeps the frequency. Used only while the PLL arms.
  void SetPll(Long lngFormat, Double dblPeriodOrFreq);

  /// Whether pulses follow the generator's own frequency: not with the clock input, not when each pulse has its
  /// own trigger or width from outside.
  bool HasOwnPeriod() const;
  bool operator==(const ModeSettings &) const = default;
};

}  // namespace tarvik::driver
