#pragma once

#include <array>
#include <string>
#include <vector>

#include "Sweep.h"

namespace tarvik::test {

/// The driver as the reference sees it: a list of calls, one of which goes wrong, and the few answers on which the
/// instrument class decides what it does next.
class ReferenceDriver {
 public:
  struct Failure {
    long lngNumber;
    std::string strText;
  };
  /// A reference that was handed out; false where it is empty.
  using Object = bool;

  /// From the next call on.
  void Break(const SweepCase &one) { m_case = one; }

  void Do(Object object, const std::string &strCall);
  Object Fetch(Object object, const std::string &strCall);
  /// The same for a generic reference, which the caller narrows.
  Object FetchNarrowed(Object object, const std::string &strCall);
  Object Create();
  long Read(Object object, const std::string &strCall, long lngValue);
  std::string Read(Object object, const std::string &strCall, const std::string &strValue);

  /// Whether the last call has gone wrong in this way.
  bool Is(DriverFault eFault) const;
  /// Whether such a call has answered NaN.
  bool AnswersNoNumber(const std::string &strCall) const;

  /// "IEdges.SetLeading"; of Transaction the command too.
  std::vector<std::string> arrCalls;

  // What the driver answers.
  long lngChannels = 2, lngMask = 0, lngPulseMode = 0, lngArmingSource = 3;
  std::string strWarnings, strErrors;
  std::array<int, 3> patternBytes{1, 1, 1};
  bool fVerbose = false, fTransaction = false, fOpens = true, fReset = false;

 private:
  /// Counts the call and raises its failure. Answers whether it goes wrong in this other way.
  void Count(Object object, const std::string &strCall);

  SweepCase m_case{.intCall = 0};
  std::vector<std::string> m_arrNotNumbers;
  int m_intCalls = 0;
};

}  // namespace tarvik::test
