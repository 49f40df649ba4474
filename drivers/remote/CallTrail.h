#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "remote/Wire.h"

namespace tarvik::remote {

/// A call or fetch on its way: on which object, which operation, with which arguments.
struct Asked {
  ObjectId lngId = 0;
  std::uint8_t intInterface = 0;
  std::uint8_t intOperation = 0;
  std::string strInputs;     ///< the arguments that only go in: two calls with the same ones ask for the same
  std::string strArguments;  ///< all, as they are sent
};

/// An order of calls, without the numbers of objects: each step is on the root, on the instrument that the calls are
/// about, or on what an earlier step brought.
class CallTrail {
 public:
  static constexpr int OnRoot = -1, OnInstrument = -2;
  struct Step {
    int intOn = OnRoot;
    bool fObject = false;  ///< brings an object
    bool fWaited = false;  ///< answered: no deferred fetch
    std::uint8_t intInterface = 0;
    std::uint8_t intOperation = 0;
    std::string strInputs;
    std::string strArguments;
    std::string strRelied{};  ///< the end of its answer that the steps behind rely on; empty: any success will do
  };

  const std::vector<Step> &Steps() const { return m_arrSteps; }
  void Add(Step step) { m_arrSteps.push_back(std::move(step)); }
  void Cut(std::size_t lngSteps) { m_arrSteps.resize(lngSteps); }
  /// Lets go of fetches at the end that nothing was asked of.
  void Trim();

  /// One line for each step; and back. Text that is no trail of this contract gives nothing.
  std::string Text() const;
  static CallTrail FromText(std::string_view strText);

  /// What is known of an order: as it was the last time in this process, or else as it usually is. Any thread.
  static CallTrail Known(const std::string &strName);
  static void Learn(const std::string &strName, const CallTrail &trail);

 private:
  std::vector<Step> m_arrSteps;
};

}  // namespace tarvik::remote
