#pragma once

#include <QFrame>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "platform/Twips.h"
#include "platform/WidgetControl.h"

namespace tarvik {

/// A colour as the automation world writes it: red in the lowest byte, blue in the third. With SystemColour set it is
/// a number of the system's colour table: 5 window, 15 button face, 16 button shadow, 21 dark shadow.
using Colour = std::uint32_t;
inline constexpr Colour SystemColour = 0x80000000;

QColor ToQColor(Colour colour);

enum class LineStyle : Integer { Solid = 0, Dotted = 2 };

/// One drawing operation; coordinates in twips.
struct DrawPrimitive {
  enum class Kind { Clear, Line, Box, Text };
  Kind kind;
  Single sngX1 = 0, sngY1 = 0, sngX2 = 0, sngY2 = 0;
  Colour colour = 0;
  LineStyle style = LineStyle::Solid;
  std::string strText;
};

/// Sizes of texts in twips; tests put fixed ones in.
struct TextMetrics {
  std::function<Single(const std::string &)> Width;
  std::function<Single(const std::string &)> Height;
};

/// A drawing surface that keeps its drawing as a display list in twips and paints it at any resolution. It has a pen
/// with a current position, a fore colour and a line style.
class PictureBox : public WidgetControl<QFrame> {
  Q_OBJECT

 public:
  using WidgetControl::WidgetControl;

  Colour ForeColor() const { return m_foreColour; }
  void SetForeColor(Colour colour) { m_foreColour = colour; }
  Colour BackColor() const { return m_backColour; }
  void SetBackColor(Colour colour);
  LineStyle DrawStyle() const { return m_style; }
  void SetDrawStyle(LineStyle style) { m_style = style; }

  Single CurrentX() const { return m_sngCurrentX; }
  Single CurrentY() const { return m_sngCurrentY; }
  void SetCurrentX(Single sngX) { m_sngCurrentX = sngX; }
  void SetCurrentY(Single sngY) { m_sngCurrentY = sngY; }

  /// Size of the drawing in twips: the design size where one was set, otherwise that of the widget.
  Single ScaleWidth() const;
  Single ScaleHeight() const;
  /// Sets the scale of the drawing, which is stretched over the widget.
  void SetScale(Single sngWidth, Single sngHeight);

  Single TextWidth(const std::string &strText) const;
  Single TextHeight(const std::string &strText) const;
  void SetTextMetrics(TextMetrics metrics);

  /// Clears the drawing and moves the pen to (0, 0).
  void Cls();
  /// Error 6 for a coordinate that is no number or out of a Single's range.
  void Line(Single sngX1, Single sngY1, Single sngX2, Single sngY2);
  /// From the current position.
  void LineTo(Single sngX, Single sngY) { Line(m_sngCurrentX, m_sngCurrentY, sngX, sngY); }
  void FillBox(Single sngX1, Single sngY1, Single sngX2, Single sngY2, Colour colour);
  /// With the top left corner at the current position.
  void Print(const std::string &strText);

  const std::vector<DrawPrimitive> &DisplayList() const { return m_arrList; }
  /// Paints only the first lngCount entries of the list, until Cls.
  void PaintFirst(std::size_t lngCount);
  void PaintAll() { PaintFirst(std::numeric_limits<std::size_t>::max()); }
  /// The entries that are painted.
  std::span<const DrawPrimitive> Painted() const;

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  void Add(DrawPrimitive primitive);

  std::vector<DrawPrimitive> m_arrList;
  TextMetrics m_metrics;
  Colour m_foreColour = 0;
  Colour m_backColour = 0xFFFFFF;
  LineStyle m_style = LineStyle::Solid;
  Single m_sngCurrentX = 0, m_sngCurrentY = 0;
  Single m_sngScaleWidth = 0, m_sngScaleHeight = 0;
  std::size_t m_lngPainted = std::numeric_limits<std::size_t>::max();
  bool m_fPaintRequested = false;
};

/// Paints a display list into a rectangle of pixels; the one place where twips of a drawing become pixels.
void PaintDisplayList(QPainter &painter, std::span<const DrawPrimitive> arrList, const QRectF &target, QSizeF scale);

}  // namespace tarvik
