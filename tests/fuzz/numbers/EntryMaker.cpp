#include "EntryMaker.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace tarvik::test {

namespace {

std::string RandomDigits(RandomNumbers &random, int intCount) {
  std::string strDigits;
  for (int i = 0; i < intCount; ++i) strDigits += static_cast<char>('0' + random.Below(10));
  return strDigits;
}

/// A number of so many digits that ends near the units.
Decimal SomeDigits(RandomNumbers &random, int intFewest, int intMost) {
  Decimal decimal;
  decimal.strDigits = RandomDigits(random, random.Between(intFewest, intMost));
  decimal.lngExponent = -random.Between(0, static_cast<int>(decimal.strDigits.size()) + 2);
  return decimal;
}

double RandomDouble(RandomNumbers &random) {
  if (random.OneIn(4)) {
    const auto dblAny = std::bit_cast<double>(random.Next());
    return std::isfinite(dblAny) ? dblAny : 0;
  }
  return std::ldexp(static_cast<double>(random.Next() >> 11), random.Between(-103, 5));
}

/// What to_chars makes of a double, as digits and exponent.
Decimal Printed(RandomNumbers &random) {
  std::array<char, 64> text;
  const double dblValue = std::fabs(RandomDouble(random));
  const auto end = random.OneIn(2)
                       ? std::to_chars(text.begin(), text.end(), dblValue, std::chars_format::scientific)
                       : std::to_chars(text.begin(), text.end(), dblValue, std::chars_format::scientific, 16);
  const std::string_view strText(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
  const auto mark = strText.find('e');
  Decimal decimal;
  for (const char ch : strText.substr(0, mark))
    if (ch != '.') decimal.strDigits += ch;
  int intExponent = 0;
  const auto first = mark + (strText[mark + 1] == '+' ? 2 : 1);
  std::from_chars(strText.data() + first, strText.data() + strText.size(), intExponent);
  decimal.lngExponent = intExponent - static_cast<std::int64_t>(decimal.strDigits.size()) + 1;
  return decimal;
}

/// The ends of the range of a double, and exponents that nobody means.
Decimal AtTheEnds(RandomNumbers &random) {
  Decimal decimal;
  static const std::array<Decimal, 8> Ends = {{{false, "17976931348623157", 292},
                                               {false, "17976931348623158", 292},
                                               {false, "17976931348623159", 292},
                                               {false, "22250738585072014", -324},
                                               {false, "22250738585072011", -324},
                                               {false, "49406564584124654", -340},
                                               {false, "24703282292062327", -340},
                                               {false, "24703282292062328", -340}}};
  if (random.OneIn(2)) {
    decimal = Ends[random.Below(Ends.size())];
    if (random.OneIn(2)) decimal.strDigits += RandomDigits(random, 3), decimal.lngExponent -= 3;
    return decimal;
  }
  decimal = SomeDigits(random, 1, 20);
  constexpr std::array Far = {290, 300, 308, 309, 320, 340, 400, 5000, 123456789};
  const int intFar = Far[random.Below(Far.size())] + random.Between(-9, 9);
  decimal.lngExponent = random.OneIn(2) ? intFar : -intFar;
  return decimal;
}

/// Whether the number can be written without an exponent and stay readable.
bool HasPlainForm(const Decimal &decimal) {
  return decimal.lngExponent <= 20 && decimal.lngExponent + static_cast<std::int64_t>(decimal.strDigits.size()) > -40;
}

/// Digits with a separator in their midst, at their begin or end.
std::string Plain(RandomNumbers &random, Decimal decimal, char chSeparator) {
  std::string &strDigits = decimal.strDigits;
  if (decimal.lngExponent >= 0) {
    strDigits.append(static_cast<std::size_t>(decimal.lngExponent), '0');
    return random.OneIn(8) ? strDigits + chSeparator : strDigits;
  }
  const auto lngDecimals = static_cast<std::size_t>(-decimal.lngExponent);
  if (strDigits.size() < lngDecimals) strDigits.insert(0, lngDecimals - strDigits.size(), '0');
  strDigits.insert(strDigits.size() - lngDecimals, 1, chSeparator);
  const bool fBare = strDigits.front() == chSeparator;
  return fBare && !random.OneIn(4) ? "0" + strDigits : strDigits;
}

/// With an exponent of its own, the separator anywhere.
std::string WithExponent(RandomNumbers &random, const Decimal &decimal, char chSeparator) {
  const auto lngDecimals = static_cast<std::int64_t>(random.Below(decimal.strDigits.size() + 1));
  std::string strText = Plain(random, {false, decimal.strDigits, -lngDecimals}, chSeparator);
  std::int64_t lngExponent = decimal.lngExponent + lngDecimals;
  strText += random.OneIn(2) ? 'e' : 'E';
  if (lngExponent < 0) strText += '-';
  if (lngExponent >= 0 && random.OneIn(2)) strText += '+';
  if (random.OneIn(8)) strText.append(random.Below(5), '0');
  return strText + std::to_string(std::llabs(lngExponent));
}

std::string Blanks(RandomNumbers &random) {
  if (!random.OneIn(8)) return {};
  static constexpr std::string_view Kinds = "    \t\r\n";
  std::string strBlanks;
  for (auto i = random.Between(1, 3); i > 0; --i) strBlanks += Kinds[random.Below(Kinds.size())];
  return strBlanks;
}

/// A few characters are lost, added or others.
void Spoil(RandomNumbers &random, std::string &strText) {
  static constexpr std::string_view Characters = "0123456789.,+-eE  pnumkMGTVsHzKxU%~*\t\xC2\xB5'_";
  for (auto i = random.Between(1, 3); i > 0; --i) {
    const std::size_t place = random.Below(strText.size() + 1);
    const char ch = Characters[random.Below(Characters.size())];
    switch (random.Below(3)) {
      case 0: strText.insert(place, 1, ch); break;
      case 1: strText.erase(place, 1); break;
      default:
        if (place < strText.size()) strText[place] = ch;
    }
  }
}

}  // namespace

std::uint64_t RandomNumbers::Next() {
  m_lngState += 0x9E3779B97F4A7C15u;
  std::uint64_t lngMixed = m_lngState;
  lngMixed = (lngMixed ^ (lngMixed >> 30)) * 0xBF58476D1CE4E5B9u;
  lngMixed = (lngMixed ^ (lngMixed >> 27)) * 0x94D049BB133111EBu;
  return lngMixed ^ (lngMixed >> 31);
}

EntryMaker::EntryMaker() { mpz_inits(m_number, m_power, nullptr); }

EntryMaker::~EntryMaker() { mpz_clears(m_number, m_power, nullptr); }

Decimal EntryMaker::Halfway(RandomNumbers &random, int intLowestPower, int intHighestPower) {
  // Subnormal numbers have fewer bits.
  const int intPower = random.Between(intLowestPower, intHighestPower);
  const std::uint64_t lngMantissa = intPower < -1073  ? random.Next() >> random.Between(12, 63)
                                    : random.OneIn(8) ? std::uint64_t{1} << 52
                                                      : (std::uint64_t{1} << 52) | (random.Next() >> 12);
  mpz_set_ui(m_number, 2 * lngMantissa + 1);
  Decimal decimal;
  const int intTwos = intPower - 1;
  if (intTwos >= 0) {
    mpz_mul_2exp(m_number, m_number, static_cast<mp_bitcnt_t>(intTwos));
  } else {
    mpz_ui_pow_ui(m_power, 5, static_cast<unsigned long>(-intTwos));
    mpz_mul(m_number, m_number, m_power);
    decimal.lngExponent = intTwos;
  }
  decimal.strDigits.resize(mpz_sizeinbase(m_number, 10) + 2);
  mpz_get_str(decimal.strDigits.data(), 10, m_number);
  decimal.strDigits.resize(decimal.strDigits.find('\0'));
  switch (random.Below(4)) {
    case 0: break;
    case 1:  // a hair above
      decimal.strDigits += RandomDigits(random, 3) + "1";
      decimal.lngExponent -= 4;
      break;
    case 2:  // a hair below: the last digit of such a number is not 0
      if (decimal.strDigits.back() == '0') break;
      --decimal.strDigits.back();
      decimal.strDigits += "9" + RandomDigits(random, 2);
      decimal.lngExponent -= 3;
      break;
    default:  // cut off
      const std::size_t lngKept = 17 + random.Below(8);
      if (lngKept >= decimal.strDigits.size()) break;
      decimal.lngExponent += static_cast<std::int64_t>(decimal.strDigits.size() - lngKept);
      decimal.strDigits.resize(lngKept);
  }
  return decimal;
}

std::string EntryMaker::Sound(RandomNumbers &random, const FieldRules &rules) {
  Decimal decimal;
  const auto lngKind = random.Below(64);
  if (lngKind < 28)
    decimal = SomeDigits(random, 1, 7);
  else if (lngKind < 40)
    decimal = Printed(random);
  else if (lngKind < 48)
    decimal = SomeDigits(random, 8, 25);
  else if (lngKind < 57)
    decimal = Halfway(random, -100, 10);
  else if (lngKind < 58)
    decimal = random.OneIn(2) ? Halfway(random, -1074, -1000) : Halfway(random, 900, 971);
  else if (lngKind < 60)
    decimal = SomeDigits(random, 26, 400);
  else
    decimal = AtTheEnds(random);

  std::string strTail;
  int intTail = 0;
  const bool fTail = random.OneIn(2);
  if (fTail) {
    intTail = random.Between(-4, 4) * 3;
    if (intTail != 0) strTail = std::string(1, "pnum kMGT"[static_cast<std::size_t>(intTail / 3 + 4)]);
    if (intTail == 0 || random.OneIn(2)) strTail += rules.strUnit;
    if (random.OneIn(4)) strTail.insert(0, random.Below(3), ' ');
  }
  // What stands before a tail or the prefix on display is so much smaller that the whole is hard to round.
  Decimal scaled = decimal;
  scaled.lngExponent -= fTail ? intTail : rules.intShownExponent;
  const bool fPlain = (fTail || random.OneIn(2)) && HasPlainForm(scaled);
  std::string strText = random.OneIn(4) ? (random.OneIn(4) ? "+" : "-") : "";
  strText.insert(0, Blanks(random));
  strText += fPlain ? Plain(random, scaled, rules.chSeparator) : WithExponent(random, decimal, rules.chSeparator);
  if (fTail && (fPlain || random.OneIn(16))) strText += strTail;
  return strText + Blanks(random);
}

std::string EntryMaker::Make(RandomNumbers &random, const FieldRules &rules) {
  std::string strText = Sound(random, rules);
  if (random.OneIn(5)) Spoil(random, strText);
  return strText;
}

}  // namespace tarvik::test
