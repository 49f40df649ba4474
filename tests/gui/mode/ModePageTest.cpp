#include <gmock/gmock.h>

#include "PanelSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Items = std::vector<std::string>;

const Items SinglePulses1{"Single Pulses at Output 1=1", "Double Pulses at Output 1=2"};
const Items SinglePulses2{"Single Pulses at Output 2=1", "Double Pulses at Output 2=2"};
const Items Formats1{"RZ Pulses at Output 1=1", "NRZ Pulses at Output 1=0"};
const Items Formats2{"RZ Pulses at Output 2=1", "NRZ Pulses at Output 2=0"};
const Items Slopes{"Rising=1", "Falling=0", "Both=2"};
const Items Gates{"High Level=1", "Low Level=0", "Always=2"};

/// Bit 4096 of the capability mask takes the VXI lines away.
constexpr int WithoutVxi = 4096, WithVxi = 0;

/// What a combination of modes shows while every list stands on its first choice.
struct ModeRow {
  const char *strName;
  Integer intTrigger, intPulse, intPos;
  bool fBurst, fPulseTypes, fPeriodSource, fArmingSource, fArmingLevel, fPll;
  const char *strSourceCaption, *strLevelCaption;
  Items arrLevels;
};

const ModeRow Rows[] = {
    {"continuous pulses", 0, 0, 1, false, true, true, false, false, false, " ", " ", {}},
    {"continuous burst", 0, 1, 2, true, true, true, false, false, false, " ", " ", {}},
    {"continuous pattern", 0, 2, 3, false, true, true, false, false, false, " ", " ", {}},
    {"triggered pulses", 1, 0, 5, false, true, false, true, true, false, "Triggered By", "Trigger Slope", Slopes},
    {"triggered burst", 1, 1, 6, true, true, true, true, true, false, "Triggered By", "Trigger Slope", Slopes},
    {"triggered pattern", 1, 2, 7, false, true, true, true, true, false, "Triggered By", "Trigger Slope", Slopes},
    {"gated pulses", 2, 0, 9, false, true, true, true, true, false, "Gated By", "Gate Level", Gates},
    {"gated burst", 2, 1, 10, true, true, true, true, true, false, "Gated By", "Gate Level", Gates},
    {"gated pattern", 2, 2, 11, false, true, true, true, true, false, "Gated By", "Gate Level", Gates},
    {"external width over pulses", 3, 0, 13, false, false, false, true, false, false, "Width", " ", {}},
    {"external width over burst", 3, 1, 14, false, false, false, true, false, false, "Width", " ", {}},
    {"external width over pattern", 3, 2, 15, false, false, false, true, false, false, "Width", " ", {}},
};

Items ArmingSources(int intMask, bool fPllAllowed) {
  Items arrItems;
  if (intMask == WithoutVxi) arrItems.push_back("Man. Key=4");
  arrItems.push_back("External Input=3");
  if (fPllAllowed) arrItems.push_back("Internal PLL=1");
  if (intMask == WithVxi)
    for (const char *strLine : {"VXI ECLT 0=5", "VXI ECLT 1=6", "VXI TTLT 0=7", "VXI TTLT 1=8", "VXI TTLT 2=9",
                                "VXI TTLT 3=10", "VXI TTLT 4=11", "VXI TTLT 5=12", "VXI TTLT 6=13", "VXI TTLT 7=14"})
      arrItems.push_back(strLine);
  return arrItems;
}

class ModeWalk : public testing::TestWithParam<int> {
 protected:
  ModeWalk() : session({.config = {{"mask", GetParam()}}, .fAutoDownload = false}) { session.ShowPage(ePageMode); }

  void GoTo(const ModeRow &row) {
    // The pulse mode cannot be reached under Ext-Width.
    if (session.State().meTriggerMode == 3) {
      // Without a selection the second list counts as NRZ while the first one is filled, and the editor hands that
      // back.
      fLeftForPattern = fLeftForPattern || session.State().mePulseMode == 2;
      session.Choose("optTriggerMode(0)");
    }
    session.Choose(("optPulseMode(" + std::to_string(row.intPulse) + ")").c_str());
    session.Choose(("optTriggerMode(" + std::to_string(row.intTrigger) + ")").c_str());
  }

