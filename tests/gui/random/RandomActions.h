#pragma once

#include <array>
#include <random>
#include <string>
#include <vector>

#include "SimulatorSession.h"

namespace tarvik::test {

/// What a user does, as numbers that any panel can be worked with: a list of actions stays one when some are taken out.
struct Action {
  enum Kind { Upload, Download, ShowPage, Undo, Redo, StepField, Change };

  Kind kind;
  unsigned target;  ///< which of the things that can be worked now, counted around
  unsigned value;   ///< what to do with it
};

std::vector<Action> ActionsOf(unsigned seed, std::size_t count);

/// What was worked.
struct Done {
  Action::Kind kind;
  std::string strControl;  ///< empty for none
  std::string strText;     ///< "Type esWidth(0) 5.0000e-08"
  bool fOther = true;      ///< of a list or of options: another one than before
};

Done Do(const Action &action, SimulatorSession &session);

}  // namespace tarvik::test
