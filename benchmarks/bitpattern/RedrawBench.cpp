// One redraw of the editor: computing what is drawn and painting it, against painting the bare lines and texts.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <variant>
#include <vector>

#include "Ratios.h"
#include "bitpattern/BitPatternPrivate.h"
#include "bitpattern/WavePicture.h"
#include "platform/CommandButton.h"
#include "support/Host.h"

namespace {

using namespace tarvik;

constexpr int Repetitions = 5;

/// A host for an editor that has nothing to tell.
class SilentHost : public Host {
 public:
  BoxAnswer MsgBox(const std::string &, BoxIcon, BoxButtons, const std::string &) override { return BoxAnswer::Ok; }
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  void Beep() override {}
  Integer MousePointer() const override { return PointerDefault; }
  void SetMousePointer(Integer) override {}
  std::string GetSetting(const std::string &, const std::string &, const std::string &,
                         const std::string &strDefault) override {
    return strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return '.'; }
  void DoEvents() override {}
};

class Editor : public BitPattern {
 public:
  explicit Editor(Long lngLength) {
    EnableChannel2(True);
    SetPatternInit();
    const ByteArray arr(1, std::vector<Byte>(PatternArraySize, 0x6B));
    for (const Long eChannel : {1, 2, 8}) SetPattern(eChannel, arr, lngLength);
    picture = findChild<WavePicture *>(QStringLiteral("picWave"));
    resize(sizeHint());
    show();
    // A selected row, and an address with cells on both sides.
    picture->MouseDown.Raise(1, 100, 300);
    for (int i = 0; i < 3; ++i) {
      Integer intKeyRight = 39;
      picture->KeyDown.Raise(intKeyRight);
    }
  }

  WavePicture *picture;
};

/// One primitive in pixels, ready for the painter.
struct Bare {
  QPen pen;
  std::variant<QLineF, QRectF, QPointF> place;
  QString strText;
};

std::vector<Bare> BarePrimitives(const PictureBox &picture, qreal scale, qreal ascent) {
  std::vector<Bare> arr;
  for (const DrawPrimitive &primitive : picture.DisplayList()) {
    const QPointF from = QPointF(primitive.sngX1, primitive.sngY1) * scale;
    const QPointF to = QPointF(primitive.sngX2, primitive.sngY2) * scale;
    const Qt::PenStyle style = primitive.style == LineStyle::Dotted ? Qt::DotLine : Qt::SolidLine;
    const QPen pen(ToQColor(primitive.colour), 1, style);
    switch (primitive.kind) {
      case DrawPrimitive::Kind::Clear: break;
      case DrawPrimitive::Kind::Line: arr.push_back({pen, QLineF(from, to), {}}); break;
      case DrawPrimitive::Kind::Box: arr.push_back({pen, QRectF(from, to).normalized(), {}}); break;
      case DrawPrimitive::Kind::Text:
        arr.push_back({pen, from + QPointF(0, ascent), QString::fromStdString(primitive.strText)});
        break;
    }
  }
  return arr;
}

void Paint(QPainter &painter, const Bare &bare) {
  if (painter.pen() != bare.pen) painter.setPen(bare.pen);
  if (const auto *line = std::get_if<QLineF>(&bare.place)) painter.drawLine(*line);
  if (const auto *box = std::get_if<QRectF>(&bare.place)) painter.fillRect(*box, bare.pen.color());
  if (const auto *point = std::get_if<QPointF>(&bare.place)) painter.drawText(*point, bare.strText);
}

void Register(const std::string &strName, Editor &editor) {
  PictureBox &picture = *editor.picture;
  benchmark::RegisterBenchmark((strName + "Bare").c_str(), [&picture](benchmark::State &state) {
    QImage image(picture.size(), QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(picture.font());
    const auto arr = BarePrimitives(picture, image.width() / static_cast<qreal>(picture.ScaleWidth()),
                                    painter.fontMetrics().ascent());
    for (auto _ : state) {
      painter.fillRect(image.rect(), Qt::black);
      for (const Bare &bare : arr) Paint(painter, bare);
    }
  })->Repetitions(Repetitions);
  benchmark::RegisterBenchmark(strName.c_str(), [&editor](benchmark::State &state) {
    PictureBox &surface = *editor.picture;
    QImage image(surface.size(), QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(surface.font());
    for (auto _ : state) {
      BitPattern::Private::Of(editor).RedrawPattern();
      painter.fillRect(image.rect(), Qt::black);
      PaintDisplayList(painter, surface.DisplayList(), image.rect(),
                       QSizeF(surface.ScaleWidth(), surface.ScaleHeight()));
    }
  })->Repetitions(Repetitions);
}

}  // namespace

int main(int argc, char **argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  SilentHost host;
  SetHost(&host);
  {
    Editor shortPattern(100), longPattern(MaxPatternLength), digits(MaxPatternLength);
    digits.findChild<CommandButton *>(QStringLiteral("cmdNumOrGraph"))->click();
    Register("Redraw", longPattern);
    Register("RedrawDigits", digits);
    Register("RedrawShort", shortPattern);
    const int result = bench::RunWithBounds(argc, argv,
                                            {{"Redraw", "RedrawBare", 1.5, 0},
                                             {"RedrawDigits", "RedrawDigitsBare", 1.5, 0},
                                             {"RedrawShort", "RedrawShortBare", 1.5, 0},
                                             {"Redraw", "RedrawShort", 1.2, 0}});
    SetHost(nullptr);
    return result;
  }
}
