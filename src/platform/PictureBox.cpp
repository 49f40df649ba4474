#include "platform/PictureBox.h"

#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tarvik {

namespace {

void RequireFinite(std::initializer_list<Single> arrCoordinates) {
  for (const Single sng : arrCoordinates)
    if (!std::isfinite(sng)) RaiseError(ErrOverflow);
}

/// Far outside of any picture; keeps Qt's fixed-point line clipping exact.
qreal Bounded(qreal pixels) { return std::clamp(pixels, -1e6, 1e6); }

}  // namespace

QColor ToQColor(Colour colour) {
  if (colour & SystemColour) {
    const QPalette colours = QGuiApplication::palette();
    switch (colour & 0xFF) {
      case 5: return colours.color(QPalette::Base);
      case 16: return colours.color(QPalette::Dark);
      case 21: return colours.color(QPalette::Shadow);
      default: return colours.color(QPalette::Button);
    }
  }
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                static_cast<int>((colour >> 16) & 0xFF));
}

void PictureBox::SetBackColor(Colour colour) {
  if (colour == m_backColour) return;
  m_backColour = colour;
  update();
}

Single PictureBox::ScaleWidth() const {
  return m_sngScaleWidth > 0 ? m_sngScaleWidth : PixelsToTwips(*this, contentsRect().width());
}

Single PictureBox::ScaleHeight() const {
  return m_sngScaleHeight > 0 ? m_sngScaleHeight : PixelsToTwips(*this, contentsRect().height());
}

void PictureBox::SetScale(Single sngWidth, Single sngHeight) {
  m_sngScaleWidth = sngWidth;
  m_sngScaleHeight = sngHeight;
  update();
}

void PictureBox::SetTextMetrics(TextMetrics metrics) { m_metrics = std::move(metrics); }

Single PictureBox::TextWidth(const std::string &strText) const {
  if (m_metrics.Width) return m_metrics.Width(strText);
  return static_cast<Single>(QFontMetricsF(font()).horizontalAdvance(QString::fromStdString(strText)) /
                             PixelsPerTwip(*this));
}

Single PictureBox::TextHeight(const std::string &strText) const {
  if (m_metrics.Height) return m_metrics.Height(strText);
  return static_cast<Single>(QFontMetricsF(font()).height() / PixelsPerTwip(*this));
}

void PictureBox::PaintFirst(std::size_t lngCount) {
  if (m_lngPainted == lngCount) return;
  m_lngPainted = lngCount;
  update();
}

std::span<const DrawPrimitive> PictureBox::Painted() const {
  return std::span(m_arrList).first(std::min(m_lngPainted, m_arrList.size()));
}

void PictureBox::Cls() {
  PaintAll();
  m_arrList.clear();
  m_sngCurrentX = m_sngCurrentY = 0;
  Add({.kind = DrawPrimitive::Kind::Clear, .strText = {}});
}

void PictureBox::Line(Single sngX1, Single sngY1, Single sngX2, Single sngY2) {
  RequireFinite({sngX1, sngY1, sngX2, sngY2});
  m_sngCurrentX = sngX2;
  m_sngCurrentY = sngY2;
  Add({DrawPrimitive::Kind::Line, sngX1, sngY1, sngX2, sngY2, m_foreColour, m_style, {}});
}

void PictureBox::FillBox(Single sngX1, Single sngY1, Single sngX2, Single sngY2, Colour colour) {
  RequireFinite({sngX1, sngY1, sngX2, sngY2});
  m_sngCurrentX = sngX2;
  m_sngCurrentY = sngY2;
  Add({DrawPrimitive::Kind::Box, sngX1, sngY1, sngX2, sngY2, colour, m_style, {}});
}

void PictureBox::Print(const std::string &strText) {
  Add({DrawPrimitive::Kind::Text, m_sngCurrentX, m_sngCurrentY, 0, 0, m_foreColour, m_style, strText});
}

void PictureBox::Add(DrawPrimitive primitive) {
  m_arrList.push_back(std::move(primitive));
  // One request is enough until the next paint.
  if (!std::exchange(m_fPaintRequested, true)) update();
}

void PictureBox::paintEvent(QPaintEvent *event) {
  m_fPaintRequested = false;
  // QFrame paints with a painter of its own, and a widget allows one at a time.
  QPainter(this).fillRect(rect(), ToQColor(m_backColour));
  QFrame::paintEvent(event);
  QPainter painter(this);
  PaintDisplayList(painter, Painted(), contentsRect(), QSizeF(ScaleWidth(), ScaleHeight()));
}

void PaintDisplayList(QPainter &painter, std::span<const DrawPrimitive> arrList, const QRectF &target, QSizeF scale) {
  if (scale.isEmpty()) return;
  const qreal factorX = target.width() / scale.width(), factorY = target.height() / scale.height();
  const auto at = [&](Single sngX, Single sngY) {
    return QPointF(Bounded(target.left() + static_cast<qreal>(sngX) * factorX),
                   Bounded(target.top() + static_cast<qreal>(sngY) * factorY));
  };
  QPen pen;
  pen.setWidthF(1);
  const auto usePen = [&](const DrawPrimitive &primitive) {
    const QColor colour = ToQColor(primitive.colour);
    const Qt::PenStyle style = primitive.style == LineStyle::Dotted ? Qt::DotLine : Qt::SolidLine;
    if (pen.color() == colour && pen.style() == style && painter.pen() == pen) return;
    pen.setColor(colour);
    pen.setStyle(style);
    painter.setPen(pen);
  };
  const qreal ascent = painter.fontMetrics().ascent();
  for (const DrawPrimitive &primitive : arrList) {
    switch (primitive.kind) {
      case DrawPrimitive::Kind::Clear: break;
      case DrawPrimitive::Kind::Line:
        usePen(primitive);
        painter.drawLine(at(primitive.sngX1, primitive.sngY1), at(primitive.sngX2, primitive.sngY2));
        break;
      case DrawPrimitive::Kind::Box:
        painter.fillRect(
            QRectF(at(primitive.sngX1, primitive.sngY1), at(primitive.sngX2, primitive.sngY2)).normalized(),
            ToQColor(primitive.colour));
        break;
      case DrawPrimitive::Kind::Text:
        usePen(primitive);
        painter.drawText(at(primitive.sngX1, primitive.sngY1) + QPointF(0, ascent),
                         QString::fromStdString(primitive.strText));
        break;
    }
  }
}

}  // namespace tarvik
