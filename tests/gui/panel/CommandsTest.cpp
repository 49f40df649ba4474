#include <gmock/gmock.h>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/PictureBox.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char *OnlineBox = "box information: You need to be online to an instrument to perform this operation";
constexpr const char *CommandNames[] = {"cmdResetInstr", "cmdSelfTest", "cmdCalibrate", "cmdCheckErrors",
                                        "cmdCheckWarnings"};

/// A panel over a driver that writes down each call.
class Commands : public testing::Test {
 protected:
  Commands() {
    session.ShowPage(ePageConfig);
    session.Forget();
  }
  HostEntry LastBox() {
    for (auto entry = session.host.arrEntries.rbegin(); entry != session.host.arrEntries.rend(); ++entry)
      if (entry->kind == HostEntry::Box) return *entry;
    ADD_FAILURE() << "no box was shown";
    return {};
  }
  std::vector<std::string> CommandsSent() {
    std::vector<std::string> arrFound;
    for (const std::string &strCall : session.driver.TakeTrace())
      for (const char *strName : {".Reset(", ".SelfTest(", ".Calibrate("})
        if (strCall.find(strName) != std::string::npos) arrFound.push_back(strName);
    return arrFound;
  }

  PanelSession session;
};

struct Question {
  const char *strButton, *strQuestion, *strTitle, *strCommand;
};

const Question Questions[] = {
    {"cmdResetInstr", "Do you really want to reset?", "TarvikVI: Confirm Instrument Reset", ".Reset("},
    {"cmdSelfTest", "Do you really want to perform a selftest?", "TarvikVI: Confirm Instrument Selftest", ".SelfTest("},
    {"cmdCalibrate", "Do you really want to calibrate the instrument?\r\n(This may take up to 30 seconds)",
     "TarvikVI: Confirm Instrument Reset", ".Calibrate("},
};

TEST_F(Commands, TheHostHearsWhatTheStatusLineShows) {
  std::vector<std::string> arrTold;
  auto *status = session.panel->findChild<QPlainTextEdit *>(QStringLiteral("txtStatus"));
  QObject::connect(session.panel.get(), &TarvikGUI::statusMessage, status, [&](const QString &strStatus) {
    EXPECT_EQ(status->toPlainText(), strStatus);
    arrTold.push_back(strStatus.toStdString());
  });
  session.ShowPage(ePageInstr);
  session.Click("cmdRefresh");
  ASSERT_FALSE(arrTold.empty());
  EXPECT_EQ(arrTold.back(), status->toPlainText().toStdString());
}

TEST_F(Commands, EachAsksItsQuestionAndSendsOnYes) {
  for (const Question &question : Questions) {
    session.Forget();
    session.host.arrBoxAnswers = {BoxAnswer::Yes};
    session.Click(question.strButton);
    const HostEntry &box = *std::find_if(session.host.arrEntries.begin(), session.host.arrEntries.end(),
                                         [](const HostEntry &entry) { return entry.kind == HostEntry::Box; });
    EXPECT_EQ(box.strText, question.strQuestion);
    EXPECT_EQ(box.strTitle, question.strTitle);
    EXPECT_EQ(box.icon, BoxIcon::Question);
    EXPECT_EQ(box.buttons, BoxButtons::YesNo);
    EXPECT_THAT(CommandsSent(), ElementsAre(question.strCommand));
    EXPECT_EQ(session.host.intPointer, PointerDefault);
  }
}

TEST_F(Commands, NoSendsNothing) {
  for (const Question &question : Questions) {
    session.Forget();
    session.host.arrBoxAnswers = {BoxAnswer::No};
    session.Click(question.strButton);
    EXPECT_EQ(session.host.TakeBoxes().size(), 1u);
    EXPECT_THAT(session.driver.arrTrace, IsEmpty()) << question.strButton;
  }
}

