#pragma once

#include <memory>
#include <string>

#include "platform/FormControl.h"
#include "support/Event.h"

namespace tarvik {

/// Number of the error that a design-time mistake on a property raises, with the source "EngrSpin.ctl".
inline constexpr Long ErrFieldProperty = static_cast<Long>(0x800401F5u);

/// Property of a container that makes typing replace the whole number in all fields inside it.
inline constexpr const char *TypingReplacesProperty = "TypingReplacesNumber";

/// A number with its unit, as an instrument shows it: a digit cursor that keys, spin button and wheel step,
/// and free typing with prefix and unit. In engineering format the unit carries a prefix letter; without a
/// unit, or with both exponents 0, the number goes through NumberFormat. All sizes are in twips.
class TARVIK_EXPORT EngrSpin : public FormControl {
  Q_OBJECT
  TARVIK_FORM_NEW
  // In the order in which the field reads them: exponents before limits, the value last.
  TARVIK_FORM_PROPERTY(MaxExponent)
  TARVIK_FORM_PROPERTY(MinExponent)
  TARVIK_FORM_PROPERTY(Max)
  TARVIK_FORM_PROPERTY(Min)
  TARVIK_FORM_PROPERTY(NumberFormat)
  TARVIK_FORM_PROPERTY(BaseUnit)
  TARVIK_FORM_PROPERTY(Caption)
  TARVIK_FORM_PROPERTY(CaptionAlignment)
  TARVIK_FORM_PROPERTY(CaptionWidth)
  TARVIK_FORM_PROPERTY(DefaultValue)
  TARVIK_FORM_PROPERTY(Enabled)
  TARVIK_FORM_PROPERTY(Locked)
  TARVIK_FORM_PROPERTY(SignificantDigits)
  TARVIK_FORM_PROPERTY(SpinCtlVisible)
  TARVIK_FORM_PROPERTY(TypingReplacesNumber)
  TARVIK_FORM_PROPERTY(ValueArray)
  TARVIK_FORM_PASSING(Value, NOTIFY valueChanged)
  TARVIK_FORM_PASSING(Reciprocal, NOTIFY valueChanged)
  TARVIK_FORM_PASSING(AuxUnits)
  TARVIK_FORM_PASSING(AuxValue)
  TARVIK_FORM_READING(OldValue, NOTIFY valueChanged)
  TARVIK_FORM_PASSING(Text, NOTIFY textChanged)
  TARVIK_FORM_PASSING(TextBoxWidth)
  // The names that Qt's own controls use.
  Q_PROPERTY(double value READ Value WRITE setValue NOTIFY valueChanged DESIGNABLE false STORED false USER true)
  Q_PROPERTY(QString text READ text NOTIFY textChanged DESIGNABLE false STORED false)

 public:
  class Private;

  /// At run time, with the defaults of the stored properties.
  explicit EngrSpin(QWidget *parent = nullptr);
  /// In a container, which then calls InitProperties or ReadProperties.
  EngrSpin(QWidget *parent, ControlSite &site);
  ~EngrSpin() override;

  /// Properties without a description are left out.
  static PropertyDescriptions Descriptions();

  /// The user changed the value, or the host did while the user was typing.
  Event<> AfterUpdate;
  /// The Tab key; the host sets the flag to keep the key in the field.
  Event<Boolean &> OnTab;

  /// A container calls one of the two once, and then Resize.
  void InitProperties();
  /// Missing properties get their default; rejected ones keep their value.
  void ReadProperties(const PropertyBag &bag);
  void WriteProperties(PropertyBag &bag) const;

  /// Value in the base unit. An assignment is clamped to the limits; it raises no event unless the user is typing.
  Double Value() const;
  void SetValue(Double dblValue);
  /// The value before the latest assignment.
  Double OldValue() const;
  /// 1 / Value; the upper limit stands for the reciprocal of 0.
  Double Reciprocal() const;
  void SetReciprocal(Double dblReciprocal);

