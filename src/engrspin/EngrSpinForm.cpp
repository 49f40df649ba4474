#include "engrspin/EngrFormat.h"
#include "engrspin/EngrSpin.h"
#include "engrspin/FieldDefaults.h"

namespace tarvik {

std::vector<FormProperties::Property> EngrSpin::FormTable() {
  using F = FormProperties;
  using E = EngrSpin;
  return {
      F::Stored(*this, "MaxExponent", HighestExponent, &E::MaxExponent, &E::SetMaxExponent),
      F::Stored(*this, "MinExponent", LowestExponent, &E::MinExponent, &E::SetMinExponent),
      F::Stored(*this, "Max", DefaultMax, &E::Max, &E::SetMax),
      F::Stored(*this, "Min", DefaultMin, &E::Min, &E::SetMin),
      F::Stored(*this, "NumberFormat", DefaultFormat, &E::NumberFormat, &E::SetNumberFormat),
      F::Stored(*this, "BaseUnit", "", &E::BaseUnit, &E::SetBaseUnit),
      F::Stored(*this, "Caption", "", &E::Caption, &E::SetCaption),
      F::Stored(*this, "CaptionAlignment", AlignCaptionRight, &E::CaptionAlignment, &E::SetCaptionAlignment),
      F::Stored(*this, "CaptionWidth", Single{0}, &E::CaptionWidth, &E::SetCaptionWidth),
      F::Stored(*this, "DefaultValue", Double{0}, &E::DefaultValue, &E::SetDefaultValue),
      F::Stored(*this, "Enabled", True, &E::Enabled, &E::SetEnabled),
      F::Stored(*this, "Locked", False, &E::Locked, &E::SetLocked),
      F::Stored(*this, "SignificantDigits", MinDigits, &E::SignificantDigits, &E::SetSignificantDigits),
      F::Stored(*this, "SpinCtlVisible", True, &E::SpinCtlVisible, &E::SetSpinCtlVisible),
      F::Stored(*this, "TypingReplacesNumber", False, &E::TypingReplacesNumber, &E::SetTypingReplacesNumber),
      F::Stored(*this, "ValueArray", "", &E::ValueArray, &E::SetValueArray),
      F::Passing(*this, "Value", Double{0}, &E::Value, &E::SetValue),
      F::Passing(*this, "Reciprocal", Double{0}, &E::Reciprocal, &E::SetReciprocal),
      F::Passing(*this, "AuxUnits", "", &E::AuxUnits, &E::SetAuxUnits),
      F::Passing(*this, "AuxValue", Double{0}, &E::AuxValue, &E::SetAuxValue),
      F::Reading(*this, "OldValue", Double{0}, &E::OldValue),
      F::Deaf(*this, "Text", "", &E::Text),
      F::Deaf(*this, "TextBoxWidth", Single{0}, &E::TextBoxWidth),
  };
}

bool EngrSpin::event(QEvent *event) {
  m_form.NoteEvent(*event);
  return QWidget::event(event);
}

}  // namespace tarvik
