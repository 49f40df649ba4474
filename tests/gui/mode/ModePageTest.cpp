#include <gmock/gmock.h>

#include <QLineEdit>
#include <QTest>

#include "PanelSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;

using Items = std::vector<std::string>;

const Items SinglePulses1{"Single Pulses at Output 1=1", "Double Pulses at Output 1=2"};
const Items Formats1{"RZ Pulses at Output 1=1", "NRZ Pulses at Output 1=0"};
const Items Formats2{"RZ Pulses at Output 2=1", "NRZ Pulses at Output 2=0"};
const Items Sources{"Man. Key=4", "External Input=3"};
const Items SourcesAndPll{"Man. Key=4", "External Input=3", "Internal PLL=1"};
const Items Slopes{"Rising=1", "Falling=0", "Both=2"};
const Items Gates{"High Level=1", "Low Level=0", "Always=2"};

/// Bit 4096 of the capability mask takes the VXI lines away.
constexpr int WithoutVxi = 4096, WithVxi = 0;

class ModePageTest : public testing::Test {
 protected:
  explicit ModePageTest(int intMask = WithoutVxi) : session({.config = {{"mask", intMask}}, .fAutoDownload = false}) {
    session.ShowPage(ePageMode);
  }

  void Choose(Long eTrigger, Long ePulse) {
    // The pulse mode cannot be reached under Ext-Width.
    if (session.State().meTriggerMode == 3) session.Choose("optTriggerMode(0)");
    session.Choose(("optPulseMode(" + std::to_string(ePulse) + ")").c_str());
    session.Choose(("optTriggerMode(" + std::to_string(eTrigger) + ")").c_str());
  }
  void TriggeredBurst() { Choose(1, 1); }

  PanelSession session;
};

/// What a combination of modes shows while every list stands on its first choice.
struct ModeRow {
  Integer intPos;
  Long eTrigger, ePulse;
  bool fPulseMode, fBurst, fPulseTypes, fPeriodSource, fArmingSource, fArmingLevel;
  const char *strSourceCaption, *strLevelCaption;
  Items arrSources, arrLevels;
};

const ModeRow Rows[] = {
    {1, 0, 0, true, false, true, true, false, false, " ", " ", {}, {}},
    {5, 1, 0, true, false, true, false, true, true, "Triggered By", "Trigger Slope", Sources, Slopes},
    {6, 1, 1, true, true, true, true, true, true, "Triggered By", "Trigger Slope", SourcesAndPll, Slopes},
    {10, 2, 1, true, true, true, true, true, true, "Gated By", "Gate Level", Sources, Gates},
    {14, 3, 1, false, false, false, false, true, false, "Width", " ", Sources, {}},
};

TEST_F(ModePageTest, EveryControlFollowsTheModes) {
  const auto expectList = [this](const char *strName, bool fEnabled) {
    EXPECT_EQ(session.List(strName).Enabled(), Boolean(fEnabled)) << strName;
    EXPECT_EQ(session.List(strName).ListIndex(), fEnabled ? 0 : -1) << strName;
  };
  for (const ModeRow &row : Rows) {
    SCOPED_TRACE(row.intPos);
    Choose(row.eTrigger, row.ePulse);
    EXPECT_EQ(session.State().mintModePos, row.intPos);
    EXPECT_EQ(session.Get<FrameEnhanced>("grpPulseMode").Enabled(), Boolean(row.fPulseMode));
    EXPECT_EQ(session.Field("esBurstLength").Enabled(), Boolean(row.fBurst));
    EXPECT_FALSE(session.Field("esPllPeriodOrFreq").Enabled());
    expectList("cboPulseType1", row.fPulseTypes);
    expectList("cboPulseType2", row.fPulseTypes);
    expectList("cboPeriodSource", row.fPeriodSource);
    expectList("cboTriggerSlope", false);
    expectList("cboArmingSource", row.fArmingSource);
    expectList("cboArmingLevel", row.fArmingLevel);
    EXPECT_EQ(session.List("cboArmingSource").Caption(), row.strSourceCaption);
    EXPECT_EQ(session.List("cboArmingLevel").Caption(), row.strLevelCaption);
    if (row.fArmingSource) {
      EXPECT_EQ(session.Items("cboArmingSource"), row.arrSources);
    }
    if (row.fArmingLevel) {
      EXPECT_EQ(session.Items("cboArmingLevel"), row.arrLevels);
    }
  }
  EXPECT_EQ(session.Items("cboPulseType1"), SinglePulses1);
  EXPECT_THAT(session.Items("cboPeriodSource"), ElementsAre("Internal Oscillator=0", "Internal PLL=1", "CLK-IN=2"));
  EXPECT_THAT(session.Items("cboTriggerSlope"), ElementsAre("Rising=1", "Falling=0"));
}

