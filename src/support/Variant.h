#pragma once

#include <string>
#include <variant>

#include "support/Export.h"
#include "support/Types.h"

namespace tarvik {

/// A value whose type is known only at run time: empty, Boolean, Long, Double or text.
using Variant = std::variant<std::monostate, Boolean, Long, Double, std::string>;

/// The one conversion of values to text: empty gives the empty text, a Boolean "True" or
/// "False", a whole number its digits, a Double up to 15 digits with the host's separator.
TARVIK_EXPORT std::string CStr(const Variant &vValue);

/// The value as a number; a Boolean counts as 0 or -1, empty as 0. Error 13 for a text that
/// is no number.
TARVIK_EXPORT Double CDbl(const Variant &vValue);
/// The number of the value, rounded half to even; errors 13 and 6.
TARVIK_EXPORT Long CLng(const Variant &vValue);

inline bool IsEmpty(const Variant &vValue) { return std::holds_alternative<std::monostate>(vValue); }

}  // namespace tarvik
