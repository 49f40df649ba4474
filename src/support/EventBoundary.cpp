#include "support/EventBoundary.h"

#include <utility>

#include "support/ConnectionLoss.h"
#include "support/modErrorLog.h"

namespace tarvik {

namespace {

UnhandledErrorHandler &Handler() {
  static UnhandledErrorHandler handler;
  return handler;
}

}  // namespace

UnhandledErrorHandler SetUnhandledErrorHandler(UnhandledErrorHandler handler) {
  return std::exchange(Handler(), std::move(handler));
}

void ReportUnhandledError(const std::string &strControl, const std::string &strEvent, const RunTimeError &error) {
  if (Handler()) {
    Handler()(strControl, strEvent, error);
    return;
  }
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
