#include "engrspin/NumberTextBox.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <limits>

#include "platform/KeyCodes.h"

namespace tarvik {

namespace {

/// Angle of one notch of a wheel.
constexpr int NotchAngle = 120;

/// Chords that change the text; all others leave a number at rest alone.
constexpr std::array EditingKeys = {
    QKeySequence::Paste,
    QKeySequence::Cut,
    QKeySequence::Delete,
    QKeySequence::Backspace,
    QKeySequence::Undo,
    QKeySequence::Redo,
    QKeySequence::DeleteEndOfWord,
    QKeySequence::DeleteStartOfWord,
    QKeySequence::DeleteEndOfLine,
    QKeySequence::DeleteCompleteLine,
};

bool MakesText(const QKeyEvent &event) { return !event.text().isEmpty() && event.text().front().isPrint(); }

/// A chord such as copy, or an access key of the form: nobody has begun to type.
bool IsCommandChord(const QKeyEvent &event) {
  const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  if (!modifiers) return false;
  // The third level of the keyboard comes as both keys held together.
  if (modifiers == (Qt::ControlModifier | Qt::AltModifier) && MakesText(event)) return false;
  if (modifiers == Qt::AltModifier && MakesText(event) && event.key() == Qt::Key_unknown) return false;
  const Integer intCode = KeyCodeOf(event);
  if (intCode == KeyTab || intCode == KeyEnter || intCode == KeyEscape || (intCode >= KeyPageUp && intCode <= KeyDown))
    return false;
  return std::none_of(EditingKeys.begin(), EditingKeys.end(), [&](auto key) { return event.matches(key); });
}

bool LeavesField(Qt::FocusReason reason) {
  // A menu or another window in front ends no entry.
  return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
}

QColor Blend(const QColor &first, const QColor &second) {
  return QColor((first.red() + second.red()) / 2, (first.green() + second.green()) / 2,
                (first.blue() + second.blue()) / 2);
}

}  // namespace

NumberTextBox::NumberTextBox(TextBoxEvents &events, QWidget *parent) : QLineEdit(parent), m_events(events) {
  // Cutting what was pasted could turn it into another number.
  setMaxLength(std::numeric_limits<int>::max());
  setFocusPolicy(Qt::StrongFocus);
  setDragEnabled(false);
  setTextMargins(0, 0, 0, 0);
  connect(this, &QLineEdit::textEdited, this, [this] { OnTextEdited(); });
  const auto changed = [this] { m_fAsWritten = false; };
  connect(this, &QLineEdit::textChanged, this, changed);
  connect(this, &QLineEdit::selectionChanged, this, changed);
  connect(this, &QLineEdit::cursorPositionChanged, this, changed);
  UpdateColours();
}

Long NumberTextBox::SelStart() const { return hasSelectedText() ? selectionStart() : cursorPosition(); }

Long NumberTextBox::SelLength() const { return static_cast<Long>(selectedText().size()); }

void NumberTextBox::SetSelStart(Long lngStart) {
  if (lngStart < 0) RaiseError(ErrInvalidPropertyValue);
  deselect();
  setCursorPosition(std::min(lngStart, static_cast<Long>(text().size())));
}

void NumberTextBox::SetSelLength(Long lngLength) {
  const Long lngStart = SelStart();
  setSelection(lngStart, std::clamp(lngLength, Long{0}, static_cast<Long>(text().size()) - lngStart));
  if (!hasFocus()) HideCaret();
}

void NumberTextBox::HideCaret() {
  // A selection brings the caret to the screen, also without the focus. Told that the window lost it, the text box
  // takes the caret away and lets the selection be.
  QFocusEvent event(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
  QLineEdit::focusOutEvent(&event);
}

void NumberTextBox::WriteText(const QString &strText) {
  m_strKnownText = strText;
  setText(strText);
  deselect();
  setCursorPosition(0);
  ++m_lngWrites;
  m_fAsWritten = true;
}

void NumberTextBox::OnTextEdited() {
  const QString strBefore = std::exchange(m_strKnownText, text());
  if (!m_fInKey) m_events.TextEdited(strBefore);
}

bool NumberTextBox::Offered(const QKeyEvent &event) {
  const Integer intCode = KeyCodeOf(event);
  if (intCode == 0 && !MakesText(event)) return false;
  const bool fZeroed = m_events.KeyDown(intCode) == 0 && intCode != 0;
  // The key press follows the key-down of the same key and takes the flag with it.
  const bool fDropped = !event.text().isEmpty() && m_events.KeyPress();
  return fZeroed || fDropped;
}

bool NumberTextBox::event(QEvent *event) {
  // Tab never reaches keyPressEvent: the toolkit moves the focus first.
  if (event->type() == QEvent::KeyPress) {
    auto *key = static_cast<QKeyEvent *>(event);
    if ((key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) &&
        !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && Offered(*key)) {
      key->accept();
      return true;
    }
  }
  return QLineEdit::event(event);
}

void NumberTextBox::keyPressEvent(QKeyEvent *event) {
  if (IsCommandChord(*event)) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  const bool fWasTyping = m_events.IsTyping();
  const bool fEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (Offered(*event) || (fEnter && fWasTyping)) {
    event->accept();
    return;
  }
  m_fInKey = true;
  if (KeyCodeOf(*event) == KeyPadDecimal && !isReadOnly()) {
    // The pad has one decimal key, whatever the layout prints on it.
    insert(QString(QLatin1Char(m_events.DecimalCharacter())));
    event->accept();
  } else {
    QLineEdit::keyPressEvent(event);
  }
  m_fInKey = false;
}

void NumberTextBox::focusInEvent(QFocusEvent *event) {
  const Long lngStart = SelStart(), lngLength = SelLength();
  QLineEdit::focusInEvent(event);
  // Coming by Tab must not mark the whole text.
  setSelection(lngStart, lngLength);
  UpdateColours();
  if (LeavesField(event->reason())) m_events.TextEntered();
}

void NumberTextBox::focusOutEvent(QFocusEvent *event) {
  // The digit cursor stays where it is; only the caret goes.
  HideCaret();
  UpdateColours();
  if (LeavesField(event->reason())) m_events.TextLeft();
}

void NumberTextBox::mouseReleaseEvent(QMouseEvent *event) {
  QLineEdit::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton && !m_events.IsTyping() && SelLength() == 0) m_events.TextClicked();
}

void NumberTextBox::mouseDoubleClickEvent(QMouseEvent *event) {
  // Two quick clicks on a digit mean that digit, not the word it stands in.
  if (m_events.IsTyping()) {
    QLineEdit::mouseDoubleClickEvent(event);
  } else {
    QLineEdit::mousePressEvent(event);
  }
}

void NumberTextBox::wheelEvent(QWheelEvent *event) {
  if (!hasFocus() || isReadOnly() || !isEnabled()) {
    m_intWheelAngle = 0;
    event->ignore();
    return;
  }
  event->accept();
  m_intWheelAngle += event->angleDelta().y();
  const int intNotches = m_intWheelAngle / NotchAngle;
  m_intWheelAngle -= intNotches * NotchAngle;
  if (intNotches != 0) m_events.WheelTurned(intNotches);
}

void NumberTextBox::changeEvent(QEvent *event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::ParentChange || event->type() == QEvent::ApplicationPaletteChange) UpdateColours();
}

void NumberTextBox::SetLook(bool fGrey, bool fLocked) {
  if (fGrey == m_fGrey && fLocked == m_fLocked) return;
  m_fGrey = fGrey;
  m_fLocked = fLocked;
  UpdateColours();
}

void NumberTextBox::UpdateColours() {
  if (m_fInColours) return;
  m_fInColours = true;
  const QPalette plain = parentWidget() ? parentWidget()->palette() : QPalette();
  QPalette colours = plain;
  QColor back = plain.color(QPalette::Active, QPalette::Base);
  if (m_fLocked) back = Blend(back, plain.color(QPalette::Active, QPalette::Window));
  if (m_fGrey) back = QColor(0xC0, 0xC0, 0xC0);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    colours.setColor(group, QPalette::Base, back);
    if (hasFocus()) continue;
    colours.setColor(group, QPalette::Highlight, back);
    colours.setColor(group, QPalette::HighlightedText, plain.color(group, QPalette::Text));
  }
  if (m_fGrey) colours.setColor(QPalette::Disabled, QPalette::Text, QColor(0x50, 0x50, 0x50));
  if (colours != palette()) setPalette(colours);
  m_fInColours = false;
}

}  // namespace tarvik
