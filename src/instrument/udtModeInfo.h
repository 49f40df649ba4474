#pragma once

#include "instrument/Vocabulary.h"

namespace tarvik {

/// Contents of the mode page. A Long takes the values of the type in Vocabulary.h that has its name.
struct udtModeInfo {
  Long TriggerMode = eTriggerContinuous;
  Long PulseMode = ePulseStream;
  Long BurstLength = 0;             ///< pulses in a burst, sent in burst mode only
  ChannelArray<Long> PulseType;     ///< in use unless in pattern mode
  ChannelArray<Long> SignalFormat;  ///< in use in pattern mode
  Long PeriodSource = eSourceOscillator;
  Long TriggerSlope = eSlopeFalling;
  Long ArmingSource = eKeepArmingSource;  ///< VxiLine too
  Long ArmSlope = eSlopeFalling;
  Long PllFormat = ePllPeriod;  ///< how PllPeriodOrFreq is to be read
  Double PllPeriodOrFreq = 0;   ///< seconds or hertz of the PLL as arming source

  bool operator==(const udtModeInfo &) const = default;
};

}  // namespace tarvik
