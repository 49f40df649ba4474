#pragma once

#include <functional>

#include "LiveMemory.h"

namespace tarvik::test {

/// How many sessions an environment variable asks for.
long SessionCount(const char *strVariable, long lngDefault);

/// The process after a tenth of the sessions, and after all of them.
struct LongRun {
  LiveMemory early, late;
};

/// Runs sessions, counted from 0, until one fails, and prints the figures. The first one loads the driver's library,
/// which is watched from then on; its name is a part of the file's.
LongRun RunSessions(long lngCount, const char *strLibrary, const std::function<void(long)> &session);

}  // namespace tarvik::test
