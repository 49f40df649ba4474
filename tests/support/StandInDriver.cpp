#include "StandInDriver.h"

#include <algorithm>
#include <utility>

#include "StandInObject.h"
#include "automation/Activation.h"
#include "support/RunTimeError.h"

namespace tarvik::test {

namespace {

void Apply(StandInState &state, const Json &config) {
  const auto take = [&](const char *strKey, auto &&assign) {
    if (const auto found = config.find(strKey); found != config.end()) assign(*found);
  };
  take("channels", [&](const Json &value) { state.lngChannels = value; });
  take("mask", [&](const Json &value) { state.lngMask = static_cast<Long>(value.get<std::int64_t>()); });
  take("identity", [&](const Json &value) { state.strIdentity = value; });
  take("options", [&](const Json &value) { state.strOptions = value; });
  take("vi", [&](const Json &value) {
    state.arrVi = FromHex(value.get<std::string>());
    state.arrVi.resize(kolven::ViInfoSize);
  });
  take("opens", [&](const Json &value) { state.fOpens = value.get<int>() != 0; });
  take("verbose", [&](const Json &value) { state.fVerbose = value.get<int>() != 0; });
  take("timeout", [&](const Json &value) { state.lngTimeout = value; });
  take("selftest", [&](const Json &value) { state.strSelfTest = value; });
  take("selftest_code", [&](const Json &value) { state.intSelfTestCode = value; });
  take("pllround", [&](const Json &value) {
    state.dblPllRound = value.is_null() ? std::nullopt : std::optional<Double>(value.get<Double>());
  });
  take("isOpen", [&](const Json &value) { value.get<int>() != 0 ? state.Begin() : state.End(); });
}

std::shared_ptr<StandInState> MakeState(const std::string &strName, const Json &config) {
  auto state = std::make_shared<StandInState>(strName);
  Apply(*state, config);
  return state;
}

}  // namespace

InstrumentSettings::InstrumentSettings() {
  for (Long c = 1; c <= 3; ++c) {
    ChannelSettings &channel = channels[static_cast<std::size_t>(c - 1)];
    channel.dblFrequency = 1e6 * c;
    channel.dblWidth = 1e-7 * c;
    channel.dblLeading = 1e-9 * c;
    channel.dblTrailing = 2e-9 * c;
    channel.lngCoupling = c - 1;
    channel.dblSingleDelay = 1e-8 * c;
    channel.dblDoubleDelay = 5e-8 * c;
    channel.lngLevelType = c % 2 == 0 ? 1 : 0;
    channel.dblHigh = 1.0 * c;
    channel.dblLow = -0.5 * c;
    channel.dblLoadCompensation = 10.0 * c;
    channel.dblImpedance = 50.0 * c;
    channel.lngPolarity = c % 2;
    channel.dblHighVoltage = 5.0 * c;
    channel.dblLowVoltage = -5.0 * c;
    channel.dblHighCurrent = 0.125 * c;
    channel.dblLowCurrent = -0.125 * c;
  }
  rows = {PatternRow{{1}, 8}, PatternRow{{2, 3}, 16}, PatternRow{{3, 4, 5}, 24}};
}

StandInState::StandInState(std::string strInstrument)
    : strName(std::move(strInstrument)), strIdentity("MAKER," + strName + ",SN1,V1.0") {
  for (int i = 0; i < kolven::ViInfoSize; ++i) arrVi.push_back(static_cast<Byte>(16 + i));
}

void StandInState::Begin() {
  if (!copy) copy = settings;
}

void StandInState::Abort() {
  if (copy) settings = *copy;
  copy.reset();
}

std::string Place::Path() const {
  if (!instrument) return {};
  std::string strPath = instrument->strName;
  if (lngChannel) strPath += "." + std::to_string(lngChannel);
  if (chLimit) strPath += std::string(".") + chLimit;
  return strPath;
}

StandInDriver::StandInDriver() {
  automation::RegisterClass(kolven::DriverProgId, [this] { return Create(kolven::DriverProgId, {}); });
  automation::SetRemoteActivator(
      [this](const std::string &strProgId, const std::string &strServer) { return Create(strProgId, strServer); });
  Reset();
}

StandInDriver::~StandInDriver() {
  automation::RegisterClass(kolven::DriverProgId, {});
  automation::SetRemoteActivator({});
}

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

void StandInDriver::Add(const std::string &strName, const Json &config) {
  m_arrInstruments.push_back(MakeState(strName, config));
}

void StandInDriver::AddPending(const std::string &strName, const Json &config) {
  m_arrPending.push_back(MakeState(strName, config));
}

void StandInDriver::Configure(const std::string &strName, const Json &config) {
  if (const auto state = Find(strName)) Apply(*state, config);
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

void StandInDriver::ClearFaults() {
  m_arrNumbered.clear();
  m_arrMatching.clear();
  m_arrNothing.clear();
  m_arrWrong.clear();
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

bool StandInDriver::IsNothing() const {
  return std::find(m_arrNothing.begin(), m_arrNothing.end(), m_intCounter) != m_arrNothing.end();
}

bool StandInDriver::IsWrong() const {
  return std::find(m_arrWrong.begin(), m_arrWrong.end(), m_intCounter) != m_arrWrong.end();
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

Ref<automation::IUnknown> StandInDriver::Create(const std::string &strProgId, const std::string &strServer) {
  const std::string strLine = "create(" + Words(strProgId, strServer) + ")";
  std::optional<DriverFailure> failure = Enter(strLine, strLine);
  // A creation that fails on command takes one behaviour off the queue all the same.
  Creation creation;
  if (!m_arrCreations.empty()) {
    creation = m_arrCreations.front();
    m_arrCreations.pop_front();
  }
  if (!failure) failure = creation.failure;
  if (failure) {
    Trace(strLine + " -> error " + std::to_string(failure->lngNumber) + " " + Word(failure->strText));
    throw RunTimeError(failure->lngNumber, failure->strText);
  }
  const bool fNothing = creation.fNothing || IsNothing();
  Trace(strLine + " -> " + (fNothing ? "nothing" : "IDriverRoot"));
  return fNothing ? nullptr : MakeStandInRoot(*this);
}

}  // namespace tarvik::test
