#pragma once

#include "support/Event.h"

namespace tarvik {

/// Raised at the end of each event of the user that no other one stands below, with the owner of the event, which may
/// have been destroyed. Of this thread. A handler must let nothing out.
Event<const void *> &ActionEnded();

}  // namespace tarvik
