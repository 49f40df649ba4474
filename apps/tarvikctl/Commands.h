#pragma once

#include "Arguments.h"

namespace tarvik {

// The commands of the program. Each answers a CtlExit, or raises CtlFailure.
int ListCommand(const Arguments &arguments);
int InfoCommand(const Arguments &arguments);
int KeysCommand(const Arguments &arguments);
int SaveCommand(const Arguments &arguments);
int LoadCommand(const Arguments &arguments);
int DiffCommand(const Arguments &arguments);
int GetCommand(const Arguments &arguments);
int SetCommand(const Arguments &arguments);
int PatternCommand(const Arguments &arguments);
int ErrorsCommand(const Arguments &arguments);
int ResetCommand(const Arguments &arguments);
int SelftestCommand(const Arguments &arguments);

}  // namespace tarvik
