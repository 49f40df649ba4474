#pragma once

#include <optional>
#include <vector>

#include "support/Types.h"

namespace tarvik {

/// What one lane of the diagram shows.
struct udtChannelTiming {
  Double dblPeriodOrFreq = 0;  ///< seconds, or hertz in frequency form
  Boolean fIsFrequency;
  Boolean fDoublePulse;
  Double dblDelay = 0;  ///< this and the times below in seconds
  Double dblWidth = 0;
  Double dblLeading = 0;
  Double dblTrailing = 0;
};

/// What it is drawn into, in twips: the box, and the channel's number in the box's font.
struct DiagramBox {
  Single sngWidth = 0, sngHeight = 0;
  Single sngTextWidth = 0, sngTextHeight = 0;
};

/// In twips from the top left corner, y downward.
struct DiagramPoint {
  Single sngX = 0, sngY = 0;
  bool operator==(const DiagramPoint &) const = default;
};
struct DiagramLine {
  DiagramPoint from, to;
  bool operator==(const DiagramLine &) const = default;
};

/// One lane: two periods of a channel's pulse train to scale.
struct LanePicture {
  std::vector<DiagramLine> arrGrid;   ///< dotted
  std::optional<DiagramPoint> label;  ///< top left corner of the channel's number
  std::vector<DiagramLine> arrTrace;
};

/// Lane of channel 1 above, of channel 2 below; nothing for a period or frequency of 0. Values that a drawing cannot
/// show end it in silence: the picture holds what comes before them.
LanePicture DrawChannelTiming(Integer intChan, const udtChannelTiming &timing, const DiagramBox &box);

}  // namespace tarvik
