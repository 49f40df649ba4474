#pragma once

#include "engrspin/EngrSpin.h"
#include "platform/StateArchive.h"

namespace tarvik {

/// Value, limits, unit, text, lock and what the host keeps in the field. Raises no AfterUpdate. The field must not be
/// in the middle of an entry.
void VisitState(EngrSpin &field, StateArchive &archive);

/// Whether the user is in the middle of an entry.
bool IsTyping(EngrSpin &field);

}  // namespace tarvik
