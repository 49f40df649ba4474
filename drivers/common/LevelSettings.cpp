#include "common/LevelSettings.h"

#include "common/ScpiError.h"

namespace tarvik::driver {

namespace {
[[noreturn]] void RejectFormat(Long lngFormat) {
  Reject(ScpiIllegalParameterValue, "Illegal parameter value: level format",
         std::to_string(lngFormat) + ", allowed 0 and 1");
}
}  // namespace

void ChannelLevels::Set(Long lngFormat, Long lngLevelType, Double dblFirst, Double dblSecond) {
  switch (lngFormat) {
    case eLevelHighLow:
      dblHigh = dblFirst;
      dblLow = dblSecond;
      break;
    case eLevelOffsetAmplitude:
      dblHigh = dblFirst + dblSecond / 2;
      dblLow = dblFirst - dblSecond / 2;
      break;
    default: RejectFormat(lngFormat);
  }
  lngType = lngLevelType;
}

std::pair<Double, Double> ChannelLevels::Get(Long lngFormat) const {
  switch (lngFormat) {
    case eLevelHighLow: return {dblHigh, dblLow};
    case eLevelOffsetAmplitude: return {(dblHigh + dblLow) / 2, dblHigh - dblLow};
    default: RejectFormat(lngFormat);
  }
}

}  // namespace tarvik::driver
