#include "common/TimingSettings.h"

namespace tarvik::driver {

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

}  // namespace tarvik::driver
