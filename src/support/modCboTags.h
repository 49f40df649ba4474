#pragma once

#include <string>

#include "support/Types.h"

/// Numbers that the lists of the pages carry as item data and group data. They are the
/// driver's values and go to the instrument as they stand.
namespace tarvik {

// Trigger mode and pulse mode
inline constexpr Long eTriggerContinuous = 0, eTriggerTriggered = 1, eTriggerGated = 2, eTriggerExtWidth = 3;
inline constexpr Long ePulseStream = 0, ePulseBurst = 1, ePulsePattern = 2;

// Pulse type outside of Pattern mode, signal format in it
inline constexpr Long eTypeSingle = 1, eTypeDouble = 2;
inline constexpr Long eFormatNrz = 0, eFormatRz = 1;

// Period source and slopes
inline constexpr Long eSourceOscillator = 0, eSourcePll = 1, eSourceClkIn = 2;
inline constexpr Long eSlopeFalling = 0, eSlopeRising = 1, eSlopeBoth = 2;

// Arming sources; the VXI lines run on from ECLT 0 to TTLT 7
inline constexpr Long eArmPll = 1, eArmExternal = 3, eArmManual = 4;
inline constexpr Long eVxiEclt0 = 5, eVxiTtlt0 = 7, eVxiTtlt7 = 14;

/// "VXI ECLT 0" for 5 to "VXI TTLT 7" for 14.
inline std::string VxiLineName(Long eLine) {
  return eLine < eVxiTtlt0 ? "VXI ECLT " + std::to_string(eLine - eVxiEclt0)
                           : "VXI TTLT " + std::to_string(eLine - eVxiTtlt0);
}

// How the PLL field is to be read
inline constexpr Long ePllPeriod = 0, ePllFrequency = 1;

// PLL reference: source, and frequencies in hertz
inline constexpr Long ePllRefClkIn = 0, ePllRefInternal = 1;
inline constexpr Long ePllRef5MHz = 5'000'000, ePllRef10MHz = 10'000'000;

// Levels
inline constexpr Long eLevelOffsetAmplitude = 0, eLevelHighLow = 1;
inline constexpr Long eTypeVoltage = 0, eTypeCurrent = 1;

// What goes to the VXI trigger line
inline constexpr Long eVxiSourceTrigger = 1, eVxiSourceStrobe = 2;

}  // namespace tarvik