TEST_F(Commands, AResetReadsAllPagesAgain) {
  session.panel->SetTabState(ePageNeedsDownloading, eAllPages);
  session.Click("cmdResetInstr");
  for (const TabNumEnum ePage :
       {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
    EXPECT_EQ(session.StateOf(ePage), ePageIsCurrent) << ePage;
  EXPECT_FALSE(session.Get<PictureBox>("picDownloadHighlight").Visible());
}

TEST_F(Commands, AResetWithPageOnlyLeavesTheOtherPagesTheirMarks) {
  session.ShowPage(ePageOptions);
  session.Choose("optDownload(1)");
  session.panel->SetTabState(ePageNeedsDownloading, eAllPages);
  session.ShowPage(ePageConfig);
  session.Click("cmdResetInstr");
  EXPECT_EQ(session.StateOf(ePageConfig), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageNeedsDownloading);
}

TEST_F(Commands, ASelftestShowsWhatTheDriverSays) {
  session.Click("cmdSelfTest");
  const HostEntry box = LastBox();
  EXPECT_EQ(box.strText, "Result: \r\nPassed");
  EXPECT_EQ(box.strTitle, "TarvikVI: Selftest");
  EXPECT_EQ(box.icon, BoxIcon::Information);
  EXPECT_EQ(box.buttons, BoxButtons::Ok);
}

TEST_F(Commands, ASelftestWithoutATextHasFailed) {
  session.driver.Configure("Alpha", {{"selftest", ""}});
  session.Click("cmdSelfTest");
  EXPECT_EQ(LastBox().strText, "Result: \r\nSelftest failed!");
}

TEST_F(Commands, ASelftestThatFailsInTheDriverShowsTheReportAndThatItFailed) {
  session.driver.FailMatching("IInstrument.SelfTest", 1, {-2147221503, "no answer"});
  session.Click("cmdSelfTest");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box question: Do you really want to perform a selftest?", "box stop: no answer",
                          "box information: Result: \r\nSelftest failed!"));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(Commands, SelftestAndCalibrationReadNothingAndMarkNothing) {
  session.panel->SetTabState(ePageIsDirty, ePageLimits);
  for (const char *strName : {"cmdSelfTest", "cmdCalibrate"}) session.Click(strName);
  for (const std::string &strCall : session.driver.TakeTrace()) EXPECT_THAT(strCall, Not(HasSubstr(".GetLevel(")));
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsDirty);
}

TEST_F(Commands, ThePointerIsBusyDuringACommand) {
  Integer intDuring = -1;
  session.driver.OnTrace = [&](const std::string &strCall) {
    if (strCall.find(".Calibrate(") != std::string::npos) intDuring = session.host.intPointer;
  };
  session.Click("cmdCalibrate");
  session.driver.OnTrace = {};
  EXPECT_EQ(intDuring, PointerHourglass);
}

TEST_F(Commands, WithoutErrorsTheErrorsButtonSaysSoAndLeavesTheStatus) {
  const std::string strStatus = session.Get<DisplayBox>("txtStatus").Text();
  session.Click("cmdCheckErrors");
  const HostEntry box = LastBox();
  EXPECT_EQ(box.strText, "No Instrument Errors");
  EXPECT_EQ(box.strTitle, "TarvikVI");
  EXPECT_EQ(box.icon, BoxIcon::Information);
  EXPECT_EQ(session.Get<DisplayBox>("txtStatus").Text(), strStatus);
}

TEST_F(Commands, ErrorsAreShownOnceAndNothingIsAdded) {
  session.driver.strErrors = "-222,\"Data out of range\";-221,\"Settings conflict\"";
  session.Click("cmdCheckErrors");
  EXPECT_THAT(
      session.host.TakeBoxes(),
      ElementsAre("box exclamation: Instrument Errors(s):\r\n-222,Data out of range\r\n-221,Settings conflict"));
}

TEST_F(Commands, ErrorsAndWarningsAreAskedForAlsoWhenTheChecksAreOff) {
  session.ShowPage(ePageOptions);
  session.Choose("chkAutoErrors");
  session.Choose("chkAutoWarnings");
  session.driver.strErrors = "-330,\"Self-test failed\"";
  session.driver.arrWarnings = {"101,\"Width\""};
  session.Forget();
  session.Click("cmdCheckErrors");
  session.Click("cmdCheckWarnings");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box exclamation: Instrument Errors(s):\r\n-330,Self-test failed",
                                                    "box exclamation: Instrument Warning(s):\r\n101,Width"));
}

TEST_F(Commands, NoWarningsFollowsOnlyACheckThatAnswersFalse) {
  session.Click("cmdCheckWarnings");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  session.driver.FailMatching("IErrorQueue.GetWarnings", 1, {-2147221503, "queue lost"});
  session.Click("cmdCheckWarnings");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: queue lost", "box information: No Instrument Warnings"));
}

