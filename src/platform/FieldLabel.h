#pragma once

#include <QLabel>

namespace tarvik {

/// The caption or unit of a control. Its width is fixed so that controls line up; a text that is wider is drawn
/// narrower, and where that is not enough it ends in dots and its tool tip tells the whole.
class FieldLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  bool event(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  int TextFlags() const;
  /// Width of the text over that of the room for it.
  qreal Squeeze() const;
};

}  // namespace tarvik
