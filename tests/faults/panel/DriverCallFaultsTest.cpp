#include <gmock/gmock.h>

#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "platform/PictureBox.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const DriverFailure TheFailure{Refused, "driver failed"};
constexpr TabNumEnum TransferPages[] = {ePageMode,   ePageTiming,  ePageLevels, ePagePattern,
                                        ePageLimits, ePageTrigLev, ePageConfig};
/// The pages in the order in which an upload sends them.
constexpr TabNumEnum UploadOrder[] = {ePageMode,    ePageTiming, ePageLevels, ePageLimits,
                                      ePageTrigLev, ePageConfig, ePagePattern};

/// One panel on a driver with two channels, whose calls fail one after the other.
class DriverCallFaults : public testing::Test {
 public:
  /// A driver call of a clean run, and the pages that were still dirty when it was made.
  struct CleanCall {
    std::string strLine;
    std::vector<TabNumEnum> arrDirty;
  };

 protected:
  DriverCallFaults() {
    session.driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
    session.Forget();
  }
  void Mark(TabStates eState) {
    session.panel->SetTabState(ePageIsCurrent, eAllPages);
    for (const TabNumEnum ePage : TransferPages) session.panel->SetTabState(eState, ePage);
    session.Forget();
  }
  std::vector<std::string> Boxes() { return session.host.TakeBoxes(); }
  bool TransactionIsOpen() { return session.driver.Find("Alpha")->copy.has_value(); }
  /// The pages that are still dirty, in the order of the upload.
  std::vector<TabNumEnum> Dirty() {
    std::vector<TabNumEnum> arrPages;
    for (const TabNumEnum ePage : UploadOrder)
      if (session.StateOf(ePage) == ePageIsDirty) arrPages.push_back(ePage);
    return arrPages;
  }
  std::vector<CleanCall> CleanUpload() {
    std::vector<CleanCall> arrCalls;
    Mark(ePageIsDirty);
    session.driver.OnTrace = [&](const std::string &strLine) { arrCalls.push_back({strLine, Dirty()}); };
    session.Click("cmdUpload");
    session.driver.OnTrace = {};
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_THAT(Dirty(), IsEmpty());
    return arrCalls;
  }

  PanelSession session{{.fAutoDownload = true}};
};

bool Contains(const std::string &strLine, const char *strPart) { return strLine.find(strPart) != std::string::npos; }

/// An output switch that the timing could not send is reported and does not stop the rest.
bool IsOutputOfTiming(const std::vector<DriverCallFaults::CleanCall> &arrCalls, std::size_t k) {
  if (arrCalls[k].arrDirty.empty() || arrCalls[k].arrDirty.front() != ePageTiming) return false;
  for (std::size_t i = k; i < arrCalls.size(); ++i) {
    const std::string &strLine = arrCalls[i].strLine;
    if (Contains(strLine, "GetLevels") || Contains(strLine, "Output(")) return true;
    if (!Contains(strLine, "GetChannels") && !Contains(strLine, "GetItem")) return false;
  }
  return false;
}

