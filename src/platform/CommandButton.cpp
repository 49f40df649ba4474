#include "platform/CommandButton.h"

#include <QKeyEvent>
#include <QShortcutEvent>

#include "platform/ControlEvent.h"

namespace tarvik {

CommandButton::CommandButton(QWidget *parent) : WidgetControl(parent) {
  // No default button: Enter is handled by the fields and lists of the panel.
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [this] {
    if (TakeFocusForClick(*this)) RunUserEvent(*this, "Click", [this] { Click.Raise(); });
  });
}

void CommandButton::SetCaption(const std::string &strCaption) {
  m_strCaption = strCaption;
  setText(QString::fromStdString(strCaption));
}

bool CommandButton::event(QEvent *event) {
  if (event->type() != QEvent::Shortcut) return WidgetControl::event(event);
  const auto *accessKey = static_cast<QShortcutEvent *>(event);
  if (accessKey->key() != shortcut()) return WidgetControl::event(event);
  // Qt would animate the click and let keys typed after the mnemonic reach the entry that the click ends; for an
  // ambiguous mnemonic it would not click at all.
  setShortcutAutoRepeat(accessKey->shortcutId(), false);
  click();
  return true;
}

void CommandButton::keyPressEvent(QKeyEvent *event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    WidgetControl::keyPressEvent(event);
    return;
  }
  // Accepted, so that a dialog does not press its default button as well.
  event->accept();
  if (!event->isAutoRepeat()) click();
}

}  // namespace tarvik
