#pragma once

#include <array>

#include "common/InstrumentDescription.h"
#include "common/LevelSettings.h"
#include "common/ModeSettings.h"
#include "common/PatternRow.h"
#include "common/TimingSettings.h"
#include "common/TriggerLevelSettings.h"

namespace tarvik::driver {

/// Everything that can be set on one instrument. A new object is the state after a reset.
struct Settings {
  ModeSettings mode;
  Double dblFrequency = 1e6;  ///< hertz, one for all channels
  ChannelArray<ChannelTiming> timing;
  ChannelArray<ChannelLevels> levels;
  ChannelArray<ChannelLimits> limits;
  Long lngChannelMath = eMathSeparate;
  TriggerLevelSettings triggerLevels;
  Double dblPllReference = 5e6;  ///< hertz, 5 or 10 MHz
  Long lngPllReferenceSource = ePllRefInternal;
  std::array<PatternRow, 3> arrPattern;

  /// The row to be written by its number in the contract, 1 to 3; raises Rejected for another, and for row 2 of a
  /// one-channel instrument.
  PatternRow &Row(Long lngRow, const InstrumentDescription &description);
  /// The row as it is read: row 2 of a one-channel instrument is all zeros, as long as row 1, because a panel reads
  /// it before it knows the number of channels.
  PatternRow RowInForce(Long lngRow, const InstrumentDescription &description) const;
  bool operator==(const Settings &) const = default;
};

}  // namespace tarvik::driver
