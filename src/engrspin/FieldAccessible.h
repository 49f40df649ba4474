#pragma once

#include <QAccessibleTextInterface>
#include <QAccessibleValueInterface>
#include <QAccessibleWidget>

#include "engrspin/NumberTextBox.h"

namespace tarvik {

class EngrSpin;

/// A number field for assistive technology: its text box is a spin box with a value in the base unit and the field's
/// limits. The name says what it is, the description the number with prefix and unit.
class FieldAccessible : public QAccessibleWidget, public QAccessibleValueInterface, public QAccessibleTextInterface {
 public:
  explicit FieldAccessible(NumberTextBox &txtNumber);

  void *interface_cast(QAccessible::InterfaceType eType) override;
  QString text(QAccessible::Text eText) const override;
  QAccessible::State state() const override;

  QVariant currentValue() const override;
  /// As if the user had entered the number; a locked or disabled field stays as it is.
  void setCurrentValue(const QVariant &vValue) override;
  QVariant maximumValue() const override;
  QVariant minimumValue() const override;
  /// None: the step is that of the digit under the cursor.
  QVariant minimumStepSize() const override { return {}; }

  void selection(int intIndex, int *intStart, int *intEnd) const override;
  int selectionCount() const override;
  void addSelection(int intStart, int intEnd) override { setSelection(0, intStart, intEnd); }
  void removeSelection(int intIndex) override;
  void setSelection(int intIndex, int intStart, int intEnd) override;
  int cursorPosition() const override;
  void setCursorPosition(int intPosition) override;
  QString text(int intStart, int intEnd) const override;
  int characterCount() const override;
  /// In pixels of the screen; the text stands in one line.
  QRect characterRect(int intOffset) const override;
  int offsetAtPoint(const QPoint &point) const override;
  void scrollToSubstring(int, int) override {}
  QString attributes(int intOffset, int *intStart, int *intEnd) const override;

 private:
  const EngrSpin *Field() const;
  NumberTextBox &m_txtNumber;
};

/// The field itself exposes only its text box, which represents caption, unit and button as well.
class FieldBoxAccessible : public QAccessibleWidget {
 public:
  explicit FieldBoxAccessible(EngrSpin &field);

  int childCount() const override { return 1; }
  QAccessibleInterface *child(int intIndex) const override;
  int indexOfChild(const QAccessibleInterface *child) const override;
  /// None of its own: the name of the text box is that of the field.
  QString text(QAccessible::Text) const override { return {}; }
};

}  // namespace tarvik
