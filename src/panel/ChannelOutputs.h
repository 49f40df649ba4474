#pragma once

#include "controls/FrameEnhanced.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"

namespace tarvik {

/// Places of an output switch: the group within its container, the two options within the group.
struct OutputSwitchPlace {
  TwipsRect group, on, off;
};

/// The rows of one output switch of a channel (1 or 2). The timing page has element 0 of each group with the options 0
/// and 1, the levels page element 1 with the options 2 and 3. Outputs start off.
FormTable OutputSwitch(Integer intChan, Boolean fIsComplement, Long lngElement, const std::string &strContainer,
                       const OutputSwitchPlace &place);

/// The four output switches of a page: normal and inverse output of each channel. The timing and the levels page have
/// them both, over the same flags of the panel. Even options turn an output on, odd ones off.
class ChannelOutputs {
 public:
  /// Connects to the switches of this form.
  ChannelOutputs(const Form &form, PanelServices &panel);

  /// Sends the switch to the instrument at once, or marks both pages for the next upload.
  void SetChannelOutput(Integer intChan, Boolean fState, Boolean fIsComplement);
  /// Sets the groups from the panel's flags.
  void ShowFlags();

 private:
  struct Switch {
    FrameEnhanced *group;
    Integer intChan;
    Boolean fIsComplement;
  };

  Boolean &Flag(const Switch &output) const;
  void optChannelOutput_Click(const Switch &output, Integer Index);
  /// Number of channels of the open instrument, 0 without one.
  Long OpenChannels() const;

  PanelServices &m_panel;
  std::vector<Switch> m_arrSwitches;  ///< normal outputs first
};

}  // namespace tarvik
