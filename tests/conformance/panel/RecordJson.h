#pragma once

#include "Recorder.h"
#include "instrument/udtLevelInfo.h"
#include "instrument/udtLimitsInfo.h"
#include "instrument/udtModeInfo.h"
#include "instrument/udtTimingInfo.h"
#include "instrument/udtTrgLevelsInfo.h"

namespace tarvik::paneltest {

/// Records of the instrument class as objects with the fields' names.
Json ToJson(const udtModeInfo &mode);
Json ToJson(const udtTimingInfo &timing);
Json ToJson(const udtLevelInfo &levels);
Json ToJson(const udtLimitsInfo &limits);
Json ToJson(const udtTrgLevelsInfo &levels);

inline Json ToJson(Boolean fValue) { return static_cast<bool>(fValue); }
inline Json ToJson(Long lngValue) { return lngValue; }
inline Json ToJson(Double dblValue) { return dblValue; }

/// The values of both channels.
template <class T>
Json ToJson(const ChannelArray<T> &values) {
  return Json::array({ToJson(values[1]), ToJson(values[2])});
}

}  // namespace tarvik::paneltest
