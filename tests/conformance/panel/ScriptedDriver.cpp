#include "ScriptedDriver.h"

#include "ScriptedInstrument.h"
#include "automation/Activation.h"
#include "support/RunTimeError.h"

namespace tarvik::paneltest {

namespace {

/// An instrument that nobody knows by this name or number.
constexpr Long NotFound = -2147220990;

class ScriptedList : public ScriptedObject<kolven::IInstrumentList> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetCount(Long *pValue) override {
    return Leaf("IInstrumentList.GetCount", Json::array(), [&] { *pValue = Script().InstrumentCount(); });
  }
  Status TARVIK_CALL GetItem(automation::AutomationVariant key, kolven::IDispatch **ppObject) override {
    const bool fName = key.vt == automation::VtString;
    const std::string strName = fName ? automation::ToText(key.bstrVal) : std::string();
    const Json shown = fName ? Json(strName) : Json(key.iVal);
    std::shared_ptr<InstrumentScript> instrument;
    const Status status = Leaf("IInstrumentList.GetItem", Json::array({shown}), [&] {
      instrument = fName ? Script().Instrument(strName) : Script().Instrument(Long{key.iVal});
    });
    if (automation::Failed(status)) return status;
    if (!instrument) return automation::Fail(NotFound, "Instrument not found");
    return Hand<ScriptedInstrument>(ppObject, {At().script, instrument});
  }
  Status TARVIK_CALL Refresh() override { return Leaf("IInstrumentList.Refresh", Json::array()); }
};

class ScriptedRoot : public ScriptedObject<kolven::IDriverRoot> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetInstruments(kolven::IInstrumentList **ppObject) override {
    return Hand<ScriptedList>(ppObject);
  }
};

Ref<automation::IUnknown> Create(DriverScript &script, Recorder &recorder, const std::string &strServer) {
  using Creation = DriverScript::Creation;
  recorder.Add({"drv", "Create", Json::array({strServer})});
  if (script.creation == Creation::Error)
    throw RunTimeError(script.creationFailure.lngNumber, script.creationFailure.strText);
  if (script.creation == Creation::None) return nullptr;
  if (script.creation == Creation::NoneUntilInput && !script.fInputShown) return nullptr;
  return automation::MakeObject<ScriptedRoot>(Place{&script});
}

}  // namespace

ScriptedDriver::ScriptedDriver(DriverScript &script, Recorder &recorder) {
  automation::RegisterClass(kolven::DriverProgId, [&script, &recorder] { return Create(script, recorder, {}); });
  automation::SetRemoteActivator([&script, &recorder](const std::string &, const std::string &strServer) {
    return Create(script, recorder, strServer);
  });
}

ScriptedDriver::~ScriptedDriver() {
  automation::RegisterClass(kolven::DriverProgId, {});
  automation::SetRemoteActivator({});
}

}  // namespace tarvik::paneltest
