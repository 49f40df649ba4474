#pragma once

#include <QFont>
#include <QRect>
#include <QWidget>

#include "support/Types.h"

namespace tarvik {

/// A place on a form in twips, relative to the container.
struct TwipsRect {
  Single sngLeft = 0;
  Single sngTop = 0;
  Single sngWidth = 0;
  Single sngHeight = 0;
  bool operator==(const TwipsRect &) const = default;
};

/// Height of a line of text in the design font.
inline constexpr Single DesignTextHeight = 195;

/// Pixels of one twip for this widget: 1/15 where a line of its font is 13 pixels high, as at design
/// time, and larger with a larger font, so that everything placed in twips grows with the text.
qreal PixelsPerTwip(const QWidget &widget);
qreal PixelsPerTwip(const QFont &font);

int TwipsToPixels(const QWidget &widget, Single sngTwips);
Single PixelsToTwips(const QWidget &widget, int intPixels);
/// Edges are rounded, not sizes, so that neighbours stay neighbours.
QRect TwipsToPixels(const QWidget &widget, const TwipsRect &rect);

}  // namespace tarvik
