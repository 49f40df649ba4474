#pragma once

#include "support/Types.h"

namespace tarvik {

/// Contents of the trigger-level page: thresholds in volts, impedances in ohms.
struct udtTrgLevelsInfo {
  Double dblExtInThreshold = 0;
  Double dblExtInInputImp = 0;
  Double dblClkInThreshold = 0;
  Double dblClkInInputImp = 0;
  Long eTriggerOutLevel = 0;   ///< level family of the trigger output
  Long eStrobeOutLevel = 0;    ///< level family of the strobe output
  Long eVxiTriggerSource = 0;  ///< what goes to the VXI trigger line: 1 trigger, 2 strobe
  Long eVxiTriggerLine = 0;    ///< 5 and 6 ECLT 0 and 1, 7 to 14 TTLT 0 to 7

  bool operator==(const udtTrgLevelsInfo &) const = default;
};

}  // namespace tarvik
