#include "support/Variant.h"

#include "support/Conversions.h"

namespace tarvik {

std::string CStr(const Variant &vValue) {
  struct Text {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(Boolean fValue) const { return CStr(fValue); }
    std::string operator()(Long lngValue) const { return CStr(lngValue); }
    std::string operator()(Double dblValue) const { return CStr(dblValue); }
    std::string operator()(const std::string &strValue) const { return strValue; }
  };
  return std::visit(Text{}, vValue);
}

Double CDbl(const Variant &vValue) {
  struct Number {
    Double operator()(std::monostate) const { return 0; }
    Double operator()(Boolean fValue) const { return fValue.Word(); }
    Double operator()(Long lngValue) const { return lngValue; }
    Double operator()(Double dblValue) const { return dblValue; }
    Double operator()(const std::string &strValue) const { return CDbl(std::string_view(strValue)); }
  };
  return std::visit(Number{}, vValue);
}

Long CLng(const Variant &vValue) { return CLng(CDbl(vValue)); }

}  // namespace tarvik
