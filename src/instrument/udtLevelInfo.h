#pragma once

#include "instrument/Vocabulary.h"

namespace tarvik {

/// Contents of the levels page; volts or amperes as the output type tells. An e-field takes the values of
/// the type in Vocabulary.h that has its name.
struct udtLevelInfo {
  ChannelArray<Long> eOutputLevel;  ///< a read answers in this form
  ChannelArray<Long> eOutputType;
  ChannelArray<Double> dblAmplOrHigh;
  ChannelArray<Double> dblOffsetOrLow;
  ChannelArray<Double> dblLoadCompensation;  ///< ohms
  ChannelArray<Double> dblOutputImpedance;   ///< ohms
  ChannelArray<Long> eOutputPolarity;
  ChannelArray<Boolean> fChannelOutputOn;     ///< normal output
  ChannelArray<Boolean> fChannelOutputInvOn;  ///< complement output
  Long eChannelMath = eMathSeparate;

  bool operator==(const udtLevelInfo &) const = default;
};

}  // namespace tarvik
