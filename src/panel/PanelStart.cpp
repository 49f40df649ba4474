#include "panel/PanelStart.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "platform/UserInput.h"

namespace tarvik {

namespace {

QEvent::Type StartEvent() {
  static const auto eType = static_cast<QEvent::Type>(QEvent::registerEventType());
  return eType;
}

}  // namespace

PanelStart::PanelStart(QWidget &panel, std::function<void()> start) : m_panel(panel), m_start(std::move(start)) {}

void PanelStart::Await() {
  if (std::exchange(m_fAwaited, true)) return;
  QCoreApplication::instance()->installEventFilter(this);
  PostBehindPainting();
}

bool PanelStart::GiveUp() {
  QCoreApplication::instance()->removeEventFilter(this);
  QCoreApplication::removePostedEvents(this, StartEvent());
  return std::exchange(m_fAwaited, false);
}

void PanelStart::PostBehindPainting() {
  // The toolkit posts its painting at low priority.
  QCoreApplication::removePostedEvents(this, StartEvent());
  QCoreApplication::postEvent(this, new QEvent(StartEvent()), Qt::LowEventPriority - 1);
}

void PanelStart::customEvent(QEvent *event) {
  if (event->type() == StartEvent()) RunWhenPainted();
}

void PanelStart::RunWhenPainted() {
  // Its exposure brings us back.
  if (WindowToBeExposed()) return;
  // A click that waits in the queue was made before the start, and must not be served in the start's own yield.
  const QPointer<PanelStart> self(this);
  QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
  if (!self || WindowToBeExposed() || !GiveUp()) return;
  m_fHasRun = true;
  // Copied, since the host may end the panel while the start runs.
  const auto start = m_start;
  start();
}

QWindow *PanelStart::WindowToBeExposed() const {
  const QWidget *top = m_panel.window();
  if (top->isMinimized() || top->testAttribute(Qt::WA_DontShowOnScreen)) return nullptr;
  QWindow *window = top->windowHandle();
  return window && !window->isExposed() ? window : nullptr;
}

bool PanelStart::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::Expose && watched == m_panel.window()->windowHandle()) PostBehindPainting();
  return IsUserInput(*event) && IsForPanel(watched, *event);
}

bool PanelStart::IsForPanel(QObject *receiver, const QEvent &event) const {
  const auto isPart = [this](const QWidget *widget) { return widget == &m_panel || m_panel.isAncestorOf(widget); };
  if (const auto *widget = qobject_cast<QWidget *>(receiver)) return isPart(widget);
  // The toolkit moves the focus to what is pressed before the widget hears of it, so a press is stopped at the window.
  const QWidget *top = m_panel.window();
  if (!event.isPointerEvent() || receiver != top->windowHandle()) return false;
  const auto &pointer = static_cast<const QPointerEvent &>(event);
  if (pointer.pointCount() == 0) return false;
  const QWidget *below = top->childAt(pointer.points().first().position().toPoint());
  return isPart(below ? below : top);
}

}  // namespace tarvik
