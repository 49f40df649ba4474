#pragma once

#include <string>

namespace tarvik {

/// What the program tells the shell.
enum CtlExit : int {
  eExitDone = 0,
  eExitDifferent = 1,   ///< the two differ; the instrument had errors
  eExitUsage = 2,       ///< an argument is wrong; nothing was done
  eExitUnknown = 3,     ///< there is no such instrument
  eExitRefused = 4,     ///< the instrument or its driver did not take it
  eExitConnection = 5,  ///< no connection to the driver
  eExitFile = 6,        ///< a file cannot be read or written, or is none that is understood
};

/// Ends a command.
struct CtlFailure {
  CtlExit eExit;
  std::string strText;  ///< empty where a box of the instrument class has told
};

}  // namespace tarvik
