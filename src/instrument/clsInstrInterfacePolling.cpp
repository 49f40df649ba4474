#include "instrument/DriverCall.h"
#include "instrument/OperationFrames.h"
#include "support/Boxes.h"
#include "support/Conversions.h"

namespace tarvik {

using namespace kolven;

namespace {

/// The driver's entries, one on each line and without quotes.
std::string InLines(const std::string &strText) { return Replace(Replace(strText, "\"", ""), ";", "\r\n"); }

void ShowUnderHeading(const char *strHeading, const std::string &strLines) {
  ShowBox(std::string(strHeading) + "\r\n" + strLines, BoxIcon::Exclamation);
}

}  // namespace

void clsInstrInterface::ShowInstrErrors(std::string &strText) {
  if (strText.empty()) return;
  strText = InLines(strText);
  ShowUnderHeading("Instrument Errors(s):", strText);
}

automation::Ref<IErrorQueue> clsInstrInterface::ErrorQueue() const {
  return Fetch(m_Instr, &IInstrument::GetErrorQueue);
}

Boolean clsInstrInterface::CheckErrors(Boolean fOverride) {
  return Reported("CheckErrors", [&](Boolean &fResult) {
    if (!m_ErrorsEnabled && !fOverride) {
      fResult = True;
      return;
    }
    if (!clsInstrInterface::IsOnline(True)) return;
    std::string strErrors = Read(ErrorQueue(), &IErrorQueue::GetErrors);
    if (strErrors.empty()) return;
    ShowInstrErrors(strErrors);
    fResult = True;
  });
}

Boolean clsInstrInterface::CheckWarnings(Boolean fOverride) {
  // While a global transaction runs nothing is polled, not even when asked for.
  const bool fPoll = !m_GlobalTrans && (m_WarningsEnabled || fOverride) && clsInstrInterface::IsOnline(True);
  if (!fPoll) return True;
  return Reported("CheckWarnings", [&](Boolean &fResult) {
    const std::string strWarning = Read(ErrorQueue(), &IErrorQueue::GetWarnings);
    ShowNewWarning(strWarning);
    fResult = True;
  });
}

void clsInstrInterface::ShowNewWarning(const std::string &strWarning) {
  m_WarningChanged = strWarning != m_LastWarning;
  if (!m_WarningChanged) return;
  m_LastWarning = strWarning;
  if (!strWarning.empty()) ShowUnderHeading("Instrument Warning(s):", InLines(strWarning));
}

Boolean clsInstrInterface::GetErrorsEnabled() const { return m_ErrorsEnabled; }

void clsInstrInterface::LetErrorsEnabled(Boolean fEnable) {
  if (fEnable == m_ErrorsEnabled) return;
  m_ErrorsEnabled = fEnable;
  if (clsInstrInterface::IsOnline(True)) Call(m_Instr, &IInstrument::SetAutoDetectErrors, fEnable);
}

Boolean clsInstrInterface::GetWarningsEnabled() const { return m_WarningsEnabled; }

void clsInstrInterface::LetWarningsEnabled(Boolean fEnable) { m_WarningsEnabled = fEnable; }

}  // namespace tarvik
