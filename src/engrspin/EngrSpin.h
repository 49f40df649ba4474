#pragma once

#include <QWidget>
#include <memory>
#include <string>

#include "engrspin/DigitCursor.h"
#include "engrspin/EngrNumber.h"
#include "engrspin/FieldLayout.h"
#include "engrspin/NumberTextBox.h"
#include "engrspin/ValueList.h"
#include "platform/ControlSite.h"
#include "platform/FormProperties.h"
#include "platform/PropertyBag.h"
#include "support/Control.h"
#include "support/Event.h"
#include "support/Export.h"

namespace tarvik {

class FieldLabel;
class SpinControl;

/// Number of the error that a design-time mistake on a property raises, with the source "EngrSpin.ctl".
inline constexpr Long ErrFieldProperty = static_cast<Long>(0x800401F5u);

/// The property by which a container makes typing replace the number in all fields in it.
inline constexpr const char *TypingReplacesProperty = "TypingReplacesNumber";

/// A number with its unit, as an instrument shows it: a digit cursor that keys, spin button and wheel step,
/// and free typing with prefix and unit. In engineering format the unit carries a prefix letter; without a
/// unit, or with both exponents 0, the number goes through NumberFormat. All sizes are in twips.
class TARVIK_EXPORT EngrSpin : public QWidget, public Control, private TextBoxEvents {
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
  /// On a running form that tells nothing of it: stands with the defaults of the stored properties.
  explicit EngrSpin(QWidget *parent = nullptr);
  /// In a container, which calls InitProperties or ReadProperties.
  EngrSpin(QWidget *parent, ControlSite &site);
  ~EngrSpin() override;

  /// On a form that sets properties by name: stands with the defaults of the stored ones before the first.
  void BeginForm() { m_form.Begin(); }

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
  Double Value() const { return m_number->Value(); }
  void SetValue(Double dblValue);
  /// The value before the latest assignment.
  Double OldValue() const { return m_number->OldValue(); }
  /// 1 / Value; the upper limit stands for the reciprocal of 0.
  Double Reciprocal() const { return m_number->Reciprocal(); }
  void SetReciprocal(Double dblReciprocal);

  /// Limits in the base unit. A limit that passes the other one takes it along; the value is limited again.
  Double Min() const { return m_number->Min(); }
  void SetMin(Double dblMin);
  Double Max() const { return m_number->Max(); }
  void SetMax(Double dblMax);

  /// Powers of ten between which typed prefixes are taken, multiples of 3 from -12 to 12. Corrected at run
  /// time, refused at design time.
  Long MinExponent() const { return m_number->MinExponent(); }
  void SetMinExponent(Long lngExponent);
  Long MaxExponent() const { return m_number->MaxExponent(); }
  void SetMaxExponent(Long lngExponent);

  /// 4 to 10, refused otherwise.
  Long SignificantDigits() const { return m_number->SignificantDigits(); }
  void SetSignificantDigits(Long lngDigits);

  /// Unit without prefix; empty for a plain number.
  const std::string &BaseUnit() const { return m_number->BaseUnit(); }
  void SetBaseUnit(const std::string &strUnit);
  /// Format string of plain format; an engineering field has none.
  const std::string &NumberFormat() const { return m_number->NumberFormat(); }
  void SetNumberFormat(const std::string &strFormat);

  const std::string &Caption() const { return m_strCaption; }
  void SetCaption(const std::string &strCaption);
  /// 0 left, 1 right, 2 centred.
  Long CaptionAlignment() const { return m_lngCaptionAlignment; }
  void SetCaptionAlignment(Long lngAlignment);
  /// In twips; 0 hides the caption.
  Single CaptionWidth() const { return m_sngCaptionWidth; }
  void SetCaptionWidth(Single sngWidth);

  /// Value that the field comes up with.
  Double DefaultValue() const { return m_dblDefaultValue; }
  void SetDefaultValue(Double dblValue);

  Boolean Enabled() const override { return m_fEnabled; }
  void SetEnabled(Boolean fEnabled) override;
  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override;
  /// Puts the focus on the text box.
  void SetFocus() override;

  Boolean Locked() const { return m_fLocked; }
  /// Locks the field against the user, and blanks its text as long as it is locked if that is wanted too.
  void LockControl(Boolean fNewValue, Boolean fBlankOut);

  /// Hides only the button, keys and wheel go on working.
  Boolean SpinCtlVisible() const { return m_layout.fSpinVisible; }
  void SetSpinCtlVisible(Boolean fVisible);

  /// Whether what is typed, or deleted, at rest takes the place of the whole number instead of the selected digit.
  /// Keys, spin button and wheel step the digit either way. A container with a property of this name that is true
  /// chooses for all fields in it, also for those that come later.
  Boolean TypingReplacesNumber() const { return m_fTypingReplacesNumber; }
  void SetTypingReplacesNumber(Boolean fReplaces);

  /// What the text box shows.
  std::string Text() const;
  void SetText(const std::string &) {}
  /// Width in twips of text box and spin button, from the latest layout.
  Single TextBoxWidth() const { return m_layout.sngTextBoxWidth; }
  void SetTextBoxWidth(Single) {}

