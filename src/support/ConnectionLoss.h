#pragma once

#include <cstdint>
#include <string>

#include "support/Event.h"

namespace tarvik {

/// Whether a driver answers with this status that its session is dead: the machine or process behind it has gone, and
/// every further call fails as well.
bool TellsLostConnection(std::int32_t lngStatus);

/// Raised with the driver's description for each failure that tells so, ahead of the failure's report. Of this thread.
Event<const std::string &> &ConnectionLost();

/// Raised with number and description of each failure, ahead of its report. Of this thread.
Event<std::int32_t, const std::string &> &FailureNoted();

/// To be called with each failure before it is reported. No object of the driver may be held.
void NoteFailure(std::int32_t lngNumber, const std::string &strDescription);

}  // namespace tarvik