TEST_F(ModePageTest, EachCombinationRemembersItsOwnChoices) {
  const auto forEachCombination = [this](auto &&visit) {
    for (const Long eTrigger : {0, 1, 2, 3})
      for (const Long ePulse : {0, 1, 2}) {
        SCOPED_TRACE(std::to_string(eTrigger) + ", " + std::to_string(ePulse));
        Choose(eTrigger, ePulse);
        visit(eTrigger, ePulse);
      }
  };
  // The pulse type and the arming source are left on their second item in a burst, the gate level on another item for
  // each pulse mode.
  forEachCombination([this](Long eTrigger, Long ePulse) {
    if (eTrigger != 3 && ePulse == 1) session.Take("cboPulseType1", 1);
    if (eTrigger != 0 && ePulse == 1) session.Take("cboArmingSource", 1);
    if (eTrigger == 2) session.Take("cboArmingLevel", ePulse);
  });
  forEachCombination([this](Long eTrigger, Long ePulse) {
    if (eTrigger != 3) {
      EXPECT_EQ(session.List("cboPulseType1").ListIndex(), ePulse == 1 ? 1 : 0);
    }
    if (eTrigger != 0) {
      EXPECT_EQ(session.List("cboArmingSource").ListIndex(), ePulse == 1 ? 1 : 0);
    }
    if (eTrigger == 2) {
      EXPECT_EQ(session.List("cboArmingLevel").ListIndex(), ePulse);
    }
  });
}

class VxiModePageTest : public ModePageTest {
 protected:
  VxiModePageTest() : ModePageTest(WithVxi) {}
};

TEST_F(VxiModePageTest, TheVxiLinesComeInPlaceOfTheKey) {
  TriggeredBurst();
  EXPECT_THAT(
      session.Items("cboArmingSource"),
      ElementsAre("External Input=3", "Internal PLL=1", "VXI ECLT 0=5", "VXI ECLT 1=6", "VXI TTLT 0=7", "VXI TTLT 1=8",
                  "VXI TTLT 2=9", "VXI TTLT 3=10", "VXI TTLT 4=11", "VXI TTLT 5=12", "VXI TTLT 6=13", "VXI TTLT 7=14"));
}

TEST_F(ModePageTest, ThePllAsArmingSourceOffersPeriodAndFrequency) {
  TriggeredBurst();
  session.Take("cboArmingSource", 2);
  EXPECT_EQ(session.List("cboArmingLevel").Caption(), "PLL Mode");
  EXPECT_THAT(session.Items("cboArmingLevel"), ElementsAre("Period=0", "Frequency=1"));
  EXPECT_EQ(session.List("cboArmingLevel").ListIndex(), 0);
  EngrSpin &field = session.Field("esPllPeriodOrFreq");
  EXPECT_TRUE(field.Enabled());
  EXPECT_EQ(field.Caption(), "Period");
  EXPECT_EQ(field.BaseUnit(), "s");

  session.Take("cboArmingLevel", 1);
  EXPECT_TRUE(field.Enabled());
  EXPECT_EQ(field.Caption(), "Frequency");
  EXPECT_EQ(field.BaseUnit(), "Hz");

  session.Take("cboArmingSource", 0);
  EXPECT_FALSE(field.Enabled());
  EXPECT_EQ(field.Caption(), "Frequency");
  EXPECT_THAT(session.Items("cboArmingLevel"), ElementsAre("Rising=1", "Falling=0", "Both=2"));
}

TEST_F(ModePageTest, ThePllIsSentWithItsFormatAndFrequency) {
  TriggeredBurst();
  session.Take("cboArmingSource", 2);
  session.Take("cboArmingLevel", 1);
  session.Type("esPllPeriodOrFreq", "250E3");
  session.Click("cmdUpload");
  EXPECT_THAT(session.Calls({"SetTriggeredBurst"}),
              ElementsAre("IModeSetup{Alpha}.SetTriggeredBurst(2, 0, 3, 1, 3, 1, 250000)"));
}

TEST_F(ModePageTest, ThePllIsRefusedAsPeriodSourceWhileItArms) {
  TriggeredBurst();
  session.Take("cboArmingSource", 2);
  session.Take("cboPeriodSource", 1);
  EXPECT_THAT(session.host.TakeLines(), ElementsAre("box exclamation: Pll source already in use!"));
  EXPECT_EQ(session.List("cboPeriodSource").ListIndex(), 0);
  EXPECT_EQ(session.List("cboArmingSource").ListIndex(), 2);
}

