#include <gmock/gmock.h>

#include "PanelSession.h"
#include "PanelStart.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TrigLevPageTest : public testing::Test {
 protected:
  TrigLevPageTest() {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePageTrigLev);
    session.Forget();
  }
  InstrumentSettings &Driver() { return session.driver.Find("Alpha")->settings; }
  bool Chosen(const char *strName) { return session.Get<OptionButton>(strName).Value(); }
  Double Value(const char *strName) { return session.Field(strName).Value(); }

  PanelSession session{{.fAutoDownload = false}};
};

TEST_F(TrigLevPageTest, ThePageStartsAsDesigned) {
  EXPECT_TRUE(Chosen("optTrigLevelExtIn(0)"));
  EXPECT_TRUE(Chosen("optTrigLevelClkInImp(0)"));
  EXPECT_TRUE(Chosen("optTrigLevelStrobeOut(0)"));
  EXPECT_DOUBLE_EQ(Value("esTrgLevExtInThreshold"), 2.5);
  EXPECT_THAT(session.Items("cboVxiTriggerSource"), ElementsAre("Trigger=1", "Strobe=2"));
  EXPECT_THAT(session.Items("cboVxiTriggerEnable"),
              ElementsAre("VXI ECLT 0=5", "VXI ECLT 1=6", "VXI TTLT 0=7", "VXI TTLT 1=8", "VXI TTLT 2=9",
                          "VXI TTLT 3=10", "VXI TTLT 4=11", "VXI TTLT 5=12", "VXI TTLT 6=13", "VXI TTLT 7=14"));
  EXPECT_EQ(session.List("cboVxiTriggerEnable").Text(), "VXI TTLT 0");
  EXPECT_EQ(session.List("cboVxiTriggerSource").Text(), "Trigger");
}

TEST_F(TrigLevPageTest, EclSetsItsThresholdAndATypedValueIsCustom) {
  session.Choose("optTrigLevelExtIn(1)");
  EXPECT_DOUBLE_EQ(Value("esTrgLevExtInThreshold"), -1.3);
  EXPECT_EQ(session.StateOf(ePageTrigLev), ePageIsDirty);
  session.Type("esTrgLevExtInThreshold", "1V");
  EXPECT_TRUE(Chosen("optTrigLevelExtIn(2)"));
  EXPECT_DOUBLE_EQ(Value("esTrgLevExtInThreshold"), 1);
  // The clock input has its own.
  EXPECT_TRUE(Chosen("optTrigLevelClkIn(0)"));
  EXPECT_DOUBLE_EQ(Value("esTrgLevClkInThreshold"), 2.5);
}

TEST_F(TrigLevPageTest, CustomKeepsTheThreshold) {
  session.Choose("optTrigLevelClkIn(2)");
  EXPECT_DOUBLE_EQ(Value("esTrgLevClkInThreshold"), 2.5);
  EXPECT_EQ(session.StateOf(ePageTrigLev), ePageIsDirty);
}

TEST_F(TrigLevPageTest, TheOtherOptionsMarkThePage) {
  for (const char *strName :
       {"optTrigLevelExtInImp(1)", "optTrigLevelClkInImp(1)", "optTrigLevelTrigOut(1)", "optTrigLevelStrobeOut(1)"}) {
    session.panel->SetTabState(ePageIsCurrent, eAllPages);
    session.Choose(strName);
    EXPECT_EQ(session.StateOf(ePageTrigLev), ePageIsDirty) << strName;
  }
}

struct ThresholdRow {
  Double dblThreshold;
  const char *strChosen;
};

