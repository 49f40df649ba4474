#pragma once

#include <string>
#include <utility>

#include "support/Event.h"
#include "support/EventBoundary.h"
#include "support/RunReported.h"
#include "support/Types.h"

namespace tarvik {

/// Module name in the reports of the instrument class.
inline constexpr const char *InstrModule = "clsInstrInterface";

/// Frame of a reporting operation of the class: a failure is reported and the result stays as the operation had set it.
/// `afterwards` as in RunReported.
template <class Result = Boolean, class Operation, class Afterwards>
Result Reported(const char *strProc, Operation &&operation, Afterwards &&afterwards) {
  Result result{};
  RunReported(
      InstrModule, strProc, [&] { std::forward<Operation>(operation)(result); }, afterwards);
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
