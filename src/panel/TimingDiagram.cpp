#include "panel/TimingDiagram.h"

#include <cmath>
#include <limits>
#include <string>

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

}  // namespace

void TimingDiagram::DrawChannelTiming(Integer intChan, const udtChannelTiming &timing) {
  IgnoreErrors([&] { DrawLane(intChan, timing); });
}

void TimingDiagram::DrawLane(Integer intChan, const udtChannelTiming &timing) {
  udtPulseShape shape;
  shape.sngChanHeight = (picTiming.ScaleHeight() - LaneMargin - LaneMargin) / 2;
  shape.sngPeriodWidth = (picTiming.ScaleWidth() - LeftMargin - RightMargin) / 2;
  if (timing.dblPeriodOrFreq == 0) return;

  const Double dblPeriodWidth = Double{shape.sngPeriodWidth};
  // Twips per second.
  const Double dblScale = Double{ToSingle(timing.fIsFrequency ? timing.dblPeriodOrFreq * dblPeriodWidth
                                                              : dblPeriodWidth / timing.dblPeriodOrFreq)};
  const Single sngBottom = picTiming.ScaleHeight() - LaneOffset;
  const Single sngY = intChan == LowerLane ? sngBottom : sngBottom - shape.sngChanHeight - LaneMargin;
  const Single sngDelay = ToSingle(timing.dblDelay * dblScale);
  shape.sngWidth = ToSingle(timing.dblWidth * dblScale);
  shape.sngLeading = ToSingle(timing.dblLeading * dblScale);
  shape.sngTrailing = ToSingle(timing.dblTrailing * dblScale);

  DrawGrid(shape.sngPeriodWidth);
  DrawChannelLabel(intChan, shape.sngChanHeight);
  picTiming.SetCurrentX(LeftMargin);
  picTiming.SetCurrentY(sngY);
  DrawTrace(shape, sngDelay, timing.fDoublePulse);
}

void TimingDiagram::DrawTrace(const udtPulseShape &shape, Single sngDelay, Boolean fDoublePulse) {
  if (fDoublePulse) {
    BaselineTo(LeftMargin);
    DrawPulse(shape);
  }
  BaselineTo(sngDelay + LeftMargin);
  DrawPulse(shape);
  if (fDoublePulse) {
    BaselineTo(shape.sngPeriodWidth + LeftMargin);
    DrawPulse(shape);
  }
  BaselineTo(sngDelay + LeftMargin + shape.sngPeriodWidth);
  DrawPulse(shape);
  BaselineTo(picTiming.ScaleWidth() - RightMargin);
}

void TimingDiagram::BaselineTo(Single sngX) { picTiming.LineTo(sngX, picTiming.CurrentY()); }

void TimingDiagram::DrawPulse(const udtPulseShape &shape) {
  const Single sngX = picTiming.CurrentX(), sngY = picTiming.CurrentY();
  IgnoreErrors([&] { picTiming.LineTo(sngX + shape.sngLeading, sngY - shape.sngChanHeight); });
  // The width counts from the start of the rising edge.
  IgnoreErrors([&] { BaselineTo(sngX + shape.sngWidth); });
  IgnoreErrors(
      [&] { picTiming.LineTo(picTiming.CurrentX() + shape.sngTrailing, picTiming.CurrentY() + shape.sngChanHeight); });
}

void TimingDiagram::DrawGrid(Single sngStep) {
  const Single sngRight = picTiming.ScaleWidth(), sngBottom = picTiming.ScaleHeight();
  // In a box as narrow as its margins the lines would never come to an end.
  if (!(sngRight + sngStep > sngRight)) RaiseError(ErrOverflow);
  const LineStyle style = picTiming.DrawStyle();
  picTiming.SetDrawStyle(LineStyle::Dotted);
  for (Single sngX = LeftMargin; sngX <= sngRight; sngX += sngStep) picTiming.Line(sngX, 0, sngX, sngBottom);
  picTiming.SetDrawStyle(style);
}

void TimingDiagram::DrawChannelLabel(Integer intChan, Single sngChanHeight) {
  const std::string strNumber = std::to_string(intChan);
  const Single sngMiddle = (sngChanHeight - picTiming.TextHeight(strNumber)) / 2;
  picTiming.SetCurrentY(intChan == LowerLane ? sngMiddle + sngChanHeight + LaneOffset + LaneMargin
                                             : sngMiddle + LaneOffset);
  picTiming.SetCurrentX((LeftMargin - picTiming.TextWidth(strNumber)) / 2);
  picTiming.Print(strNumber);
}

}  // namespace tarvik
