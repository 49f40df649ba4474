#include "panel/ModePage.h"

#include <QScopedValueRollback>

#include "instrument/Vocabulary.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "settings/ModeMask.h"
#include "settings/TimingRules.h"
#include "settings/modCboTags.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

using form::Frame;

constexpr const char *NoMeaning = " ";
constexpr const char *Period = "Period", *Frequency = "Frequency";

constexpr Double CaptionWidth = 1500;
constexpr Single BoxWidth = 2970;
constexpr Single RowsLeft = 3210, RowsTop = 360, RowPitch = 440, RowWidth = 5130;

/// A list in one of the rows beside the boxes, which count from 0.
ControlDesign List(const char *strName, int intRow, const char *strCaption) {
  return form::List(strName)
      .At({RowsLeft, RowsTop + RowPitch * static_cast<Single>(intRow), RowWidth, 345})
      .Caption(strCaption, CaptionWidth);
}

/// A field in such a row, lower than a list and in the middle of the row.
ControlDesign Field(const char *strName, int intRow, const char *strCaption) {
  return form::Field(strName)
      .At({RowsLeft, RowsTop + RowPitch * static_cast<Single>(intRow) + 15, RowWidth, 315})
      .Caption(strCaption, CaptionWidth);
}

ControlDesign Option(const char *strName, Long lngIndex, const char *strBox, const char *strCaption) {
  return form::Option(strName, lngIndex)
      .In(strBox)
      .At({180, 330 + 390 * static_cast<Single>(lngIndex), 2640, 330})
      .Caption(strCaption);
}

FormTable TriggerModes() {
  const auto option = [](Long lngMode, const char *strCaption) {
    return Option("optTriggerMode", lngMode, "grpTriggerMode", strCaption);
  };
  return {
      Frame("grpTriggerMode").At({120, 120, BoxWidth, 1980}).Caption("Trigger Mode"),
      option(0, "Continuous").Chosen().ToolTip("Pulses without end"),
      option(1, "Triggered").ToolTip("Each trigger starts a pulse, a burst or a pattern"),
      option(2, "Gated").ToolTip("Pulses as long as the gate is open"),
      option(3, "Ext-Width").ToolTip("The external signal gives the pulse's width"),
  };
}

FormTable PulseModes() {
  const auto option = [](Long lngMode, const char *strCaption) {
    return Option("optPulseMode", lngMode, "grpPulseMode", strCaption);
  };
  return {
      Frame("grpPulseMode").At({120, 2220, BoxWidth, 1590}).Caption("Pulse Mode"),
      option(0, "Pulse Stream").Chosen().ToolTip("Single or double pulses, one each period"),
      option(1, "Burst").ToolTip("A counted number of pulses"),
      option(2, "Pattern").ToolTip("The bits of the pattern page"),
  };
}

FormTable Rows() {
  return {
      Field("esBurstLength", 0, " Burst Length")
          .Range(2, 65536)
          .Exponents(0, 0)
          .NumberFormat("#")
          .ToolTip("Number of pulses in a burst"),
      List("cboPulseType1", 1, "Pulse Type")
          .TagX(ModeMasks::PulseType)
          .SpokenName("Pulse Type, Channel 1")
          .ToolTip("Kind of pulses of channel 1"),
      List("cboPulseType2", 2, "")
          .TagX(ModeMasks::PulseType)
          .SpokenName("Pulse Type, Channel 2")
          .ToolTip("Kind of pulses of channel 2"),
      List("cboPeriodSource", 3, "Period Source").TagX(ModeMasks::PeriodSource).ToolTip("Where the period comes from"),
      List("cboTriggerSlope", 4, "Clock Edge").TagX(ModeMasks::TriggerSlope).ToolTip("Active edge of the clock input"),
      List("cboArmingSource", 5, "Arming Source")
          .TagX(ModeMasks::ArmingSource)
          .ToolTip("What arms the trigger or the gate"),
      List("cboArmingLevel", 6, "Arming Level")
          .TagX(ModeMasks::ArmingLevel)
          .ToolTip("Slope or level of the arming source"),
      Field("esPllPeriodOrFreq", 7, " Freq.")
          .BaseUnit("Hz")
          .MinExponent(0)
          .SpokenName("PLL period or frequency")
          .ToolTip("Period or frequency of the internal PLL"),
  };
}

