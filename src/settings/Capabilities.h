#pragma once

#include <functional>

#include "support/Types.h"

namespace tarvik {

/// What the controls of the pages offer on the open instrument. Without a session they offer everything but commands.
struct Capabilities {
  Boolean fSession;       ///< commands and transfers
  Boolean fDualChannel;   ///< settings of channel 2; only an instrument with one channel has none
  Boolean fComplement;    ///< inverse outputs
  Boolean fChannelMath;   ///< outputs that are combined; decided by the model, not by the number of channels
  Boolean fTrailingEdge;  ///< edges that differ
  Boolean fVxiLines;      ///< arming by VXI lines
  Boolean fVxiTrigger;    ///< the VXI trigger as a whole; without it its two settings stay as they are
  Boolean fVxiSource;
  Boolean fVxiEnable;
  bool operator==(const Capabilities &) const = default;
};

/// lngChannels is 0 without a session. Lacks tells whether the instrument lacks one of a sum of Functionality bits.
Capabilities CapabilitiesOf(Long lngChannels, const std::function<Boolean(Long)> &Lacks);

}  // namespace tarvik
