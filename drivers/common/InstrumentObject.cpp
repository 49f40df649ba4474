#include "common/InstrumentObject.h"

#include <algorithm>
#include <limits>

#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "common/ChannelObjects.h"
#include "common/ModeSetupObject.h"
#include "common/SettingsObjects.h"
#include "common/TriggerObjects.h"
#include "instrument/viInfo.h"

namespace tarvik::driver {

namespace {

viInfo InfoOf(const InstrumentDescription &description) {
  return viInfo::Of(description.intKind, description.intAddress, description.intSlot, description.intModelCode);
}

}  // namespace

Status InstrumentObject::GetViInfo(kolven::AutomationArray **ppBuffer) {
  return RunClosed([&] {
    RequirePlace(ppBuffer);
    if (!InfoOf(m_session->Description()).WriteTo(*ppBuffer))
      throw CallFailure{automation::StatusInvalidArgument, "The information record needs an array of 28 bytes"};
  });
}

Status InstrumentObject::SetAutoDetectErrors(VariantBool enable) {
  return Run([&] { m_session->fAutoDetectErrors = enable != 0; });
}

Status InstrumentObject::Calibrate() {
  return Run([&] { m_session->Instrument().Calibrate(); });
}

Status InstrumentObject::GetChannelMath(Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.lngChannelMath; });
}

Status InstrumentObject::SetChannelMath(Long value) {
  return Send([value](Settings &s) { s.lngChannelMath = value; });
}

Status InstrumentObject::GetChannels(kolven::IChannelList **ppObject) { return Give<ChannelListObject>(ppObject); }

Status InstrumentObject::Close() {
  return RunClosed([&] { m_session->Close(); });
}

Status InstrumentObject::GetErrorQueue(kolven::IErrorQueue **ppObject) { return Give<ErrorQueueObject>(ppObject); }

Status InstrumentObject::GetIdentity(kolven::AutomationString *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = automation::AllocString(m_session->Description().strIdentity);
  });
}

Status InstrumentObject::GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) {
  return Run([&] {
    RequirePlace(pFirst);
    RequirePlace(pIsOpen);
    constexpr std::size_t Most = std::numeric_limits<Integer>::max();
    *pFirst = static_cast<Integer>(std::min(m_session->BufferedChanges(), Most));
    *pIsOpen = ToWord(m_session->InTransaction());
  });
}

Status InstrumentObject::GetModeSetup(kolven::IModeSetup **ppObject) { return Give<ModeSetupObject>(ppObject); }

Status InstrumentObject::GetName(kolven::AutomationString *pValue) {
  return RunClosed([&] {
    RequirePlace(pValue);
    *pValue = automation::AllocString(m_session->Description().strName);
  });
}

Status InstrumentObject::Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                              VariantBool *pOpened) {
  return RunClosed([&] {
    RequirePlace(pOpened);
    *pOpened = ToWord(m_session->Open(idQuery != 0, reset != 0, autoDetectErrors != 0));
  });
}

Status InstrumentObject::GetOptions(kolven::AutomationString *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = automation::AllocString(m_session->Description().strOptions);
  });
}

Status InstrumentObject::GetPatternMemory(kolven::IPatternMemory **ppObject) {
  return Give<PatternMemoryObject>(ppObject);
}

Status InstrumentObject::GetPllReference(kolven::IPllReference **ppObject) {
  return Give<PllReferenceObject>(ppObject);
}

Status InstrumentObject::GetPulseMode(Long *, Long *pValue) {
  return Get(pValue, [](const Settings &s) { return s.mode.lngPulseMode; });
}

Status InstrumentObject::Reset() {
  return Run([&] { m_session->Reset(); });
}

Status InstrumentObject::GetRestrictions(kolven::IRestrictions **ppObject) {
  return Give<RestrictionsObject>(ppObject);
}

Status InstrumentObject::SelfTest(Integer *pCode, kolven::AutomationString *pText) {
  return Run([&] {
    RequirePlace(pCode);
    RequirePlace(pText);
    const auto [intCode, strText] = m_session->Instrument().SelfTest();
    // An in-out string: the previous one is freed here.
    kolven::AutomationString bstrOld = *pText;
    *pText = automation::AllocString(strText);
    automation::FreeString(bstrOld);
    *pCode = intCode;
  });
}

Status InstrumentObject::GetPnpTimeout(Long *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = m_session->Timeout();
  });
}

Status InstrumentObject::SetPnpTimeout(Long value) {
  return Run([&] {
    if (value < 0)
      throw CallFailure{automation::StatusInvalidArgument,
                        "A time-out of " + std::to_string(value) + " milliseconds is not possible"};
    m_session->SetTimeout(value);
  });
}

Status InstrumentObject::Transaction(Long command) {
  return Run([&] {
    switch (command) {
      case kolven::TransactionBegin: m_session->Begin(); break;
      case kolven::TransactionCommit: m_session->Commit(); break;
      case kolven::TransactionAbort: m_session->Abort(); break;
      default:
        throw CallFailure{automation::StatusInvalidArgument,
                          "There is no transaction command " + std::to_string(command)};
    }
  });
}

Status InstrumentObject::GetTriggerSystem(kolven::ITriggerSystem **ppObject) {
  return Give<TriggerSystemObject>(ppObject);
}

}  // namespace tarvik::driver
