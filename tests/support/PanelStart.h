#pragma once

#include <QCoreApplication>
#include <QWidget>

namespace tarvik::test {

/// Lets shown panels start, which happens after their first frame.
inline void LetPanelsStart() {
  QCoreApplication::processEvents();     // the frame
  QCoreApplication::sendPostedEvents();  // the start, which waits for it
}

/// Shows a panel as its host does and lets it start.
inline void ShowAndStart(QWidget &panel) {
  panel.show();
  LetPanelsStart();
}

}  // namespace tarvik::test
