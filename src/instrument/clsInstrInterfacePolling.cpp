#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"
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

void clsInstrInterface::Private::ShowInstrErrors(std::string &strText) {
  if (strText.empty()) return;
  strText = InLines(strText);
  ShowUnderHeading("Instrument Errors(s):", strText);
}

automation::Ref<IErrorQueue> clsInstrInterface::Private::ErrorQueue() const {
  return Fetch(m_Instr, &IInstrument::GetErrorQueue);
}

Boolean clsInstrInterface::CheckErrors(Boolean fOverride) {
  return Reported("CheckErrors", [&](Boolean &fResult) {
    if (!m->m_ErrorsEnabled && !fOverride) {
      fResult = True;
      return;
    }
    if (!IsOnline(True)) return;
    std::string strErrors = Read(m->ErrorQueue(), &IErrorQueue::GetErrors);
    if (strErrors.empty()) return;
    Private::ShowInstrErrors(strErrors);
    fResult = True;
  });
}

std::string clsInstrInterface::Private::Warnings() const { return Read(ErrorQueue(), &IErrorQueue::GetWarnings); }

bool clsInstrInterface::Private::PollsWarnings(Boolean fOverride) const {
  // While a global transaction runs nothing is polled, not even when asked for.
  return !m_GlobalTrans && (m_WarningsEnabled || fOverride) && face.IsOnline(True);
}

Boolean clsInstrInterface::CheckWarnings(Boolean fOverride) {
  if (!m->PollsWarnings(fOverride)) return True;
  return Reported("CheckWarnings", [&](Boolean &fResult) {
    const std::string strWarning = m->Warnings();
    m->ShowNewWarning(strWarning);
    fResult = True;
  });
}

void clsInstrInterface::Private::ShowNewWarning(const std::string &strWarning) {
  m_WarningChanged = strWarning != m_LastWarning;
  if (!m_WarningChanged) return;
  m_LastWarning = strWarning;
  if (!strWarning.empty()) ShowUnderHeading("Instrument Warning(s):", InLines(strWarning));
}

Boolean clsInstrInterface::GetErrorsEnabled() const { return m->m_ErrorsEnabled; }

void clsInstrInterface::LetErrorsEnabled(Boolean fEnable) {
  if (fEnable == m->m_ErrorsEnabled) return;
  m->m_ErrorsEnabled = fEnable;
  if (IsOnline(True)) Call(m->m_Instr, &IInstrument::SetAutoDetectErrors, fEnable);
}

Boolean clsInstrInterface::GetWarningsEnabled() const { return m->m_WarningsEnabled; }

void clsInstrInterface::LetWarningsEnabled(Boolean fEnable) { m->m_WarningsEnabled = fEnable; }

}  // namespace tarvik
