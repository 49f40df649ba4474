#pragma once

#include <string>
#include <string_view>

namespace tarvik::driver {

// The C library's character classes depend on the locale; headers, numbers and addresses of instruments are ASCII.
constexpr bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }
constexpr bool IsLower(char ch) { return ch >= 'a' && ch <= 'z'; }
constexpr bool IsLetter(char ch) { return (ch >= 'A' && ch <= 'Z') || IsLower(ch); }
constexpr char Upper(char ch) { return IsLower(ch) ? static_cast<char>(ch - 'a' + 'A') : ch; }

inline std::string UpperText(std::string_view strText) {
  std::string strUpper;
  for (const char ch : strText) strUpper += Upper(ch);
  return strUpper;
}

}  // namespace tarvik::driver
