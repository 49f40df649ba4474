#include "ExactDecimal.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>

namespace tarvik::test {

namespace {

/// Powers of ten that are doubles: 5^22 has 52 bits.
constexpr std::array ExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
/// So many digits are less than 2^53.
constexpr std::size_t ExactDigits = 15;

constexpr std::uint64_t ImplicitBit = std::uint64_t{1} << 52;
/// Power of two of the last bit of subnormal numbers, and of those beyond the largest.
constexpr int LowestPower = -1074, HighestPower = 971;
/// No decimal with its first digit outside of these powers of ten is near a double other than 0.
constexpr std::int64_t LowestDecade = -400, HighestDecade = 400;

/// Power of ten of the first digit.
std::int64_t Decade(const Decimal &decimal) {
  return decimal.lngExponent + static_cast<std::int64_t>(decimal.strDigits.size()) - 1;
}

bool RoundsOnce(const Decimal &decimal) {
  return decimal.strDigits.size() <= ExactDigits &&
         std::llabs(decimal.lngExponent) < static_cast<long long>(ExactPowers.size());
}

double RoundedOnce(const Decimal &decimal) {
  double dblDigits = 0;
  // Every intermediate result is a whole number below 2^53.
  for (const char ch : decimal.strDigits) dblDigits = dblDigits * 10 + (ch - '0');
  const double dblPower = ExactPowers[static_cast<std::size_t>(std::llabs(decimal.lngExponent))];
  return decimal.lngExponent < 0 ? dblDigits / dblPower : dblDigits * dblPower;
}

}  // namespace

ExactDecimal::ExactDecimal() { mpz_inits(m_decimal, m_binary, m_power, nullptr); }

ExactDecimal::~ExactDecimal() { mpz_clears(m_decimal, m_binary, m_power, nullptr); }

Proof ExactDecimal::Check(const Decimal &decimal, double dblValue) {
  const double dblMagnitude = std::fabs(dblValue);
  if (!std::isfinite(dblValue)) return Proof::Misread;
  if (decimal.strDigits.empty()) return dblMagnitude == 0 ? Proof::OneRounding : Proof::Misread;
  if (dblMagnitude != 0 && std::signbit(dblValue) != decimal.fNegative) return Proof::Misread;
  if (RoundsOnce(decimal)) return RoundedOnce(decimal) == dblMagnitude ? Proof::OneRounding : Proof::Misread;
  if (Decade(decimal) > HighestDecade) return Proof::Misread;
  if (Decade(decimal) < LowestDecade) return dblMagnitude == 0 ? Proof::BigIntegers : Proof::Misread;

  const auto lngBits = std::bit_cast<std::uint64_t>(dblMagnitude);
  const int intBiased = static_cast<int>(lngBits >> 52);
  const std::uint64_t lngFraction = lngBits & (ImplicitBit - 1);
  const std::uint64_t lngMantissa = intBiased == 0 ? lngFraction : lngFraction | ImplicitBit;
  const int intPower = intBiased == 0 ? LowestPower : LowestPower + intBiased - 1;
  const bool fEven = lngMantissa % 2 == 0;

  const int intAbove = Compare(decimal, 2 * lngMantissa + 1, intPower - 1);
  if (intAbove > 0 || (intAbove == 0 && !fEven)) return Proof::Misread;
  if (intAbove == 0) return Proof::Halfway;
  if (dblMagnitude == 0) return Proof::BigIntegers;
  // Below a power of two the neighbour is half as far away, except among the subnormal numbers.
  const bool fNarrow = lngFraction == 0 && intBiased > 1;
  const int intBelow = fNarrow ? Compare(decimal, 4 * lngMantissa - 1, intPower - 2)
                               : Compare(decimal, 2 * lngMantissa - 1, intPower - 1);
  if (intBelow < 0 || (intBelow == 0 && !fEven)) return Proof::Misread;
  return intBelow == 0 ? Proof::Halfway : Proof::BigIntegers;
}

bool ExactDecimal::Overflows(const Decimal &decimal) {
  if (decimal.strDigits.empty() || Decade(decimal) < LowestDecade) return false;
  if (Decade(decimal) > HighestDecade) return true;
  // Half a bit above the largest double, which is odd: the tie goes up.
  return Compare(decimal, 2 * (2 * ImplicitBit - 1) + 1, HighestPower - 1) >= 0;
}

int ExactDecimal::Compare(const Decimal &decimal, std::uint64_t lngFactor, int intPower) {
  mpz_set_str(m_decimal, decimal.strDigits.c_str(), 10);
  static_assert(sizeof(unsigned long) == sizeof(std::uint64_t));
  mpz_set_ui(m_binary, lngFactor);
  // 10^n is 5^n times 2^n: the fives go to the side where their power is positive, and so do the twos.
  const auto lngFives = static_cast<unsigned long>(std::llabs(decimal.lngExponent));
  mpz_ui_pow_ui(m_power, 5, lngFives);
  mpz_ptr fiveSide = decimal.lngExponent >= 0 ? m_decimal : m_binary;
  mpz_mul(fiveSide, fiveSide, m_power);
  const std::int64_t lngTwos = decimal.lngExponent - intPower;
  mpz_ptr twoSide = lngTwos >= 0 ? m_decimal : m_binary;
  mpz_mul_2exp(twoSide, twoSide, static_cast<mp_bitcnt_t>(std::llabs(lngTwos)));
  return mpz_cmp(m_decimal, m_binary);
}

}  // namespace tarvik::test
