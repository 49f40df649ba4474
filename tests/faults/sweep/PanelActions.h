#pragma once

#include <functional>
#include <string>
#include <vector>

#include "InstrumentSession.h"
#include "PanelSession.h"
#include "ReferencePanel.h"

namespace tarvik::test {

/// What a user does, and what the reference does for it.
struct PanelAction {
  std::string strName;
  std::function<void(PanelSession &)> run;
  std::function<void(ReferencePanel &)> expected;
  /// The control cannot be used without a session.
  bool fNeedsSession = true;
  ReferencePanel::Page ePage = ReferencePanel::Instr;  ///< in front
  ReferencePanel::State eStates = ReferencePanel::Current;
  /// Sets the options of the reference, which the panel's follow.
  std::function<void(ReferencePanel &)> options = {};
};

const std::vector<PanelAction> &PanelActions();

}  // namespace tarvik::test
