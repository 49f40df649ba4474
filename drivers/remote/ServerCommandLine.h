#pragma once

#include <map>
#include <string>
#include <vector>

#include "remote/DriverServer.h"

namespace tarvik::remote {

/// What the server program is asked to do.
struct ServerCommandLine {
  ServerOptions options;
  /// The names of the drivers that are chosen for ProgIDs; the others are created by the driver without a name.
  std::map<std::string, std::string> chosenDrivers;
  /// Empty: standard error.
  std::string strLogFile;
  LogFormat eLogFormat = LogFormat::Text;
  /// The local socket for the administrator; empty: none.
  std::string strControl;
  /// The files whose contents the rules are made of, to be watched.
  std::vector<std::string> arrRuleFiles;
  /// The help text if --help was given; the server is not to be started then.
  std::string strHelp;

  /// Parses the arguments and reads the files they name. Throws RunTimeError on invalid arguments.
  static ServerCommandLine Of(int argc, char **argv);
};

}  // namespace tarvik::remote