  void ExpectShown(const ModeRow &row) {
    SCOPED_TRACE(row.strName);
    EXPECT_EQ(session.State().mintModePos, row.intPos);
    EXPECT_EQ(Boolean(session.Get<FrameEnhanced>("grpPulseMode").Enabled()), Boolean(row.intTrigger != 3));
    EXPECT_EQ(session.Field("esBurstLength").Enabled(), Boolean(row.fBurst));
    ExpectList("cboPulseType1", row.fPulseTypes);
    ExpectList("cboPulseType2", row.fPulseTypes, IsNrz(row) ? 1 : 0);
    ExpectList("cboPeriodSource", row.fPeriodSource);
    // The clock's edge waits for the clock as period source.
    ExpectList("cboTriggerSlope", false);
    ExpectList("cboArmingSource", row.fArmingSource);
    ExpectList("cboArmingLevel", row.fArmingLevel);
    EXPECT_EQ(session.Field("esPllPeriodOrFreq").Enabled(), Boolean(row.fPll));
    EXPECT_EQ(session.List("cboArmingSource").Caption(), row.strSourceCaption);
    EXPECT_EQ(session.List("cboArmingLevel").Caption(), row.strLevelCaption);

    const bool fPattern = row.intPulse == 2;
    if (row.fPulseTypes) {
      EXPECT_EQ(session.Items("cboPulseType1"), fPattern ? Formats1 : SinglePulses1);
      EXPECT_EQ(session.Items("cboPulseType2"), fPattern ? Formats2 : SinglePulses2);
    }
    EXPECT_THAT(session.Items("cboPeriodSource"), ElementsAre("Internal Oscillator=0", "Internal PLL=1", "CLK-IN=2"));
    EXPECT_THAT(session.Items("cboTriggerSlope"), ElementsAre("Rising=1", "Falling=0"));
    if (row.fArmingSource) {
      EXPECT_EQ(session.Items("cboArmingSource"), ArmingSources(GetParam(), row.intTrigger == 1 && row.intPulse != 0));
    }
    if (row.fArmingLevel) {
      EXPECT_EQ(session.Items("cboArmingLevel"), row.arrLevels);
    }
  }

  bool IsNrz(const ModeRow &row) const { return fLeftForPattern && row.intPos == 3; }

  void ExpectList(const char *strName, bool fEnabled, Long lngIndex = 0) {
    SCOPED_TRACE(strName);
    EXPECT_EQ(session.List(strName).Enabled(), Boolean(fEnabled));
    EXPECT_EQ(session.List(strName).ListIndex(), fEnabled ? lngIndex : -1);
  }

  void ExpectSent(const ModeRow &row) {
    SCOPED_TRACE(row.strName);
    session.Click("cmdUpload");
    const bool fArmed = row.intTrigger != 0;
    udtModeInfo expected;
    expected.TriggerMode = row.intTrigger;
    expected.PulseMode = row.intPulse;
    expected.BurstLength = 2;
    expected.PulseType = expected.SignalFormat = {1, IsNrz(row) ? 0 : 1};
    expected.PeriodSource = 0;
    expected.TriggerSlope = 3;
    expected.ArmingSource = !fArmed ? 0 : GetParam() == WithoutVxi ? 4 : 3;
    expected.ArmSlope = row.fArmingLevel ? 1 : 3;
    expected.PllFormat = 3;
    expected.PllPeriodOrFreq = 0;
    EXPECT_EQ(session.instr->mode, expected);
    EXPECT_EQ(session.StateOf(ePageMode), ePageIsCurrent);
  }

  bool fLeftForPattern = false;
  PanelSession session;
};

TEST_P(ModeWalk, EachCombinationShowsItsControlsForthAndBack) {
  for (const ModeRow &row : Rows) {
    GoTo(row);
    ExpectShown(row);
  }
  for (auto row = std::rbegin(Rows); row != std::rend(Rows); ++row) {
    GoTo(*row);
    ExpectShown(*row);
  }
}

