#pragma once

#include "bitpattern/ChannelCode.h"
#include "support/Types.h"

namespace tarvik {

/// What last filled a row, and so what fills it again when the pattern grows.
enum Generator : Long {
  eGenFill = 0,          ///< the last level goes on
  eGenFirstBitOnly = 1,  ///< all 0, the first address 1
  eGenLastBitOnly = 2,   ///< all 0, the last address 1
  eGenClock = 3,         ///< parameter: the period in addresses
  eGenPrbs = 4,          ///< parameter: n of the period 2^n - 1
};

/// One row of the view with the record of its generator. The row of both channels has no generator of its own.
struct RowInfo {
  Boolean fNumeric;
  Boolean fRz;
  Long lngGenerator = eGenFill;
  Long lngGenParam = 0;
  Long lngChannel = 0;
  Single sngBaseY = 0;  ///< twips
  bool operator==(const RowInfo &) const = default;
};

}  // namespace tarvik
