#pragma once

#include <string>
#include <vector>

#include "settings/KnownSetup.h"
#include "settings/SetupDifferences.h"

namespace tarvik {

/// With which levels and timing a channel's output runs from now on, in one line, where the panel shows others: "Output
/// 1 runs with High 5.000 V, Low 0.000 V, Period 1.000 us and not with the marked Width 50.00 ns". `arrDiffering` is
/// what differs from the instrument, with the panel's value first. Empty where no level or time of this channel
/// differs.
std::string RunningText(const KnownSetup &known, Long lngChannel, Boolean fIsComplement,
                        const std::vector<SetupDifference> &arrDiffering, char chSeparator = '.');

}  // namespace tarvik
