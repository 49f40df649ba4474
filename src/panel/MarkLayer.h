#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

namespace tarvik {

/// Colour of a mark on this background: at least three times as bright or as dark.
QColor MarkColour(const QColor &back);

/// Small coloured corners over the controls of a widget. The layer lies on all of the widget, and neither takes part in
/// its layout nor takes mouse or focus.
class MarkLayer : public QWidget {
 public:
  /// A corner at the upper left of this box, in the coordinates of the widget below.
  struct Corner {
    QRect box;
    QColor back;
  };
  /// Asked at each painting.
  using Corners = std::function<std::vector<Corner>()>;

  MarkLayer(QWidget &below, Corners corners);

  /// Pixels of a corner's two sides.
  int Size() const;

 protected:
  void paintEvent(QPaintEvent *event) override;
  bool eventFilter(QObject *below, QEvent *event) override;

 private:
  const Corners m_corners;
};

}  // namespace tarvik
