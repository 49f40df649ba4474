#include <gmock/gmock.h>

#include <QImage>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <map>
#include <thread>

#include "PaintingFixture.h"
#include "PanelUser.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;

/// Milliseconds that anything may take on a busy machine.
constexpr int Patience = 30000;

/// A panel whose driver takes 40 ms for each call. At each call the screen itself is read back, so that what was
/// painted but not sent to the screen does not count.
class SlowDriver : public Painting {
 protected:
  SlowDriver() {
    // Nothing may look different because the pointer is over it.
    QCursor::setPos(session.panel->screen()->geometry().bottomRight());
    EXPECT_TRUE(QTest::qWaitForWindowExposed(session.panel.get(), Patience));
    WaitForTheList();
  }
  void WaitForTheList() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return session.Get<ListView>("lvwInstruments").Count() == 1; }, Patience));
  }

  /// What is seen of one part of the panel, call by call.
  struct Seen {
    std::vector<std::string> arrStates;  ///< each change
    std::map<std::string, QImage> pictures;
    int intChangesWithoutPaint = 0, intPaintsBefore = 0;
  };

  void WatchScreen() {
    session.driver.OnTrace = [this](const std::string &strCall) {
      std::this_thread::sleep_for(std::chrono::milliseconds(40));
      ++intCalls;
      auto &list = session.Get<ListView>("lvwInstruments");
      Look(rows, row, *list.viewport(), list.viewport()->rect(), strCall);
      auto &box = session.Get<DisplayBox>("txtStatus");
      Look(statuses, status, *box.viewport(), box.viewport()->rect(), strCall);
      // What looks out from under the button, which may be drawn as pressed.
      auto &lamp = session.Get<Highlight>("picDownloadHighlight");
      Look(lamps, highlight, lamp, QRect(20, lamp.height() - 2, 40, 2), strCall);
      pointers.push_back(IsBusy());
    };
  }

  void Look(Seen &seen, const Shown &shown, const QWidget &widget, const QRect &part, const std::string &strCall) {
    const std::string strState = shown.Written();
    EXPECT_EQ(shown.Painted(), strState) << strCall;
    const QPoint place = widget.mapTo(session.panel.get(), part.topLeft());
    const QImage picture = session.panel->screen()
                               ->grabWindow(session.panel->winId(), place.x(), place.y(), part.width(), part.height())
                               .toImage();
    ASSERT_FALSE(picture.isNull());
    const auto [known, fNew] = seen.pictures.try_emplace(strState, picture);
    EXPECT_EQ(known->second, picture) << "\"" << strState << "\" at " << strCall;
    if (!seen.arrStates.empty() && seen.arrStates.back() == strState) return;
    if (!seen.arrStates.empty() && shown.Paints() == seen.intPaintsBefore) ++seen.intChangesWithoutPaint;
    seen.intPaintsBefore = shown.Paints();
    seen.arrStates.push_back(strState);
  }

  static void ExpectAPictureForEachState(const Seen &seen) {
    EXPECT_EQ(seen.intChangesWithoutPaint, 0);
    for (const auto &[strOne, one] : seen.pictures)
      for (const auto &[strOther, other] : seen.pictures)
        if (strOne < strOther) {
          EXPECT_NE(one, other) << "\"" << strOne << "\" and \"" << strOther << "\"";
        }
  }

  Seen rows, statuses, lamps;
  std::vector<bool> pointers;
};

TEST_F(SlowDriver, ShowsEachStepFromTheStartOfThePanelToTheOpenSession) {
  session.panel->hide();
  status.ForgetHistory();
  WatchScreen();
  session.panel->show();
  ASSERT_TRUE(QTest::qWaitFor([this] { return intCalls > 0; }, Patience)) << "it started";
  PanelUser(*session.panel).Tick(0);
  session.driver.OnTrace = {};
  EXPECT_GT(intCalls, 100);
  EXPECT_THAT(status.History(), ElementsAre("Offline", "Local Connection", "Offline", "Online with Alpha (Alpha)"));
  EXPECT_THAT(statuses.arrStates, ElementsAre("Offline", "Online with Alpha (Alpha)"));
  EXPECT_THAT(rows.arrStates, ElementsAre("", "none", "", "selected", "selected ticked"));
  ExpectAPictureForEachState(statuses);
  ExpectAPictureForEachState(rows);
}

TEST_F(SlowDriver, ShowsInADownloadHowTheHighlightGoesOffAsSoonAsThePageInFrontIsRead) {
  session.Open();
  session.ShowPage(ePageLevels);
  session.panel->SetTabState(ePageNeedsDownloading, eAllPages);
  QCoreApplication::processEvents();
  WatchScreen();
  session.Click("cmdDownload");
  session.driver.OnTrace = {};
  EXPECT_GT(intCalls, 50);
  EXPECT_THAT(lamps.arrStates, ElementsAre("lit", "dark"));
  EXPECT_THAT(rows.arrStates, ElementsAre("selected ticked"));
  EXPECT_THAT(statuses.arrStates, ElementsAre("Online with Alpha (Alpha)"));
  EXPECT_TRUE(pointers.front());
  EXPECT_FALSE(pointers.back()) << "the warnings are asked for when everything is read";
  EXPECT_TRUE(std::is_sorted(pointers.rbegin(), pointers.rend()));
  ExpectAPictureForEachState(lamps);
}

}  // namespace
}  // namespace tarvik::test
