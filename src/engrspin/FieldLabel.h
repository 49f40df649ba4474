#pragma once

#include <QLabel>

namespace tarvik {

/// A label of a field. Its width is fixed so that fields line up; a text that is wider is drawn narrower
/// instead of being cut.
class FieldLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent *event) override;
};

}  // namespace tarvik
