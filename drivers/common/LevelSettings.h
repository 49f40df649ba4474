#pragma once

#include <utility>

#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik::driver {

/// Levels and output switches of one channel.
///
/// Two numbers describe the levels, in one of two formats:
///
///     eLevelHighLow:          first = high level               second = low level
///     eLevelOffsetAmplitude:  first = offset (high + low) / 2  second = amplitude high - low
///
/// The order of the latter is the panel's: its first field is captioned "Offset" and its second "Amplitude", and it
/// sends and shows them in this order without a swap. The names of the contract's arguments (amplOrHigh,
/// offsetOrLow) suggest the opposite order; an instrument that followed the names would show the amplitude under
/// "Offset". The instrument keeps high and low, so that every format tells the same levels.
struct ChannelLevels {
  Long lngType = eTypeVoltage;  ///< unit of both levels
  Double dblHigh = 2.5;
  Double dblLow = 0;
  Double dblLoadCompensation = 50;  ///< ohms
  Double dblImpedance = 50;         ///< ohms
  Long lngPolarity = ePolarityNormal;
  bool fOutput = false;
  bool fComplementOutput = false;

  /// Takes both levels; raises Rejected for an unknown format.
  void Set(Long lngFormat, Long lngLevelType, Double dblFirst, Double dblSecond);
  /// Both numbers in the format asked for; raises Rejected for an unknown format.
  std::pair<Double, Double> Get(Long lngFormat) const;
  bool operator==(const ChannelLevels &) const = default;
};

/// Limits of one channel. One switch serves the voltage and the current pair.
struct ChannelLimits {
  bool fEnabled = false;
  Double dblHighVoltage = 0.5;
  Double dblLowVoltage = -0.5;
  Double dblHighCurrent = 0.01;
  Double dblLowCurrent = -0.01;
  bool operator==(const ChannelLimits &) const = default;
};

}  // namespace tarvik::driver
