#pragma once

#include <string>
#include <utility>

#include "support/Event.h"
#include "support/EventBoundary.h"
#include "support/RunTimeError.h"
#include "support/Types.h"
#include "support/modErrorLog.h"

namespace tarvik {

/// Module name in the reports of the instrument class.
inline constexpr const char *InstrModule = "clsInstrInterface";

/// The one way in which a reporting operation ends: a RunTimeError becomes a report and the result stays
/// as the operation had set it. What has to be put in order after a failure follows the report, also when
/// the report itself cannot be written, or the host ended the event while its box stood.
template <class Result = Boolean, class Operation, class Afterwards>
Result Reported(const char *strProc, Operation &&operation, Afterwards &&afterwards) {
  Result result{};
  try {
    std::forward<Operation>(operation)(result);
  } catch (const RunTimeError &error) {
    try {
      LogError(InstrModule, strProc, error.Number(), error.Description());
    } catch (...) {
      afterwards();
      throw;
    }
    afterwards();
  }
  return result;
}

template <class Result = Boolean, class Operation>
Result Reported(const char *strProc, Operation &&operation) {
  return Reported<Result>(strProc, std::forward<Operation>(operation), [] {});
}

/// Raises an event of the instrument class. A host's handler that fails ends there, with the report of the event
/// boundary; the handlers behind it are called and the class goes on.
inline void Tell(const Event<const std::string &> &event, const char *strEvent, const std::string &strText) {
  event.RaiseGuarded([&](auto &&callHandler) { RunUserEvent(InstrModule, strEvent, callHandler); }, strText);
}

}  // namespace tarvik
