#include <gmock/gmock.h>

#include "PanelSession.h"
#include "WatchedCalls.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// 1 MHz, pulses of 100 ns without delay, both normal outputs on.
void SetBench(InstrumentSettings &settings) {
  for (ChannelSettings &channel : settings.channels) {
    channel.dblFrequency = 1e6;
    channel.dblWidth = 1e-7;
    channel.dblLeading = channel.dblTrailing = 2e-9;
    channel.dblSingleDelay = channel.dblDoubleDelay = 0;
    channel.lngCoupling = 0;
    channel.fOutput = True;
  }
}

class TimingPageTest : public testing::Test {
 protected:
  explicit TimingPageTest(const StandInConfig &config = {}, bool fAutoOutput = false)
      : session({.config = config, .fAutoOutput = fAutoOutput, .fOpen = false}) {
    SetBench(session.driver.Find("Alpha")->settings);
    session.Open();
    session.ShowPage(ePageTiming);
    session.State().meTabState.fill(ePageIsCurrent);
    // Each drawing of the diagram begins with a clear box.
    m_drawn = Drawn().ConnectScoped([this](const PictureBox &picture, const DrawPrimitive &primitive) {
      if (&picture == &session.Get<PictureBox>("picTiming") && primitive.kind == DrawPrimitive::Kind::Clear) ++intDrawn;
    });
    session.Forget();
  }

  EngrSpin &Width(int k) { return session.Field(k ? "esWidth(1)" : "esWidth(0)"); }
  EngrSpin &Delay(int k) { return session.Field(k ? "esDelay(1)" : "esDelay(0)"); }
  EngrSpin &Leading(int k) { return session.Field(k ? "esLeadingEdge(1)" : "esLeadingEdge(0)"); }
  EngrSpin &Trailing(int k) { return session.Field(k ? "esTrailingEdge(1)" : "esTrailingEdge(0)"); }
  EngrSpin &Period() { return session.Field("esPeriodOrFreq"); }
  TimingPage &Page() { return *TarvikGUI::Panel::Of(*session.panel).timingPage; }
  Boolean IsOn(const char *strButton) { return session.Get<OptionButton>(strButton).Value(); }

  void SwitchAllOff() {
    for (const char *strOff : {"optChannel1Output(1)", "optChannel2Output(1)"}) session.Choose(strOff);
  }

  int intDrawn = 0;
  PanelSession session;

 private:
  Event<const PictureBox &, const DrawPrimitive &>::Connection m_drawn;
};

TEST_F(TimingPageTest, AFrequencyTooHighForTheWidthComesDownAlsoWhereItsPeriodIsRoundedBelowTheWidth) {
  // 1 / (1 / 7 us) is a hair below 7 us, as it is for one width in twelve.
  session.Type("esPeriodOrFreq", "20us");
  session.Type("esWidth(0)", "7us");
  session.Click("cmdPeriodOrFreq");
  intDrawn = 0;
  session.Type("esPeriodOrFreq", "1MHz");
  EXPECT_DOUBLE_EQ(Period().Value(), 1 / 7e-6);
  EXPECT_DOUBLE_EQ(Width(0).Value(), 7e-6);
  EXPECT_EQ(intDrawn, 2) << "once for the typed frequency, once for the one that the rule made of it";
}

TEST_F(TimingPageTest, ATypedPeriodGrowsToTheWidth) {
  Width(0).SetMax(1);
  Width(0).SetValue(2e-6);
  session.Type("esPeriodOrFreq", "1E-6");
  EXPECT_DOUBLE_EQ(Period().Value(), 2e-6);
  EXPECT_EQ(Width(0).Min(), 1.515e-9);
  EXPECT_DOUBLE_EQ(Width(0).Max(), 2e-6);
  EXPECT_EQ(Delay(1).Min(), 0);
  EXPECT_DOUBLE_EQ(Delay(1).Max(), 2e-6);
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsDirty);
}

