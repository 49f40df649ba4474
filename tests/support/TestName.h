#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace tarvik::test {

/// A text as the name of a test's parameter: what is neither letter nor digit becomes an underscore, however much of it
/// stands in a row.
inline std::string TestName(std::string strText) {
  std::replace_if(
      strText.begin(), strText.end(), [](char ch) { return !std::isalnum(static_cast<unsigned char>(ch)); }, '_');
  const auto inRow = std::unique(strText.begin(), strText.end(), [](char a, char b) { return a == '_' && b == '_'; });
  strText.erase(inRow, strText.end());
  return strText;
}

}  // namespace tarvik::test
