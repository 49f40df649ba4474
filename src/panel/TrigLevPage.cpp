#include "panel/TrigLevPage.h"

#include "settings/modCboTags.h"
#include "support/Conversions.h"
#include "support/modErrorLog.h"

namespace tarvik {

namespace {

using form::Container, form::Field, form::Frame, form::List, form::Option;

constexpr Double ThresholdTTL = 2.5, ThresholdECL = -1.3;
constexpr Integer PresetTTL = 0, PresetECL = 1, PresetCustom = 2;

/// Names of the controls of one input.
struct InputNames {
  const char *strPreset, *strPresetOption, *strThreshold, *strImpedance, *strImpedanceOption;
};
constexpr InputNames ExtIn{"grpTrigLevelExtIn", "optTrigLevelExtIn", "esTrgLevExtInThreshold", "grpTrigLevelExtInImp",
                           "optTrigLevelExtInImp"};
constexpr InputNames ClkIn{"grpTrigLevelClkIn", "optTrigLevelClkIn", "esTrgLevClkInThreshold", "grpTrigLevelClkInImp",
                           "optTrigLevelClkInImp"};

FormTable Input(const InputNames &names, Single sngLeft, const std::string &strTitle) {
  const auto tip = [&](const char *strText) { return strTitle + ": " + strText; };
  const auto preset = [&](Integer intPreset, Single sngTop) {
    return Option(names.strPresetOption, intPreset).In(names.strPreset).At({150, sngTop, 2300, 315});
  };
  const auto impedance = [&](Long lngOption, Single sngTop) {
    return Option(names.strImpedanceOption, lngOption).In(names.strImpedance).At({150, sngTop, 2300, 315});
  };
  return {
      Frame(names.strPreset).At({sngLeft, 120, 2660, 1890}).Caption(strTitle),
      preset(PresetTTL, 330).Caption("TTL").Chosen().ToolTip(tip("threshold for TTL levels, 2.5 V")),
      preset(PresetECL, 705).Caption("ECL").ToolTip(tip("threshold for ECL levels, -1.3 V")),
      preset(PresetCustom, 1080).Caption("Custom").ToolTip(tip("the threshold typed below")),
      Field(names.strThreshold)
          .In(names.strPreset)
          .At({150, 1455, 2360, 315})
          .BaseUnit("V")
          .DefaultValue(ThresholdTTL)
          .Range(-10, 10)
          .MinExponent(-9)
          .SpokenName("Threshold")
          .ToolTip(tip("threshold")),
      Frame(names.strImpedance).At({sngLeft, 2130, 2660, 1170}).Caption(strTitle + " Impedance"),
      impedance(0, 330).Caption("10 kOhm ").Chosen().ToolTip(tip("input impedance 10 kOhm")),
      impedance(1, 705).Caption("50 Ohm ").ToolTip(tip("input impedance 50 Ohm")),
  };
}

FormTable Output(const char *strBox, const char *strOption, Single sngLeft, const std::string &strTitle) {
  return {
      Frame(strBox).At({sngLeft, 120, 1270, 1890}).Caption(strTitle),
      Option(strOption, 0)
          .In(strBox)
          .At({150, 330, 1050, 315})
          .Caption("TTL")
          .Chosen()
          .ToolTip(strTitle + ": TTL levels"),
      Option(strOption, 1).In(strBox).At({150, 705, 1050, 315}).Caption("ECL").ToolTip(strTitle + ": ECL levels"),
  };
}

FormTable VxiTrigger() {
  constexpr Double CaptionWidth = 750;
  return {
      Frame("grpVxiTrigger").At({5680, 2130, 2660, 1170}).Caption("VXI Trigger"),
      // On a container of their own the lists keep their Enabled and their choice while the box is disabled.
      Container("picVxiTrigger").In("grpVxiTrigger").At({60, 300, 2540, 735}),
      List("cboVxiTriggerEnable")
          .In("picVxiTrigger")
          .At({60, 0, 2420, 345})
          .Caption("Enable", CaptionWidth)
          .ToolTip("VXI trigger line that the instrument drives"),
      List("cboVxiTriggerSource")
          .In("picVxiTrigger")
          .At({60, 390, 2420, 345})
          .Caption("Source", CaptionWidth)
          .ToolTip("What the instrument sends to the VXI trigger line"),
  };
}

FormTable Design() {
  FormTable table;
  table.Add(Input(ExtIn, 120, "External Input"));
  table.Add(Input(ClkIn, 2900, "Clock Input"));
  table.Add(Output("grpTrigLevelTrigOut", "optTrigLevelTrigOut", 5680, "Trigger Out"));
  table.Add(Output("grpTrigLevelStrobeOut", "optTrigLevelStrobeOut", 7070, "Strobe Out"));
  table.Add(VxiTrigger());
  return table;
}

struct TagRow {
  const char *strArray;
  Integer intIndex;
  Double dblTag;
};

/// The tags are the driver's numbers as text, so that a number read from the driver selects its option.
constexpr TagRow Tags[] = {
    {"optTrigLevelExtIn", 0, ThresholdTTL},
    {"optTrigLevelExtIn", 1, ThresholdECL},
    {"optTrigLevelExtIn", 2, 0},
    {"optTrigLevelClkIn", 0, ThresholdTTL},
    {"optTrigLevelClkIn", 1, ThresholdECL},
    {"optTrigLevelClkIn", 2, 0},
    {"optTrigLevelExtInImp", 0, 10000},
    {"optTrigLevelExtInImp", 1, 50},
    {"optTrigLevelClkInImp", 0, 10000},
    {"optTrigLevelClkInImp", 1, 50},
    {"optTrigLevelTrigOut", 0, eOutLevelTTL},
    {"optTrigLevelTrigOut", 1, eOutLevelECL},
    {"optTrigLevelStrobeOut", 0, eOutLevelTTL},
    {"optTrigLevelStrobeOut", 1, eOutLevelECL},
};

}  // namespace

TrigLevPage::TrigLevPage(QWidget &page, PanelServices &panel)
    : Page(page, panel, Design()),
      grpTrigLevelExtIn(m_form.Get<FrameEnhanced>("grpTrigLevelExtIn")),
      grpTrigLevelClkIn(m_form.Get<FrameEnhanced>("grpTrigLevelClkIn")),
      grpTrigLevelExtInImp(m_form.Get<FrameEnhanced>("grpTrigLevelExtInImp")),
      grpTrigLevelClkInImp(m_form.Get<FrameEnhanced>("grpTrigLevelClkInImp")),
      grpTrigLevelTrigOut(m_form.Get<FrameEnhanced>("grpTrigLevelTrigOut")),
      grpTrigLevelStrobeOut(m_form.Get<FrameEnhanced>("grpTrigLevelStrobeOut")),
      optTrigLevelExtIn(m_form.GetArray<OptionButton>("optTrigLevelExtIn")),
      optTrigLevelClkIn(m_form.GetArray<OptionButton>("optTrigLevelClkIn")),
      esTrgLevExtInThreshold(m_form.Get<EngrSpin>("esTrgLevExtInThreshold")),
      esTrgLevClkInThreshold(m_form.Get<EngrSpin>("esTrgLevClkInThreshold")),
      cboVxiTriggerEnable(m_form.Get<CboEnhanced>("cboVxiTriggerEnable")),
      cboVxiTriggerSource(m_form.Get<CboEnhanced>("cboVxiTriggerSource")) {
  for (const auto &[lngIndex, button] : optTrigLevelExtIn)
    button->Click.Connect([this, Index = button->Index()] { optTrigLevelExtIn_Click(Index); });
  for (const auto &[lngIndex, button] : optTrigLevelClkIn)
    button->Click.Connect([this, Index = button->Index()] { optTrigLevelClkIn_Click(Index); });
  for (const char *strArray :
       {"optTrigLevelExtInImp", "optTrigLevelClkInImp", "optTrigLevelTrigOut", "optTrigLevelStrobeOut"})
    for (const auto &[lngIndex, button] : m_form.GetArray<OptionButton>(strArray))
      button->Click.Connect([this] { MarkDirty(ePageTrigLev); });
  esTrgLevExtInThreshold.AfterUpdate.Connect([this] { esTrgLevExtInThreshold_AfterUpdate(); });
  esTrgLevClkInThreshold.AfterUpdate.Connect([this] { esTrgLevClkInThreshold_AfterUpdate(); });
}

void TrigLevPage::Enter() { grpTrigLevelExtIn.SetFocusOnOpt(); }

void TrigLevPage::FillTrigLevelControls() {
  for (const TagRow &row : Tags) m_form.Get<OptionButton>(row.strArray, row.intIndex).SetTag(CStr(Variant(row.dblTag)));

  cboVxiTriggerSource.AddItemData("Trigger", eVxiSourceTrigger);
  cboVxiTriggerSource.AddItemData("Strobe", eVxiSourceStrobe);
  cboVxiTriggerSource.SetListIndexByItemData(eVxiSourceTrigger);
  for (Long eLine = eVxiEclt0; eLine <= eVxiTtlt7; ++eLine) cboVxiTriggerEnable.AddItemData(VxiLineName(eLine), eLine);
  cboVxiTriggerEnable.SetListIndexByItemData(eVxiTtlt0);
}

void TrigLevPage::ApplyPreset(EngrSpin &field, Integer Index) {
  switch (Index) {
    case PresetTTL: field.SetValue(ThresholdTTL); break;
    case PresetECL: field.SetValue(ThresholdECL); break;
    case PresetCustom: break;  // a typed value stays
    default: ShowIllegalCase(); break;
  }
  MarkDirty(ePageTrigLev);
}

void TrigLevPage::optTrigLevelExtIn_Click(Integer Index) { ApplyPreset(esTrgLevExtInThreshold, Index); }

void TrigLevPage::optTrigLevelClkIn_Click(Integer Index) { ApplyPreset(esTrgLevClkInThreshold, Index); }

void TrigLevPage::esTrgLevExtInThreshold_AfterUpdate() { optTrigLevelExtIn[PresetCustom].SetValue(True); }

void TrigLevPage::esTrgLevClkInThreshold_AfterUpdate() { optTrigLevelClkIn[PresetCustom].SetValue(True); }

void TrigLevPage::TakeShown(Setup &setup) const {
  udtTrgLevelsInfo &levels = setup.TrgLevels;
  levels.dblExtInThreshold = esTrgLevExtInThreshold.Value();
  levels.dblClkInThreshold = esTrgLevClkInThreshold.Value();
  levels.eTriggerOutLevel = CLng(grpTrigLevelTrigOut.Value());
  levels.eStrobeOutLevel = CLng(grpTrigLevelStrobeOut.Value());
  levels.dblExtInInputImp = CDbl(grpTrigLevelExtInImp.Value());
  levels.dblClkInInputImp = CDbl(grpTrigLevelClkInImp.Value());
  levels.eVxiTriggerLine = cboVxiTriggerEnable.GetCurrItemData();
  levels.eVxiTriggerSource = cboVxiTriggerSource.GetCurrItemData();
}

void TrigLevPage::UploadTrigLevels(Boolean &fOk) {
  fOk = False;
  Setup setup;
  TakeShown(setup);
  if (!Instr().SetTriggerLevels(setup.TrgLevels)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageTrigLev);
  fOk = True;
}

void TrigLevPage::DownloadTrigLevels() {
  Setup read;
  if (!Instr().GetTriggerLevels(read.TrgLevels)) return;
  m_panel.Known().TakeRead(ePageTrigLev, read);
  ShowTrigLevels(read.TrgLevels);
  m_panel.SetTabState(ePageIsCurrent, ePageTrigLev);
}

void TrigLevPage::ShowSetup(const Setup &setup) {
  ShowTrigLevels(setup.TrgLevels);
  // A preset is found by 15 digits, and its choice has written it to the field.
  esTrgLevExtInThreshold.SetValue(setup.TrgLevels.dblExtInThreshold);
  esTrgLevClkInThreshold.SetValue(setup.TrgLevels.dblClkInThreshold);
}

void TrigLevPage::ShowTrigLevels(const udtTrgLevelsInfo &levels) {
  // The field goes before the group: choosing a preset writes the field.
  esTrgLevExtInThreshold.SetValue(levels.dblExtInThreshold);
  grpTrigLevelExtIn.Match(levels.dblExtInThreshold, Long{0});
  esTrgLevClkInThreshold.SetValue(levels.dblClkInThreshold);
  grpTrigLevelClkIn.Match(levels.dblClkInThreshold, Long{0});
  grpTrigLevelTrigOut.SetValue(levels.eTriggerOutLevel);
  grpTrigLevelStrobeOut.SetValue(levels.eStrobeOutLevel);
  grpTrigLevelExtInImp.SetValue(levels.dblExtInInputImp);
  grpTrigLevelClkInImp.SetValue(levels.dblClkInInputImp);
  cboVxiTriggerEnable.SetListIndexByItemData(levels.eVxiTriggerLine);
  cboVxiTriggerSource.SetListIndexByItemData(levels.eVxiTriggerSource);
}

}  // namespace tarvik
