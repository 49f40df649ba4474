#pragma once

#include "support/Types.h"

namespace tarvik {

/// How the two level fields of a channel are to be read, and where their values come from.
enum LevelFormatEnum : Long {
  eFormatTTL = 0,         ///< high and low, at the levels of TTL
  eFormatHighLow = 1,     ///< high and low
  eFormatOffsetAmpl = 2,  ///< offset and amplitude
  eFormatECL = 3,         ///< high and low, at the levels of ECL
};

}  // namespace tarvik
