#pragma once

#include "bitpattern/BitPattern.h"
#include "platform/StateArchive.h"

namespace tarvik {

/// Everything of the editor but the bits. Redraws without marking the page.
void VisitState(BitPattern &editor, StateArchive &archive);
/// The bits of one stream: eChan1, eChan2 or eStrobe.
void VisitStream(BitPattern &editor, Long eChannel, StateArchive &archive);

}  // namespace tarvik
