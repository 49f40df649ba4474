#include "support/EventBoundary.h"

#include <utility>

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
  // With the log gone as well there is nobody left to tell.
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
