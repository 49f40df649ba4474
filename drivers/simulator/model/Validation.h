#pragma once

#include <vector>

#include "simulator/model/DriverTypes.h"

namespace tarvik::simulator {

/// Every reason why an instrument of this description refuses the settings; none when it takes them.
///
/// Numbers that reach the instrument as the reciprocal of what it told are off by their last digit, so bounds between
/// settings and the ends of the frequency range hold with a relative tolerance of 1e-9.
std::vector<ScpiError> Violations(const Settings &settings, const InstrumentDescription &description);

/// Conditions that the settings bring about and that the user should know of; they last as long as the settings do.
std::vector<ScpiError> ConditionWarnings(const Settings &settings, const InstrumentDescription &description);

}  // namespace tarvik::simulator
