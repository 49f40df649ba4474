#pragma once

#include <span>

#include "support/Types.h"

namespace tarvik::driver {

/// Fills the addresses lngStart to lngLast of a pattern (counted from 1, address 1 the highest bit of the first byte)
/// with a pseudo-random sequence of the maximal period 2^lngBase - 1 for lngBase 7 to 14, and leaves all other bits.
/// The sequence begins at lngStart. Raises Rejected for a base or addresses out of range or beyond the bytes.
void FillPrbs(std::span<Byte> bytes, Long lngStart, Long lngLast, Long lngBase);

}  // namespace tarvik::driver
