#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/Setting.h"

namespace tarvik {

/// A setting in which two setups differ.
struct SetupDifference {
  const Setting *setting;
  Long lngChannel;  ///< 1 or 2; 0 for a setting of the instrument
  /// Both values as the panel shows them, with as many digits as it takes to tell them apart: "5.000 V". Empty for a
  /// setup whose instrument does not have the setting.
  std::string strFirst, strSecond;

  std::string Key() const { return setting->Key(lngChannel); }
};

/// Quantities count as equal when they differ by no more than this part of the larger one, or by no more than the last
/// place that their unit is told with: drivers round what they are sent. 0 compares exactly.
inline constexpr Double DriverRounding = 1e-6;

/// Whether the two quantities are the same but for rounding.
bool SameQuantity(Double dblFirst, Double dblSecond, std::string_view strUnit, Double dblTolerance = DriverRounding);

/// The difference in this one setting, whether or not the modes use it. Empty where both have the same, and where one
/// of them lets the instrument keep its own.
std::optional<SetupDifference> DifferenceIn(const Setting &setting, Long lngChannel, const Setup &first,
                                            const Setup &second, Double dblTolerance = DriverRounding,
                                            char chSeparator = '.');

/// All differences, in the order of the table. A setting that neither setup uses in its modes is not compared: a
/// transfer does not send it. Where the two write levels or PLL in different ways, the second is compared in the way of
/// the first.
std::vector<SetupDifference> Differences(const Setup &first, const Setup &second, Double dblTolerance = DriverRounding);

}  // namespace tarvik
