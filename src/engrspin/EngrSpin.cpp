#include "engrspin/EngrSpin.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>

#include "engrspin/EngrFormat.h"
#include "engrspin/FieldAccessible.h"
#include "engrspin/SpinControl.h"
#include "platform/Accessibility.h"
#include "platform/ControlEvent.h"
#include "platform/FieldLabel.h"
#include "platform/KeyCodes.h"
#include "platform/WidgetControl.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/Host.h"
#include "support/modGlobals.h"

namespace tarvik {

namespace {

/// A text that can never be a number, so that it is taken back as a bad entry is.
constexpr const char *AbandonedText = "~";

bool TypesNothing(Integer intCode) {
  constexpr std::array Keys = {KeyShift,   KeyControl,    KeyAlt,    KeyMetaLeft, KeyMetaRight, KeyCapsLock,
                               KeyNumLock, KeyScrollLock, KeyInsert, KeyMenu,     KeyPrint,     KeyPause};
  const bool fFunctionKey = intCode >= KeyF1 && intCode <= KeyF24;
  return fFunctionKey || std::find(Keys.begin(), Keys.end(), intCode) != Keys.end();
}

/// Clears a guard when its procedure is left, by an error too: no field may stay dead.
}  // namespace

template <class Procedure>
bool EngrSpin::UserEvent(const char *strEvent, Procedure &&procedure) {
  return RunUserEvent(*this, strEvent, std::forward<Procedure>(procedure));
}

EngrSpin::EngrSpin(QWidget *parent) : EngrSpin(parent, RunTimeSite()) { BeginForm(); }

EngrSpin::EngrSpin(QWidget *parent, ControlSite &site) : EngrSpin(std::make_unique<EngrNumber>(), parent, site) {}

EngrSpin::EngrSpin(std::unique_ptr<EngrNumber> number, QWidget *parent, ControlSite &site)
    : QWidget(parent),
      m_site(site),
      m_form(*this, site, FormTable(), [this](const PropertyBag &bag) { ReadAnew(bag); }),
      m_number(std::move(number)),
      lblCaption(new FieldLabel("Caption", this)),
      txtNumber(new NumberTextBox(*this, this)),
      spinCtl(new SpinControl([this] { UserEvent("spinCtl_Change", [this] { spinCtl_Change(); }); },
                              [this] { UserEvent("spinCtl_GotFocus", [this] { spinCtl_GotFocus(); }); }, this)),
      lblUnits(new FieldLabel("Unit", this)),
      m_cursor(*txtNumber) {
  lblCaption->setObjectName("lblCaption");
  txtNumber->setObjectName("txtNumber");
  spinCtl->setObjectName("spinCtl");
  lblUnits->setObjectName("lblUnits");
  lblCaption->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  lblUnits->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  spinCtl->SetFocusHome(txtNumber);
  connect(txtNumber, &QLineEdit::textChanged, this, &EngrSpin::textChanged);
  setFocusProxy(txtNumber);
  OfferAccessible<EngrSpin, FieldBoxAccessible>();
  // The label of a row in a form gives the focus only to what takes it itself.
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  EndEdit();
}

EngrSpin::~EngrSpin() {
  // Losing the focus at the end of the field's life is no event of the user's.
  m_fEditing = False;
  txtNumber->setParent(nullptr);
  delete txtNumber;
}

// ---- value and text

void EngrSpin::SetValue(Double dblValue) {
  if (m_fLoading) return;
  m_number->Assign(dblValue);
  if (IsShown()) {
    ShowCursor();
  } else {
    ShowValue();
  }
  if (Value() != m_dblToldValue) {
    m_dblToldValue = Value();
    Q_EMIT valueChanged(Value());
  }
  if (!m_fEditing) return;
  EndOverwrittenEntry();
  NotifyUpdate();
}

void EngrSpin::setValue(double dblValue) {
  UserEvent("setValue", [&] { SetValue(dblValue); });
}

bool EngrSpin::IsShown() const {
  return m_shown.lngWrite != 0 && m_shown.lngWrite == txtNumber->StandingWrite() &&
         std::bit_cast<std::uint64_t>(m_shown.dblValue) == std::bit_cast<std::uint64_t>(Value()) &&
         m_shown.lngFormatVersion == m_number->FormatVersion() && !m_fEditing;
}

void EngrSpin::ShowValue() {
  // Taken before the conversion, which changes it when it fails.
  const Long lngFormatVersion = m_number->FormatVersion();
  ShowText(m_number->ConvertValue2Engr());
  if (OwnVisible(*lblUnits))
    lblUnits->setText(QString::fromStdString(m_number->ExponentToPrefix(m_number->Exponent()) + BaseUnit()));
  TellAccessible();
  m_shown = {Value(), lngFormatVersion, m_fBlanked ? 0 : txtNumber->StandingWrite()};
}

void EngrSpin::SetReciprocal(Double dblReciprocal) { SetValue(m_number->ValueOfReciprocal(dblReciprocal)); }

std::string EngrSpin::Text() const { return text().toStdString(); }

QString EngrSpin::text() const { return txtNumber->text(); }

void EngrSpin::ShowText(const std::string &strText) {
  if (m_fBlanked) return;
  m_fUpdating = True;
  txtNumber->WriteText(QString::fromStdString(strText));
  m_fUpdating = False;
  ShowCursor();
}

void EngrSpin::ShowCursor() {
  const bool fAtRest = !m_fEditing && m_fEnabled && !m_fLocked && !m_values.ArrayMode();
  const Long lngLength = static_cast<Long>(txtNumber->text().size());
  if (!fAtRest || !txtNumber->hasFocus() || txtNumber->SelLength() > 0 || lngLength == 0) return;
  m_cursor.MoveCursor(m_cursor.CursorPos() < lngLength ? curRestore : curLast);
}

void EngrSpin::NotifyUpdate() {
  AfterUpdate.Raise();
  if (gobjPanel()) gobjPanel()->SetTabState(ePageIsDirty, eCurrPage);
}

// ---- typing

void EngrSpin::BeginEdit() {
  if (m_fReadOnly) {
    ShowBox("Value is locked and cannot be edited", BoxIcon::Information);
    return;
  }
  m_fEditing = True;
  txtNumber->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void EngrSpin::EndEdit() {
  m_fEditing = False;
  txtNumber->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void EngrSpin::EndOverwrittenEntry() {
  const auto end = [this, strWritten = txtNumber->text()] {
    if (!m_fEditing || txtNumber->text() != strWritten) return;
    EndEdit();
    ShowCursor();
  };
  // The assignment itself leaves the entry open: what called it may go on with it.
  QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
}

void EngrSpin::ParseEntry() {
  if (!m_fEditing || m_fUpdating) return;
  m_fUpdating = True;
  const auto rest = [this] {
    EndEdit();
    m_fUpdating = False;
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

void EngrSpin::TakeEntry() {
  Entry entry;
  try {
    entry = m_number->ReadEntry(Text());
  } catch (const RunTimeError &) {
    RestoreEntry();
    throw;
  }
  switch (entry.kind) {
    case Entry::Kind::Empty: txtNumber->WriteText(QString::fromStdString(CStr(Min()))); break;
    case Entry::Kind::Number: SetValue(entry.dblValue); break;
    case Entry::Kind::Bad: RestoreEntry(); break;
  }
}

void EngrSpin::RestoreEntry() {
  TheHost().Beep();
  txtNumber->WriteText(QString::fromStdString(m_strSavedText));
  m_cursor.MoveCursor(curRestore);
}

// ---- stepping

Double EngrSpin::GetStepSize() {
  return std::max(PowerOfTen(m_number->Exponent() + m_cursor.GetCursorDigit()), m_number->Smallest());
}

Double EngrSpin::GetArrayValue(Integer intIndex) {
  if (m_values.ArrayMode()) return m_values.GetArrayValue(intIndex);
  ShowBox("Illegal Mode for call", BoxIcon::Critical);
  return 0;
}

void EngrSpin::StepThroughList(Integer intIndex) {
  SetValue(GetArrayValue(intIndex));
  NotifyUpdate();
}

void EngrSpin::StepUp() {
  if (m_values.ArrayMode()) {
    StepThroughList(static_cast<Integer>(m_values.Index() + 1));
    return;
  }
  const Long lngExponent = m_number->Exponent();
  SetValue(GetStepSize() + Value());
  const Long lngDigit = m_cursor.CursorDigit();
  if (m_number->Exponent() == lngExponent) {
    m_cursor.MoveCursor(lngDigit);
  } else {
    m_cursor.MoveCursor(lngDigit >= 0 ? lngDigit - 3 : Long{curLast});
  }
  NotifyUpdate();
}

void EngrSpin::StepDown() {
  if (m_values.ArrayMode()) {
    StepThroughList(static_cast<Integer>(m_values.Index() - 1));
    return;
  }
  Double dblStep = GetStepSize();
  Boolean fFirst;
  // A leading 1 gives way to the next decade; a step to 0 would be of no use on an instrument.
  if (m_cursor.GetCursorChar(fFirst) == u"1" && fFirst) dblStep = dblStep / 10;
  const Long lngExponent = m_number->Exponent();
  SetValue(Value() - dblStep);
  const Long lngDigit = m_cursor.CursorDigit();
  if (m_number->Exponent() == lngExponent) {
    m_cursor.MoveCursor(lngDigit);
  } else {
    m_cursor.MoveCursor(lngDigit < 0 ? lngDigit + 3 : Long{curFirst});
  }
  NotifyUpdate();
}

void EngrSpin::spinCtl_Change() {
  if (m_fInSpinChange) return;
  const EntryGuard guard(*this, m_fInSpinChange);
  m_cursor.MoveCursor(curRestore);
  if (spinCtl->Value() < 0) {
    StepDown();
  } else {
    StepUp();
  }
  spinCtl->SetValue(0);
}

// ---- keys

Integer EngrSpin::Swallow() {
  m_fSwallowKey = True;
  return 0;
}

Integer EngrSpin::KeyDown(Integer intCode) {
  m_fSwallowKey = False;
  if (m_fInKeyDown || m_fReadOnly) return intCode;
  const EntryGuard guard(*this, m_fInKeyDown);
  if (!m_fEditing) m_strSavedText = Text();
  return KeyCodeLeft(intCode);
}

Integer EngrSpin::KeyCodeLeft(Integer intCode) {
  const bool fArrayMode = m_values.ArrayMode();
  switch (intCode) {
    case KeyLeft:
    case KeyRight:
      if (m_fEditing) return intCode;
      if (!fArrayMode) m_cursor.MoveCursor(intCode == KeyLeft ? curLeft : curRight);
      return Swallow();
    case KeyUp:
      if (!m_fEditing) IgnoreErrors([this] { StepUp(); });
      return Swallow();
    case ::tarvik::KeyDown:
      if (!m_fEditing) IgnoreErrors([this] { StepDown(); });
      return Swallow();
    case KeyEnd:
    case KeyHome:
    case KeyPageUp:
    case KeyPageDown: return fArrayMode ? Swallow() : intCode;
    case KeyTab: {
      Boolean fSwallowTab = False;
      IgnoreErrors([&] { OnTab.Raise(fSwallowTab); });
      return fSwallowTab ? Swallow() : intCode;
    }
    case KeyEnter:
      if (fArrayMode) return Swallow();
      IgnoreErrors([this] { ParseEntry(); });
      return intCode;
    case KeyEscape:
      if (!m_fEditing || fArrayMode) return Swallow();
      txtNumber->WriteText(AbandonedText);
      IgnoreErrors([this] { ParseEntry(); });
      return intCode;
    default:
      if (fArrayMode) return Swallow();
      if (!TypesNothing(intCode)) IgnoreErrors([this] { TypeKey(); });
      return intCode;
  }
}

void EngrSpin::TypeKey() {
  if (TypingReplaces()) txtNumber->ChooseNumber();
  BeginEdit();
}

bool EngrSpin::TypingReplaces() const {
  if (m_fTypingReplacesNumber) return true;
  for (const QWidget *container = parentWidget(); container; container = container->parentWidget())
    if (container->property(TypingReplacesProperty).toBool()) return true;
  return false;
}

bool EngrSpin::KeyPress() { return std::exchange(m_fSwallowKey, False); }

// ---- events of the inner controls

void EngrSpin::TextLeft() {
  UserEvent("txtNumber_Validate", [this] { txtNumber_Validate(); });
  UserEvent("txtNumber_LostFocus", [this] { txtNumber_LostFocus(); });
}

void EngrSpin::TextEntered() {
  UserEvent("txtNumber_GotFocus", [this] { txtNumber_GotFocus(); });
}

void EngrSpin::TextClicked() {
  if (m_fReadOnly || m_values.ArrayMode()) return;
  const Long lngLast = static_cast<Long>(txtNumber->text().size()) - 1;
  if (lngLast < 0) return;
  txtNumber->SetSelStart(std::min(txtNumber->SelStart(), lngLast));
  m_cursor.MoveCursor(m_cursor.GetCursorDigit());
}

void EngrSpin::WheelTurned(int intNotches) {
  if (m_fReadOnly || m_fEditing || m_fInKeyDown) return;
  UserEvent("txtNumber_Wheel", [&] {
    const EntryGuard guard(*this, m_fInKeyDown);
    m_cursor.MoveCursor(curRestore);
    for (int i = std::abs(intNotches); i > 0; --i) {
      if (intNotches > 0) {
        StepUp();
      } else {
        StepDown();
      }
    }
  });
}

void EngrSpin::TextEdited(const QString &strBefore) {
  if (m_fEditing) return;
  UserEvent("txtNumber_Change", [&] {
    m_strSavedText = strBefore.toStdString();
    BeginEdit();
  });
}

void EngrSpin::ValueAssigned(Double dblValue) {
  if (m_fReadOnly || m_values.ArrayMode()) return;
  UserEvent("txtNumber_Assign", [&] {
    if (m_fEditing) EndEdit();
    SetValue(dblValue);
    NotifyUpdate();
  });
}

void EngrSpin::SetFocus() { GiveFocus(*txtNumber); }

}  // namespace tarvik
