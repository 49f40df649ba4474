#pragma once

#include "support/Types.h"

namespace tarvik {

/// Contents of the levels page; volts or amperes as the output type tells.
struct udtLevelInfo {
  ChannelArray<Long> eOutputLevel;  ///< 1 high and low, 0 amplitude and offset; a read answers in this form
  ChannelArray<Long> eOutputType;   ///< 0 voltage, 1 current
  ChannelArray<Double> dblAmplOrHigh;
  ChannelArray<Double> dblOffsetOrLow;
  ChannelArray<Double> dblLoadCompensation;  ///< ohms
  ChannelArray<Double> dblOutputImpedance;   ///< ohms
  ChannelArray<Long> eOutputPolarity;
  ChannelArray<Boolean> fChannelOutputOn;     ///< normal output
  ChannelArray<Boolean> fChannelOutputInvOn;  ///< complement output
  Long eChannelMath = 0;                      ///< 0 separate outputs, 1 outputs added at output 1

  bool operator==(const udtLevelInfo &) const = default;
};

}  // namespace tarvik
