#pragma once

#include <string>

#include "support/Host.h"

namespace tarvik {

// Each of these runs the host's message loop, so the host may hide or destroy the panel whose event is being handled.
// In that case they throw EventEnded.

/// Host::MsgBox. Input that the user made during a driver call is discarded first, so that it cannot answer the box.
BoxAnswer ShowBox(const std::string &strText, BoxIcon icon, BoxButtons buttons = BoxButtons::Ok,
                  const std::string &strTitle = AppTitle);
/// Host::InputBox, with the same rule.
std::string AskForText(const std::string &strPrompt, const std::string &strTitle, const std::string &strDefault);
/// Processes pending paint and input events once.
void YieldToEvents();

}  // namespace tarvik
