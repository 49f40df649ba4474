#pragma once

#include <memory>
#include <string>

#include "platform/FormControl.h"
#include "support/Event.h"

namespace tarvik {

/// Number of the error that a design-time mistake on a property raises, with the source "EngrSpin.ctl".
inline constexpr Long ErrFieldProperty = static_cast<Long>(0x800401F5u);

/// The property by which a container makes typing replace the number in all fields in it.
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
  // By the names that the toolkit's own controls have.
  Q_PROPERTY(double value READ Value WRITE setValue NOTIFY valueChanged DESIGNABLE false STORED false USER true)
  Q_PROPERTY(QString text READ text NOTIFY textChanged DESIGNABLE false STORED false)

 public:
  class Private;

  /// On a running form that tells nothing of it: stands with the defaults of the stored properties.
  explicit EngrSpin(QWidget *parent = nullptr);
  /// In a container, which calls InitProperties or ReadProperties.
  EngrSpin(QWidget *parent, ControlSite &site);
  ~EngrSpin() override;

  /// Only of those properties that have a description.
  static PropertyDescriptions Descriptions();

  /// The user changed the value, or the host did while the user was typing.
  Event<> AfterUpdate;
  /// The Tab key; the host sets the flag to keep the key in the field.
  Event<Boolean &> OnTab;

  /// A container calls one of the two once, and then Resize.
  void InitProperties();
  /// Properties that are missing take their default, those that are refused keep what they were.
  void ReadProperties(const PropertyBag &bag);
  void WriteProperties(PropertyBag &bag) const;

  /// Value in the base unit. An assignment is held to the limits and, while the user is not typing, raises
  /// no event.
  Double Value() const;
  void SetValue(Double dblValue);
  /// The value before the latest assignment.
  Double OldValue() const;
  /// 1 / Value; the upper limit stands for the reciprocal of 0.
  Double Reciprocal() const;
  void SetReciprocal(Double dblReciprocal);

  /// Limits in the base unit. A limit that passes the other one takes it along; the value is limited again.
  Double Min() const;
  void SetMin(Double dblMin);
  Double Max() const;
  void SetMax(Double dblMax);

  /// Powers of ten between which typed prefixes are taken, multiples of 3 from -12 to 12. Corrected at run
  /// time, refused at design time.
  Long MinExponent() const;
  void SetMinExponent(Long lngExponent);
  Long MaxExponent() const;
  void SetMaxExponent(Long lngExponent);

  /// 4 to 10, refused otherwise.
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

  /// Value that the field comes up with.
  Double DefaultValue() const;
  void SetDefaultValue(Double dblValue);

  Boolean Enabled() const override;
  void SetEnabled(Boolean fEnabled) override;
  /// Puts the focus on the text box.
  void SetFocus() override;

  Boolean Locked() const;
  /// Locks the field against the user, and blanks its text as long as it is locked if that is wanted too.
  void LockControl(Boolean fNewValue, Boolean fBlankOut);

  /// Hides only the button, keys and wheel go on working.
  Boolean SpinCtlVisible() const;
  void SetSpinCtlVisible(Boolean fVisible);

  /// Whether what is typed, or deleted, at rest takes the place of the whole number instead of the selected digit.
  /// Keys, spin button and wheel step the digit either way. A container with a property of this name that is true
  /// chooses for all fields in it, also for those that come later.
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

  /// Two places for the host's own use.
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

  /// The text of the text box, in the toolkit's own kind.
  QString text() const;

 public Q_SLOTS:
  /// SetValue for connections: a failure of a handler that it calls ends here, with box and record.
  void setValue(double dblValue);

 Q_SIGNALS:
  /// The value has another number now, by whomever: it is shown and held to its limits. Comes before AfterUpdate, which
  /// tells of the user's changes only. A slot must let no exception out.
  void valueChanged(double dblValue);
  /// The text box shows another text, also while the user types.
  void textChanged(const QString &strText);

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  const std::unique_ptr<Private> m;
};

}  // namespace tarvik
