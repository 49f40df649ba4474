#pragma once

#include <string>

#include "support/Host.h"

namespace tarvik {

// What the host offers while the event at work waits. The host's program runs meanwhile, and may hide or end the panel
// from which the event came: EventEnded then leaves from here.

/// A box, as Host::MsgBox. What the user did while the driver worked does not reach it.
BoxAnswer ShowBox(const std::string &strText, BoxIcon icon, BoxButtons buttons = BoxButtons::Ok,
                  const std::string &strTitle = AppTitle);
/// A question for a text, as Host::InputBox.
std::string AskForText(const std::string &strPrompt, const std::string &strTitle, const std::string &strDefault);
/// Serves pending paint and input events once.
void YieldToEvents();

}  // namespace tarvik
