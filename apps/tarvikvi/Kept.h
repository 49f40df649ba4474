#pragma once

#include <string>

namespace tarvik {

/// What the program itself keeps between runs, in the settings of its host. What cannot be read counts as never kept,
/// and what cannot be written is passed over: the panel tells of an unusable settings file when it starts and when it
/// ends.
std::string Kept(const std::string &strSection, const std::string &strKey, const std::string &strDefault);
void Keep(const std::string &strSection, const std::string &strKey, const std::string &strValue);

}  // namespace tarvik
