#pragma once

#include <QLabel>

namespace tarvik {

/// The caption or unit of a control. Its width is fixed so that controls line up; a wider text is condensed, then
/// elided with the full text as tool tip.
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
