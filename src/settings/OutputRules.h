#pragma once

#include "support/Types.h"

namespace tarvik {

/// Of the options of an output switch the even ones turn the output on, the odd ones off.
Boolean TurnsOutputOn(Integer intOption);

/// Whether an instrument with this number of channels (0 without a session) can be sent a switch of the channel. The
/// switches of channel 2 are refreshed on an instrument with one channel as well, and what that raises must not reach
/// the driver.
Boolean CanSwitchOutput(Integer intChan, Long lngChannels);

}  // namespace tarvik
