#pragma once

#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik::driver {

/// The two leading edges of a model with fixed edges, seconds. The first is the fastest edge of all models.
inline constexpr Double FastestEdge = 0.8e-9, SlowerFixedEdge = 1.6e-9;

/// Timing of one channel, seconds.
struct ChannelTiming {
  Long lngPulseType = eTypeSingle;
  Long lngSignalFormat = eFormatRz;
  bool fCoupled = true;            ///< the trailing edge follows the leading edge
  Double dblSingleDelay = 0;       ///< of the pulse
  Double dblDoubleDelay = 200e-9;  ///< of the second pulse, from the start of the first
  Double dblWidth = 100e-9;
  Double dblLeading = FastestEdge;
  Double dblTrailing = FastestEdge;  ///< in force only while not coupled

  /// Becoming a double-pulse channel moves the second pulse behind the first when it would overlap it.
  void SetPulseType(Long lngType);
  /// The delay decides between single and double pulse.
  void SetSingleDelay(Double dblDelay);
  void SetDoubleDelay(Double dblDelay);

  bool IsDouble() const { return lngPulseType == eTypeDouble; }
  Double DelayInForce() const { return IsDouble() ? dblDoubleDelay : dblSingleDelay; }
  Double TrailingInForce() const { return fCoupled ? dblLeading : dblTrailing; }
  bool operator==(const ChannelTiming &) const = default;
};

}  // namespace tarvik::driver
