#pragma once

#include "support/Types.h"

namespace tarvik {

/// Bits of the capability mask that the transfers obey; a set bit means that the model lacks the thing.
inline constexpr Long LacksSeparateEdges = 4;  ///< the trailing edge always follows the leading edge
inline constexpr Long LacksOutputImpedance = 64;
inline constexpr Long LacksLoadCompensation = 128;
inline constexpr Long LacksChannelMath = 256;
inline constexpr Long LacksComplementOutput = 512;
inline constexpr Long LacksVxiTriggerSource = 1024;
inline constexpr Long LacksVxiTriggerLine = 2048;

}  // namespace tarvik
