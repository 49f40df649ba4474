#pragma once

#include <optional>
#include <string_view>

#include "support/Types.h"

namespace tarvik {

/// A text that is a number: optional blanks around, sign, digits with at most one separator, E exponent.
struct NumberText {
  std::string_view strBody;  ///< without the blanks around
  bool fHasExponent = false;
};

/// The text as a number, or nothing where it is none.
std::optional<NumberText> ScanNumber(std::string_view strText, char chDecimal);

/// The number of the text, times ten to the power of the exponent. Error 13 when the text is no number or
/// brings an exponent of its own, error 6 when it is too large for a Double.
Double NumberWithExponent(std::string_view strText, Long lngExponent, char chDecimal);

/// The number of a text that has been scanned. Error 6 when it is too large for a Double.
Double NumberOf(const NumberText &number, char chDecimal);

/// What stands behind the last digit of the text; nothing where it has no digit.
std::optional<std::string_view> TailOf(std::string_view strText);

}  // namespace tarvik
