#pragma once

#include "engrspin/EngrSpin.h"
#include "support/EventBoundary.h"

namespace tarvik {

/// The field's own doors, as a user's keys come through them.
struct EngrSpinAccess {
  /// An ordinary key, the text replaced, then Enter.
  static void Type(EngrSpin &field, const std::string &strText) {
    constexpr Integer OrdinaryKey = 191, EnterKey = 13;
    field.KeyDown(OrdinaryKey);
    field.txtNumber->WriteText(QString::fromStdString(strText));
    field.KeyDown(EnterKey);
  }

  /// An arrow key with the digit cursor on one character of the text.
  static void Step(EngrSpin &field, Integer intKeyCode, Long lngCharacter) {
    field.txtNumber->SetSelStart(lngCharacter);
    field.txtNumber->SetSelLength(1);
    field.KeyDown(intKeyCode);
    field.KeyPress();
  }
};

}  // namespace tarvik
