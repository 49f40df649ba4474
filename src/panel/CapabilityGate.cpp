#include "panel/CapabilityGate.h"

#include "bitpattern/BitPattern.h"
#include "instrument/Vocabulary.h"
#include "panel/TimingPage.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

constexpr const char *CommandButtons[] = {"cmdUpload",     "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings",
                                          "cmdResetInstr", "cmdSelfTest", "cmdCalibrate"};

enum class Step {
  EnableForTwoChannels,  ///< a control that only an instrument with one channel loses
  EnableUnlessLacking,   ///< a control that goes with one of the capability bits
  NoteVxiLines,          ///< what the arming sources can offer
  LockTrailingEdge,      ///< coupling of the edges, of the channel whose index is the argument
  EnablePatternChannel2,
  StopIfDisabled,  ///< what is within a disabled box keeps its state
};

struct GateRow {
  Step eStep;
  const char *strControl;
  Long lngArgument;
};

/// Top to bottom. grpOutputs stands here twice: what the model lacks has the last word over the number of channels.
constexpr GateRow GateTable[] = {
    {Step::EnableForTwoChannels, "cboPulseType2", 0},
    {Step::NoteVxiLines, "", eLacksVxiLines},
    {Step::EnableForTwoChannels, "grpTimingChan2", 0},
    {Step::EnableUnlessLacking, "grpChan1InvOnOff(0)", eLacksComplement},
    {Step::EnableUnlessLacking, "grpChan2InvOnOff(0)", eLacksComplement},
    {Step::LockTrailingEdge, "", 0},
    {Step::LockTrailingEdge, "", 1},
    {Step::EnableForTwoChannels, "grpChannelOutput(1)", 0},
    {Step::EnableForTwoChannels, "grpLevelFormat(1)", 0},
    {Step::EnableForTwoChannels, "grpOutputs", 0},
    {Step::EnableUnlessLacking, "grpChan1InvOnOff(1)", eLacksComplement},
    {Step::EnableUnlessLacking, "grpChan2InvOnOff(1)", eLacksComplement},
    {Step::EnableUnlessLacking, "grpOutputs", eLacksChannelMath},
    {Step::EnablePatternChannel2, "", 0},
    {Step::EnableForTwoChannels, "grpLimitsChanel(1)", 0},
    {Step::EnableUnlessLacking, "grpVxiTrigger", eLacksAnyVxi},
    {Step::StopIfDisabled, "grpVxiTrigger", 0},
    {Step::EnableUnlessLacking, "cboVxiTriggerSource", eLacksVxiSource},
    {Step::EnableUnlessLacking, "cboVxiTriggerEnable", eLacksVxiEnable},
};

}  // namespace

CapabilityGate::CapabilityGate(QWidget &panel, PanelServices &services, TimingPage &timing, BitPattern &pattern)
    : m_panelWidget(panel), m_panel(services), m_timing(timing), m_pattern(pattern) {}

Control &CapabilityGate::Find(const char *strName) const {
  auto *control = dynamic_cast<Control *>(m_panelWidget.findChild<QWidget *>(QString::fromLatin1(strName)));
  Q_ASSERT_X(control, "CapabilityGate", strName);
  return *control;
}

void CapabilityGate::EnableCommandButtons(Boolean fEnable) {
  for (const char *strName : CommandButtons) SetEnabled(Find(strName), fEnable);
}

void CapabilityGate::EnableControlsForChannels(Long lngChannels) {
  const clsInstrInterface &instr = m_panel.ZorvaneInstr();
  PanelState &state = m_panel.State();
  state.mfDualChannel = lngChannels != 1;
  m_timing.ShowLanes();
  const Boolean fR4 = instr.IsRestricted(eLacksTrailingEdge);

  EnableCommandButtons(lngChannels != 0);
  for (const GateRow &row : GateTable) {
    const auto index = static_cast<Integer>(row.lngArgument);
    switch (row.eStep) {
      case Step::EnableForTwoChannels: SetEnabled(Find(row.strControl), state.mfDualChannel); break;
      case Step::EnableUnlessLacking: SetEnabled(Find(row.strControl), instr.IsNotRestricted(row.lngArgument)); break;
      case Step::NoteVxiLines: state.mfVxiLines = instr.IsNotRestricted(row.lngArgument); break;
      case Step::LockTrailingEdge:
        m_timing.SetTrailEdgeMode(index, state.mfTeEqLe[static_cast<std::size_t>(index)] || fR4, fR4, True);
        break;
      case Step::EnablePatternChannel2: m_pattern.EnableChannel2(state.mfDualChannel); break;
      case Step::StopIfDisabled:
        if (!Find(row.strControl).Enabled()) return;
        break;
    }
  }
}

}  // namespace tarvik