FormTable Design() {
  FormTable table;
  table.Add(TriggerModes());
  table.Add(PulseModes());
  table.Add(Rows());
  return table;
}

}  // namespace

ModePage::ModePage(QWidget &page, PanelServices &panel, TimingPage &timing, PatternPage &pattern)
    : Page(page, panel, Design()),
      m_timing(timing),
      m_pattern(pattern),
      grpTriggerMode(m_form.Get<FrameEnhanced>("grpTriggerMode")),
      grpPulseMode(m_form.Get<FrameEnhanced>("grpPulseMode")),
      optTriggerMode(m_form.GetArray<OptionButton>("optTriggerMode")),
      optPulseMode(m_form.GetArray<OptionButton>("optPulseMode")),
      esBurstLength(m_form.Get<EngrSpin>("esBurstLength")),
      cboPulseType1(m_form.Get<CboEnhanced>("cboPulseType1")),
      cboPulseType2(m_form.Get<CboEnhanced>("cboPulseType2")),
      cboPeriodSource(m_form.Get<CboEnhanced>("cboPeriodSource")),
      cboTriggerSlope(m_form.Get<CboEnhanced>("cboTriggerSlope")),
      cboArmingSource(m_form.Get<CboEnhanced>("cboArmingSource")),
      cboArmingLevel(m_form.Get<CboEnhanced>("cboArmingLevel")),
      esPllPeriodOrFreq(m_form.Get<EngrSpin>("esPllPeriodOrFreq")) {
  ConnectEvents();
}

void ModePage::ConnectEvents() {
  m_rzConnection = m_state.mfRz.Changed.ConnectScoped([this](const RzFlags::Change &change) { ShowRz(change); });
  for (const auto *arrButtons : {&optTriggerMode, &optPulseMode})
    for (const auto &[lngIndex, button] : *arrButtons) button->Click.Connect([this] { optMode_Click(); });
  cboArmingSource.Click.Connect([this] { cboArmingSource_Click(); });
  cboPeriodSource.Click.Connect([this] { cboPeriodSource_Click(); });
  cboArmingLevel.Click.Connect([this] { cboArmingLevel_Click(); });
  cboTriggerSlope.Click.Connect([this] { cboTriggerSlope_Click(); });
  cboPulseType1.Click.Connect([this] { cboPulseType_Click(cboPulseType1); });
  cboPulseType2.Click.Connect([this] { cboPulseType_Click(cboPulseType2); });
  esPllPeriodOrFreq.OnTab.Connect([this](Boolean &SwallowTab) { esPllPeriodOrFreq_OnTab(SwallowTab); });
}

void ModePage::Enter() {
  grpTriggerMode.SetFocusOnOpt();
  UpdateModePage();
}

void ModePage::InitModePage() {
  for (const auto *arrButtons : {&optTriggerMode, &optPulseMode})
    for (const auto &[lngIndex, button] : *arrButtons) button->SetTag(CStr(lngIndex));
  UpdateModePage();
}

// ---- The mode and its masks ----

void ModePage::UpdateModePage() {
  m_state.meTriggerMode = grpTriggerMode.ArrayIndex();
  m_state.mePulseMode = grpPulseMode.ArrayIndex();
  m_state.mintModePos = ModePosition(m_state.meTriggerMode, m_state.mePulseMode);
  tarvik::SetEnabled(grpPulseMode, m_state.meTriggerMode != eTriggerExtWidth);
  SetCboPulseType();
  UpdatePeriodSource();
  UpdateTriggerSlope();
  UpdateArmingSource();
  m_timing.LockWidths();
}

void ModePage::optMode_Click() {
  UpdateModePage();
  MarkDirty(ePageMode);
}

Boolean ModePage::IsEnabledForMode(const char *strMask) const { return IsEnabledAt(strMask, m_state.mintModePos); }

// ---- What follows from the mode, one procedure for each control ----

void ModePage::SetCboPulseType() {
  try {
    tarvik::SetEnabled(esBurstLength, IsEnabledForMode(ModeMasks::BurstLength));
    // The mask of channel 1 decides for both.
    const Boolean fEnable = IsEnabledForMode(ModeMasks::PulseType);
    cboPulseType1.SetEnabled(fEnable);
    cboPulseType2.SetEnabled(fEnable);
    if (!fEnable) return;
    FillPulseType(cboPulseType1, " Pulses at Output 1");
    FillPulseType(cboPulseType2, " Pulses at Output 2");
  } catch (const RunTimeError &error) {
    LogError("TarvikGUI", "SetCboPulseType", error.Number(), error.Description());
  }
}

