#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace tarvik {

/// The name by which the driver's list has an instrument. A driver may put in parentheses behind a name where the
/// instrument is; users need not write that as long as one instrument only has the name. Empty for a name that none
/// has.
inline std::optional<std::string> ListedName(const std::vector<std::string> &arrListed, const std::string &strName) {
  if (std::ranges::find(arrListed, strName) != arrListed.end()) return strName;
  const auto isMeant = [&](const std::string &strListed) { return strListed.starts_with(strName + " ("); };
  if (std::ranges::count_if(arrListed, isMeant) != 1) return std::nullopt;
  return *std::ranges::find_if(arrListed, isMeant);
}

}  // namespace tarvik
