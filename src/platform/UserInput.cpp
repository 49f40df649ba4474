#include "platform/UserInput.h"

#include <QEvent>
#include <QMouseEvent>

namespace tarvik {

bool IsUserInput(const QEvent &event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: return true;
    case QEvent::MouseMove: return static_cast<const QMouseEvent &>(event).buttons() != Qt::NoButton;
    default: return false;
  }
}

}  // namespace tarvik
