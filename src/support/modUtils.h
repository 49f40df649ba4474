#pragma once

#include <ranges>
#include <string>

#include "support/Control.h"
#include "support/RunReported.h"

namespace tarvik {

/// Sets or resets the busy pointer. Only the default pointer becomes the hourglass and only the
/// hourglass is reset; a pointer set by the host stays. Calls do not nest.
void SetHourglass(Boolean fOn);

/// Selects the first button whose Tag holds the text, and tells whether there was one. "1" is
/// found in "10" too, so tags have to be chosen with care. A failure is reported and answers
/// what was found so far.
template <std::ranges::range Buttons>
Boolean SetOptionButtonToTag(Buttons &&objButtons, const std::string &strTag) {
  Boolean fFound = False;
  RunReported("modUtils", "SetOptionButtonToTag", [&] {
    for (OptionButtonControl *button : objButtons) {
      const std::string &strButtonTag = button->Tag();
      // An empty tag matches no text, not even the empty one.
      if (strButtonTag.empty() || strButtonTag.find(strTag) == std::string::npos) continue;
      button->SetValue(True);
      fFound = True;
      break;
    }
  });
  return fFound;
}

/// Gives the control the focus if it is enabled.
void SetFocusIfEnabled(Control &objControl);

}  // namespace tarvik
