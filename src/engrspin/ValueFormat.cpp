#include "engrspin/ValueFormat.h"

#include "engrspin/EngrNumber.h"
#include "support/Conversions.h"

namespace tarvik {

const ValueFormat &EngineeringFormat() {
  class Engineering : public ValueFormat {
    std::string Text(const EngrNumber &number, Long &lngExponent) const override {
      std::string strText;
      number.FormatEngr(number.Value(), lngExponent, strText);
      return strText;
    }
  };
  static const Engineering format;
  return format;
}

const ValueFormat &PlainFormat() {
  class Plain : public ValueFormat {
    std::string Text(const EngrNumber &number, Long &) const override {
      const std::string &strFormat = number.NumberFormat();
      return strFormat.empty() ? CStr(number.Value()) : Format(number.Value(), strFormat, number.Decimal());
    }
  };
  static const Plain format;
  return format;
}

}  // namespace tarvik
