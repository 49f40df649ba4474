#pragma once

#include <string_view>

#include "scpi/simulator/Parameter.h"

namespace tarvik::scpisim {

/// The power of ten by which a suffix in upper case multiplies: -9 for NS. Throws ScpiFault with -131 for a suffix that
/// is no unit of this quantity, with -138 where no suffix may stand.
int SuffixPower(std::string_view strSuffix, Unit unit);

}  // namespace tarvik::scpisim
