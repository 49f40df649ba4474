#pragma once

#include <QCoreApplication>
#include <QWidget>

namespace tarvik::test {

/// Shows a panel as its host does and lets it start, which it does behind its first frame.
inline void ShowAndStart(QWidget &panel) {
  panel.show();
  QCoreApplication::processEvents();     // the frame
  QCoreApplication::sendPostedEvents();  // what waited for it
}

}  // namespace tarvik::test
