#include "engrspin/FieldLabel.h"

#include <QPainter>
#include <QStyle>

namespace tarvik {

void FieldLabel::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  const QRect box = contentsRect();
  const int intWidth = fontMetrics().horizontalAdvance(text());
  QRectF target(box);
  if (intWidth > box.width() && intWidth > 0) {
    const qreal factor = static_cast<qreal>(box.width()) / intWidth;
    painter.scale(factor, 1);
    target.setWidth(intWidth + 1);
  }
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
  painter.drawText(target, static_cast<int>(alignment()) | Qt::TextSingleLine, text());
}

}  // namespace tarvik
