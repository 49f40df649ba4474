#include "panel/TimingPage.h"

#include "instrument/Vocabulary.h"
#include "platform/StateArchive.h"
#include "settings/TimingRules.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

using form::Button, form::Field, form::Frame, form::Menu, form::Picture;

constexpr const char *KeyCoupled = "TeEqLe", *KeyAbsolute = "TeAbs";
constexpr const char *Locked = "Locked";
/// Seconds.
constexpr Double ShortestEdge = 1E-12;

constexpr Single DiagramWidth = 6975, DiagramHeight = 1095;
constexpr Long DiagramBack = 0, DiagramTrace = 0x00C7D863;

constexpr Single BoxWidth = 4050, FieldLeft = 120, FieldWidth = 3810, CaptionWidth = 1440, CaptionGap = 100;

ControlDesign TimeField(const char *strName, Long k, Double dblMin) {
  return Field(strName, k).BaseUnit("s").Range(dblMin, LongestTime).MinExponent(-9);
}

OutputSwitchPlace SwitchPlace(Single sngLeft) {
  return {{sngLeft, 2115, 1845, 765}, {120, 330, 780, 315}, {945, 330, 780, 315}};
}

FormTable Channel(Long k, Single sngLeft) {
  const auto intChan = static_cast<Integer>(k + 1);
  const std::string strChan = std::to_string(intChan), strBox = "grpTimingChan" + strChan;
  constexpr Single EdgeLeft = FieldLeft + CaptionWidth + CaptionGap;
  FormTable table{
      Frame(strBox).At({sngLeft, 1890, BoxWidth, 3000}).Caption(" Channel " + strChan + " "),
      TimeField("esDelay", k, 0)
          .In(strBox)
          .At({FieldLeft, 345, FieldWidth, 315})
          .Caption("Delay", CaptionWidth)
          .ToolTip("Delay of the pulse; of the second pulse of a pair"),
      TimeField("esWidth", k, ShortestWidthOfForm)
          .In(strBox)
          .At({FieldLeft, 765, FieldWidth, 315})
          .Caption("Width", CaptionWidth)
          .ToolTip("Width of the pulse, leading edge included"),
      TimeField("esLeadingEdge", k, ShortestEdge)
          .In(strBox)
          .At({FieldLeft, 1185, FieldWidth, 315})
          .Caption("Leading Edge", CaptionWidth)
          .ToolTip("Leading edge of the pulse"),
      // The menu stands in place of the caption of the field beside it.
      Menu("toolPopupTEdge", k)
          .In(strBox)
          .At({FieldLeft, 1605, CaptionWidth + 40, 315})
          .Caption("Trailing Edge")
          .Menu({{KeyCoupled, "Trail Edge = Lead Edge"}, {KeyAbsolute, "Trail Edge Absolute"}})
          .ToolTip("Let the trailing edge follow the leading edge or set it by itself"),
      TimeField("esTrailingEdge", k, ShortestEdge)
          .In(strBox)
          .At({EdgeLeft, 1605, FieldLeft + FieldWidth - EdgeLeft, 315})
          .SpokenName("Trailing Edge")
          .ToolTip("Trailing edge of the pulse"),
  };
  table.Add(OutputSwitch(intChan, False, 0, strBox, SwitchPlace(120)));
  table.Add(OutputSwitch(intChan, True, 0, strBox, SwitchPlace(2085)));
  return table;
}

FormTable Design() {
  FormTable table{
      Button("cmdPeriodOrFreq")
          .At({742.5F, 135, 1560, 375})
          .Caption(FormOf(False).strCaption)
          .ToolTip("Set Instrument Period or Frequency"),
      Field("esPeriodOrFreq")
          .At({2400, 165, 2640, 315})
          .BaseUnit(FormOf(False).strBaseUnit)
          .DefaultValue(1)
          .Min(1E-12)
          .MinExponent(-9)
          .SpokenName("Period or frequency")
          .ToolTip("Period or frequency of the instrument"),
      Picture("picTiming")
          .At({742.5F, 630, DiagramWidth, DiagramHeight})
          .BackColor(DiagramBack)
          .ForeColor(DiagramTrace)
          .SpokenName("Timing diagram")
          .ToolTip("Two periods of each channel"),
  };
  table.Add(Channel(0, 120));
  table.Add(Channel(1, 4290));
  return table;
}

