#include <gmock/gmock.h>

#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Saved(RecordingHost &host) {
  std::vector<std::string> arrLines;
  for (const std::string &strLine : host.TakeLines())
    if (strLine.starts_with("save ")) arrLines.push_back(strLine);
  return arrLines;
}

TEST(End, HidingSavesTheOptionsInTheirOrderAndEndsTheSession) {
  SimulatorSession session;
  session.Open("VP-210");
  session->ShowPage(ePageOptions);
  session->Choose("chkAutoDownload");
  session->Choose("optUpload(1)");
  session.host.TakeLines();
  session.Hide();
  EXPECT_THAT(Saved(session.host),
              ElementsAre("save Config/Upload=", "save Config/Download=All", "save Config/AutoWarnings=1",
                          "save Config/AutoErrors=1", "save Config/AutoDownOnError=0", "save Config/AutoDownload=0",
                          "save Config/AutoOutputOnOff=1"));
  EXPECT_FALSE(session.Instr().IsOnline(True));
}

TEST(End, TheOptionsOfTheMomentAreSavedAlsoLongAfterTheSession) {
  SimulatorSession session;
  session.Open("VP-210");
  session->Tick(0);
  session->ShowPage(ePageOptions);
  session->Choose("chkAutoErrors");
  session.Hide();
  EXPECT_EQ((session.host.settings[{"Config", "AutoErrors"}]), "0");
}

TEST(End, TheEndAfterAHideSavesOnceMoreAndClosesNothing) {
  SimulatorSession session;
  session.Open("VP-210");
  session.Hide();
  std::vector<std::string> arrStatus;
  session.Instr().StatusMessage.Connect([&](const std::string &strStatus) { arrStatus.push_back(strStatus); });
  session.host.TakeLines();
  session.user.reset();
  session.panel.reset();
  EXPECT_EQ(Saved(session.host).size(), 7u);
  EXPECT_THAT(arrStatus, IsEmpty());
}

TEST(End, APanelThatWasNeverStartedSavesNothing) {
  SimulatorSession session;
  session.Hide();
  session.NewPanel();
  session.host.TakeLines();
  session.user.reset();
  session.panel.reset();
  EXPECT_THAT(Saved(session.host), IsEmpty());
}

TEST(End, APanelThatWasHiddenBeforeItsStartSavesNothing) {
  SimulatorSession session;
  session.Hide();
  session.NewPanel();
  session.host.TakeLines();
  session.panel->show();
  session.panel->hide();
  session.user.reset();
  session.panel.reset();
  EXPECT_THAT(Saved(session.host), IsEmpty());
}

TEST(End, AfterAHideNoMessageReachesThePanel) {
  SimulatorSession session;
  session.Hide();
  session->Get<DisplayBox>("txtStatus").SetText("left as it was");
  session.Instr().StatusMessage.Raise("a message");
  EXPECT_EQ(session->Get<DisplayBox>("txtStatus").Text(), "left as it was");
}

TEST(End, AStoreThatCannotBeWrittenIsToldInABox) {
  SimulatorSession session;
  session.Open("VP-210");
  session.host.TakeLines();
  session.host.arrSaveFailures.push_back({ErrPathFileAccess, "disk full", 1});
  session.Hide();
  QCoreApplication::processEvents();
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box information: Unable to save settings: disk full"));
}

TEST(End, AStartThatFailedHalfwayCountsAsStarted) {
  SimulatorSession session;
  session.NewPanel();
  session.host.arrGetFailures.push_back({ErrPathFileAccess, "no store", 1});
  session.Show();
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: no store"));
  session->Click("cmdCheckErrors");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box information: You need to be online to an instrument to perform this operation"));
  session.user.reset();
  session.panel.reset();
  EXPECT_EQ(Saved(session.host).size(), 7u);
}

}  // namespace
}  // namespace tarvik::test
