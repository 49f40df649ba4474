#pragma once

class QEvent;

namespace tarvik {

/// Whether the event is something that the user did: a click, a key, a turn of the wheel, a drop. Moves of the pointer
/// without a button, focus and activation are none.
bool IsUserInput(const QEvent &event);

}  // namespace tarvik
