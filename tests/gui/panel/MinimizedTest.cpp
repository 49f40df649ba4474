#include <gmock/gmock.h>

#include <QVBoxLayout>

#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "panel/Panel.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts the events by which the window system tells a widget that it is shown or hidden.
class ToldByTheSystem : public QObject {
 public:
  void WatchOver(QWidget &widget) { widget.installEventFilter(this); }
  int intShown = 0, intHidden = 0;

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->spontaneous() && event->type() == QEvent::Show) ++intShown;
    if (event->spontaneous() && event->type() == QEvent::Hide) ++intHidden;
    return false;
  }
};

/// A panel in its host's window with an open instrument and an entry that was not sent.
class Minimized : public testing::Test {
 protected:
  Minimized() {
    session.NewPanel();
    QVBoxLayout(&window).addWidget(session.panel.get());
    ShowAndStart(window);
    session.Open("VP-210");
    session->ShowPage(ePageTiming);
    session->Type("esPeriodOrFreq", "3ms");
    session.host.TakeLines();
    told.WatchOver(*session.panel);
  }
  ~Minimized() override { session.panel->setParent(nullptr); }
  void ExpectUndisturbed() {
    LetPanelsStart();
    EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << "nothing is saved, read or asked";
    EXPECT_TRUE(session.Instr().IsOnline(True));
    EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
    EXPECT_EQ(session->Field("esPeriodOrFreq").Value(), 3e-3);
    EXPECT_EQ(TarvikGUI::Panel::Of(*session.panel).state.meTabState[ePageTiming], ePageIsDirty);
    EXPECT_EQ(session->List("cboPllRefSource").ListCount(), 2) << "a second start would fill it again";
  }

  SimulatorSession session;
  QWidget window;
  ToldByTheSystem told;
};

TEST_F(Minimized, ARunningPanelKeepsItsSessionInTheTaskBarAndBackAgain) {
  for (int i = 1; i <= 2; ++i) {
    window.showMinimized();
    EXPECT_EQ(told.intHidden, i);
    ExpectUndisturbed();
    window.showNormal();
    EXPECT_EQ(told.intShown, i);
    ExpectUndisturbed();
  }
}

TEST_F(Minimized, MessagesReachThePanelInTheTaskBar) {
  window.showMinimized();
  LetPanelsStart();
  session.Instr().StatusMessage.Raise("told meanwhile");
  window.showNormal();
  EXPECT_EQ(session->Get<DisplayBox>("txtStatus").Text(), "told meanwhile");
}

TEST_F(Minimized, AHostThatHidesTheMinimizedWindowEndsTheSession) {
  window.showMinimized();
  window.hide();
  EXPECT_FALSE(session.Instr().IsOnline(True));
}

}  // namespace
}  // namespace tarvik::test
