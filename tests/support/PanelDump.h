#pragma once

#include <string>
#include <vector>

#include "PanelUser.h"
#include "panel/PanelState.h"

namespace tarvik::test {

/// Everything that the pages with settings show, a line for each control, and the panel's shared fields. Without what
/// is no setting: page states, status, focus and the page in front.
std::vector<std::string> Dump(const PanelUser &user, const PanelState &state);

}  // namespace tarvik::test
