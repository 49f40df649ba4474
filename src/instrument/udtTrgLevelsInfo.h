#pragma once

#include "instrument/Vocabulary.h"

namespace tarvik {

/// Contents of the trigger-level page: thresholds in volts, impedances in ohms. Values are named in Vocabulary.h.
struct udtTrgLevelsInfo {
  Double dblExtInThreshold = 0;
  Double dblExtInInputImp = 0;
  Double dblClkInThreshold = 0;
  Double dblClkInInputImp = 0;
  Long eTriggerOutLevel = eOutLevelTTL;
  Long eStrobeOutLevel = eOutLevelTTL;
  Long eVxiTriggerSource = 0;  ///< a VxiTriggerSource
  Long eVxiTriggerLine = 0;    ///< a VxiLine

  bool operator==(const udtTrgLevelsInfo &) const = default;
};

}  // namespace tarvik
