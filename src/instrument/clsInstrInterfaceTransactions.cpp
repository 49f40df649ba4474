#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"
#include "support/ConnectionLoss.h"
#include "support/UserEvent.h"

namespace tarvik {

using namespace kolven;

/// Whether the driver has a transaction open on this session.
bool clsInstrInterface::Private::IsOpenAtDriver() const {
  Integer intUnused = 0;
  VariantBool fIsOpen = 0;
  Call(m_Instr, &IInstrument::GetTransactionState, &intUnused, &fIsOpen);
  return fIsOpen != 0;
}

Boolean clsInstrInterface::TransactionStart(Boolean fGlobalTrans) {
  Boolean fResult;
  try {
    RunCatchable([&] { m->StartTransaction(fGlobalTrans, fResult); });
  } catch (const RunTimeError &error) {
    // Not reported, but it may be what tells that the connection is lost.
    IgnoreErrors([&] { NoteFailure(error.Number(), error.Description()); });
    TransactionCancel();
  }
  return fResult;
}

Boolean clsInstrInterface::TransactionFinish(Boolean fGlobalTrans) {
  if (!fGlobalTrans && m->m_GlobalTrans) return False;
  Boolean fResult;
  try {
    RunCatchable([&] {
      if (IsOnline(False)) {
        if (m->IsOpenAtDriver()) Call(m->m_Instr, &IInstrument::Transaction, TransactionCommit);
        fResult = True;
      }
      m->m_TransActive = False;
      m->m_GlobalTrans = False;
    });
  } catch (const RunTimeError &error) {
    IgnoreErrors([&] { NoteFailure(error.Number(), error.Description()); });
    TransactionCancel();
    RunCatchable([&] { m->TellRefusal(error.Description()); });
  }
  return fResult;
}

void clsInstrInterface::Private::StartTransaction(Boolean fGlobalTrans, Boolean &fResult) {
  const automation::CallsAhead ahead(m_Instr, [&] {
    if (fGlobalTrans) Call(m_Instr, &IInstrument::Transaction, TransactionAbort);
    if (!IsOpenAtDriver()) Call(m_Instr, &IInstrument::Transaction, TransactionBegin);
  });
  if (fGlobalTrans) face.TransactionCancel();
  if (m_TransActive || !face.IsOnline(False)) return;
  // A transaction left open is taken over.
  if (!IsOpenAtDriver()) Call(m_Instr, &IInstrument::Transaction, TransactionBegin);
  fResult = True;
  m_TransActive = True;
  m_GlobalTrans = fGlobalTrans;
  // Warnings that persist are shown again after this transaction.
  m_LastWarning.clear();
}

void clsInstrInterface::Private::TellRefusal(std::string strText) const {
  ShowInstrErrors(strText);
  Tell(face.InstrError, "InstrError", strText);
}

automation::CallsAhead clsInstrInterface::FinishAhead(Boolean fGlobalTrans) {
  return {m->m_Instr, [&] {
            if (!fGlobalTrans && m->m_GlobalTrans) return;
            if (m->IsOpenAtDriver()) Call(m->m_Instr, &IInstrument::Transaction, TransactionCommit);
            if (m->m_WarningsEnabled) m->Warnings();
          }};
}

void clsInstrInterface::TransactionCancel() {
  const auto forget = [this] { m->m_TransActive = m->m_GlobalTrans = False; };
  try {
    IgnoreErrors([&] {
      if (IsOnline(False)) Call(m->m_Instr, &IInstrument::Transaction, TransactionAbort);
    });
  } catch (const EventEnded &) {
    forget();
    throw;
  }
  forget();
}

}  // namespace tarvik
