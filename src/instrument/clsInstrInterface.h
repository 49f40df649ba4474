#pragma once

#include <memory>
#include <optional>
#include <string>

#include "automation/Ref.h"
#include "instrument/KolvenDriver.h"
#include "instrument/Vocabulary.h"
#include "instrument/udtInstrInfo.h"
#include "instrument/udtLevelInfo.h"
#include "instrument/udtLimitsInfo.h"
#include "instrument/udtModeInfo.h"
#include "instrument/udtTimingInfo.h"
#include "instrument/udtTrgLevelsInfo.h"
#include "instrument/viInfo.h"
#include "support/DynamicArray.h"
#include "support/Event.h"
#include "support/Export.h"
#include "support/Types.h"
#include "support/modGlobals.h"

namespace tarvik {

/// The only client of the instrument driver: connection, one session, transactions, polling of errors
/// and warnings, and transfer of each group of settings. Nothing that was read is cached; the driver
/// owns all settings.
///
/// An operation returns whether it ran to its end and throws no error: a failure is shown in a stop
/// box and logged, and the result is false. Only LetErrorsEnabled, and a log that cannot be written,
/// throw RunTimeError. A handler of an event that fails is reported separately. While the message loop runs, in a box,
/// a question or an event handler, no driver object is held but root and instrument. What needs an
/// open instrument asks IsOnline(False), whose box tells the user. Gets fill the caller's record as far as they come;
/// fields that the instrument lacks stay as they were.
///
/// Public operations are virtual so that hosts can observe or replace them. Operations call one another
/// non-virtually, so that an override sees exactly the calls from outside.
class TARVIK_EXPORT clsInstrInterface : public InstrReference {
 public:
  clsInstrInterface();
  clsInstrInterface(const clsInstrInterface &) = delete;
  clsInstrInterface &operator=(const clsInstrInterface &) = delete;
  /// Ends the session, which raises StatusMessage once more.
  ~clsInstrInterface() override;

  /// "Local Connection", "Connected to ...", "Online with ... (...)" or "Offline".
  Event<const std::string &> StatusMessage;
  /// Offered to hosts; warnings are shown in boxes and never come this way.
  Event<const std::string &> InstrWarnings;
  /// The text with which a commit failed, as the user has seen it.
  Event<const std::string &> InstrError;

  /// Begins a transaction; False while one is running. A global one drops whatever is running, and until
  /// its end local ones do nothing and no warning is polled.
  virtual Boolean TransactionStart(Boolean fGlobalTrans = False);
  /// Commits; False for a local finish within a global transaction. A failing commit is shown, dropped
  /// and raised as InstrError.
  virtual Boolean TransactionFinish(Boolean fGlobalTrans = False);
  /// Drops what was sent since the begin; failures are passed over.
  virtual void TransactionCancel();

  virtual Boolean IsConnected() const;
  /// Unless silent, tells the user in a box that there is no open instrument.
  virtual Boolean IsOnline(Boolean fSilent = False) const;
  /// Opens the instrument of this name after closing the one before. False without any message when
  /// there is no connection, no such instrument, or the driver does not open it.
  virtual Boolean OpenInstrument(const std::string &strName, Boolean IdQuery = False, Boolean fResetInstr = False,
                                 Boolean fAutoDetectErrors = True);
  /// Ends the session; failures are passed over. Raises "Offline" in any case.
  virtual void CloseInstrument();
  /// Creates the driver on the server stored last; asks for an address where that yields nothing.
  virtual Boolean Connect();
  /// Creates the driver anew where the last Connect has found it, and asks nothing. For a connection that was lost.
  Boolean ConnectAgain();

  /// Shows the pending instrument errors. True: an error was shown or the check is off. False: there was
  /// none, or no instrument is open.
  virtual Boolean CheckErrors(Boolean fOverride = False);
  /// Shows the pending warnings, each text once. False only when the driver failed.
  virtual Boolean CheckWarnings(Boolean fOverride = False);

  /// Entry `Index` (from 1) of the driver's instruments, open or not. False behind the last one.
  virtual Boolean GetViInfo(Integer Index, viInfo &viInfo, std::string &strName);
  virtual Boolean IsSingleChannel() const;
  virtual Boolean IsDualChannel() const;
  /// Empty when offline.
  virtual std::optional<Long> ChannelCount() const;
  /// Identity of the open instrument.
  virtual Boolean GetInstrInfo(udtInstrInfo &InstrInfo);

  virtual Boolean SetMode(const udtModeInfo &ModeInfo);
  /// A PLL setting comes back as a frequency, whatever was written.
  virtual Boolean GetMode(udtModeInfo &ModeInfo);
  virtual Boolean SetTiming(const udtTimingInfo &TimingInfo);
  virtual Boolean GetTiming(udtTimingInfo &TimingInfo);
  /// Switches one output of a channel (from 1).
  virtual Boolean Output(Integer intChan, Boolean fState, Boolean fIsComplement = False);

  /// Whether the open instrument lacks one of the things of this sum of Functionality bits; False offline.
  virtual Boolean IsRestricted(Long eFunctionality) const;
  virtual Boolean IsNotRestricted(Long eFunctionality) const;

