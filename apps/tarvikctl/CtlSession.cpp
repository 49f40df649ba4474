#include "CtlSession.h"

#include "instrument/ListedName.h"
#include "settings/SetupTransfer.h"

namespace tarvik {

namespace {

/// The names of the list, for somebody who has mistaken one.
std::string Known(const std::vector<ListedInstrument> &arrInstruments) {
  if (arrInstruments.empty()) return "the driver knows none";
  std::string strNames;
  for (const ListedInstrument &instrument : arrInstruments)
    strNames += (strNames.empty() ? "" : ", ") + ("\"" + instrument.strName + "\"");
  return "the driver knows " + strNames;
}

}  // namespace

CtlSession::CtlSession(CtlHost &host) : m_host(host), m_instr(InstrInterface()) {
  m_instr->LetWarningsEnabled(True);
  if (!m_instr->Connect()) throw CtlFailure{eExitConnection, {}};
}

CtlSession::~CtlSession() {
  m_instr->CloseInstrument();
  // It speaks to the host, which ends before this thread does.
  gobjInstr().reset();
}

std::vector<ListedInstrument> CtlSession::Instruments() {
  std::vector<ListedInstrument> arrInstruments;
  const int intTold = m_host.Told();
  ListedInstrument next;
  for (Integer intIndex = 1; m_instr->GetViInfo(intIndex, next.info, next.strName); ++intIndex)
    arrInstruments.push_back(next);
  // The end of the list and a driver that fails have the same answer, but only one of them tells why.
  if (m_host.Told() != intTold) throw CtlFailure{eExitConnection, {}};
  return arrInstruments;
}

void CtlSession::Open(const std::string &strName) {
  const std::vector<ListedInstrument> arrKnown = Instruments();
  std::vector<std::string> arrNames;
  for (const ListedInstrument &instrument : arrKnown) arrNames.push_back(instrument.strName);
  const auto strListed = ListedName(arrNames, strName);
  if (!strListed) throw CtlFailure{eExitUnknown, "there is no instrument \"" + strName + "\"; " + Known(arrKnown)};
  const int intTold = m_host.Told();
  if (m_instr->OpenInstrument(*strListed)) return;
  const bool fTold = m_host.Told() != intTold;
  throw CtlFailure{eExitRefused, fTold ? std::string() : "\"" + strName + "\" does not open"};
}

Setup CtlSession::Identity() {
  Setup setup;
  if (!ReadIdentity(*m_instr, setup)) throw CtlFailure{eExitRefused, {}};
  return setup;
}

Setup CtlSession::Read() {
  Setup setup;
  if (!ReadSetup(*m_instr, setup)) throw CtlFailure{eExitRefused, {}};
  return setup;
}

void CtlSession::Write(const Setup &setup) {
  const int intTold = m_host.Told();
  const SetupWritten written = WriteSetup(*m_instr, setup);
  if (written.fDone) return;
  const bool fTold = m_host.Told() != intTold;
  throw CtlFailure{eExitRefused, fTold ? std::string() : written.strReasons};
}

}  // namespace tarvik
