#pragma once

#include "Arguments.h"

namespace tarvik::scpi {

// One procedure for each command; each answers an ExitCode. RunTimeError for a file that is bad, driver::Failure for an
// instrument that cannot be reached.

int AddCommand(const Arguments &arguments);
int ListCommand(const Arguments &arguments);
int RemoveCommand(const Arguments &arguments);
int DiscoverCommand(const Arguments &arguments);
int CheckCommand(const Arguments &arguments);
int ProfilesCommand(const Arguments &arguments);

}  // namespace tarvik::scpi
