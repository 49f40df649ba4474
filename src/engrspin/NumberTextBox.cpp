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

/// Pixels that the toolkit leaves at each side of the text, the caret's included.
constexpr int TextMargin = 3;

bool MakesText(const QKeyEvent &event) { return !event.text().isEmpty() && event.text().front().isPrint(); }

/// A chord that the text box works on alone, such as copy, or an access key of the form.
bool IsCommandChord(const QKeyEvent &event) {
  const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  if (!modifiers) return false;
  // The third level of the keyboard comes as both keys held together.
  if (modifiers == (Qt::ControlModifier | Qt::AltModifier) && MakesText(event)) return false;
  if (modifiers == Qt::AltModifier && MakesText(event) && event.key() == Qt::Key_unknown) return false;
  const Integer intCode = KeyCodeOf(event);
  return intCode != KeyTab && intCode != KeyEnter && intCode != KeyEscape && (intCode < KeyPageUp || intCode > KeyDown);
}

/// The keys that take an entry or give it up.
bool EndsEntry(const QKeyEvent &event) {
  const Integer intCode = KeyCodeOf(event);
  return intCode == KeyEnter || intCode == KeyEscape;
}

bool LeavesField(Qt::FocusReason reason) {
  // A menu or another window in front ends no entry.
  return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
}

}  // namespace

NumberTextBox::NumberTextBox(TextBoxEvents &events, QWidget *parent) : QLineEdit(parent), m_events(events) {
  // Before anything asks for the interface: what the toolkit made once, it keeps.
  OfferAccessible<NumberTextBox, FieldAccessible>();
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

void NumberTextBox::ChooseNumber() {
  if (!m_events.IsTyping() && SelLength() == 1) selectAll();
}

void NumberTextBox::OnTextEdited() { m_events.TextEdited(std::exchange(m_strKnownText, text())); }

bool NumberTextBox::Offered(const QKeyEvent &event) {
  const Integer intCode = KeyCodeOf(event);
  if (intCode == 0 && !MakesText(event)) return false;
  const bool fZeroed = m_events.KeyDown(intCode) == 0 && intCode != 0;
  // The key press follows the key-down of the same key and takes the flag with it.
  const bool fDropped = !event.text().isEmpty() && m_events.KeyPress();
  return fZeroed || fDropped;
}

bool NumberTextBox::event(QEvent *event) {
  if (event->type() == QEvent::ShortcutOverride && m_events.IsTyping() && EndsEntry(*static_cast<QKeyEvent *>(event))) {
    event->accept();
    return true;
  }
  // While another window was in front the focus can have moved without a word to the text box that had it.
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
    // At rest they are no business of the field's: a dialog around it may wait for them.
    event->setAccepted(fWasTyping);
  } else if (fSwallowed) {
    event->accept();
  } else if (KeyCodeOf(*event) == KeyPadDecimal && m_events.TakesText()) {
    // The pad has one decimal key, whatever the layout prints on it.
    insert(QString(QLatin1Char(m_events.DecimalCharacter())));
    event->accept();
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

void NumberTextBox::RunChord(QKeyEvent *event) {
  if (m_events.TakesText() || event->matches(QKeySequence::Copy) || event->matches(QKeySequence::SelectAll)) {
    QLineEdit::keyPressEvent(event);
    // Some that find nothing to change still move the caret.
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
  // Coming by Tab must not mark the whole text.
  setSelection(lngStart, lngLength);
  UpdateColours();
  // A window that comes to the front brings back neither an entry nor a piece that was marked: they are still there.
  const bool fAtRest = !m_events.IsTyping() && SelLength() == 0;
  if (LeavesField(event->reason()) || fAtRest) m_events.TextEntered();
}

void NumberTextBox::focusOutEvent(QFocusEvent *event) {
  // The digit cursor stays where it is; only the caret goes.
  HideCaret();
  UpdateColours();
  if (LeavesField(event->reason())) m_events.TextLeft();
}

void NumberTextBox::mousePressEvent(QMouseEvent *event) {
  // At rest the middle button pastes over the whole number and needs no place in it.
  if (event->button() == Qt::MiddleButton && !m_events.IsTyping()) return;
  QLineEdit::mousePressEvent(event);
  // The third click of three.
  m_fNumberClicked = event->button() == Qt::LeftButton && SelLength() == text().size();
}

void NumberTextBox::mouseDoubleClickEvent(QMouseEvent *event) {
  QLineEdit::mouseDoubleClickEvent(event);
  if (event->button() != Qt::LeftButton) return;
  selectAll();
  m_fNumberClicked = true;
}

void NumberTextBox::mouseMoveEvent(QMouseEvent *event) {
  // A hand that trembles shall not shrink to a piece what it has just chosen.
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
  // The caret goes to the nearer side of the character; what was clicked is the character.
  if (event->position().x() < cursorRect().center().x()) cursorBackward(false);
  m_events.TextClicked();
}

void NumberTextBox::contextMenuEvent(QContextMenuEvent *event) {
  const bool fDigit = !m_events.IsTyping() && SelLength() == 1;
  ChooseNumber();
  // A list of values has the menu of a text that cannot be changed.
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
    // The text box would bring its caret here, and the digit cursor would be lost.
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
  // Without the focus the entry could never be left.
  setFocus(Qt::OtherFocusReason);
  if (m_events.IsTyping()) {
    QLineEdit::dropEvent(event);
    return;
  }
  selectAll();
  insert(event->mimeData()->text());
  // Where the text came from it stays.
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
