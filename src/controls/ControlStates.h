#pragma once

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "platform/StateArchive.h"

namespace tarvik {

/// Items, choice, saved choices and Enabled. Raises no Click.
void VisitState(CboEnhanced &list, StateArchive &archive);
/// Enabled; brought back, it reaches everything in the frame, so what stands in it comes afterwards.
void VisitState(FrameEnhanced &frame, StateArchive &archive);

}  // namespace tarvik
