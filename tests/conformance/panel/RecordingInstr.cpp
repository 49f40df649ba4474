#include "RecordingInstr.h"

#include <type_traits>
#include <utility>

#include "RecordFields.h"
#include "ValueText.h"

namespace tarvik {

namespace {

using paneltest::DriverScript;
using paneltest::Json;

Json ToJson(Boolean fValue) { return static_cast<bool>(fValue); }
Json ToJson(Long lngValue) { return lngValue; }
Json ToJson(Double dblValue) { return dblValue; }
template <class T>
Json ToJson(const ChannelArray<T> &values) {
  return Json::array({ToJson(values[1]), ToJson(values[2])});
}
template <class Record>
requires test::HasFields<Record> Json ToJson(Record record) {
  Json fields = Json::object();
  test::VisitFields(record, [&](const char *strName, const auto &field) { fields[strName] = ToJson(field); });
  return fields;
}

Json Flags(std::initializer_list<Boolean> arrFlags) {
  Json list = Json::array();
  for (const Boolean f : arrFlags) list.push_back(ToJson(f));
  return list;
}

/// Scope of a running operation, which the script asks for.
class RunningOperation {
 public:
  RunningOperation(DriverScript &script, const char *strOperation)
      : m_script(script), m_strBefore(std::exchange(script.strOperation, strOperation)) {}
  RunningOperation(const RunningOperation &) = delete;
  RunningOperation &operator=(const RunningOperation &) = delete;
  ~RunningOperation() { m_script.strOperation = m_strBefore; }

