#pragma once

#include <array>
#include <vector>

#include "instrument/Records.h"
#include "instrument/Vocabulary.h"

namespace tarvik {

/// The bit stream of one row, packed as the driver carries it: eight bits a byte, the first in 0x80.
struct PatternStream {
  static constexpr Long MaxLength = 16384;

  Long lngLength = 0;          ///< bits
  std::vector<Byte> arrBytes;  ///< (lngLength + 7) / 8 bytes; bits behind the end are 0

  bool operator==(const PatternStream &) const = default;
};

/// All settings of an instrument as one value: what an upload of all pages sends and a download of all pages reads.
/// A setting that the instrument lacks keeps the value of a fresh Setup.
struct Setup {
  static constexpr std::size_t PatternRows = 3;

  udtInstrInfo Instrument;  ///< whose settings these are; lngNumChannels says how many channels count
  Long lngLacks = 0;        ///< Functionality bits: what the instrument does not have
  udtModeInfo Mode;
  udtTimingInfo Timing;
  udtLevelInfo Levels;
  udtLimitsInfo Limits;
  udtTrgLevelsInfo TrgLevels;
  std::array<PatternStream, PatternRows> Pattern;  ///< by PatternRowNumber - 1
  ChannelArray<Boolean> fRz;                       ///< the channel returns to zero in pattern mode
  Double dblPllRefFreq = 0;                        ///< hertz
  Long ePllRefSource = 0;                          ///< a PllReferenceSource

  bool operator==(const Setup &) const = default;
};

}  // namespace tarvik