TEST_F(TimingPageTest, WithAllOutputsOffNoRangeMoves) {
  SwitchAllOff();
  Width(0).SetMax(1);
  Width(0).SetValue(2e-6);
  const Double dblMin = Width(0).Min(), dblDelayMax = Delay(0).Max();
  session.Type("esPeriodOrFreq", "1E-6");
  EXPECT_DOUBLE_EQ(Period().Value(), 1e-6);
  EXPECT_EQ(Width(0).Max(), 1);
  EXPECT_EQ(Width(0).Min(), dblMin);
  EXPECT_EQ(Delay(0).Max(), dblDelayMax);
}

TEST_F(TimingPageTest, AnInverseOutputAloneCounts) {
  SwitchAllOff();
  session.Choose("optChannel2InvOutput(0)");
  Width(1).SetMax(1);
  Width(1).SetValue(3e-6);
  session.Type("esPeriodOrFreq", "1E-6");
  EXPECT_DOUBLE_EQ(Period().Value(), 3e-6);
}

TEST_F(TimingPageTest, DoublePulsesHaveHalfThePeriod) {
  session.ShowPage(ePageMode);
  session.Take("cboPulseType1", 1);
  session.ShowPage(ePageTiming);
  Width(0).SetValue(2e-8);
  Width(1).SetValue(2e-8);
  session.Type("esPeriodOrFreq", "1E-7");
  EXPECT_DOUBLE_EQ(Width(0).Max(), 5e-8);
  EXPECT_DOUBLE_EQ(Delay(0).Min(), 2e-8);
  EXPECT_DOUBLE_EQ(Delay(0).Max(), 1e-7);
  EXPECT_DOUBLE_EQ(Width(1).Max(), 1e-7);
  EXPECT_EQ(Delay(1).Min(), 0);
  session.Type("esWidth(0)", "2E-8");
  EXPECT_DOUBLE_EQ(Delay(0).Min(), 2e-8);
  EXPECT_DOUBLE_EQ(Delay(0).Max(), 8e-8);
}

TEST_F(TimingPageTest, TheToggleKeepsThePeriodAndDrawsNothing) {
  session.Click("cmdPeriodOrFreq");
  EXPECT_EQ(session.Get<CommandButton>("cmdPeriodOrFreq").Caption(), "Frequency");
  EXPECT_EQ(Period().BaseUnit(), "Hz");
  EXPECT_DOUBLE_EQ(Period().Value(), 1e6);
  session.Click("cmdPeriodOrFreq");
  EXPECT_EQ(session.Get<CommandButton>("cmdPeriodOrFreq").Caption(), "Period");
  EXPECT_EQ(Period().BaseUnit(), "s");
  EXPECT_DOUBLE_EQ(Period().Value(), 1e-6);
  EXPECT_EQ(intDrawn, 0);
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
}

TEST_F(TimingPageTest, AFormCanBeForced) {
  Page().SetPeriodOrFreq(False, True);
  EXPECT_EQ(Period().BaseUnit(), "Hz");
  Page().SetPeriodOrFreq(False, True);
  EXPECT_EQ(Period().BaseUnit(), "Hz");
  Page().SetPeriodOrFreq(False, False);
  EXPECT_EQ(Period().BaseUnit(), "s");
  Page().SetPeriodOrFreq(False, False);
  EXPECT_EQ(Period().BaseUnit(), "s");
}

TEST_F(TimingPageTest, EachEditDrawsOnce) {
  for (const char *strField : {"esDelay(0)", "esWidth(1)", "esLeadingEdge(0)", "esTrailingEdge(1)"}) {
    intDrawn = 0;
    session.Type(strField, "5E-9");
    EXPECT_EQ(intDrawn, 1) << strField;
  }
  intDrawn = 0;
  session.Choose("optChannel1Output(1)");
  EXPECT_EQ(intDrawn, 0);
}

TEST_F(TimingPageTest, CouplingTakesTheLeadingEdgeAtOnce) {
  session.Type("esLeadingEdge(0)", "5E-9");
  EXPECT_DOUBLE_EQ(Trailing(0).Value(), 2e-9);
  session.TakeMenu("toolPopupTEdge(0)", "TeEqLe");
  EXPECT_FALSE(Trailing(0).Enabled());
  EXPECT_DOUBLE_EQ(Trailing(0).Value(), 5e-9);
  session.Type("esLeadingEdge(0)", "6E-9");
  EXPECT_DOUBLE_EQ(Trailing(0).Value(), 6e-9);
  EXPECT_TRUE(Trailing(1).Enabled());

  session.TakeMenu("toolPopupTEdge(0)", "TeAbs");
  EXPECT_TRUE(Trailing(0).Enabled());
  EXPECT_DOUBLE_EQ(Trailing(0).Value(), 6e-9);
  EXPECT_FALSE(session.State().mfTeEqLe[0]);
}

