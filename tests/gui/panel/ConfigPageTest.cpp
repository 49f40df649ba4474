#include <gmock/gmock.h>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Text(const PanelUser &user, const char *strName) { return user.Get<DisplayField>(strName).Text(); }

class ConfigPageTest : public testing::Test {
 protected:
  ConfigPageTest() : user(*session.panel) {
    // Rows of one length, as an instrument has them.
    Driver().rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
    session.ShowPage(ePageConfig);
    session.Forget();
  }
  InstrumentSettings &Driver() { return session.driver.Find("Alpha")->settings; }

  PanelSession session;
  PanelUser user;
};

TEST_F(ConfigPageTest, TheListsStartWithTheInternalReference) {
  PanelSession fresh({.fOpen = false});
  EXPECT_THAT(fresh.Items("cboPllRefSource"), ElementsAre("Internal=1", "CLK-IN=0"));
  EXPECT_THAT(fresh.Items("cboPllRefFreq"), ElementsAre("5 MHz=5000000", "10 MHz=10000000"));
  EXPECT_EQ(fresh.List("cboPllRefSource").Text(), "Internal");
  EXPECT_FALSE(fresh.List("cboPllRefFreq").Enabled());
}

TEST_F(ConfigPageTest, OnlyAnExternalReferenceOffersAFrequency) {
  session.Take("cboPllRefSource", 1);
  EXPECT_TRUE(session.List("cboPllRefFreq").Enabled());
  EXPECT_EQ(session.List("cboPllRefFreq").Text(), "5 MHz");
  session.Take("cboPllRefFreq", 1);
  session.Take("cboPllRefSource", 0);
  EXPECT_FALSE(session.List("cboPllRefFreq").Enabled());
  EXPECT_EQ(session.List("cboPllRefFreq").ListIndex(), -1);
  session.Take("cboPllRefSource", 1);
  EXPECT_EQ(session.List("cboPllRefFreq").Text(), "10 MHz") << "the last choice comes back";
  EXPECT_EQ(session.StateOf(ePageConfig), ePageIsDirty);
}

TEST_F(ConfigPageTest, AnUploadSendsSourceAndFrequency) {
  session.Take("cboPllRefSource", 1);
  session.Take("cboPllRefFreq", 1);
  session.Forget();
  session.Click("cmdUpload");
  EXPECT_THAT(session.driver.arrTrace, Contains(HasSubstr("IPllReference{Alpha}.SetReference(10000000, 0)")));
  EXPECT_EQ(session.StateOf(ePageConfig), ePageIsCurrent);
}

TEST_F(ConfigPageTest, TheFrequencyTravelsAlsoWhenItsListIsDisabled) {
  session.panel->SetTabState(ePageIsDirty, ePageConfig);
  session.Click("cmdUpload");
  EXPECT_THAT(session.driver.arrTrace, Contains(HasSubstr("IPllReference{Alpha}.SetReference(5000000, 1)")));
}

TEST_F(ConfigPageTest, ADownloadShowsTheReferenceOfTheInstrument) {
  Driver().dblReference = 1e7;
  Driver().lngReferenceSource = 0;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboPllRefSource").Text(), "CLK-IN");
  EXPECT_EQ(session.List("cboPllRefFreq").Text(), "10 MHz");
  EXPECT_TRUE(session.List("cboPllRefFreq").Enabled());

  Driver().lngReferenceSource = 1;
  session.Click("cmdDownload");
  EXPECT_FALSE(session.List("cboPllRefFreq").Enabled());
}

TEST_F(ConfigPageTest, AnUnknownFrequencyLeavesTheListAsItIs) {
  Driver().dblReference = 1e7;
  Driver().lngReferenceSource = 0;
  session.Click("cmdDownload");
  Driver().dblReference = 7e6;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboPllRefFreq").Text(), "10 MHz");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(ConfigPageTest, AnUnreadableReferenceStillMarksThePageCurrent) {
  session.panel->SetTabState(ePageNeedsDownloading, ePageConfig);
  session.driver.FailMatching("IPllReference.GetReference", 1, {Refused, "no reference"});
  session.Click("cmdDownload");
  EXPECT_EQ(session.StateOf(ePageConfig), ePageIsCurrent);
}

