#include <gmock/gmock.h>

#include <cstdio>

#include "WidgetEnvironment.h"
#include "panel/TimingDiagram.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;

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
