#include "support/EventBoundary.h"

#include "support/ConnectionLoss.h"
#include "support/modErrorLog.h"

namespace tarvik {

void ReportUnhandledError(const std::string &strControl, const std::string &strEvent, const RunTimeError &error) {
  NoteFailure(error.Number(), error.Description());
  // If the log cannot be written either, there is no further place to report to.
  const auto log = [&] {
    IgnoreErrors([&] { WriteLogRecord(strControl, strEvent, error.Number(), error.Description()); });
  };
  try {
    ShowStopMessage(error.Description());
  } catch (const EventEnded &) {
    log();
    throw;
  }
  log();
}

}  // namespace tarvik
