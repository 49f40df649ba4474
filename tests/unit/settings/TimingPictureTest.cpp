#include "settings/TimingPicture.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <string>

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string ToText(const DiagramPoint &point) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f,%.2f", static_cast<double>(point.sngX), static_cast<double>(point.sngY));
  return text;
}

void AddLines(std::vector<std::string> &arrTexts, const char *strKind, const std::vector<DiagramLine> &arrLines) {
  for (const DiagramLine &line : arrLines) arrTexts.push_back(strKind + ToText(line.from) + " " + ToText(line.to));
}

class TimingPictureTest : public testing::Test {
 protected:
  TimingPictureTest() {
    // 1 us is 3262.5 twips wide.
    timing.dblPeriodOrFreq = 1e-6;
    timing.dblWidth = 1e-7;
    timing.dblLeading = timing.dblTrailing = 2e-9;
  }

  std::vector<std::string> Drawn(Integer intChan = 1) const {
    const LanePicture lane = DrawChannelTiming(intChan, timing, box);
    std::vector<std::string> arrTexts;
    AddLines(arrTexts, "dots ", lane.arrGrid);
    if (lane.label) arrTexts.push_back("print " + std::to_string(intChan) + " " + ToText(*lane.label));
    AddLines(arrTexts, "line ", lane.arrTrace);
    return arrTexts;
  }
  std::vector<std::string> Trace() const {
    std::vector<std::string> arrTexts;
    AddLines(arrTexts, "line ", DrawChannelTiming(1, timing, box).arrTrace);
    return arrTexts;
  }

  DiagramBox box{6975, 1095, 90, 195};
  udtChannelTiming timing;
};

TEST_F(TimingPictureTest, APulseOfPeriodAndWidthAloneBeginsAtTimeZeroWithUprightEdges) {
  timing = {};
  timing.dblPeriodOrFreq = 1e-6;
  timing.dblWidth = 1e-7;
  EXPECT_THAT(Trace(), ElementsAre("line 350.00,487.50 350.00,487.50", "line 350.00,487.50 350.00,60.00",
                                   "line 350.00,60.00 676.25,60.00", "line 676.25,60.00 676.25,487.50",
                                   "line 676.25,487.50 3612.50,487.50", "line 3612.50,487.50 3612.50,60.00",
                                   "line 3612.50,60.00 3938.75,60.00", "line 3938.75,60.00 3938.75,487.50",
                                   "line 3938.75,487.50 6875.00,487.50"));
}

TEST_F(TimingPictureTest, ASinglePulseIsDrawnTwiceInTheUpperLane) {
  timing.dblDelay = 4e-7;
  EXPECT_THAT(Drawn(), ElementsAre("dots 350.00,0.00 350.00,1095.00", "dots 3612.50,0.00 3612.50,1095.00",
                                   "dots 6875.00,0.00 6875.00,1095.00", "print 1 130.00,176.25",
                                   "line 350.00,487.50 1655.00,487.50", "line 1655.00,487.50 1661.53,60.00",
                                   "line 1661.53,60.00 1981.25,60.00", "line 1981.25,60.00 1987.78,487.50",
                                   "line 1987.78,487.50 4917.50,487.50", "line 4917.50,487.50 4924.02,60.00",
                                   "line 4924.02,60.00 5243.75,60.00", "line 5243.75,60.00 5250.27,487.50",
                                   "line 5250.27,487.50 6875.00,487.50"));
}

TEST_F(TimingPictureTest, ChannelTwoHasTheLowerLaneWithTheSameGrid) {
  EXPECT_THAT(Drawn(2), ElementsAre("dots 350.00,0.00 350.00,1095.00", "dots 3612.50,0.00 3612.50,1095.00",
                                    "dots 6875.00,0.00 6875.00,1095.00", "print 2 130.00,723.75",
                                    "line 350.00,1035.00 350.00,1035.00", "line 350.00,1035.00 356.52,607.50",
                                    "line 356.52,607.50 676.25,607.50", "line 676.25,607.50 682.78,1035.00",
                                    "line 682.78,1035.00 3612.50,1035.00", "line 3612.50,1035.00 3619.02,607.50",
                                    "line 3619.02,607.50 3938.75,607.50", "line 3938.75,607.50 3945.27,1035.00",
                                    "line 3945.27,1035.00 6875.00,1035.00"));
}

