#include "panel/LevelsPage.h"

#include "instrument/Vocabulary.h"
#include "panel/ChannelOutputs.h"
#include "platform/ScopedFlag.h"
#include "platform/StateArchive.h"
#include "settings/modCboTags.h"
#include "support/Conversions.h"
#include "support/RunReported.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"

namespace tarvik {

namespace {

using form::Container, form::Field, form::Frame, form::List, form::Option;

constexpr Double CaptionWidth = 1320;
constexpr Integer ThisPage = 1;  // element of the output groups that stands here
/// The two options of a narrow box, one below the other.
constexpr TwipsRect FirstOption{120, 255, 990, 270}, SecondOption{120, 525, 990, 270};

ControlDesign Level(const char *strName, Long k, Single sngTop, const char *strCaption) {
  return Field(strName, k)
      .In("grpLevelFormat", k)
      .At({120, sngTop, 3810, 315})
      .Caption(strCaption, CaptionWidth)
      .BaseUnit(Volts)
      .Range(-20, 20)
      .Exponents(-9, 0);
}

FormTable FormatBox(Long k, Single sngLeft) {
  return {
      Frame("grpLevelFormat", k).At({sngLeft, 120, 4050, 1890}).Caption(k == 0 ? " Channel 1 " : " Channel 2 "),
      // On a container of their own the lists keep their Enabled and their choice while the box is disabled.
      Container("picLevelFormat", k).In("grpLevelFormat", k).At({60, 300, 3930, 735}),
      List("cboLevelFormat", k)
          .In("picLevelFormat", k)
          .At({60, 0, 3810, 345})
          .Caption("Level Format", CaptionWidth)
          .ToolTip("How the two levels below are told"),
      List("cboLevelUnits", k)
          .In("picLevelFormat", k)
          .At({60, 390, 3810, 345})
          .Caption("Voltage/Current", CaptionWidth)
          .ToolTip("Quantity in which the levels are shown"),
      Level("esLevelHigh", k, 1080, "TTL-High").ToolTip("High level or offset"),
      Level("esLevelLo", k, 1455, "TTL-Low").ToolTip("Low level or amplitude"),
  };
}

OutputSwitchPlace SwitchPlace(Single sngLeft) { return {{sngLeft, 1080, 1200, 870}, FirstOption, SecondOption}; }

FormTable OutputBox(Long k, Single sngLeft) {
  const auto intChan = static_cast<Integer>(k + 1);
  const std::string strBox = ControlName("grpChannelOutput", k);
  FormTable table{
      Frame("grpChannelOutput", k).At({sngLeft, 2100, 4050, 2070}).Caption(k == 0 ? " Output 1 " : " Output 2 "),
      Container("picChannelOutput", k).In(strBox).At({60, 300, 3930, 345}),
      List("cboOutputImpedance", k)
          .In("picChannelOutput", k)
          .At({60, 0, 3810, 345})
          .Caption("Output Imp.", CaptionWidth)
          .ToolTip("Source impedance of the output"),
      Field("esLoadCompensation", k)
          .In(strBox)
          .At({120, 690, 3810, 315})
          .Caption("Load Compens.", CaptionWidth)
          .BaseUnit("Ohm")
          .Range(0.1, 1000000)
          .Exponents(0, 6)
          .ToolTip("Resistance of the load, for which the levels hold"),
      Frame("grpNormalCompliment", k).In(strBox).At({120, 1080, 1200, 870}).Caption("Polarity"),
      Option("optNormalCompliment", 2 * k)
          .In("grpNormalCompliment", k)
          .At(FirstOption)
          .Caption("Normal")
          .Chosen()
          .ToolTip("Pulses go from low to high"),
      Option("optNormalCompliment", 2 * k + 1)
          .In("grpNormalCompliment", k)
          .At(SecondOption)
          .Caption("Compl.")
          .ToolTip("Pulses go from high to low"),
  };
  table.Add(OutputSwitch(intChan, False, ThisPage, strBox, SwitchPlace(1425)));
  table.Add(OutputSwitch(intChan, True, ThisPage, strBox, SwitchPlace(2730)));
  return table;
}

FormTable Design() {
  FormTable table;
  for (const Long k : {0, 1}) {
    const Single sngLeft = k == 0 ? 120 : 4290;
    table.Add(FormatBox(k, sngLeft));
    table.Add(OutputBox(k, sngLeft));
  }
  table.Add({
      Frame("grpOutputs").At({120, 4260, 8220, 660}).Caption("Outputs"),
      Option("optOutputs", 0)
          .In("grpOutputs")
          .At({120, 270, 3600, 315})
          .Caption("Separate Outputs")
          .Chosen()
          .ToolTip("Each channel has its own output"),
      Option("optOutputs", 1)
          .In("grpOutputs")
          .At({4290, 270, 3600, 315})
          .Caption("Outputs Added At Output 1")
          .ToolTip("Channel 2 is added to output 1"),
  });
  return table;
}

}  // namespace

LevelsPage::LevelsPage(QWidget &page, PanelServices &panel)
    : Page(page, panel, Design()),
      cboLevelFormat(m_form.GetArray<CboEnhanced>("cboLevelFormat")),
      cboLevelUnits(m_form.GetArray<CboEnhanced>("cboLevelUnits")),
      cboOutputImpedance(m_form.GetArray<CboEnhanced>("cboOutputImpedance")),
      esLoadCompensation(m_form.GetArray<EngrSpin>("esLoadCompensation")),
      esLevelHigh(m_form.GetArray<EngrSpin>("esLevelHigh")),
      esLevelLo(m_form.GetArray<EngrSpin>("esLevelLo")),
      grpNormalCompliment(m_form.GetArray<FrameEnhanced>("grpNormalCompliment")),
      grpOutputs(m_form.Get<FrameEnhanced>("grpOutputs")),
      optNormalCompliment(m_form.GetArray<OptionButton>("optNormalCompliment")),
      optOutputs(m_form.GetArray<OptionButton>("optOutputs")),
      m_outputs(std::make_unique<ChannelOutputs>(m_form, panel)) {
  for (const Integer Index : {Integer{0}, Integer{1}}) {
    cboLevelFormat[Index].Click.Connect([this, Index] { cboLevelFormat_Click(Index); });
    cboLevelUnits[Index].Click.Connect([this, Index] { cboLevelUnits_Click(Index); });
    esLoadCompensation[Index].AfterUpdate.Connect([this, Index] { esLoadCompensation_AfterUpdate(Index); });
  }
  for (const auto *arrButtons : {&optNormalCompliment, &optOutputs})
    for (const auto &[lngIndex, button] : *arrButtons) button->Click.Connect([this] { MarkDirty(ePageLevels); });
}

LevelsPage::~LevelsPage() = default;

void LevelsPage::Enter() {
  m_form.Get<FrameEnhanced>("grpChan1OnOff", ThisPage).SetFocusOnOpt();
  ShowLevelOutputs();
}

void LevelsPage::FillLevelCombos() {
  for (const Long k : {0, 1}) {
    cboOutputImpedance[k].AddItemData("50 Ohm", 50);
    cboOutputImpedance[k].AddItemData("1 kOhm", 1000);
    cboOutputImpedance[k].SetListIndex(0);
    for (const LevelFormat &format : LevelFormats)
      cboLevelFormat[k].AddItemData(format.strItem, format.eFormat, format.eOutputLevel, format.fGroupDefault);
    cboLevelFormat[k].SetListIndex(1);
    cboLevelUnits[k].AddItemData("Voltage", eTypeVoltage);
    cboLevelUnits[k].AddItemData("Current", eTypeCurrent);
    cboLevelUnits[k].SetListIndex(0);
  }
  for (const auto *arrButtons : {&optOutputs, &optNormalCompliment})
    for (const auto &[lngIndex, button] : *arrButtons) button->SetTag(CStr(lngIndex % 2));
}

void LevelsPage::ShowLevelOutputs() { m_outputs->ShowFlags(); }

// ---- Format and units ----

void LevelsPage::cboLevelFormat_Click(Integer Index) {
  if (m_sfInFormat) return;
  RunReported("TarvikGUI", "cboLevelFormat_Click", [&] {
    const ScopedFlag guard(m_form, m_sfInFormat);
    ApplyLevelFormat(Index);
  });
}

void LevelsPage::ApplyLevelFormat(Integer Index) {
  EngrSpin &esHigh = esLevelHigh[Index], &esLow = esLevelLo[Index];
  const LevelFields fields =
      ChooseLevelFormat(cboLevelFormat[Index].ListIndex(), m_arrPresets.at(static_cast<std::size_t>(Index)));
  if (fields.format) {
    esHigh.SetCaption(fields.format->strHighCaption);
    esLow.SetCaption(fields.format->strLowCaption);
  }
  esHigh.SetValue(fields.dblHighOrOffset);
  esLow.SetValue(fields.dblLowOrAmplitude);
  esHigh.LockControl(fields.fLocked, False);
  esLow.LockControl(fields.fLocked, False);
}

void LevelsPage::cboLevelUnits_Click(Integer Index) {
  RunReported("TarvikGUI", "cboLevelUnits_Click",
              [&] { ConvertLevelFields(Index, LevelUnitOf(cboLevelUnits[Index].ListIndex())); });
}

void LevelsPage::esLoadCompensation_AfterUpdate(Integer Index) { ConvertLevelFields(Index, ""); }

void LevelsPage::ConvertLevelFields(Integer intChan, const std::string &strUnits) {
  for (EngrSpin *field : {&esLevelHigh[intChan], &esLevelLo[intChan]}) {
    std::string strUnitsOfField = strUnits;
    ConvertLevelField(*field, intChan, strUnitsOfField);
  }
}

void LevelsPage::ConvertLevelField(EngrSpin &esField, Integer intChan, std::string &strUnits) {
  if (strUnits.empty()) strUnits = esField.BaseUnit();
  const EngrSpin &esLoad = esLoadCompensation[intChan];
  const LevelConversion conversion =
      ConvertLevel({esField.BaseUnit(), esField.AuxUnits(), esField.Value(), esField.AuxValue()}, strUnits,
                   {esLoad.Value(), esLoad.Reciprocal()});
  if (conversion.strBaseUnit) esField.SetBaseUnit(*conversion.strBaseUnit);
  if (conversion.dblAuxValue) esField.SetAuxValue(*conversion.dblAuxValue);
  if (conversion.dblValue) esField.SetValue(*conversion.dblValue);
}

void LevelsPage::VisitState(StateArchive &archive) {
  for (LevelPreset &preset : m_arrPresets) archive.Shown(preset);
}

// ---- Transfer ----

void LevelsPage::TakeShown(Setup &setup) const {
  const clsInstrInterface &instr = Instr();
  udtLevelInfo &levels = setup.Levels;
  const Long lngChannels = RecordChannels();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    levels.dblAmplOrHigh[i] = esLevelHigh[k].Value();
    levels.dblOffsetOrLow[i] = esLevelLo[k].Value();
    if (instr.IsNotRestricted(eLacksImpedance)) levels.dblOutputImpedance[i] = cboOutputImpedance[k].GetCurrItemData();
    if (instr.IsNotRestricted(eLacksLoadCompensation)) levels.dblLoadCompensation[i] = esLoadCompensation[k].Value();
    levels.eOutputLevel[i] = cboLevelFormat[k].GetCurrGroupData(eLevelHighLow);
    levels.eOutputPolarity[i] = CLng(grpNormalCompliment[k].Value());
    levels.eOutputType[i] = cboLevelUnits[k].GetCurrItemData();
    levels.fChannelOutputOn[i] = m_state.mfOutputOn[i];
    levels.fChannelOutputInvOn[i] = m_state.mfOutputInvOn[i];
  }
  if (instr.IsNotRestricted(eLacksChannelMath)) levels.eChannelMath = CLng(grpOutputs.Value());
}

