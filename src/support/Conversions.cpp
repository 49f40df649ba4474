#include "support/Conversions.h"

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "support/Host.h"
#include "support/NumberText.h"

namespace tarvik {

namespace {

/// Long enough for every finite Double written out in full.
constexpr int MaxExactDecimals = 1074;
constexpr std::size_t ExactBufferSize = 310 + MaxExactDecimals + 4;

/// Decimal digits of a magnitude: value = 0.d1d2d3... * 10^intPoint, no trailing zeros.
struct Decimal {
  std::string strDigits;
  int intPoint = 0;
};

Decimal ExactDecimal(Double dblMagnitude) {
  std::array<char, ExactBufferSize> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), dblMagnitude, std::chars_format::fixed,
                                 MaxExactDecimals)
                       .ptr;
  std::string_view strText(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t point = strText.find('.');
  Decimal result;
  result.strDigits.append(strText.substr(0, point)).append(strText.substr(point + 1));
  result.intPoint = static_cast<int>(point);
  const std::size_t first = result.strDigits.find_first_not_of('0');
  if (first == std::string::npos) return {};
  result.strDigits.erase(0, first);
  result.intPoint -= static_cast<int>(first);
  result.strDigits.erase(result.strDigits.find_last_not_of('0') + 1);
  return result;
}

/// Keeps intCount digits; exact ties go away from zero, since "5" rounds up here.
void Round(Decimal &number, int intCount) {
  if (intCount < 0) {
    number = {};
    return;
  }
  const auto keep = static_cast<std::size_t>(intCount);
  if (number.strDigits.size() <= keep) return;
  const bool fUp = number.strDigits[keep] >= '5';
  number.strDigits.resize(keep);
  if (fUp) {
    std::size_t pos = keep;
    while (pos > 0 && number.strDigits[pos - 1] == '9') number.strDigits[--pos] = '0';
    if (pos > 0) {
      ++number.strDigits[pos - 1];
    } else {
      number.strDigits.insert(number.strDigits.begin(), '1');
      ++number.intPoint;
    }
  }
  const std::size_t last = number.strDigits.find_last_not_of('0');
  number.strDigits.erase(last == std::string::npos ? 0 : last + 1);
  if (number.strDigits.empty()) number.intPoint = 0;
}

/// The digit at 10^intPower, '0' outside of the digits held.
char DigitAt(const Decimal &number, int intPower) {
  const int index = number.intPoint - 1 - intPower;
  return index >= 0 && index < static_cast<int>(number.strDigits.size())
             ? number.strDigits[static_cast<std::size_t>(index)]
             : '0';
}

struct Pattern {
  std::string_view strPrefix, strSuffix;
  int intWholeZeros = 0;      // digits always shown before the separator
  int intFractionZeros = 0;   // digits always shown behind it
  int intFractionDigits = 0;  // digits shown at most behind it
  int intWholePlaces = 0;
  int intExponentDigits = 0;  // 0: no exponent part
  bool fSeparator = false;
};

Pattern ParsePattern(std::string_view strFormat) {
  Pattern pattern;
  const std::size_t first = strFormat.find_first_of("0#.");
  if (first == std::string_view::npos) {
    pattern.strPrefix = strFormat;
    return pattern;
  }
  pattern.strPrefix = strFormat.substr(0, first);
  std::size_t pos = first;
  for (; pos < strFormat.size() && (strFormat[pos] == '0' || strFormat[pos] == '#'); ++pos) {
    ++pattern.intWholePlaces;
    if (strFormat[pos] == '0' || pattern.intWholeZeros > 0) ++pattern.intWholeZeros;
  }
  if (pos < strFormat.size() && strFormat[pos] == '.') {
    pattern.fSeparator = true;
    for (++pos; pos < strFormat.size() && (strFormat[pos] == '0' || strFormat[pos] == '#'); ++pos) {
      ++pattern.intFractionDigits;
      if (strFormat[pos] == '0') pattern.intFractionZeros = pattern.intFractionDigits;
    }
  }
  if (strFormat.substr(pos, 2) == "E+") {
    for (pos += 2; pos < strFormat.size() && strFormat[pos] == '0'; ++pos) ++pattern.intExponentDigits;
  }
  pattern.strSuffix = strFormat.substr(pos);
  return pattern;
}

}  // namespace

std::string CStr(Double dblValue) {
  // The way of most numbers that a page compares with its tags.
  if (std::fabs(dblValue) < 1e9 && dblValue == std::trunc(dblValue)) return CStr(static_cast<Long>(dblValue));
  std::array<char, 40> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), dblValue == 0 ? 0.0 : dblValue,
                                 std::chars_format::general, 15)
                       .ptr;
  std::string strText(buffer.data(), end);
  const char chSeparator = TheHost().DecimalSeparator();
  for (char &ch : strText) {
    if (ch == 'e') ch = 'E';
    if (ch == '.') ch = chSeparator;
  }
  return strText;
}

