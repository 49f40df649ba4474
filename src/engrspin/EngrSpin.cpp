#include "engrspin/EngrSpin.h"

#include <QAccessible>
#include <bit>
#include <cstdint>

#include "engrspin/EngrSpinPrivate.h"
#include "engrspin/FieldAccessible.h"
#include "engrspin/SpinControl.h"
#include "platform/Accessibility.h"
#include "platform/ControlEvent.h"
#include "platform/FieldLabel.h"
#include "platform/WidgetControl.h"
#include "support/modGlobals.h"

namespace tarvik {

EngrSpin::EngrSpin(QWidget *parent) : EngrSpin(parent, RunTimeSite()) { BeginForm(); }

EngrSpin::EngrSpin(QWidget *parent, ControlSite &site)
    : FormControl(parent, site, Private::Properties(), [this](const PropertyBag &bag) { m->ReadAnew(bag); }),
      m(std::make_unique<Private>(*this)) {
  connect(m->txtNumber, &QLineEdit::textChanged, this, &EngrSpin::textChanged);
  setFocusProxy(m->txtNumber);
  OfferAccessible<EngrSpin, FieldBoxAccessible>();
  // A QFormLayout label passes the focus only to a buddy with a focus policy of its own.
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

EngrSpin::~EngrSpin() {
  // Deleting the text box takes the focus from it, which must not end an entry.
  m->fEditing = False;
  m->txtNumber->setParent(nullptr);
  delete m->txtNumber;
}

EngrSpin::Private::Private(EngrSpin &objField)
    : field(objField),
      site(objField.Site()),
      lblCaption(new FieldLabel("Caption", &field)),
      txtNumber(new NumberTextBox(*this, &field)),
      spinCtl(new SpinControl([this] { RunUserEvent(field, "spinCtl_Change", [this] { spinCtl_Change(); }); },
                              [this] { RunFocusEvent(field, "spinCtl_GotFocus", [this] { spinCtl_GotFocus(); }); },
                              &field)),
      lblUnits(new FieldLabel("Unit", &field)),
      cursor(*txtNumber) {
  lblCaption->setObjectName("lblCaption");
  txtNumber->setObjectName("txtNumber");
  spinCtl->setObjectName("spinCtl");
  lblUnits->setObjectName("lblUnits");
  lblCaption->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  lblUnits->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  spinCtl->SetFocusHome(txtNumber);
  EndEdit();
}

// ---- value and text

void EngrSpin::SetValue(Double dblValue) {
  if (m->fLoading) return;
  m->number.Assign(dblValue);
  m->UpdateText();
  if (Value() != m->dblToldValue) {
    m->dblToldValue = Value();
    Q_EMIT valueChanged(Value());
  }
  if (!m->fEditing) return;
  m->EndOverwrittenEntry();
  m->NotifyUpdate();
}

void EngrSpin::setValue(double dblValue) {
  RunUserEvent(*this, "setValue", [&] { SetValue(dblValue); });
}

void EngrSpin::Private::UpdateText() {
  if (IsShown()) {
    ShowCursor();
  } else {
    ShowValue();
  }
}

bool EngrSpin::Private::IsShown() const {
  return m_shown.lngWrite != 0 && m_shown.lngWrite == txtNumber->StandingWrite() &&
         std::bit_cast<std::uint64_t>(m_shown.dblValue) == std::bit_cast<std::uint64_t>(field.Value()) &&
         m_shown.lngFormatVersion == number.FormatVersion() && !fEditing;
}

void EngrSpin::Private::ShowValue() {
  // Taken before the conversion, which changes it when it fails.
  const Long lngFormatVersion = number.FormatVersion();
  ShowText(number.ConvertValue2Engr());
  if (OwnVisible(*lblUnits))
    lblUnits->setText(QString::fromStdString(number.ExponentToPrefix(number.Exponent()) + field.BaseUnit()));
  TellAccessible();
  m_shown = {field.Value(), lngFormatVersion, fBlanked ? 0 : txtNumber->StandingWrite()};
}

void EngrSpin::SetReciprocal(Double dblReciprocal) { SetValue(m->number.ValueOfReciprocal(dblReciprocal)); }

std::string EngrSpin::Text() const { return text().toStdString(); }

QString EngrSpin::text() const { return m->txtNumber->text(); }

void EngrSpin::Private::ShowText(const std::string &strText) {
  if (fBlanked) return;
  fUpdating = True;
  txtNumber->WriteText(QString::fromStdString(strText));
  fUpdating = False;
  ShowCursor();
}

void EngrSpin::Private::ShowCursor() {
  const bool fAtRest = !fEditing && fEnabled && !fLocked && !values.ArrayMode();
  const Long lngLength = static_cast<Long>(txtNumber->text().size());
  if (!fAtRest || !txtNumber->hasFocus() || txtNumber->SelLength() > 0 || lngLength == 0) return;
  cursor.MoveCursor(cursor.CursorPos() < lngLength ? curRestore : curLast);
}

void EngrSpin::SetFocus() { GiveFocus(*m->txtNumber); }

void EngrSpin::Private::NotifyUpdate() {
  field.AfterUpdate.Raise();
  if (gobjPanel()) gobjPanel()->SetTabState(ePageIsDirty, eCurrPage);
}

// ---- for assistive technology

void EngrSpin::Private::TellAccessible() {
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent value(txtNumber, field.Value());
  QAccessible::updateAccessibility(&value);
  QAccessibleEvent words(txtNumber, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&words);
}

QString EngrSpin::Private::ValueInWords() const {
  const QString strUnit = OwnVisible(*lblUnits) ? lblUnits->text() : QString();
  return strUnit.isEmpty() ? txtNumber->text() : txtNumber->text() + QLatin1Char(' ') + strUnit;
}

}  // namespace tarvik
