#include "support/modUtilsGen.h"

#include <cstdio>

#include "support/modErrorLog.h"

namespace tarvik {

std::string FmtHex(Long lngValue, Integer intDigits) {
  char text[16];
  std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(lngValue));
  const std::string strText = text;

  if (intDigits % 4 != 0) {
    ShowStopMessage("Num hex digits must be multiple of 4");
    return strText;
  }
  if (intDigits <= 0) {
    ShowStopMessage("Invalid num hex digits");
    return strText;
  }
  const auto width = static_cast<std::size_t>(intDigits);
  if (strText.size() > width) {
    ShowStopMessage("Hex format invalid (FmtHex())");
    return strText;
  }
  return "0x" + std::string(width - strText.size(), '0') + strText;
}

void SetEnabled(Control &objControl, Boolean fEnable) {
  if (objControl.Enabled() != fEnable) objControl.SetEnabled(fEnable);
}

void SetVisible(Control &objControl, Boolean fShow) {
  if (objControl.Visible() != fShow) objControl.SetVisible(fShow);
}

Double MaxDouble(Double dblFirst, Double dblSecond) { return dblFirst > dblSecond ? dblFirst : dblSecond; }

}  // namespace tarvik
