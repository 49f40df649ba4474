#include <gmock/gmock.h>

#include <QScrollArea>
#include <functional>
#include <utility>

#include "SimulatorSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::StartsWith;

/// Counts the events of a type that a widget gets.
class EventCount : public QObject {
 public:
  EventCount(QWidget &widget, QEvent::Type eType, int &intCount) : m_eType(eType), m_intCount(intCount) {
    widget.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == m_eType) ++m_intCount;
    return false;
  }

 private:
  QEvent::Type m_eType;
  int &m_intCount;
};

/// Shows a panel in its host's window and lets the loop turn once before the window's exposure, with what the host
/// does then.
void ShowAndDisturb(QWidget &window, const std::function<void()> &disturb) {
  window.show();
  QCoreApplication::sendPostedEvents();
  disturb();
  LetPanelsStart();
}

TEST(FirstFrame, TheFirstFrameIsPaintedBeforeAnythingIsAsked) {
  SimulatorSession session;
  session.NewPanel();
  session.host.TakeLines();
  int intFrames = 0;
  const EventCount frames(*session.panel, QEvent::Paint, intFrames);
  session.panel->show();
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(intFrames, 0);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << "no frame, no start";
  QCoreApplication::processEvents();
  EXPECT_EQ(intFrames, 1);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << "the frame stands, the start waits behind it";
  QCoreApplication::sendPostedEvents();
  EXPECT_THAT(session.host.TakeLines(), Contains(StartsWith("get Config/Upload")));
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(FirstFrame, APanelThatNobodyPaintsStartsAllTheSame) {
  const std::pair<const char *, std::function<void(QWidget &)>> ways[] = {
      {"no updates", [](QWidget &panel) { panel.setUpdatesEnabled(false); }},
      {"minimized", [](QWidget &panel) { panel.setWindowState(Qt::WindowMinimized); }},
      {"not on the screen", [](QWidget &panel) { panel.setAttribute(Qt::WA_DontShowOnScreen); }},
  };
  for (const auto &[strWay, prevent] : ways) {
    SimulatorSession session;
    session.NewPanel();
    prevent(*session.panel);
    session.Show();
    EXPECT_EQ(session->Instruments().Count(), 5) << strWay;
  }
}

TEST(FirstFrame, AMinimizedWindowIsNotWaitedFor) {
  SimulatorSession session;
  session.NewPanel();
  session.panel->showMinimized();
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(FirstFrame, APanelWhoseFirstFrameWasPreventedStartsAllTheSame) {
  const std::pair<const char *, std::function<void(QScrollArea &, QWidget &)>> ways[] = {
      {"scrolled away", [](QScrollArea &area, QWidget &) { area.ensureVisible(1999, 1999); }},
      {"covered",
       [](QScrollArea &area, QWidget &) {
         auto *cover = new QWidget(area.widget());
         cover->setAutoFillBackground(true);
         cover->resize(2000, 2000);
         cover->show();
       }},
      {"no updates", [](QScrollArea &, QWidget &panel) { panel.setUpdatesEnabled(false); }},
      {"no updates of the window", [](QScrollArea &area, QWidget &) { area.setUpdatesEnabled(false); }},
  };
  for (const auto &[strWay, prevent] : ways) {
    SimulatorSession session;
    session.NewPanel();
    int intFrames = 0;
    const EventCount frames(*session.panel, QEvent::Paint, intFrames);
    QScrollArea area;
    area.resize(700, 500);
    auto *contents = new QWidget;
    contents->resize(2000, 2000);
    session.panel->setParent(contents);
    area.setWidget(contents);
    ShowAndDisturb(area, [&, &prevent = prevent] { prevent(area, *session.panel); });
    EXPECT_EQ(intFrames, 0) << strWay;
    EXPECT_EQ(session->Instruments().Count(), 5) << strWay;
    session.panel->setParent(nullptr);
  }
}

TEST(FirstFrame, APictureTakenBeforeTheShowIsNoFirstFrame) {
  SimulatorSession session;
  session.NewPanel();
  session.panel->grab();
  session.host.TakeLines();
  session.panel->show();
  QCoreApplication::sendPostedEvents();
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

TEST(FirstFrame, APanelThatComesToAStandingWindowIsPaintedFirst) {
  SimulatorSession session;
  session.NewPanel();
  QWidget window;
  window.resize(session.panel->size());
  window.show();
  QCoreApplication::processEvents();
  session.panel->setParent(&window);
  session.host.TakeLines();
  int intFrames = 0;
  const EventCount frames(*session.panel, QEvent::Paint, intFrames);
  session.host.OnEntry = [&](const HostEntry &) { EXPECT_EQ(intFrames, 1); };
  session.panel->show();
  QCoreApplication::sendPostedEvents();
  session.host.OnEntry = {};
  EXPECT_EQ(session->Instruments().Count(), 5);
  session.panel->setParent(nullptr);
}

TEST(FirstFrame, APanelOutOfSightInItsHostsWindowStartsAllTheSame) {
  SimulatorSession session;
  session.NewPanel();
  QScrollArea area;
  area.resize(100, 100);
  auto *contents = new QWidget;
  contents->resize(2000, 2000);
  session.panel->setParent(contents);
  session.panel->move(1000, 1000);
  area.setWidget(contents);
  area.show();
  LetPanelsStart();
  EXPECT_EQ(session->Instruments().Count(), 5);
  session.panel->setParent(nullptr);
}

TEST(FirstFrame, APanelHiddenBeforeItsFirstFrameStartsNothing) {
  SimulatorSession session;
  session.NewPanel();
  session.host.TakeLines();
  session.panel->show();
  session.panel->hide();
  LetPanelsStart();
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
