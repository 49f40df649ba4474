#include "panel/TimingPage.h"

#include <algorithm>

#include "instrument/Vocabulary.h"
#include "settings/modCboTags.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

constexpr const char *Period = "Period", *Frequency = "Frequency";
constexpr const char *Seconds = "s", *Hertz = "Hz";
constexpr const char *KeyCoupled = "TeEqLe", *KeyAbsolute = "TeAbs";
constexpr const char *Locked = "Locked";
/// The only edges that some models can make.
constexpr const char *FixedEdges = "0.8E-9;1.6E-9";

/// Seconds: what the fields of the form take before any range is known.
constexpr Double ShortestWidthOfForm = 1.5E-9, LongestTime = 999.5;
/// What the instruments really make; the form's own bound is a little lower.
constexpr Double ShortestWidth = 1.515E-9;

constexpr Single BoxWidth = 4050, FieldLeft = 120, FieldWidth = 3810, CaptionWidth = 1440, CaptionGap = 100;

PropertyBag TimeField(Double dblMin, const char *strToolTip) {
  return {
      {"BaseUnit", Seconds}, {"Min", dblMin}, {"Max", LongestTime}, {"MinExponent", Long{-9}}, {"ToolTip", strToolTip}};
}

PropertyBag TimeField(const char *strCaption, Double dblMin, const char *strToolTip) {
  PropertyBag bag = TimeField(dblMin, strToolTip);
  bag.Set("Caption", strCaption);
  bag.Set("CaptionWidth", Double{CaptionWidth});
  return bag;
}

OutputSwitchPlace SwitchPlace(Single sngLeft) {
  return {{sngLeft, 2115, 1845, 765}, {120, 330, 780, 315}, {945, 330, 780, 315}};
}

void AddChannel(std::vector<ControlDesign> &arrDesign, Integer k) {
  const auto intChan = static_cast<Integer>(k + 1);
  const std::string strBox = "grpTimingChan" + std::to_string(intChan);
  const Single sngEdgeLeft = FieldLeft + CaptionWidth + CaptionGap;
  PropertyBag trailing = TimeField(1E-12, "Trailing edge of the pulse");
  trailing.Set("AccessibleName", "Trailing Edge");
  arrDesign.insert(arrDesign.end(),
                   {{ControlKind::Frame,
                     strBox,
                     NoIndex,
                     "",
                     {k == 0 ? Single{120} : Single{4290}, 1890, BoxWidth, 3000},
                     {{"Caption", k == 0 ? " Channel 1 " : " Channel 2 "}}},
                    {ControlKind::Field,
                     "esDelay",
                     k,
                     strBox,
                     {FieldLeft, 345, FieldWidth, 315},
                     TimeField("Delay", 0, "Delay of the pulse; of the second pulse of a pair")},
                    {ControlKind::Field,
                     "esWidth",
                     k,
                     strBox,
                     {FieldLeft, 765, FieldWidth, 315},
                     TimeField("Width", ShortestWidthOfForm, "Width of the pulse, leading edge included")},
                    {ControlKind::Field,
                     "esLeadingEdge",
                     k,
                     strBox,
                     {FieldLeft, 1185, FieldWidth, 315},
                     TimeField("Leading Edge", 1E-12, "Leading edge of the pulse")},
                    {ControlKind::Menu,
                     "toolPopupTEdge",
                     k,
                     strBox,
                     {FieldLeft, 1605, CaptionWidth + 40, 315},
                     {{"Caption", "Trailing Edge"},
                      {"Menu", "TeEqLe=Trail Edge = Lead Edge|TeAbs=Trail Edge Absolute"},
                      {"ToolTip", "Let the trailing edge follow the leading edge or set it by itself"}}},
                    {ControlKind::Field,
                     "esTrailingEdge",
                     k,
                     strBox,
                     {sngEdgeLeft, 1605, FieldLeft + FieldWidth - sngEdgeLeft, 315},
                     trailing}});
  AddOutputSwitch(arrDesign, intChan, False, 0, strBox, SwitchPlace(120));
  AddOutputSwitch(arrDesign, intChan, True, 0, strBox, SwitchPlace(2085));
}

