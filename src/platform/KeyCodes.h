#pragma once

#include <QKeyEvent>

#include "support/Types.h"

namespace tarvik {

inline constexpr Integer KeyTab = 9, KeyEnter = 13, KeyShift = 16, KeyControl = 17, KeyAlt = 18, KeyPause = 19,
                         KeyCapsLock = 20, KeyEscape = 27, KeyPageUp = 33, KeyPageDown = 34, KeyEnd = 35, KeyHome = 36,
                         KeyLeft = 37, KeyUp = 38, KeyRight = 39, KeyDown = 40, KeyPrint = 44, KeyInsert = 45,
                         KeyDelete = 46, KeyMetaLeft = 91, KeyMetaRight = 92, KeyMenu = 93, KeyPadDecimal = 110,
                         KeyF1 = 112, KeyF24 = 135, KeyNumLock = 144, KeyScrollLock = 145;

/// Key code of the automation world for a key of the toolkit: letters and digits their upper-case ASCII code,
/// number pad digits 96 to 105, function keys from 112; other keys that make a character 191; 0 for none.
Integer KeyCodeOf(const QKeyEvent &event);

}  // namespace tarvik
