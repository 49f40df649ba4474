#pragma once

#include <string>
#include <utility>

#include "automation/CallsAhead.h"
#include "automation/Ref.h"
#include "instrument/KolvenDriver.h"
#include "instrument/Reported.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik {

/// State of clsInstrInterface, and the steps of its operations.
class TARVIK_HIDDEN clsInstrInterface::Private {
 public:
  explicit Private(clsInstrInterface &instr) : face(instr) {}
  Private(const Private &) = delete;
  Private &operator=(const Private &) = delete;

  static const Private &Of(const clsInstrInterface &instr) { return *instr.m; }

  automation::Ref<kolven::IChannel> Channel(Long lngChannel) const;
  automation::Ref<kolven::IChannelLevels> Levels(Long lngChannel) const;
  automation::Ref<kolven::IErrorQueue> ErrorQueue() const;
  std::string Warnings() const;
  bool PollsWarnings(Boolean fOverride) const;
  bool IsOpenAtDriver() const;
  void CreateDriver(const std::string &strServer);
  void FindInstrument(const std::string &strName);
  void TellStatus(const std::string &strStatus) const;
  void ReadSessionState(const std::string &strName);
  void StartTransaction(Boolean fGlobalTrans, Boolean &fResult);
  /// Shows and raises why the instrument refused a commit.
  void TellRefusal(std::string strText) const;
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

  /// Makes the calls of `sending`, which are rehearsed with a driver at a distance. It does nothing but calls.
  template <class Sending>
  void SendTogether(Sending &&sending) {
    const automation::CallsAhead ahead(m_Instr, sending);
    sending();
  }

  /// Frame of an operation that sends settings in no transaction of its own and polls the warnings behind them.
  template <class Sending>
  Boolean SendAndCheck(const char *strProc, Sending &&sending) {
    return WhileOnline(strProc, [&](Boolean &fResult) {
      const automation::CallsAhead ahead(m_Instr, [&] {
        sending();
        if (PollsWarnings(False)) Warnings();
      });
      sending();
      fResult = face.CheckWarnings(False);
    });
  }

  /// Frame of an operation that sends one group of settings in a transaction.
  template <class Sending>
  Boolean SetWithin(const char *strProc, Sending &&sending) {
    return Reported(
        strProc,
        [&](Boolean &fResult) {
          if (!face.IsOnline(False)) return;
          face.TransactionStart(False);
          SendTogether(sending);
          const automation::CallsAhead ahead = face.FinishAhead(False);
          // TransactionFinish reports rejected settings itself; that does not fail the operation.
          face.TransactionFinish(False);
          fResult = face.CheckWarnings(False);
        },
        [&] { face.TransactionCancel(); });
  }

  /// Frame of an operation that needs an open instrument and works outside of transactions.
  template <class Operation>
  Boolean WhileOnline(const char *strProc, Operation &&operation) {
    return Reported(strProc, [&](Boolean &fResult) {
      if (face.IsOnline(False)) std::forward<Operation>(operation)(fResult);
    });
  }

  clsInstrInterface &face;
  std::string m_strServer;  ///< the address of the last creation
  automation::Ref<kolven::IDriverRoot> m_Root;
  automation::Ref<kolven::IInstrument> m_Instr;
  Long m_NumChannels = 0;
  Long m_Restrictions = 0;
  Boolean m_ErrorsEnabled;
  Boolean m_WarningsEnabled;
  /// A transaction of this class is running.
  Boolean m_TransActive;
  /// The running transaction is a global one.
  Boolean m_GlobalTrans;
  std::string m_LastWarning;
  /// The last check found another warning text than the one before.
  Boolean m_WarningChanged;
  viInfo m_ViBuffer;
};

}  // namespace tarvik
