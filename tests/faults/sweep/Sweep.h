#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "DriverFault.h"

namespace tarvik::test {

/// One case: which call of what is done goes wrong in which state, and how.
struct SweepCase {
  std::string strWhat{};
  std::string strState{};
  DriverFault eFault = DriverFault::Status;
  bool fForEver = false;
  int intCall = 1;  ///< counts from 1

  /// "SetLevels/online two channels/status/once/7"
  std::string Name() const;
  /// How many calls go wrong from this one on.
  int Count() const { return fForEver ? 1'000'000 : 1; }
};

/// Which cases run, and how many did. The environment decides: TARVIK_SWEEP=all runs every one, TARVIK_SWEEP_CASE=text
/// those whose name holds the text, and without them a slice runs: single failing statuses at every call, and of
/// everything else what the share leaves.
class Sweep {
 public:
  /// One of this many cases that are not in every slice; 1 for all.
  explicit Sweep(std::uint32_t lngShare, std::uint32_t lngShareOfStatus = 1)
      : m_lngShare(lngShare), m_lngShareOfStatus(lngShareOfStatus) {}
  Sweep(const Sweep &) = delete;
  Sweep &operator=(const Sweep &) = delete;

  /// Runs a case for every call of the trace and every fault that concerns it. Stops at the first case that has a
  /// failed expectation, whose name is told.
  void Run(const std::string &strWhat, const std::string &strState, const std::vector<std::string> &arrTrace,
           const std::function<void(const SweepCase &)> &run);
  /// The count of each kind so far.
  void Print() const;

 private:
  bool Wants(const SweepCase &one) const;
  void RunOne(const SweepCase &one, const std::function<void(const SweepCase &)> &run);

  const std::uint32_t m_lngShare, m_lngShareOfStatus;
  std::map<std::string, int> m_counts;
};

/// The calls of a trace as the reference names them: "IEdges.SetLeading", and of Transaction the command too.
std::vector<std::string> CallNames(const std::vector<std::string> &arrTrace);

/// What of a host's lines the user saw and what the log got: boxes, questions and records. Of questions for a text the
/// word "input" alone, where the words are another test's concern.
std::vector<std::string> LinesTold(const std::vector<std::string> &arrLines, bool fWordsOfQuestions);

/// The call of a trace without the object's place and the outcome: "IEdges.SetLeading(0, 1e-09)".
std::string PlainCall(const std::string &strTraceLine);

}  // namespace tarvik::test
