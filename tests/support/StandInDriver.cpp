#include "StandInDriver.h"

#include <algorithm>
#include <utility>

#include "StandInEffects.h"
#include "ValueText.h"
#include "automation/ErrorInfo.h"
#include "support/RunTimeError.h"

namespace tarvik::test {

namespace {

// Values as a line of the trace shows them.

std::string Word(Long lngValue) { return std::to_string(lngValue); }
std::string Word(Double dblValue) { return ToText17(dblValue); }
std::string Word(bool fValue) { return fValue ? "True" : "False"; }
std::string Word(const std::string &strText) { return Quoted(strText); }
std::string Word(const std::vector<Byte> &arrBytes) { return "<" + ToHex(arrBytes) + ">"; }
std::string Word(const InstrumentKey &key) {
  switch (key.intType) {
    case automation::VtString: return "String " + Word(key.strName);
    case automation::VtInteger: return "Integer " + Word(Long{key.intNumber});
    default: return "type " + std::to_string(key.intType);
  }
}

std::string Words(const std::vector<Value> &arrValues) {
  std::string strWords;
  for (const Value &value : arrValues) {
    if (!strWords.empty()) strWords += ", ";
    strWords += std::visit([](const auto &held) { return Word(held); }, value);
  }
  return strWords;
}

std::string Outcome(const HookedCall &call) {
  if (call.operation.HandsObject()) return call.strHanded.empty() ? "nothing" : std::string(call.strHanded);
  const std::vector<Value> arrFilled = call.Filled();
  return arrFilled.empty() ? "ok" : Words(arrFilled);
}

std::string Outcome(const DriverFailure &failure) {
  return "error " + std::to_string(failure.lngNumber) + " " + Word(failure.strText);
}

/// "{instrument.channel.quantity}", as far as the object stands below one; empty for the driver itself.
std::string PathOf(const HookedPlace &place) {
  if (!place.instrument) return {};
  std::string strPath = static_cast<const StandInState &>(*place.instrument).strName;
  if (place.lngChannel) strPath += "." + std::to_string(place.lngChannel);
  if (!place.strQuantity.empty()) strPath += place.strQuantity == "voltage" ? ".V" : ".C";
  return "{" + strPath + "}";
}

std::shared_ptr<StandInState> MakeState(const std::string &strName, const StandInConfig &config) {
  auto state = std::make_shared<StandInState>(strName);
  state->Configure(config);
  return state;
}

}  // namespace

StandInDriver::StandInDriver()
    : m_registered([this](const std::string &strServer) { return Create(kolven::DriverProgId, strServer); }) {}

void StandInDriver::Reset() {
  m_arrInstruments.clear();
  m_arrPending.clear();
  m_arrCreations.clear();
  ClearFaults();
  arrTrace.clear();
  strErrors.clear();
  arrWarnings.clear();
  strLeftBehind.clear();
  m_intCounter = 0;
}

std::vector<std::string> StandInDriver::TakeTrace() { return std::exchange(arrTrace, {}); }

void StandInDriver::Add(const std::string &strName, const StandInConfig &config) {
  m_arrInstruments.push_back(MakeState(strName, config));
}

void StandInDriver::AddPending(const std::string &strName, const StandInConfig &config) {
  m_arrPending.push_back(MakeState(strName, config));
}

void StandInDriver::Configure(const std::string &strName, const StandInConfig &config) {
  if (const auto state = Find(strName)) state->Configure(config);
}

void StandInDriver::Remove(const std::string &strName) {
  const auto found = std::find_if(m_arrInstruments.begin(), m_arrInstruments.end(),
                                  [&](const auto &state) { return state->strName == strName; });
  if (found != m_arrInstruments.end()) m_arrInstruments.erase(found);
}

std::shared_ptr<StandInState> StandInDriver::Find(const std::string &strName) const {
  for (const auto &state : m_arrInstruments)
    if (state->strName == strName) return state;
  return nullptr;
}

std::shared_ptr<StandInState> StandInDriver::Find(const InstrumentKey &key) const {
  if (key.intType == automation::VtString) return Find(key.strName);
  const auto number = static_cast<std::size_t>(key.intNumber);
  const bool fKnown = key.intType == automation::VtInteger && key.intNumber >= 1 && number <= m_arrInstruments.size();
  return fKnown ? m_arrInstruments[number - 1] : nullptr;
}

void StandInDriver::JoinPending() {
  for (auto &state : std::exchange(m_arrPending, {})) m_arrInstruments.push_back(std::move(state));
}

void StandInDriver::FailAt(int intNumber, DriverFailure failure, int intCount) {
  const int intFirst = m_intCounter + intNumber;
  m_arrNumbered.push_back({intFirst, intFirst + intCount - 1, std::move(failure)});
}

void StandInDriver::FailMatching(const std::string &strPrefix, int intNumber, DriverFailure failure, int intCount) {
  m_arrMatching.push_back({strPrefix, intNumber - 1, intCount, std::move(failure)});
}

void StandInDriver::SpoilAt(int intNumber, DriverFault eFault, int intCount) {
  if (eFault == DriverFault::Status) return FailAt(intNumber, {Refused, "driver failed"}, intCount);
  const int intFirst = m_intCounter + intNumber;
  m_arrSpoilt.push_back({intFirst, intFirst + intCount - 1, eFault});
}

void StandInDriver::ClearFaults() {
  m_arrNumbered.clear();
  m_arrMatching.clear();
  m_arrSpoilt.clear();
}

std::optional<DriverFailure> StandInDriver::Enter(const std::string &strPlain, const std::string &strWithPath) {
  ++m_intCounter;
  std::optional<DriverFailure> failure;
  for (const NumberedFault &fault : m_arrNumbered)
    if (!failure && m_intCounter >= fault.intFirst && m_intCounter <= fault.intLast) failure = fault.failure;
  // Every matching fault counts the operation, also where another one makes it fail.
  for (MatchingFault &fault : m_arrMatching) {
    if (!strPlain.starts_with(fault.strPrefix) && !strWithPath.starts_with(fault.strPrefix)) continue;
    if (fault.intBefore > 0) {
      --fault.intBefore;
    } else if (fault.intCount > 0) {
      --fault.intCount;
      if (!failure) failure = fault.failure;
    }
  }
  return failure;
}

bool StandInDriver::IsSpoilt(DriverFault eFault) const {
  return std::ranges::any_of(m_arrSpoilt, [&](const SpoiltCalls &calls) {
    return calls.eFault == eFault && m_intCounter >= calls.intFirst && m_intCounter <= calls.intLast;
  });
}

void StandInDriver::Trace(const std::string &strLine) {
  arrTrace.push_back(strLine);
  if (OnTrace) OnTrace(strLine);
}

std::string StandInDriver::TakeWarnings() {
  if (arrWarnings.empty()) return {};
  std::string strWarnings = arrWarnings.front();
  if (arrWarnings.size() > 1) arrWarnings.pop_front();
  return strWarnings;
}

std::map<std::string, int> StandInDriver::References() const {
  std::map<std::string, int> held;
  for (const auto &[strInterface, intCount] : m_references)
    if (intCount != 0) held[strInterface] = intCount;
  return held;
}

namespace {

/// The driver's turn, for as long as the object lives.
class Turn {
 public:
  explicit Turn(void (*onTurn)(bool)) : m_onTurn(onTurn) { Tell(true); }
  Turn(const Turn &) = delete;
  Turn &operator=(const Turn &) = delete;
  ~Turn() { Tell(false); }