void ModePage::FillPulseType(CboEnhanced &cboPulseType, const char *strOutput) {
  const bool fPattern = m_timing.IsPatternMode();
  cboPulseType.Clear();
  const auto add = [&](const std::string &strType, Long eType) {
    cboPulseType.AddItemData(strType + strOutput, eType);
  };
  add(fPattern ? "RZ" : "Single", fPattern ? Long{eFormatRz} : eTypeSingle);
  add(fPattern ? "NRZ" : "Double", fPattern ? Long{eFormatNrz} : eTypeDouble);
  cboPulseType.RecallListIndex(m_state.mintModePos);
}

void ModePage::UpdatePeriodSource() {
  const Boolean fEnable = IsEnabledForMode(ModeMasks::PeriodSource);
  if (cboPeriodSource.ListCount() == 0) {
    cboPeriodSource.AddItemData("Internal Oscillator", eSourceOscillator);
    cboPeriodSource.AddItemData("Internal PLL", eSourcePll);
    cboPeriodSource.AddItemData("CLK-IN", eSourceClkIn);
  }
  cboPeriodSource.EnableAndRecall(fEnable, m_state.mintModePos);
}

void ModePage::UpdateTriggerSlope() {
  Boolean fEnable = IsEnabledForMode(ModeMasks::TriggerSlope);
  if (cboTriggerSlope.ListCount() == 0) {
    cboTriggerSlope.AddItemData("Rising", eSlopeRising);
    cboTriggerSlope.AddItemData("Falling", eSlopeFalling);
  }
  // The clock's edge matters only to those who use the clock.
  if (fEnable) fEnable = cboPeriodSource.GetCurrItemData() == eSourceClkIn;
  cboTriggerSlope.EnableAndRecall(fEnable, m_state.mintModePos);
}

void ModePage::UpdateArmingSource() {
  Boolean fPllAllowed = False;
  switch (m_state.meTriggerMode) {
    case eTriggerContinuous:
      cboArmingSource.SetCaption(NoMeaning);
      cboArmingLevel.SetCaption(NoMeaning);
      break;
    case eTriggerTriggered:
      cboArmingSource.SetCaption("Triggered By");
      fPllAllowed = m_state.mePulseMode != ePulseStream;
      break;
    case eTriggerGated: cboArmingSource.SetCaption("Gated By"); break;
    case eTriggerExtWidth:
      cboArmingSource.SetCaption("Width");
      cboArmingLevel.SetCaption(NoMeaning);
      break;
    default: ShowIllegalCase(); break;
  }
  const Boolean fEnable = IsEnabledForMode(ModeMasks::ArmingSource);
  if (fEnable) FillArmingSource(fPllAllowed);
  cboArmingSource.EnableAndRecall(fEnable, m_state.mintModePos);
  UpdateArmingLevel();
}

void ModePage::FillArmingSource(Boolean fPllAllowed) {
  m_fOffersVxiLines = m_state.mfVxiLines;
  cboArmingSource.Clear();
  if (!m_state.mfVxiLines) cboArmingSource.AddItemData("Man. Key", eArmManual);
  cboArmingSource.AddItemData("External Input", eArmExternal);
  if (fPllAllowed) cboArmingSource.AddItemData("Internal PLL", eArmPll);
  if (m_state.mfVxiLines)
    for (Long eLine = eVxiEclt0; eLine <= eVxiTtlt7; ++eLine) cboArmingSource.AddItemData(VxiLineName(eLine), eLine);
  cboArmingSource.RecallListIndex(m_state.mintModePos);
}

void ModePage::UpdateArmingLevel() {
  if (cboArmingSource.ListIndex() == -1 || cboArmingSource.ListCount() == 0 || !cboArmingSource.Enabled() ||
      m_state.meTriggerMode == eTriggerExtWidth) {
    cboArmingLevel.EnableAndRecall(False, m_state.mintModePos);
  } else {
    FillArmingLevel();
    cboArmingLevel.EnableAndRecall(True, m_state.mintModePos);
  }
  UpdatePllField();
}

