#include "PythonHost.h"

#include "support/Conversions.h"

namespace tarvik::python {

namespace {

/// The instrument class shows this box when the report of a failure asks for the driver's long texts and no instrument
/// is open. The failure itself says more.
constexpr const char *NotOnline = "You need to be online";
constexpr const char *ErrorHeading = "Instrument Errors(s):";
constexpr const char *WarningHeading = "Instrument Warning(s):";

thread_local PythonHost::Operation *g_operation = nullptr;

/// The lines below a heading.
std::vector<std::string> Entries(const std::string &strText) {
  std::vector<std::string> arrLines;
  for (const std::string &strLine : Split(Replace(strText, "\r\n", "\n"), '\n'))
    if (std::string strEntry = Trim(strLine); !strEntry.empty()) arrLines.push_back(std::move(strEntry));
  if (!arrLines.empty()) arrLines.erase(arrLines.begin());
  return arrLines;
}

void Append(std::vector<std::string> &arrTo, const std::vector<std::string> &arrNew) {
  arrTo.insert(arrTo.end(), arrNew.begin(), arrNew.end());
}

}  // namespace

PythonHost::Operation::Operation(Told &told, const std::string &strServer)
    : m_told(told), m_strServer(strServer), m_outer(std::exchange(g_operation, this)) {}

PythonHost::Operation::~Operation() { g_operation = m_outer; }

BoxAnswer PythonHost::MsgBox(const std::string &strText, BoxIcon, BoxButtons buttons, const std::string &) {
  const BoxAnswer answer = buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
  if (!g_operation || strText.starts_with(NotOnline)) return answer;
  Told &told = g_operation->m_told;
  if (strText.starts_with(ErrorHeading))
    Append(told.arrErrors, Entries(strText));
  else if (strText.starts_with(WarningHeading))
    Append(told.arrWarnings, Entries(strText));
  else
    told.arrBoxes.push_back(Replace(strText, "\r\n", "\n"));
  return answer;
}

std::string PythonHost::GetSetting(const std::string &, const std::string &, const std::string &strKey,
                                   const std::string &strDefault) {
  return g_operation && strKey == "ServerURL" ? g_operation->m_strServer : strDefault;
}

void InstallHost() {
  static PythonHost host;
  SetHost(&host);
}

}  // namespace tarvik::python
