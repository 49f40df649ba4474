#pragma once

#include <functional>
#include <string>

#include "platform/PictureBox.h"
#include "support/Event.h"
#include "support/RunTimeError.h"

namespace tarvik::test {

// Calls between objects of the product that a test hears without a hook in the product: a program with the library
// tarvik_watched_calls is linked so that these calls come here, and go on to the real function from here.

/// A control is told to take the focus, whether or not it can. With its object name.
Event<const std::string &> &FocusRequested();

/// Something was drawn on a picture.
Event<const PictureBox &, const DrawPrimitive &> &Drawn();

/// The function, while there is one, takes what the event boundary would show and log: control, event, error.
using ReportHandler = std::function<void(const std::string &, const std::string &, const RunTimeError &)>;
ReportHandler &UnhandledErrors();

}  // namespace tarvik::test
