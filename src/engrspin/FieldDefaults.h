#pragma once

#include "support/Types.h"

namespace tarvik {

/// Defaults of a field's stored properties. A stored field without Min is open downwards.
inline constexpr Double DefaultMax = 1e12, DefaultMin = -1e12;
inline constexpr const char *DefaultFormat = "##0.0##";
inline constexpr Long AlignCaptionRight = 1;
/// The fewest significant digits that a field takes, and its default.
inline constexpr Long MinDigits = 4;

}  // namespace tarvik
