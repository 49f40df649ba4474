#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"
#include "support/ConnectionLoss.h"
#include "support/UserEvent.h"

namespace tarvik {

using namespace kolven;

namespace {

/// Whether the driver has a transaction open on this session.
bool IsOpenAtDriver(const automation::Ref<IInstrument> &instrument) {
  Integer intUnused = 0;
  VariantBool fIsOpen = 0;
  Call(instrument, &IInstrument::GetTransactionState, &intUnused, &fIsOpen);
  return fIsOpen != 0;
}

}  // namespace

Boolean clsInstrInterface::TransactionStart(Boolean fGlobalTrans) {
  Boolean fResult;
  try {
    if (fGlobalTrans) TransactionCancel();
    if (m->m_TransActive) return False;
    if (!IsOnline(False)) return False;
    // A transaction left open is taken over.
    if (!IsOpenAtDriver(m->m_Instr)) Call(m->m_Instr, &IInstrument::Transaction, TransactionBegin);
    fResult = True;
    m->m_TransActive = True;
    m->m_GlobalTrans = fGlobalTrans;
    // Warnings that persist are shown again after this transaction.
    m->m_LastWarning.clear();
  } catch (const RunTimeError &error) {
    // Not reported, but it may be what tells that the connection is lost.
    NoteFailure(error.Number(), error.Description());
    TransactionCancel();
  }
  return fResult;
}

Boolean clsInstrInterface::TransactionFinish(Boolean fGlobalTrans) {
  if (!fGlobalTrans && m->m_GlobalTrans) return False;
  Boolean fResult;
  try {
    if (IsOnline(False)) {
      if (IsOpenAtDriver(m->m_Instr)) Call(m->m_Instr, &IInstrument::Transaction, TransactionCommit);
      fResult = True;
    }
    m->m_TransActive = False;
    m->m_GlobalTrans = False;
  } catch (const RunTimeError &error) {
    std::string strText = error.Description();
    NoteFailure(error.Number(), strText);
    TransactionCancel();
    Private::ShowInstrErrors(strText);
    Tell(InstrError, "InstrError", strText);
  }
  return fResult;
}

void clsInstrInterface::TransactionCancel() {
  const auto forget = [this] { m->m_TransActive = m->m_GlobalTrans = False; };
  try {
    if (IsOnline(False)) IgnoreErrors([&] { Call(m->m_Instr, &IInstrument::Transaction, TransactionAbort); });
  } catch (const EventEnded &) {
    forget();
    throw;
  }
  forget();
}

}  // namespace tarvik