TEST_F(TimingPictureTest, ADoublePulseIsDrawnFourTimes) {
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

TEST_F(TimingPictureTest, ThePulsesOfAPairTouchWhenTheDelayIsTheWidth) {
  timing.fDoublePulse = True;
  timing.dblDelay = timing.dblWidth;
  timing.dblTrailing = 0;
  const auto arrTrace = Trace();
  EXPECT_EQ(arrTrace[3], "line 676.25,60.00 676.25,487.50");
  EXPECT_EQ(arrTrace[4], "line 676.25,487.50 676.25,487.50");
  EXPECT_EQ(arrTrace[5], "line 676.25,487.50 682.78,60.00");
}

TEST_F(TimingPictureTest, APeriodOrFrequencyOfZeroLeavesTheLaneEmpty) {
  timing.dblPeriodOrFreq = 0;
  EXPECT_THAT(Drawn(), IsEmpty());
  timing.fIsFrequency = True;
  EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(TimingPictureTest, AWidthBeyondThePeriodRunsBackward) {
  timing.dblWidth = 1.2e-6;
  EXPECT_THAT(Trace(), ElementsAre("line 350.00,487.50 350.00,487.50", "line 350.00,487.50 356.52,60.00",
                                   "line 356.52,60.00 4265.00,60.00", "line 4265.00,60.00 4271.52,487.50",
                                   "line 4271.52,487.50 3612.50,487.50", "line 3612.50,487.50 3619.02,60.00",
                                   "line 3619.02,60.00 7527.50,60.00", "line 7527.50,60.00 7534.02,487.50",
                                   "line 7534.02,487.50 6875.00,487.50"));
}

TEST_F(TimingPictureTest, ALeadingEdgeBeyondTheWidthRunsBackward) {
  timing.dblLeading = 2e-7;
  const auto arrTrace = Trace();
  EXPECT_EQ(arrTrace[1], "line 350.00,487.50 1002.50,60.00");
  EXPECT_EQ(arrTrace[2], "line 1002.50,60.00 676.25,60.00");
  EXPECT_EQ(arrTrace[3], "line 676.25,60.00 682.78,487.50");
}

TEST_F(TimingPictureTest, FrequencyAndPeriodFormGiveTheSamePicture) {
  const auto arrPeriod = Drawn();
  timing.fIsFrequency = True;
  timing.dblPeriodOrFreq = 1e6;
  EXPECT_EQ(Drawn(), arrPeriod);
}

TEST_F(TimingPictureTest, AScaleBeyondASingleDrawsNothing) {
  timing.fIsFrequency = True;
  timing.dblPeriodOrFreq = 1e36;
  EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(TimingPictureTest, AValueBeyondASingleDrawsNothing) {
  timing.dblWidth = 1e30;
  EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(TimingPictureTest, AnEdgeThatCannotBeDrawnIsLeftOutOfItsPulse) {
  timing.dblPeriodOrFreq = 1;
  timing.dblDelay = timing.dblLeading = 9e34;
  timing.dblWidth = timing.dblTrailing = 0;
  const auto arrTrace = Trace();
  // Baseline, top and falling edge of both pulses, and the last baseline.
  EXPECT_EQ(arrTrace.size(), 7U);
  EXPECT_EQ(arrTrace.back().substr(arrTrace.back().rfind(' ')), " 6875.00,1342.50");
}

TEST_F(TimingPictureTest, ABoxAsNarrowAsItsMarginsEndsTheDrawing) {
  box.sngWidth = 450;
  EXPECT_THAT(Drawn(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
