#include <gmock/gmock.h>

#include <QCursor>
#include <QMouseEvent>
#include <functional>
#include <utility>

#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "platform/Highlight.h"
#include "platform/PlainControls.h"
#include "platform/QtHost.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The toolkit's host with the boxes answered at once and settings that nobody keeps.
class PaintingHost : public QtHost {
 public:
  PaintingHost() : m_before(SetHost(this)) {}
  ~PaintingHost() override { SetHost(m_before); }
  PaintingHost(const PaintingHost &) = delete;
  PaintingHost &operator=(const PaintingHost &) = delete;

  BoxAnswer MsgBox(const std::string &strText, BoxIcon, BoxButtons buttons, const std::string &) override {
    arrBoxes.push_back(strText);
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
  }
  std::string GetSetting(const std::string &, const std::string &, const std::string &,
                         const std::string &strDefault) override {
    return strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}

  std::vector<std::string> arrBoxes;

 private:
  Host *m_before;
};

/// What a widget shows, as written now and as painted last.
class Shown : public QObject {
 public:
  Shown(QWidget &widget, std::function<std::string()> written)
      : m_written(std::move(written)), m_strPainted(m_written()) {
    widget.installEventFilter(this);
  }
  std::string Written() const { return m_written(); }
  const std::string &Painted() const { return m_strPainted; }

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::Paint) m_strPainted = m_written();
    return false;
  }

 private:
  std::function<std::string()> m_written;
  std::string m_strPainted;
};

bool IsBusy() {
  const QCursor *cursor = QGuiApplication::overrideCursor();
  return cursor && cursor->shape() == Qt::WaitCursor;
}

/// A panel on the toolkit's own host, watched at each call of its driver.
class Painting : public testing::Test {
 protected:
  Painting() {
    session.driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
    QCoreApplication::processEvents();
  }
  std::string StateOfRow() const {
    auto &list = session.Get<ListView>("lvwInstruments");
    if (list.Count() == 0) return "none";
    return std::string(list.Item(0)->Selected() ? "selected" : "") + (list.Item(0)->Checked() ? " ticked" : "");
  }
  /// Collects each change of what is painted, as it stands when the driver is called.
  void Watch(std::vector<std::string> &arrSeen) {
    session.driver.OnTrace = [&](const std::string &strCall) {
      ++intCalls;
      EXPECT_EQ(row.Painted(), row.Written()) << strCall;
      EXPECT_EQ(status.Painted(), status.Written()) << strCall;
      EXPECT_EQ(highlight.Painted(), highlight.Written()) << strCall;
      const std::string strSeen =
          row.Painted() + ", " + status.Painted() + ", " + highlight.Painted() + (IsBusy() ? ", busy" : "");
      if (arrSeen.empty() || arrSeen.back() != strSeen) arrSeen.push_back(strSeen);
    };
  }

  PanelSession session{{.fAutoDownload = true, .fOpen = false}};
  PaintingHost host;
  int intCalls = 0;
  Shown row{*session.Get<ListView>("lvwInstruments").viewport(), [this] { return StateOfRow(); }};
  Shown status{*session.Get<DisplayBox>("txtStatus").viewport(),
               [this] { return session.Get<DisplayBox>("txtStatus").Text(); }};
  Shown highlight{session.Get<Highlight>("picDownloadHighlight"), [this] {
                    return std::string(session.Get<Highlight>("picDownloadHighlight").Visible() ? "lit" : "dark");
                  }};
};

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
