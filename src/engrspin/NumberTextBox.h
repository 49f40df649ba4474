#pragma once

#include <QLineEdit>

#include "engrspin/DigitCursor.h"
#include "support/Types.h"

namespace tarvik {

/// Events of the text box that the number field handles.
class TextBoxEvents {
 public:
  virtual ~TextBoxEvents() = default;
  /// Before the text box sees the key. Returns the code, or 0 for a key that goes no further.
  virtual Integer KeyDown(Integer intCode) = 0;
  /// Before the text box sees the character. Returns whether it is dropped.
  virtual bool KeyPress() = 0;
  virtual void TextLeft() = 0;
  virtual void TextEntered() = 0;
  /// The text was clicked without selecting any of it.
  virtual void TextClicked() = 0;
  /// Notches of the wheel while the text box has the focus, up above 0.
  virtual void WheelTurned(int intNotches) = 0;
  /// The user changed the text, by a key or otherwise.
  virtual void TextEdited(const QString &strBefore) = 0;
  virtual char DecimalCharacter() const = 0;
  virtual bool IsTyping() const = 0;
  /// Whether the user may change the text, by typing or otherwise.
  virtual bool TakesText() const = 0;
  /// Whether what is typed at rest takes the place of the whole number.
  virtual bool TypingReplaces() const = 0;
  /// Assistive technology entered a number, in the base unit.
  virtual void ValueAssigned(Double dblValue) = 0;
  /// The number as it is shown, with prefix and unit.
  virtual QString ValueInWords() const = 0;
};

/// The text box of a number field. It keeps its selection without the focus and offers keys, clicks and wheel to the
/// field first. Text pasted or dropped at rest replaces the whole number: inserted into it, it would make another one.
class NumberTextBox : public QLineEdit, public CursorText {
 public:
  NumberTextBox(TextBoxEvents &events, QWidget *parent);

  std::u16string Content() const override { return text().toStdU16String(); }
  Long SelStart() const override;
  Long SelLength() const override;
  void SetSelStart(Long lngStart) override;
  void SetSelLength(Long lngLength) override;

  TextBoxEvents &Events() const { return m_events; }

  /// Sets the text, with the selection at the start and without a user event.
  void WriteText(const QString &strText);
  /// Number of the last WriteText, from 1; 0 once text or selection have changed since.
  Long StandingWrite() const { return m_fAsWritten ? m_lngWrites : 0; }

  /// At rest, selects the whole number in place of the digit; a selection of the user is kept.
  void ChooseNumber();

  /// A locked or disabled text box shows no selection, any other only with the focus.
  void SetLocked(bool fLocked);
  /// Recomputes the colours from the palette of the field.
  void UpdateColours();

  /// Pixels that a box needs to show the whole text.
  int WidthFor(const QString &strText) const;

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void inputMethodEvent(QInputMethodEvent *event) override;
  void focusInEvent(QFocusEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dragMoveEvent(QDragMoveEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  /// Whether the field swallowed the key.
  bool Offered(const QKeyEvent &event);
  void RunChord(QKeyEvent *event);
  void Paste(QKeyEvent *event);
  bool CanTake(const QDropEvent &event) const;
  void OnMenuClosed();
  void HideCaret();
  void OnTextEdited();

  TextBoxEvents &m_events;
  QString m_strKnownText;
  int m_intWheelAngle = 0;
  Long m_lngWrites = 0;
  bool m_fAsWritten = false;
  bool m_fLocked = false;
  bool m_fNumberClicked = false;  ///< by the button that is still down
  bool m_fInColours = false;
};

}  // namespace tarvik
