#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvik {

/// Escaping of names and values in a settings file, compatible with the toolkit's files.

/// A name of a section or key: letters, digits, "_", "-" and "." stand for themselves, others as "%" and two digits.
std::string EscapedName(std::string_view strName);
std::string UnescapedName(std::string_view strName);

/// A value as one line, quoted where necessary.
std::string EscapedValue(std::string_view strValue);
/// Empty if the text is malformed, such as an unterminated quote.
std::optional<std::string> UnescapedValue(std::string_view strValue);

}  // namespace tarvik
