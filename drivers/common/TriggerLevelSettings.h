#pragma once

#include <array>

#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik::driver {

/// An input of the trigger system.
struct InputSettings {
  Double dblThreshold = 2.5;    ///< volts
  Double dblImpedance = 10000;  ///< ohms, 50 or 10000
  bool operator==(const InputSettings &) const = default;
};

/// Inputs, auxiliary outputs and VXI trigger of an instrument.
struct TriggerLevelSettings {
  InputSettings extInput;
  InputSettings clockInput;
  ChannelArray<Long> arrOutLevel{eOutLevelTTL, eOutLevelTTL};  ///< by AuxOutput
  Long lngVxiSource = eVxiSourceTrigger;
  Long lngVxiLine = eVxiTtlt0;
  bool operator==(const TriggerLevelSettings &) const = default;
};

}  // namespace tarvik::driver
