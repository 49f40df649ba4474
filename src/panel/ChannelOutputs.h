#pragma once

#include "controls/FrameEnhanced.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"

namespace tarvik {

/// The four output switches of a page: normal and inverse output of each channel. Two pages carry them over the same
/// flags of the panel: even options turn an output on, odd ones off.
class ChannelOutputs {
 public:
  /// Takes the switches that stand on this form and answers their clicks.
  ChannelOutputs(const Form &form, PanelServices &panel);

  /// Sends one output switch to the instrument at once, or leaves it to the next upload of both pages.
  void SetChannelOutput(Integer intChan, Boolean fState, Boolean fIsComplement);
  /// The groups follow the panel's flags.
  void ShowFlags();

 private:
  struct Switch {
    FrameEnhanced *group;
    Integer intChan;
    Boolean fIsComplement;
  };

  Boolean &Flag(const Switch &output) const;
  void optChannelOutput_Click(const Switch &output, Integer Index);

  PanelServices &m_panel;
  std::vector<Switch> m_arrSwitches;  ///< normal outputs first
};

}  // namespace tarvik
