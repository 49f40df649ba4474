#include "common/Settings.h"

namespace tarvik::driver {

namespace {
std::size_t RowIndex(Long lngRow) {
  if (lngRow < ePatternChan1 || lngRow > ePatternStrobe)
    Reject(ScpiIllegalParameterValue, "Illegal parameter value: pattern row",
           std::to_string(lngRow) + ", allowed 1 to 3");
  return static_cast<std::size_t>(lngRow - 1);
}

bool Exists(Long lngRow, const InstrumentDescription &description) {
  return lngRow != ePatternChan2 || description.lngChannels > 1;
}
}  // namespace

PatternRow &Settings::Row(Long lngRow, const InstrumentDescription &description) {
  const std::size_t index = RowIndex(lngRow);
  if (!Exists(lngRow, description)) Reject(ScpiHardwareMissing, "Hardware missing: pattern of channel 2");
  return arrPattern[index];
}

PatternRow Settings::RowInForce(Long lngRow, const InstrumentDescription &description) const {
  const std::size_t index = RowIndex(lngRow);
  if (Exists(lngRow, description)) return arrPattern[index];
  PatternRow none;
  const std::vector<Byte> zeros(PatternBits / 8);
  none.Write(zeros, arrPattern[0].Length());
  return none;
}

}  // namespace tarvik::driver
