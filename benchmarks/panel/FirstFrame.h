#pragma once

#include <QEvent>
#include <QWidget>
#include <cstdlib>
#include <functional>

/// Exits the process, without running destructors, at the first painted frame for which the condition holds.
class FirstFrame : public QObject {
 public:
  FirstFrame(QWidget &window, std::function<bool()> isReady) : m_isReady(std::move(isReady)) {
    window.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    // The frame is complete when the request that painted it has been served.
    if (event->type() == QEvent::UpdateLater || event->type() == QEvent::Paint)
      QMetaObject::invokeMethod(
          this,
          [this] {
            if (m_isReady()) std::_Exit(0);
          },
          Qt::QueuedConnection);
    return false;
  }

 private:
  std::function<bool()> m_isReady;
};