const std::vector<ControlDesign> &Design() {
  static const std::vector<ControlDesign> arrDesign = [] {
    std::vector<ControlDesign> arr{{ControlKind::Button,
                                    "cmdPeriodOrFreq",
                                    NoIndex,
                                    "",
                                    {742.5F, 135, 1560, 375},
                                    {{"Caption", Period}, {"ToolTip", "Set Instrument Period or Frequency"}}},
                                   {ControlKind::Field,
                                    "esPeriodOrFreq",
                                    NoIndex,
                                    "",
                                    {2400, 165, 2640, 315},
                                    {{"BaseUnit", Seconds},
                                     {"DefaultValue", 1.0},
                                     {"Min", 1E-12},
                                     {"MinExponent", Long{-9}},
                                     {"ToolTip", "Period or frequency of the instrument"},
                                     {"AccessibleName", "Period or frequency"}}},
                                   {ControlKind::Picture,
                                    "picTiming",
                                    NoIndex,
                                    "",
                                    {742.5F, 630, 6975, 1095},
                                    {{"BackColor", Long{0}},
                                     {"ForeColor", Long{0x00C7D863}},
                                     {"ToolTip", "Two periods of each channel"},
                                     {"AccessibleName", "Timing diagram"}}}};
    AddChannel(arr, 0);
    AddChannel(arr, 1);
    return arr;
  }();
  return arrDesign;
}

constexpr Single DiagramWidth = 6975, DiagramHeight = 1095;

}  // namespace

TimingPage::TimingPage(QWidget &page, PanelServices &panel)
    : Page(page, panel, Design()),
      cmdPeriodOrFreq(m_form.Get<CommandButton>("cmdPeriodOrFreq")),
      esPeriodOrFreq(m_form.Get<EngrSpin>("esPeriodOrFreq")),
      picTiming(m_form.Get<PictureBox>("picTiming")),
      esDelay(m_form.GetArray<EngrSpin>("esDelay")),
      esWidth(m_form.GetArray<EngrSpin>("esWidth")),
      esLeadingEdge(m_form.GetArray<EngrSpin>("esLeadingEdge")),
      esTrailingEdge(m_form.GetArray<EngrSpin>("esTrailingEdge")),
      toolPopupTEdge(m_form.GetArray<ToolPopup>("toolPopupTEdge")),
      m_outputs(m_form, panel),
      m_diagram(picTiming) {
  // The drawing keeps its scale however the pixels of the widget come out.
  picTiming.SetScale(DiagramWidth, DiagramHeight);
  ConnectEvents();
}

void TimingPage::ConnectEvents() {
  cmdPeriodOrFreq.Click.Connect([this] { cmdPeriodOrFreq_Click(); });
  esPeriodOrFreq.AfterUpdate.Connect([this] { esPeriodOrFreq_AfterUpdate(); });
  for (const Integer Index : {Integer{0}, Integer{1}}) {
    esDelay[Index].AfterUpdate.Connect([this] { DrawTiming(); });
    esWidth[Index].AfterUpdate.Connect([this, Index] { esWidth_AfterUpdate(Index); });
    esLeadingEdge[Index].AfterUpdate.Connect([this, Index] { esLeadingEdge_AfterUpdate(Index); });
    esTrailingEdge[Index].AfterUpdate.Connect([this] { DrawTiming(); });
    toolPopupTEdge[Index].ButtonMenuClick.Connect(
        [this, Index](const std::string &strKey) { toolPopupTEdge_ButtonMenuClick(Index, strKey); });
  }
}

void TimingPage::Enter() {
  SetFocusIfEnabled(cmdPeriodOrFreq);
  ShowTimingOutputs();
}

// ---- Period, widths and their ranges ----

Boolean TimingPage::IsFrequency() const { return cmdPeriodOrFreq.Caption() == std::string_view(Frequency); }

