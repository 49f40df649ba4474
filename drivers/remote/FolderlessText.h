#pragma once

#include <string>
#include <string_view>

namespace tarvik::remote {

/// The text with nothing of paths but their last parts: what a client learns tells nothing of the server's folders.
std::string WithoutFolders(std::string_view strText);

}  // namespace tarvik::remote