TEST_F(DriverCallFaults, EachFailingCallOfAnUploadLeavesTheTransactionClosedAndTheStatesAsTold) {
  const std::vector<CleanCall> arrCalls = CleanUpload();
  ASSERT_GT(arrCalls.size(), 100u);
  bool fCommitted = false;
  for (std::size_t k = 0; k < arrCalls.size(); ++k) {
    const CleanCall &call = arrCalls[k];
    SCOPED_TRACE(std::to_string(k) + " " + call.strLine);
    Mark(ePageIsDirty);
    session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
    session.Click("cmdUpload");

    EXPECT_FALSE(TransactionIsOpen());
    EXPECT_FALSE(session.InTransaction());
    EXPECT_EQ(session.host.intPointer, PointerDefault);
    EXPECT_FALSE(session.State().mfDownloading);
    const std::vector<std::string> arrBoxes = Boxes();
    // The first abort is a precaution; a commit that is refused leaves its pages current and the bits still go.
    const bool fEndsTransaction =
        k >= 3 && !fCommitted &&
        (Contains(call.strLine, "GetTransactionState") || Contains(call.strLine, "Transaction(1)"));
    // A start that fails is silent, and every page then sends itself in a transaction of its own.
    const bool fBegins = k < 3;
    if (fBegins) {
      EXPECT_THAT(arrBoxes, IsEmpty());
      EXPECT_THAT(Dirty(), IsEmpty());
    } else if (fEndsTransaction) {
      EXPECT_THAT(arrBoxes, ElementsAre("box exclamation: Instrument Errors(s):\r\ndriver failed"));
      EXPECT_THAT(Dirty(), IsEmpty());
    } else if (IsOutputOfTiming(arrCalls, k)) {
      EXPECT_THAT(arrBoxes, ElementsAre("box stop: driver failed"));
      EXPECT_THAT(Dirty(), IsEmpty());
    } else if (!fCommitted) {
      // The failing page and those behind it; what was sent before it stays current.
      EXPECT_THAT(arrBoxes, ElementsAre("box stop: driver failed"));
      EXPECT_EQ(Dirty(), call.arrDirty);
    } else {
      EXPECT_THAT(arrBoxes, ElementsAre("box stop: driver failed"));
      // Behind the commit a failing look for warnings changes nothing, a failing row keeps the pattern dirty.
      const bool fWarningsOfUpload = k + 2 < arrCalls.size() && !Contains(call.strLine, "Pattern") &&
                                     !Contains(arrCalls[k - 1].strLine, "SetPattern") &&
                                     !Contains(arrCalls[k - 2].strLine, "SetPattern");
      if (fWarningsOfUpload)
        EXPECT_THAT(Dirty(), IsEmpty());
      else
        EXPECT_THAT(Dirty(), ElementsAre(ePagePattern));
    }
    if (Contains(call.strLine, "Transaction(1)")) fCommitted = true;

    session.Click("cmdUpload");
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_THAT(Dirty(), IsEmpty()) << "a second upload sends the rest";
    EXPECT_FALSE(TransactionIsOpen());
    if (HasFailure()) break;
  }
}

TEST_F(DriverCallFaults, EachFailingCallOfADownloadLeavesThePanelAtRestAndASecondOneSucceeds) {
  Mark(ePageNeedsDownloading);
  session.Click("cmdDownload");
  const std::vector<std::string> arrCalls = session.driver.TakeTrace();
  ASSERT_GT(arrCalls.size(), 90u);
  EXPECT_THAT(Boxes(), IsEmpty());
  for (std::size_t k = 0; k < arrCalls.size(); ++k) {
    SCOPED_TRACE(std::to_string(k) + " " + arrCalls[k]);
    Mark(ePageNeedsDownloading);
    session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
    session.Click("cmdDownload");

    EXPECT_FALSE(session.State().mfDownloading);
    EXPECT_EQ(session.host.intPointer, PointerDefault);
    EXPECT_FALSE(TransactionIsOpen());
    EXPECT_THAT(Boxes(), ElementsAre("box stop: driver failed"));
    // At most the one page that failed is unread; pattern and reference are current even so.
    int intUnread = 0;
    for (const TabNumEnum ePage : TransferPages) intUnread += session.StateOf(ePage) == ePageNeedsDownloading ? 1 : 0;
    EXPECT_LE(intUnread, 1);
    EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
    EXPECT_THAT(Dirty(), IsEmpty());

    session.Click("cmdDownload");
    EXPECT_THAT(Boxes(), IsEmpty());
    for (const TabNumEnum ePage : TransferPages) EXPECT_EQ(session.StateOf(ePage), ePageIsCurrent) << ePage;
    if (HasFailure()) break;
  }
}

