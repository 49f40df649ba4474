#include <gmock/gmock.h>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WatchedCalls.h"
#include "WidgetEnvironment.h"
#include "platform/PictureBox.h"
#include "platform/TabControl.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Colour ButtonShadow = SystemColour | 16, DarkShadow = SystemColour | 21;

class PageState : public testing::Test {
 protected:
  PageState() { session.host.TakeLines(); }

  PictureBox &Download() { return session->Get<PictureBox>("picDownloadHighlight"); }
  PictureBox &Upload() { return session->Get<PictureBox>("picUploadHighlight"); }
  std::array<TabStates, eNumPages> &States() { return TarvikGUI::Panel::Of(*session.panel).state.meTabState; }
  void Set(TabStates eState, TabNumEnum ePage) { session.panel->SetTabState(eState, ePage); }

  SimulatorSession session{{{"AutoDownload", "0"}}};
};

TEST_F(PageState, TheHighlightsFollowTheVisiblePageAndTheChangesElsewhere) {
  session->ShowPage(ePageLimits);
  Set(ePageNeedsDownloading, eCurrPage);
  EXPECT_TRUE(Download().Visible());
  EXPECT_FALSE(Upload().Visible());
  Set(ePageIsDirty, ePageMode);
  EXPECT_FALSE(Download().Visible());
  EXPECT_TRUE(Upload().Visible());
  EXPECT_EQ(Upload().BackColor(), ButtonShadow);
  Set(ePageIsDirty, eCurrPage);
  EXPECT_EQ(Upload().BackColor(), DarkShadow);
  Set(ePageIsCurrent, eAllPages);
  EXPECT_FALSE(Download().Visible());
  EXPECT_FALSE(Upload().Visible());
}

TEST_F(PageState, AllPagesAreCurrentAtTheStart) {
  EXPECT_THAT(States(), Each(ePageIsCurrent));
  EXPECT_FALSE(Download().Visible());
  EXPECT_FALSE(Upload().Visible());
}

TEST_F(PageState, TheShadowsLieBehindTheirButtonsALittleToTheRightAndBelow) {
  for (const auto &[strPicture, strButton] :
       {std::pair{"picDownloadHighlight", "cmdDownload"}, std::pair{"picUploadHighlight", "cmdUpload"}}) {
    const QWidget &picture = session->Get<QWidget>(strPicture), &button = session->Get<QWidget>(strButton);
    EXPECT_EQ(picture.parentWidget(), button.parentWidget());
    EXPECT_EQ(picture.size(), button.size()) << strPicture;
    EXPECT_GT(picture.x(), button.x()) << strPicture;
    EXPECT_GT(picture.y(), button.y()) << strPicture;
    const QObjectList &order = button.parentWidget()->children();
    EXPECT_LT(order.indexOf(const_cast<QWidget *>(&picture)), order.indexOf(const_cast<QWidget *>(&button)));
  }
}

TEST_F(PageState, ADirtyMarkDuringADownloadLeavesAlsoTheHighlights) {
  session->ShowPage(ePageLimits);
  Set(ePageIsDirty, eCurrPage);
  Set(ePageNeedsDownloading, ePageMode);
  States()[ePageLimits] = ePageIsCurrent;  // behind the panel's back: the highlight is out of date now
  TarvikGUI::Panel::Of(*session.panel).state.mfDownloading = True;
  Set(ePageIsDirty, eCurrPage);
  EXPECT_TRUE(Upload().Visible());
  EXPECT_EQ(Upload().BackColor(), DarkShadow);
}

TEST_F(PageState, ThePageInFrontIsMeantByItsOwnName) {
  session->ShowPage(ePagePattern);
  Set(ePageIsDirty, eCurrPage);
  EXPECT_EQ(States()[ePagePattern], ePageIsDirty);
  EXPECT_EQ(States()[ePageInstr], ePageIsCurrent);
}

TEST_F(PageState, AnUnknownStateIsAnIllegalCase) {
  Set(static_cast<TabStates>(7), eCurrPage);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Illegal case"));
}

TEST_F(PageState, WithPageOnlyADirtyPageElsewhereLeavesNoMarkUntilItIsEntered) {
  session->Get<FrameEnhanced>("grpUpload").SetValue(std::string());
  Set(ePageIsDirty, ePageMode);
  session->ShowPage(ePageLimits);
  EXPECT_FALSE(Upload().Visible());
  session->ShowPage(ePageMode);
  EXPECT_TRUE(Upload().Visible());
  EXPECT_EQ(Upload().BackColor(), DarkShadow);
}

TEST_F(PageState, EnteringTheOptionsMakesThemCurrentAndLeavingThemDoesNothing) {
  Set(ePageNeedsDownloading, eAllPages);
  session->ShowPage(ePageOptions);
  EXPECT_EQ(States()[ePageOptions], ePageIsCurrent);
  EXPECT_FALSE(Download().Visible());
  Set(ePageNeedsDownloading, ePageOptions);
  session->ShowPage(ePageLimits);
  EXPECT_EQ(States()[ePageOptions], ePageNeedsDownloading);
  EXPECT_TRUE(Download().Visible());
}