Boolean TimingPage::IsPatternMode() const { return m_state.mePulseMode == ePulsePattern; }

Double TimingPage::GetPeriod() const { return IsFrequency() ? esPeriodOrFreq.Reciprocal() : esPeriodOrFreq.Value(); }

Boolean TimingPage::IsOn(Long lngChannel) const {
  return m_state.mfOutputOn[lngChannel] || m_state.mfOutputInvOn[lngChannel];
}

Boolean TimingPage::HasWidth(Long lngChannel) const {
  return IsOn(lngChannel) && (m_state.mfRz[lngChannel] || !IsPatternMode());
}

Boolean TimingPage::GetWidestWidth(Long lngCount, Double &dblWidth) const {
  switch (lngCount) {
    case 0: return False;
    case 1:
      if (HasWidth(1)) dblWidth = esWidth[0].Value();
      break;
    case 2:
      // With two channels the outputs decide alone which width is taken.
      if (IsOn(1) && IsOn(2))
        dblWidth = MaxDouble(esWidth[0].Value(), esWidth[1].Value());
      else if (IsOn(1))
        dblWidth = esWidth[0].Value();
      else if (IsOn(2))
        dblWidth = esWidth[1].Value();
      break;
    default: ShowIllegalCase(); break;
  }
  return HasWidth(1) || HasWidth(2);
}

void TimingPage::SetTimingRanges(Boolean fCheckPeriod, OutOfRange eValues) {
  const Long lngCount = ChannelCount();
  Double dblWidth = 0;
  if (!GetWidestWidth(lngCount, dblWidth)) return;
  if (fCheckPeriod && GetPeriod() < dblWidth) GrowPeriodTo(dblWidth);
  const Double dblPeriod = GetPeriod();
  for (Long k = 0; k < lngCount; ++k) SetChannelRanges(k, dblPeriod, eValues);
}

void TimingPage::GrowPeriodTo(Double dblWidth) {
  const Double dblGrown = IsFrequency() ? 1 / dblWidth : dblWidth;
  // The period of the rounded frequency can still be a hair below the width. While the user types, each write asks for
  // the rule again, so writing the same frequency once more would never come to an end.
  if (esPeriodOrFreq.Value() != dblGrown) esPeriodOrFreq.SetValue(dblGrown);
}

void TimingPage::SetChannelRanges(Long k, Double dblPeriod, OutOfRange eValues) {
  const bool fStands = eValues == OutOfRange::Stands;
  const auto setMin = [=](EngrSpin &field, Double dblMin) {
    field.SetMin(fStands ? std::min(dblMin, field.Value()) : dblMin);
  };
  const auto setMax = [=](EngrSpin &field, Double dblMax) {
    field.SetMax(fStands ? std::max(dblMax, field.Value()) : dblMax);
  };
  setMin(esWidth[k], ShortestWidth);
  const bool fDouble = m_state.mfDoublePulse[k + 1];
  setMax(esWidth[k], fDouble ? dblPeriod / 2 : dblPeriod);
  setMin(esDelay[k], fDouble ? esWidth[k].Value() : 0);
  setMax(esDelay[k], dblPeriod);
}

void TimingPage::OpenRanges(Long k) {
  esWidth[k].SetMin(ShortestWidthOfForm);
  esWidth[k].SetMax(LongestTime);
  esDelay[k].SetMin(0);
  esDelay[k].SetMax(LongestTime);
}

void TimingPage::cmdPeriodOrFreq_Click() { SetPeriodOrFreq(True, False); }

void TimingPage::SetPeriodOrFreq(Boolean fToggle, Boolean fToFrequency) {
  if (!fToggle) {
    if (fToFrequency != IsFrequency()) SetPeriodOrFreq(True, False);
    return;
  }
  const bool fFrequency = !IsFrequency();
  cmdPeriodOrFreq.SetCaption(fFrequency ? Frequency : Period);
  esPeriodOrFreq.SetBaseUnit(fFrequency ? Hertz : Seconds);
  const Double dblReciprocal = esPeriodOrFreq.Reciprocal();
  esPeriodOrFreq.SetValue(dblReciprocal);
  SetTimingRanges(True);
}

