#include <gmock/gmock.h>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/PictureBox.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// A panel over a driver that writes down each call.
class TransferCycle : public testing::Test {
 protected:
  TransferCycle() {
    // Rows of one length, as an instrument has them.
    session.driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
    Clean();
  }

  void Clean() {
    session.panel->SetTabState(ePageIsCurrent, eAllPages);
    session.Forget();
  }
  void MarkDirty(std::initializer_list<TabNumEnum> arrPages) {
    for (const TabNumEnum ePage : arrPages) session.panel->SetTabState(ePageIsDirty, ePage);
  }
  void PageOnly(const char *strOption) {
    session.ShowPage(ePageOptions);
    session.Choose(strOption);
  }
  /// Calls whose name without arguments contains the text.
  std::vector<std::string> Calls(const std::string &strPart) {
    std::vector<std::string> arrFound;
    for (const std::string &strCall : session.driver.arrTrace)
      if (strCall.find(strPart) != std::string::npos) arrFound.push_back(strCall);
    return arrFound;
  }
  int FirstCall(const std::string &strPart) {
    for (std::size_t i = 0; i < session.driver.arrTrace.size(); ++i)
      if (session.driver.arrTrace[i].find(strPart) != std::string::npos) return static_cast<int>(i);
    ADD_FAILURE() << strPart << " was never called";
    return -1;
  }
  const std::array<TabStates, eNumPages> &States() { return session.State().meTabState; }

  PanelSession session;
};

TEST_F(TransferCycle, AnUploadGoesInItsOwnOrderWithTheBitsBehindTheTransaction) {
  MarkDirty({ePageMode, ePageTiming, ePageLevels, ePageLimits, ePageTrigLev, ePageConfig, ePagePattern});
  session.Click("cmdUpload");
  const std::vector<int> arrOrder{
      FirstCall(".Transaction(0)"), FirstCall("IModeSetup"),      FirstCall(".SetFrequency("),
      FirstCall(".SetLevel("),      FirstCall("ILimitPair"),      FirstCall("IAuxOutputs{Alpha}.Set"),
      FirstCall(".SetReference("),  FirstCall(".Transaction(1)"), FirstCall(".SetPattern(")};
  EXPECT_TRUE(std::is_sorted(arrOrder.begin(), arrOrder.end())) << testing::PrintToString(arrOrder);
  // The flags of the pattern are the last thing inside of the transaction.
  const int intCommit = FirstCall(".Transaction(1)");
  EXPECT_THAT(session.driver.arrTrace[static_cast<std::size_t>(intCommit - 2)], HasSubstr("SetSignalFormat"));
  EXPECT_THAT(States(), Each(ePageIsCurrent));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(TransferCycle, TheDriverSeesOneBeginAndOneCommitForAllPages) {
  MarkDirty({ePageMode, ePageTiming, ePageLevels, ePageLimits, ePageTrigLev, ePageConfig, ePagePattern});
  session.Click("cmdUpload");
  EXPECT_THAT(Calls(".Transaction("), ElementsAre(StartsWith("IInstrument{Alpha}.Transaction(2)"),
                                                  StartsWith("IInstrument{Alpha}.Transaction(0)"),
                                                  StartsWith("IInstrument{Alpha}.Transaction(1)")));
}

TEST_F(TransferCycle, OnlyDirtyPagesAreSent) {
  MarkDirty({ePageLimits});
  session.panel->SetTabState(ePageNeedsDownloading, ePageTiming);
  session.Click("cmdUpload");
  EXPECT_THAT(Calls("ILimitPair"), Not(IsEmpty()));
  EXPECT_THAT(Calls(".SetFrequency("), IsEmpty());
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageTiming), ePageNeedsDownloading);
}

TEST_F(TransferCycle, WithPageOnlyTheDirtyPageElsewhereStaysDirty) {
  PageOnly("optUpload(1)");
  session.ShowPage(ePageLimits);
  Clean();
  MarkDirty({ePageMode, ePageLimits});
  session.Click("cmdUpload");
  EXPECT_EQ(session.StateOf(ePageMode), ePageIsDirty);
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
  EXPECT_THAT(Calls("IModeSetup"), IsEmpty());
  EXPECT_FALSE(session.Get<PictureBox>("picUploadHighlight").Visible());
}

TEST_F(TransferCycle, ACleanPageSendsAnEmptyTransactionAndChecksTheWarnings) {
  session.Click("cmdUpload");
  EXPECT_THAT(session.driver.arrTrace, ElementsAre(StartsWith("IInstrument{Alpha}.Transaction(2)"),
                                                   StartsWith("IInstrument{Alpha}.GetTransactionState()"),
                                                   StartsWith("IInstrument{Alpha}.Transaction(0)"),
                                                   StartsWith("IInstrument{Alpha}.GetTransactionState()"),
                                                   StartsWith("IInstrument{Alpha}.Transaction(1)"),
                                                   StartsWith("IInstrument{Alpha}.GetErrorQueue()"),
                                                   StartsWith("IErrorQueue{Alpha}.GetWarnings()")));
}

