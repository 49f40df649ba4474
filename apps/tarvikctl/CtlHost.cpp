#include "CtlHost.h"

#include <iostream>

#include "support/Conversions.h"

namespace tarvik {

namespace {

/// The instrument class shows this box when a report of a failure asks for the driver's long texts and no instrument is
/// open. Here that says nothing, since every command opens its instrument or ends.
constexpr const char *NotOnline = "You need to be online";

}  // namespace

void Complain(const std::string &strText) {
  for (const std::string &strLine : Split(Replace(strText, "\r\n", "\n"), '\n'))
    std::cerr << "tarvikctl: " << strLine << '\n';
}

BoxAnswer CtlHost::MsgBox(const std::string &strText, BoxIcon, BoxButtons buttons, const std::string &) {
  const BoxAnswer answer = buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
  if (strText.starts_with(NotOnline)) return answer;
  ++m_intTold;
  if (m_pKept)
    m_pKept->push_back(strText);
  else
    Complain(strText);
  return answer;
}

std::string CtlHost::GetSetting(const std::string &, const std::string &, const std::string &strKey,
                                const std::string &strDefault) {
  return strKey == "ServerURL" ? m_strServer : strDefault;
}

}  // namespace tarvik
