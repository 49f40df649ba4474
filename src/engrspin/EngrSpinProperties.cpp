#include <QAccessible>
#include <algorithm>

#include "engrspin/EngrFormat.h"
#include "engrspin/EngrSpin.h"
#include "engrspin/FieldDefaults.h"
#include "engrspin/SpinControl.h"
#include "platform/Accessibility.h"
#include "platform/FieldLabel.h"
#include "platform/Twips.h"
#include "platform/WidgetControl.h"
#include "support/Conversions.h"
#include "support/Host.h"

namespace tarvik {

namespace {

constexpr const char *ErrorSource = "EngrSpin.ctl";
constexpr Single UnitsWidth = 500, NoUnitsWidth = 1;
constexpr Long MaxDigits = 10;
constexpr Long AlignCaptionCenter = 2;

/// Shown where a locked field has nothing to tell.
constexpr const char *BlankText = "----";

}  // namespace

// ---- rules that all properties share

void EngrSpin::RaiseFieldError(const std::string &strMessage) {
  throw RunTimeError(ErrFieldProperty, strMessage, ErrorSource);
}

void EngrSpin::PropChanged(const char *strName, bool fResize) {
  if (m_fLoading || m_site.UserMode()) return;
  m_site.PropertyChanged(strName);
  if (fResize) Layout();
}

void EngrSpin::UpdateEngrMode() {
  if (m_fLoading) return;
  m_number->SetEngrMode(OwnVisible(*lblUnits) && !(MinExponent() == 0 && MaxExponent() == 0));
  if (m_number->EngrMode()) SetNumberFormat({});
}

void EngrSpin::UpdateReadOnly() {
  m_fReadOnly = !m_fEnabled || m_fLocked;
  // Enabled gives a locked field its spin button back; the value stays locked all the same.
  spinCtl->SetLocked(m_fReadOnly);
  txtNumber->SetLocked(m_fLocked);
}

Long EngrSpin::CheckedExponent(Long lngExponent) const {
  if (m_site.UserMode()) return std::clamp(lngExponent / 3 * 3, LowestExponent, HighestExponent);
  if (lngExponent % 3 != 0) RaiseFieldError("Exponent must be a multiple of 3");
  if (lngExponent > HighestExponent) RaiseFieldError("Exponent too large [>" + CStr(HighestExponent) + "]");
  if (lngExponent < LowestExponent) RaiseFieldError("Exponent too small [<" + CStr(LowestExponent) + "]");
  return lngExponent;
}

// ---- number

void EngrSpin::SetMaxExponent(Long lngExponent) {
  m_number->SetMaxExponent(CheckedExponent(lngExponent));
  PropChanged("MaxExponent", false);
  UpdateEngrMode();
}

void EngrSpin::SetMinExponent(Long lngExponent) {
  m_number->SetMinExponent(CheckedExponent(lngExponent));
  PropChanged("MinExponent", false);
  UpdateEngrMode();
}

void EngrSpin::SetMax(Double dblMax) {
  m_number->SetMax(dblMax);
  if (m_fLoading) return;
  PropChanged("Max", false);
  SetValue(Value());
}

void EngrSpin::SetMin(Double dblMin) {
  m_number->SetMin(dblMin);
  if (m_fLoading) return;
  PropChanged("Min", false);
  SetValue(Value());
}

void EngrSpin::SetSignificantDigits(Long lngDigits) {
  if (lngDigits < MinDigits || lngDigits > MaxDigits) RaiseFieldError("Significant Digits must be between 4 and 10");
  m_number->SetSignificantDigits(lngDigits);
  updateGeometry();
  if (m_fLoading) return;
  PropChanged("SignificantDigits", false);
  SetValue(Value());
}

void EngrSpin::SetBaseUnit(const std::string &strUnit) {
  if (strUnit == BaseUnit() && !m_fLoading) return;
  m_number->SetBaseUnit(strUnit);
  const bool fShow = !strUnit.empty();
  if (OwnVisible(*lblUnits) != fShow) {
    lblUnits->setVisible(fShow);
    m_layout.lblUnits.fVisible = fShow;
    m_layout.lblUnits.place.sngWidth = fShow ? UnitsWidth : NoUnitsWidth;
    NotePart(fShow);
  }
  UpdateEngrMode();
  SetValue(Value());
  PropChanged("BaseUnit", true);
}

void EngrSpin::SetNumberFormat(const std::string &strFormat) { m_number->SetNumberFormat(strFormat); }

void EngrSpin::SetDefaultValue(Double dblValue) {
  m_dblDefaultValue = dblValue;
  if (!m_site.UserMode()) SetValue(dblValue);
}

void EngrSpin::SetValueArray(const std::string &strValues) { m_values.SetText(strValues); }

void EngrSpin::SetDataParameters(Double dblValue, Double dblMin, Double dblMax, Long lngMinExponent,
                                 Long lngMaxExponent) {
  SetMaxExponent(lngMaxExponent);
  SetMinExponent(lngMinExponent);
  SetMax(dblMax);
  SetMin(dblMin);
  SetValue(dblValue);
}

// ---- looks

void EngrSpin::SetCaption(const std::string &strCaption) {
  if (strCaption == m_strCaption && !m_fLoading) return;
  m_strCaption = strCaption;
  lblCaption->setText(QString::fromStdString(strCaption));
  if (strCaption.empty()) SetCaptionWidth(0);
  TellNameChanged(*txtNumber);
  PropChanged("Caption", false);
}

void EngrSpin::SetCaptionAlignment(Long lngAlignment) {
  m_lngCaptionAlignment = lngAlignment;
  const Qt::Alignment horizontal = lngAlignment == AlignCaptionRight    ? Qt::AlignRight
                                   : lngAlignment == AlignCaptionCenter ? Qt::AlignHCenter
                                                                        : Qt::AlignLeft;
  lblCaption->setAlignment(horizontal | Qt::AlignVCenter);
}

void EngrSpin::SetCaptionWidth(Single sngWidth) {
  if (sngWidth == m_sngCaptionWidth && !m_fLoading) return;
  m_sngCaptionWidth = sngWidth;
  const bool fShow = sngWidth != 0, fAppears = fShow && !m_layout.lblCaption.fVisible;
  SetOwnVisible(*lblCaption, fShow);
  m_layout.lblCaption.fVisible = fShow;
  if (sngWidth > 0) m_layout.lblCaption.place.sngWidth = sngWidth;
  lblCaption->resize(TwipsToPixels(*this, m_layout.lblCaption.place.sngWidth), lblCaption->height());
  NotePart(fAppears);
  PropChanged("CaptionWidth", true);
}

void EngrSpin::SetSpinCtlVisible(Boolean fVisible) {
  if (fVisible == SpinCtlVisible() && !m_fLoading) return;
  SetOwnVisible(*spinCtl, fVisible);
  m_layout.fSpinVisible = fVisible;
  NotePart(fVisible);
  PropChanged("SpinCtlVisible", true);
}

void EngrSpin::SetTypingReplacesNumber(Boolean fReplaces) {
  if (fReplaces == m_fTypingReplacesNumber) return;
  m_fTypingReplacesNumber = fReplaces;
  PropChanged(TypingReplacesProperty, false);
}

void EngrSpin::SetEnabled(Boolean fEnabled) {
  if (fEnabled != m_fEnabled || m_fLoading) {
    m_fEnabled = fEnabled;
    for (QWidget *part : std::initializer_list<QWidget *>{txtNumber, spinCtl, lblCaption, lblUnits})
      part->setEnabled(fEnabled);
    txtNumber->setFocusPolicy(fEnabled ? Qt::StrongFocus : Qt::ClickFocus);
  }
  if (OwnEnabled(*this) != fEnabled) setEnabled(fEnabled);
  PropChanged("Enabled", false);
  UpdateReadOnly();
}

void EngrSpin::LockControl(Boolean fNewValue, Boolean fBlankOut) {
  m_fLocked = fNewValue;
  m_fBlanked = fBlankOut && fNewValue;
  if (m_fTextLocked != fNewValue) {
    if (fNewValue) {
      if (m_fEditing) EndEdit();
      if (m_fBlanked) txtNumber->WriteText(BlankText);
    } else {
      SetValue(Value());
    }
    m_fTextLocked = fNewValue;
    txtNumber->setReadOnly(fNewValue);
    spinCtl->setEnabled(!fNewValue);
    TellAccessible();
  }
  PropChanged("Locked", false);
  UpdateReadOnly();
}

Boolean EngrSpin::Visible() const { return OwnVisible(*this); }

void EngrSpin::SetVisible(Boolean fShow) { setVisible(fShow); }

void EngrSpin::TellAccessible() {
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent value(txtNumber, Value());
  QAccessible::updateAccessibility(&value);
  QAccessibleEvent words(txtNumber, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&words);
}

QString EngrSpin::ValueInWords() const {
  const QString strUnit = OwnVisible(*lblUnits) ? lblUnits->text() : QString();
  return strUnit.isEmpty() ? txtNumber->text() : txtNumber->text() + QLatin1Char(' ') + strUnit;
}

// ---- persistence

void EngrSpin::InitProperties() {
  m_number->InitProperties();
  m_strCaption.clear();
  m_lngCaptionAlignment = AlignCaptionRight;
  m_sngCaptionWidth = 0;
  m_dblDefaultValue = 0;
  m_fEnabled = True;
  m_fLocked = False;
  m_layout.fSpinVisible = true;
  m_values.SetText({});
  m_strSavedText = "0";
  m_cursor.Reset();
}

void EngrSpin::ReadProperties(const PropertyBag &bag) {
  const auto read = [&](const char *strKey, auto vDefault, auto assign) {
    IgnoreErrors([&] { (this->*assign)(bag.ReadProperty(strKey, vDefault)); });
  };
  m_number->SetDecimal(TheHost().DecimalSeparator());
  m_cursor.SetDecimal(m_number->Decimal());
  m_fLoading = True;
  // Exponents come before limits: what a limit does to the value depends on them.
  read("MaxExponent", HighestExponent, &EngrSpin::SetMaxExponent);
  read("MinExponent", LowestExponent, &EngrSpin::SetMinExponent);
  read("Max", DefaultMax, &EngrSpin::SetMax);
  read("Min", DefaultMin, &EngrSpin::SetMin);
  read("NumberFormat", DefaultFormat, &EngrSpin::SetNumberFormat);
  read("BaseUnit", "", &EngrSpin::SetBaseUnit);
  m_strAuxUnits = BaseUnit();
  read("Caption", "", &EngrSpin::SetCaption);
  read("CaptionAlignment", AlignCaptionRight, &EngrSpin::SetCaptionAlignment);
  read("CaptionWidth", Single{0}, &EngrSpin::SetCaptionWidth);
  read("DefaultValue", Double{0}, &EngrSpin::SetDefaultValue);
  read("Enabled", True, &EngrSpin::SetEnabled);
  IgnoreErrors([&] { LockControl(bag.ReadProperty("Locked", False), False); });
  read("SignificantDigits", MinDigits, &EngrSpin::SetSignificantDigits);
  read("SpinCtlVisible", True, &EngrSpin::SetSpinCtlVisible);
  read("TypingReplacesNumber", False, &EngrSpin::SetTypingReplacesNumber);
  read("ValueArray", "", &EngrSpin::SetValueArray);
  m_fLoading = False;
  IgnoreErrors([&] { UpdateEngrMode(); });
  IgnoreErrors([&] { SetValue(m_dblDefaultValue); });
  m_dblAuxValue = Value();
}

void EngrSpin::ReadAnew(const PropertyBag &bag) {
  // What the former reading left behind would act on this one: a lock on the spin button, the value on how a number
  // too small to be held is taken, the exponent on the prefix of 0.
  m_fLoading = True;
  if (m_fLocked) LockControl(False, False);
  m_number->ForgetValue();
  m_shown = {};
  ReadProperties(bag);
}

void EngrSpin::WriteProperties(PropertyBag &bag) const {
  const std::string strNone;
  const auto write = [&](const char *strKey, const Variant &vValue, const Variant &vDefault) {
    IgnoreErrors([&] { bag.WriteProperty(strKey, vValue, vDefault); });
  };
  write("BaseUnit", BaseUnit(), strNone);
  write("Caption", m_strCaption, strNone);
  write("CaptionAlignment", m_lngCaptionAlignment, AlignCaptionRight);
  write("CaptionWidth", Double{m_sngCaptionWidth}, Double{0});
  write("DefaultValue", m_dblDefaultValue, Double{0});
  write("Enabled", m_fEnabled, True);
  write("Locked", m_fLocked, False);
  write("Max", Max(), DefaultMax);
  write("MaxExponent", MaxExponent(), HighestExponent);
  write("Min", Min(), DefaultMin);
  write("MinExponent", MinExponent(), LowestExponent);
  write("NumberFormat", NumberFormat(), std::string(DefaultFormat));
  write("SignificantDigits", SignificantDigits(), MinDigits);
  write("SpinCtlVisible", SpinCtlVisible(), True);
  write("ValueArray", ValueArray(), strNone);
}

}  // namespace tarvik
