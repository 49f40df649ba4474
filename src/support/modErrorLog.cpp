#include "support/modErrorLog.h"

#include <cstdio>

#include "support/Boxes.h"
#include "support/ConnectionLoss.h"
#include "support/Conversions.h"
#include "support/Host.h"
#include "support/LogText.h"
#include "support/RunTimeError.h"
#include "support/UserEvent.h"
#include "support/modGlobals.h"

namespace tarvik {

namespace {

/// Asking a dead driver for the verbose flag fails and is reported in turn. This limits the
/// recursion: deeper reports use the short form without asking.
constexpr int MaxAskingReports = 3;

thread_local int g_intReportDepth = 0;

class ReportDepth {
 public:
  ReportDepth() { ++g_intReportDepth; }
  ~ReportDepth() { --g_intReportDepth; }
  bool MayAsk() const { return g_intReportDepth <= MaxAskingReports; }
};

bool WantsVerboseForm() {
  const ReportDepth depth;
  if (!depth.MayAsk()) return false;
  InstrReference *instr = InstrOnFirstUse();
  return instr && instr->GetVerboseErrorMsg();
}

std::string DateLine() {
  const std::tm now = TheHost().Now();
  char text[32];
  std::snprintf(text, sizeof text, "%02d/%02d/%02d %02d:%02d", now.tm_mon + 1, now.tm_mday, now.tm_year % 100,
                now.tm_hour, now.tm_min);
  return text;
}

}  // namespace

void LogError(const std::string &strModule, const std::string &strProc, Long lngErrNum,
              const std::string &strDescription) {
  NoteFailure(lngErrNum, strDescription);
  std::string strText;
  if (WantsVerboseForm()) strText = strModule + "\r\n" + strProc + "\r\n\r\n";
  try {
    ShowStopMessage(strText + strDescription);
  } catch (const EventEnded &) {
    IgnoreErrors([&] { WriteLogRecord(strModule, strProc, lngErrNum, strDescription); });
    throw;
  }
  WriteLogRecord(strModule, strProc, lngErrNum, strDescription);
}

void WriteLogRecord(const std::string &strModule, const std::string &strProc, Long lngErrNum,
                    const std::string &strDescription) {
  Host &host = TheHost();
  // A driver's text keeps to its line: whoever reads the log takes a record of three lines for one failure.
  const std::string strError = Format(lngErrNum, "##### ") + WithoutControls(strDescription);
  const std::string strPlace = WithoutControls(strModule) + "; Proc: " + WithoutControls(strProc);
  const std::string strRecord = DateLine() + "\r\n  Error: " + strError + "\r\n  Mod: " + strPlace + "\r\n\r\n";
  host.AppendToFile(host.ErrorLogPath(), strRecord + "\r\n");
}

void ShowIllegalCase() { ShowStopMessage("Illegal case"); }

void ShowStopMessage(const std::string &strText) { ShowBox(strText, BoxIcon::Stop); }

}  // namespace tarvik
