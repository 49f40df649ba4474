#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvik::test {

/// Lower-case hexadecimal digits of the bytes, and back. An odd or wrong text raises std::invalid_argument.
std::string ToHex(const std::vector<unsigned char> &arrBytes);
std::vector<unsigned char> FromHex(std::string_view strHex);

/// The number without loss, in the form "%.17g".
std::string ToText17(double dblValue);

/// The text in quotation marks, as JSON writes it.
std::string Quoted(const std::string &strText);

}  // namespace tarvik::test
