// The property table of EngrSpin and its setters.
#include <algorithm>

#include "engrspin/EngrFormat.h"
#include "engrspin/EngrSpinPrivate.h"
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

/// Text of a field that is locked and blanked.
constexpr const char *BlankText = "----";

}  // namespace

const PropertyTable &EngrSpin::Private::Properties() {
  using E = EngrSpin;
  using Row = PropertyRow<EngrSpin>;
  // Exponents come before limits: what a limit does to the value depends on them.
  static const PropertyTable arrProperties{
      Row::Stored("MaxExponent", HighestExponent, &E::MaxExponent, &E::SetMaxExponent,
                  "The largest exponent allowed (10^ x)"),
      Row::Stored("MinExponent", LowestExponent, &E::MinExponent, &E::SetMinExponent,
                  "The largest negative exponent allowed (10^ -x)"),
      Row::Stored("Max", DefaultMax, &E::Max, &E::SetMax, "The maximum value allowed"),
      Row::Stored("Min", DefaultMin, &E::Min, &E::SetMin, "The minimum value allowed"),
      Row::Stored("NumberFormat", DefaultFormat, &E::NumberFormat, &E::SetNumberFormat,
                  "Format when not using engineering format (i.e. MinExponent=MaxExponent=0)"),
      Row::Stored("BaseUnit", "", &E::BaseUnit, &E::SetBaseUnit,
                  "Returns/sets the abbreviation for the base unit (i.e. s for seconds)"),
      Row::Stored("Caption", "", &E::Caption, &E::SetCaption,
                  "Returns/sets the name to be displayed to the left of the value"),
      Row::Stored("CaptionAlignment", AlignCaptionRight, &E::CaptionAlignment, &E::SetCaptionAlignment,
                  "Returns/sets the text alignment of the caption"),
      Row::Stored("CaptionWidth", Single{0}, &E::CaptionWidth, &E::SetCaptionWidth,
                  "Returns/sets the width in pixels of the caption field"),
      Row::Stored("DefaultValue", Double{0}, &E::DefaultValue, &E::SetDefaultValue, "Returns/sets the starting value"),
      Row::Stored("Enabled", True, &E::Enabled, &E::SetEnabled),
      Row::Stored("Locked", False, &E::Locked, [](E &control, Boolean fLock) { control.LockControl(fLock, False); }),
      Row::Stored("SignificantDigits", MinDigits, &E::SignificantDigits, &E::SetSignificantDigits,
                  "Returns/sets the number of significant digits when using engineering format (only)."),
      Row::Stored("SpinCtlVisible", True, &E::SpinCtlVisible, &E::SetSpinCtlVisible,
                  "Returns/sets the visibility of the spin button"),
      Row::FormOnly(TypingReplacesProperty, False, &E::TypingReplacesNumber, &E::SetTypingReplacesNumber),
      Row::Stored("ValueArray", "", &E::ValueArray, &E::SetValueArray),
      Row::Passing("Value", Double{0}, &E::Value, &E::SetValue, "Returns/sets the current value."),
      Row::Passing("Reciprocal", Double{0}, &E::Reciprocal, &E::SetReciprocal),
      Row::Passing("AuxUnits", "", &E::AuxUnits, &E::SetAuxUnits),
      Row::Passing("AuxValue", Double{0}, &E::AuxValue, &E::SetAuxValue),
      Row::ReadOnly("OldValue", Double{0}, &E::OldValue),
      Row::Deaf("Text", "", &E::Text),
      Row::Deaf("TextBoxWidth", Single{0}, &E::TextBoxWidth, "Read-only; Returns the width of the value field"),
  };
  return arrProperties;
}

PropertyDescriptions EngrSpin::Descriptions() { return DescriptionsOf(Private::Properties()); }

Double EngrSpin::Value() const { return m->number.Value(); }
Double EngrSpin::OldValue() const { return m->number.OldValue(); }
Double EngrSpin::Reciprocal() const { return m->number.Reciprocal(); }
Double EngrSpin::Min() const { return m->number.Min(); }
Double EngrSpin::Max() const { return m->number.Max(); }
Long EngrSpin::MinExponent() const { return m->number.MinExponent(); }
Long EngrSpin::MaxExponent() const { return m->number.MaxExponent(); }
Long EngrSpin::SignificantDigits() const { return m->number.SignificantDigits(); }
const std::string &EngrSpin::BaseUnit() const { return m->number.BaseUnit(); }
const std::string &EngrSpin::NumberFormat() const { return m->number.NumberFormat(); }
const std::string &EngrSpin::Caption() const { return m->strCaption; }
Long EngrSpin::CaptionAlignment() const { return m->lngCaptionAlignment; }
Single EngrSpin::CaptionWidth() const { return m->sngCaptionWidth; }
Double EngrSpin::DefaultValue() const { return m->dblDefaultValue; }
Boolean EngrSpin::Enabled() const { return m->fEnabled; }
Boolean EngrSpin::Locked() const { return m->fLocked; }
Boolean EngrSpin::SpinCtlVisible() const { return m->layout.fSpinVisible; }
Boolean EngrSpin::TypingReplacesNumber() const { return m->fTypingReplacesNumber; }
Single EngrSpin::TextBoxWidth() const { return m->layout.sngTextBoxWidth; }
const std::string &EngrSpin::ValueArray() const { return m->values.Text(); }
const std::string &EngrSpin::AuxUnits() const { return m->strAuxUnits; }
void EngrSpin::SetAuxUnits(const std::string &strUnits) { m->strAuxUnits = strUnits; }
Double EngrSpin::AuxValue() const { return m->dblAuxValue; }
void EngrSpin::SetAuxValue(Double dblValue) { m->dblAuxValue = dblValue; }

