#include "platform/CommandButton.h"

#include <QKeyEvent>
#include <QShortcutEvent>

#include "platform/ControlEvent.h"

namespace tarvik {

CommandButton::CommandButton(QWidget *parent) : WidgetControl(parent) {
  // Enter belongs to the fields and lists of the panel, not to a default button.
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
  // The toolkit would click a moment later, when keys typed behind the access key have already gone to the entry that
  // it ends, and not at all where another control has the same key.
  setShortcutAutoRepeat(accessKey->shortcutId(), false);
  click();
  return true;
}

void CommandButton::keyPressEvent(QKeyEvent *event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    WidgetControl::keyPressEvent(event);
    return;
  }
  // Taken, so that a dialog around does not press its default button.
  event->accept();
  if (!event->isAutoRepeat()) click();
}

}  // namespace tarvik
