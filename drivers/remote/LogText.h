#pragma once

#include <string>
#include <string_view>

namespace tarvik::remote {

/// The text as it may stand in a log: characters that control a terminal, begin a line or turn the direction of writing
/// become "\x1B" or "\u202E", bytes that are no UTF-8 "\xFF", and a backslash becomes two.
std::string Escaped(std::string_view strText);

/// As a string of JSON, with its quotes.
std::string JsonString(std::string_view strText);

/// The text with nothing of paths but their last parts: what a client learns tells nothing of the server's folders.
std::string WithoutFolders(std::string_view strText);

}  // namespace tarvik::remote
