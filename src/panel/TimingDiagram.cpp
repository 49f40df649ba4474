#include "panel/TimingDiagram.h"

#include <string>

namespace tarvik {

void TimingDiagram::DrawChannelTiming(Integer intChan, const udtChannelTiming &timing) {
  const std::string strNumber = std::to_string(intChan);
  const LanePicture lane = tarvik::DrawChannelTiming(intChan, timing,
                                                     {picTiming.ScaleWidth(), picTiming.ScaleHeight(),
                                                      picTiming.TextWidth(strNumber), picTiming.TextHeight(strNumber)});
  const LineStyle style = picTiming.DrawStyle();
  picTiming.SetDrawStyle(LineStyle::Dotted);
  DrawLines(lane.arrGrid);
  picTiming.SetDrawStyle(style);
  if (lane.label) {
    picTiming.SetCurrentX(lane.label->sngX);
    picTiming.SetCurrentY(lane.label->sngY);
    picTiming.Print(strNumber);
  }
  DrawLines(lane.arrTrace);
}

void TimingDiagram::DrawLines(const std::vector<DiagramLine> &arrLines) {
  for (const DiagramLine &line : arrLines) picTiming.Line(line.from.sngX, line.from.sngY, line.to.sngX, line.to.sngY);
}

}  // namespace tarvik
