#pragma once

#include <QObject>

class QMouseEvent;

namespace tarvik {

/// While an object of this class exists, all user input to the program is discarded.
class DroppedInput : public QObject {
 public:
  DroppedInput();

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void LetGo(QObject *window, const QMouseEvent &release);

  /// Pressed before, so that somebody waits for their release.
  Qt::MouseButtons m_held;
  bool m_fPassing = false;
};

}  // namespace tarvik
