#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik {

class EngrNumber;

/// How a field writes its value.
class ValueFormat {
 public:
  virtual ~ValueFormat() = default;
  /// Text of the number's value. lngExponent is the exponent of the text shown last; engineering format updates it.
  virtual std::string Text(const EngrNumber &number, Long &lngExponent) const = 0;
};

/// Mantissa of the value; the unit carries the prefix.
const ValueFormat &EngineeringFormat();
/// The value through the format string of the number, or in the general way where that is empty.
const ValueFormat &PlainFormat();

}  // namespace tarvik