TEST_F(TransferCycle, AFailureOfOnePageKeepsThePagesBeforeItCurrentAndSendsNoPattern) {
  MarkDirty({ePageMode, ePageTiming, ePageLevels, ePageLimits, ePageTrigLev, ePageConfig, ePagePattern});
  session.driver.FailMatching("IChannelLevels.SetLevel", 1, {Refused, "levels refused"});
  session.Click("cmdUpload");
  EXPECT_THAT(States(), ElementsAre(ePageIsCurrent, ePageIsCurrent, ePageIsCurrent, ePageIsDirty, ePageIsDirty,
                                    ePageIsDirty, ePageIsDirty, ePageIsDirty, ePageIsCurrent));
  EXPECT_THAT(Calls("SetSignalFormat"), Not(Contains(HasSubstr("error"))));
  EXPECT_THAT(Calls(".SetPattern("), IsEmpty());
  EXPECT_THAT(Calls("ILimitPair"), IsEmpty());
  EXPECT_THAT(Calls(".Transaction(1)"), IsEmpty());
  EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value());
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: levels refused"));

  session.Forget();
  session.Click("cmdUpload");
  EXPECT_THAT(Calls("IModeSetup"), IsEmpty()) << "the next upload sends only the failed page and those behind it";
  EXPECT_THAT(States(), Each(ePageIsCurrent));
}

TEST_F(TransferCycle, AFailureOfTheFlagsPreventsTheBits) {
  MarkDirty({ePagePattern});
  session.driver.FailMatching("IChannel.SetSignalFormat", 1, {Refused, "flags refused"});
  session.Click("cmdUpload");
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsDirty);
  EXPECT_THAT(Calls(".SetPattern("), IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: flags refused"));
}

TEST_F(TransferCycle, ADownloadOfAllPagesGoesInTheOrderOfTheTabsWithoutATransaction) {
  session.Click("cmdDownload");
  const std::vector<int> arrOrder{FirstCall(".GetTriggerMode("), FirstCall(".GetWidth("),   FirstCall(".GetLevel("),
                                  FirstCall(".GetPattern("),     FirstCall("ILimitPair"),   FirstCall("IAuxOutputs"),
                                  FirstCall(".GetReference("),   FirstCall(".GetWarnings(")};
  EXPECT_TRUE(std::is_sorted(arrOrder.begin(), arrOrder.end())) << testing::PrintToString(arrOrder);
  EXPECT_THAT(Calls(".Transaction("), IsEmpty());
}