 private:
  DriverScript &m_script;
  std::string m_strBefore;
};

}  // namespace

template <class Operation>
auto RecordingInstr::Told(const char *strOperation, Json arguments, Operation &&operation) {
  const std::size_t place = m_recorder.Add(Json::array({"call", strOperation, std::move(arguments), nullptr}));
  const RunningOperation running(m_script, strOperation);
  if constexpr (std::is_void_v<decltype(operation())>) {
    operation();
  } else {
    const Boolean fResult = operation();
    m_recorder[place][3] = static_cast<bool>(fResult);
    return fResult;
  }
}

Boolean RecordingInstr::TransactionStart(Boolean fGlobalTrans) {
  return Told("TransactionStart", Flags({fGlobalTrans}),
              [&] { return clsInstrInterface::TransactionStart(fGlobalTrans); });
}
Boolean RecordingInstr::TransactionFinish(Boolean fGlobalTrans) {
  return Told("TransactionFinish", Flags({fGlobalTrans}),
              [&] { return clsInstrInterface::TransactionFinish(fGlobalTrans); });
}
void RecordingInstr::TransactionCancel() {
  Told("TransactionCancel", Json::array(), [&] { clsInstrInterface::TransactionCancel(); });
}
Boolean RecordingInstr::OpenInstrument(const std::string &strName, Boolean IdQuery, Boolean fResetInstr,
                                       Boolean fAutoDetectErrors) {
  return Told("OpenInstrument", Json::array({strName, ToJson(IdQuery), ToJson(fResetInstr), ToJson(fAutoDetectErrors)}),
              [&] { return clsInstrInterface::OpenInstrument(strName, IdQuery, fResetInstr, fAutoDetectErrors); });
}
void RecordingInstr::CloseInstrument() {
  Told("CloseInstrument", Json::array(), [&] { clsInstrInterface::CloseInstrument(); });
}
Boolean RecordingInstr::Connect() {
  return Told("Connect", Json::array(), [&] { return clsInstrInterface::Connect(); });
}
Boolean RecordingInstr::CheckErrors(Boolean fOverride) {
  return Told("CheckErrors", Flags({fOverride}), [&] { return clsInstrInterface::CheckErrors(fOverride); });
}
Boolean RecordingInstr::CheckWarnings(Boolean fOverride) {
  return Told("CheckWarnings", Flags({fOverride}), [&] { return clsInstrInterface::CheckWarnings(fOverride); });
}
Boolean RecordingInstr::GetViInfo(Integer Index, tarvik::viInfo &record, std::string &strName) {
  return Told("GetViInfo", Json::array({Index}), [&] { return clsInstrInterface::GetViInfo(Index, record, strName); });
}
Boolean RecordingInstr::GetInstrInfo(udtInstrInfo &InstrInfo) {
  return Told("GetInstrInfo", Json::array(), [&] { return clsInstrInterface::GetInstrInfo(InstrInfo); });
}
Boolean RecordingInstr::SetMode(const udtModeInfo &ModeInfo) {
  return Told("SetMode", Json::array({ToJson(ModeInfo)}), [&] { return clsInstrInterface::SetMode(ModeInfo); });
}
Boolean RecordingInstr::GetMode(udtModeInfo &ModeInfo) {
  return Told("GetMode", Json::array(), [&] { return clsInstrInterface::GetMode(ModeInfo); });
}
Boolean RecordingInstr::SetTiming(const udtTimingInfo &TimingInfo) {
  return Told("SetTiming", Json::array({ToJson(TimingInfo)}), [&] { return clsInstrInterface::SetTiming(TimingInfo); });
}
Boolean RecordingInstr::GetTiming(udtTimingInfo &TimingInfo) {
  return Told("GetTiming", Json::array(), [&] { return clsInstrInterface::GetTiming(TimingInfo); });
}
Boolean RecordingInstr::Output(Integer intChan, Boolean fState, Boolean fIsComplement) {
  return Told("Output", Json::array({intChan, ToJson(fState), ToJson(fIsComplement)}),
              [&] { return clsInstrInterface::Output(intChan, fState, fIsComplement); });
}
Boolean RecordingInstr::SetLevels(const udtLevelInfo &LevelInfo) {
  return Told("SetLevels", Json::array({ToJson(LevelInfo)}), [&] { return clsInstrInterface::SetLevels(LevelInfo); });
}
Boolean RecordingInstr::GetLevels(udtLevelInfo &LevelInfo) {
  return Told("GetLevels", Json::array({ToJson(LevelInfo.eOutputLevel)}),
              [&] { return clsInstrInterface::GetLevels(LevelInfo); });
}
Boolean RecordingInstr::SetLimits(const udtLimitsInfo &Limits) {
  return Told("SetLimits", Json::array({ToJson(Limits)}), [&] { return clsInstrInterface::SetLimits(Limits); });
}
Boolean RecordingInstr::GetLimits(udtLimitsInfo &Limits) {
  return Told("GetLimits", Json::array(), [&] { return clsInstrInterface::GetLimits(Limits); });
}
Boolean RecordingInstr::SetTriggerLevels(const udtTrgLevelsInfo &TrgLevels) {
  return Told("SetTriggerLevels", Json::array({ToJson(TrgLevels)}),
              [&] { return clsInstrInterface::SetTriggerLevels(TrgLevels); });
}
Boolean RecordingInstr::GetTriggerLevels(udtTrgLevelsInfo &TrgLevels) {
  return Told("GetTriggerLevels", Json::array(), [&] { return clsInstrInterface::GetTriggerLevels(TrgLevels); });
}
Boolean RecordingInstr::SetRz(const BooleanArray &fRz) {
  return Told("SetRz", Json::array({Flags({fRz[1], fRz[2]})}), [&] { return clsInstrInterface::SetRz(fRz); });
}
Boolean RecordingInstr::GetRz(BooleanArray &fRz) {
  return Told("GetRz", Json::array(), [&] { return clsInstrInterface::GetRz(fRz); });
}
Boolean RecordingInstr::SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen) {
  return Told("SetPatternArray", Json::array({eChan, test::ToHex(arr.Elements()), lngPatternLen}),
              [&] { return clsInstrInterface::SetPatternArray(eChan, arr, lngPatternLen); });
}
Boolean RecordingInstr::GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) {
  return Told("GetPatternArray", Json::array({eChan}),
              [&] { return clsInstrInterface::GetPatternArray(eChan, arr, lngPatternLen); });
}
Boolean RecordingInstr::InstrumentCommands(InstrCommands eIC, std::string *pstrT, Integer intT) {
  return Told("InstrumentCommands", Json::array({static_cast<Long>(eIC)}),
              [&] { return clsInstrInterface::InstrumentCommands(eIC, pstrT, intT); });
}
Boolean RecordingInstr::PllRefSource(Double &dblFreq, Long &eSource, Boolean fGet) {
  const Json arguments = fGet ? Json::array({true}) : Json::array({false, dblFreq, eSource});
  return Told("PllRefSource", arguments, [&] { return clsInstrInterface::PllRefSource(dblFreq, eSource, fGet); });
}

}  // namespace tarvik
