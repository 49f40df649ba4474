#pragma once

#include <string>
#include <vector>

#include "support/Types.h"

namespace tarvik {

/// One entry of a list: its text and the driver's value that it stands for.
struct Choice {
  std::string strText;
  Long lngItemData;
  bool operator==(const Choice &) const = default;
};
using Choices = std::vector<Choice>;

}  // namespace tarvik