  /// Limits in the base unit. A limit that crosses the other one moves it along; the value is clamped again.
  Double Min() const;
  void SetMin(Double dblMin);
  Double Max() const;
  void SetMax(Double dblMax);

  /// Range of the prefixes that can be typed, as powers of ten: multiples of 3 from -12 to 12. Other values are
  /// corrected at run time and rejected at design time.
  Long MinExponent() const;
  void SetMinExponent(Long lngExponent);
  Long MaxExponent() const;
  void SetMaxExponent(Long lngExponent);

  /// 4 to 10; other values raise ErrFieldProperty.
  Long SignificantDigits() const;
  void SetSignificantDigits(Long lngDigits);

  /// Unit without prefix; empty for a plain number.
  const std::string &BaseUnit() const;
  void SetBaseUnit(const std::string &strUnit);
  /// Format string of plain format; an engineering field has none.
  const std::string &NumberFormat() const;
  void SetNumberFormat(const std::string &strFormat);

  const std::string &Caption() const;
  void SetCaption(const std::string &strCaption);
  /// 0 left, 1 right, 2 centred.
  Long CaptionAlignment() const;
  void SetCaptionAlignment(Long lngAlignment);
  /// In twips; 0 hides the caption.
  Single CaptionWidth() const;
  void SetCaptionWidth(Single sngWidth);

  /// Value after ReadProperties.
  Double DefaultValue() const;
  void SetDefaultValue(Double dblValue);

  Boolean Enabled() const override;
  void SetEnabled(Boolean fEnabled) override;
  /// Puts the focus on the text box.
  void SetFocus() override;

  Boolean Locked() const;
  /// Locks the field against the user; fBlankOut also replaces the text by dashes while it is locked.
  void LockControl(Boolean fNewValue, Boolean fBlankOut);

  /// Hides only the button; keys and wheel keep working.
  Boolean SpinCtlVisible() const;
  void SetSpinCtlVisible(Boolean fVisible);

  /// Whether the first key of an entry replaces the whole number instead of the selected digit. Arrow keys, spin button
  /// and wheel step the digit either way. A container sets it for all fields inside it, also for those created later,
  /// by a property of this name.
  Boolean TypingReplacesNumber() const;
  void SetTypingReplacesNumber(Boolean fReplaces);

  /// What the text box shows.
  std::string Text() const;
  void SetText(const std::string &) {}
  /// Width in twips of text box and spin button, from the latest layout.
  Single TextBoxWidth() const;
  void SetTextBoxWidth(Single) {}

  /// Allowed values separated by ";", with "." as separator. Empty for a free field.
  const std::string &ValueArray() const;
  void SetValueArray(const std::string &strValues);

  /// Free for the host's own use.
  const std::string &AuxUnits() const;
  void SetAuxUnits(const std::string &strUnits);
  Double AuxValue() const;
  void SetAuxValue(Double dblValue);

  /// Exponents, limits and value in one call; the value comes last and is held to the new limits.
  void SetDataParameters(Double dblValue, Double dblMin, Double dblMax, Long lngMinExponent, Long lngMaxExponent);

  /// Size in twips, held to the bounds of a field; runs the layout. In a layout of the toolkit the field takes the room
  /// that it gets, and its parts stand at the left within those bounds.
  void Resize(Single sngWidth, Single sngHeight);
  /// Place on the container and size, in twips; runs the layout.
  void Move(Single sngLeft, Single sngTop, Single sngWidth, Single sngHeight);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// Text as a QString.
  QString text() const;

 public Q_SLOTS:
  /// SetValue as a slot: run-time errors of handlers are reported and logged here instead of thrown.
  void setValue(double dblValue);

 Q_SIGNALS:
  /// The value changed, whoever changed it; it is clamped and shown. Emitted before AfterUpdate, which is raised for
  /// the user's changes only. A slot must not throw.
  void valueChanged(double dblValue);
  /// The text changed, also while the user types.
  void textChanged(const QString &strText);

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  const std::unique_ptr<Private> m;
};

}  // namespace tarvik
