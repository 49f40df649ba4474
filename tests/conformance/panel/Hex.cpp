#include "Hex.h"

#include "Words.h"

namespace tarvik::paneltest {

namespace {

constexpr std::string_view Digits = "0123456789abcdef";

int DigitOf(char ch) {
  const std::size_t value = Digits.find(ch >= 'A' && ch <= 'F' ? static_cast<char>(ch + 'a' - 'A') : ch);
  if (value == std::string_view::npos) throw BadLine("no hexadecimal digit");
  return static_cast<int>(value);
}

}  // namespace

std::string ToHex(const std::vector<Byte> &arrBytes) {
  std::string strHex;
  for (const Byte byte : arrBytes) {
    strHex += Digits[byte >> 4];
    strHex += Digits[byte & 15];
  }
  return strHex;
}

std::vector<Byte> FromHex(std::string_view strHex) {
  if (strHex.size() % 2 != 0) throw BadLine("odd number of hexadecimal digits");
  std::vector<Byte> arrBytes;
  for (std::size_t i = 0; i < strHex.size(); i += 2)
    arrBytes.push_back(static_cast<Byte>(DigitOf(strHex[i]) * 16 + DigitOf(strHex[i + 1])));
  return arrBytes;
}

}  // namespace tarvik::paneltest
