#include "scpi/simulator/CommandTable.h"

#include <iterator>

namespace tarvik::scpisim {

std::span<const Command> CommandTable() {
  static const std::vector<Command> table = [] {
    std::vector<Command> arrAll;
    for (const auto part : {CommonCommands, StatusCommands, SourceCommands, OutputCommands, TriggerCommands,
                            PatternCommands, DiagnosticCommands}) {
      std::vector<Command> arrPart = part();
      std::move(arrPart.begin(), arrPart.end(), std::back_inserter(arrAll));
    }
    return arrAll;
  }();
  return table;
}

}  // namespace tarvik::scpisim
