#include "common/Session.h"

#include <algorithm>
#include <utility>

namespace tarvik::driver {

bool Session::Open(bool fIdQuery, bool fReset, bool fDetectErrors) {
  Close();
  if (!m_instrument->Connect()) return false;
  m_fOpen = true;
  const std::string &strIdentity = Description().strIdentity;
  if (fIdQuery && std::count(strIdentity.begin(), strIdentity.end(), ',') < 3) {
    Close();
    return false;
  }
  fVerbose = false;
  fAutoDetectErrors = fDetectErrors;
  SetTimeout(DefaultTimeout);
  if (fReset) m_instrument->Reset();
  return true;
}

void Session::Close() {
  m_buffered.reset();
  if (std::exchange(m_fOpen, false)) m_instrument->Disconnect();
}

void Session::SetTimeout(Long lngMilliseconds) {
  m_lngTimeout = lngMilliseconds;
  m_instrument->SetTimeout(lngMilliseconds);
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

}  // namespace tarvik::driver
