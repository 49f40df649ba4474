#pragma once

#include <QObject>

class QMouseEvent;

namespace tarvik {

/// For as long as it lives no input of the user reaches any window of the program; it is gone, not put off.
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