void SetRange(EngrSpin &field, const TimeRange &range) {
  field.SetMin(range.dblMin);
  field.SetMax(range.dblMax);
}

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
  // Independent of how the pixels of the widget are rounded.
  picTiming.SetScale(DiagramWidth, DiagramHeight);
  ConnectEvents();
}

void TimingPage::ConnectEvents() {
  m_rzConnection = m_state.mfRz.Changed.ConnectScoped([this](const RzFlags::Change &) { LockWidths(); });
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

Boolean TimingPage::IsPatternMode() const { return m_state.mePulseMode == ePulsePattern; }

Double TimingPage::GetPeriod() const { return IsFrequency() ? esPeriodOrFreq.Reciprocal() : esPeriodOrFreq.Value(); }

Boolean TimingPage::GetWidestWidth(Long lngCount, Double &dblWidth) const {
  if (lngCount < 0 || lngCount > 2) ShowIllegalCase();
  const auto widthOf = [this](Long i) -> ChannelWidth {
    return {m_state.mfOutputOn[i], m_state.mfOutputInvOn[i], m_state.mfRz[i], esWidth[i - 1].Value()};
  };
  return tarvik::GetWidestWidth(lngCount, {widthOf(1), widthOf(2)}, IsPatternMode(), dblWidth);
}

void TimingPage::SetTimingRanges(Boolean fCheckPeriod, OutOfRange eValues) {
  const Long lngCount = ChannelCount();
  Double dblWidth = 0;
  if (!GetWidestWidth(lngCount, dblWidth)) return;
  if (fCheckPeriod)
    if (const auto dblGrown = PushedPeriod(GetPeriod(), dblWidth, IsFrequency(), esPeriodOrFreq.Value()))
      esPeriodOrFreq.SetValue(*dblGrown);
  const Double dblPeriod = GetPeriod();
  for (Long k = 0; k < lngCount; ++k) SetChannelRanges(k, dblPeriod, eValues);
}

void TimingPage::SetChannelRanges(Long k, Double dblPeriod, OutOfRange eValues) {
  EngrSpin &width = esWidth[k], &delay = esDelay[k];
  const Boolean fDouble = m_state.mfDoublePulse[k + 1];
  const auto setRange = [eValues](EngrSpin &field, const TimeRange &range) {
    SetRange(field, eValues == OutOfRange::Stands ? range.Holding(field.Value()) : range);
  };
  setRange(width, WidthRange(dblPeriod, fDouble));
  // The width may have been cut just now.
  setRange(delay, DelayRange(dblPeriod, fDouble, width.Value()));
}

void TimingPage::cmdPeriodOrFreq_Click() { SetPeriodOrFreq(True, False); }

void TimingPage::SetPeriodOrFreq(Boolean fToggle, Boolean fToFrequency) {
  if (!fToggle && fToFrequency == IsFrequency()) return;
  m_fIsFrequency = !IsFrequency();
  const PeriodForm &form = FormOf(IsFrequency());
  cmdPeriodOrFreq.SetCaption(form.strCaption);
  esPeriodOrFreq.SetBaseUnit(form.strBaseUnit);
  const Double dblReciprocal = esPeriodOrFreq.Reciprocal();
  esPeriodOrFreq.SetValue(dblReciprocal);
  SetTimingRanges(True);
}

void TimingPage::esPeriodOrFreq_AfterUpdate() {
  SetTimingRanges(True);
  DrawTiming();
}

void TimingPage::esWidth_AfterUpdate(Integer Index) {
  const EngrSpin &width = esWidth[Index];
  SetRange(esDelay[Index], DelayRangeBesideWidth(width.Max(), m_state.mfDoublePulse[Index + 1], width.Value()));
  DrawTiming();
}

void TimingPage::LockWidths() {
  for (const Long k : {0, 1}) esWidth[k].LockControl(IsWidthLocked(IsPatternMode(), m_state.mfRz[k + 1]), True);
}

void TimingPage::ShowDelayCaptions() {
  for (const Long k : {0, 1}) esDelay[k].SetCaption(DelayCaption(m_state.mfDoublePulse[k + 1]));
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
  Boolean fWasLocked;
  IgnoreErrors([&] { fWasLocked = toolPopupTEdge[intChan].Tag() == Locked; });
  const TrailEdge edge = CoupleTrailEdge(fWasLocked, fTeEqLe, fLocked, fClearLock);
  IgnoreErrors([&] { toolPopupTEdge[intChan].SetTag(edge.fLocked ? Locked : ""); });
  if (!edge.fShowsAsBefore) {
    IgnoreErrors([&] { tarvik::SetEnabled(esTrailingEdge[intChan], !fTeEqLe); });
    IgnoreErrors([&] { tarvik::SetEnabled(toolPopupTEdge[intChan], !fLocked); });
  }
  IgnoreErrors([&] { TeEqLe(intChan) = edge.fTeEqLe; });
  Boolean fFixedEdges = False;
  IgnoreErrors([&] { fFixedEdges = Instr().IsRestricted(eLacksFreeLeadingEdge); });
  IgnoreErrors([&] { esLeadingEdge[intChan].SetValueArray(LeadingEdgeValues(fFixedEdges)); });
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
  m_diagram.Clear();
  m_diagram.DrawChannelTiming(1, TimingOf(1));
  m_lngUpperLane = picTiming.DisplayList().size();
  if (m_state.mfDualChannel) m_diagram.DrawChannelTiming(2, TimingOf(2));
}

void TimingPage::ShowLanes() {
  if (m_state.mfDualChannel)
    picTiming.PaintAll();
  else
    picTiming.PaintFirst(m_lngUpperLane);
}

void TimingPage::VisitState(StateArchive &archive) { archive.Shown(m_fIsFrequency); }

// ---- Transfer ----

void TimingPage::TakeShown(Setup &setup) const {
  udtTimingInfo &timing = setup.Timing;
  const Long lngChannels = RecordChannels();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    timing.fAutoCoupleLeTe[i] = TeEqLe(k);
    timing.fDoublePulse[i] = m_state.mfDoublePulse[i] && !IsPatternMode();
    timing.dblDelay[i] = esDelay[k].Value();
    timing.dblLeading[i] = esLeadingEdge[k].Value();
    timing.dblTrailing[i] = esTrailingEdge[k].Value();
    timing.dblWidth[i] = esWidth[k].Value();
  }
  // The output flags are sent for both channels, also to an instrument with one.
  timing.fChannelOutputOn = m_state.mfOutputOn;
  timing.fChannelOutputInvOn = m_state.mfOutputInvOn;
  timing.dblFrequency = IsFrequency() ? esPeriodOrFreq.Value() : esPeriodOrFreq.Reciprocal();
}

