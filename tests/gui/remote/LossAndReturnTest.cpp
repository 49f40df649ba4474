#include <gmock/gmock.h>

#include "DriverSettings.h"
#include "PanelSession.h"
#include "ServedRack.h"
#include "SimulatorSession.h"
#include "ToolkitBoxes.h"
#include "WidgetEnvironment.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/// The panel with real boxes over an instrument of a server process, which dies in the middle of a transfer.
class DeadServer : public testing::Test {
 protected:
  DeadServer() {
    session.NewPanel();
    boxes.emplace();
    session.host.arrInputAnswers = {rack.Url()};
    session.Show();
    session.Open("VP-210");
    session.panel->SetTabState(ePageIsDirty, eAllPages);
    boxes->OnDriverCall = [this] {
      // The transfer has done with the mode, and goes on to the timing.
      if (!m_fDead && StateOf(ePageMode) == ePageIsCurrent) {
        m_fDead = true;
        rack.Server().End(SIGKILL);
      }
    };
  }

  const PanelUser &User() const { return *session.user; }
  std::vector<std::string> Shown() const {
    std::vector<std::string> arrTexts;
    for (const auto &box : boxes->arrBoxes) arrTexts.push_back(box.strText);
    return arrTexts;
  }
  /// How often texts with this beginning stand in the list.
  Long Kept(const std::string &strPart) {
    Long lngCount = 0;
    for (const HostMessage &message : boxes->Messages().All())
      if (message.strText.starts_with(strPart)) lngCount += message.lngCount;
    return lngCount;
  }
  std::string Status() const { return User().Get<DisplayBox>("txtStatus").Text(); }
  TabStates StateOf(TabNumEnum ePage) const {
    return TarvikGUI::Panel::Of(*session.panel).state.meTabState[static_cast<std::size_t>(ePage)];
  }

  ServedRack rack;
  SimulatorSession session{{{"WorkWithBoxes", "1"}}, TestRack, rack.Url()};
  std::optional<ToolkitBoxes> boxes;

 private:
  bool m_fDead = false;
};

TEST_F(DeadServer, InTheMiddleOfAnUploadOfAllPagesCostsOneBox) {
  User().Click("cmdUpload");
  EXPECT_THAT(Shown(), ElementsAre(HasSubstr("has gone")));
  EXPECT_TRUE(boxes->arrBoxes[0].fListChosen);
  EXPECT_EQ(Kept("The driver server"), 4);
  EXPECT_EQ(User().Get<CommandButton>("cmdMessages").Caption(), "Messa&ges (3)");
}

TEST_F(DeadServer, InTheMiddleOfADownloadOfAllPagesCostsOneBox) {
  User().Click("cmdDownload");
  EXPECT_THAT(Shown(), SizeIs(1));
  // All pages but the last had been read ahead when the server died.
  EXPECT_EQ(Kept("The driver server"), 4);
}

TEST_F(DeadServer, EveryBoxComesWhereTheListIsRefused) {
  boxes->OnBox = [](QMessageBox &box) { box.checkBox()->setChecked(false); };
  User().Click("cmdUpload");
  EXPECT_THAT(Shown(), SizeIs(4));
}

TEST_F(DeadServer, TheButtonBesideTheStatusOpensTheListByItsKey) {
  User().Click("cmdUpload");
  session.panel->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(session.panel.get()));
  User().PressAccessKey(Qt::Key_G);
  EXPECT_NE(session.panel->findChild<QWidget *>(QStringLiteral("MessageWindow")), nullptr);
  EXPECT_EQ(User().Get<CommandButton>("cmdMessages").Caption(), "Messa&ges");
}

TEST_F(DeadServer, IsToldOnceInStatusAndListAndThePagesStayChanged) {
  User().Click("cmdUpload");
  EXPECT_THAT(Status(), AllOf(StartsWith("Connection lost: The driver server " + rack.Url() + " has gone"),
                              HasSubstr("Changes stay on the pages.")));
  User().Click("cmdUpload");
  User().Click("cmdDownload");
  EXPECT_EQ(Kept("Connection lost"), 1);
  // The mode had been sent when the server died.
  for (const TabNumEnum ePage : {ePageMode, ePageTiming, ePageLevels, ePagePattern})
    EXPECT_EQ(StateOf(ePage), ePageIsDirty) << ePage;
}

TEST_F(DeadServer, RefreshAndTheTickOpenAgainAndTheEditsAreKept) {
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "250ns");
  User().Click("cmdUpload");
  rack.Restart();
  User().ShowPage(ePageInstr);
  User().Click("cmdRefresh");
  EXPECT_EQ(User().Instruments().Count(), 6);
  boxes->arrBoxes.clear();
  session.Open("VP-210");
  EXPECT_THAT(Shown(), ElementsAre(AllOf(StartsWith("The connection was lost while these pages held changes"),
                                         HasSubstr("Mode/Trg, Timing"), HasSubstr("Keep my edits?"))));
  EXPECT_THAT(User().Ticked(), ElementsAre("VP-210"));
  EXPECT_EQ(User().Field("esWidth(0)").Value(), 250e-9);
  EXPECT_EQ(StateOf(ePageTiming), ePageIsDirty);
  User().Click("cmdUpload");
  EXPECT_EQ(StateOf(ePageTiming), ePageIsCurrent);
  EXPECT_DOUBLE_EQ(ReadDriver(session.Instrument("VP-210")).numbers["width 1"], 250e-9);
}

TEST_F(DeadServer, OnTheAnswerNoTheInstrumentIsReadOverTheEdits) {
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "250ns");
  User().Click("cmdUpload");
  rack.Restart();
  User().ShowPage(ePageInstr);
  User().Click("cmdRefresh");
  boxes->eAnswer = Qt::Key_Escape;
  session.Open("VP-210");
  EXPECT_EQ(User().Field("esWidth(0)").Value(), 100e-9);
  EXPECT_EQ(StateOf(ePageTiming), ePageIsCurrent);
}

TEST_F(DeadServer, WithoutEditsNothingIsAsked) {
  session.panel->SetTabState(ePageIsCurrent, eAllPages);
  User().Click("cmdDownload");
  rack.Restart();
  User().ShowPage(ePageInstr);
  User().Click("cmdRefresh");
  boxes->arrBoxes.clear();
  session.Open("VP-210");
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_EQ(StateOf(ePageTiming), ePageIsCurrent);
}

TEST_F(DeadServer, ARefreshBeforeTheServerIsBackFailsPlainlyAndTheNextOneWorks) {
  User().Click("cmdUpload");
  User().ShowPage(ePageInstr);
  boxes->arrBoxes.clear();
  User().Click("cmdRefresh");
  EXPECT_THAT(Shown(), Contains(HasSubstr("cannot be reached")));
  EXPECT_EQ(StateOf(ePageTiming), ePageIsDirty);
  rack.Restart();
  User().Click("cmdRefresh");
  session.Open("VP-210");
  EXPECT_EQ(StateOf(ePageTiming), ePageIsDirty);
  EXPECT_THAT(User().Ticked(), ElementsAre("VP-210"));
}

}  // namespace
}  // namespace tarvik::test
