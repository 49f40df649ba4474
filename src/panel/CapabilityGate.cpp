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
  EnableForTwoChannels,   ///< disabled only on an instrument with one channel
  EnableUnlessLacking,    ///< disabled where the instrument lacks the capability of the argument
  NoteVxiLines,           ///< sets mfVxiLines
  LockTrailingEdge,       ///< locks or frees the trailing edge; the argument is the control index of the channel
  EnablePatternChannel2,  ///< the pattern editor's channel 2
  StopIfDisabled,         ///< ends here if the box is disabled: what it contains keeps its state
};

struct GateRow {
  Step eStep;
  const char *strControl;
  Long lngArgument;
};

/// Runs from top to bottom. The second row of grpOutputs overrides the first: the capability decides there, not the
/// number of channels.
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
