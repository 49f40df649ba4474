#include "engrspin/EngrFormat.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tarvik {

namespace {

constexpr std::array<std::string_view, 9> Prefixes = {"p", "n", "u", "m", "", "k", "M", "G", "T"};

/// "d.ddddddddde+ddd"
using ScientificText = std::array<char, 24>;

/// Writes the scientific form with nine decimals and hands back its exponent.
int WriteScientific(Double dblMagnitude, ScientificText &text) {
  const char *end = std::to_chars(text.data(), text.data() + text.size(), dblMagnitude, std::chars_format::scientific,
                                  static_cast<int>(RoundedDigits) - 1)
                        .ptr;
  int intExponent = 0;
  for (const char *pos = text.data() + RoundedDigits + 3; pos < end; ++pos)
    intExponent = 10 * intExponent + (*pos - '0');
  return text[RoundedDigits + 2] == '-' ? -intExponent : intExponent;
}

/// Whether the value lies exactly between two numbers of 10 digits. Such a value is an odd multiple of
/// 5 * 10^(exponent - 10), which a Double can be only from 10^-5 to 10^18 and only if its lowest bit is
/// the one of weight 2^(exponent - 10).
bool IsTie(Double dblMagnitude, int intExponent) {
  if (intExponent < -5 || intExponent > 18) return false;
  const auto bits = std::bit_cast<std::uint64_t>(dblMagnitude);
  const std::uint64_t mantissa = (bits & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52);
  const int lowest = std::countr_zero(mantissa);
  if (static_cast<int>(bits >> 52) - 1075 + lowest != intExponent - static_cast<int>(RoundedDigits)) return false;
  std::uint64_t odd = mantissa >> lowest;
  for (int power = intExponent - 9; power > 0; --power) {
    if (odd % 5 != 0) return false;
    odd /= 5;
  }
  return true;
}

}  // namespace

std::string_view PrefixOfExponent(Long lngExponent) {
  if (lngExponent < LowestExponent || lngExponent > HighestExponent) return "*";
  return Prefixes[static_cast<std::size_t>(lngExponent - LowestExponent) / 3];
}

Double PowerOfTen(Long lngPower) {
  if (lngPower > std::numeric_limits<Double>::max_exponent10) RaiseError(ErrOverflow);
  std::array<char, 16> text = {'1', 'e'};
  const auto end = std::to_chars(text.data() + 2, text.data() + text.size(), lngPower).ptr;
  Double dblPower = 0;
  std::from_chars(text.data(), end, dblPower);
  return dblPower;
}

void FormatMantissa(Double dblValue, Long lngSignificantDigits, char chDecimal, Long &lngExponent,
                    std::string &strText) {
  if (!std::isfinite(dblValue)) RaiseError(ErrOverflow);
  const Double dblMagnitude = std::fabs(dblValue);
  ScientificText text;
  int intPower = WriteScientific(dblMagnitude, text);
  // The conversion sends ties to the even digit; the next number above a tie rounds away from zero.
  if (IsTie(dblMagnitude, intPower))
    intPower = WriteScientific(std::nextafter(dblMagnitude, std::numeric_limits<Double>::infinity()), text);

  std::size_t whole = 1;
  if (dblMagnitude != 0) {
    const int intRest = ((intPower % 3) + 3) % 3;
    whole += static_cast<std::size_t>(intRest);
    lngExponent = intPower - intRest;
  }

  std::array<char, RoundedDigits + 2> mantissa;
  std::size_t length = 0;
  if (dblValue < 0) mantissa[length++] = '-';
  for (std::size_t digit = 0; digit < static_cast<std::size_t>(lngSignificantDigits); ++digit) {
    if (digit == whole) mantissa[length++] = chDecimal;
    mantissa[length++] = text[digit == 0 ? 0 : digit + 1];
  }
  strText.assign(mantissa.data(), length);
}

}  // namespace tarvik