  virtual Boolean SetLevels(const udtLevelInfo &LevelInfo);
  /// Levels come back in the form that eOutputLevel of the caller's record asks for.
  virtual Boolean GetLevels(udtLevelInfo &LevelInfo);
  virtual Boolean SetLimits(const udtLimitsInfo &Limits);
  virtual Boolean GetLimits(udtLimitsInfo &Limits);
  virtual Boolean SetTriggerLevels(const udtTrgLevelsInfo &TrgLevels);
  virtual Boolean GetTriggerLevels(udtTrgLevelsInfo &TrgLevels);

  /// Pattern format of each channel, addressed by the channel number: true is return to zero.
  virtual Boolean SetRz(const BooleanArray &fRz);
  virtual Boolean GetRz(BooleanArray &fRz);
  /// Writes lngPatternLen bits into the row eChan, a PatternRowNumber.
  virtual Boolean SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen);
  /// Reads a row and its length in bits; the driver may resize the array.
  virtual Boolean GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen);
  Boolean CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) override;

  /// Whether warnings are polled after each change of settings.
  virtual Boolean GetWarningsEnabled() const;
  virtual void LetWarningsEnabled(Boolean fEnable);
  /// Whether errors are polled without being asked for; passed on to the open instrument.
  virtual Boolean GetErrorsEnabled() const;
  /// A failure of the driver reaches the caller.
  virtual void LetErrorsEnabled(Boolean fEnable);

  /// Runs a command that has no settings. Self test and options hand back their text where pstrT is given;
  /// the self test's numeric result is not returned.
  virtual Boolean InstrumentCommands(InstrCommands eIC, std::string *pstrT = nullptr, Integer intT = 0);
  /// Reads or sets reference frequency (hertz) and source (PllReferenceSource) of the PLL; joins a running transaction.
  virtual Boolean PllRefSource(Double &dblFreq, Long &eSource, Boolean fGet);

  /// The driver's communication time-out in milliseconds; 0 offline.
  virtual Long GetPnpTimeout();
  virtual void LetPnpTimeout(Long lngTimeout);
  /// The driver's long form of error texts. Off after each OpenInstrument.
  Boolean GetVerboseErrorMsg() override;
  virtual void LetVerboseErrorMsg(Boolean fVerbose);

 protected:
  /// A transaction of this class is running.
  Boolean TransActive() const { return m_TransActive; }
  /// The running transaction is a global one.
  Boolean GlobalTrans() const { return m_GlobalTrans; }

 private:
  automation::Ref<kolven::IChannel> Channel(Long lngChannel) const;
  automation::Ref<kolven::IChannelLevels> Levels(Long lngChannel) const;
  automation::Ref<kolven::IErrorQueue> ErrorQueue() const;
  void CreateDriver(const std::string &strServer);
  void FindInstrument(const std::string &strName);
  void TellStatus(const std::string &strStatus) const;
  void ReadSessionState(const std::string &strName);
  void RunCommand(InstrCommands eIC, std::string &strT, Integer intT);
  void SwitchOutput(Integer intChan, Boolean fState, Boolean fIsComplement);
  void SendFormats(const BooleanArray &fRz);
  void ShowNewWarning(const std::string &strWarning);
  void SendMode(const udtModeInfo &ModeInfo);
  void SendExtWidth(Long ArmingSource);
  void SendChannelModes(const udtModeInfo &ModeInfo);
  void ReadTriggering(udtModeInfo &ModeInfo);
  void ReadChannelModes(udtModeInfo &ModeInfo);
  void SendTiming(const udtTimingInfo &TimingInfo, Long lngChannel);
  void ReadTiming(udtTimingInfo &TimingInfo, Long lngChannel);
  void SendLevels(const udtLevelInfo &LevelInfo, Long lngChannel);
  void ReadLevels(udtLevelInfo &LevelInfo, Long lngChannel);

  /// Removes quotes, breaks the entries into lines, and shows them; the caller's text is changed.
  static void ShowInstrErrors(std::string &strText);

  /// Frame of an operation that sends one group of settings.
  template <class Sending>
  Boolean SetWithin(const char *strProc, Sending &&sending);
  /// Frame of an operation that needs an open instrument and works outside of transactions.
  template <class Operation>
  Boolean WhileOnline(const char *strProc, Operation &&operation);

  std::string m_strServer;  ///< the address of the last creation
  automation::Ref<kolven::IDriverRoot> m_Root;
  automation::Ref<kolven::IInstrument> m_Instr;
  Long m_NumChannels = 0;
  Long m_Restrictions = 0;
  Boolean m_ErrorsEnabled;
  Boolean m_WarningsEnabled;
  Boolean m_TransActive;
  Boolean m_GlobalTrans;
  std::string m_LastWarning;
  /// The last check found another warning text than the one before.
  Boolean m_WarningChanged;
  viInfo m_ViBuffer;
};

/// gobjInstr as clsInstrInterface, created on first use. Null only if an InstrReference of another class is
/// installed.
TARVIK_EXPORT std::shared_ptr<clsInstrInterface> InstrInterface();

}  // namespace tarvik