TEST_F(TimingPageTest, TheEdgeMenuMarksNoPage) {
  session.TakeMenu("toolPopupTEdge(1)", "TeEqLe");
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
  EXPECT_EQ(intDrawn, 1);
}

TEST_F(TimingPageTest, AnUnknownEdgeKeyIsReportedAndStillDraws) {
  Page().toolPopupTEdge_ButtonMenuClick(0, "TeOther");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Illegal case"));
  EXPECT_EQ(intDrawn, 1);
  EXPECT_TRUE(Trailing(0).Enabled());
}

TEST_F(TimingPageTest, ASwitchWithoutAutomaticOutputMarksBothPages) {
  session.Choose("optChannel1Output(1)");
  EXPECT_FALSE(session.State().mfOutputOn[1]);
  EXPECT_THAT(session.Calls({"SetOutput", "SetComplementOutput"}), IsEmpty());
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsDirty);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsDirty);
  EXPECT_EQ(session.StateOf(ePageMode), ePageIsCurrent);
}

TEST_F(TimingPageTest, ASwitchOfTheLevelsPageShowsOnTheNextEntry) {
  EXPECT_TRUE(IsOn("optChannel2Output(0)"));
  session.ShowPage(ePageLevels);
  session.Choose("optChannel2Output(3)");
  EXPECT_FALSE(session.State().mfOutputOn[2]);
  EXPECT_TRUE(IsOn("optChannel2Output(0)"));
  session.ShowPage(ePageTiming);
  EXPECT_TRUE(IsOn("optChannel2Output(1)"));
}

TEST_F(TimingPageTest, AWidthIsLockedInAPatternWithoutReturnToZero) {
  session.ShowPage(ePageMode);
  session.Choose("optPulseMode(2)");
  EXPECT_FALSE(Width(0).Locked());
  session.Take("cboPulseType1", 1);
  EXPECT_TRUE(Width(0).Locked());
  EXPECT_EQ(Width(0).Text(), "----");
  EXPECT_FALSE(Width(1).Locked());
  session.Choose("optPulseMode(0)");
  EXPECT_FALSE(Width(0).Locked());
  EXPECT_EQ(Width(0).Text(), "100.0");
}

TEST_F(TimingPageTest, TheFrontOfThePageIsThePeriodButton) {
  session.ShowPage(ePageLevels);
  session.ShowPage(ePageTiming);
  EXPECT_EQ(session.panel->focusWidget(), &session.Get<QWidget>("cmdPeriodOrFreq"));
}

TEST_F(TimingPageTest, NothingOnThePageIsClippedByItsNeighbour) {
  for (const char *strBox : {"grpTimingChan1", "grpTimingChan2"}) {
    QWidget *box = session.Get<FrameEnhanced>(strBox).Container();
    std::vector<QRect> arrPlaces;
    for (QObject *child : box->children()) {
      auto *widget = qobject_cast<QWidget *>(child);
      if (!widget || widget->objectName().isEmpty()) continue;
      EXPECT_TRUE(box->rect().contains(widget->geometry())) << widget->objectName().toStdString();
      for (const QRect &place : arrPlaces)
        EXPECT_FALSE(place.intersects(widget->geometry())) << widget->objectName().toStdString();
      arrPlaces.push_back(widget->geometry());
    }
    EXPECT_EQ(arrPlaces.size(), 7U);
  }
  auto &popup = session.Get<QWidget>("toolPopupTEdge(0)");
  EXPECT_GE(popup.width(), popup.minimumSizeHint().width());
}

class AutomaticOutputTest : public TimingPageTest {
 protected:
  AutomaticOutputTest() : TimingPageTest(StandInConfig(), true) {}
};

