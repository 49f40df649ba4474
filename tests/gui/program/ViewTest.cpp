#include <QKeySequence>
#include <QScrollBar>

#include "PanelArea.h"
#include "ProgramFixture.h"

namespace tarvik::test {
namespace {

using testing::Contains;

class View : public Program {
 protected:
  Long Zoom() const { return window->Panel().Zoom(); }
  PanelArea &Area() const { return Get<PanelArea>("PanelArea"); }
  void Resize(const QSize &size) const {
    window->resize(size);
    QCoreApplication::sendPostedEvents();
  }
  std::vector<std::string> Keys(const char *strAction) const {
    std::vector<std::string> arrKeys;
    for (const QKeySequence &key : window->findChild<QAction *>(QString::fromLatin1(strAction))->shortcuts())
      arrKeys.push_back(key.toString(QKeySequence::PortableText).toStdString());
    return arrKeys;
  }
};

TEST_F(View, AFirstStartShowsThePanelWholeAtItsOwnSize) {
  Start();
  EXPECT_TRUE(Checked("actionFit"));
  EXPECT_EQ(Area().viewport()->size(), window->Panel().size());
  EXPECT_EQ(Zoom(), 100);
  EXPECT_FALSE(Area().horizontalScrollBar()->isVisible());
  EXPECT_FALSE(Area().verticalScrollBar()->isVisible());
}

TEST_F(View, APanelThatFitsGrowsAndShrinksWithTheWindow) {
  Start();
  const QSize before = window->size();
  Resize(2 * before);
  EXPECT_NEAR(Zoom(), 200, 10);
  EXPECT_FALSE(Area().verticalScrollBar()->isVisible());
  Resize(before * 0.7);
  EXPECT_NEAR(Zoom(), 68, 6);
  EXPECT_FALSE(Area().verticalScrollBar()->isVisible());
}

TEST_F(View, RoomBesideThePanelLiesEvenlyOnBothSides) {
  Start();
  Resize({window->width() * 3, window->height()});
  const QWidget &tabs = Get<QWidget>("tabMain");
  const int left = tabs.mapTo(window.get(), QPoint()).x();
  const int right = window->width() - left - tabs.width();
  EXPECT_GT(left, window->width() / 5);
  EXPECT_NEAR(left, right, 20);
}

TEST_F(View, LargerAndSmallerGoThroughTheUsualSizesAndTheWindowFollows) {
  Start();
  const int intWidth = window->width();
  Take("actionLarger");
  EXPECT_FALSE(Checked("actionFit"));
  EXPECT_EQ(Zoom(), 120);
  EXPECT_NEAR(window->width(), 1.2 * intWidth, 0.05 * intWidth);
  Take("actionLarger");
  EXPECT_EQ(Zoom(), 140);
  for (const Long lngZoom : {120, 100, 90, 75, 60, 50, 50}) {
    Take("actionSmaller");
    EXPECT_EQ(Zoom(), lngZoom);
  }
  for (int i = 0; i < 20; ++i) Take("actionLarger");
  EXPECT_EQ(Zoom(), 400);
}

TEST_F(View, ASizeOfItsOwnIsScrolledWhereTheWindowIsSmaller) {
  Start();
  Take("actionLarger");
  Resize(window->size() * 0.6);
  EXPECT_EQ(Zoom(), 120);
  EXPECT_TRUE(Area().verticalScrollBar()->isVisible());
  Take("actionFit");
  EXPECT_LT(Zoom(), 100);
  EXPECT_FALSE(Area().verticalScrollBar()->isVisible());
}

TEST_F(View, TheSizeIsKeptForTheNextStart) {
  Start();
  Take("actionLarger");
  Take("actionLarger");
  Start();
  EXPECT_EQ(Zoom(), 140);
  EXPECT_FALSE(Checked("actionFit"));
  Take("actionFit");
  Start();
  EXPECT_TRUE(Checked("actionFit"));
}

TEST_F(View, ASizeThatNobodyCanHaveStoredCountsAsFit) {
  for (const char *strStored : {"7", "-100", "100000", "99999999999999", "large"}) {
    host.settings[{"View", "Zoom"}] = strStored;
    Start();
    EXPECT_TRUE(Checked("actionFit")) << strStored;
    EXPECT_EQ(Zoom(), 100) << strStored;
  }
}

TEST_F(View, TypingReplacesTheNumberInAllFieldsAndIsKept) {
  Start();
  EXPECT_FALSE(Checked("actionTyping"));
  EXPECT_FALSE(window->Panel().TypingReplacesNumber());
  Take("actionTyping");
  EXPECT_TRUE(window->Panel().TypingReplacesNumber());
  Start();
  EXPECT_TRUE(Checked("actionTyping"));
  Get<QTabWidget>("tabMain").setCurrentIndex(ePageTiming);
  auto &text = *Get<QWidget>("esWidth(0)").findChild<QLineEdit *>();
  text.setFocus();
  QTest::keyClicks(&text, QStringLiteral("2.5"));
  EXPECT_EQ(text.text(), "2.5");
  QTest::keyClick(&text, Qt::Key_Escape);
  Take("actionTyping");
  QTest::keyClicks(&text, QStringLiteral("2.5"));
  EXPECT_NE(text.text(), "2.5") << "off again: the digit at the cursor is replaced";
}

TEST_F(View, TheKeysHoldWhateverTheDesktop) {
  Start();
  EXPECT_THAT(Keys("actionQuit"), Contains("Ctrl+Q"));
  EXPECT_THAT(Keys("actionLarger"), testing::IsSupersetOf({"Ctrl++", "Ctrl+="}));
  EXPECT_THAT(Keys("actionSmaller"), Contains("Ctrl+-"));
  EXPECT_THAT(Keys("actionFit"), Contains("Ctrl+0"));
  EXPECT_THAT(Keys("actionAllOutputsOff"), Contains("F12"));
}

}  // namespace
}  // namespace tarvik::test
