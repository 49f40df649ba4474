#include "platform/DroppedInput.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>

#include "platform/UserInput.h"

namespace tarvik {

DroppedInput::DroppedInput() : m_held(QGuiApplication::mouseButtons()) {
  QCoreApplication::instance()->installEventFilter(this);
}

bool DroppedInput::eventFilter(QObject *watched, QEvent *event) {
  if (m_fPassing || !IsUserInput(*event)) return false;
  if (event->type() == QEvent::MouseButtonRelease && watched->isWindowType())
    LetGo(watched, *static_cast<QMouseEvent *>(event));
  return true;
}

void DroppedInput::LetGo(QObject *window, const QMouseEvent &release) {
  if (!m_held.testFlag(release.button())) return;
  m_held.setFlag(release.button(), false);
  // Who holds the mouse has to be told, or it would be theirs until the next press. Let go out here, nothing is
  // clicked.
  constexpr QPointF Outside(-10000, -10000);
  QMouseEvent outside(QEvent::MouseButtonRelease, Outside, Outside, release.button(), release.buttons(),
                      release.modifiers());
  m_fPassing = true;
  QCoreApplication::sendEvent(window, &outside);
  m_fPassing = false;
}

}  // namespace tarvik
