#pragma once

#include <string>
#include <string_view>

#include "support/Export.h"

namespace tarvik {

/// Text of others as it may stand in a log: characters that control a terminal, begin a line or turn the direction of
/// writing become "\x1B" or "\u202E", and bytes that are no UTF-8 "\xFF".
TARVIK_EXPORT std::string WithoutControls(std::string_view strText);

/// The same with two backslashes for each, so that the text can be told back.
TARVIK_EXPORT std::string Escaped(std::string_view strText);

/// As a string of JSON, with its quotes.
TARVIK_EXPORT std::string JsonString(std::string_view strText);

}  // namespace tarvik
