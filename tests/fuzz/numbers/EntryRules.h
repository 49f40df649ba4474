#pragma once

#include <string>
#include <string_view>

#include "ExactDecimal.h"

namespace tarvik::test {

/// What a field knows when an entry is read.
struct FieldRules {
  std::string strUnit = "V";
  int intMinExponent = -12, intMaxExponent = 12;
  int intShownExponent = 0;  ///< of the prefix on display
  char chSeparator = '.';
  bool fPrefixes = true;  ///< engineering format
};

/// What an entry means, as exact as it was typed.
struct Meaning {
  enum Kind {
    Empty,
    Number,
    Bad,       ///< no digit, or a tail that is neither prefix nor unit
    NoNumber,  ///< a good tail behind what is no number
  } kind = Bad;
  Decimal decimal{};
};

/// Reads an entry by the rules of the field, independently of the code that is tested.
Meaning MeaningOf(std::string strEntry, const FieldRules &rules);

/// The exponent of a prefix letter; 1 for what is none.
int ExponentOfPrefix(std::string_view strPrefix);

}  // namespace tarvik::test
