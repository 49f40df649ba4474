#pragma once

#include <functional>
#include <string>

#include "support/RunTimeError.h"
#include "support/UserEvent.h"
#include "support/modUtils.h"

namespace tarvik {

/// Called with the control, the event and the failure that nobody handled.
using UnhandledErrorHandler =
    std::function<void(const std::string &strControl, const std::string &strEvent, const RunTimeError &error)>;

/// The handler in force; by default a stop box with the description, then a log record that names
/// control and event. Returns the one before. A null handler brings the default back.
UnhandledErrorHandler SetUnhandledErrorHandler(UnhandledErrorHandler handler);

/// Tells the handler in force of a failure that left an event.
void ReportUnhandledError(const std::string &strControl, const std::string &strEvent, const RunTimeError &error);

/// The place where a user's event enters the system, and where a run-time error that no procedure
/// handled ends it: the state stays as the steps had left it and the program runs on. Events that
/// the program raises itself do not pass here, so a failure in them reaches the step that raised them.
/// An event that was ended while its box stood ends here in silence; its control may be gone by then.
/// Returns whether the event ran to its end.
template <class Procedure>
bool RunUserEvent(const std::string &strControl, const std::string &strEvent, Procedure &&procedure,
                  const void *owner = nullptr) {
  const auto run = [&] {
    const UserEvent event(owner);
    try {
      try {
        std::forward<Procedure>(procedure)();
        return true;
      } catch (const RunTimeError &error) {
        ReportUnhandledError(strControl, strEvent, error);
      }
    } catch (const EventEnded &) {
      IgnoreErrors([] { SetHourglass(False); });
    }
    return false;
  };
  const bool fDone = run();
  // The event from which the program came here may have been ended with it.
  UserEvent::LeaveIfEnded();
  return fDone;
}

}  // namespace tarvik
