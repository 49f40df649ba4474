#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QPainter>
#include <limits>

#include "WidgetEnvironment.h"
#include "platform/Highlight.h"
#include "platform/PictureBox.h"
#include "platform/Twips.h"

namespace tarvik::test {
namespace {

using Kind = DrawPrimitive::Kind;

constexpr Colour Red = 0x0000FF, Green = 0x00FF00, Blue = 0xFF0000;

TEST(PictureBoxTest, KeepsWhatWasDrawn) {
  PictureBox picture;
  picture.SetScale(1000, 500);
  picture.Cls();
  picture.SetForeColor(Red);
  picture.SetDrawStyle(LineStyle::Dotted);
  picture.Line(10, 20, 30, 40);
  picture.LineTo(50, 60);
  picture.FillBox(1, 2, 3, 4, Green);
  picture.SetCurrentX(100);
  picture.SetCurrentY(200);
  picture.Print("1");
  const auto &list = picture.DisplayList();
  ASSERT_EQ(list.size(), 5u);
  EXPECT_EQ(list[0].kind, Kind::Clear);
  EXPECT_EQ(list[1].kind, Kind::Line);
  EXPECT_EQ(list[1].colour, Red);
  EXPECT_EQ(list[1].style, LineStyle::Dotted);
  EXPECT_EQ(list[2].sngX1, 30);
  EXPECT_EQ(list[2].sngY2, 60);
  EXPECT_EQ(list[3].kind, Kind::Box);
  EXPECT_EQ(list[3].colour, Green);
  EXPECT_EQ(list[4].strText, "1");
  EXPECT_EQ(list[4].sngX1, 100);
  picture.Cls();
  EXPECT_EQ(picture.DisplayList().size(), 1u);
  EXPECT_EQ(picture.CurrentX(), 0);
}

TEST(PictureBoxTest, ALineGoesOnFromWhereTheLastOneOrBoxEnded) {
  PictureBox picture;
  picture.LineTo(10, 20);
  picture.FillBox(1, 2, 3, 4, Green);
  picture.LineTo(50, 60);
  const auto &list = picture.DisplayList();
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[0].sngX1, 0);
  EXPECT_EQ(list[0].sngY1, 0);
  EXPECT_EQ(list[2].sngX1, 3);
  EXPECT_EQ(list[2].sngY1, 4);
  picture.Cls();
  EXPECT_EQ(picture.CurrentX(), 0);
  EXPECT_EQ(picture.CurrentY(), 0);
}

TEST(PictureBoxTest, WithoutAScaleItsSizeIsInTwips) {
  PictureBox picture;
  picture.resize(150, 100);
  EXPECT_EQ(picture.ScaleWidth(), PixelsToTwips(picture, 150));
  EXPECT_EQ(picture.ScaleHeight(), PixelsToTwips(picture, 100));
}

TEST(PictureBoxTest, ACoordinateThatIsNoNumberIsAnOverflow) {
  PictureBox picture;
  for (const Single sngBad : {std::numeric_limits<Single>::quiet_NaN(), std::numeric_limits<Single>::infinity()}) {
    try {
      picture.Line(0, 0, sngBad, 0);
      FAIL();
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), ErrOverflow);
    }
  }
  EXPECT_TRUE(picture.DisplayList().empty());
}

