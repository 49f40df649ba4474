#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/OptionButton.h"

namespace tarvik::test {
namespace {

/// A panel as large as it wants to be at its zoom.
class Zoom : public testing::Test {
 protected:
  void ZoomTo(Long lngPercent) {
    session.panel->SetZoom(lngPercent);
    session.panel->resize(session.panel->sizeHint());
    QCoreApplication::sendPostedEvents();
  }

  QRect PlaceOf(const char *strName) const {
    const auto &control = session->Get<QWidget>(strName);
    return {control.mapTo(session.panel.get(), QPoint()), control.size()};
  }

  /// Rows that differ from the background within the left half of what stands before the caption.
  int IndicatorHeight(const char *strName) const {
    const QImage picture = session->Get<QWidget>(strName).grab().toImage();
    const QRgb background = picture.pixel(picture.width() - 1, 0);
    int intRows = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < 13; ++x)
        if (picture.pixel(x, y) != background) {
          ++intRows;
          break;
        }
    return intRows;
  }

  /// The smallest box around everything that the panel shows.
  QRect Drawn() const { return PlaceOf("tabMain") | PlaceOf("cmdDownload") | PlaceOf("cmdCheckWarnings"); }

  SimulatorSession session;
};

TEST_F(Zoom, StartsAtAHundredPercent) { EXPECT_EQ(session.panel->Zoom(), 100); }

TEST_F(Zoom, TwiceAsLargeMakesEverythingTwiceAsLarge) {
  const QSize before = session.panel->sizeHint();
  const QRect upload = PlaceOf("cmdUpload");
  const qreal dblFont = session->Get<QWidget>("cmdUpload").font().pointSizeF();
  ZoomTo(200);
  EXPECT_EQ(session.panel->Zoom(), 200);
  EXPECT_NEAR(session.panel->sizeHint().width(), 2 * before.width(), before.width() * 0.1);
  EXPECT_NEAR(PlaceOf("cmdUpload").width(), 2 * upload.width(), upload.width() * 0.1);
  EXPECT_NEAR(PlaceOf("cmdUpload").left(), 2 * upload.left(), upload.left() * 0.1);
  EXPECT_DOUBLE_EQ(session->Get<QWidget>("cmdUpload").font().pointSizeF(), 2 * dblFont);
  EXPECT_DOUBLE_EQ(session->Get<QWidget>("esWidth(0)").font().pointSizeF(), 2 * dblFont);
}

TEST_F(Zoom, CirclesAndBoxesGrowWithTheirCaptions) {
  for (const auto &[ePage, strName] :
       {std::pair{ePageMode, "optTriggerMode(0)"}, std::pair{ePageConfig, "chkAutoDownload"}}) {
    ZoomTo(100);
    session->ShowPage(ePage);
    const int intBefore = IndicatorHeight(strName);
    ASSERT_GT(intBefore, 10) << strName;
    ZoomTo(200);
    EXPECT_NEAR(IndicatorHeight(strName), 2 * intBefore, 2) << strName;
  }
}

TEST_F(Zoom, ALargeOptionIsChosenAtTheEdgeOfItsCircle) {
  ZoomTo(300);
  session->ShowPage(ePageMode);
  auto &option = session->Get<OptionButton>("optTriggerMode(1)");
  QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(36, option.height() / 2));
  EXPECT_TRUE(option.Value());
}

TEST_F(Zoom, AHundredPercentIsTheOldPlaceAgain) {
  const QSize size = session.panel->sizeHint();
  const QRect upload = PlaceOf("cmdUpload"), width = PlaceOf("esWidth(0)");
  ZoomTo(175);
  ZoomTo(100);
  EXPECT_EQ(session.panel->sizeHint(), size);
  EXPECT_EQ(PlaceOf("cmdUpload"), upload);
  EXPECT_EQ(PlaceOf("esWidth(0)"), width);
}

TEST_F(Zoom, MultipliesWithTheFontOfTheHostWhicheverComesFirst) {
  QFont large = session.panel->font();
  const qreal dblFont = large.pointSizeF();
  large.setPointSizeF(1.5 * dblFont);
  ZoomTo(200);
  session.panel->setFont(large);
  EXPECT_DOUBLE_EQ(session->Get<QWidget>("cmdUpload").font().pointSizeF(), 3 * dblFont);
  EXPECT_DOUBLE_EQ(session.panel->font().pointSizeF(), 1.5 * dblFont) << "the panel's own font is the host's";
  ZoomTo(100);
  EXPECT_DOUBLE_EQ(session->Get<QWidget>("cmdUpload").font().pointSizeF(), 1.5 * dblFont);
}

