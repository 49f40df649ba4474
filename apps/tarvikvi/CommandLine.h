#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarvik {

/// What the program is asked to do. Read before the toolkit starts, so that help, version and the tour need no screen.
struct CommandLine {
  /// Where to connect this time; empty text is this machine.
  std::optional<std::string> strServer;
  /// The driver to use this time; empty text is the one without a name.
  std::optional<std::string> strDriver;
  /// Folder for the pictures of the tour.
  std::optional<std::string> strTour;
  /// The program's name and what is left for the toolkit, which has options of its own.
  std::vector<std::string> arrToolkit;
  /// The program has printed what it was asked for, or why it cannot start, and ends with this status.
  std::optional<int> intExit;

  CommandLine(int argc, char *argv[]);
};

/// Ends the program for the first argument that the toolkit has left over as well: prints it, answers the exit status.
int RefuseArgument(const std::string &strArgument);

}  // namespace tarvik
