#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Types.h"

namespace tarvik::paneltest {

/// Lower-case hexadecimal digits, two for each byte.
std::string ToHex(const std::vector<Byte> &arrBytes);
/// The bytes of such a text.
std::vector<Byte> FromHex(std::string_view strHex);

}  // namespace tarvik::paneltest