void ModePage::FillArmingLevel() {
  const bool fPll = cboArmingSource.GetCurrItemData() == eArmPll;
  const bool fBothAllowed = cboPeriodSource.GetCurrItemData() != eSourcePll || m_state.mePulseMode == ePulseStream;
  cboArmingLevel.Clear();
  if (fPll) {
    cboArmingLevel.SetCaption("PLL Mode");
    cboArmingLevel.AddItemData(Period, ePllPeriod);
    cboArmingLevel.AddItemData(Frequency, ePllFrequency);
    return;
  }
  switch (m_state.meTriggerMode) {
    case eTriggerContinuous:
    case eTriggerExtWidth: break;
    case eTriggerTriggered:
      cboArmingLevel.SetCaption("Trigger Slope");
      cboArmingLevel.AddItemData("Rising", eSlopeRising);
      cboArmingLevel.AddItemData("Falling", eSlopeFalling);
      if (fBothAllowed) cboArmingLevel.AddItemData("Both", eSlopeBoth);
      break;
    case eTriggerGated:
      cboArmingLevel.SetCaption("Gate Level");
      cboArmingLevel.AddItemData("High Level", eSlopeRising);
      cboArmingLevel.AddItemData("Low Level", eSlopeFalling);
      cboArmingLevel.AddItemData("Always", eSlopeBoth);
      break;
    default: ShowIllegalCase(); break;
  }
}

void ModePage::UpdatePllField() {
  const std::string strText = cboArmingLevel.ListIndex() == -1 ? std::string() : cboArmingLevel.Text();
  const bool fPeriod = strText == Period, fFrequency = strText == Frequency;
  if (fPeriod || fFrequency) {
    esPllPeriodOrFreq.SetCaption(strText);
    esPllPeriodOrFreq.SetBaseUnit(fPeriod ? "s" : "Hz");
  }
  tarvik::SetEnabled(esPllPeriodOrFreq, fPeriod || fFrequency);
}

// ---- Choices of the user ----

void ModePage::CheckPllConflict(Boolean &fConflict) const {
  fConflict = False;
  if (m_fPllServesOnce) return;
  if (cboArmingSource.GetCurrItemData() != eArmPll || cboPeriodSource.GetCurrItemData() != eSourcePll) return;
  ShowBox("Pll source already in use!", BoxIcon::Exclamation);
  fConflict = True;
}

void ModePage::cboArmingSource_Click() {
  Boolean fConflict;
  CheckPllConflict(fConflict);
  if (fConflict)
    cboArmingSource.RecallListIndex(m_state.mintModePos);
  else
    cboArmingSource.SaveListIndex(m_state.mintModePos);
  UpdateArmingLevel();
}

void ModePage::cboPeriodSource_Click() {
  Boolean fConflict;
  CheckPllConflict(fConflict);
  if (fConflict) {
    cboPeriodSource.RecallListIndex(m_state.mintModePos);
  } else {
    cboPeriodSource.SaveListIndex(m_state.mintModePos);
    UpdateArmingLevel();
  }
  UpdateTriggerSlope();
}

void ModePage::cboArmingLevel_Click() {
  cboArmingLevel.SaveListIndex(m_state.mintModePos);
  UpdatePllField();
}

void ModePage::cboTriggerSlope_Click() { cboTriggerSlope.SaveListIndex(m_state.mintModePos); }

void ModePage::cboPulseType_Click(CboEnhanced &cboPulseType) {
  cboPulseType.SaveListIndex(m_state.mintModePos);
  UpdatePulseType();
}

void ModePage::esPllPeriodOrFreq_OnTab(Boolean &SwallowTab) {
  // Behind the last field of the page comes its first control again.
  SwallowTab = True;
  m_panel.EnterVisiblePage();
}

// ---- Pulse types and return to zero ----

void ModePage::UpdatePulseType() {
  const Long eType1 = cboPulseType1.GetCurrItemData(), eType2 = cboPulseType2.GetCurrItemData();
  m_state.mfDoublePulse = DoublePulses(m_timing.IsPatternMode(), eType1, eType2);
  if (m_timing.IsPatternMode()) m_state.mfRz.SetRzState(eType1, eType2, True, False);
  m_timing.ShowDelayCaptions();
  m_timing.DrawTiming();
}