TEST_P(ModeWalk, EachCombinationSendsItsRecordForthAndBack) {
  for (const ModeRow &row : Rows) {
    if (row.intPos == 1) continue;
    GoTo(row);
    EXPECT_EQ(session.StateOf(ePageMode), ePageIsDirty);
    ExpectSent(row);
  }
  for (auto row = std::next(std::rbegin(Rows)); row != std::rend(Rows); ++row) {
    GoTo(*row);
    ExpectSent(*row);
  }
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_P(ModeWalk, EachCombinationRemembersItsOwnChoices) {
  // The pulse type is left on its second item in every other combination.
  for (const ModeRow &row : Rows) {
    GoTo(row);
    if (row.fPulseTypes && row.intPos % 2 == 0) session.Take("cboPulseType1", 1);
    if (row.fArmingSource) session.Take("cboArmingSource", row.intPulse == 1 ? 1 : 0);
    if (row.fArmingLevel && row.intTrigger == 2) session.Take("cboArmingLevel", row.intPulse);
  }
  for (auto row = std::rbegin(Rows); row != std::rend(Rows); ++row) {
    SCOPED_TRACE(row->strName);
    GoTo(*row);
    if (row->fPulseTypes) {
      EXPECT_EQ(session.List("cboPulseType1").ListIndex(), row->intPos % 2 == 0 ? 1 : 0);
    }
    if (row->fPulseTypes) {
      EXPECT_EQ(session.List("cboPulseType2").ListIndex(), IsNrz(*row) ? 1 : 0);
    }
    if (row->fArmingSource) {
      EXPECT_EQ(session.List("cboArmingSource").ListIndex(), row->intPulse == 1 ? 1 : 0);
    }
    if (row->fArmingLevel && row->intTrigger == 2) {
      EXPECT_EQ(session.List("cboArmingLevel").ListIndex(), row->intPulse);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Models, ModeWalk, testing::Values(WithoutVxi, WithVxi), [](const auto &model) {
  return model.param == WithVxi ? std::string("WithVxiLines") : std::string("WithoutVxiLines");
});

class ModePageTest : public testing::Test {
 protected:
  ModePageTest() : session({.config = {{"mask", WithoutVxi}}, .fAutoDownload = false}) { session.ShowPage(ePageMode); }

  void TriggeredBurst() {
    session.Choose("optTriggerMode(1)");
    session.Choose("optPulseMode(1)");
  }

  PanelSession session;
};

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

TEST_F(ModePageTest, ThePllRecordCarriesFormatAndFrequency) {
  TriggeredBurst();
  session.Take("cboArmingSource", 2);
  session.Take("cboArmingLevel", 1);
  session.Type("esPllPeriodOrFreq", "250E3");
  session.Click("cmdUpload");
  EXPECT_EQ(session.instr->mode.ArmingSource, 1);
  EXPECT_EQ(session.instr->mode.ArmSlope, 3);
  EXPECT_EQ(session.instr->mode.PllFormat, 1);
  EXPECT_EQ(session.instr->mode.PllPeriodOrFreq, 250000);
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
  session.Take("cboPeriodSource", 2);
  EXPECT_THAT(session.Items("cboArmingLevel"), ElementsAre("Rising=1", "Falling=0", "Both=2"));
  session.Take("cboPeriodSource", 1);
  session.Choose("optPulseMode(0)");
  EXPECT_THAT(session.Items("cboArmingLevel"), ElementsAre("Rising=1", "Falling=0", "Both=2"));
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
  EXPECT_EQ(session.List("cboPulseType1").ListIndex(), 0);
  EXPECT_FALSE(session.List("cboPulseType1").SetListIndexByItemData(2));
  EXPECT_EQ(session.Field("esDelay(0)").Caption(), "Delay");
  EXPECT_FALSE(session.State().mfDoublePulse[1]);
}

TEST_F(ModePageTest, PatternSendsTheFormatsInBothPlaces) {
  session.Choose("optPulseMode(2)");
  session.Take("cboPulseType2", 1);
  session.Click("cmdUpload");
  EXPECT_EQ(session.instr->mode.PulseType, (ChannelArray<Long>{1, 0}));
  EXPECT_EQ(session.instr->mode.SignalFormat, (ChannelArray<Long>{1, 0}));
}

TEST_F(ModePageTest, DoublePulsesAreSentInBothPlaces) {
  session.Take("cboPulseType1", 1);
  session.Click("cmdUpload");
  EXPECT_EQ(session.instr->mode.PulseType, (ChannelArray<Long>{2, 1}));
  EXPECT_EQ(session.instr->mode.SignalFormat, (ChannelArray<Long>{2, 1}));
}

TEST_F(ModePageTest, TheBurstLengthIsSentRounded) {
  session.Choose("optPulseMode(1)");
  session.Type("esBurstLength", "17");
  session.Click("cmdUpload");
  EXPECT_EQ(session.instr->mode.BurstLength, 17);
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
