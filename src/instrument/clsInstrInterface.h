#pragma once

#include <memory>
#include <optional>
#include <string>

#include "instrument/Records.h"
#include "instrument/Vocabulary.h"
#include "instrument/viInfo.h"
#include "support/DynamicArray.h"
#include "support/Event.h"
#include "support/Export.h"
#include "support/Types.h"
#include "support/modGlobals.h"

namespace tarvik {

namespace automation {
class CallsAhead;
}

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
class TARVIK_EXPORT clsInstrInterface : public InstrReference {
 public:
  class Private;

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
  Boolean TransactionStart(Boolean fGlobalTrans = False);
  /// Commits; False for a local finish within a global transaction. A failing commit is shown, dropped
  /// and raised as InstrError.
  Boolean TransactionFinish(Boolean fGlobalTrans = False);
  /// Announces TransactionFinish with CheckWarnings right behind it, while what is returned lives: a driver at a
  /// distance is then asked for both in one go.
  [[nodiscard]] automation::CallsAhead FinishAhead(Boolean fGlobalTrans = False);
  /// Drops what was sent since the begin; failures are passed over.
  void TransactionCancel();

  Boolean IsConnected() const;
  /// Unless silent, tells the user in a box that there is no open instrument.
  Boolean IsOnline(Boolean fSilent = False) const;
  /// Opens the instrument of this name after closing the one before. False without any message when
  /// there is no connection, no such instrument, or the driver does not open it.
  Boolean OpenInstrument(const std::string &strName, Boolean IdQuery = False, Boolean fResetInstr = False,
                         Boolean fAutoDetectErrors = True);
  /// Ends the session; failures are passed over. Raises "Offline" in any case.
  void CloseInstrument();
  /// Creates the driver on the server stored last; asks for an address where that yields nothing.
  Boolean Connect();
  /// Creates the driver anew where the last Connect has found it, and asks nothing. For a connection that was lost.
  Boolean ConnectAgain();

  /// Shows the pending instrument errors. True: an error was shown or the check is off. False: there was
  /// none, or no instrument is open.
  Boolean CheckErrors(Boolean fOverride = False);
  /// Shows the pending warnings, each text once. False only when the driver failed.
  Boolean CheckWarnings(Boolean fOverride = False);

  /// Entry `Index` (from 1) of the driver's instruments, open or not. False behind the last one.
  Boolean GetViInfo(Integer Index, viInfo &viInfo, std::string &strName);
  Boolean IsSingleChannel() const;
  Boolean IsDualChannel() const;
  /// Empty when offline.
  std::optional<Long> ChannelCount() const;
  /// Identity of the open instrument.
  Boolean GetInstrInfo(udtInstrInfo &InstrInfo);

  Boolean SetMode(const udtModeInfo &ModeInfo);
  /// A PLL setting comes back as a frequency, whatever was written.
  Boolean GetMode(udtModeInfo &ModeInfo);
  Boolean SetTiming(const udtTimingInfo &TimingInfo);
  Boolean GetTiming(udtTimingInfo &TimingInfo);
  /// Switches one output of a channel (from 1).
  Boolean Output(Integer intChan, Boolean fState, Boolean fIsComplement = False);

  /// Whether the open instrument lacks one of the things of this sum of Functionality bits; False offline.
  Boolean IsRestricted(Long eFunctionality) const;
  Boolean IsNotRestricted(Long eFunctionality) const;

  Boolean SetLevels(const udtLevelInfo &LevelInfo);
  /// Levels come back in the form that eOutputLevel of the caller's record asks for.
  Boolean GetLevels(udtLevelInfo &LevelInfo);
  Boolean SetLimits(const udtLimitsInfo &Limits);
  Boolean GetLimits(udtLimitsInfo &Limits);
  Boolean SetTriggerLevels(const udtTrgLevelsInfo &TrgLevels);
  Boolean GetTriggerLevels(udtTrgLevelsInfo &TrgLevels);

  /// Pattern format of each channel, addressed by the channel number: true is return to zero.
  Boolean SetRz(const BooleanArray &fRz);
  Boolean GetRz(BooleanArray &fRz);
  /// Writes lngPatternLen bits into the row eChan, a PatternRowNumber.
  Boolean SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen);
  /// Reads a row and its length in bits; the driver may resize the array.
  Boolean GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen);
  Boolean CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) override;

  /// Whether warnings are polled after each change of settings.
  Boolean GetWarningsEnabled() const;
  void LetWarningsEnabled(Boolean fEnable);
  /// Whether errors are polled without being asked for; passed on to the open instrument.
  Boolean GetErrorsEnabled() const;
  /// A failure of the driver reaches the caller.
  void LetErrorsEnabled(Boolean fEnable);

  /// Runs a command that has no settings. Self test and options hand back their text where pstrT is given;
  /// the self test's numeric result is not returned.
  Boolean InstrumentCommands(InstrCommands eIC, std::string *pstrT = nullptr, Integer intT = 0);
  /// Reads or sets reference frequency (hertz) and source (PllReferenceSource) of the PLL; joins a running transaction.
  Boolean PllRefSource(Double &dblFreq, Long &eSource, Boolean fGet);

  /// The driver's communication time-out in milliseconds; 0 offline.
  Long GetPnpTimeout();
  void LetPnpTimeout(Long lngTimeout);
  /// The driver's long form of error texts. Off after each OpenInstrument.
  Boolean GetVerboseErrorMsg() override;
  void LetVerboseErrorMsg(Boolean fVerbose);

 private:
  const std::unique_ptr<Private> m;
};

/// gobjInstr as clsInstrInterface, created on first use. Null only if an InstrReference of another class is
/// installed.
TARVIK_EXPORT std::shared_ptr<clsInstrInterface> InstrInterface();

}  // namespace tarvik