std::string CStr(Long lngValue) { return std::to_string(lngValue); }

std::string CStr(Boolean fValue) { return fValue ? "True" : "False"; }

std::optional<Double> ParseNumber(std::string_view strText, char chSeparator) {
  const NumberText number(strText, chSeparator);
  return number.IsWhole() ? std::optional(number.Value()) : std::nullopt;
}

bool IsNumeric(std::string_view strText, char chSeparator) { return NumberText(strText, chSeparator).IsWhole(); }

Double CDbl(std::string_view strText) {
  const auto number = ParseNumber(strText, TheHost().DecimalSeparator());
  if (!number) RaiseError(ErrTypeMismatch);
  return *number;
}

namespace {

template <class Whole>
Whole RoundTo(Double dblValue) {
  const Double dblRounded = std::nearbyint(dblValue);  // the default mode is half to even
  if (!(dblRounded >= std::numeric_limits<Whole>::min() && dblRounded <= std::numeric_limits<Whole>::max()))
    RaiseError(ErrOverflow);
  return static_cast<Whole>(dblRounded);
}

}  // namespace

Long CLng(Double dblValue) { return RoundTo<Long>(dblValue); }
Integer CInt(Double dblValue) { return RoundTo<Integer>(dblValue); }
Long CLng(std::string_view strText) { return CLng(CDbl(strText)); }
Integer CInt(std::string_view strText) { return CInt(CDbl(strText)); }

std::string Format(Double dblValue, std::string_view strFormat, char chSeparator) {
  if (!std::isfinite(dblValue)) RaiseError(ErrOverflow);
  const Pattern pattern = ParsePattern(strFormat);
  Decimal number = ExactDecimal(std::fabs(dblValue));

  int intExponent = 0;
  if (pattern.intExponentDigits > 0) {
    Round(number, pattern.intWholePlaces + pattern.intFractionDigits);
    if (!number.strDigits.empty()) intExponent = number.intPoint - pattern.intWholePlaces;
    number.intPoint -= intExponent;
  } else {
    Round(number, number.intPoint + pattern.intFractionDigits);
  }

  std::string strText;
  const int intWhole = std::max({number.strDigits.empty() ? 0 : number.intPoint, pattern.intWholeZeros, 0});
  for (int power = intWhole - 1; power >= 0; --power) strText += DigitAt(number, power);
  if (pattern.fSeparator) {
    int intDecimals = static_cast<int>(number.strDigits.size()) - number.intPoint;
    intDecimals = std::clamp(intDecimals, pattern.intFractionZeros, pattern.intFractionDigits);
    strText += chSeparator;
    for (int power = -1; power >= -intDecimals; --power) strText += DigitAt(number, power);
  }
  if (pattern.intExponentDigits > 0) {
    std::string strExponent = std::to_string(std::abs(intExponent));
    const auto missing = pattern.intExponentDigits - static_cast<int>(strExponent.size());
    if (missing > 0) strExponent.insert(0, static_cast<std::size_t>(missing), '0');
    strText += intExponent < 0 ? "E-" : "E+";
    strText += strExponent;
  }

  std::string strResult;
  if (dblValue < 0 && !number.strDigits.empty()) strResult += '-';
  strResult.append(pattern.strPrefix).append(strText).append(pattern.strSuffix);
  return strResult;
}

std::string Format(Double dblValue, std::string_view strFormat) {
  return Format(dblValue, strFormat, TheHost().DecimalSeparator());
}

std::vector<std::string> Split(std::string_view strText, char chSeparator) {
  std::vector<std::string> arrParts;
  for (;;) {
    const std::size_t pos = strText.find(chSeparator);
    arrParts.emplace_back(strText.substr(0, pos));
    if (pos == std::string_view::npos) return arrParts;
    strText.remove_prefix(pos + 1);
  }
}

std::string Trim(std::string_view strText) {
  const std::size_t first = strText.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(strText.substr(first, strText.find_last_not_of(' ') - first + 1));
}

std::string Replace(std::string_view strText, std::string_view strFind, std::string_view strBy) {
  std::string strResult;
  for (;;) {
    const std::size_t pos = strFind.empty() ? std::string_view::npos : strText.find(strFind);
    strResult.append(strText.substr(0, pos));
    if (pos == std::string_view::npos) return strResult;
    strResult.append(strBy);
    strText.remove_prefix(pos + strFind.size());
  }
}

}  // namespace tarvik
