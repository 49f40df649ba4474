#include "instrument/DriverCall.h"
#include "instrument/Reported.h"
#include "instrument/clsInstrInterface.h"
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
    if (fGlobalTrans) clsInstrInterface::TransactionCancel();
    if (m_TransActive) return False;
    if (!clsInstrInterface::IsOnline(False)) return False;
    // A transaction left open is taken over.
    if (!IsOpenAtDriver(m_Instr)) Call(m_Instr, &IInstrument::Transaction, TransactionBegin);
    fResult = True;
    m_TransActive = True;
    m_GlobalTrans = fGlobalTrans;
    // Warnings that persist are shown again after this transaction.
    m_LastWarning.clear();
  } catch (const RunTimeError &) {
    clsInstrInterface::TransactionCancel();
  }
  return fResult;
}

Boolean clsInstrInterface::TransactionFinish(Boolean fGlobalTrans) {
  if (!fGlobalTrans && m_GlobalTrans) return False;
  Boolean fResult;
  try {
    if (clsInstrInterface::IsOnline(False)) {
      if (IsOpenAtDriver(m_Instr)) Call(m_Instr, &IInstrument::Transaction, TransactionCommit);
      fResult = True;
    }
    m_TransActive = False;
    m_GlobalTrans = False;
  } catch (const RunTimeError &error) {
    std::string strText = error.Description();
    NoteFailure(error.Number(), strText);
    clsInstrInterface::TransactionCancel();
    ShowInstrErrors(strText);
    Tell(InstrError, "InstrError", strText);
  }
  return fResult;
}

void clsInstrInterface::TransactionCancel() {
  const auto forget = [this] { m_TransActive = m_GlobalTrans = False; };
  try {
    if (clsInstrInterface::IsOnline(False))
      IgnoreErrors([&] { Call(m_Instr, &IInstrument::Transaction, TransactionAbort); });
  } catch (const EventEnded &) {
    forget();
    throw;
  }
  forget();
}

}  // namespace tarvik