TEST_F(Zoom, AFontInPixelsIsZoomedToo) {
  QFont font = session.panel->font();
  font.setPixelSize(12);
  session.panel->setFont(font);
  ZoomTo(150);
  EXPECT_EQ(session->Get<QWidget>("cmdUpload").font().pixelSize(), 18);
}

TEST_F(Zoom, APercentageOutOfRangeIsRefusedAndChangesNothing) {
  ZoomTo(150);
  const QSize size = session.panel->sizeHint();
  for (const Long lngWrong : {-100, 0, 49, 401, 2147483647}) {
    try {
      session.panel->SetZoom(lngWrong);
      ADD_FAILURE() << lngWrong << " was taken";
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), 380) << lngWrong;
      EXPECT_EQ(error.Description(), "A zoom is 50 to 400 percent, not " + std::to_string(lngWrong));
    }
    EXPECT_EQ(session.panel->Zoom(), 150);
    EXPECT_EQ(session.panel->sizeHint(), size);
  }
  for (const Long lngBound : {50, 400}) {
    ZoomTo(lngBound);
    EXPECT_EQ(session.panel->Zoom(), lngBound);
  }
}

TEST_F(Zoom, KeepsSessionMarksAndWhatIsBeingTyped) {
  session.Open("VP-210");
  session->ShowPage(ePageTiming);
  auto &text = *session->Field("esWidth(0)").findChild<QLineEdit *>();
  text.setFocus();
  text.selectAll();
  QTest::keyClicks(&text, QStringLiteral("25"));
  ASSERT_EQ(text.text(), "25");
  ZoomTo(150);
  EXPECT_EQ(text.text(), "25");
  EXPECT_TRUE(text.hasFocus());
  EXPECT_TRUE(session.Instr().IsOnline(True));
}

TEST_F(Zoom, TheZoomThatFitsIsThatOfTheLargestPanelWithRoom) {
  for (const QSize room : {QSize(700, 560), QSize(1280, 960), QSize(1920, 1000), QSize(1000, 2000)}) {
    const Long lngZoom = session.panel->ZoomToFit(room);
    ZoomTo(lngZoom);
    const QSize size = session.panel->sizeHint();
    EXPECT_LE(size.width(), room.width());
    EXPECT_LE(size.height(), room.height());
    Long lngNext = lngZoom;
    do ZoomTo(++lngNext);
    while (session.panel->sizeHint() == size);
    const QSize next = session.panel->sizeHint();
    EXPECT_TRUE(next.width() > room.width() || next.height() > room.height()) << lngZoom;
  }
}

TEST_F(Zoom, ThePlaceOfThePanelAtAZoomLeadsBackToThatZoom) {
  const QSize size = session.panel->sizeHint();
  EXPECT_EQ(session.panel->ZoomToFit(size), 100) << "though a font that is a little larger has lines as high";
  ZoomTo(200);
  EXPECT_NEAR(session.panel->ZoomToFit(session.panel->sizeHint()), 200, 4);
}

TEST_F(Zoom, WhatFitsNowhereGetsTheBoundsOfTheZoom) {
  EXPECT_EQ(session.panel->ZoomToFit(QSize(10, 10)), 50);
  EXPECT_EQ(session.panel->ZoomToFit(QSize()), 50);
  EXPECT_EQ(session.panel->ZoomToFit(QSize(100000, 100000)), 400);
}

TEST_F(Zoom, RoomThatIsLeftLiesEvenlyAroundThePanel) {
  session.panel->resize(session.panel->sizeHint() + QSize(300, 200));
  const QRect tight = [&] {
    const QRect drawn = Drawn();
    session.panel->resize(session.panel->sizeHint());
    return QRect(drawn.topLeft() - Drawn().topLeft(), drawn.size());
  }();
  EXPECT_EQ(tight.topLeft(), QPoint(150, 100));
}

TEST_F(Zoom, APanelThatIsCutOffShowsItsUpperLeftCorner) {
  const QRect before = Drawn();
  session.panel->resize(session.panel->sizeHint() / 2);
  EXPECT_EQ(Drawn(), before);
}

TEST_F(Zoom, HoldsForAPanelThatWasNotShownYet) {
  TarvikGUI panel;
  const QSize before = panel.sizeHint();
  panel.SetZoom(200);
  EXPECT_NEAR(panel.sizeHint().width(), 2 * before.width(), before.width() * 0.1);
  EXPECT_EQ(panel.minimumSizeHint(), panel.sizeHint());
}

TEST_F(Zoom, TellsTheLayoutOfItsHost) {
  QWidget host;
  auto *layout = new QVBoxLayout(&host);
  auto *panel = new TarvikGUI;
  layout->addWidget(panel);
  const int intBefore = host.sizeHint().width();
  panel->SetZoom(200);
  EXPECT_GT(host.sizeHint().width(), 1.8 * intBefore);
}

}  // namespace
}  // namespace tarvik::test
