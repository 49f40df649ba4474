#include "DriverScript.h"

#include <algorithm>
#include <functional>

#include "support/Conversions.h"

namespace tarvik::paneltest {

namespace {

/// The leaf call at which a scripted failure of an operation strikes. Operations that share their leaf with another
/// one are told apart by the operation that is running.
struct StrikingLeaf {
  const char *strOperation;
  const char *strLeaf;
  bool fOwnOperationOnly = false;
};

constexpr StrikingLeaf StrikingLeaves[] = {
    {"OpenInstrument", "IInstrument.Open"},
    {"CloseInstrument", "IInstrument.Close"},
    {"TransactionStart", "IInstrument.GetTransactionState"},
    {"GetInstrInfo", "IInstrument.GetIdentity"},
    {"GetViInfo", "IInstrument.GetViInfo"},
    {"CheckErrors", "IErrorQueue.GetErrors"},
    {"CheckWarnings", "IErrorQueue.GetWarnings"},
    {"InstrumentCommands:0", "IInstrument.Reset"},
    {"InstrumentCommands:1", "IInstrument.SelfTest"},
    {"InstrumentCommands:2", "IInstrument.Calibrate"},
    {"InstrumentCommands:3", "IInstrumentList.Refresh"},
    {"InstrumentCommands:4", "IInstrument.GetOptions"},
    {"SetMode", "IModeSetup."},
    {"SetMode", "IArmSource.SetSource"},
    {"GetMode", "IInstrument.GetPulseMode"},
    {"SetTiming", "IEdges.SetLeading"},
    {"GetTiming", "IEdges.GetCoupling"},
    {"GetTiming", "IEdges.GetLeading"},
    {"SetLevels", "IChannelLevels.SetLevel"},
    {"GetLevels", "IChannelLevels.GetLevel"},
    {"SetLimits", "ILimitPair.SetHigh"},
    {"GetLimits", "ILimitPair.GetEnabled"},
    {"SetTriggerLevels", "IAuxOutputs.SetOutLevel"},
    {"GetTriggerLevels", "IAuxOutputs.GetOutLevel"},
    {"SetRz", "IChannel.SetSignalFormat", true},
    {"GetRz", "IChannel.GetSignalFormat", true},
    {"SetPatternArray", "IPatternMemory.SetPattern"},
    {"GetPatternArray", "IPatternMemory.GetPattern"},
    {"PllRefSource", "IPllReference."},
};

bool IsOutputCall(std::string_view strLeaf, const std::string &strRunning) {
  return (strLeaf == "IChannelLevels.SetOutput" || strLeaf == "IChannelLevels.SetComplementOutput") &&
         (strRunning == "Output" || strRunning == "SetTiming");
}

bool Matches(const char *strPattern, std::string_view strLeaf) {
  const std::string_view pattern(strPattern);
  return pattern.ends_with('.') ? strLeaf.starts_with(pattern) : strLeaf == pattern;
}

bool Strikes(const FailureScript &failure, std::string_view strLeaf, const Json &arguments,
             const std::string &strRunning) {
  if (failure.strOperation == "Output") return IsOutputCall(strLeaf, strRunning);
  std::string strOperation = failure.strOperation;
  // The pattern operations may name their row.
  if (strOperation.starts_with("SetPatternArray:") || strOperation.starts_with("GetPatternArray:")) {
    const std::string strRow = strOperation.substr(strOperation.find(':') + 1);
    if (arguments.empty() || strRow != std::to_string(arguments[0].is_number() ? arguments[0].get<Long>() : 0))
      return false;
    strOperation.resize(strOperation.find(':'));
  }
  return std::any_of(std::begin(StrikingLeaves), std::end(StrikingLeaves), [&](const StrikingLeaf &row) {
    return strOperation == row.strOperation && Matches(row.strLeaf, strLeaf) &&
           (!row.fOwnOperationOnly || strRunning == strOperation);
  });
}

constexpr const char *DefaultAnswers[][2] = {
    {"mode",
     "TriggerMode=0 PulseMode=0 BurstLength=2 PulseType=1,1 SignalFormat=1,1 PeriodSource=0 TriggerSlope=1 "
     "ArmingSource=3 ArmSlope=1 PllFreq=1e6"},
    {"timing",
     "dblFrequency=1e6 fChannelOutputOn=0,0 fChannelOutputInvOn=0,0 fDoublePulse=0,0 fAutoCoupleLeTe=0,0 dblDelay=0,0 "
     "dblWidth=1e-7,1e-7 dblLeading=2e-9,2e-9 dblTrailing=2e-9,2e-9"},
    {"levels",
     "eOutputLevel=1,1 eOutputType=0,0 dblAmplOrHigh=1,1 dblOffsetOrLow=0,0 dblLoadCompensation=50,50 "
     "dblOutputImpedance=50,50 eOutputPolarity=0,0 fChannelOutputOn=0,0 fChannelOutputInvOn=0,0 eChannelMath=0"},
    {"limits",
     "fEnabled=0,0 dblHighVoltage=0.5,0.5 dblLowVoltage=-0.5,-0.5 dblHighCurrent=0.01,0.01 dblLowCurrent=-0.01,-0.01"},
    {"trglev",
     "dblExtInThreshold=2.5 dblExtInInputImp=10000 dblClkInThreshold=2.5 dblClkInInputImp=10000 eTriggerOutLevel=0 "
     "eStrobeOutLevel=0 eVxiTriggerSource=1 eVxiTriggerLine=7"},
};

std::vector<Double> Numbers(const std::string &strList) {
  std::vector<Double> arrValues;
  for (const std::string &strValue : Split(strList, ',')) {
    if (strValue == "true" || strValue == "false")
      arrValues.push_back(strValue == "true");
    else
      arrValues.push_back(Words(strValue).Real());
  }
  return arrValues;
}

}  // namespace

void DriverScript::Reset() {
  m_answers.clear();
  for (const auto &[strGroup, strFields] : DefaultAnswers) {
    Words words(strFields);
    SetAnswers(strGroup, words);
  }
  m_answers["rz"] = {1, 1};
  m_answers["pll"] = {5000000, 1};
  m_arrFailures.clear();
  m_arrInstruments.clear();
  strOperation.clear();
  creation = Creation::Ok;
  fInputShown = false;
  commitFailure.reset();
  strErrors.clear();
  strWarnings.clear();
  strSelfTest.clear();
  arrRows.fill({});
}

Double DriverScript::Answer(const std::string &strField, Long lngChannel) const {
  const auto &arrValues = m_answers.at(strField);
  const auto place = std::clamp<std::size_t>(static_cast<std::size_t>(lngChannel), 1, arrValues.size());
  return arrValues[place - 1];
}

void DriverScript::SetAnswers(const std::string &strGroup, Words &words) {
  while (!words.Empty()) {
    const auto [strField, strValue] = KeyAndValue(words.Text());
    const std::string strKey = strGroup + "." + strField;
    std::vector<Double> arrValues = Numbers(strValue);
    const auto known = m_answers.find(strKey);
    // One value for a pair of channels changes the first only.
    if (known != m_answers.end() && arrValues.size() < known->second.size())
      arrValues.insert(arrValues.end(), known->second.begin() + static_cast<std::ptrdiff_t>(arrValues.size()),
                       known->second.end());
    m_answers[strKey] = arrValues;
  }
}

std::optional<FailureScript> DriverScript::Enter(std::string_view strLeaf, const Json &arguments) {
  m_recorder.Add({"drv", strLeaf, arguments});
  for (auto failure = m_arrFailures.begin(); failure != m_arrFailures.end(); ++failure) {
    if (!Strikes(*failure, strLeaf, arguments, strOperation)) continue;
    FailureScript struck = *failure;
    if (--failure->lngTimes <= 0) m_arrFailures.erase(failure);
    return struck;
  }
  return std::nullopt;
}

void DriverScript::Apply(InstrumentScript &instrument, Words &words) {
  const auto number = [](const std::string &strValue) { return Words(strValue).Number(); };
  const auto word = [&](Integer &intField) {
    return [&](const std::string &strValue) { intField = static_cast<Integer>(number(strValue)); };
  };
  const std::map<std::string, std::function<void(const std::string &)>> fields{
      {"name", [&](const std::string &strValue) { instrument.strName = strValue; }},
      {"kind", word(instrument.intKind)},
      {"slot", word(instrument.intSlot)},
      {"addr", word(instrument.intAddress)},
      {"box", word(instrument.intBox)},
      {"model", word(instrument.intModel)},
      {"channels", [&](const std::string &strValue) { instrument.lngChannels = number(strValue); }},
      {"mask", [&](const std::string &strValue) { instrument.lngMask = number(strValue); }},
      {"ident", [&](const std::string &strValue) { instrument.strIdentity = strValue; }},
      {"opts", [&](const std::string &strValue) { instrument.strOptions = strValue; }},
      {"open", [&](const std::string &strValue) { instrument.fOpens = number(strValue) != 0; }},
  };
  while (!words.Empty()) {
    const auto [strField, strValue] = KeyAndValue(words.Text());
    const auto field = fields.find(strField);
    if (field == fields.end()) throw BadLine("unknown field " + strField);
    field->second(strValue);
  }
}

void DriverScript::AddInstrument(Words &words) {
  auto instrument = std::make_shared<InstrumentScript>();
  Apply(*instrument, words);
  m_arrInstruments.push_back(std::move(instrument));
}

void DriverScript::ChangeInstrument(Long lngNumber, Words &words) {
  const auto instrument = Instrument(lngNumber);
  if (!instrument) throw BadLine("no such instrument");
  Apply(*instrument, words);
}

std::shared_ptr<InstrumentScript> DriverScript::Instrument(Long lngNumber) const {
  if (lngNumber < 1 || lngNumber > InstrumentCount()) return nullptr;
  return m_arrInstruments[static_cast<std::size_t>(lngNumber - 1)];
}

std::shared_ptr<InstrumentScript> DriverScript::Instrument(const std::string &strName) const {
  for (const auto &instrument : m_arrInstruments)
    if (instrument->strName == strName || Trim(instrument->strName) == strName) return instrument;
  return nullptr;
}

}  // namespace tarvik::paneltest