TEST_F(TransferCycle, ADownloadOverwritesADirtyPageWithoutAQuestion) {
  session.ShowPage(ePageLimits);
  session.Type("esLimitHighVoltage(0)", "3V");
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsDirty);
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighVoltage(0)").Value(), 5);
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(TransferCycle, APageThatFailsToDownloadDoesNotStopThePagesBehindIt) {
  session.panel->SetTabState(ePageNeedsDownloading, eAllPages);
  session.driver.FailMatching("IInstrument.GetPulseMode", 1, {Refused, "mode unreadable"});
  session.Click("cmdDownload");
  EXPECT_EQ(session.StateOf(ePageMode), ePageNeedsDownloading);
  for (const TabNumEnum ePage : {ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
    EXPECT_EQ(session.StateOf(ePage), ePageIsCurrent) << ePage;
  EXPECT_FALSE(session.State().mfDownloading);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(TransferCycle, WithPageOnlyADownloadFromTheListOrTheOptionsOnlyChecksWarnings) {
  PageOnly("optDownload(1)");
  for (const TabNumEnum ePage : {ePageInstr, ePageOptions}) {
    session.ShowPage(ePage);
    session.Forget();
    session.Click("cmdDownload");
    EXPECT_THAT(session.driver.arrTrace, ElementsAre(StartsWith("IInstrument{Alpha}.GetErrorQueue()"),
                                                     StartsWith("IErrorQueue{Alpha}.GetWarnings()")));
  }
}

TEST_F(TransferCycle, WithPageOnlyADownloadReadsThePageInFront) {
  PageOnly("optDownload(1)");
  session.panel->SetTabState(ePageNeedsDownloading, eAllPages);
  session.ShowPage(ePageTrigLev);
  session.Forget();
  session.Click("cmdDownload");
  EXPECT_THAT(Calls("IAuxOutputs"), Not(IsEmpty()));
  EXPECT_THAT(Calls("ILimitPair"), IsEmpty());
  EXPECT_EQ(session.StateOf(ePageTrigLev), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageLimits), ePageNeedsDownloading);
}

TEST(TransferOffline, UploadAndDownloadOnlySayThatASessionIsNeeded) {
  PanelSession session({.fOpen = false});
  constexpr const char *OnlineBox = "box information: You need to be online to an instrument to perform this operation";
  for (const char *strName : {"cmdUpload", "cmdDownload"}) {
    auto &button = session.Get<CommandButton>(strName);
    button.SetEnabled(True);
    session.Click(strName);
    EXPECT_THAT(session.host.TakeBoxes(), ElementsAre(OnlineBox)) << strName;
    EXPECT_THAT(session.driver.arrTrace, IsEmpty());
  }
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_FALSE(session.State().mfDownloading);
}

/// Settings of the levels that no instrument takes: low above high.
class RejectedCommit : public testing::Test {
 protected:
  /// The two pages without settings of the instrument have no part in it.
  void ExpectPagesCurrent(const SimulatorSession &session) {
    const auto &states = TarvikGUI::Panel::Of(*session.panel).state.meTabState;
    for (const TabNumEnum ePage :
         {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
      EXPECT_EQ(states[static_cast<std::size_t>(ePage)], ePageIsCurrent) << ePage;
  }
  void Reject(SimulatorSession &session) {
    session.Open("VP-210");
    session->ShowPage(ePageLevels);
    session->Take("cboLevelFormat(0)", 0);
    session->Take("cboLevelFormat(0)", 1);
    session->Type("esLevelHigh(0)", "1V");
    session->Type("esLevelLo(0)", "2V");
    session->ShowPage(ePageLimits);
    session->Type("esLimitHighVoltage(0)", "7V");
    session.host.TakeLines();
    session->Click("cmdUpload");
  }
};

TEST_F(RejectedCommit, WithoutAutomaticDownloadThePanelShowsAllCleanAndTheRejectedValues) {
  SimulatorSession session;
  Reject(session);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre(StartsWith("box exclamation: Instrument Errors(s):\r\n")));
  ExpectPagesCurrent(session);
  EXPECT_FALSE(session->Get<PictureBox>("picUploadHighlight").Visible());
  EXPECT_FALSE(session->Get<PictureBox>("picDownloadHighlight").Visible());
  EXPECT_DOUBLE_EQ(session->Field("esLevelLo(0)").Value(), 2);
  EXPECT_DOUBLE_EQ(session->Field("esLimitHighVoltage(0)").Value(), 7);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(RejectedCommit, WithAutomaticDownloadThePanelShowsAgainWhatTheInstrumentHolds) {
  SimulatorSession session({{"AutoDownOnError", "1"}});
  Reject(session);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre(StartsWith("box exclamation: Instrument Errors(s):\r\n")));
  ExpectPagesCurrent(session);
  EXPECT_DOUBLE_EQ(session->Field("esLevelHigh(0)").Value(), 2.5);
  EXPECT_DOUBLE_EQ(session->Field("esLevelLo(0)").Value(), 0);
  EXPECT_DOUBLE_EQ(session->Field("esLimitHighVoltage(0)").Value(), 0.5);
  EXPECT_FALSE(TarvikGUI::Panel::Of(*session.panel).state.mfForceDownloadAll);
  EXPECT_FALSE(TarvikGUI::Panel::Of(*session.panel).state.mfDownloading);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(TransferCycle, AfterARejectedCommitTheBitsOfADirtyPatternAreStillSent) {
  MarkDirty({ePagePattern});
  session.driver.FailMatching("IInstrument.Transaction(1)", 1, {Refused, "-221,\"Settings conflict\""});
  session.Click("cmdUpload");
  EXPECT_EQ(Calls(".SetPattern(").size(), 3u);
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box exclamation: Instrument Errors(s):\r\n-221,Settings conflict"));
}

TEST_F(TransferCycle, AfterARejectedCommitWithAutomaticDownloadThePatternIsReadAndNotSent) {
  session.ShowPage(ePageOptions);
  session.Choose("chkAutoDownOnError");
  Clean();
  MarkDirty({ePagePattern});
  session.driver.FailMatching("IInstrument.Transaction(1)", 1, {Refused, "refused"});
  session.Click("cmdUpload");
  EXPECT_THAT(Calls(".SetPattern("), IsEmpty());
  EXPECT_EQ(Calls(".GetPattern(").size(), 3u);
  EXPECT_EQ(session.StateOf(ePageOptions), ePageNeedsDownloading);
}

TEST_F(TransferCycle, AFailureOfTheLogLeavesTheUploadClosed) {
  MarkDirty({ePageMode, ePageLevels});
  session.driver.FailMatching("IChannelLevels.SetLevel", 1, {Refused, "levels refused"});
  session.host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 1};
  session.Click("cmdUpload");
  EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value());
  EXPECT_FALSE(session.InTransaction());
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsDirty);
}

TEST_F(TransferCycle, ADownloadThatALogFailureEndsStaysBusyUntilTheNextOneThatWorks) {
  session.driver.FailMatching("IChannelLevels.GetLevel", 1, {Refused, "levels unreadable"});
  session.host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 1};
  session.Click("cmdDownload");
  EXPECT_TRUE(session.State().mfDownloading);
  EXPECT_EQ(session.host.intPointer, PointerHourglass);
  session.ShowPage(ePageLimits);
  session.Type("esLimitHighVoltage(0)", "3V");
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent) << "no page can become dirty";

  session.Click("cmdDownload");
  EXPECT_FALSE(session.State().mfDownloading);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

}  // namespace
}  // namespace tarvik::test
