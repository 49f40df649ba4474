#pragma once

namespace tarvik::scpisim {

// The C library's character classes depend on the locale, a program message does not.
constexpr bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }
constexpr bool IsLower(char ch) { return ch >= 'a' && ch <= 'z'; }
constexpr bool IsLetter(char ch) { return (ch >= 'A' && ch <= 'Z') || IsLower(ch); }
constexpr char Upper(char ch) { return IsLower(ch) ? static_cast<char>(ch - 'a' + 'A') : ch; }

}  // namespace tarvik::scpisim