TEST_F(ModePageTest, ThePllIsRefusedAsArmingSourceWhileItGivesThePeriod) {
  TriggeredBurst();
  session.Take("cboPeriodSource", 1);
  session.Take("cboArmingSource", 2);
  EXPECT_THAT(session.host.TakeLines(), ElementsAre("box exclamation: Pll source already in use!"));
  EXPECT_EQ(session.List("cboArmingSource").ListIndex(), 0);
  EXPECT_EQ(session.List("cboPeriodSource").ListIndex(), 1);
  EXPECT_EQ(session.List("cboArmingLevel").Caption(), "Trigger Slope");
}

TEST_F(ModePageTest, BothSlopesGoWithoutThePllAsPeriodSource) {
  TriggeredBurst();
  session.Take("cboPeriodSource", 1);
  EXPECT_THAT(session.Items("cboArmingLevel"), ElementsAre("Rising=1", "Falling=0"));
}

TEST_F(ModePageTest, TheClockEdgeFollowsTheClockAsPeriodSource) {
  session.Take("cboPeriodSource", 2);
  EXPECT_TRUE(session.List("cboTriggerSlope").Enabled());
  EXPECT_EQ(session.List("cboTriggerSlope").ListIndex(), 0);
  session.Take("cboTriggerSlope", 1);
  session.Take("cboPeriodSource", 0);
  EXPECT_FALSE(session.List("cboTriggerSlope").Enabled());
  EXPECT_EQ(session.List("cboTriggerSlope").ListIndex(), -1);
  session.Take("cboPeriodSource", 2);
  EXPECT_EQ(session.List("cboTriggerSlope").ListIndex(), 1);
}

TEST_F(ModePageTest, TheGateLevelIsFoundAgainAfterTriggered) {
  session.Choose("optTriggerMode(2)");
  session.Take("cboArmingLevel", 2);
  session.Choose("optTriggerMode(1)");
  EXPECT_EQ(session.List("cboArmingLevel").Text(), "Rising");
  session.Choose("optTriggerMode(2)");
  EXPECT_EQ(session.List("cboArmingLevel").Text(), "Always");
}

TEST_F(ModePageTest, PatternRelabelsThePulseTypes) {
  session.Choose("optPulseMode(1)");
  session.Take("cboPulseType1", 1);
  EXPECT_EQ(session.List("cboPulseType1").GetCurrItemData(), 2);
  EXPECT_EQ(session.Field("esDelay(0)").Caption(), "Dbl. Delay");
  EXPECT_EQ(session.Field("esDelay(1)").Caption(), "Delay");
  session.Choose("optPulseMode(2)");
  EXPECT_EQ(session.Items("cboPulseType1"), Formats1);
  EXPECT_EQ(session.Items("cboPulseType2"), Formats2);
  EXPECT_EQ(session.List("cboPulseType1").ListIndex(), 0);
  EXPECT_FALSE(session.List("cboPulseType1").SetListIndexByItemData(2));
  EXPECT_EQ(session.Field("esDelay(0)").Caption(), "Delay");
  EXPECT_FALSE(session.State().mfDoublePulse[1]);
}

TEST_F(ModePageTest, DoublePulsesAreSent) {
  session.Take("cboPulseType1", 1);
  session.Click("cmdUpload");
  EXPECT_THAT(session.Calls({"SetPulseType"}),
              ElementsAre("IChannelTiming{Alpha.1}.SetPulseType(2)", "IChannelTiming{Alpha.2}.SetPulseType(1)"));
}

TEST_F(ModePageTest, TheBurstLengthIsSent) {
  session.Choose("optPulseMode(1)");
  session.Type("esBurstLength", "17");
  session.Click("cmdUpload");
  EXPECT_EQ(session.driver.Find("Alpha")->settings.lngBurstLength, 17);
}

TEST_F(ModePageTest, TabInTheLastFieldGoesBackToTheFirstControl) {
  TriggeredBurst();
  session.Take("cboArmingSource", 2);
  auto &text = *session.Field("esPllPeriodOrFreq").findChild<QLineEdit *>();
  text.setFocus();
  QTest::keyClick(&text, Qt::Key_Tab);
  EXPECT_EQ(session.panel->focusWidget(), &session.Get<QWidget>("optTriggerMode(1)"));
}

TEST_F(ModePageTest, ADisabledPageEntryTouchesNoState) {
  session.State().meTabState.fill(ePageIsCurrent);
  session.ShowPage(ePageTiming);
  session.ShowPage(ePageMode);
  EXPECT_EQ(session.StateOf(ePageMode), ePageIsCurrent);
}

}  // namespace
}  // namespace tarvik::test
