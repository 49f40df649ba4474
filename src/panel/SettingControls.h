#pragma once

#include <string>
#include <vector>

#include "panel/Form.h"
#include "settings/SetupDifferences.h"

namespace tarvik {

/// A control that shows a setting.
struct SettingControl {
  TabNumEnum ePage;     ///< where it stands; the output switches stand on two pages
  std::string strName;  ///< its object name
};

/// The controls that show a setting of this channel, 0 for one of the instrument, while the panel shows this setup.
/// Empty for a setting that is only a way of telling others.
std::vector<SettingControl> ControlsOf(const Setting &setting, Long lngChannel, const Setup &shown);

/// The second value of a difference, that of `known`, as the control would show it: "5.000 V", "External Input". In the
/// words of the control where it has them. `shown` is what the panel shows.
std::string TextInControl(const QWidget &control, const SetupDifference &difference, const Setup &shown,
                          const Setup &known);

}  // namespace tarvik
