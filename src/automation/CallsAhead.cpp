#include "automation/CallsAhead.h"

namespace tarvik::automation {

namespace {

thread_local CallsAhead::Current g_callsAhead;
thread_local std::uint64_t g_lngLastNumber = 0;

bool Knows(IDispatch &driver, const Guid &iid) {
  Ref<IUnknown> object;
  return !Failed(driver.QueryInterface(iid, reinterpret_cast<void **>(object.Out())));
}

/// A driver that hands itself out for whatever it is asked would make the calls of a rehearsal.
bool IsDistant(IDispatch *pDriver) { return pDriver && Knows(*pDriver, IidDistant) && !Knows(*pDriver, GuidNull); }

}  // namespace

bool CallsAhead::Begin(IDispatch *pDriver) {
  if (g_callsAhead.lngNumber != 0 || !IsDistant(pDriver)) return false;
  g_callsAhead.lngNumber = ++g_lngLastNumber;
  return true;
}

CallsAhead::~CallsAhead() {
  if (m_fCounts) g_callsAhead = {};
}

CallsAhead::Rehearsing::Rehearsing() { g_callsAhead.fRehearsing = true; }

CallsAhead::Rehearsing::~Rehearsing() { g_callsAhead.fRehearsing = false; }

void CallsAhead::LeaveRehearsal() {
  if (g_callsAhead.fRehearsing) throw RehearsalOver();
}

CallsAhead::Current CallsAhead::OfThread() { return g_callsAhead; }

}  // namespace tarvik::automation
