#include "simulator/model/TimingSettings.h"

namespace tarvik::simulator {

namespace {
// Zero, a negative number and what is no number go through to the range check.
Double EdgeOf(Double dblEdge) { return dblEdge > 0 && dblEdge < FastestEdge ? FastestEdge : dblEdge; }
}  // namespace

void ChannelTiming::SetPulseType(Long lngType) {
  if (lngType == eTypeDouble && !IsDouble() && dblDoubleDelay < dblWidth) dblDoubleDelay = dblWidth;
  lngPulseType = lngType;
}

void ChannelTiming::SetSingleDelay(Double dblDelay) {
  lngPulseType = eTypeSingle;
  dblSingleDelay = dblDelay;
}

void ChannelTiming::SetDoubleDelay(Double dblDelay) {
  lngPulseType = eTypeDouble;
  dblDoubleDelay = dblDelay;
}

void ChannelTiming::SetLeading(Double dblEdge) { dblLeading = EdgeOf(dblEdge); }
void ChannelTiming::SetTrailing(Double dblEdge) { dblTrailing = EdgeOf(dblEdge); }

}  // namespace tarvik::simulator
