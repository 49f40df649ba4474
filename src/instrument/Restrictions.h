#pragma once

#include "support/Types.h"

namespace tarvik {

/// Bits of the capability mask that a driver tells; a set bit means that the model lacks the thing.
inline constexpr Long eLacksTrailingEdge = 4;  ///< the trailing edge always follows the leading edge
inline constexpr Long eLacksImpedance = 64;
inline constexpr Long eLacksLoadCompensation = 128;
inline constexpr Long eLacksChannelMath = 256;
inline constexpr Long eLacksComplement = 512;
inline constexpr Long eLacksVxiSource = 1024;
inline constexpr Long eLacksVxiEnable = 2048;
inline constexpr Long eLacksVxiLines = 4096;  ///< the VXI trigger lines as arming sources
inline constexpr Long eLacksAnyVxi = eLacksVxiSource + eLacksVxiEnable + eLacksVxiLines;
inline constexpr Long eLacksFreeLeadingEdge = 16384;  ///< the leading edge has two fixed values

}  // namespace tarvik
