#pragma once

#include "support/Types.h"

namespace tarvik {

/// Contents of the mode page. Enumerated values are the driver's.
struct udtModeInfo {
  Long TriggerMode = 0;             ///< 0 continuous, 1 triggered, 2 gated, 3 external width
  Long PulseMode = 0;               ///< 0 pulse stream, 1 burst, 2 pattern
  Long BurstLength = 0;             ///< pulses in a burst, sent in burst mode only
  ChannelArray<Long> PulseType;     ///< 1 single, 2 double; in use unless in pattern mode
  ChannelArray<Long> SignalFormat;  ///< 1 return to zero, 0 non-return to zero; in use in pattern mode
  Long PeriodSource = 0;            ///< 0 internal oscillator, 1 internal PLL, 2 CLK-IN
  Long TriggerSlope = 0;            ///< 1 rising, 0 falling
  Long ArmingSource = 0;            ///< 1 PLL, 3 external input, 4 key, 5 and 6 ECLT 0 and 1, 7 to 14 TTLT 0 to 7
  Long ArmSlope = 0;                ///< 1 rising or high, 0 falling or low, 2 both or always
  Long PllFormat = 0;               ///< how PllPeriodOrFreq is to be read: 0 period, 1 frequency
  Double PllPeriodOrFreq = 0;       ///< seconds or hertz of the PLL as arming source

  bool operator==(const udtModeInfo &) const = default;
};

}  // namespace tarvik
