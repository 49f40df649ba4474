#pragma once

#include "DriverScript.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik::paneltest {

/// The real instrument class; records calls that come from outside of it.
class RecordingInstr : public clsInstrInterface {
 public:
  RecordingInstr(Recorder &recorder, DriverScript &script) : m_recorder(recorder), m_script(script) {}

  Boolean InTransaction() const { return TransActive(); }
  Boolean InGlobalTransaction() const { return GlobalTrans(); }

  Boolean TransactionStart(Boolean fGlobalTrans) override;
  Boolean TransactionFinish(Boolean fGlobalTrans) override;
  void TransactionCancel() override;
  Boolean OpenInstrument(const std::string &strName, Boolean IdQuery, Boolean fResetInstr,
                         Boolean fAutoDetectErrors) override;
  void CloseInstrument() override;
  Boolean Connect() override;
  Boolean CheckErrors(Boolean fOverride) override;
  Boolean CheckWarnings(Boolean fOverride) override;
  Boolean GetViInfo(Integer Index, tarvik::viInfo &record, std::string &strName) override;
  Boolean GetInstrInfo(udtInstrInfo &InstrInfo) override;
  Boolean SetMode(const udtModeInfo &ModeInfo) override;
  Boolean GetMode(udtModeInfo &ModeInfo) override;
  Boolean SetTiming(const udtTimingInfo &TimingInfo) override;
  Boolean GetTiming(udtTimingInfo &TimingInfo) override;
  Boolean Output(Integer intChan, Boolean fState, Boolean fIsComplement) override;
  Boolean SetLevels(const udtLevelInfo &LevelInfo) override;
  Boolean GetLevels(udtLevelInfo &LevelInfo) override;
  Boolean SetLimits(const udtLimitsInfo &Limits) override;
  Boolean GetLimits(udtLimitsInfo &Limits) override;
  Boolean SetTriggerLevels(const udtTrgLevelsInfo &TrgLevels) override;
  Boolean GetTriggerLevels(udtTrgLevelsInfo &TrgLevels) override;
  Boolean SetRz(const BooleanArray &fRz) override;
  Boolean GetRz(BooleanArray &fRz) override;
  Boolean SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen) override;
  Boolean GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) override;
  Boolean InstrumentCommands(InstrCommands eIC, std::string *pstrT, Integer intT) override;
  Boolean PllRefSource(Double &dblFreq, Long &eSource, Boolean fGet) override;

 private:
  /// Records the call when it begins and its result when it returns. A call that throws has no result.
  template <class Operation>
  auto Told(const char *strOperation, Json arguments, Operation &&operation);

  Recorder &m_recorder;
  DriverScript &m_script;
};

}  // namespace tarvik::paneltest
