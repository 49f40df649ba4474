#include <algorithm>

#include "StandInBlocks.h"
#include "StandInChannel.h"

namespace tarvik::test {

namespace {

using namespace kolven;
using automation::AutomationString;

/// The number that the stand-in answers as the driver's own part of the transaction state.
constexpr Integer OwnTransactionWord = 7;

class StandInErrorQueue : public StandInObject<IErrorQueue> {
 public:
  static constexpr const char *Name = "IErrorQueue";
  explicit StandInErrorQueue(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetErrors(AutomationString *pValue) override {
    return GetText("GetErrors", pValue, [&] { return Driver().TakeErrors(); });
  }
  Status TARVIK_CALL GetVerbose(VariantBool *pValue) override {
    return Get("GetVerbose", pValue, At().instrument->fVerbose);
  }
  Status TARVIK_CALL SetVerbose(VariantBool enable) override {
    return Set("SetVerbose", At().instrument->fVerbose, enable);
  }
  Status TARVIK_CALL GetWarnings(AutomationString *pValue) override {
    return GetText("GetWarnings", pValue, [&] { return Driver().TakeWarnings(); });
  }
};

class StandInRestrictions : public StandInObject<IRestrictions> {
 public:
  static constexpr const char *Name = "IRestrictions";
  explicit StandInRestrictions(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetMask(Long *pValue) override { return Get("GetMask", pValue, At().instrument->lngMask); }
};

class StandInInstrument : public StandInObject<IInstrument> {
 public:
  static constexpr const char *Name = "IInstrument";
  explicit StandInInstrument(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetViInfo(automation::AutomationArray **ppBuffer) override {
    return Operate("GetViInfo()", [&] {
      const std::vector<Byte> &arrVi = State().arrVi;
      const auto count = std::min<std::size_t>(arrVi.size(), (*ppBuffer)->rgsabound[0].cElements);
      std::copy_n(arrVi.begin(), count, static_cast<Byte *>((*ppBuffer)->pvData));
      return Word(arrVi);
    });
  }
  Status TARVIK_CALL SetAutoDetectErrors(VariantBool enable) override {
    return Set("SetAutoDetectErrors", State().fAutoDetect, enable);
  }
  Status TARVIK_CALL Calibrate() override {
    return Do("Calibrate()", [] {});
  }
  Status TARVIK_CALL GetChannelMath(Long *pValue) override {
    return Get("GetChannelMath", pValue, Settings().lngChannelMath);
  }
  Status TARVIK_CALL SetChannelMath(Long value) override {
    return Set("SetChannelMath", Settings().lngChannelMath, value);
  }
  Status TARVIK_CALL GetChannels(IChannelList **ppObject) override {
    return Hand<StandInChannelList>("GetChannels", ppObject);
  }
  Status TARVIK_CALL Close() override {
    return Do("Close()", [&] { State().Abort(); });
  }
  Status TARVIK_CALL GetErrorQueue(IErrorQueue **ppObject) override {
    return Hand<StandInErrorQueue>("GetErrorQueue", ppObject);
  }
  Status TARVIK_CALL GetIdentity(AutomationString *pValue) override {
    return GetText("GetIdentity", pValue, [&] { return State().strIdentity; });
  }
  Status TARVIK_CALL GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) override {
    return Operate("GetTransactionState()", [&] {
      *pFirst = OwnTransactionWord;
      *pIsOpen = Boolean(State().copy.has_value()).Word();
      return Words(Long{OwnTransactionWord}, Flag{State().copy.has_value()});
    });
  }
  Status TARVIK_CALL GetModeSetup(IModeSetup **ppObject) override {
    return Hand<StandInModeSetup>("GetModeSetup", ppObject);
  }
  Status TARVIK_CALL GetName(AutomationString *pValue) override {
    return GetText("GetName", pValue, [&] { return State().strName; });
  }
  Status TARVIK_CALL Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                          VariantBool *pOpened) override {
    return Operate(Line("Open", Flag{idQuery != 0}, Flag{reset != 0}, Flag{autoDetectErrors != 0}), [&] {
      *pOpened = Boolean(State().fOpens).Word();
      if (State().fOpens) {
        State().fAutoDetect = autoDetectErrors != 0;
        if (reset) Settings() = InstrumentSettings();
      }
      return Word(Flag{State().fOpens});
    });
  }
  Status TARVIK_CALL GetOptions(AutomationString *pValue) override {
    return GetText("GetOptions", pValue, [&] { return State().strOptions; });
  }
  Status TARVIK_CALL GetPatternMemory(IPatternMemory **ppObject) override {
    return Hand<StandInPatternMemory>("GetPatternMemory", ppObject);
  }
  Status TARVIK_CALL GetPllReference(IPllReference **ppObject) override {
    return Hand<StandInPllReference>("GetPllReference", ppObject);
  }
  Status TARVIK_CALL GetPulseMode(Long *pSelector, Long *pValue) override {
    return GetSelected("GetPulseMode", pSelector, pValue, Settings().lngPulseMode);
  }
  Status TARVIK_CALL Reset() override {
    return Do("Reset()", [&] { Settings() = InstrumentSettings(); });
  }
  Status TARVIK_CALL GetRestrictions(IRestrictions **ppObject) override {
    return Hand<StandInRestrictions>("GetRestrictions", ppObject);
  }
  Status TARVIK_CALL SelfTest(Integer *pCode, AutomationString *pText) override {
    return Operate("SelfTest()", [&] {
      *pCode = State().intSelfTestCode;
      *pText = automation::AllocString(State().strSelfTest);
      return Words(Long{State().intSelfTestCode}, State().strSelfTest);
    });
  }
  Status TARVIK_CALL GetPnpTimeout(Long *pValue) override { return Get("GetPnpTimeout", pValue, State().lngTimeout); }
  Status TARVIK_CALL SetPnpTimeout(Long value) override { return Set("SetPnpTimeout", State().lngTimeout, value); }
  Status TARVIK_CALL Transaction(Long command) override {
    return Do(Line("Transaction", command), [&] {
      if (command == TransactionBegin) State().Begin();
      if (command == TransactionCommit) State().End();
      if (command == TransactionAbort) State().Abort();
    });
  }
  Status TARVIK_CALL GetTriggerSystem(ITriggerSystem **ppObject) override {
    return Hand<StandInTriggerSystem>("GetTriggerSystem", ppObject);
  }

