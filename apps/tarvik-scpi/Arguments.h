#pragma once

#include <string>

namespace tarvik::scpi {

/// What the program ends with.
enum ExitCode : int {
  eExitDone = 0,
  eExitDiffers = 1,       ///< a query of the profile was not answered as it should be
  eExitUsage = 2,         ///< an argument is wrong
  eExitUnknown = 3,       ///< there is no such instrument
  eExitNoConnection = 5,  ///< the instrument cannot be reached
  eExitFile = 6,          ///< a file is bad
};

/// The command line.
struct Arguments {
  /// Null where there is nothing left to do.
  int (*command)(const Arguments &arguments) = nullptr;
  int intExit = eExitDone;
  std::string strAddress, strName, strProfile, strLog;
  bool fAdd = false;
  int intTimeout = 5000;  ///< milliseconds
};

/// Reads the command line. Help, version and mistakes are printed; command is null then.
Arguments ReadArguments(int argc, char *argv[]);

}  // namespace tarvik::scpi
