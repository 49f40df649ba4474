#pragma once

#include <string>

#include "Session.h"

namespace tarvik::conformance {

/// Runs one command line on the session and hands back its result. Run-time errors leave.
Json Execute(Session &session, const std::string &strLine);

}  // namespace tarvik::conformance
