#pragma once

#include <string>

#include "instrument/Vocabulary.h"

/// What the lists of the pages carry besides the driver's own values.
namespace tarvik {

/// "VXI ECLT 0" for 5 to "VXI TTLT 7" for 14.
inline std::string VxiLineName(Long eLine) {
  return eLine < eVxiTtlt0 ? "VXI ECLT " + std::to_string(eLine - eVxiEclt0)
                           : "VXI TTLT " + std::to_string(eLine - eVxiTtlt0);
}

/// Frequencies of the PLL reference, hertz.
inline constexpr Long ePllRef5MHz = 5'000'000, ePllRef10MHz = 10'000'000;

}  // namespace tarvik
