#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

#include "support/Types.h"

namespace tarvik {

/// Two arrow buttons that count a value up and down by 1, within -100000 to 100000. A button that is held
/// counts on: after a first delay, then steadily.
class SpinControl : public QWidget {
 public:
  /// changed is called after each change of the value, a program's included; entered when the focus comes.
  SpinControl(std::function<void()> changed, std::function<void()> entered, QWidget *parent);

  static constexpr Long Maximum = 100000;
  static constexpr Long Minimum = -Maximum;

  Long Value() const { return m_lngValue; }
  /// Held to the bounds.
  void SetValue(Long lngValue);

  /// Whether the user's presses pass without effect. A program counts on.
  void SetLocked(bool fLocked);

  /// Where the focus goes when the mouse lets go of a button.
  void SetFocusHome(QWidget *home) { m_focusHome = home; }

  QSize sizeHint() const override { return QSize(16, 20); }

 protected:
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override { mousePressEvent(event); }
  void focusInEvent(QFocusEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void changeEvent(QEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  QRect ButtonRect(int intDirection) const;
  void Step();
  void StopHolding();
  void DrawButton(QPainter &painter, int intDirection);

  std::function<void()> m_changed;
  std::function<void()> m_entered;
  QWidget *m_focusHome = nullptr;
  QTimer m_repeat{this};
  Long m_lngValue = 0;
  int m_intHeld = 0;  ///< 1 up, -1 down, 0 none
  bool m_fOnButton = false;
  bool m_fLocked = false;
};

}  // namespace tarvik
