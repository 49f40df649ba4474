#include "panel/CapabilityGate.h"

#include <algorithm>

#include "bitpattern/BitPattern.h"
#include "panel/TimingPage.h"
#include "settings/Capabilities.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

constexpr const char *CommandButtons[] = {"cmdUpload",     "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings",
                                          "cmdResetInstr", "cmdSelfTest", "cmdCalibrate"};

struct GateRow {
  const char *strControl;
  Boolean Capabilities::*fOffered;
};

/// In this order. The second row of grpOutputs overrides the first: the model decides there, not the number
/// of channels.
constexpr GateRow GateTable[] = {
    {"cboPulseType2", &Capabilities::fDualChannel},       {"grpTimingChan2", &Capabilities::fDualChannel},
    {"grpChan1InvOnOff(0)", &Capabilities::fComplement},  {"grpChan2InvOnOff(0)", &Capabilities::fComplement},
    {"grpChannelOutput(1)", &Capabilities::fDualChannel}, {"grpLevelFormat(1)", &Capabilities::fDualChannel},
    {"grpOutputs", &Capabilities::fDualChannel},          {"grpChan1InvOnOff(1)", &Capabilities::fComplement},
    {"grpChan2InvOnOff(1)", &Capabilities::fComplement},  {"grpOutputs", &Capabilities::fChannelMath},
    {"grpLimitsChanel(1)", &Capabilities::fDualChannel},  {"grpVxiTrigger", &Capabilities::fVxiTrigger},
};

/// What the box of the VXI trigger contains.
constexpr GateRow VxiTable[] = {
    {"cboVxiTriggerSource", &Capabilities::fVxiSource},
    {"cboVxiTriggerEnable", &Capabilities::fVxiEnable},
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
  const Capabilities offered =
      CapabilitiesOf(lngChannels, [&](Long eFunctionality) { return instr.IsRestricted(eFunctionality); });
  PanelState &state = m_panel.State();
  state.mfDualChannel = offered.fDualChannel;
  state.mfVxiLines = offered.fVxiLines;
  m_timing.ShowLanes();
  EnableCommandButtons(offered.fSession);

  const auto apply = [&](const GateRow &row) { SetEnabled(Find(row.strControl), offered.*row.fOffered); };
  std::ranges::for_each(GateTable, apply);
  const Boolean fLocked = !offered.fTrailingEdge;
  for (const Integer Index : {Integer{0}, Integer{1}})
    m_timing.SetTrailEdgeMode(Index, state.mfTeEqLe[static_cast<std::size_t>(Index)] || fLocked, fLocked, True);
  m_pattern.EnableChannel2(offered.fDualChannel);
  if (offered.fVxiTrigger) std::ranges::for_each(VxiTable, apply);
}

}  // namespace tarvik
