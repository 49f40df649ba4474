#pragma once

#include <QPalette>

namespace tarvik {

/// Colours of disabled fields, lists, buttons and labels: the same background everywhere, with readable text on it.
struct DisabledLook {
  QColor back;
  QColor text;
};

/// Text on a back of its own: paler than that of what is enabled.
QColor DisabledText(const QColor &enabledText, const QColor &back);

/// 0xC0C0C0 and the text on it; in a dark theme a back that is no brighter than that of an enabled control.
DisabledLook DisabledLookOf(const QPalette &theme);

/// Gives the palette's disabled colours this look.
void SetDisabledLook(QPalette &colours);

}  // namespace tarvik
