#pragma once

#include "controls/CboEnhanced.h"
#include "settings/Choice.h"

namespace tarvik {

/// Puts these entries in place of those that the list has; none is selected.
inline void FillList(CboEnhanced &list, const Choices &arrChoices) {
  list.Clear();
  for (const Choice &choice : arrChoices) list.AddItemData(choice.strText, choice.lngItemData);
}

}  // namespace tarvik