 private:
  void Tell(bool fDriver) const {
    if (m_onTurn) m_onTurn(fDriver);
  }

  void (*m_onTurn)(bool);
};

}  // namespace

automation::Status StandInDriver::Run(HookedCall &call) {
  const Turn turn(OnTurn);
  const std::string strInterface(call.operation.Interface());
  const std::string strLine = "." + std::string(call.operation.Name()) + "(" + Words(call.Given()) + ")";
  const std::string strWithPath = strInterface + PathOf(call.place) + strLine;
  std::optional<DriverFailure> failure = Enter(strInterface + strLine, strWithPath);
  if (!failure) {
    try {
      Answer(call);
    } catch (const DriverFailure &own) {
      failure = own;
    }
  }
  Trace(strWithPath + " -> " + (failure ? Outcome(*failure) : Outcome(call)));
  if (failure)
    return failure->strText.empty() ? failure->lngNumber : automation::Fail(failure->lngNumber, failure->strText);
  if (!strLeftBehind.empty()) automation::SetErrorInfo(strLeftBehind);
  return automation::StatusOk;
}

void StandInDriver::Answer(HookedCall &call) {
  if (IsSpoilt(DriverFault::Delay) && OnDelay) OnDelay();
  if (IsSpoilt(DriverFault::Unfilled) && Concerns(DriverFault::Unfilled, call.operation)) return;
  StandInEffectOf(call.operation)({*this, call});
  for (const DriverFault eFault : AllDriverFaults)
    if (IsSpoilt(eFault) && Concerns(eFault, call.operation)) SpoilAnswer(call, eFault);
}

void StandInDriver::CountReference(std::string_view strInterface, int intStep) {
  const Turn turn(OnTurn);
  m_references[std::string(strInterface)] += intStep;
}

automation::Ref<automation::IUnknown> StandInDriver::Create(const std::string &strProgId,
                                                            const std::string &strServer) {
  const Turn turn(OnTurn);
  const std::string strLine = "create(" + Words({strProgId, strServer}) + ")";
  std::optional<DriverFailure> failure = Enter(strLine, strLine);
  // A creation that fails on command takes one behaviour off the queue all the same.
  Creation creation;
  if (!m_arrCreations.empty()) {
    creation = m_arrCreations.front();
    m_arrCreations.pop_front();
  }
  if (!failure) failure = creation.failure;
  if (failure) {
    Trace(strLine + " -> " + Outcome(*failure));
    throw RunTimeError(failure->lngNumber, failure->strText);
  }
  if (IsSpoilt(DriverFault::Delay) && OnDelay) OnDelay();
  const bool fNothing = creation.fNothing || IsSpoilt(DriverFault::Nothing);
  const bool fWrong = !fNothing && IsSpoilt(DriverFault::WrongObject);
  Trace(strLine + " -> " + (fNothing ? "nothing" : fWrong ? "another object" : "IDriverRoot"));
  if (fNothing) return nullptr;
  return fWrong ? MakeForeignObject(*this) : MakeHookedRoot(*this);
}

}  // namespace tarvik::test