void LevelsPage::UploadLevels(Boolean &fOk) {
  fOk = False;
  Setup setup;
  TakeShown(setup);
  if (!Instr().SetLevels(setup.Levels)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageLevels);
  fOk = True;
}

void LevelsPage::DownloadLevels() {
  Setup read;
  udtLevelInfo &levels = read.Levels;
  for (const Long i : {1, 2}) levels.eOutputLevel[i] = cboLevelFormat[i - 1].GetCurrGroupData(eLevelHighLow);
  if (!Instr().GetLevels(levels)) return;
  m_panel.Known().TakeRead(ePageLevels, read);
  const Long lngChannels = ChannelCount();
  for (Long i = 1; i <= lngChannels; ++i) ShowChannel(levels, i);
  if (Instr().IsNotRestricted(eLacksChannelMath)) grpOutputs.SetValue(levels.eChannelMath);
  m_outputs->ShowFlags();
  // After the levels: selecting another format fills them from the preset, also over what was just read.
  for (const Long i : {1, 2}) cboLevelFormat[i - 1].SetListIndexByGroupData(levels.eOutputLevel[i]);
  SetOptionButtonToTag(optOutputs.All(), CStr(levels.eChannelMath));
  m_panel.SetTabState(ePageIsCurrent, ePageLevels);
}

