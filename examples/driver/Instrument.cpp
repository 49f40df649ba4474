#include "Instrument.h"

#include "Blocks.h"
#include "automation/AutomationString.h"
#include "instrument/viInfo.h"

namespace example {

using tarvik::automation::StatusOk;
using tarvik::automation::StatusPointer;

namespace {

constexpr const char *Name = "Pulser 1";

/// The record of the list: an entry with a slot, since the panel shows others only where it is told to.
const tarvik::viInfo Record =
    tarvik::viInfo::Of(tarvik::eKindSlot, /*intAddress*/ 16, /*intSlot*/ 1, /*intModelCode*/ 0x0101);

Status TellText(AutomationString *pPlace, const char *strText) {
  if (!pPlace) return StatusPointer;
  try {
    *pPlace = tarvik::automation::AllocString(strText);
    return StatusOk;
  } catch (const std::bad_alloc &) {
    return tarvik::automation::StatusOutOfMemory;
  }
}

bool IsTheOne(const AutomationVariant &key) {
  using namespace tarvik::automation;
  if (key.vt == VtString) return ToText(key.bstrVal) == Name;
  return key.vt == VtInteger && key.iVal == 1;
}

}  // namespace

Status Instrument::GetViInfo(AutomationArray **ppBuffer) {
  if (!ppBuffer || !Record.WriteTo(*ppBuffer))
    return tarvik::automation::Fail(tarvik::automation::StatusInvalidArgument, "The record needs 28 bytes");
  return StatusOk;
}

Status Instrument::SetAutoDetectErrors(VariantBool) { return StatusOk; }

Status Instrument::GetChannels(IChannelList **ppObject) { return Give<Channels>(ppObject); }

Status Instrument::Close() {
  TheGenerator().Close();
  return StatusOk;
}

Status Instrument::GetErrorQueue(IErrorQueue **ppObject) { return Give<ErrorQueue>(ppObject); }

Status Instrument::GetIdentity(AutomationString *pValue) { return TellText(pValue, "Example,Pulser 1,0001,1.0"); }

Status Instrument::GetTransactionState(tarvik::Integer *pFirst, VariantBool *pIsOpen) {
  if (!pFirst) return StatusPointer;
  *pFirst = 0;
  return Tell(pIsOpen, TheGenerator().InTransaction());
}

Status Instrument::GetModeSetup(IModeSetup **ppObject) { return Give<ModeSetup>(ppObject); }

Status Instrument::GetName(AutomationString *pValue) { return TellText(pValue, Name); }

Status Instrument::Open(VariantBool, VariantBool reset, VariantBool, VariantBool *pOpened) {
  TheGenerator().Open(reset != 0);
  return Tell(pOpened, true);
}

Status Instrument::GetOptions(AutomationString *pValue) { return TellText(pValue, "none"); }

Status Instrument::GetPatternMemory(IPatternMemory **ppObject) { return Give<PatternMemory>(ppObject); }

Status Instrument::GetPllReference(IPllReference **ppObject) { return Give<PllReference>(ppObject); }

Status Instrument::GetPulseMode(Long *, Long *pValue) { return Tell<Long>(pValue, tarvik::ePulseStream); }

Status Instrument::Reset() {
  TheGenerator().Reset();
  return StatusOk;
}

Status Instrument::GetRestrictions(IRestrictions **ppObject) { return Give<Restrictions>(ppObject); }

Status Instrument::SelfTest(tarvik::Integer *pCode, AutomationString *pText) {
  if (!pCode || !pText) return StatusPointer;
  // The text comes by reference: what stood there is given free.
  tarvik::automation::FreeString(*pText);
  *pText = nullptr;
  *pCode = 0;
  return TellText(pText, "Self test passed");
}

Status Instrument::GetPnpTimeout(Long *pValue) { return Tell(pValue, TheGenerator().lngTimeout); }

Status Instrument::SetPnpTimeout(Long value) {
  TheGenerator().lngTimeout = value;
  return StatusOk;
}

Status Instrument::Transaction(Long command) {
  switch (command) {
    case TransactionBegin: TheGenerator().Begin(); return StatusOk;
    case TransactionCommit: return Guarded([&] { return TheGenerator().Commit(); });
    case TransactionAbort: TheGenerator().Abort(); return StatusOk;
    default: return tarvik::automation::Fail(tarvik::automation::StatusInvalidArgument, "No such transaction command");
  }
}

Status Instrument::GetTriggerSystem(ITriggerSystem **ppObject) { return Give<TriggerSystem>(ppObject); }

Status Instruments::GetItem(AutomationVariant key, IDispatch **ppObject) {
  if (ppObject) *ppObject = nullptr;
  return Guarded([&] {
    if (!IsTheOne(key)) return tarvik::automation::Fail(tarvik::automation::StatusBadIndex, "No such instrument");
    return Give<Instrument>(ppObject);
  });
}

}  // namespace example
