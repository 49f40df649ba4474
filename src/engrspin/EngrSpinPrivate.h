#pragma once

#include <string>

#include "engrspin/DigitCursor.h"
#include "engrspin/EngrNumber.h"
#include "engrspin/EngrSpin.h"
#include "engrspin/FieldLayout.h"
#include "engrspin/NumberTextBox.h"
#include "engrspin/ValueList.h"
#include "platform/ControlSite.h"
#include "platform/FieldLabel.h"
#include "platform/PropertyTable.h"

namespace tarvik {

class SpinControl;

/// Implementation of EngrSpin: its child widgets, its state and its event handlers.
class TARVIK_HIDDEN EngrSpin::Private final : public TextBoxEvents {
 public:
  explicit Private(EngrSpin &field);
  Private(const Private &) = delete;
  Private &operator=(const Private &) = delete;

  static Private &Of(EngrSpin &field) { return *field.m; }
  static const PropertyTable &Properties();

  Integer KeyDown(Integer intCode) override;
  bool KeyPress() override;
  void TextLeft() override;
  void TextEntered() override;
  void TextClicked() override;
  void WheelTurned(int intNotches) override;
  void TextEdited(const QString &strBefore) override;
  char DecimalCharacter() const override { return number.Decimal(); }
  bool IsTyping() const override { return fEditing; }
  bool TakesText() const override { return !fReadOnly && !values.ArrayMode(); }
  bool TypingReplaces() const override;
  void ValueAssigned(Double dblValue) override;
  QString ValueInWords() const override;

  void txtNumber_Validate() { ParseEntry(); }
  void txtNumber_LostFocus() { ParseEntry(); }
  void txtNumber_GotFocus() { cursor.MoveCursor(curRestore); }
  void spinCtl_GotFocus() { cursor.MoveCursor(curRestore); }
  void spinCtl_Change();

  void BeginEdit();
  void EndEdit();
  void ParseEntry();
  /// Ends an entry that an assignment has overwritten, unless the user goes on typing.
  void EndOverwrittenEntry();

  /// Shows the value unless the field shows it already.
  void UpdateText();
  void ShowText(const std::string &strText);
  void StepUp();
  void StepDown();
  Double GetStepSize();
  Double GetArrayValue(Integer intIndex);
  void NotifyUpdate();

  void ReadAnew(const PropertyBag &bag);
  void UpdateEngrMode();
  void UpdateReadOnly();
  void PropChanged(const char *strName, bool fResize);
  [[noreturn]] static void RaiseFieldError(const std::string &strMessage);
  Long CheckedExponent(Long lngExponent) const;

  void Layout();
  bool IsLaidOut() const { return layout.txtNumber.fMoved; }
  void TakeSizeOfForm();
  void PlaceParts(const FieldLayout &places);
  /// To be called when one of the parts was shown or hidden.
  void NotePart(bool fAppears);
  /// Width of a text box that shows all digits.
  Single RoomForDigits() const;
  /// Notifies assistive technology of a changed number, unit or lock.
  void TellAccessible();

  EngrSpin &field;
  ControlSite &site;
  EngrNumber number;
  ValueList values;
  FieldLayout layout;

  FieldLabel *const lblCaption;
  NumberTextBox *const txtNumber;
  SpinControl *const spinCtl;
  FieldLabel *const lblUnits;
  DigitCursor cursor;

  Double dblToldValue = 0;  ///< of the last valueChanged
  std::string strCaption;
  std::string strAuxUnits;
  std::string strSavedText;
  Double dblDefaultValue = 0;
  Double dblAuxValue = 0;
  Single sngCaptionWidth = 0;
  Long lngCaptionAlignment = 0;
  Boolean fEnabled = True;
  Boolean fLocked = False;
  Boolean fTextLocked = False;  ///< the text box takes no typing
  Boolean fBlanked = False;
  Boolean fReadOnly = False;
  Boolean fTypingReplacesNumber = False;
  Boolean fLoading = False;
  Boolean fEditing = False;
  Boolean fUpdating = False;
  Boolean fSwallowKey = False;
  Boolean fInKeyDown = False;
  Boolean fInSpinChange = False;
  Boolean fInResize = False;

 private:
  /// What text box and unit label show. Cached: most assignments of a download bring the value that is shown.
  struct Shown {
    Double dblValue = 0;
    Long lngFormatVersion = 0;
    Long lngWrite = 0;  ///< of the text box; 0 while it shows something else
  };

  template <class Procedure>
  bool UserEvent(const char *strEvent, Procedure &&procedure);

  Integer KeyCodeLeft(Integer intCode);
  Integer Swallow();
  void TypeKey();
  void TakeEntry();
  void RestoreEntry();
  bool IsShown() const;
  void ShowValue();
  /// Restores the digit selection after a text was written.
  void ShowCursor();
  void StepThroughList(Integer intIndex);

  Shown m_shown;
};

}  // namespace tarvik
