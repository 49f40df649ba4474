#include "panel/MarkLayer.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "platform/Twips.h"

namespace tarvik {

namespace {

constexpr Single CornerSize = 120;
/// Smaller ones could not be told from the border of a field.
constexpr int SmallestCorner = 6;

/// A vivid colour where black on white or white on black is usual, and one that is farther off on what lies between.
struct ColourRow {
  int intBrightest;  ///< grey of the brightest background for this colour
  QColor colour;
};
constexpr ColourRow Colours[] = {
    {0x68, {0xFF, 0xB0, 0x40}}, {0x80, {0xFF, 0xE0, 0xA0}}, {0xAB, {0x70, 0x10, 0x00}}, {0xFF, {0xB0, 0x20, 0x00}}};

}  // namespace

QColor MarkColour(const QColor &back) {
  return std::ranges::find_if(Colours, [&](const auto &row) { return qGray(back.rgb()) <= row.intBrightest; })->colour;
}

MarkLayer::MarkLayer(QWidget &below, Corners corners) : QWidget(&below), m_corners(std::move(corners)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_NoSystemBackground);
  setFocusPolicy(Qt::NoFocus);
  setGeometry(below.rect());
  hide();
  below.installEventFilter(this);
}

int MarkLayer::Size() const { return std::max(SmallestCorner, TwipsToPixels(*this, CornerSize)); }

void MarkLayer::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const int size = Size();
  for (const Corner &corner : m_corners()) {
    const QPointF top = corner.box.topLeft();
    painter.setBrush(MarkColour(corner.back));
    painter.drawPolygon(QPolygonF{top, top + QPointF(size, 0), top + QPointF(0, size)});
  }
}

bool MarkLayer::eventFilter(QObject *below, QEvent *event) {
  if (event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
  return QWidget::eventFilter(below, event);
}

}  // namespace tarvik