TEST_F(Commands, AWarningIsToldOnceAndThenNothingSaysThatNoneWaits) {
  session.driver.arrWarnings = {"101,\"Width\"", "101,\"Width\"", ""};
  session.Click("cmdCheckWarnings");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box exclamation: Instrument Warning(s):\r\n101,Width"));
  session.Click("cmdCheckWarnings");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty()) << "the same once more";
  session.Click("cmdCheckWarnings");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty()) << "none any more";
}

TEST_F(Commands, AWarningDoesNotReachTheStatus) {
  const std::string strStatus = session.Get<DisplayBox>("txtStatus").Text();
  session.instr->InstrWarnings.Raise("101,Width");
  EXPECT_EQ(session.Get<DisplayBox>("txtStatus").Text(), strStatus);
}

TEST_F(Commands, TheStatusHoldsTheLastMessageAsAWhole) {
  session.instr->StatusMessage.Raise("first");
  session.instr->StatusMessage.Raise("second");
  EXPECT_EQ(session.Get<DisplayBox>("txtStatus").Text(), "second");
}

TEST_F(Commands, AnInstrumentErrorWithAutomaticDownloadReadsEverythingAndDropsTheEdits) {
  session.ShowPage(ePageOptions);
  session.Choose("chkAutoDownOnError");
  session.Choose("optDownload(1)");
  session.ShowPage(ePageLimits);
  session.Type("esLimitHighVoltage(0)", "3V");
  session.instr->InstrError.Raise("-221");
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighVoltage(0)").Value(), 5);
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageMode), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageInstr), ePageNeedsDownloading);
  EXPECT_FALSE(session.State().mfForceDownloadAll);
}

TEST_F(Commands, AnInstrumentErrorWithoutAutomaticDownloadChangesNothing) {
  session.ShowPage(ePageLimits);
  session.Type("esLimitHighVoltage(0)", "3V");
  session.Forget();
  session.instr->InstrError.Raise("-221");
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsDirty);
  EXPECT_THAT(session.driver.arrTrace, IsEmpty());
  EXPECT_THAT(session.host.arrEntries, IsEmpty());
}

TEST(CommandsOffline, AreDisabledAndSayOnlyThatASessionIsNeeded) {
  PanelSession session({.fOpen = false});
  session.ShowPage(ePageConfig);
  for (const char *strName : CommandNames) {
    auto &button = session.Get<CommandButton>(strName);
    EXPECT_FALSE(button.Enabled()) << strName;
    button.SetEnabled(True);
    session.Forget();
    session.Click(strName);
    EXPECT_THAT(session.host.TakeBoxes(), ElementsAre(OnlineBox)) << strName;
    EXPECT_THAT(session.driver.arrTrace, IsEmpty()) << strName;
  }
}

TEST(CommandsOfTheSimulator, AResetBringsTheFactorySettingsBack) {
  SimulatorSession session;
  session.Open("VP-210");
  session->ShowPage(ePageLimits);
  session->Type("esLimitHighVoltage(0)", "7V");
  session->Click("cmdUpload");
  session->ShowPage(ePageConfig);
  session->Click("cmdResetInstr");
  EXPECT_DOUBLE_EQ(session->Field("esLimitHighVoltage(0)").Value(), 0.5);
}

TEST(CommandsOfTheSimulator, TheSelftestPasses) {
  SimulatorSession session;
  session.Open("VP-210");
  session->ShowPage(ePageConfig);
  session.host.TakeLines();
  session->Click("cmdSelfTest");
  EXPECT_THAT(session.host.TakeBoxes(), Contains("box information: Result: \r\nSelf test passed"));
}

TEST(CommandsOfTheSimulator, AWaitingErrorIsShownOnceAndThenThereIsNone) {
  SimulatorSession session({}, "[A]\nslot = 1\nerror = -240,\"Hardware error: fan stopped\"\n");
  session.Open("A");
  session.host.TakeLines();
  session->Click("cmdCheckErrors");
  session->Click("cmdCheckErrors");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box exclamation: Instrument Errors(s):\r\n-240,Hardware error: fan stopped",
                          "box information: No Instrument Errors"));
}

}  // namespace
}  // namespace tarvik::test
