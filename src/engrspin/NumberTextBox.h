#pragma once

#include <QLineEdit>

#include "engrspin/DigitCursor.h"
#include "support/Types.h"

namespace tarvik {

/// What happens in the text box of a number field, in the words of the field.
class TextBoxEvents {
 public:
  virtual ~TextBoxEvents() = default;
  /// Before the text box sees the key. Returns the code, or 0 for a key that goes no further.
  virtual Integer KeyDown(Integer intCode) = 0;
  /// Before the text box sees the character. Returns whether it is dropped.
  virtual bool KeyPress() = 0;
  virtual void TextLeft() = 0;
  virtual void TextEntered() = 0;
  /// The mouse was released on the text without marking a piece of it.
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

/// The text box of a number field: keeps its selection when the focus is elsewhere, and hands keys, clicks
/// and wheel to the field before it works on them itself. What is pasted or dropped at rest takes the place of the
/// whole number: within the number it would make another one, or none.
class NumberTextBox : public QLineEdit, public CursorText {
 public:
  NumberTextBox(TextBoxEvents &events, QWidget *parent);

  std::u16string Content() const override { return text().toStdU16String(); }
  Long SelStart() const override;
  Long SelLength() const override;
  void SetSelStart(Long lngStart) override;
  void SetSelLength(Long lngLength) override;

  TextBoxEvents &Events() const { return m_events; }

  /// The program's write: selection to the start, no user event.
  void WriteText(const QString &strText);
  /// The number of the latest WriteText, counted from 1; 0 once text or selection are not as it left them.
  Long StandingWrite() const { return m_fAsWritten ? m_lngWrites : 0; }

  /// At rest, marks the whole number in place of the digit cursor; a piece that the user marked stays.
  void ChooseNumber();

  /// A locked or disabled text box shows no selection, any other only with the focus.
  void SetLocked(bool fLocked);
  /// Takes its colours from the palette of the field anew.
  void UpdateColours();

  /// Width of a box that shows the whole text.
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
