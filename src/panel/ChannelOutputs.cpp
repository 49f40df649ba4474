#include "panel/ChannelOutputs.h"

#include "settings/OutputRules.h"

namespace tarvik {

namespace {

using form::Frame, form::Option;

struct SwitchRow {
  const char *strGroup;
  const char *strOptions;
  Integer intChan;
  Boolean fIsComplement;
};

/// In the order in which ShowFlags sets the groups.
constexpr SwitchRow SwitchTable[] = {
    {"grpChan1OnOff", "optChannel1Output", 1, False},
    {"grpChan2OnOff", "optChannel2Output", 2, False},
    {"grpChan1InvOnOff", "optChannel1InvOutput", 1, True},
    {"grpChan2InvOnOff", "optChannel2InvOutput", 2, True},
};

const SwitchRow &RowOf(Integer intChan, Boolean fIsComplement) {
  return SwitchTable[(fIsComplement ? 2 : 0) + intChan - 1];
}

}  // namespace

FormTable OutputSwitch(Integer intChan, Boolean fIsComplement, Long lngElement, const std::string &strContainer,
                       const OutputSwitchPlace &place) {
  const SwitchRow &row = RowOf(intChan, fIsComplement);
  const char *strToolTip = fIsComplement ? "Turn the inverse output on or off" : "Turn the normal output on or off";
  const char *strCaption = fIsComplement ? "Inverse" : "Output";
  const std::string strGroup = ControlName(row.strGroup, lngElement);
  const Long lngOn = 2 * lngElement, lngOff = lngOn + 1;
  return {
      Frame(row.strGroup, lngElement).In(strContainer).At(place.group).Caption(strCaption).ToolTip(strToolTip),
      Option(row.strOptions, lngOn).In(strGroup).At(place.on).Caption("On").Tag("True").ToolTip(strToolTip),
      Option(row.strOptions, lngOff)
          .In(strGroup)
          .At(place.off)
          .Caption("Off")
          .Tag("False")
          .Chosen()
          .ToolTip(strToolTip),
  };
}

ChannelOutputs::ChannelOutputs(const Form &form, PanelServices &panel) : m_panel(panel) {
  for (const SwitchRow &row : SwitchTable) {
    const Switch output{form.GetArray<FrameEnhanced>(row.strGroup).All().front(), row.intChan, row.fIsComplement};
    m_arrSwitches.push_back(output);
    for (const auto &[lngIndex, button] : form.GetArray<OptionButton>(row.strOptions)) {
      const auto Index = static_cast<Integer>(lngIndex);
      button->Click.Connect([this, output, Index] { optChannelOutput_Click(output, Index); });
    }
  }
}

Boolean &ChannelOutputs::Flag(const Switch &output) const {
  PanelState &state = m_panel.State();
  return (output.fIsComplement ? state.mfOutputInvOn : state.mfOutputOn)[output.intChan];
}

void ChannelOutputs::optChannelOutput_Click(const Switch &output, Integer Index) {
  Boolean &fState = Flag(output);
  fState = TurnsOutputOn(Index);
  if (m_panel.State().mfAutoOutputOnOff && !CanSwitchOutput(output.intChan, OpenChannels())) return;
  SetChannelOutput(output.intChan, fState, output.fIsComplement);
}

Long ChannelOutputs::OpenChannels() const { return m_panel.ZorvaneInstr().ChannelCount().value_or(0); }

void ChannelOutputs::SetChannelOutput(Integer intChan, Boolean fState, Boolean fIsComplement) {
  if (m_panel.State().mfAutoOutputOnOff) {
    if (m_panel.ZorvaneInstr().Output(intChan, fState, fIsComplement))
      m_panel.OutputSwitched(intChan, fState, fIsComplement);
    return;
  }
  // The records of both pages contain the switches.
  m_panel.SetTabState(ePageIsDirty, ePageTiming);
  m_panel.SetTabState(ePageIsDirty, ePageLevels);
}

void ChannelOutputs::ShowFlags() {
  for (const Switch &output : m_arrSwitches) output.group->SetValue(Flag(output));
}

}  // namespace tarvik
