#include <gmock/gmock.h>

#include <cstdio>

#include "WidgetEnvironment.h"
#include "panel/TimingDiagram.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Point(Single sngX, Single sngY) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f,%.2f", static_cast<double>(sngX), static_cast<double>(sngY));
  return text;
}

std::string ToLine(const DrawPrimitive &primitive) {
  switch (primitive.kind) {
    case DrawPrimitive::Kind::Clear: return "clear";
    case DrawPrimitive::Kind::Text: return "print " + primitive.strText + " " + Point(primitive.sngX1, primitive.sngY1);
    case DrawPrimitive::Kind::Box: return "box";
    case DrawPrimitive::Kind::Line: break;
  }
  return (primitive.style == LineStyle::Dotted ? "dots " : "line ") + Point(primitive.sngX1, primitive.sngY1) + " " +
         Point(primitive.sngX2, primitive.sngY2);
}

class TimingDiagramTest : public testing::Test {
 protected:
  TimingDiagramTest() : diagram(box) {
    box.SetScale(6975, 1095);
    box.SetTextMetrics(
        {[](const std::string &) { return Single{90}; }, [](const std::string &) { return Single{195}; }});
    // 1 us is 3262.5 twips wide.
    timing.dblPeriodOrFreq = 1e-6;
    timing.dblWidth = 1e-7;
    timing.dblLeading = timing.dblTrailing = 2e-9;
  }

  std::vector<std::string> Drawn(Integer intChan = 1) {
    diagram.Clear();
    diagram.DrawChannelTiming(intChan, timing);
    std::vector<std::string> arrLines;
    for (const DrawPrimitive &primitive : box.DisplayList()) arrLines.push_back(ToLine(primitive));
    return arrLines;
  }
  /// Without clear, grid and number.
  std::vector<std::string> Trace(Integer intChan = 1) {
    auto arrLines = Drawn(intChan);
    arrLines.erase(arrLines.begin(), arrLines.begin() + 5);
    return arrLines;
  }

  PictureBox box;
  TimingDiagram diagram;
  udtChannelTiming timing;
};

TEST_F(TimingDiagramTest, ASinglePulseIsDrawnTwiceInTheUpperLane) {
  timing.dblDelay = 4e-7;
  EXPECT_THAT(Drawn(), ElementsAre("clear", "dots 350.00,0.00 350.00,1095.00", "dots 3612.50,0.00 3612.50,1095.00",
                                   "dots 6875.00,0.00 6875.00,1095.00", "print 1 130.00,176.25",
                                   "line 350.00,487.50 1655.00,487.50", "line 1655.00,487.50 1661.53,60.00",
                                   "line 1661.53,60.00 1981.25,60.00", "line 1981.25,60.00 1987.78,487.50",
                                   "line 1987.78,487.50 4917.50,487.50", "line 4917.50,487.50 4924.02,60.00",
                                   "line 4924.02,60.00 5243.75,60.00", "line 5243.75,60.00 5250.27,487.50",
                                   "line 5250.27,487.50 6875.00,487.50"));
}

TEST_F(TimingDiagramTest, ChannelTwoHasTheLowerLaneWithTheSameGrid) {
  EXPECT_THAT(Drawn(2), ElementsAre("clear", "dots 350.00,0.00 350.00,1095.00", "dots 3612.50,0.00 3612.50,1095.00",
                                    "dots 6875.00,0.00 6875.00,1095.00", "print 2 130.00,723.75",
                                    "line 350.00,1035.00 350.00,1035.00", "line 350.00,1035.00 356.52,607.50",
                                    "line 356.52,607.50 676.25,607.50", "line 676.25,607.50 682.78,1035.00",
                                    "line 682.78,1035.00 3612.50,1035.00", "line 3612.50,1035.00 3619.02,607.50",
                                    "line 3619.02,607.50 3938.75,607.50", "line 3938.75,607.50 3945.27,1035.00",
                                    "line 3945.27,1035.00 6875.00,1035.00"));
}

