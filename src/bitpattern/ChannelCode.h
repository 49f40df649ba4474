#pragma once

#include "support/Types.h"

namespace tarvik {

/// Channel codes of the editor. They are powers of two, so that a sum tells a set of channels.
enum ChannelCode : Long { eChan1 = 1, eChan2 = 2, eBoth = 4, eStrobe = 8 };

}  // namespace tarvik
