#include <array>

#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"
#include "support/modUtils.h"

namespace tarvik {

using namespace kolven;
using automation::Ref;

Boolean clsInstrInterface::InstrumentCommands(InstrCommands eIC, std::string *pstrT, Integer intT) {
  // Reset in any case, and only after the user has answered the report.
  return Reported(
      "InstrumentCommands",
      [&](Boolean &fResult) {
        const Boolean fReady = eIC == ICRefresh ? IsConnected() : IsOnline(False);
        if (fReady) {
          SetHourglass(True);
          std::string strUnused;
          m->RunCommand(eIC, pstrT ? *pstrT : strUnused, intT);
          fResult = True;
        }
        SetHourglass(False);
      },
      [] { SetHourglass(False); });
}

void clsInstrInterface::Private::RunCommand(InstrCommands eIC, std::string &strT, Integer intT) {
  switch (eIC) {
    case ICReset: return Call(m_Instr, &IInstrument::Reset);
    case ICSelftest: {
      automation::String text;
      Call(m_Instr, &IInstrument::SelfTest, &intT, text.Out());
      strT = text.Text();
      return;
    }
    case ICCalibrate: return Call(m_Instr, &IInstrument::Calibrate);
    case ICRefresh: return Call(Fetch(m_Root, &IDriverRoot::GetInstruments), &IInstrumentList::Refresh);
    case ICOptions: strT = Read(m_Instr, &IInstrument::GetOptions); return;
  }
  ShowStopMessage("Illegal Case");
}

namespace {

void ReadReference(const Ref<IInstrument> &instrument, Double &dblFreq, Long &eSource) {
  const auto reference = Fetch(instrument, &IInstrument::GetPllReference);
  Double dblNewFreq = dblFreq;
  Long eNewSource = eSource;
  Call(reference, &IPllReference::GetReference, &dblNewFreq, &eNewSource);
  dblFreq = dblNewFreq;
  eSource = eNewSource;
}

void SendReference(const Ref<IInstrument> &instrument, Double &dblFreq, Long eSource) {
  const auto reference = Fetch(instrument, &IInstrument::GetPllReference);
  Double dblNewFreq = dblFreq;
  Call(reference, &IPllReference::SetReference, &dblNewFreq, eSource);
  // The driver may write back the frequency that it took.
  dblFreq = dblNewFreq;
}

}  // namespace

Boolean clsInstrInterface::PllRefSource(Double &dblFreq, Long &eSource, Boolean fGet) {
  if (!fGet) return m->SendAndCheck("PllRefSource", [&] { SendReference(m->m_Instr, dblFreq, eSource); });
  return m->WhileOnline("PllRefSource", [&](Boolean &fResult) {
    ReadReference(m->m_Instr, dblFreq, eSource);
    fResult = True;
  });
}

Boolean clsInstrInterface::GetVerboseErrorMsg() {
  return m->WhileOnline("GetVerboseErrorMsg",
                        [&](Boolean &fResult) { fResult = Read(m->ErrorQueue(), &IErrorQueue::GetVerbose); });
}

void clsInstrInterface::LetVerboseErrorMsg(Boolean fVerbose) {
  m->WhileOnline("LetVerboseErrorMsg", [&](Boolean &) { Call(m->ErrorQueue(), &IErrorQueue::SetVerbose, fVerbose); });
}

Long clsInstrInterface::GetPnpTimeout() {
  return Reported<Long>("GetPnpTimeout", [&](Long &lngResult) {
    if (IsOnline(False)) lngResult = Read(m->m_Instr, &IInstrument::GetPnpTimeout);
  });
}

void clsInstrInterface::LetPnpTimeout(Long lngTimeout) {
  m->WhileOnline("LetPnpTimeout", [&](Boolean &) { Call(m->m_Instr, &IInstrument::SetPnpTimeout, lngTimeout); });
}

}  // namespace tarvik