TEST_F(TrigLevPageTest, ADownloadFindsThePresetOfAThreshold) {
  for (const ThresholdRow &row :
       {ThresholdRow{2.5, "optTrigLevelClkIn(0)"}, ThresholdRow{1.7, "optTrigLevelClkIn(2)"},
        ThresholdRow{-1.3, "optTrigLevelClkIn(1)"}, ThresholdRow{0, "optTrigLevelClkIn(2)"}}) {
    Driver().dblClockThreshold = row.dblThreshold;
    session.Click("cmdDownload");
    EXPECT_TRUE(Chosen(row.strChosen)) << row.dblThreshold;
    EXPECT_DOUBLE_EQ(Value("esTrgLevClkInThreshold"), row.dblThreshold);
  }
  EXPECT_EQ(session.StateOf(ePageTrigLev), ePageIsCurrent);
}

TEST_F(TrigLevPageTest, ADownloadFillsThePage) {
  Driver().dblExtImpedance = 50;
  Driver().dblClockImpedance = 10000;
  Driver().lngTriggerOut = 1;
  Driver().lngStrobeOut = 0;
  Driver().lngVxiSource = 2;
  Driver().lngVxiLine = 14;
  session.Click("cmdDownload");
  EXPECT_TRUE(Chosen("optTrigLevelExtInImp(1)"));
  EXPECT_TRUE(Chosen("optTrigLevelClkInImp(0)"));
  EXPECT_TRUE(Chosen("optTrigLevelTrigOut(1)"));
  EXPECT_TRUE(Chosen("optTrigLevelStrobeOut(0)"));
  EXPECT_EQ(session.List("cboVxiTriggerSource").Text(), "Strobe");
  EXPECT_EQ(session.List("cboVxiTriggerEnable").Text(), "VXI TTLT 7");
}

TEST_F(TrigLevPageTest, ValuesWithoutAChoiceLeaveTheirGroupsInSilence) {
  Driver().dblExtImpedance = 75;
  Driver().lngTriggerOut = 9;
  Driver().lngVxiLine = 99;
  session.Click("cmdDownload");
  EXPECT_TRUE(Chosen("optTrigLevelExtInImp(0)"));
  EXPECT_TRUE(Chosen("optTrigLevelTrigOut(0)"));
  EXPECT_EQ(session.List("cboVxiTriggerEnable").Text(), "VXI TTLT 0");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(TrigLevPageTest, AnUploadSendsThePage) {
  session.Type("esTrgLevExtInThreshold", "1.25V");
  session.Choose("optTrigLevelClkIn(1)");
  session.Choose("optTrigLevelExtInImp(1)");
  session.Choose("optTrigLevelTrigOut(1)");
  session.Take("cboVxiTriggerEnable", 0);
  session.Take("cboVxiTriggerSource", 1);
  session.Click("cmdUpload");
  EXPECT_DOUBLE_EQ(Driver().dblExtThreshold, 1.25);
  EXPECT_DOUBLE_EQ(Driver().dblClockThreshold, -1.3);
  EXPECT_DOUBLE_EQ(Driver().dblExtImpedance, 50);
  EXPECT_DOUBLE_EQ(Driver().dblClockImpedance, 10000);
  EXPECT_EQ(Driver().lngTriggerOut, 1);
  EXPECT_EQ(Driver().lngStrobeOut, 0);
  EXPECT_EQ(Driver().lngVxiLine, 5);
  EXPECT_EQ(Driver().lngVxiSource, 2);
  EXPECT_EQ(session.StateOf(ePageTrigLev), ePageIsCurrent);
}

TEST(TrigLevPageUnderAComma, ThresholdsFindTheirPresets) {
  PanelSession session({.fAutoDownload = false});
  session.host.chSeparator = ',';
  session.panel->hide();
  ShowAndStart(*session.panel);
  session.Open();
  session.driver.Find("Alpha")->settings.dblClockThreshold = 2.5;
  session.Get<FrameEnhanced>("grpTrigLevelClkIn").SetArrayIndex(2);
  session.Click("cmdDownload");
  EXPECT_TRUE(session.Get<OptionButton>("optTrigLevelClkIn(0)").Value());
}

}  // namespace
}  // namespace tarvik::test
