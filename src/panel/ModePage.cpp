#include "panel/ModePage.h"

#include "instrument/Vocabulary.h"
#include "panel/FillList.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "platform/ScopedFlag.h"
#include "platform/StateArchive.h"
#include "settings/ModeMask.h"
#include "settings/TimingRules.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/RunReported.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

using form::Frame;

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
  tarvik::SetEnabled(grpPulseMode, HasPulseMode(m_state.meTriggerMode));
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

// ---- Consequences of the mode, one procedure for each control ----

void ModePage::SetCboPulseType() {
  RunReported("TarvikGUI", "SetCboPulseType", [this] {
    tarvik::SetEnabled(esBurstLength, IsEnabledForMode(ModeMasks::BurstLength));
    // The mask of channel 1 decides for both.
    const Boolean fEnable = IsEnabledForMode(ModeMasks::PulseType);
    cboPulseType1.SetEnabled(fEnable);
    cboPulseType2.SetEnabled(fEnable);
    if (!fEnable) return;
    FillPulseType(cboPulseType1, 1);
    FillPulseType(cboPulseType2, 2);
  });
}

void ModePage::FillPulseType(CboEnhanced &cboPulseType, Integer intChan) {
  FillList(cboPulseType, PulseTypes(m_timing.IsPatternMode(), intChan));
  cboPulseType.RecallListIndex(m_state.mintModePos);
}

void ModePage::UpdatePeriodSource() {
  if (cboPeriodSource.ListCount() == 0) FillList(cboPeriodSource, PeriodSources());
  cboPeriodSource.EnableAndRecall(IsEnabledForMode(ModeMasks::PeriodSource), m_state.mintModePos);
}

void ModePage::UpdateTriggerSlope() {
  if (cboTriggerSlope.ListCount() == 0) FillList(cboTriggerSlope, ClockEdges());
  const Boolean fEnable = IsClockEdgeOfUse(m_state.mintModePos, cboPeriodSource.GetCurrItemData());
  cboTriggerSlope.EnableAndRecall(fEnable, m_state.mintModePos);
}

void ModePage::UpdateArmingSource() {
  const auto meaning = MeaningOfArming(m_state.meTriggerMode, m_state.mePulseMode);
  if (meaning) {
    cboArmingSource.SetCaption(meaning->strSourceCaption);
    if (meaning->strLevelCaption) cboArmingLevel.SetCaption(meaning->strLevelCaption);
  } else {
    ShowIllegalCase();
  }
  const Boolean fEnable = IsEnabledForMode(ModeMasks::ArmingSource);
  if (fEnable) FillArmingSource(meaning && meaning->fPllAllowed);
  cboArmingSource.EnableAndRecall(fEnable, m_state.mintModePos);
  UpdateArmingLevel();
}

void ModePage::FillArmingSource(Boolean fPllAllowed) {
  m_fOffersVxiLines = m_state.mfVxiLines;
  FillList(cboArmingSource, ArmingSources(fPllAllowed, m_state.mfVxiLines));
  cboArmingSource.RecallListIndex(m_state.mintModePos);
}

void ModePage::UpdateArmingLevel() {
  const bool fHasSource = cboArmingSource.ListIndex() != -1 && cboArmingSource.Enabled();
  const Boolean fEnable = fHasSource && m_state.meTriggerMode != eTriggerExtWidth;
  if (fEnable) FillArmingLevel();
  cboArmingLevel.EnableAndRecall(fEnable, m_state.mintModePos);
  UpdatePllField();
}

void ModePage::FillArmingLevel() {
  const auto known = LevelsOfArming(m_state.meTriggerMode, m_state.mePulseMode, cboArmingSource.GetCurrItemData(),
                                    cboPeriodSource.GetCurrItemData());
  if (!known) ShowIllegalCase();
  const ArmingLevels levels = known.value_or(ArmingLevels{});
  FillList(cboArmingLevel, levels.arrLevels);
  if (levels.strCaption) cboArmingLevel.SetCaption(levels.strCaption);
  m_fPllLevels = levels.fPll;
}

void ModePage::UpdatePllField() {
  const auto field = PllFieldOf(m_fPllLevels, cboArmingLevel.GetCurrItemData(eKeepPllFormat));
  if (field) {
    esPllPeriodOrFreq.SetCaption(field->strCaption);
    esPllPeriodOrFreq.SetBaseUnit(field->strBaseUnit);
  }
  tarvik::SetEnabled(esPllPeriodOrFreq, field.has_value());
}

// ---- Choices of the user ----