// ---- rules that all properties share

void EngrSpin::Private::RaiseFieldError(const std::string &strMessage) {
  throw RunTimeError(ErrFieldProperty, strMessage, ErrorSource);
}

void EngrSpin::Private::PropChanged(const char *strName, bool fResize) {
  if (fLoading || site.UserMode()) return;
  site.PropertyChanged(strName);
  if (fResize) Layout();
}

void EngrSpin::Private::UpdateEngrMode() {
  if (fLoading) return;
  number.SetEngrMode(OwnVisible(*lblUnits) && !(field.MinExponent() == 0 && field.MaxExponent() == 0));
  if (number.EngrMode()) field.SetNumberFormat({});
}

void EngrSpin::Private::UpdateReadOnly() {
  fReadOnly = !fEnabled || fLocked;
  // Setting Enabled re-enables the spin button of a locked field, so the button has to know the lock as well.
  spinCtl->SetLocked(fReadOnly);
  txtNumber->SetLocked(fLocked);
}

Long EngrSpin::Private::CheckedExponent(Long lngExponent) const {
  if (site.UserMode()) return std::clamp(lngExponent / 3 * 3, LowestExponent, HighestExponent);
  if (lngExponent % 3 != 0) RaiseFieldError("Exponent must be a multiple of 3");
  if (lngExponent > HighestExponent) RaiseFieldError("Exponent too large [>" + CStr(HighestExponent) + "]");
  if (lngExponent < LowestExponent) RaiseFieldError("Exponent too small [<" + CStr(LowestExponent) + "]");
  return lngExponent;
}

// ---- number

void EngrSpin::SetMaxExponent(Long lngExponent) {
  m->number.SetMaxExponent(m->CheckedExponent(lngExponent));
  m->PropChanged("MaxExponent", false);
  m->UpdateEngrMode();
}

void EngrSpin::SetMinExponent(Long lngExponent) {
  m->number.SetMinExponent(m->CheckedExponent(lngExponent));
  m->PropChanged("MinExponent", false);
  m->UpdateEngrMode();
}

void EngrSpin::SetMax(Double dblMax) {
  m->number.SetMax(dblMax);
  if (m->fLoading) return;
  m->PropChanged("Max", false);
  SetValue(Value());
}

void EngrSpin::SetMin(Double dblMin) {
  m->number.SetMin(dblMin);
  if (m->fLoading) return;
  m->PropChanged("Min", false);
  SetValue(Value());
}

void EngrSpin::SetSignificantDigits(Long lngDigits) {
  if (lngDigits < MinDigits || lngDigits > MaxDigits)
    Private::RaiseFieldError("Significant Digits must be between 4 and 10");
  m->number.SetSignificantDigits(lngDigits);
  updateGeometry();
  if (m->fLoading) return;
  m->PropChanged("SignificantDigits", false);
  SetValue(Value());
}

void EngrSpin::SetBaseUnit(const std::string &strUnit) {
  if (strUnit == BaseUnit() && !m->fLoading) return;
  m->number.SetBaseUnit(strUnit);
  const bool fShow = !strUnit.empty();
  if (OwnVisible(*m->lblUnits) != fShow) {
    m->lblUnits->setVisible(fShow);
    m->layout.lblUnits.fVisible = fShow;
    m->layout.lblUnits.place.sngWidth = fShow ? UnitsWidth : NoUnitsWidth;
    m->NotePart(fShow);
  }
  m->UpdateEngrMode();
  SetValue(Value());
  m->PropChanged("BaseUnit", true);
}

void EngrSpin::SetNumberFormat(const std::string &strFormat) { m->number.SetNumberFormat(strFormat); }

void EngrSpin::SetDefaultValue(Double dblValue) {
  m->dblDefaultValue = dblValue;
  if (!Site().UserMode()) SetValue(dblValue);
}

void EngrSpin::SetValueArray(const std::string &strValues) { m->values.SetText(strValues); }

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
  if (strCaption == m->strCaption && !m->fLoading) return;
  m->strCaption = strCaption;
  m->lblCaption->setText(QString::fromStdString(strCaption));
  if (strCaption.empty()) SetCaptionWidth(0);
  TellNameChanged(*m->txtNumber);
  m->PropChanged("Caption", false);
}

