#pragma once

#include <utility>

#include "support/RunTimeError.h"
#include "support/modErrorLog.h"

namespace tarvik {

/// Runs a step of a procedure that reports its failures: a run-time error that leaves the step ends it and goes to
/// LogError under the names of module and procedure. `afterwards` runs behind a failure, also where the report cannot
/// be written or the host ends the event while its box stands. Answers whether the step ran to its end.
template <class Step, class Afterwards>
bool RunReported(const char *strModule, const char *strProc, Step &&step, Afterwards &&afterwards) {
  try {
    RunCatchable(std::forward<Step>(step));
    return true;
  } catch (const RunTimeError &error) {
    try {
      RunCatchable([&] { LogError(strModule, strProc, error.Number(), error.Description()); });
    } catch (...) {
      afterwards();
      throw;
    }
    afterwards();
    return false;
  }
}

template <class Step>
bool RunReported(const char *strModule, const char *strProc, Step &&step) {
  return RunReported(strModule, strProc, std::forward<Step>(step), [] {});
}

}  // namespace tarvik
