#pragma once

#include "support/Types.h"

namespace tarvik {

/// Contents of the limits page; volts and amperes.
struct udtLimitsInfo {
  ChannelArray<Boolean> fEnabled;  ///< one switch for both quantities of the channel
  ChannelArray<Double> dblHighVoltage;
  ChannelArray<Double> dblLowVoltage;
  ChannelArray<Double> dblHighCurrent;
  ChannelArray<Double> dblLowCurrent;

  bool operator==(const udtLimitsInfo &) const = default;
};

}  // namespace tarvik