void TimingPage::UploadTiming(Boolean &fOk) {
  fOk = False;
  Setup setup;
  TakeShown(setup);
  if (!Instr().SetTiming(setup.Timing)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageTiming);
  fOk = True;
}

void TimingPage::DownloadTiming() {
  Setup read;
  if (!Instr().GetTiming(read.Timing)) return;
  m_panel.Known().TakeRead(ePageTiming, read);
  ShowTiming(read.Timing);
  m_panel.SetTabState(ePageIsCurrent, ePageTiming);
}

void TimingPage::ShowSetup(const Setup &setup) { ShowTiming(setup.Timing); }

void TimingPage::ShowTiming(const udtTimingInfo &timing) {
  const Long lngChannels = RecordChannels();
  for (Long i = 1; i <= lngChannels; ++i) ShowChannel(timing, i);
  ShowTimingOutputs();
  if (IsFrequency())
    esPeriodOrFreq.SetValue(timing.dblFrequency);
  else
    esPeriodOrFreq.SetReciprocal(timing.dblFrequency);
  // The values stand, even a width beyond the period; the next edit applies the ranges to them.
  SetTimingRanges(False, OutOfRange::Stands);
  DrawTiming();
}

void TimingPage::ShowChannel(const udtTimingInfo &timing, Long lngChannel) {
  const Long k = lngChannel - 1;
  // The present ranges derive from the values shown so far and would cut the new ones.
  SetRange(esWidth[k], WidthRangeOfForm);
  SetRange(esDelay[k], DelayRangeOfForm);
  esDelay[k].SetValue(timing.dblDelay[lngChannel]);
  esLeadingEdge[k].SetValue(timing.dblLeading[lngChannel]);
  // Not through SetTrailEdgeMode, since a download neither enables nor disables controls.
  TeEqLe(k) = timing.fAutoCoupleLeTe[lngChannel];
  esTrailingEdge[k].SetValue(TeEqLe(k) ? timing.dblLeading[lngChannel] : timing.dblTrailing[lngChannel]);
  esWidth[k].SetValue(timing.dblWidth[lngChannel]);
  m_state.mfOutputOn[lngChannel] = timing.fChannelOutputOn[lngChannel];
  m_state.mfOutputInvOn[lngChannel] = timing.fChannelOutputInvOn[lngChannel];
}

}  // namespace tarvik
