#pragma once

#include "DriverScript.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik {

/// The instrument class with operations that tell of each call before they run the real one. The panel that the
/// adapter is linked with calls these operations in place of those of clsInstrInterface: RecordCalls.cmake renames its
/// references. Calls within the class are not told. Of the same namespace and the same layout as clsInstrInterface, so
/// that only the name of the class differs in a reference.
class RecordingInstr : public clsInstrInterface {
 public:
  RecordingInstr(paneltest::Recorder &recorder, paneltest::DriverScript &script)
      : m_recorder(recorder), m_script(script) {}

  Boolean InTransaction() const { return Private::Of(*this).m_TransActive; }
  Boolean InGlobalTransaction() const { return Private::Of(*this).m_GlobalTrans; }

  Boolean TransactionStart(Boolean fGlobalTrans);
  Boolean TransactionFinish(Boolean fGlobalTrans);
  void TransactionCancel();
  Boolean OpenInstrument(const std::string &strName, Boolean IdQuery, Boolean fResetInstr, Boolean fAutoDetectErrors);
  void CloseInstrument();
  Boolean Connect();
  Boolean CheckErrors(Boolean fOverride);
  Boolean CheckWarnings(Boolean fOverride);
  Boolean GetViInfo(Integer Index, tarvik::viInfo &record, std::string &strName);
  Boolean GetInstrInfo(udtInstrInfo &InstrInfo);
  Boolean SetMode(const udtModeInfo &ModeInfo);
  Boolean GetMode(udtModeInfo &ModeInfo);
  Boolean SetTiming(const udtTimingInfo &TimingInfo);
  Boolean GetTiming(udtTimingInfo &TimingInfo);
  Boolean Output(Integer intChan, Boolean fState, Boolean fIsComplement);
  Boolean SetLevels(const udtLevelInfo &LevelInfo);
  Boolean GetLevels(udtLevelInfo &LevelInfo);
  Boolean SetLimits(const udtLimitsInfo &Limits);
  Boolean GetLimits(udtLimitsInfo &Limits);
  Boolean SetTriggerLevels(const udtTrgLevelsInfo &TrgLevels);
  Boolean GetTriggerLevels(udtTrgLevelsInfo &TrgLevels);
  Boolean SetRz(const BooleanArray &fRz);
  Boolean GetRz(BooleanArray &fRz);
  Boolean SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen);
  Boolean GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen);
  Boolean InstrumentCommands(InstrCommands eIC, std::string *pstrT, Integer intT);
  Boolean PllRefSource(Double &dblFreq, Long &eSource, Boolean fGet);

 private:
  /// Records the call when it begins and its result when it returns. A call that throws has no result.
  template <class Operation>
  auto Told(const char *strOperation, paneltest::Json arguments, Operation &&operation);

  paneltest::Recorder &m_recorder;
  paneltest::DriverScript &m_script;
};

}  // namespace tarvik