TEST_F(DriverCallFaults, EachFailingCallOfASessionStartEndsInABoxAndASecondStartSucceeds) {
  session.Open();  // ends the session that there is
  session.Forget();
  session.Open();
  const std::vector<std::string> arrCalls = session.driver.TakeTrace();
  for (std::size_t k = 0; k < arrCalls.size(); ++k) {
    SCOPED_TRACE(std::to_string(k) + " " + arrCalls[k]);
    auto &list = session.Get<ListView>("lvwInstruments");
    if (list.Item(0)->Checked()) session.Open();
    session.Forget();
    session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
    session.Open();
    EXPECT_FALSE(Boxes().empty());
    EXPECT_EQ(session.host.intPointer, PointerDefault);
    EXPECT_FALSE(session.State().mfDownloading);
    EXPECT_FALSE(session.State().mfForceDownloadAll);
    // After an opening that failed by itself the class still holds the instrument, with no channels and no tick.
    const bool fOpenFailed = Contains(arrCalls[k], ".Open(");
    EXPECT_EQ(session.instr->IsOnline(True), Boolean(fOpenFailed || list.Item(0)->Checked()));
    if (fOpenFailed) {
      EXPECT_EQ(session.instr->ChannelCount().value_or(0), 0);
    }

    if (list.Item(0)->Checked()) session.Open();
    session.Forget();
    session.Open();
    EXPECT_TRUE(list.Item(0)->Checked());
    EXPECT_THAT(Boxes(), IsEmpty());
    if (HasFailure()) break;
  }
}

TEST_F(DriverCallFaults, EachFailingCallOfARefreshLeavesTheListUsable) {
  session.Forget();
  session.Click("cmdRefresh");
  const std::vector<std::string> arrCalls = session.driver.TakeTrace();
  EXPECT_THAT(Boxes(), IsEmpty());
  for (std::size_t k = 0; k < arrCalls.size(); ++k) {
    SCOPED_TRACE(std::to_string(k) + " " + arrCalls[k]);
    session.Forget();
    session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
    session.Click("cmdRefresh");
    EXPECT_EQ(session.host.intPointer, PointerDefault);
    session.driver.ClearFaults();
    session.Forget();
    session.Click("cmdRefresh");
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_EQ(session.Get<ListView>("lvwInstruments").Count(), 1);
    if (HasFailure()) break;
  }
}

TEST_F(DriverCallFaults, EachFailingCallOfACommandIsReportedAndReleasesThePointer) {
  session.ShowPage(ePageConfig);
  for (const char *strButton : {"cmdResetInstr", "cmdSelfTest", "cmdCalibrate", "cmdCheckErrors", "cmdCheckWarnings"}) {
    session.Forget();
    session.Click(strButton);
    const std::vector<std::string> arrCalls = session.driver.TakeTrace();
    const std::size_t own = strButton == std::string("cmdResetInstr") ? 1 : arrCalls.size();
    for (std::size_t k = 0; k < own; ++k) {
      SCOPED_TRACE(strButton + (" " + arrCalls[k]));
      session.Forget();
      session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
      session.Click(strButton);
      EXPECT_THAT(Boxes(), testing::Contains("box stop: driver failed"));
      EXPECT_EQ(session.host.intPointer, PointerDefault);
      EXPECT_TRUE(session.instr->IsOnline(True));
    }
  }
}

TEST_F(DriverCallFaults, ADriverThatIsGoneEndsAnUploadAndADownloadInBoxesAndNotInAHang) {
  Mark(ePageIsDirty);
  session.driver.FailAt(1, TheFailure, 1000000);
  session.Click("cmdUpload");
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_FALSE(session.InTransaction());
  session.Click("cmdDownload");
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_FALSE(session.State().mfDownloading);
  session.driver.ClearFaults();
  session.Forget();
  session.Click("cmdDownload");
  EXPECT_THAT(Boxes(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