TEST_F(TimingDiagramTest, ADoublePulseIsDrawnFourTimes) {
  timing.fDoublePulse = True;
  timing.dblDelay = 4e-7;
  EXPECT_THAT(Trace(), ElementsAre("line 350.00,487.50 350.00,487.50", "line 350.00,487.50 356.52,60.00",
                                   "line 356.52,60.00 676.25,60.00", "line 676.25,60.00 682.78,487.50",
                                   "line 682.78,487.50 1655.00,487.50", "line 1655.00,487.50 1661.53,60.00",
                                   "line 1661.53,60.00 1981.25,60.00", "line 1981.25,60.00 1987.78,487.50",
                                   "line 1987.78,487.50 3612.50,487.50", "line 3612.50,487.50 3619.02,60.00",
                                   "line 3619.02,60.00 3938.75,60.00", "line 3938.75,60.00 3945.27,487.50",
                                   "line 3945.27,487.50 4917.50,487.50", "line 4917.50,487.50 4924.02,60.00",
                                   "line 4924.02,60.00 5243.75,60.00", "line 5243.75,60.00 5250.27,487.50",
                                   "line 5250.27,487.50 6875.00,487.50"));
}

TEST_F(TimingDiagramTest, ThePulsesOfAPairTouchWhenTheDelayIsTheWidth) {
  timing.fDoublePulse = True;
  timing.dblDelay = timing.dblWidth;
  timing.dblTrailing = 0;
  const auto arrTrace = Trace();
  EXPECT_EQ(arrTrace[3], "line 676.25,60.00 676.25,487.50");
  EXPECT_EQ(arrTrace[4], "line 676.25,487.50 676.25,487.50");
  EXPECT_EQ(arrTrace[5], "line 676.25,487.50 682.78,60.00");
}

TEST_F(TimingDiagramTest, APeriodOfZeroLeavesTheBoxEmpty) {
  timing.dblPeriodOrFreq = 0;
  EXPECT_THAT(Drawn(), ElementsAre("clear"));
}

TEST_F(TimingDiagramTest, AWidthBeyondThePeriodRunsBackward) {
  timing.dblWidth = 1.2e-6;
  EXPECT_THAT(Trace(), ElementsAre("line 350.00,487.50 350.00,487.50", "line 350.00,487.50 356.52,60.00",
                                   "line 356.52,60.00 4265.00,60.00", "line 4265.00,60.00 4271.52,487.50",
                                   "line 4271.52,487.50 3612.50,487.50", "line 3612.50,487.50 3619.02,60.00",
                                   "line 3619.02,60.00 7527.50,60.00", "line 7527.50,60.00 7534.02,487.50",
                                   "line 7534.02,487.50 6875.00,487.50"));
}

TEST_F(TimingDiagramTest, ALeadingEdgeBeyondTheWidthRunsBackward) {
  timing.dblLeading = 2e-7;
  const auto arrTrace = Trace();
  EXPECT_EQ(arrTrace[1], "line 350.00,487.50 1002.50,60.00");
  EXPECT_EQ(arrTrace[2], "line 1002.50,60.00 676.25,60.00");
  EXPECT_EQ(arrTrace[3], "line 676.25,60.00 682.78,487.50");
}

TEST_F(TimingDiagramTest, FrequencyAndPeriodFormGiveTheSamePicture) {
  const auto arrPeriod = Drawn();
  timing.fIsFrequency = True;
  timing.dblPeriodOrFreq = 1e6;
  EXPECT_EQ(Drawn(), arrPeriod);
}

TEST_F(TimingDiagramTest, AScaleBeyondASingleDrawsNothing) {
  timing.fIsFrequency = True;
  timing.dblPeriodOrFreq = 1e36;
  EXPECT_THAT(Drawn(), ElementsAre("clear"));
}

TEST_F(TimingDiagramTest, AValueBeyondASingleDrawsNothing) {
  timing.dblWidth = 1e30;
  EXPECT_THAT(Drawn(), ElementsAre("clear"));
}

TEST_F(TimingDiagramTest, AnEdgeThatCannotBeDrawnIsLeftOutOfItsPulse) {
  timing.dblPeriodOrFreq = 1;
  timing.dblDelay = timing.dblLeading = 9e34;
  timing.dblWidth = timing.dblTrailing = 0;
  const auto arrTrace = Trace();
  // Baseline, top and falling edge of both pulses, and the last baseline.
  EXPECT_EQ(arrTrace.size(), 7U);
  EXPECT_EQ(arrTrace.back().substr(arrTrace.back().rfind(' ')), " 6875.00,1342.50");
}

TEST_F(TimingDiagramTest, ABoxAsNarrowAsItsMarginsEndsTheDrawing) {
  box.SetScale(450, 1095);
  EXPECT_THAT(Drawn(), ElementsAre("clear"));
  EXPECT_EQ(box.DrawStyle(), LineStyle::Solid);
}

TEST_F(TimingDiagramTest, TheLineStyleComesBackAfterTheGrid) {
  Drawn();
  EXPECT_EQ(box.DrawStyle(), LineStyle::Solid);
}

}  // namespace
}  // namespace tarvik::test