void ModePage::CheckPllConflict(Boolean &fConflict) const {
  fConflict = False;
  if (m_fIgnorePllConflict) return;
  if (!ClaimsPllTwice(cboArmingSource.GetCurrItemData(), cboPeriodSource.GetCurrItemData())) return;
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
  // The tab order of the page is a ring.
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

void ModePage::VisitState(StateArchive &archive) {
  // Two bits: whether it is known, and what it is.
  Boolean fKnown = m_fOffersVxiLines.has_value(), fOffers = m_fOffersVxiLines.value_or(False);
  archive.Shown(fKnown);
  archive.Shown(fOffers);
  archive.Shown(m_fPllLevels);
  if (archive.Loads()) m_fOffersVxiLines = fKnown ? std::optional(fOffers) : std::nullopt;
}

// ---- Transfer ----

ModeFields ModePage::Fields() const {
  return {.eTriggerMode = m_state.meTriggerMode,
          .ePulseMode = m_state.mePulseMode,
          .dblBurstLength = esBurstLength.Value(),
          .ePulseType = {cboPulseType1.GetCurrItemData(eTypeSingle), cboPulseType2.GetCurrItemData(eTypeSingle)},
          .ePeriodSource = cboPeriodSource.GetCurrItemData(eSourceOscillator),
          .eTriggerSlope = cboTriggerSlope.GetCurrItemData(eKeepSlope),
          .eArmingSource = cboArmingSource.GetCurrItemData(eKeepArmingSource),
          .lngArmingLevel = cboArmingLevel.GetCurrItemData(eKeepSlope),
          .dblPllPeriodOrFreq = esPllPeriodOrFreq.Value()};
}

void ModePage::TakeShown(Setup &setup) const { setup.Mode = ToModeInfo(Fields()); }

void ModePage::UploadMode(Boolean &fOk) {
  fOk = False;
  Setup setup;
  TakeShown(setup);
  if (!Instr().SetMode(setup.Mode)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageMode);
  fOk = True;
}

void ModePage::FitToInstrument() {
  m_state.mfVxiLines = Instr().IsNotRestricted(eLacksVxiLines);
  if (m_fOffersVxiLines.value_or(m_state.mfVxiLines) != m_state.mfVxiLines) {
    // The remembered index belongs to the entries that the list had before, so a conflict here means nothing.
    const ScopedFlag refilling(m_form, m_fIgnorePllConflict, true);
    UpdateArmingSource();
  }
  if (m_state.mfDualChannel || ChannelCount() < 2) return;
  m_state.mfDualChannel = True;
  tarvik::SetEnabled(cboPulseType2, IsEnabledForMode(ModeMasks::PulseType));
  m_pattern.Editor().EnableChannel2(True);
}

void ModePage::DownloadMode() {
  FitToInstrument();
  Setup read;
  if (!Instr().GetMode(read.Mode)) return;
  m_panel.Known().TakeRead(ePageMode, read);
  ShowMode(read.Mode);
  m_panel.SetTabState(ePageIsCurrent, ePageMode);
}

void ModePage::ShowSetup(const Setup &setup) { ShowMode(setup.Mode); }

void ModePage::ShowMode(const udtModeInfo &mode) {
  // Filled one after the other, the lists may claim the PLL twice for a moment although the mode does not.
  const ScopedFlag filling(m_form, m_fIgnorePllConflict, !ClaimsPllTwice(mode.ArmingSource, mode.PeriodSource));
  // The two modes rebuild the lists that depend on them, so they go first and the levels last.
  if (SetOptionButtonToTag(optTriggerMode.All(), CStr(mode.TriggerMode)) &&
      SetOptionButtonToTag(optPulseMode.All(), CStr(mode.PulseMode)))
    ShowFields(ToModeFields(mode));
}

void ModePage::ShowFields(const ModeFields &fields) {
  esBurstLength.SetValue(fields.dblBurstLength);
  if (fields.ePulseMode == ePulsePattern) {
    m_state.mfRz.SetRzState(fields.ePulseType[1], fields.ePulseType[2], True, True);
  } else {
    cboPulseType1.SetListIndexByItemData(fields.ePulseType[1]);
    cboPulseType2.SetListIndexByItemData(fields.ePulseType[2]);
  }
  cboPeriodSource.SetListIndexByItemData(fields.ePeriodSource);
  cboTriggerSlope.SetListIndexByItemData(fields.eTriggerSlope);
  cboArmingSource.SetListIndexByItemData(fields.eArmingSource);
  cboArmingLevel.SetListIndexByItemData(fields.lngArmingLevel);
  esPllPeriodOrFreq.SetValue(fields.dblPllPeriodOrFreq);
}

}  // namespace tarvik
