#pragma once

#include <QCoreApplication>
#include <QWidget>

namespace tarvik::test {

/// Lets panels that were shown start, which they do behind their first frame.
inline void LetPanelsStart() {
  QCoreApplication::processEvents();     // the frame
  QCoreApplication::sendPostedEvents();  // what waited for it
}

/// Shows a panel as its host does and lets it start.
inline void ShowAndStart(QWidget &panel) {
  panel.show();
  LetPanelsStart();
}

}  // namespace tarvik::test
