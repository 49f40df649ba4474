#include <gmock/gmock.h>

#include <QMouseEvent>
#include <utility>

#include "PaintingFixture.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(Painting, ASessionStartIsSeenStepByStepBeforeEachCallOfTheDriver) {
  std::vector<std::string> arrSeen;
  Watch(arrSeen);
  session.Open();
  session.driver.OnTrace = {};
  EXPECT_GT(intCalls, 100);
  EXPECT_THAT(arrSeen, ElementsAre("selected, Offline, dark, busy",
                                   // The options are read by a command, which takes its hourglass away.
                                   "selected, Offline, dark", "selected ticked, Online with Alpha (Alpha), dark, busy",
                                   "selected ticked, Online with Alpha (Alpha), dark"));
}

TEST_F(Painting, TheHighlightsGoOffPageByPageWhileADownloadRuns) {
  session.Open();
  for (const TabNumEnum ePage : {ePageMode, ePageTiming, ePageLevels, ePageLimits, ePageTrigLev}) {
    session.ShowPage(ePage);
    session.panel->SetTabState(ePageNeedsDownloading, eAllPages);
    QCoreApplication::processEvents();
    int intLit = 0, intDark = 0;
    bool fRelit = false;
    session.driver.OnTrace = [&](const std::string &strCall) {
      EXPECT_EQ(highlight.Painted(), highlight.Written()) << strCall;
      if (highlight.Painted() == "lit") {
        ++intLit;
        fRelit = intDark > 0;
      } else {
        ++intDark;
      }
    };
    session.Click("cmdDownload");
    session.driver.OnTrace = {};
    EXPECT_GT(intLit, 0) << ePage;
    EXPECT_GT(intDark, 0) << ePage << ": off before the pages behind it are read";
    EXPECT_FALSE(fRelit) << ePage;
  }
}

TEST_F(Painting, NothingOfTheHostsRunsWhileADriverCallIsPrepared) {
  session.Open();
  bool fRan = false, fRanWithin = false;
  session.driver.OnTrace = [&, fPosted = false](const std::string &) mutable {
    if (!std::exchange(fPosted, true))
      QMetaObject::invokeMethod(
          session.panel.get(), [&] { fRan = true; }, Qt::QueuedConnection);
    fRanWithin = fRanWithin || fRan;
  };
  session.Click("cmdDownload");
  session.driver.OnTrace = {};
  EXPECT_FALSE(fRanWithin);
  QCoreApplication::processEvents();
  EXPECT_TRUE(fRan);
}

/// A click and a key that wait to be served.
void PostInput(QWidget &button, QWidget &text) {
  const QPointF place = button.rect().center();
  const QPointF global = button.mapToGlobal(place);
  for (const auto eType : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    QCoreApplication::postEvent(
        &button, new QMouseEvent(eType, place, global, Qt::LeftButton,
                                 eType == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier));
  QCoreApplication::postEvent(&text, new QKeyEvent(QEvent::KeyPress, Qt::Key_7, Qt::NoModifier, QStringLiteral("7")));
}

TEST_F(Painting, ClicksAndKeysMadeWhileTheDriverWorksAreDropped) {
  session.Open();
  session.ShowPage(ePageLimits);
  auto &text = *session.Field("esLimitHighVoltage(0)").findChild<QLineEdit *>();
  int intErrorsAsked = 0;
  session.driver.OnTrace = [&, fPosted = false](const std::string &strCall) mutable {
    if (!std::exchange(fPosted, true)) PostInput(session.Get<QWidget>("cmdCheckErrors"), text);
    if (strCall.find("GetErrors") != std::string::npos) ++intErrorsAsked;
  };
  session.Click("cmdDownload");
  QCoreApplication::processEvents();
  session.driver.OnTrace = {};
  EXPECT_EQ(intErrorsAsked, 0);
  EXPECT_THAT(host.arrBoxes, IsEmpty());
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);

  // What is made afterwards counts.
  PostInput(session.Get<QWidget>("cmdCheckErrors"), text);
  QCoreApplication::processEvents();
  EXPECT_THAT(host.arrBoxes, ElementsAre("No Instrument Errors"));
}

}  // namespace
}  // namespace tarvik::test