QImage Painted(PictureBox &picture, qreal dblResolution) {
  QImage image((QSizeF(picture.size()) * dblResolution).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(dblResolution);
  image.fill(Qt::white);
  picture.render(&image);
  return image;
}

TEST(PictureBoxTest, TheListIsPaintedAtAnyResolution) {
  PictureBox picture;
  picture.resize(100, 50);
  picture.SetScale(1000, 500);
  picture.SetBackColor(0xFFFFFF);
  picture.Cls();
  picture.FillBox(500, 0, 1000, 500, Green);
  picture.FillBox(0, 250, 500, 500, Blue);
  for (const qreal dblResolution : {1.0, 2.0}) {
    const QImage image = Painted(picture, dblResolution);
    const auto at = [&](double dblX, double dblY) {
      return image.pixelColor(static_cast<int>(dblX * dblResolution), static_cast<int>(dblY * dblResolution));
    };
    EXPECT_EQ(image.width(), 100 * dblResolution);
    EXPECT_EQ(at(75, 10), QColor(0, 255, 0)) << dblResolution;
    EXPECT_EQ(at(25, 40), QColor(0, 0, 255)) << dblResolution;
    EXPECT_EQ(at(25, 10), QColor(255, 255, 255)) << dblResolution;
    EXPECT_EQ(at(51, 10), QColor(0, 255, 0)) << dblResolution;
    EXPECT_EQ(at(48, 10), QColor(255, 255, 255)) << dblResolution;
  }
}

TEST(PictureBoxTest, LinesAndTextsLeaveTheirMarks) {
  PictureBox picture;
  picture.resize(200, 100);
  picture.SetScale(2000, 1000);
  picture.SetBackColor(0xFFFFFF);
  picture.Cls();
  picture.SetForeColor(Red);
  picture.Line(0, 500, 2000, 500);
  picture.SetCurrentX(0);
  picture.SetCurrentY(0);
  picture.Print("8");
  for (const qreal dblResolution : {1.0, 2.0}) {
    const QImage image = Painted(picture, dblResolution);
    int intLine = 0, intText = 0;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = static_cast<int>(45 * dblResolution); y < 55 * dblResolution; ++y)
        if (image.pixelColor(x, y) != QColor(Qt::white)) ++intLine;
      for (int y = 0; y < 20 * dblResolution; ++y)
        if (image.pixelColor(x, y) != QColor(Qt::white)) ++intText;
    }
    EXPECT_GE(intLine, image.width() - 2);
    EXPECT_LE(intLine, image.width() * dblResolution) << "one pixel of the widget wide";
    EXPECT_GT(intText, 5);
  }
}

TEST(PictureBoxTest, ACoordinateFarOutsideIsPaintedWithoutHarm) {
  PictureBox picture;
  picture.resize(100, 50);
  picture.SetScale(1000, 500);
  picture.Cls();
  picture.Line(-1e30F, 250, 1e30F, 250);
  const QImage image = Painted(picture, 1);
  EXPECT_NE(image.pixelColor(50, 25), QColor(Qt::white));
}

TEST(PictureBoxTest, TextSizesComeFromTheMetricsPutIn) {
  PictureBox picture;
  picture.SetTextMetrics({[](const std::string &strText) { return static_cast<Single>(90 * strText.size()); },
                          [](const std::string &) { return Single{195}; }});
  EXPECT_EQ(picture.TextWidth("123"), 270);
  EXPECT_EQ(picture.TextHeight("123"), 195);
}

TEST(PictureBoxTest, ColoursOfTheAutomationWorldHaveRedFirst) {
  EXPECT_EQ(ToQColor(0x00C7D863), QColor(0x63, 0xD8, 0xC7));
  const QPalette colours = QGuiApplication::palette();
  EXPECT_EQ(ToQColor(SystemColour | 5), colours.color(QPalette::Base));
  EXPECT_EQ(ToQColor(SystemColour | 16), colours.color(QPalette::Dark));
  EXPECT_EQ(ToQColor(SystemColour | 21), colours.color(QPalette::Shadow));
  EXPECT_EQ(ToQColor(SystemColour | 15), colours.color(QPalette::Button));
}

TEST(HighlightTest, PaintsItsColourOnlyWhileItIsOn) {
  QWidget page;
  page.resize(100, 100);
  page.setAutoFillBackground(true);
  QPalette colours = page.palette();
  colours.setColor(QPalette::Window, Qt::white);
  page.setPalette(colours);
  Highlight highlight(&page);
  highlight.setGeometry(10, 10, 50, 50);
  highlight.SetBackColor(Red);
  const auto colour = [&] { return page.grab().toImage().pixelColor(30, 30); };
  EXPECT_TRUE(highlight.Visible());
  EXPECT_EQ(colour(), QColor(Qt::red));
  highlight.SetVisible(False);
  EXPECT_FALSE(highlight.Visible());
  EXPECT_EQ(colour(), QColor(Qt::white));
  highlight.SetVisible(True);
  highlight.SetBackColor(Blue);
  EXPECT_EQ(colour(), QColor(Qt::blue));
}

}  // namespace
}  // namespace tarvik::test
