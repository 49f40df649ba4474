#pragma once

#include "support/Types.h"

namespace tarvik {

/// Contents of the timing page; times in seconds.
struct udtTimingInfo {
  Double dblFrequency = 0;                    ///< hertz, one for the whole instrument
  ChannelArray<Boolean> fChannelOutputOn;     ///< normal output
  ChannelArray<Boolean> fChannelOutputInvOn;  ///< complement output
  ChannelArray<Boolean> fDoublePulse;
  ChannelArray<Boolean> fAutoCoupleLeTe;  ///< the trailing edge follows the leading edge
  ChannelArray<Double> dblDelay;
  ChannelArray<Double> dblWidth;
  ChannelArray<Double> dblLeading;
  ChannelArray<Double> dblTrailing;

  bool operator==(const udtTimingInfo &) const = default;
};

}  // namespace tarvik
