#pragma once

#include <string>

#include "remote/DriverServer.h"

namespace tarvik::remote {

/// What the server program is asked to do.
struct ServerCommandLine {
  ServerOptions options;
  /// Empty: standard error.
  std::string strLogFile;
  /// The help text where it was asked for; nothing is to be served then.
  std::string strHelp;

  /// Reads the arguments and the files that they name. RunTimeError for what the server cannot be started with.
  static ServerCommandLine Of(int argc, char **argv);
};

}  // namespace tarvik::remote
