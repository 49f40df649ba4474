#pragma once

#include "support/Types.h"

namespace tarvik::simulator {

inline constexpr Long TriggerContinuous = 0, TriggerTriggered = 1, TriggerGated = 2, TriggerExtWidth = 3;
inline constexpr Long PulseStream = 0, PulseBurst = 1, PulsePattern = 2;
inline constexpr Long PeriodOscillator = 0, PeriodPll = 1, PeriodClockInput = 2;
inline constexpr Long ArmPll = 1, ArmExternal = 3, ArmKey = 4, ArmFirstVxiLine = 5, ArmLastVxiLine = 14;
inline constexpr Long SlopeFalling = 0, SlopeRising = 1, SlopeBoth = 2;
inline constexpr Long PllAsPeriod = 0, PllAsFrequency = 1;

/// What a caller sends in a selector that has no choice in its present mode: the instrument keeps its own.
inline constexpr Long KeepSelector = 3, KeepArmSource = 0;

/// How the generator runs, and from what. Values are those of the driver contract.
struct ModeSettings {
  Long lngTriggerMode = TriggerContinuous;
  Long lngPulseMode = PulseStream;
  Long lngBurstLength = 2;  ///< pulses, 2 to 65536
  Long lngPeriodSource = PeriodOscillator;
  Long lngClockSlope = SlopeRising;
  Long lngArmSource = ArmExternal;
  Long lngArmSlope = SlopeRising;
  Double dblPllFrequency = 1e6;  ///< hertz

  /// Takes a combination of trigger and pulse mode. Going to continuous frees a PLL that was the arming
  /// source: the one PLL may be wanted as period source there.
  void SetMode(Long lngTrigger, Long lngPulse);
  /// Each takes the selector unless it says "keep".
  void SetPeriod(Long lngSource, Long lngSlope);
  void SetArming(Long lngSource, Long lngSlope);
  /// Format 0 period in seconds, 1 frequency in hertz; another format keeps the frequency. Used only while the
  /// PLL arms.
  void SetPll(Long lngFormat, Double dblPeriodOrFreq);

  /// Whether pulses follow the generator's own frequency: not with the clock input, not when each pulse has its
  /// own trigger or width from outside.
  bool HasOwnPeriod() const;
  bool operator==(const ModeSettings &) const = default;
};

}  // namespace tarvik::simulator
