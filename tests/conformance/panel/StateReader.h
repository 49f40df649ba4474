#pragma once

#include <QComboBox>
#include <map>
#include <string>

#include "PanelUnderTest.h"
#include "World.h"
#include "controls/FrameEnhanced.h"

namespace tarvik::paneltest {

/// State keys with their values.
using StateMap = std::map<std::string, Json>;

/// "window" or "grey".
const char *BackColorName(const QComboBox &list);
/// Index of the chosen button of a group, -1 for none.
Long ChosenIndex(const FrameEnhanced &group);

/// All keys of one panel, each with the prefix in front.
void ReadPanelState(const PanelUnderTest &panel, const std::string &strPrefix, StateMap &state);

/// The keys that belong to no panel.
void ReadCommonState(const World &world, StateMap &state);

}  // namespace tarvik::paneltest
