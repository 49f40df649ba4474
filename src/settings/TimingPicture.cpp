#include "settings/TimingPicture.h"

#include <cmath>
#include <limits>

namespace tarvik {

namespace {

// Twips.
constexpr Single LeftMargin = 350;  // time zero; the channel number stands left of it
constexpr Single RightMargin = 100;
constexpr Single LaneMargin = 120;
constexpr Single LaneOffset = 60;

constexpr Integer LowerLane = 2;

/// Error 6 for a number that a Single does not hold.
Single ToSingle(Double dblValue) {
  if (!(std::abs(dblValue) <= Double{std::numeric_limits<Single>::max()})) RaiseError(ErrOverflow);
  return static_cast<Single>(dblValue);
}

/// One pulse in the box's twips.
struct udtPulseShape {
  Single sngPeriodWidth = 0;
  Single sngChanHeight = 0;
  Single sngWidth = 0;
  Single sngLeading = 0;
  Single sngTrailing = 0;
};

/// Draws lines from where the one before ended.
class Pen {
 public:
  Pen(std::vector<DiagramLine> &arrLines, DiagramPoint start) : m_arrLines(arrLines), m_at(start) {}

  DiagramPoint At() const { return m_at; }

  /// Error 6 for a point beyond a Single's range; the pen stays.
  void LineTo(Single sngX, Single sngY) {
    if (!std::isfinite(sngX) || !std::isfinite(sngY)) RaiseError(ErrOverflow);
    const DiagramPoint to{sngX, sngY};
    m_arrLines.push_back({m_at, to});
    m_at = to;
  }
  void LevelTo(Single sngX) { LineTo(sngX, m_at.sngY); }

 private:
  std::vector<DiagramLine> &m_arrLines;
  DiagramPoint m_at;
};

void DrawPulse(Pen &pen, const udtPulseShape &shape) {
  const DiagramPoint start = pen.At();
  IgnoreErrors([&] { pen.LineTo(start.sngX + shape.sngLeading, start.sngY - shape.sngChanHeight); });
  // The width counts from the start of the rising edge.
  IgnoreErrors([&] { pen.LevelTo(start.sngX + shape.sngWidth); });
  IgnoreErrors([&] { pen.LineTo(pen.At().sngX + shape.sngTrailing, pen.At().sngY + shape.sngChanHeight); });
}

void DrawTrace(Pen &pen, const udtPulseShape &shape, Single sngDelay, Boolean fDoublePulse, Single sngRight) {
  const auto pulseAt = [&](Single sngX) {
    pen.LevelTo(sngX);
    DrawPulse(pen, shape);
  };
  if (fDoublePulse) pulseAt(LeftMargin);
  pulseAt(sngDelay + LeftMargin);
  if (fDoublePulse) pulseAt(shape.sngPeriodWidth + LeftMargin);
  pulseAt(sngDelay + LeftMargin + shape.sngPeriodWidth);
  pen.LevelTo(sngRight);
}

void DrawGrid(std::vector<DiagramLine> &arrGrid, Single sngStep, const DiagramBox &box) {
  // In a box as narrow as its margins the lines would never come to an end.
  if (!(box.sngWidth + sngStep > box.sngWidth)) RaiseError(ErrOverflow);
  Single sngX = LeftMargin;
  while (sngX <= box.sngWidth) {
    arrGrid.push_back({{sngX, 0}, {sngX, box.sngHeight}});
    sngX += sngStep;
  }
}

DiagramPoint PlaceOfLabel(Integer intChan, Single sngChanHeight, const DiagramBox &box) {
  const Single sngMiddle = (sngChanHeight - box.sngTextHeight) / 2;
  const Single sngTop =
      intChan == LowerLane ? sngMiddle + sngChanHeight + LaneOffset + LaneMargin : sngMiddle + LaneOffset;
  return {(LeftMargin - box.sngTextWidth) / 2, sngTop};
}

void DrawLane(LanePicture &lane, Integer intChan, const udtChannelTiming &timing, const DiagramBox &box) {
  udtPulseShape shape;
  shape.sngChanHeight = (box.sngHeight - LaneMargin - LaneMargin) / 2;
  shape.sngPeriodWidth = (box.sngWidth - LeftMargin - RightMargin) / 2;
  if (timing.dblPeriodOrFreq == 0) return;

  const Double dblPeriodWidth = Double{shape.sngPeriodWidth};
  // Twips per second.
  const Double dblScale = Double{ToSingle(timing.fIsFrequency ? timing.dblPeriodOrFreq * dblPeriodWidth
                                                              : dblPeriodWidth / timing.dblPeriodOrFreq)};
  const Single sngBottom = box.sngHeight - LaneOffset;
  const Single sngBaseline = intChan == LowerLane ? sngBottom : sngBottom - shape.sngChanHeight - LaneMargin;
  const Single sngDelay = ToSingle(timing.dblDelay * dblScale);
  shape.sngWidth = ToSingle(timing.dblWidth * dblScale);
  shape.sngLeading = ToSingle(timing.dblLeading * dblScale);
  shape.sngTrailing = ToSingle(timing.dblTrailing * dblScale);

  DrawGrid(lane.arrGrid, shape.sngPeriodWidth, box);
  lane.label = PlaceOfLabel(intChan, shape.sngChanHeight, box);
  Pen pen(lane.arrTrace, {LeftMargin, sngBaseline});
  DrawTrace(pen, shape, sngDelay, timing.fDoublePulse, box.sngWidth - RightMargin);
}

}  // namespace

LanePicture DrawChannelTiming(Integer intChan, const udtChannelTiming &timing, const DiagramBox &box) {
  LanePicture lane;
  IgnoreErrors([&] { DrawLane(lane, intChan, timing, box); });
  return lane;
}

}  // namespace tarvik