void TimingPage::esPeriodOrFreq_AfterUpdate() {
  SetTimingRanges(True);
  DrawTiming();
}

void TimingPage::esWidth_AfterUpdate(Integer Index) {
  // Unlike after an edit of the period, the delay has to leave room for the width.
  const Double dblWidth = esWidth[Index].Value();
  if (m_state.mfDoublePulse[Index + 1]) {
    esDelay[Index].SetMin(dblWidth);
    esDelay[Index].SetMax(2 * esWidth[Index].Max() - dblWidth);
  } else {
    esDelay[Index].SetMin(0);
    esDelay[Index].SetMax(esWidth[Index].Max() - dblWidth);
  }
  DrawTiming();
}

void TimingPage::LockWidths() {
  for (const Long k : {0, 1}) esWidth[k].LockControl(IsPatternMode() && !m_state.mfRz[k + 1], True);
}

void TimingPage::ShowDelayCaptions() {
  for (const Long k : {0, 1}) esDelay[k].SetCaption(m_state.mfDoublePulse[k + 1] ? "Dbl. Delay" : "Delay");
}

// ---- Edges ----

Boolean &TimingPage::TeEqLe(Long k) const {
  if (k < 0 || k > 1) RaiseError(ErrSubscriptOutOfRange);
  return m_state.mfTeEqLe[static_cast<std::size_t>(k)];
}

void TimingPage::esLeadingEdge_AfterUpdate(Integer Index) {
  if (TeEqLe(Index)) esTrailingEdge[Index].SetValue(esLeadingEdge[Index].Value());
  DrawTiming();
}

void TimingPage::toolPopupTEdge_ButtonMenuClick(Integer Index, const std::string &strKey) {
  if (strKey == KeyCoupled)
    SetTrailEdgeMode(Index, True, False, False);
  else if (strKey == KeyAbsolute)
    SetTrailEdgeMode(Index, False, False, False);
  else
    ShowIllegalCase();
  esLeadingEdge_AfterUpdate(Index);
}

void TimingPage::SetTrailEdgeMode(Integer intChan, Boolean fTeEqLe, Boolean fLocked, Boolean fClearLock) {
  IgnoreErrors([&] {
    if (fClearLock) toolPopupTEdge[intChan].SetTag("");
  });
  const auto fIsLocked = [&] { return toolPopupTEdge[intChan].Tag() == Locked; };
  bool fKeepLock = false;
  IgnoreErrors([&] { fKeepLock = fIsLocked() && !fLocked; });
  if (!fKeepLock) {
    IgnoreErrors([&] { toolPopupTEdge[intChan].SetTag(fLocked ? Locked : ""); });
    IgnoreErrors([&] { tarvik::SetEnabled(esTrailingEdge[intChan], !fTeEqLe); });
    IgnoreErrors([&] { tarvik::SetEnabled(toolPopupTEdge[intChan], !fLocked); });
  }
  IgnoreErrors([&] { TeEqLe(intChan) = fTeEqLe || fIsLocked(); });
  Boolean fFixedEdges = False;
  IgnoreErrors([&] { fFixedEdges = Instr().IsRestricted(eLacksFreeLeadingEdge); });
  IgnoreErrors([&] { esLeadingEdge[intChan].SetValueArray(fFixedEdges ? FixedEdges : ""); });
}

// ---- Outputs ----

void TimingPage::SetChannelOutput(Integer intChan, Boolean fState, Boolean fIsComplement) {
  m_outputs.SetChannelOutput(intChan, fState, fIsComplement);
}

void TimingPage::ShowTimingOutputs() { m_outputs.ShowFlags(); }

// ---- Diagram ----

