#pragma once

#include "panel/PanelState.h"
#include "platform/ScopedFlag.h"

namespace tarvik {

/// While it lives, what the controls are given is not the user's: their clicks neither send to the instrument nor mark
/// a page.
class ProgramShows {
 public:
  ProgramShows(QObject &panel, PanelState &state)
      : m_auto(panel, state.mfAutoOutputOnOff, false), m_downloading(panel, state.mfDownloading) {}

 private:
  const ScopedFlag<Boolean> m_auto, m_downloading;
};

}  // namespace tarvik
