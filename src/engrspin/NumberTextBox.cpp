#include "engrspin/NumberTextBox.h"

#include <QClipboard>
#include <QDropEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QWheelEvent>
#include <algorithm>
#include <limits>
#include <utility>

#include "engrspin/FieldAccessible.h"
#include "platform/Accessibility.h"
#include "platform/DisabledLook.h"
#include "platform/KeyCodes.h"

namespace tarvik {

namespace {

/// Angle of one notch of a wheel.
constexpr int NotchAngle = 120;

/// Pixels that QLineEdit leaves at each side of the text, including the caret.
constexpr int TextMargin = 3;

bool MakesText(const QKeyEvent &event) { return !event.text().isEmpty() && event.text().front().isPrint(); }

/// A chord that the text box handles by itself, such as copy, or a mnemonic of the form.
bool IsCommandChord(const QKeyEvent &event) {
  const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  if (!modifiers) return false;
  // AltGr is reported as Ctrl+Alt.
  if (modifiers == (Qt::ControlModifier | Qt::AltModifier) && MakesText(event)) return false;
  if (modifiers == Qt::AltModifier && MakesText(event) && event.key() == Qt::Key_unknown) return false;
  const Integer intCode = KeyCodeOf(event);
  return intCode != KeyTab && intCode != KeyEnter && intCode != KeyEscape && (intCode < KeyPageUp || intCode > KeyDown);
}

/// Keys that accept or cancel an entry.
bool EndsEntry(const QKeyEvent &event) {
  const Integer intCode = KeyCodeOf(event);
  return intCode == KeyEnter || intCode == KeyEscape;
}

bool LeavesField(Qt::FocusReason reason) {
  // A popup or a deactivated window does not end the entry.
  return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
}

}  // namespace

NumberTextBox::NumberTextBox(TextBoxEvents &events, QWidget *parent) : QLineEdit(parent), m_events(events) {
  // Must come first: QAccessible caches the interface it has created for an object.
  OfferAccessible<NumberTextBox, FieldAccessible>();
  // Truncating pasted text could make it another number.
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
  // Selecting text shows the caret even without the focus. A window-deactivation event hides the caret but keeps the
  // selection.
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

void NumberTextBox::ChooseNumber() {
  if (!m_events.IsTyping() && SelLength() == 1) selectAll();
}

void NumberTextBox::OnTextEdited() { m_events.TextEdited(std::exchange(m_strKnownText, text())); }

bool NumberTextBox::Offered(const QKeyEvent &event) {
  const Integer intCode = KeyCodeOf(event);
  if (intCode == 0 && !MakesText(event)) return false;
  const bool fZeroed = m_events.KeyDown(intCode) == 0 && intCode != 0;
  // KeyPress reads and clears the flag that KeyDown set for the same key.
  const bool fDropped = !event.text().isEmpty() && m_events.KeyPress();
  return fZeroed || fDropped;
}

bool NumberTextBox::event(QEvent *event) {
  if (event->type() == QEvent::ShortcutOverride && m_events.IsTyping() && EndsEntry(*static_cast<QKeyEvent *>(event))) {
    event->accept();
    return true;
  }
  // While the window was inactive the focus can have moved to another widget without a focus-out event here.
  if (event->type() == QEvent::WindowActivate && m_events.IsTyping() && window()->focusWidget() != this)
    m_events.TextLeft();
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
  if (event->matches(QKeySequence::Paste)) {
    Paste(event);
    return;
  }
  if (IsCommandChord(*event)) {
    RunChord(event);
    return;
  }
  const bool fWasTyping = m_events.IsTyping();
  const bool fSwallowed = Offered(*event);
  if (EndsEntry(*event)) {
    // At rest they go to the parent: a dialog may be waiting for them.
    event->setAccepted(fWasTyping);
  } else if (fSwallowed) {
    event->accept();
  } else if (KeyCodeOf(*event) == KeyPadDecimal && m_events.TakesText()) {
    // The keypad's decimal key always types the separator of the locale.
    insert(QString(QLatin1Char(m_events.DecimalCharacter())));
    event->accept();
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

void NumberTextBox::RunChord(QKeyEvent *event) {
  if (m_events.TakesText() || event->matches(QKeySequence::Copy) || event->matches(QKeySequence::SelectAll)) {
    QLineEdit::keyPressEvent(event);
    // Some chords move the caret even if there is nothing to change.
    if (!m_events.IsTyping() && SelLength() == 0) m_events.TextEntered();
  } else {
    event->ignore();
  }
}

void NumberTextBox::Paste(QKeyEvent *event) {
  const QString strText = QGuiApplication::clipboard()->text();
  event->setAccepted(m_events.TakesText());
  if (!m_events.TakesText() || strText.isEmpty()) return;
  ChooseNumber();
  insert(strText);
}

void NumberTextBox::inputMethodEvent(QInputMethodEvent *event) {
  if (!m_events.TakesText()) {
    event->ignore();
    return;
  }
  const bool fTypes = !event->commitString().isEmpty() || !event->preeditString().isEmpty();
  if (fTypes && m_events.TypingReplaces()) ChooseNumber();
  QLineEdit::inputMethodEvent(event);
}

void NumberTextBox::focusInEvent(QFocusEvent *event) {
  const Long lngStart = SelStart(), lngLength = SelLength();
  QLineEdit::focusInEvent(event);
  // QLineEdit selects all text on Tab; restore the selection.
  setSelection(lngStart, lngLength);
  UpdateColours();
  // Window activation must not restore the cursor over a running entry or a selection of the user.
  const bool fAtRest = !m_events.IsTyping() && SelLength() == 0;
  if (LeavesField(event->reason()) || fAtRest) m_events.TextEntered();
}

void NumberTextBox::focusOutEvent(QFocusEvent *event) {
  // Keeps the digit selection, hides the caret.
  HideCaret();
  UpdateColours();
  if (LeavesField(event->reason())) m_events.TextLeft();
}

void NumberTextBox::mousePressEvent(QMouseEvent *event) {
  // At rest the middle button replaces the whole number on release, so the press must not move the caret.
  if (event->button() == Qt::MiddleButton && !m_events.IsTyping()) return;
  QLineEdit::mousePressEvent(event);
  // Triple click.
  m_fNumberClicked = event->button() == Qt::LeftButton && SelLength() == text().size();
}

void NumberTextBox::mouseDoubleClickEvent(QMouseEvent *event) {
  QLineEdit::mouseDoubleClickEvent(event);
  if (event->button() != Qt::LeftButton) return;
  selectAll();
  m_fNumberClicked = true;
}

void NumberTextBox::mouseMoveEvent(QMouseEvent *event) {
  // A small move during a double click must not shrink the selection.
  if (!m_fNumberClicked) QLineEdit::mouseMoveEvent(event);
}

void NumberTextBox::mouseReleaseEvent(QMouseEvent *event) {
  m_fNumberClicked = false;
  if (event->button() == Qt::MiddleButton && !m_events.IsTyping()) {
    const QClipboard *clipboard = QGuiApplication::clipboard();
    const QString strText = clipboard->supportsSelection() ? clipboard->text(QClipboard::Selection) : QString();
    if (strText.isEmpty() || !m_events.TakesText()) return;
    selectAll();
    insert(strText);
    return;
  }
  QLineEdit::mouseReleaseEvent(event);
  if (event->button() != Qt::LeftButton || m_events.IsTyping() || SelLength() != 0) return;
  // The caret lands at the nearer edge of a character; the click meant the character itself.
  if (event->position().x() < cursorRect().center().x()) cursorBackward(false);
  m_events.TextClicked();
}

void NumberTextBox::contextMenuEvent(QContextMenuEvent *event) {
  const bool fDigit = !m_events.IsTyping() && SelLength() == 1;
  ChooseNumber();
  // A field with a value list offers the read-only menu.
  const bool fWasReadOnly = isReadOnly();
  setReadOnly(!m_events.TakesText());
  QMenu *menu = createStandardContextMenu();
  setReadOnly(fWasReadOnly);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (fDigit) connect(menu, &QObject::destroyed, this, [this] { OnMenuClosed(); });
  menu->popup(event->globalPos());
}

void NumberTextBox::OnMenuClosed() {
  if (hasFocus() && !m_events.IsTyping()) m_events.TextEntered();
}

bool NumberTextBox::CanTake(const QDropEvent &event) const {
  return m_events.TakesText() && event.mimeData()->hasText();
}

void NumberTextBox::dragEnterEvent(QDragEnterEvent *event) { dragMoveEvent(event); }

void NumberTextBox::dragMoveEvent(QDragMoveEvent *event) {
  if (m_events.IsTyping()) {
    QLineEdit::dragMoveEvent(event);
  } else if (CanTake(*event)) {
    // QLineEdit would move its caret here and lose the digit selection.
    event->acceptProposedAction();
  } else {
    event->ignore();
  }
}

void NumberTextBox::dropEvent(QDropEvent *event) {
  if (!CanTake(*event)) {
    event->ignore();
    return;
  }
  // The entry ends with a focus-out, so the box needs the focus.
  setFocus(Qt::OtherFocusReason);
  if (m_events.IsTyping()) {
    QLineEdit::dropEvent(event);
    return;
  }
  selectAll();
  insert(event->mimeData()->text());
  // Never remove the text from its source.
  event->setDropAction(Qt::CopyAction);
  event->accept();
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
  if (event->type() == QEvent::ParentChange || event->type() == QEvent::EnabledChange) UpdateColours();
}

int NumberTextBox::WidthFor(const QString &strText) const {
  QStyleOptionFrame option;
  initStyleOption(&option);
  const QSize text(fontMetrics().horizontalAdvance(strText) + 2 * TextMargin, fontMetrics().height());
  return style()->sizeFromContents(QStyle::CT_LineEdit, &option, text, this).width();
}

void NumberTextBox::SetLocked(bool fLocked) {
  if (fLocked == m_fLocked) return;
  m_fLocked = fLocked;
  UpdateColours();
}

void NumberTextBox::UpdateColours() {
  if (m_fInColours) return;
  m_fInColours = true;
  const QPalette plain = parentWidget() ? parentWidget()->palette() : QPalette();
  const DisabledLook disabled = DisabledLookOf(plain);
  const QColor back = isEnabled() ? plain.color(QPalette::Active, QPalette::Base) : disabled.back;
  QPalette colours = plain;
  colours.setColor(QPalette::Disabled, QPalette::Text, disabled.text);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    colours.setColor(group, QPalette::Base, back);
    if (hasFocus() && isEnabled() && !m_fLocked) continue;
    colours.setColor(group, QPalette::Highlight, back);
    colours.setColor(group, QPalette::HighlightedText, colours.color(group, QPalette::Text));
  }
  if (colours != palette()) setPalette(colours);
  m_fInColours = false;
}

}  // namespace tarvik