void ModePage::ShowRz(const RzFlags::Change &change) {
  if (!change.fUpdateCombos || !m_timing.IsPatternMode()) return;
  cboPulseType1.SetListIndexByItemData(change.eType[1]);
  cboPulseType2.SetListIndexByItemData(change.eType[2]);
}

// ---- Transfer ----

void ModePage::UploadMode(Boolean &fOk) {
  fOk = False;
  udtModeInfo mode;
  mode.TriggerMode = CLng(std::string_view(optTriggerMode[m_state.meTriggerMode].Tag()));
  mode.PulseMode = CLng(std::string_view(optPulseMode[m_state.mePulseMode].Tag()));
  mode.BurstLength = CLng(esBurstLength.Value());
  mode.PulseType = {cboPulseType1.GetCurrItemData(1), cboPulseType2.GetCurrItemData(1)};
  mode.SignalFormat = mode.PulseType;
  mode.PeriodSource = cboPeriodSource.GetCurrItemData(0);
  mode.TriggerSlope = cboTriggerSlope.GetCurrItemData(eKeepSlope);
  mode.ArmingSource = cboArmingSource.GetCurrItemData(eKeepArmingSource);
  mode.ArmSlope = eKeepSlope;
  mode.PllFormat = eKeepPllFormat;
  if (mode.ArmingSource == eArmPll) {
    mode.PllFormat = cboArmingLevel.GetCurrItemData(eKeepPllFormat);
    mode.PllPeriodOrFreq = esPllPeriodOrFreq.Value();
  } else {
    mode.ArmSlope = cboArmingLevel.GetCurrItemData(eKeepSlope);
  }
  if (!Instr().SetMode(mode)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageMode);
  fOk = True;
}

void ModePage::FitToInstrument() {
  m_state.mfVxiLines = Instr().IsNotRestricted(eLacksVxiLines);
  if (cboArmingSource.ListCount() > 0 && m_fOffersVxiLines != m_state.mfVxiLines) {
    // What the refilled list recalls stood for something else in the other one.
    const QScopedValueRollback<bool> refilling(m_fPllServesOnce, true);
    UpdateArmingSource();
  }
  if (m_state.mfDualChannel || ChannelCount() < 2) return;
  m_state.mfDualChannel = True;
  tarvik::SetEnabled(cboPulseType2, IsEnabledForMode(ModeMasks::PulseType));
  m_pattern.Editor().EnableChannel2(True);
}

void ModePage::DownloadMode() {
  FitToInstrument();
  udtModeInfo mode;
  if (!Instr().GetMode(mode)) return;
  // Between two sound states the lists may claim the PLL twice, which is nobody's choice.
  const QScopedValueRollback<bool> servesOnce(m_fPllServesOnce,
                                              mode.PeriodSource != eSourcePll || mode.ArmingSource != eArmPll);
  // The two modes rebuild the lists that depend on them, so they go first and the levels last.
  if (SetOptionButtonToTag(optTriggerMode.All(), CStr(mode.TriggerMode)) &&
      SetOptionButtonToTag(optPulseMode.All(), CStr(mode.PulseMode))) {
    esBurstLength.SetValue(mode.BurstLength);
    ShowChannelTypes(mode);
    cboPeriodSource.SetListIndexByItemData(mode.PeriodSource);
    cboTriggerSlope.SetListIndexByItemData(mode.TriggerSlope);
    cboArmingSource.SetListIndexByItemData(mode.ArmingSource);
    ShowArming(mode);
  }
  m_panel.SetTabState(ePageIsCurrent, ePageMode);
}

void ModePage::ShowChannelTypes(const udtModeInfo &mode) {
  if (mode.PulseMode == ePulsePattern) {
    m_state.mfRz.SetRzState(mode.SignalFormat[1], mode.SignalFormat[2], True, True);
    return;
  }
  cboPulseType1.SetListIndexByItemData(mode.PulseType[1]);
  cboPulseType2.SetListIndexByItemData(mode.PulseType[2]);
}

void ModePage::ShowArming(const udtModeInfo &mode) {
  const bool fPll = mode.ArmingSource == eArmPll;
  cboArmingLevel.SetListIndexByItemData(fPll ? mode.PllFormat : mode.ArmSlope);
  esPllPeriodOrFreq.SetValue(fPll ? mode.PllPeriodOrFreq : 0);
}

}  // namespace tarvik
