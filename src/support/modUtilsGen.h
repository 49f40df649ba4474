#pragma once

#include <string>

#include "support/Control.h"

namespace tarvik {

/// "0x" and upper-case hexadecimal digits, filled with zeros to intDigits, a multiple of 4
/// above 0. With a wrong width, or a value too long for it (a negative one has 8 digits), a
/// stop box tells so and the bare digits come back.
std::string FmtHex(Long lngValue, Integer intDigits);

/// Writes Enabled only when it differs: a control is not redrawn by every update of the panel.
void SetEnabled(Control &objControl, Boolean fEnable);

/// Writes Visible only when it differs.
void SetVisible(Control &objControl, Boolean fShow);

/// The larger of the two; the second when they are equal.
Double MaxDouble(Double dblFirst, Double dblSecond);

}  // namespace tarvik