 private:
  StandInState &State() const { return *At().instrument; }
};

class StandInInstrumentList : public StandInObject<IInstrumentList> {
 public:
  static constexpr const char *Name = "IInstrumentList";
  explicit StandInInstrumentList(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetCount(Long *pValue) override {
    return Get("GetCount", pValue, static_cast<Long>(Driver().Instruments().size()));
  }
  Status TARVIK_CALL GetItem(AutomationVariant key, automation::IDispatch **ppObject) override {
    return Operate("GetItem(" + KeyWord(key) + ")", [&]() -> std::string {
      const auto state = Find(key);
      if (!state || Driver().IsNothing()) return "nothing";
      if (Driver().IsWrong()) return HandWrong(ppObject, At());
      *ppObject = automation::MakeObject<StandInInstrument>(Place{&Driver(), state}).Detach();
      return StandInInstrument::Name;
    });
  }
  Status TARVIK_CALL Refresh() override {
    return Do("Refresh()", [&] { Driver().JoinPending(); });
  }

 private:
  static std::string KeyWord(const AutomationVariant &key) {
    if (key.vt == automation::VtString) return "String " + Word(automation::ToText(key.bstrVal));
    if (key.vt == automation::VtInteger) return "Integer " + Word(Long{key.iVal});
    return "type " + std::to_string(key.vt);
  }
  std::shared_ptr<StandInState> Find(const AutomationVariant &key) const {
    if (key.vt == automation::VtString) return Driver().Find(automation::ToText(key.bstrVal));
    const auto &arrInstruments = Driver().Instruments();
    const bool fKnown =
        key.vt == automation::VtInteger && key.iVal >= 1 && static_cast<std::size_t>(key.iVal) <= arrInstruments.size();
    return fKnown ? arrInstruments[static_cast<std::size_t>(key.iVal - 1)] : nullptr;
  }
};

class StandInRoot : public StandInObject<IDriverRoot> {
 public:
  static constexpr const char *Name = "IDriverRoot";
  explicit StandInRoot(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetInstruments(IInstrumentList **ppObject) override {
    return Hand<StandInInstrumentList>("GetInstruments", ppObject);
  }
};

}  // namespace

Ref<automation::IUnknown> MakeStandInRoot(StandInDriver &driver) {
  return automation::MakeObject<StandInRoot>(Place{&driver, nullptr});
}

}  // namespace tarvik::test
