// Keys, typed text, spin button and wheel.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "engrspin/EngrFormat.h"
#include "engrspin/EngrSpinPrivate.h"
#include "engrspin/SpinControl.h"
#include "platform/ControlEvent.h"
#include "platform/KeyCodes.h"
#include "support/ActionEnd.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/Host.h"

namespace tarvik {

namespace {

/// Never a number, so that Escape restores the old text the way a bad entry does.
constexpr const char *AbandonedText = "~";

bool TypesNothing(Integer intCode) {
  constexpr std::array Keys = {KeyShift,   KeyControl,    KeyAlt,    KeyMetaLeft, KeyMetaRight, KeyCapsLock,
                               KeyNumLock, KeyScrollLock, KeyInsert, KeyMenu,     KeyPrint,     KeyPause};
  const bool fFunctionKey = intCode >= KeyF1 && intCode <= KeyF24;
  return fFunctionKey || std::find(Keys.begin(), Keys.end(), intCode) != Keys.end();
}

}  // namespace

template <class Procedure>
bool EngrSpin::Private::UserEvent(const char *strEvent, Procedure &&procedure) {
  return RunUserEvent(field, strEvent, std::forward<Procedure>(procedure));
}

// ---- typing

void EngrSpin::Private::BeginEdit() {
  if (fReadOnly) {
    ShowBox("Value is locked and cannot be edited", BoxIcon::Information);
    return;
  }
  fEditing = True;
  txtNumber->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void EngrSpin::Private::EndEdit() {
  fEditing = False;
  txtNumber->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void EngrSpin::Private::EndOverwrittenEntry() {
  const auto end = [this, strWritten = txtNumber->text()] {
    if (!fEditing || txtNumber->text() != strWritten) return;
    EndEdit();
    ShowCursor();
  };
  // Queued: the caller of the assignment may still continue the entry.
  QMetaObject::invokeMethod(&field, end, Qt::QueuedConnection);
}

void EngrSpin::Private::ParseEntry() {
  if (!fEditing || fUpdating) return;
  fUpdating = True;
  const auto rest = [this] {
    EndEdit();
    fUpdating = False;
    ShowCursor();
  };
  try {
    TakeEntry();
  } catch (const RunTimeError &) {
    rest();
    throw;
  }
  rest();
}

void EngrSpin::Private::TakeEntry() {
  Entry entry;
  try {
    entry = number.ReadEntry(field.Text());
  } catch (const RunTimeError &) {
    RestoreEntry();
    throw;
  }
  switch (entry.kind) {
    case Entry::Kind::Empty: txtNumber->WriteText(QString::fromStdString(CStr(field.Min()))); break;
    case Entry::Kind::Number: field.SetValue(entry.dblValue); break;
    case Entry::Kind::Bad: RestoreEntry(); break;
  }
}

void EngrSpin::Private::RestoreEntry() {
  TheHost().Beep();
  txtNumber->WriteText(QString::fromStdString(strSavedText));
  cursor.MoveCursor(curRestore);
}

// ---- stepping

Double EngrSpin::Private::GetStepSize() {
  return std::max(PowerOfTen(number.Exponent() + cursor.GetCursorDigit()), number.Smallest());
}

Double EngrSpin::Private::GetArrayValue(Integer intIndex) {
  if (values.ArrayMode()) return values.GetArrayValue(intIndex);
  ShowBox("Illegal Mode for call", BoxIcon::Critical);
  return 0;
}

void EngrSpin::Private::StepThroughList(Integer intIndex) {
  field.SetValue(GetArrayValue(intIndex));
  NotifyUpdate();
}

void EngrSpin::Private::StepUp() {
  if (values.ArrayMode()) {
    StepThroughList(static_cast<Integer>(values.Index() + 1));
    return;
  }
  const Long lngExponent = number.Exponent();
  field.SetValue(GetStepSize() + field.Value());
  const Long lngDigit = cursor.CursorDigit();
  if (number.Exponent() == lngExponent) {
    cursor.MoveCursor(lngDigit);
  } else {
    cursor.MoveCursor(lngDigit >= 0 ? lngDigit - 3 : Long{curLast});
  }
  NotifyUpdate();
}

void EngrSpin::Private::StepDown() {
  if (values.ArrayMode()) {
    StepThroughList(static_cast<Integer>(values.Index() - 1));
    return;
  }
  Double dblStep = GetStepSize();
  Boolean fFirst;
  // A leading 1 steps in the next lower decade; stepping to 0 would be useless on an instrument.
  if (cursor.GetCursorChar(fFirst) == u"1" && fFirst) dblStep = dblStep / 10;
  const Long lngExponent = number.Exponent();
  field.SetValue(field.Value() - dblStep);
  const Long lngDigit = cursor.CursorDigit();
  if (number.Exponent() == lngExponent) {
    cursor.MoveCursor(lngDigit);
  } else {
    cursor.MoveCursor(lngDigit < 0 ? lngDigit + 3 : Long{curFirst});
  }
  NotifyUpdate();
}

void EngrSpin::Private::spinCtl_Change() {
  if (fInSpinChange) return;
  const ScopedFlag guard(field, fInSpinChange);
  cursor.MoveCursor(curRestore);
  if (spinCtl->Value() < 0) {
    StepDown();
  } else {
    StepUp();
  }
  spinCtl->SetValue(0);
}

// ---- keys

Integer EngrSpin::Private::Swallow() {
  fSwallowKey = True;
  return 0;
}

Integer EngrSpin::Private::KeyDown(Integer intCode) {
  fSwallowKey = False;
  if (fInKeyDown || fReadOnly) return intCode;
  // A handler of the update may destroy the field.
  const QPointer<EngrSpin> self(&field);
  Integer intLeft = 0;
  {
    const ScopedFlag guard(field, fInKeyDown);
    if (!fEditing) strSavedText = field.Text();
    intLeft = KeyCodeLeft(intCode);
  }
  // Errors of a key end where they arise, so that a key passes no event boundary; it is an action all the same.
  if (self) ::tarvik::UserEvent::AfterAll([owner = static_cast<const QObject *>(self)] { ActionEnded().Raise(owner); });
  return intLeft;
}

Integer EngrSpin::Private::KeyCodeLeft(Integer intCode) {
  const bool fArrayMode = values.ArrayMode();
  switch (intCode) {
    case KeyLeft:
    case KeyRight:
      if (fEditing) return intCode;
      if (!fArrayMode) cursor.MoveCursor(intCode == KeyLeft ? curLeft : curRight);
      return Swallow();
    case KeyUp:
      if (!fEditing) IgnoreErrors([this] { StepUp(); });
      return Swallow();
    case ::tarvik::KeyDown:
      if (!fEditing) IgnoreErrors([this] { StepDown(); });
      return Swallow();
    case KeyEnd:
    case KeyHome:
    case KeyPageUp:
    case KeyPageDown: return fArrayMode ? Swallow() : intCode;
    case KeyTab: {
      Boolean fSwallowTab = False;
      IgnoreErrors([&] { field.OnTab.Raise(fSwallowTab); });
      return fSwallowTab ? Swallow() : intCode;
    }
    case KeyEnter:
      if (fArrayMode) return Swallow();
      IgnoreErrors([this] { ParseEntry(); });
      return intCode;
    case KeyEscape:
      if (!fEditing || fArrayMode) return Swallow();
      txtNumber->WriteText(AbandonedText);
      IgnoreErrors([this] { ParseEntry(); });
      return intCode;
    default:
      if (fArrayMode) return Swallow();
      if (!TypesNothing(intCode)) IgnoreErrors([this] { TypeKey(); });
      return intCode;
  }
}

void EngrSpin::Private::TypeKey() {
  if (TypingReplaces()) txtNumber->ChooseNumber();
  BeginEdit();
}

bool EngrSpin::Private::TypingReplaces() const {
  if (fTypingReplacesNumber) return true;
  for (const QWidget *container = field.parentWidget(); container; container = container->parentWidget())
    if (container->property(TypingReplacesProperty).toBool()) return true;
  return false;
}

bool EngrSpin::Private::KeyPress() { return std::exchange(fSwallowKey, False); }

// ---- events of the inner controls

void EngrSpin::Private::TextLeft() {
  RunFocusEvent(field, "txtNumber_Validate", [this] { txtNumber_Validate(); });
  RunFocusEvent(field, "txtNumber_LostFocus", [this] { txtNumber_LostFocus(); });
}

void EngrSpin::Private::TextEntered() {
  RunFocusEvent(field, "txtNumber_GotFocus", [this] { txtNumber_GotFocus(); });
}

void EngrSpin::Private::TextClicked() {
  if (fReadOnly || values.ArrayMode()) return;
  const Long lngLast = static_cast<Long>(txtNumber->text().size()) - 1;
  if (lngLast < 0) return;
  txtNumber->SetSelStart(std::min(txtNumber->SelStart(), lngLast));
  cursor.MoveCursor(cursor.GetCursorDigit());
}

void EngrSpin::Private::WheelTurned(int intNotches) {
  if (fReadOnly || fEditing || fInKeyDown) return;
  UserEvent("txtNumber_Wheel", [&] {
    const ScopedFlag guard(field, fInKeyDown);
    cursor.MoveCursor(curRestore);
    for (int i = std::abs(intNotches); i > 0; --i) {
      if (intNotches > 0) {
        StepUp();
      } else {
        StepDown();
      }
    }
  });
}

void EngrSpin::Private::TextEdited(const QString &strBefore) {
  if (fEditing) return;
  UserEvent("txtNumber_Change", [&] {
    strSavedText = strBefore.toStdString();
    BeginEdit();
  });
}

void EngrSpin::Private::ValueAssigned(Double dblValue) {
  if (fReadOnly || values.ArrayMode()) return;
  UserEvent("txtNumber_Assign", [&] {
    if (fEditing) EndEdit();
    field.SetValue(dblValue);
    NotifyUpdate();
  });
}

}  // namespace tarvik
