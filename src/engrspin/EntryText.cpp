#include "engrspin/EntryText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "support/Conversions.h"

namespace tarvik {

namespace {

bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }

/// Nobody types more; what is longer was pasted and may take the slower way.
constexpr std::size_t UsualLength = 64;

/// Text of the number in the C notation, converted at once.
Double Converted(const char *first, const char *last) {
  if (first != last && *first == '+') ++first;
  Double dblValue = 0;
  const auto result = std::from_chars(first, last, dblValue);
  if (result.ec == std::errc{}) return dblValue;
  const auto number = ParseNumber(std::string_view(first, static_cast<std::size_t>(last - first)), '.');
  if (!number) RaiseError(ErrTypeMismatch);
  return *number;
}

Double Convert(std::string_view strBody, std::optional<Long> exponent, char chDecimal) {
  std::array<char, UsualLength + 16> usual;
  std::string strLong;
  char *first = usual.data();
  if (strBody.size() > UsualLength) {
    strLong.resize(strBody.size() + 16);
    first = strLong.data();
  }
  char *last = std::copy(strBody.begin(), strBody.end(), first);
  if (chDecimal != '.') std::replace(first, last, chDecimal, '.');
  if (exponent) {
    *last++ = 'e';
    last = std::to_chars(last, last + 15, *exponent).ptr;
  }
  return Converted(first, last);
}

}  // namespace

std::optional<NumberText> ScanNumber(std::string_view strText, char chDecimal) {
  while (!strText.empty() && strText.front() == ' ') strText.remove_prefix(1);
  while (!strText.empty() && strText.back() == ' ') strText.remove_suffix(1);

  const char *pos = strText.data();
  const char *end = pos + strText.size();
  const auto sign = [&] {
    if (pos != end && (*pos == '+' || *pos == '-')) ++pos;
  };
  const auto digits = [&] {
    const char *from = pos;
    while (pos != end && IsDigit(*pos)) ++pos;
    return pos - from;
  };

  NumberText number{strText, false};
  sign();
  auto count = digits();
  if (pos != end && *pos == chDecimal) {
    ++pos;
    count += digits();
  }
  if (count == 0) return std::nullopt;
  if (pos != end && (*pos == 'E' || *pos == 'e')) {
    ++pos;
    number.fHasExponent = true;
    sign();
    if (digits() == 0) return std::nullopt;
  }
  if (pos != end) return std::nullopt;
  return number;
}

Double NumberWithExponent(std::string_view strText, Long lngExponent, char chDecimal) {
  const auto number = ScanNumber(strText, chDecimal);
  if (!number || number->fHasExponent) RaiseError(ErrTypeMismatch);
  return Convert(number->strBody, lngExponent, chDecimal);
}

Double NumberOf(const NumberText &number, char chDecimal) { return Convert(number.strBody, std::nullopt, chDecimal); }

std::optional<std::string_view> TailOf(std::string_view strText) {
  const auto last = strText.find_last_of("0123456789");
  if (last == std::string_view::npos) return std::nullopt;
  return strText.substr(last + 1);
}

}  // namespace tarvik
