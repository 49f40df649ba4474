#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvik {

/// How names and values stand in a file of settings: the escapes of the toolkit's own files.

/// A name of a section or key: letters, digits, "_", "-" and "." stand for themselves, others as "%" and two digits.
std::string EscapedName(std::string_view strName);
std::string UnescapedName(std::string_view strName);

/// A value on its one line, in quotes where it would be misread without.
std::string EscapedValue(std::string_view strValue);
/// Empty for what is no value, such as an open quote.
std::optional<std::string> UnescapedValue(std::string_view strValue);

}  // namespace tarvik