void EngrSpin::SetCaptionAlignment(Long lngAlignment) {
  m->lngCaptionAlignment = lngAlignment;
  const Qt::Alignment horizontal = lngAlignment == AlignCaptionRight    ? Qt::AlignRight
                                   : lngAlignment == AlignCaptionCenter ? Qt::AlignHCenter
                                                                        : Qt::AlignLeft;
  m->lblCaption->setAlignment(horizontal | Qt::AlignVCenter);
}

void EngrSpin::SetCaptionWidth(Single sngWidth) {
  if (sngWidth == m->sngCaptionWidth && !m->fLoading) return;
  m->sngCaptionWidth = sngWidth;
  const bool fShow = sngWidth != 0, fAppears = fShow && !m->layout.lblCaption.fVisible;
  SetOwnVisible(*m->lblCaption, fShow);
  m->layout.lblCaption.fVisible = fShow;
  if (sngWidth > 0) m->layout.lblCaption.place.sngWidth = sngWidth;
  m->lblCaption->resize(TwipsToPixels(*this, m->layout.lblCaption.place.sngWidth), m->lblCaption->height());
  m->NotePart(fAppears);
  m->PropChanged("CaptionWidth", true);
}

void EngrSpin::SetSpinCtlVisible(Boolean fVisible) {
  if (fVisible == SpinCtlVisible() && !m->fLoading) return;
  SetOwnVisible(*m->spinCtl, fVisible);
  m->layout.fSpinVisible = fVisible;
  m->NotePart(fVisible);
  m->PropChanged("SpinCtlVisible", true);
}

void EngrSpin::SetTypingReplacesNumber(Boolean fReplaces) {
  if (fReplaces == m->fTypingReplacesNumber) return;
  m->fTypingReplacesNumber = fReplaces;
  m->PropChanged(TypingReplacesProperty, false);
}

void EngrSpin::SetEnabled(Boolean fEnabled) {
  if (fEnabled != m->fEnabled || m->fLoading) {
    m->fEnabled = fEnabled;
    for (QWidget *part : std::initializer_list<QWidget *>{m->txtNumber, m->spinCtl, m->lblCaption, m->lblUnits})
      part->setEnabled(fEnabled);
    m->txtNumber->setFocusPolicy(fEnabled ? Qt::StrongFocus : Qt::ClickFocus);
  }
  if (OwnEnabled(*this) != fEnabled) setEnabled(fEnabled);
  m->PropChanged("Enabled", false);
  m->UpdateReadOnly();
}

void EngrSpin::LockControl(Boolean fNewValue, Boolean fBlankOut) {
  m->fLocked = fNewValue;
  m->fBlanked = fBlankOut && fNewValue;
  if (m->fTextLocked != fNewValue) {
    if (fNewValue) {
      if (m->fEditing) m->EndEdit();
      if (m->fBlanked) m->txtNumber->WriteText(BlankText);
    } else {
      SetValue(Value());
    }
    m->fTextLocked = fNewValue;
    m->txtNumber->setReadOnly(fNewValue);
    m->spinCtl->setEnabled(!fNewValue);
    m->TellAccessible();
  }
  m->PropChanged("Locked", false);
  m->UpdateReadOnly();
}

// ---- persistence

void EngrSpin::InitProperties() {
  m->number.InitProperties();
  m->strCaption.clear();
  m->lngCaptionAlignment = AlignCaptionRight;
  m->sngCaptionWidth = 0;
  m->dblDefaultValue = 0;
  m->fEnabled = True;
  m->fLocked = False;
  m->layout.fSpinVisible = true;
  m->values.SetText({});
  m->strSavedText = "0";
  m->cursor.Reset();
}

void EngrSpin::ReadProperties(const PropertyBag &bag) {
  m->number.SetDecimal(TheHost().DecimalSeparator());
  m->cursor.SetDecimal(m->number.Decimal());
  m->fLoading = True;
  for (const ControlProperty &property : Private::Properties())
    if (property.IsRead()) IgnoreErrors([&] { property.Assign(*this, bag); });
  m->strAuxUnits = BaseUnit();
  m->fLoading = False;
  IgnoreErrors([&] { m->UpdateEngrMode(); });
  IgnoreErrors([&] { SetValue(m->dblDefaultValue); });
  m->dblAuxValue = Value();
}

void EngrSpin::Private::ReadAnew(const PropertyBag &bag) {
  // State that would leak into the new reading: the lock into the spin button, the old value into the clamping of
  // small numbers, the exponent into the prefix of 0.
  fLoading = True;
  if (fLocked) field.LockControl(False, False);
  number.ForgetValue();
  m_shown = {};
  field.ReadProperties(bag);
}

void EngrSpin::WriteProperties(PropertyBag &bag) const { WriteStored(*this, Private::Properties(), bag); }

}  // namespace tarvik
