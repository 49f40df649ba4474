#pragma once

#include <span>
#include <vector>

#include "scpi/simulator/Command.h"

namespace tarvik::scpisim {

/// Every command that the simulator understands. One table for all: what a model lacks is refused by its settings.
std::span<const Command> CommandTable();

// Its parts.
std::vector<Command> SourceCommands();
std::vector<Command> OutputCommands();
std::vector<Command> TriggerCommands();
std::vector<Command> PatternCommands();
std::vector<Command> CommonCommands();
std::vector<Command> StatusCommands();
std::vector<Command> DiagnosticCommands();

}  // namespace tarvik::scpisim
