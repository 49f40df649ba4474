#pragma once

#include <gmp.h>

#include <cstdint>
#include <string>

namespace tarvik::test {

/// A decimal number as its text spells it: the digits, without leading zeros, times a power of ten.
struct Decimal {
  bool fNegative = false;
  std::string strDigits;         ///< empty for 0
  std::int64_t lngExponent = 0;  ///< of the last digit; held to a billion, where all is far beyond a double
};

/// How it was shown that a double is the one nearest to a decimal.
enum class Proof {
  OneRounding,  ///< digits and power of ten are doubles themselves: one operation rounds once
  BigIntegers,  ///< it lies between the midpoints to the neighbours, by integers of any length
  Halfway,      ///< it lies on such a midpoint, and the double is the even one
  Misread,
};

/// Compares doubles with decimals; nothing here converts a text to a double. Keeps memory between its calls.
class ExactDecimal {
 public:
  ExactDecimal();
  ExactDecimal(const ExactDecimal &) = delete;
  ExactDecimal &operator=(const ExactDecimal &) = delete;
  ~ExactDecimal();

  /// Whether the double is what the decimal rounds to, half to even. 0 has no sign here.
  Proof Check(const Decimal &decimal, double dblValue);
  /// Whether the decimal rounds to something beyond the largest double.
  bool Overflows(const Decimal &decimal);

 private:
  /// Below 0 where the magnitude of the decimal is less than lngFactor * 2^intPower, above 0 where it is more.
  int Compare(const Decimal &decimal, std::uint64_t lngFactor, int intPower);

  mpz_t m_decimal, m_binary, m_power;
};

}  // namespace tarvik::test
