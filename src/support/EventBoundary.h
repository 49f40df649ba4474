#pragma once

#include <string>
#include <string_view>

#include "support/RunTimeError.h"
#include "support/UserEvent.h"
#include "support/modUtils.h"

namespace tarvik {

/// Reports an error that left an event handler: a stop box with the description, then a log record that names control
/// and event.
void ReportUnhandledError(const std::string &strControl, const std::string &strEvent, const RunTimeError &error);

/// The place where a user's event enters the system, and where a run-time error that no procedure
/// handled ends it: the state stays as the steps had left it and the program runs on. Events that
/// the program raises itself do not pass here, so a failure in them reaches the step that raised them.
/// EventEnded stops here without a report; the control may have been destroyed by then.
/// Returns whether the event ran to its end.
template <class Procedure>
bool RunUserEvent(std::string_view strControl, std::string_view strEvent, Procedure &&procedure,
                  const void *owner = nullptr) {
  const auto run = [&] {
    const UserEvent event(owner);
    try {
      try {
        RunCatchable(std::forward<Procedure>(procedure));
        return true;
      } catch (const RunTimeError &error) {
        ReportUnhandledError(std::string(strControl), std::string(strEvent), error);
      }
    } catch (const EventEnded &) {
      IgnoreErrors([] { SetHourglass(False); });
    }
    return false;
  };
  const bool fDone = run();
  // The enclosing event may have been ended as well.
  UserEvent::LeaveIfEnded();
  return fDone;
}

}  // namespace tarvik
