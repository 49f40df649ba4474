#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarvik {

/// What was typed behind the name of the program.
struct Arguments {
  std::string strServer;
  std::string strDriver;
  bool fJson = false;
  bool fExact = false;   ///< diff
  bool fStrict = false;  ///< load
  bool fDigits = false;  ///< pattern
  std::string strName;   ///< instrument
  std::string strFile;
  std::string strFirst, strSecond;       ///< diff
  std::vector<std::string> arrSettings;  ///< get and set
  std::string strAction, strRow;         ///< pattern
  int intBase = 0, intLength = 16384;    ///< pattern

  /// The command; empty when there is nothing to run.
  std::function<int(const Arguments &)> command;
  /// Exit status where there is nothing to run: help or version were printed, or an argument was wrong.
  int intExit = 0;
};

Arguments ReadArguments(int argc, char *argv[]);

}  // namespace tarvik
