#include "ScriptedInstrument.h"

#include <utility>

#include "ScriptedBlocks.h"
#include "ScriptedChannel.h"

namespace tarvik::paneltest {

namespace {

/// Number of a commit that the script lets fail.
constexpr Long CommitRefused = -2147220991;

class ScriptedChannelList : public ScriptedObject<kolven::IChannelList> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetCount(Long *pValue) override {
    return Leaf("IChannelList.GetCount", Json::array(), [&] { *pValue = Instrument().lngChannels; });
  }
  Status TARVIK_CALL GetItem(Long index, kolven::IChannel **ppObject) override {
    if (index < 1 || index > Instrument().lngChannels)
      return automation::Fail(automation::StatusBadIndex, "No such channel");
    return Hand<ScriptedChannel>(ppObject, {At().script, At().instrument, index});
  }
};

class ScriptedErrorQueue : public ScriptedObject<kolven::IErrorQueue> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetErrors(automation::AutomationString *pValue) override {
    return Leaf("IErrorQueue.GetErrors", Json::array(),
                [&] { *pValue = automation::AllocString(std::exchange(Script().strErrors, {})); });
  }
  Status TARVIK_CALL GetVerbose(VariantBool *pValue) override {
    return Leaf("IErrorQueue.GetVerbose", Json::array(),
                [&] { *pValue = Instrument().fVerbose ? VariantBool{-1} : VariantBool{0}; });
  }
  Status TARVIK_CALL SetVerbose(VariantBool enable) override {
    return Leaf("IErrorQueue.SetVerbose", Json::array({IsTrue(enable)}),
                [&] { Instrument().fVerbose = IsTrue(enable); });
  }
  Status TARVIK_CALL GetWarnings(automation::AutomationString *pValue) override {
    return Text("IErrorQueue.GetWarnings", Script().strWarnings, pValue);
  }
};

class ScriptedRestrictions : public ScriptedObject<kolven::IRestrictions> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetMask(Long *pValue) override {
    return Leaf("IRestrictions.GetMask", Json::array(), [&] { *pValue = Instrument().lngMask; });
  }
};

/// Writes a 16-bit word, low byte first.
void PutWord(automation::AutomationArray &array, std::size_t offset, Integer intWord) {
  if (offset + 1 >= array.rgsabound[0].cElements) return;
  auto *bytes = static_cast<Byte *>(array.pvData);
  bytes[offset] = static_cast<Byte>(intWord & 0xFF);
  bytes[offset + 1] = static_cast<Byte>((intWord >> 8) & 0xFF);
}

}  // namespace

Status ScriptedInstrument::GetViInfo(automation::AutomationArray **ppBuffer) {
  return Leaf("IInstrument.GetViInfo", Json::array(), [&] {
    const InstrumentScript &instrument = Instrument();
    PutWord(**ppBuffer, 16, instrument.intKind);
    PutWord(**ppBuffer, 18, instrument.intBox);
    PutWord(**ppBuffer, 22, instrument.intSlot);
    PutWord(**ppBuffer, 24, instrument.intAddress);
    PutWord(**ppBuffer, 26, instrument.intModel);
  });
}
Status ScriptedInstrument::SetAutoDetectErrors(VariantBool enable) {
  return Leaf("IInstrument.SetAutoDetectErrors", Json::array({IsTrue(enable)}));
}
Status ScriptedInstrument::Calibrate() { return Leaf("IInstrument.Calibrate", Json::array()); }
Status ScriptedInstrument::GetChannelMath(Long *pValue) {
  return PlainAnswer("IInstrument.GetChannelMath", "levels.eChannelMath", pValue);
}
Status ScriptedInstrument::SetChannelMath(Long value) {
  return Leaf("IInstrument.SetChannelMath", Json::array({value}));
}
Status ScriptedInstrument::GetChannels(kolven::IChannelList **ppObject) { return Hand<ScriptedChannelList>(ppObject); }
Status ScriptedInstrument::Close() {
  return Leaf("IInstrument.Close", Json::array(), [&] { Instrument().fTransaction = false; });
}
Status ScriptedInstrument::GetErrorQueue(kolven::IErrorQueue **ppObject) { return Hand<ScriptedErrorQueue>(ppObject); }
Status ScriptedInstrument::GetIdentity(automation::AutomationString *pValue) {
  return Text("IInstrument.GetIdentity", Instrument().strIdentity, pValue);
}
Status ScriptedInstrument::GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) {
  return Leaf("IInstrument.GetTransactionState", Json::array(), [&] {
    *pFirst = 0;
    *pIsOpen = Instrument().fTransaction ? VariantBool{-1} : VariantBool{0};
  });
}
Status ScriptedInstrument::GetModeSetup(kolven::IModeSetup **ppObject) { return Hand<ScriptedModeSetup>(ppObject); }
Status ScriptedInstrument::GetName(automation::AutomationString *pValue) {
  return Text("IInstrument.GetName", Instrument().strName, pValue);
}
Status ScriptedInstrument::Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                                VariantBool *pOpened) {
  return Leaf("IInstrument.Open", {IsTrue(idQuery), IsTrue(reset), IsTrue(autoDetectErrors)},
              [&] { *pOpened = Instrument().fOpens ? VariantBool{-1} : VariantBool{0}; });
}
Status ScriptedInstrument::GetOptions(automation::AutomationString *pValue) {
  return Text("IInstrument.GetOptions", Instrument().strOptions, pValue);
}
Status ScriptedInstrument::GetPatternMemory(kolven::IPatternMemory **ppObject) {
  return Hand<ScriptedPatternMemory>(ppObject);
}
Status ScriptedInstrument::GetPllReference(kolven::IPllReference **ppObject) {
  return Hand<ScriptedPllReference>(ppObject);
}
Status ScriptedInstrument::GetPulseMode(Long *pSelector, Long *pValue) {
  return Answer("IInstrument.GetPulseMode", Json::array({*pSelector}), "mode.PulseMode", pValue);
}
Status ScriptedInstrument::Reset() { return Leaf("IInstrument.Reset", Json::array()); }
Status ScriptedInstrument::GetRestrictions(kolven::IRestrictions **ppObject) {
  return Hand<ScriptedRestrictions>(ppObject);
}
Status ScriptedInstrument::SelfTest(Integer *pCode, automation::AutomationString *pText) {
  return Leaf("IInstrument.SelfTest", Json::array(), [&] {
    *pCode = 0;
    *pText = automation::AllocString(Script().strSelfTest);
  });
}
Status ScriptedInstrument::GetPnpTimeout(Long *pValue) {
  return Leaf("IInstrument.GetPnpTimeout", Json::array(), [&] { *pValue = 0; });
}
Status ScriptedInstrument::SetPnpTimeout(Long value) { return Leaf("IInstrument.SetPnpTimeout", Json::array({value})); }
Status ScriptedInstrument::Transaction(Long command) {
  const Status status = Leaf("IInstrument.Transaction", Json::array({command}),
                             [&] { Instrument().fTransaction = command == kolven::TransactionBegin; });
  if (command != kolven::TransactionCommit || !Script().commitFailure) return status;
  return automation::Fail(CommitRefused, *std::exchange(Script().commitFailure, std::nullopt));
}
Status ScriptedInstrument::GetTriggerSystem(kolven::ITriggerSystem **ppObject) {
  return Hand<ScriptedTriggerSystem>(ppObject);
}

}  // namespace tarvik::paneltest