void LevelsPage::ShowSetup(const Setup &setup) {
  const udtLevelInfo &levels = setup.Levels;
  const Long lngChannels = RecordChannels();
  // Before the levels, which the choice of a format fills from its preset.
  for (Long i = 1; i <= lngChannels; ++i) cboLevelFormat[i - 1].SetListIndexByGroupData(levels.eOutputLevel[i]);
  for (Long i = 1; i <= lngChannels; ++i) ShowChannel(levels, i);
  if (Instr().IsNotRestricted(eLacksChannelMath)) grpOutputs.SetValue(levels.eChannelMath);
  m_outputs->ShowFlags();
}

void LevelsPage::ShowChannel(const udtLevelInfo &levels, Long lngChannel) {
  const Long k = lngChannel - 1;
  const clsInstrInterface &instr = Instr();
  // The unit first: selecting it converts what the level fields show.
  cboLevelUnits[k].SetListIndexByItemData(levels.eOutputType[lngChannel]);
  const Boolean fImpedance = instr.IsNotRestricted(eLacksImpedance);
  cboOutputImpedance[k].SetEnabled(fImpedance);
  if (fImpedance) cboOutputImpedance[k].SetListIndexByItemData(CLng(levels.dblOutputImpedance[lngChannel]));
  const Boolean fLoad = instr.IsNotRestricted(eLacksLoadCompensation);
  esLoadCompensation[k].SetEnabled(fLoad);
  if (fLoad) esLoadCompensation[k].SetValue(levels.dblLoadCompensation[lngChannel]);
  ShowLevel(esLevelHigh[k], levels.dblAmplOrHigh[lngChannel], esLoadCompensation[k].Value());
  ShowLevel(esLevelLo[k], levels.dblOffsetOrLow[lngChannel], esLoadCompensation[k].Value());
  grpNormalCompliment[k].SetValue(levels.eOutputPolarity[lngChannel]);
  m_state.mfOutputOn[lngChannel] = levels.fChannelOutputOn[lngChannel];
  m_state.mfOutputInvOn[lngChannel] = levels.fChannelOutputInvOn[lngChannel];
}

void LevelsPage::ShowLevel(EngrSpin &esField, Double dblLevel, Double dblLoad) {
  esField.SetValue(dblLevel);
  if (const auto dblVolts = VoltageBehind(esField.Value(), esField.BaseUnit(), dblLoad)) esField.SetAuxValue(*dblVolts);
}

}  // namespace tarvik
