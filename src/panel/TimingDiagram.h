#pragma once

#include "platform/PictureBox.h"
#include "settings/TimingPicture.h"

namespace tarvik {

/// Draws the lanes of the channels into the box: grid, channel number and trace.
class TimingDiagram {
 public:
  explicit TimingDiagram(PictureBox &box) : picTiming(box) {}

  void Clear() { picTiming.Cls(); }
  void DrawChannelTiming(Integer intChan, const udtChannelTiming &timing);

 private:
  void DrawLines(const std::vector<DiagramLine> &arrLines);

  PictureBox &picTiming;
};

}  // namespace tarvik
