#pragma once

#include "platform/PictureBox.h"
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
  bool operator==(const udtChannelTiming &) const = default;
};

/// One pulse in the box's twips.
struct udtPulseShape {
  Single sngPeriodWidth = 0;
  Single sngChanHeight = 0;
  Single sngWidth = 0;
  Single sngLeading = 0;
  Single sngTrailing = 0;
};

/// Draws two periods of each channel's pulse train to scale: grid, channel number and trace. It knows numbers and the
/// box only. Values that a drawing cannot show end it in silence; what was drawn so far stays.
class TimingDiagram {
 public:
  explicit TimingDiagram(PictureBox &box) : picTiming(box) {}

  void Clear() { picTiming.Cls(); }
  /// Lane of channel 1 above, of channel 2 below. A period or frequency of 0 draws nothing.
  void DrawChannelTiming(Integer intChan, const udtChannelTiming &timing);

 private:
  void DrawLane(Integer intChan, const udtChannelTiming &timing);
  void DrawGrid(Single sngStep);
  void DrawChannelLabel(Integer intChan, Single sngChanHeight);
  void DrawTrace(const udtPulseShape &shape, Single sngDelay, Boolean fDoublePulse);
  void DrawPulse(const udtPulseShape &shape);
  void BaselineTo(Single sngX);

  PictureBox &picTiming;
};

}  // namespace tarvik
