#include "simulator/model/Settings.h"

namespace tarvik::simulator {

namespace {
std::size_t RowIndex(Long lngRow, const InstrumentDescription &description) {
  if (lngRow < PatternRowFirst || lngRow > PatternRowStrobe)
    Reject(ScpiIllegalParameterValue, "Illegal parameter value: pattern row",
           std::to_string(lngRow) + ", allowed 1 to 3");
  if (lngRow == PatternRowSecond && description.lngChannels < 2)
    Reject(ScpiHardwareMissing, "Hardware missing: pattern of channel 2");
  return static_cast<std::size_t>(lngRow - 1);
}
}  // namespace

PatternRow &Settings::Row(Long lngRow, const InstrumentDescription &description) {
  return arrPattern[RowIndex(lngRow, description)];
}

const PatternRow &Settings::Row(Long lngRow, const InstrumentDescription &description) const {
  return arrPattern[RowIndex(lngRow, description)];
}

}  // namespace tarvik::simulator
