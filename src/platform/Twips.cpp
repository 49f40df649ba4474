#include "platform/Twips.h"

#include <QFontMetricsF>

namespace tarvik {

qreal PixelsPerTwip(const QWidget &widget) { return PixelsPerTwip(widget.font()); }

qreal PixelsPerTwip(const QFont &font) { return QFontMetricsF(font).height() / static_cast<qreal>(DesignTextHeight); }

int TwipsToPixels(const QWidget &widget, Single sngTwips) {
  return qRound(static_cast<qreal>(sngTwips) * PixelsPerTwip(widget));
}

Single PixelsToTwips(const QWidget &widget, int intPixels) {
  return static_cast<Single>(intPixels / PixelsPerTwip(widget));
}

QRect TwipsToPixels(const QWidget &widget, const TwipsRect &rect) {
  const qreal scale = PixelsPerTwip(widget);
  const auto edge = [&](Single sngTwips) { return qRound(static_cast<qreal>(sngTwips) * scale); };
  const int left = edge(rect.sngLeft), top = edge(rect.sngTop);
  return QRect(left, top, edge(rect.sngLeft + rect.sngWidth) - left, edge(rect.sngTop + rect.sngHeight) - top);
}

}  // namespace tarvik