TEST_F(PageState, EnteringTheInstrumentListMakesItCurrent) {
  session->ShowPage(ePageLimits);
  Set(ePageNeedsDownloading, eAllPages);
  session->ShowPage(ePageInstr);
  EXPECT_EQ(States()[ePageInstr], ePageIsCurrent);
  EXPECT_EQ(States()[ePageLimits], ePageNeedsDownloading);
}

TEST_F(PageState, TheOptionsMarkNoPage) {
  session->ShowPage(ePageOptions);
  for (const char *strName : {"chkAutoErrors", "chkAutoWarnings", "chkAutoDownload", "chkAutoDownOnError",
                              "chkAutoOutputOnOff", "optDownload(1)", "optUpload(1)"})
    session->Choose(strName);
  EXPECT_THAT(States(), Each(ePageIsCurrent));
}

struct FocusRow {
  TabNumEnum ePage;
  const char *strControl;
};

class FocusOnEntry : public PageState, public testing::WithParamInterface<FocusRow> {};

TEST_P(FocusOnEntry, GoesToTheFirstControlOfThePage) {
  std::vector<std::string> arrAsked;
  const auto connection =
      FocusRequested().ConnectScoped([&](const std::string &strName) { arrAsked.push_back(strName); });
  if (GetParam().ePage == ePageInstr) session->ShowPage(ePageOptions);
  arrAsked.clear();
  session->ShowPage(GetParam().ePage);
  EXPECT_THAT(arrAsked, ElementsAre(GetParam().strControl));
}

INSTANTIATE_TEST_SUITE_P(
    Pages, FocusOnEntry,
    testing::Values(FocusRow{ePageInstr, "cmdRefresh"}, FocusRow{ePageMode, "optTriggerMode(0)"},
                    FocusRow{ePageTiming, "cmdPeriodOrFreq"}, FocusRow{ePageLevels, "optChannel1Output(3)"},
                    FocusRow{ePagePattern, "BitPattern1"}, FocusRow{ePageLimits, "optLimitsChanel(1)"},
                    FocusRow{ePageTrigLev, "optTrigLevelExtIn(0)"}, FocusRow{ePageConfig, "cboPllRefSource"},
                    FocusRow{ePageOptions, "optUpload(0)"}),
    [](const testing::TestParamInfo<FocusRow> &test) {
      return "Page" + std::to_string(static_cast<int>(test.param.ePage));
    });

TEST_F(PageState, ASessionMarksEveryPageButTheListAsUnread) {
  session.Open("VP-210");
  EXPECT_THAT(States(), ElementsAre(ePageIsCurrent, ePageNeedsDownloading, ePageNeedsDownloading, ePageNeedsDownloading,
                                    ePageNeedsDownloading, ePageNeedsDownloading, ePageNeedsDownloading,
                                    ePageNeedsDownloading, ePageNeedsDownloading));
  EXPECT_FALSE(Download().Visible());
  session->ShowPage(ePageTiming);
  EXPECT_TRUE(Download().Visible());
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(PageState, AFieldThatTheUserChangesMarksThePageInFront) {
  session.Open("VP-210");
  session->ShowPage(ePageLimits);
  session->Type("esLimitHighVoltage(0)", "3V");
  EXPECT_EQ(States()[ePageLimits], ePageIsDirty);
  EXPECT_TRUE(Upload().Visible());
  EXPECT_FALSE(Download().Visible());
}

TEST_F(PageState, AnOutputSwitchWithoutImmediateSendingMarksTimingAndLevels) {
  session->ShowPage(ePageOptions);
  session->Choose("chkAutoOutputOnOff");
  session->ShowPage(ePageTiming);
  session->Choose("optChannel1Output(0)");
  EXPECT_EQ(States()[ePageTiming], ePageIsDirty);
  EXPECT_EQ(States()[ePageLevels], ePageIsDirty);
  EXPECT_EQ(States()[ePageMode], ePageIsCurrent);
}

TEST_F(PageState, AnOutputSwitchThatIsSentAtOnceMarksNothing) {
  session.Open("VP-220");
  Set(ePageIsCurrent, eAllPages);
  session->ShowPage(ePageTiming);
  session->Choose("optChannel2Output(0)");
  EXPECT_THAT(States(), Each(ePageIsCurrent));
  const auto channels = Fetch(session.Instrument("VP-220"), &kolven::IInstrument::GetChannels);
  const auto levels = automation::Narrow<kolven::IChannelLevels>(
      Fetch(Fetch(channels, &kolven::IChannelList::GetItem, 2), &kolven::IChannel::GetLevels));
  EXPECT_TRUE(Read(levels, &kolven::IChannelLevels::GetOutput));
}

}  // namespace
}  // namespace tarvik::test
