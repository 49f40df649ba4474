#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "support/Types.h"

namespace tarvik {

/// The number at the start of a text, found in one pass: blanks, sign, digits with at most one separator, E exponent,
/// blanks. The text must outlive this object.
class NumberText {
 public:
  NumberText(std::string_view strText, char chSeparator);

  /// The text is a number and nothing else.
  bool IsWhole() const { return m_fWhole; }
  bool HasExponent() const { return !m_strExponent.empty(); }
  /// Place in the text behind the last digit of the mantissa; 0 where the text does not begin with a number.
  std::size_t MantissaEnd() const { return m_lngMantissaEnd; }

  /// The number with its own exponent. Error 6 when it is too large for a Double; one too small is 0 or subnormal.
  Double Value() const;
  /// The mantissa times ten to the power of the exponent; rounded once.
  Double MantissaTimesPower(Long lngExponent) const;

 private:
  Double Converted(std::string_view strExponent) const;

  std::string_view m_strMantissa;
  std::string_view m_strExponent;
  std::size_t m_lngMantissaEnd = 0;
  char m_chSeparator;
  bool m_fWhole = false;
};

}  // namespace tarvik
