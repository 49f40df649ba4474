#pragma once

#include <string>
#include <string_view>

#include "support/Types.h"

namespace tarvik {

inline constexpr Long LowestExponent = -12;
inline constexpr Long HighestExponent = 12;

/// A value is rounded to this many digits before it is truncated to the significant ones.
inline constexpr Long RoundedDigits = 10;

/// The prefix letter of an exponent from -12 to 12, rounded down to a multiple of 3;
/// "*" for any other exponent.
std::string_view PrefixOfExponent(Long lngExponent);

/// The double nearest to 10^lngPower; 0 below the range of a Double, error 6 above it.
Double PowerOfTen(Long lngPower);

/// Mantissa of a value: rounded to 10 significant digits (exact ties away from zero), then cut to
/// lngSignificantDigits (4 to 10), with one to three digits before the separator. lngExponent becomes
/// the multiple of 3 that belongs to it and is left alone for 0. Error 6 for what is not finite.
void FormatMantissa(Double dblValue, Long lngSignificantDigits, char chDecimal, Long &lngExponent,
                    std::string &strText);

}  // namespace tarvik
