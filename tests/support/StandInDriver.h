#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DriverFault.h"
#include "HookedDriver.h"
#include "RegisteredDriver.h"
#include "StandInState.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::test {

/// A failing status of the kind that a driver makes up itself.
inline constexpr Long Refused = -2147221503;

/// A failing status with the description that the driver leaves for it.
struct DriverFailure {
  Long lngNumber = 0;
  std::string strText;
};

/// The driver's side of the contract with scripted faults. It numbers each operation, writes a line for each,
/// and counts the references that it handed out.
class StandInDriver : private DriverHook {
 public:
  /// Registers itself as the driver's class, for this machine and for every server.
  StandInDriver();
  StandInDriver(const StandInDriver &) = delete;
  StandInDriver &operator=(const StandInDriver &) = delete;

  /// Makes a root as the next queued creation says.
  automation::Ref<automation::IUnknown> Create(const std::string &strProgId, const std::string &strServer);

  /// No instruments, no faults, no queued creations; OnTrace stays.
  void Reset();

  /// Called when the caller's turn ends (true) and when it begins again (false).
  void (*OnTurn)(bool fDriver) = nullptr;
  /// Called in the middle of a call that takes its time.
  std::function<void()> OnDelay;
  /// Called with the line of each operation: "Interface{path}.Operation(arguments) -> outcome".
  std::function<void(const std::string &)> OnTrace;
  /// The same lines, until somebody takes them.
  std::vector<std::string> arrTrace;
  std::vector<std::string> TakeTrace();

  void Add(const std::string &strName, const StandInConfig &config = {});
  void AddPending(const std::string &strName, const StandInConfig &config);
  /// Keys that are not named stay as they are.
  void Configure(const std::string &strName, const StandInConfig &config);
  void Remove(const std::string &strName);

  /// The next creation works, yields nothing, or fails.
  void QueueCreation() { m_arrCreations.push_back({}); }
  void QueueEmptyCreation() { m_arrCreations.push_back({true, std::nullopt}); }
  void QueueFailingCreation(DriverFailure failure) { m_arrCreations.push_back({false, std::move(failure)}); }

  /// The operation of this number from now on (1: the next) fails, and so do the ones behind it up to the count.
  void FailAt(int intNumber, DriverFailure failure, int intCount = 1);
  /// The same for the operations whose line begins with the text, with or without the path.
  void FailMatching(const std::string &strPrefix, int intNumber, DriverFailure failure, int intCount = 1);
  /// The operation of this number from now on, and the ones behind it up to the count, go wrong in this way, where it
  /// concerns them.
  void SpoilAt(int intNumber, DriverFault eFault, int intCount = 1);
  /// The operation of this number hands out nothing, or an object that has no known interface.
  void NothingAt(int intNumber) { SpoilAt(intNumber, DriverFault::Nothing); }
  void WrongAt(int intNumber) { SpoilAt(intNumber, DriverFault::WrongObject); }
  void ClearFaults();

  /// The lower bound of the pattern arrays that it hands out.
  Long lngFirstByte = 0;
  std::string strErrors;
  std::deque<std::string> arrWarnings;
  /// A description that every operation that succeeds leaves behind all the same; empty for none.
  std::string strLeftBehind;

  /// References that are not released yet, by interface.
  std::map<std::string, int> References() const;
  /// Operations since the last Reset.
  int Operations() const { return m_intCounter; }

  std::shared_ptr<StandInState> Find(const std::string &strName) const;
  std::shared_ptr<StandInState> Find(const InstrumentKey &key) const;
  const std::vector<std::shared_ptr<StandInState>> &Instruments() const { return m_arrInstruments; }
  void JoinPending();

  // For the effects of operations.

  /// What is scripted for the operation at work.
  bool IsSpoilt(DriverFault eFault) const;
  std::string TakeErrors() { return std::exchange(strErrors, {}); }
  std::string TakeWarnings();

 private:
  struct Creation {
    bool fNothing = false;
    std::optional<DriverFailure> failure;
  };
  struct NumberedFault {
    int intFirst, intLast;
    DriverFailure failure;
  };
  struct SpoiltCalls {
    int intFirst, intLast;
    DriverFault eFault;
  };
  struct MatchingFault {
    std::string strPrefix;
    int intBefore, intCount;
    DriverFailure failure;
  };

  /// In one order for all operations: it is counted, fails or takes effect, and its line is written.
  automation::Status Run(HookedCall &call) override;
  void CountReference(std::string_view strInterface, int intStep) override;
  /// Runs the effect of the operation as far as it is not spoilt.
  void Answer(HookedCall &call);
  /// Numbers the operation and tells its failure.
  std::optional<DriverFailure> Enter(const std::string &strPlain, const std::string &strWithPath);
  void Trace(const std::string &strLine);

  std::vector<std::shared_ptr<StandInState>> m_arrInstruments, m_arrPending;
  std::deque<Creation> m_arrCreations;
  std::vector<NumberedFault> m_arrNumbered;
  std::vector<MatchingFault> m_arrMatching;
  std::vector<SpoiltCalls> m_arrSpoilt;
  std::map<std::string, int> m_references;
  int m_intCounter = 0;
  RegisteredDriver m_registered;
};

}  // namespace tarvik::test
