#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "ReferenceDriver.h"

namespace tarvik::test {

/// The rules of the instrument class stated a second time, as plainly as possible: the calls of each operation in their
/// order, what it answers, what the user sees and reads in the log, and the state that it leaves. Values are not kept:
/// the class passes them through.
class ReferenceInstrument {
 public:
  using Failure = ReferenceDriver::Failure;

  ReferenceDriver driver;
  bool fConnected = false, fOnline = false;
  long lngChannels = 0, lngMask = 0;
  bool fErrorsEnabled = false, fWarningsEnabled = false, fTransaction = false, fGlobal = false;
  int intPointer = 0;
  std::string strStoredAddress = "Unknown";
  /// Boxes, questions and log records, in order.
  std::vector<std::string> arrTold;
  std::vector<std::string> arrEvents;
  /// A host that hears InstrError.
  std::function<void()> OnInstrError;

  bool TransactionStart(bool fGlobalTrans);
  bool TransactionFinish(bool fGlobalTrans);
  void TransactionCancel();
  bool IsOnline(bool fSilent);
  bool OpenInstrument();
  void CloseInstrument();
  bool Connect();
  bool ConnectAgain();
  bool CheckErrors(bool fOverride);
  bool CheckWarnings(bool fOverride);
  bool GetViInfo(int intIndex, std::string &strName);
  bool GetInstrInfo(std::string &strProductId);
  bool SetMode(long lngTrigger, long lngPulse, const std::string &strSetter);
  bool GetMode();
  bool SetTiming(bool fDoublePulse);
  bool GetTiming();
  bool Output(bool fIsComplement);
  bool SetLevels();
  bool GetLevels();
  bool SetLimits();
  bool GetLimits();
  bool SetTriggerLevels();
  bool GetTriggerLevels();
  bool SetRz();
  bool GetRz();
  bool Pattern(const std::string &strProc, const std::string &strCall, bool fPolls);
  void LetErrorsEnabled(bool fEnable);
  bool InstrumentCommands(int intCommand, std::string &strText);
  bool PllRefSource(bool fGet);
  long GetPnpTimeout();
  void LetPnpTimeout();
  bool GetVerboseErrorMsg();
  void LetVerboseErrorMsg(bool fVerbose);
  bool IsRestricted(long lngBits) const { return (lngMask & lngBits) > 0; }

  /// What a failure is told with that a procedure has an error path for.
  void Report(const std::string &strModule, const std::string &strProc, const Failure &failure);
  /// A box, and a record of the log, as the class itself has them.
  void Box(const std::string &strIcon, const std::string &strText);
  void Log(const Failure &failure, const std::string &strModule, const std::string &strProc);
  void Hourglass(bool fOn) { intPointer = fOn ? 11 : 0; }

 private:
  using Object = ReferenceDriver::Object;

  /// A failure in the steps is reported; then comes what is told for afterwards.
  void Reported(const char *strProc, const std::function<void()> &steps, const std::function<void()> &afterwards = {});
  void WhileOnline(const char *strProc, const std::function<void()> &steps);
  /// The frame of the operations that send a page.
  bool Sends(const char *strProc, const std::function<void()> &steps);
  void Ignored(const std::function<void()> &step);
  void ShowErrors(const std::string &strText);
  void Status(const std::string &strText) { arrEvents.push_back("StatusMessage: " + strText); }

  /// Fetches one object of the open instrument after the other.
  Object At(std::initializer_list<const char *> calls);
  Object Channel() { return At({"IInstrument.GetChannels", "IChannelList.GetItem"}); }
  Object Levels() { return driver.FetchNarrowed(Channel(), "IChannel.GetLevels"); }
  void EachChannel(const std::function<void()> &steps);
  void EachOf(Object object, const std::string &strInterface, std::initializer_list<const char *> calls);
  void ChannelModes(bool fPattern, const std::string &strVerb);
  void LevelSteps(const std::string &strVerb);
  void LimitSteps(bool fSet);
  void TriggerLevelSteps(const std::string &strVerb);
  void ReadTiming();

  std::string m_strLastWarning;
  int m_intReports = 0;
};

}  // namespace tarvik::test
