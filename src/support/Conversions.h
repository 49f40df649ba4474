#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Types.h"

namespace tarvik {

/// Text of a number in the general way: up to 15 significant digits, exponent form
/// ("1.5E-05") below 1e-4 and from 1e15 on, the host's separator.
std::string CStr(Double dblValue);
std::string CStr(Long lngValue);
/// "True" or "False".
std::string CStr(Boolean fValue);

/// Number of a text: blanks around, sign, digits with at most one separator, E exponent.
/// Empty when the text is no number. A number too large for a Double raises error 6,
/// one too small is 0 or a subnormal number.
std::optional<Double> ParseNumber(std::string_view strText, char chSeparator);

/// Whether ParseNumber would take the text as a number (also one too large for a Double).
bool IsNumeric(std::string_view strText, char chSeparator);

/// ParseNumber with the host's separator; error 13 when the text is no number.
Double CDbl(std::string_view strText);

/// Rounded half to even; error 6 outside of the type's range and for what is no number.
Long CLng(Double dblValue);
Integer CInt(Double dblValue);
/// The text's number, rounded. Errors 13 and 6.
Long CLng(std::string_view strText);
Integer CInt(std::string_view strText);

/// The number through a format string of "0", "#", one ".", an exponent part "E+00" and
/// literal characters before and behind ("##0.0##", "0.000000000E+00", "##### ").
/// Rounded once from the exact binary value, exact ties away from zero. A zero gets no
/// minus sign. "inf" and "nan" raise error 6.
std::string Format(Double dblValue, std::string_view strFormat, char chSeparator);
std::string Format(Double dblValue, std::string_view strFormat);

/// Cuts the text at each separator: one entry more than there are separators.
std::vector<std::string> Split(std::string_view strText, char chSeparator);

/// Without leading and trailing blanks.
std::string Trim(std::string_view strText);

/// Every occurrence of the one text replaced by the other.
std::string Replace(std::string_view strText, std::string_view strFind, std::string_view strBy);

}  // namespace tarvik
