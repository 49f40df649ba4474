#include "common/ScpiError.h"

#include <algorithm>
#include <charconv>

namespace tarvik::driver {

namespace {

std::string WithoutSeparators(std::string strText) {
  std::replace(strText.begin(), strText.end(), ';', ',');
  std::replace(strText.begin(), strText.end(), '"', '\'');
  return strText;
}

}  // namespace

std::string ScpiError::Entry(bool fVerbose) const {
  std::string strWords = strText;
  if (fVerbose && !strDetail.empty()) strWords += " (" + strDetail + ")";
  return std::to_string(lngNumber) + ",\"" + WithoutSeparators(strWords) + "\"";
}

std::string JoinEntries(const std::vector<ScpiError> &arrErrors, bool fVerbose) {
  std::string strAll;
  for (const ScpiError &error : arrErrors) {
    if (!strAll.empty()) strAll += ';';
    strAll += error.Entry(fVerbose);
  }
  return strAll;
}

void Reject(Long lngNumber, std::string strText, std::string strDetail) {
  throw Rejected({ScpiError{lngNumber, std::move(strText), std::move(strDetail)}});
}

std::string Quantity(Double dblValue, const char *strUnit) {
  char text[40];
  const auto end = std::to_chars(text, text + sizeof text, dblValue).ptr;
  std::string strQuantity(text, end);
  if (*strUnit) strQuantity += std::string(" ") + strUnit;
  return strQuantity;
}

}  // namespace tarvik::driver
