// One redraw of the timing diagram: computing the strokes and painting them, against painting the bare lines and texts.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <vector>

#include "Ratios.h"
#include "panel/TimingDiagram.h"

namespace {

using namespace tarvik;

constexpr int Repetitions = 5;
constexpr Single Width = 6975, Height = 1095;
/// Pixels of one twip at the design font.
constexpr qreal Scale = 1.0 / 15;

/// The picture of two channels with double pulses, the longest there is.
class Diagram {
 public:
  Diagram() {
    box.SetScale(Width, Height);
    box.SetBackColor(0);
    box.SetForeColor(0x00C7D863);
    timing.dblPeriodOrFreq = 1e-6;
    timing.fDoublePulse = True;
    timing.dblDelay = 4e-7;
    timing.dblWidth = 1e-7;
    timing.dblLeading = timing.dblTrailing = 2e-9;
    Draw();
  }

  void Draw() {
    diagram.Clear();
    diagram.DrawChannelTiming(1, timing);
    diagram.DrawChannelTiming(2, timing);
  }

  PictureBox box;
  TimingDiagram diagram{box};
  udtChannelTiming timing;
};

/// One line or one text in pixels, ready for the painter.
struct Bare {
  QPen pen;
  QLineF line;
  QString strText;
};

std::vector<Bare> BarePrimitives(const PictureBox &box, qreal ascent) {
  std::vector<Bare> arr;
  for (const DrawPrimitive &primitive : box.DisplayList()) {
    if (primitive.kind == DrawPrimitive::Kind::Clear) continue;
    const QPointF from = QPointF(primitive.sngX1, primitive.sngY1) * Scale;
    const QPointF to = QPointF(primitive.sngX2, primitive.sngY2) * Scale;
    const Qt::PenStyle style = primitive.style == LineStyle::Dotted ? Qt::DotLine : Qt::SolidLine;
    const bool fText = primitive.kind == DrawPrimitive::Kind::Text;
    arr.push_back({QPen(ToQColor(primitive.colour), 1, style),
                   fText ? QLineF(from + QPointF(0, ascent), from) : QLineF(from, to),
                   QString::fromStdString(primitive.strText)});
  }
  return arr;
}

void PaintBare(benchmark::State &state, const Diagram &picture) {
  QImage image((QSizeF(Width, Height) * Scale).toSize(), QImage::Format_RGB32);
  QPainter painter(&image);
  const auto arr = BarePrimitives(picture.box, painter.fontMetrics().ascent());
  for (auto _ : state) {
    painter.fillRect(image.rect(), Qt::black);
    for (const Bare &bare : arr) {
      if (painter.pen() != bare.pen) painter.setPen(bare.pen);
      if (bare.strText.isEmpty())
        painter.drawLine(bare.line);
      else
        painter.drawText(bare.line.p1(), bare.strText);
    }
  }
}

void Redraw(benchmark::State &state, Diagram &picture) {
  QImage image((QSizeF(Width, Height) * Scale).toSize(), QImage::Format_RGB32);
  QPainter painter(&image);
  for (auto _ : state) {
    picture.Draw();
    painter.fillRect(image.rect(), Qt::black);
    PaintDisplayList(painter, picture.box.DisplayList(), image.rect(), QSizeF(Width, Height));
  }
}

}  // namespace

int main(int argc, char **argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  Diagram picture;
  benchmark::RegisterBenchmark("DiagramBare", [&](benchmark::State &state) {
    PaintBare(state, picture);
  })->Repetitions(Repetitions);
  benchmark::RegisterBenchmark("Diagram", [&](benchmark::State &state) {
    Redraw(state, picture);
  })->Repetitions(Repetitions);
  return bench::RunWithBounds(argc, argv, {{"Diagram", "DiagramBare", 1.5, 0}});
}