TEST_F(ConfigPageTest, AnUnreadableIdentityLeavesThePageAsItIs) {
  user.Get<DisplayField>("txtProductId").SetText("before");
  session.panel->SetTabState(ePageNeedsDownloading, ePageConfig);
  session.driver.FailMatching("IInstrument.GetIdentity", 1, {Refused, "no identity"});
  session.Click("cmdDownload");
  EXPECT_EQ(Text(user, "txtProductId"), "before");
  EXPECT_EQ(session.StateOf(ePageConfig), ePageNeedsDownloading);
}

TEST_F(ConfigPageTest, AnIdentityWithTooFewFieldsIsABoundsFailure) {
  session.driver.Configure("Alpha", {{"identity", "MAKER,Alpha"}});
  session.Click("cmdDownload");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Subscript out of range"));
}

TEST_F(ConfigPageTest, WithoutATickTheListEntryFieldsKeepTheirContents) {
  for (const char *strName : {"txtSlot", "txtLogAddr", "txtModelCode"})
    user.Get<DisplayField>(strName).SetText("before");
  user.Instruments().Item(0)->SetChecked(False);
  session.driver.Configure("Alpha", {{"identity", "MAKER,Other,S,V"}});
  session.Click("cmdDownload");
  for (const char *strName : {"txtSlot", "txtLogAddr", "txtModelCode"}) EXPECT_EQ(Text(user, strName), "before");
  EXPECT_EQ(Text(user, "txtProductId"), "Other");
}

TEST_F(ConfigPageTest, ARefusedReferenceKeepsThePageDirty) {
  session.Take("cboPllRefSource", 1);
  session.driver.FailMatching("IPllReference.SetReference", 1, {Refused, "no such reference"});
  session.Forget();
  session.Click("cmdUpload");
  EXPECT_EQ(session.StateOf(ePageConfig), ePageIsDirty);
}

TEST(ConfigPageOfTheSimulator, ShowsWhoTheInstrumentIs) {
  SimulatorSession session;
  session.Open("VP-250F");
  const PanelUser &user = *session.user;
  EXPECT_EQ(Text(user, "txtNumChannels"), "2");
  EXPECT_EQ(Text(user, "txtSlot"), "7");
  EXPECT_EQ(Text(user, "txtLogAddr"), "48");
  EXPECT_EQ(Text(user, "txtModelCode"), "4095");
  EXPECT_EQ(Text(user, "txtProductId"), "VP-250F Fast Pulse Generator");
  EXPECT_EQ(Text(user, "txtSerialNumber"), "V250-00203");
  EXPECT_EQ(Text(user, "txtVersion"), "1.07");
  EXPECT_EQ(Text(user, "txtOptions"), "010 VXI trigger, 030 Fast edges");
}

TEST(ConfigPageOfTheSimulator, ShowsDashesForABox) {
  SimulatorSession session({{"WorkWithBoxes", "1"}});
  session.Open("VB-200");
  EXPECT_EQ(Text(*session.user, "txtSlot"), " - ");
  EXPECT_EQ(Text(*session.user, "txtLogAddr"), "9");
  EXPECT_EQ(Text(*session.user, "txtModelCode"), " - ");
}

TEST(ConfigPageOfTheSimulator, KeepsItsTextsWhenTheSessionEnds) {
  SimulatorSession session;
  session.Open("VP-210");
  session->Tick(0);
  EXPECT_EQ(Text(*session.user, "txtSerialNumber"), "V210-00417");
}

}  // namespace
}  // namespace tarvik::test
