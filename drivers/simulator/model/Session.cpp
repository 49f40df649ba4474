#include "simulator/model/Session.h"

#include <algorithm>

namespace tarvik::simulator {

bool Session::Open(bool fIdQuery, bool fReset, bool fDetectErrors) {
  Close();
  const InstrumentDescription &description = Description();
  if (!description.fOpens) return false;
  if (fIdQuery && std::count(description.strIdentity.begin(), description.strIdentity.end(), ',') < 3) return false;
  m_fOpen = true;
  fVerbose = false;
  fAutoDetectErrors = fDetectErrors;
  lngTimeout = DefaultTimeout;
  if (fReset) m_instrument->Reset();
  return true;
}

void Session::Close() {
  m_buffered.reset();
  m_fOpen = false;
}

void Session::Send(Change change) {
  if (m_buffered) {
    m_buffered->push_back(std::move(change));
    return;
  }
  try {
    m_instrument->Apply({std::move(change)});
  } catch (const Rejected &rejected) {
    if (fAutoDetectErrors) throw;
    for (const ScpiError &error : rejected.Errors()) m_instrument->Report(error);
  }
}

void Session::Begin() {
  if (m_buffered) Reject(ScpiSettingsConflict, "Settings conflict: a transaction is already open");
  m_buffered.emplace();
}

void Session::Commit() {
  if (!m_buffered) Reject(ScpiSettingsConflict, "Settings conflict: no transaction is open");
  const std::vector<Change> arrChanges = std::move(*m_buffered);
  m_buffered.reset();
  m_instrument->Apply(arrChanges);
}

void Session::Abort() { m_buffered.reset(); }

void Session::Reset() {
  if (m_buffered) m_buffered->clear();
  m_instrument->Reset();
}

}  // namespace tarvik::simulator
