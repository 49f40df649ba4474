#include "support/NumberText.h"

#include <locale.h>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace tarvik {

namespace {

/// Reads a text from left to right.
class Reader {
 public:
  explicit Reader(std::string_view strText) : m_strText(strText) {}

  std::size_t Place() const { return m_lngPlace; }
  bool AtEnd() const { return m_lngPlace == m_strText.size(); }
  bool Take(std::string_view strOneOf) {
    const bool fThere = !AtEnd() && strOneOf.find(m_strText[m_lngPlace]) != std::string_view::npos;
    if (fThere) ++m_lngPlace;
    return fThere;
  }
  bool TakeAll(std::string_view strOneOf) {
    const std::size_t from = m_lngPlace;
    while (Take(strOneOf)) {
    }
    return m_lngPlace != from;
  }
  std::string_view From(std::size_t lngPlace) const { return m_strText.substr(lngPlace, m_lngPlace - lngPlace); }

 private:
  std::string_view m_strText;
  std::size_t m_lngPlace = 0;
};

constexpr std::string_view Digits = "0123456789", Signs = "+-";

/// strtod in the C locale: tells overflow from underflow, which from_chars does not.
Double OutOfRangeValue(const std::string &strNumber) {
#ifdef _WIN32
  static const _locale_t locale = _create_locale(LC_ALL, "C");
  const Double dblValue = _strtod_l(strNumber.c_str(), nullptr, locale);
#else
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  const Double dblValue = strtod_l(strNumber.c_str(), nullptr, locale);
#endif
  if (std::isinf(dblValue)) RaiseError(ErrOverflow);
  return dblValue;
}

}  // namespace

NumberText::NumberText(std::string_view strText, char chSeparator) : m_chSeparator(chSeparator) {
  Reader text(strText);
  text.TakeAll(" ");
  const std::size_t mantissa = text.Place();
  text.Take(Signs);
  bool fDigits = text.TakeAll(Digits);
  m_strMantissa = text.From(mantissa);
  if (text.Take(std::string_view(&chSeparator, 1)) && text.TakeAll(Digits)) {
    fDigits = true;
    m_strMantissa = text.From(mantissa);
  }
  if (!fDigits) return;
  m_lngMantissaEnd = mantissa + m_strMantissa.size();
  if (text.Take("Ee")) {
    const std::size_t exponent = text.Place();
    text.Take(Signs);
    if (!text.TakeAll(Digits)) return;
    m_strExponent = text.From(exponent);
  }
  text.TakeAll(" ");
  m_fWhole = text.AtEnd();
}

Double NumberText::Value() const { return Converted(m_strExponent); }

Double NumberText::MantissaTimesPower(Long lngExponent) const { return Converted(std::to_string(lngExponent)); }

Double NumberText::Converted(std::string_view strExponent) const {
  // The C notation knows no plus sign before the mantissa.
  std::string strNumber(m_strMantissa.substr(m_strMantissa.starts_with('+') ? 1 : 0));
  std::replace(strNumber.begin(), strNumber.end(), m_chSeparator, '.');
  if (!strExponent.empty()) strNumber.append("e").append(strExponent);
  Double dblValue = 0;
  const auto result = std::from_chars(strNumber.data(), strNumber.data() + strNumber.size(), dblValue);
  return result.ec == std::errc::result_out_of_range ? OutOfRangeValue(strNumber) : dblValue;
}

}  // namespace tarvik
