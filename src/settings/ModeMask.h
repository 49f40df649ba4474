#pragma once

#include <string>
#include <string_view>

#include "support/Types.h"

namespace tarvik {

/// Number of a combination of trigger mode and pulse mode, from 1 to 15 without 4, 8 and 12: the place in a mode mask,
/// and the slot under which the lists of the mode page remember their choices.
Integer ModePosition(Long eTriggerMode, Long ePulseMode);

/// Masks of the mode page's controls: for each trigger mode a group of three characters, one for each pulse mode; the
/// groups are separated by commas. "D" disables the control, at a digit a list remembers its choice.
namespace ModeMasks {
inline constexpr const char *BurstLength = "D0D,D0D,D0D,DDD";
inline constexpr const char *PulseType = "000,000,000,DDD";
inline constexpr const char *PeriodSource = "000,D00,000,DDD";
inline constexpr const char *TriggerSlope = PeriodSource;
inline constexpr const char *ArmingSource = "DDD,000,000,000";
/// Serves the memory only: whether there is a level to choose follows from the arming source.
inline constexpr const char *ArmingLevel = "DDD,000,000,DDD";
}  // namespace ModeMasks

/// The mask's character at a mode position; empty outside of the mask.
std::string GetModeMaskChar(std::string_view strMask, Integer intModePos);

/// Also true where there is no mask.
Boolean IsEnabledAt(std::string_view strMask, Integer intModePos);

}  // namespace tarvik
