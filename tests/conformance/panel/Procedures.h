#pragma once

#include <string>

#include "Recorder.h"
#include "Words.h"
#include "panel/Panel.h"

namespace tarvik::paneltest {

/// The last presets of the levels page, by channel.
Json PresetsHigh(const TarvikGUI::Panel &panel);
Json PresetsLow(const TarvikGUI::Panel &panel);

/// Calls a procedure by its name with the arguments that follow it in the line; null where it has no result.
Json Invoke(TarvikGUI::Panel &panel, const std::string &strProcedure, Words &arguments);

}  // namespace tarvik::paneltest