  /// Allowed values separated by ";", with "." as separator. Empty for a free field.
  const std::string &ValueArray() const { return m_values.Text(); }
  void SetValueArray(const std::string &strValues);

  /// Two places for the host's own use.
  const std::string &AuxUnits() const { return m_strAuxUnits; }
  void SetAuxUnits(const std::string &strUnits) { m_strAuxUnits = strUnits; }
  Double AuxValue() const { return m_dblAuxValue; }
  void SetAuxValue(Double dblValue) { m_dblAuxValue = dblValue; }

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
  /// With a number model of the caller's.
  EngrSpin(std::unique_ptr<EngrNumber> number, QWidget *parent, ControlSite &site);

  bool event(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  friend struct EngrSpinAccess;

  Integer KeyDown(Integer intCode) override;
  bool KeyPress() override;
  void TextLeft() override;
  void TextEntered() override;
  void TextClicked() override;
  void WheelTurned(int intNotches) override;
  void TextEdited(const QString &strBefore) override;
  char DecimalCharacter() const override { return m_number->Decimal(); }
  bool IsTyping() const override { return m_fEditing; }
  bool TakesText() const override { return !m_fReadOnly && !m_values.ArrayMode(); }
  bool TypingReplaces() const override;
  void ValueAssigned(Double dblValue) override;
  QString ValueInWords() const override;

  void txtNumber_Validate() { ParseEntry(); }
  void txtNumber_LostFocus() { ParseEntry(); }
  void txtNumber_GotFocus() { m_cursor.MoveCursor(curRestore); }
  void spinCtl_GotFocus() { m_cursor.MoveCursor(curRestore); }
  void spinCtl_Change();

  Integer KeyCodeLeft(Integer intCode);
  Integer Swallow();
  void TypeKey();
  void BeginEdit();
  void EndEdit();
  void ParseEntry();
  void TakeEntry();
  void RestoreEntry();
  /// Whether the field looks as ShowValue would leave it.
  bool IsShown() const;
  void ShowValue();
  void ShowText(const std::string &strText);
  /// Selects the digit again that was selected before a text was written.
  void ShowCursor();
  /// Ends an entry that a program has written over, unless the user types on.
  void EndOverwrittenEntry();
  void StepUp();
  void StepDown();
  void StepThroughList(Integer intIndex);
  Double GetStepSize();
  Double GetArrayValue(Integer intIndex);
  void NotifyUpdate();

  std::vector<FormProperties::Property> FormTable();
  void ReadAnew(const PropertyBag &bag);
  void SetLocked(Boolean fLocked) { LockControl(fLocked, False); }

  void UpdateEngrMode();
  void UpdateReadOnly();
  void PropChanged(const char *strName, bool fResize);
  [[noreturn]] static void RaiseFieldError(const std::string &strMessage);
  Long CheckedExponent(Long lngExponent) const;

  void Layout();
  bool IsLaidOut() const { return m_layout.txtNumber.fMoved; }
  void TakeSizeOfForm();
  void PlaceParts(const FieldLayout &layout);
  /// One of the parts came or went.
  void NotePart(bool fAppears);
  /// Width of a text box that shows all digits.
  Single RoomForDigits() const;
  /// Tells assistive technology that the number, its unit or what can be done with it changed.
  void TellAccessible();
  template <class Procedure>
  bool UserEvent(const char *strEvent, Procedure &&procedure);

  ControlSite &m_site;
  FormProperties m_form;
  std::unique_ptr<EngrNumber> m_number;
  ValueList m_values;
  FieldLayout m_layout;

  FieldLabel *lblCaption;
  NumberTextBox *txtNumber;
  SpinControl *spinCtl;
  FieldLabel *lblUnits;
  DigitCursor m_cursor;

  /// What text and unit show. A download brings most fields the value that they have, and shall not pay for it.
  struct Shown {
    Double dblValue = 0;
    Long lngFormatVersion = 0;
    Long lngWrite = 0;  ///< of the text box; 0 while it shows something else
  };
  Shown m_shown;

  Double m_dblToldValue = 0;  ///< by the latest valueChanged

  std::string m_strCaption;
  std::string m_strAuxUnits;
  std::string m_strSavedText;
  Double m_dblDefaultValue = 0;
  Double m_dblAuxValue = 0;
  Single m_sngCaptionWidth = 0;
  Long m_lngCaptionAlignment = 0;
  Boolean m_fEnabled = True;
  Boolean m_fLocked = False;
  Boolean m_fTextLocked = False;  ///< the text box takes no typing
  Boolean m_fBlanked = False;
  Boolean m_fReadOnly = False;
  Boolean m_fTypingReplacesNumber = False;
  Boolean m_fLoading = False;
  Boolean m_fEditing = False;
  Boolean m_fUpdating = False;
  Boolean m_fSwallowKey = False;
  Boolean m_fInKeyDown = False;
  Boolean m_fInSpinChange = False;
  Boolean m_fInResize = False;
};

}  // namespace tarvik
