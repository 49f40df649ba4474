#include "Kept.h"

#include "support/Host.h"
#include "support/RunTimeError.h"

namespace tarvik {

std::string Kept(const std::string &strSection, const std::string &strKey, const std::string &strDefault) {
  std::string strValue = strDefault;
  IgnoreErrors([&] { strValue = TheHost().GetSetting(AppTitle, strSection, strKey, strDefault); });
  return strValue;
}

void Keep(const std::string &strSection, const std::string &strKey, const std::string &strValue) {
  IgnoreErrors([&] { TheHost().SaveSetting(AppTitle, strSection, strKey, strValue); });
}

}  // namespace tarvik
