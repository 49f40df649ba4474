#pragma once

#include <array>

#include "settings/PageStates.h"
#include "settings/RzFlags.h"
#include "support/Types.h"
#include "support/modGlobals.h"

namespace tarvik {

/// Fields that several pages share. Channel arrays are addressed by the channel number; all start false or 0.
struct PanelState {
  PageStates meTabState{};

  Boolean mfDownloading;       ///< controls are being filled: nothing turns dirty
  Boolean mfForceDownloadAll;  ///< an automatic download takes every page, whatever the option says
  Boolean mfAutoOutputOnOff;   ///< output switches go to the instrument at once
  Boolean mfWorkWithBoxes;     ///< the list shows instruments without a slot, too

  Boolean mfDualChannel;  ///< not an instrument with one channel
  Boolean mfVxiLines;     ///< the instrument can be armed by VXI lines

  Long meTriggerMode = 0;
  Long mePulseMode = 0;
  Integer mintModePos = 0;  ///< trigger mode * 4 + pulse mode + 1

  ChannelArray<Boolean> mfOutputOn;
  ChannelArray<Boolean> mfOutputInvOn;
  ChannelArray<Boolean> mfDoublePulse;
  RzFlags mfRz;
  std::array<Boolean, 2> mfTeEqLe{};  ///< trailing edge follows leading edge; by control index
};

}  // namespace tarvik