udtChannelTiming TimingPage::TimingOf(Integer intChan) const {
  const Long k = intChan - 1;
  return {esPeriodOrFreq.Value(),   IsFrequency(),      m_state.mfDoublePulse[intChan],
          esDelay[k].Value(),       esWidth[k].Value(), esLeadingEdge[k].Value(),
          esTrailingEdge[k].Value()};
}

void TimingPage::DrawTiming() {
  const std::array arrLanes{TimingOf(1), m_state.mfDualChannel ? TimingOf(2) : udtChannelTiming{}};
  if (!picTiming.IsComplete() || arrLanes != m_arrDrawn) {
    m_diagram.Clear();
    m_diagram.DrawChannelTiming(1, arrLanes[0]);
    m_lngUpperLane = picTiming.DisplayList().size();
    if (m_state.mfDualChannel) m_diagram.DrawChannelTiming(2, arrLanes[1]);
    m_arrDrawn = arrLanes;
    picTiming.SetComplete();
  }
  TimingDrawn.Raise();
}

void TimingPage::ShowLanes() {
  if (m_state.mfDualChannel)
    picTiming.PaintAll();
  else
    picTiming.PaintFirst(m_lngUpperLane);
}

// ---- Transfer ----

void TimingPage::UploadTiming(Boolean &fOk) {
  fOk = False;
  udtTimingInfo timing;
  const Long lngChannels = ChannelCount();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    timing.fAutoCoupleLeTe[i] = TeEqLe(k);
    timing.fDoublePulse[i] = m_state.mfDoublePulse[i] && !IsPatternMode();
    timing.dblDelay[i] = esDelay[k].Value();
    timing.dblLeading[i] = esLeadingEdge[k].Value();
    timing.dblTrailing[i] = esTrailingEdge[k].Value();
    timing.dblWidth[i] = esWidth[k].Value();
  }
  // The switches travel for both channels, whatever the instrument has.
  timing.fChannelOutputOn = m_state.mfOutputOn;
  timing.fChannelOutputInvOn = m_state.mfOutputInvOn;
  timing.dblFrequency = IsFrequency() ? esPeriodOrFreq.Value() : esPeriodOrFreq.Reciprocal();
  if (!Instr().SetTiming(timing)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageTiming);
  fOk = True;
}

void TimingPage::DownloadTiming() {
  udtTimingInfo timing;
  if (!Instr().GetTiming(timing)) return;
  const Long lngChannels = ChannelCount();
  for (Long i = 1; i <= lngChannels; ++i) ShowChannel(timing, i);
  ShowTimingOutputs();
  if (IsFrequency())
    esPeriodOrFreq.SetValue(timing.dblFrequency);
  else
    esPeriodOrFreq.SetReciprocal(timing.dblFrequency);
  // The instrument's values stand, also a width beyond the period; the next edit holds them to the ranges.
  SetTimingRanges(False, OutOfRange::Stands);
  DrawTiming();
  m_panel.SetTabState(ePageIsCurrent, ePageTiming);
}

void TimingPage::ShowChannel(const udtTimingInfo &timing, Long lngChannel) {
  const Long k = lngChannel - 1;
  // The ranges followed from what stood here before, and would cut what comes now.
  OpenRanges(k);
  esDelay[k].SetValue(timing.dblDelay[lngChannel]);
  esLeadingEdge[k].SetValue(timing.dblLeading[lngChannel]);
  // Past SetTrailEdgeMode: a download neither enables nor disables.
  TeEqLe(k) = timing.fAutoCoupleLeTe[lngChannel];
  esTrailingEdge[k].SetValue(TeEqLe(k) ? timing.dblLeading[lngChannel] : timing.dblTrailing[lngChannel]);
  esWidth[k].SetValue(timing.dblWidth[lngChannel]);
  m_state.mfOutputOn[lngChannel] = timing.fChannelOutputOn[lngChannel];
  m_state.mfOutputInvOn[lngChannel] = timing.fChannelOutputInvOn[lngChannel];
}

}  // namespace tarvik
