#pragma once

#include <array>

#include "support/Types.h"

namespace tarvik::simulator {

inline constexpr Long FamilyTtl = 0, FamilyEcl = 1;
inline constexpr Long VxiFromTrigger = 1, VxiFromStrobe = 2, VxiFirstLine = 5, VxiLastLine = 14;
inline constexpr Long OutTrigger = 1, OutStrobe = 2;

/// An input of the trigger system.
struct InputSettings {
  Double dblThreshold = 2.5;    ///< volts
  Double dblImpedance = 10000;  ///< ohms, 50 or 10000
  bool operator==(const InputSettings &) const = default;
};

/// Inputs, auxiliary outputs and VXI trigger of an instrument.
struct TriggerLevelSettings {
  InputSettings extInput;
  InputSettings clockInput;
  ChannelArray<Long> arrOutLevel{FamilyTtl, FamilyTtl};  ///< by OutTrigger, OutStrobe
  Long lngVxiSource = VxiFromTrigger;
  Long lngVxiLine = 7;  ///< TTLT 0
  bool operator==(const TriggerLevelSettings &) const = default;
};

}  // namespace tarvik::simulator
