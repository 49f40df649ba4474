#include "ScriptedDriver.h"

#include "ScriptedEffects.h"
#include "ValueText.h"
#include "automation/ErrorInfo.h"
#include "support/RunTimeError.h"

namespace tarvik::paneltest {

namespace {

using automation::Status;
using test::HookedCall;

Json Shown(const test::InstrumentKey &key) {
  return key.intType == automation::VtString ? Json(key.strName) : Json(key.intNumber);
}
Json Shown(const std::vector<Byte> &arrBytes) { return test::ToHex(arrBytes); }
template <class T>
Json Shown(const T &value) {
  return value;
}

/// The values that go in, behind channel and quantity of the object. An array that the driver fills is none.
Json Arguments(const HookedCall &call) {
  Json arguments = Json::array();
  if (call.place.lngChannel != 0) arguments.push_back(call.place.lngChannel);
  if (!call.place.strQuantity.empty()) arguments.push_back(call.place.strQuantity);
  for (std::size_t k = 0; k < call.operation.parameters.size(); ++k) {
    const test::Parameter &parameter = call.operation.parameters[k];
    if (!parameter.fGiven || (parameter.kind == test::Parameter::Bytes && parameter.fFilled)) continue;
    arguments.push_back(std::visit([](const auto &value) { return Shown(value); }, call.Read(k)));
  }
  return arguments;
}

/// Calls that only fetch an object are not told.
bool IsLeaf(const test::Operation &operation) {
  return !operation.HandsObject() || operation.strPath == "IInstrumentList.GetItem";
}

Status Fail(const FailureScript &failure) { return automation::Fail(failure.lngNumber, failure.strText); }

}  // namespace

ScriptedDriver::ScriptedDriver(DriverScript &script, Recorder &recorder)
    : m_script(script),
      m_recorder(recorder),
      m_registered([this](const std::string &strServer) { return Create(strServer); }) {}

automation::Ref<automation::IUnknown> ScriptedDriver::Create(const std::string &strServer) {
  using Creation = DriverScript::Creation;
  m_recorder.Add({"drv", "Create", Json::array({strServer})});
  if (m_script.creation == Creation::Error)
    throw RunTimeError(m_script.creationFailure.lngNumber, m_script.creationFailure.strText);
  if (m_script.creation == Creation::None) return nullptr;
  if (m_script.creation == Creation::NoneUntilInput && !m_script.fInputShown) return nullptr;
  return test::MakeHookedRoot(*this);
}

Status ScriptedDriver::Run(HookedCall &call) {
  if (IsLeaf(call.operation))
    if (const auto failure = m_script.Enter(call.operation.strPath, Arguments(call))) return Fail(*failure);
  try {
    if (const ScriptedEffect &effect = ScriptedEffectOf(call.operation)) effect({m_script, call});
  } catch (const FailureScript &failure) {
    return Fail(failure);
  }
  return automation::StatusOk;
}

}  // namespace tarvik::paneltest
