#pragma once

#include <QWidget>

#include "panel/Page.h"
#include "support/Control.h"

namespace tarvik {

class BitPattern;
class TimingPage;

/// Adapts the controls of all pages to what the open instrument can do: number of channels, and what its model lacks.
/// Nothing is hidden and no value changes; it only enables and disables.
class CapabilityGate {
 public:
  CapabilityGate(QWidget &panel, PanelServices &services, TimingPage &timing, BitPattern &pattern);

  /// Runs the whole table; 0 channels stands for no session. Sets mfDualChannel and mfVxiLines.
  void EnableControlsForChannels(Long lngChannels);
  /// The buttons that need a session.
  void EnableCommandButtons(Boolean fEnable);

 private:
  Control &Find(const char *strName) const;

  QWidget &m_panelWidget;
  PanelServices &m_panel;
  TimingPage &m_timing;
  BitPattern &m_pattern;
};

}  // namespace tarvik
