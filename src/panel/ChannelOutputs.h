#pragma once

#include "controls/FrameEnhanced.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"

namespace tarvik {

/// Where an output switch stands: its group in the container, its two options in the group.
struct OutputSwitchPlace {
  TwipsRect group, on, off;
};

/// The rows of one output switch of a channel (1 or 2). The timing page has element 0 of each group with the options 0
/// and 1, the levels page element 1 with the options 2 and 3. Outputs start off.
FormTable OutputSwitch(Integer intChan, Boolean fIsComplement, Long lngElement, const std::string &strContainer,
                       const OutputSwitchPlace &place);

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
  /// The pages keep the switches of channel 2 when an instrument without it is opened, and refresh them with the
  /// others.
  bool LacksChannel(Integer intChan) const;

  PanelServices &m_panel;
  std::vector<Switch> m_arrSwitches;  ///< normal outputs first
};

}  // namespace tarvik