TEST_F(AutomaticOutputTest, ASwitchGoesToTheInstrumentAtOnce) {
  session.Choose("optChannel1Output(1)");
  session.Choose("optChannel2InvOutput(0)");
  EXPECT_THAT(
      session.Calls({"SetOutput", "SetComplementOutput"}),
      ElementsAre("IChannelLevels{Alpha.1}.SetOutput(False)", "IChannelLevels{Alpha.2}.SetComplementOutput(True)"));
  EXPECT_FALSE(session.driver.Find("Alpha")->settings.channels[0].fOutput);
  EXPECT_TRUE(session.driver.Find("Alpha")->settings.channels[1].fComplement);
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsCurrent);
}

TEST_F(AutomaticOutputTest, AFailingSwitchIsReportedAndKeepsTheFlag) {
  session.Choose("optChannel1Output(1)");
  const int intClean = static_cast<int>(session.driver.TakeTrace().size());
  ASSERT_GT(intClean, 2);
  int intFailed = 0;
  for (int n = 1; n <= intClean; ++n) {
    SCOPED_TRACE(n);
    session.driver.ClearFaults();
    session.Choose("optChannel1Output(0)");
    session.host.arrEntries.clear();
    session.driver.FailAt(n, {static_cast<Long>(0x80004005u), "broken"});
    session.Choose("optChannel1Output(1)");
    if (session.Failed("Output")) {
      ++intFailed;
      EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: broken"));
    }
    EXPECT_FALSE(session.State().mfOutputOn[1]);
    EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
    EXPECT_EQ(session.host.intPointer, 0);
  }
  EXPECT_GT(intFailed, 2);
}

class CoupledModelTest : public TimingPageTest {
 protected:
  CoupledModelTest() : TimingPageTest({{"mask", 4}}) {}
};

TEST_F(CoupledModelTest, TheTrailingEdgesAreLockedToTheLeadingEdges) {
  for (const int k : {0, 1}) {
    EXPECT_FALSE(Trailing(k).Enabled());
    EXPECT_TRUE(session.State().mfTeEqLe[static_cast<std::size_t>(k)]);
  }
  auto &popup = session.Get<ToolPopup>("toolPopupTEdge(0)");
  EXPECT_FALSE(popup.Enabled());
  EXPECT_EQ(popup.Tag(), "Locked");
  Page().SetTrailEdgeMode(0, False, False, False);
  EXPECT_FALSE(Trailing(0).Enabled());
  EXPECT_TRUE(session.State().mfTeEqLe[0]);
  Page().SetTrailEdgeMode(0, False, False, True);
  EXPECT_TRUE(Trailing(0).Enabled());
  EXPECT_TRUE(popup.Enabled());
  EXPECT_EQ(popup.Tag(), "");
  EXPECT_FALSE(session.State().mfTeEqLe[0]);
  EXPECT_EQ(Leading(0).ValueArray(), "");
}

class FixedEdgeModelTest : public TimingPageTest {
 protected:
  FixedEdgeModelTest() : TimingPageTest({{"mask", 16384}}) {}
};

TEST_F(FixedEdgeModelTest, TheLeadingEdgeTakesTwoValuesOnly) {
  EXPECT_EQ(Leading(0).ValueArray(), "0.8E-9;1.6E-9");
  EXPECT_EQ(Leading(1).ValueArray(), "0.8E-9;1.6E-9");
}

class OneChannelTest : public TimingPageTest {
 protected:
  OneChannelTest() : TimingPageTest({{"channels", 1}}) {}
};

TEST_F(OneChannelTest, OnlyTheUpperLaneIsDrawn) {
  session.Type("esWidth(0)", "5E-8");
  int intNumbers = 0;
  for (const DrawPrimitive &primitive : session.Get<PictureBox>("picTiming").DisplayList())
    if (primitive.kind == DrawPrimitive::Kind::Text) {
      ++intNumbers;
      EXPECT_EQ(primitive.strText, "1");
    }
  EXPECT_EQ(intNumbers, 1);
}

TEST_F(OneChannelTest, TheSecondBoxIsOutOfReach) {
  EXPECT_FALSE(session.Get<FrameEnhanced>("grpTimingChan2").Enabled());
  EXPECT_TRUE(session.Get<FrameEnhanced>("grpTimingChan1").Enabled());
}

}  // namespace
}  // namespace tarvik::test
