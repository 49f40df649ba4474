#include "platform/KeyCodes.h"

#include <algorithm>
#include <iterator>

namespace tarvik {

namespace {

struct KeyRow {
  int intToolkitKey;
  Integer intCode;
};

constexpr KeyRow KeyTable[] = {
    {Qt::Key_Backspace, 8},
    {Qt::Key_Tab, KeyTab},
    {Qt::Key_Backtab, KeyTab},
    {Qt::Key_Return, KeyEnter},
    {Qt::Key_Enter, KeyEnter},
    {Qt::Key_Shift, KeyShift},
    {Qt::Key_Control, KeyControl},
    {Qt::Key_Alt, KeyAlt},
    {Qt::Key_AltGr, KeyAlt},
    {Qt::Key_Pause, KeyPause},
    {Qt::Key_CapsLock, KeyCapsLock},
    {Qt::Key_Escape, KeyEscape},
    {Qt::Key_Space, 32},
    {Qt::Key_PageUp, KeyPageUp},
    {Qt::Key_PageDown, KeyPageDown},
    {Qt::Key_End, KeyEnd},
    {Qt::Key_Home, KeyHome},
    {Qt::Key_Left, KeyLeft},
    {Qt::Key_Up, KeyUp},
    {Qt::Key_Right, KeyRight},
    {Qt::Key_Down, KeyDown},
    {Qt::Key_Print, KeyPrint},
    {Qt::Key_SysReq, KeyPrint},
    {Qt::Key_Insert, KeyInsert},
    {Qt::Key_Delete, KeyDelete},
    {Qt::Key_Meta, KeyMetaLeft},
    {Qt::Key_Super_L, KeyMetaLeft},
    {Qt::Key_Super_R, KeyMetaRight},
    {Qt::Key_Menu, KeyMenu},
    {Qt::Key_NumLock, KeyNumLock},
    {Qt::Key_ScrollLock, KeyScrollLock},
    {Qt::Key_Plus, 187},
    {Qt::Key_Comma, 188},
    {Qt::Key_Minus, 189},
    {Qt::Key_Period, 190},
};

}  // namespace

Integer KeyCodeOf(const QKeyEvent &event) {
  const int key = event.key();
  if (event.modifiers() & Qt::KeypadModifier) {
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return static_cast<Integer>(96 + key - Qt::Key_0);
    if (key == Qt::Key_Period || key == Qt::Key_Comma) return KeyPadDecimal;
  }
  if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z))
    return static_cast<Integer>(key);
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return static_cast<Integer>(KeyF1 + key - Qt::Key_F1);
  const auto *row = std::find_if(std::begin(KeyTable), std::end(KeyTable),
                                 [&](const KeyRow &entry) { return entry.intToolkitKey == key; });
  if (row != std::end(KeyTable)) return row->intCode;
  return event.text().isEmpty() ? Integer{0} : Integer{191};
}

}  // namespace tarvik
