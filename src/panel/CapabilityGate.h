#pragma once

#include <QWidget>

#include "panel/Page.h"
#include "support/Control.h"

namespace tarvik {

class BitPattern;
class TimingPage;

/// Enables and disables the controls of all pages by what the open instrument can do: its number of channels, and what
/// its model lacks. Hides nothing and changes no value.
class CapabilityGate {
 public:
  CapabilityGate(QWidget &panel, PanelServices &services, TimingPage &timing, BitPattern &pattern);

  /// Also sets mfDualChannel and mfVxiLines. 0 channels stands for no session.
  void EnableControlsForChannels(Long lngChannels);
  /// Enables or disables the buttons that need a session.
  void EnableCommandButtons(Boolean fEnable);

 private:
  Control &Find(const char *strName) const;

  QWidget &m_panelWidget;
  PanelServices &m_panel;
  TimingPage &m_timing;
  BitPattern &m_pattern;
};

}  // namespace tarvik
