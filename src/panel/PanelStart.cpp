#include "panel/PanelStart.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <utility>

namespace tarvik {

PanelStart::PanelStart(QWidget &panel, std::function<void()> start) : m_panel(panel), m_start(std::move(start)) {}

void PanelStart::Await() {
  if (IsAwaited()) return;
  m_block.emplace(m_panel);
  RunBehindPainting();
}

bool PanelStart::GiveUp() {
  const bool fAwaited = IsAwaited();
  m_block.reset();
  return fAwaited;
}

void PanelStart::RunBehindPainting() {
  // The toolkit posts its painting at low priority.
  QCoreApplication::removePostedEvents(this);
  QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority - 1);
}

bool PanelStart::eventFilter(QObject *, QEvent *event) {
  if (event->type() == QEvent::Expose) RunBehindPainting();
  return false;
}

void PanelStart::customEvent(QEvent *) {
  if (!IsAwaited()) return;
  if (QWindow *window = WindowToBeExposed()) {
    window->installEventFilter(this);
    return;
  }
  // Clicks and keys that wait in the queue were made before the start. They are read while the panel is still blocked,
  // or the yield within the start would serve them.
  const QPointer<PanelStart> self(this);
  QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
  if (!self || !IsAwaited()) return;
  if (WindowToBeExposed()) {
    RunBehindPainting();
    return;
  }
  GiveUp();
  // Copied, since the host may destroy the panel while the start runs.
  const auto start = m_start;
  start();
}

QWindow *PanelStart::WindowToBeExposed() const {
  const QWidget *top = m_panel.window();
  if (top->isMinimized() || top->testAttribute(Qt::WA_DontShowOnScreen)) return nullptr;
  QWindow *window = top->windowHandle();
  return window && !window->isExposed() ? window : nullptr;
}

}  // namespace tarvik
