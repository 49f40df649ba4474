#include "ValueText.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tarvik::test {

std::string ToHex(const std::vector<unsigned char> &arrBytes) {
  constexpr std::string_view Digits = "0123456789abcdef";
  std::string strHex;
  for (const unsigned char byte : arrBytes) {
    strHex += Digits[byte >> 4];
    strHex += Digits[byte & 15];
  }
  return strHex;
}

std::vector<unsigned char> FromHex(std::string_view strHex) {
  if (strHex.size() % 2 != 0) throw std::invalid_argument("odd number of hexadecimal digits");
  std::vector<unsigned char> arrBytes;
  for (std::size_t i = 0; i < strHex.size(); i += 2) {
    std::size_t used = 0;
    arrBytes.push_back(static_cast<unsigned char>(std::stoi(std::string(strHex.substr(i, 2)), &used, 16)));
    if (used != 2) throw std::invalid_argument("no hexadecimal digit");
  }
  return arrBytes;
}

std::string ToText17(double dblValue) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", dblValue);
  return text;
}

std::string Quoted(const std::string &strText) { return nlohmann::json(strText).dump(); }

}  // namespace tarvik::test
