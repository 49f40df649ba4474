#include "panel/TrigLevPage.h"

#include "settings/modCboTags.h"
#include "support/Conversions.h"
#include "support/modErrorLog.h"

namespace tarvik {

namespace {

constexpr Double ThresholdTTL = 2.5, ThresholdECL = -1.3;
constexpr Integer PresetTTL = 0, PresetECL = 1, PresetCustom = 2;

void AddInput(std::vector<ControlDesign> &arrDesign, Single sngLeft, const char *strTitle, const char *strPreset,
              const char *strPresetOption, const char *strField, const char *strImpedance,
              const char *strImpedanceOption) {
  const std::string strInput = strTitle;
  const auto tip = [&](const char *strText) { return strInput + ": " + strText; };
  arrDesign.insert(arrDesign.end(),
                   {{ControlKind::Frame, strPreset, NoIndex, "", {sngLeft, 120, 2660, 1890}, {{"Caption", strTitle}}},
                    {ControlKind::Option,
                     strPresetOption,
                     0,
                     strPreset,
                     {150, 330, 2300, 315},
                     {{"Caption", "TTL"}, {"Value", True}, {"ToolTip", tip("threshold for TTL levels, 2.5 V")}}},
                    {ControlKind::Option,
                     strPresetOption,
                     1,
                     strPreset,
                     {150, 705, 2300, 315},
                     {{"Caption", "ECL"}, {"ToolTip", tip("threshold for ECL levels, -1.3 V")}}},
                    {ControlKind::Option,
                     strPresetOption,
                     2,
                     strPreset,
                     {150, 1080, 2300, 315},
                     {{"Caption", "Custom"}, {"ToolTip", tip("the threshold typed below")}}},
                    {ControlKind::Field,
                     strField,
                     NoIndex,
                     strPreset,
                     {150, 1455, 2360, 315},
                     {{"BaseUnit", "V"},
                      {"DefaultValue", 2.5},
                      {"Min", -10.0},
                      {"Max", 10.0},
                      {"MinExponent", Long{-9}},
                      {"ToolTip", tip("threshold")},
                      {"AccessibleName", "Threshold"}}},
                    {ControlKind::Frame,
                     strImpedance,
                     NoIndex,
                     "",
                     {sngLeft, 2130, 2660, 1170},
                     {{"Caption", strInput + " Impedance"}}},
                    {ControlKind::Option,
                     strImpedanceOption,
                     0,
                     strImpedance,
                     {150, 330, 2300, 315},
                     {{"Caption", "10 kOhm "}, {"Value", True}, {"ToolTip", tip("input impedance 10 kOhm")}}},
                    {ControlKind::Option,
                     strImpedanceOption,
                     1,
                     strImpedance,
                     {150, 705, 2300, 315},
                     {{"Caption", "50 Ohm "}, {"ToolTip", tip("input impedance 50 Ohm")}}}});
}

void AddOutput(std::vector<ControlDesign> &arrDesign, Single sngLeft, const char *strTitle, const char *strBox,
               const char *strOption) {
  arrDesign.insert(arrDesign.end(),
                   {{ControlKind::Frame, strBox, NoIndex, "", {sngLeft, 120, 1270, 1890}, {{"Caption", strTitle}}},
                    {ControlKind::Option,
                     strOption,
                     0,
                     strBox,
                     {150, 330, 1050, 315},
                     {{"Caption", "TTL"}, {"Value", True}, {"ToolTip", std::string(strTitle) + ": TTL levels"}}},
                    {ControlKind::Option,
                     strOption,
                     1,
                     strBox,
                     {150, 705, 1050, 315},
                     {{"Caption", "ECL"}, {"ToolTip", std::string(strTitle) + ": ECL levels"}}}});
}

const std::vector<ControlDesign> &Design() {
  static const std::vector<ControlDesign> arrDesign = [] {
    std::vector<ControlDesign> arr;
    AddInput(arr, 120, "External Input", "grpTrigLevelExtIn", "optTrigLevelExtIn", "esTrgLevExtInThreshold",
             "grpTrigLevelExtInImp", "optTrigLevelExtInImp");
    AddInput(arr, 2900, "Clock Input", "grpTrigLevelClkIn", "optTrigLevelClkIn", "esTrgLevClkInThreshold",
             "grpTrigLevelClkInImp", "optTrigLevelClkInImp");
    AddOutput(arr, 5680, "Trigger Out", "grpTrigLevelTrigOut", "optTrigLevelTrigOut");
    AddOutput(arr, 7070, "Strobe Out", "grpTrigLevelStrobeOut", "optTrigLevelStrobeOut");
    // The lists stand on a plain container: while the box is disabled it is out of reach, and they keep their choice.
    arr.insert(
        arr.end(),
        {{ControlKind::Frame, "grpVxiTrigger", NoIndex, "", {5680, 2130, 2660, 1170}, {{"Caption", "VXI Trigger"}}},
         {ControlKind::Container, "picVxiTrigger", NoIndex, "grpVxiTrigger", {60, 300, 2540, 735}, {}},
         {ControlKind::List,
          "cboVxiTriggerEnable",
          NoIndex,
          "picVxiTrigger",
          {60, 0, 2420, 345},
          {{"Caption", "Enable"},
           {"CaptionWidth", Double{750}},
           {"CaptionAlignment", Long{1}},
           {"ToolTip", "VXI trigger line that the instrument drives"}}},
         {ControlKind::List,
          "cboVxiTriggerSource",
          NoIndex,
          "picVxiTrigger",
          {60, 390, 2420, 345},
          {{"Caption", "Source"},
           {"CaptionWidth", Double{750}},
           {"CaptionAlignment", Long{1}},
           {"ToolTip", "What the instrument sends to the VXI trigger line"}}}});
    return arr;
  }();
  return arrDesign;
}

struct TagRow {
  const char *strArray;
  Integer intIndex;
  Double dblTag;
};

/// Tags are the text of the numbers that the driver knows, so that a number from it compares equal.
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

void TrigLevPage::UploadTrigLevels(Boolean &fOk) {
  fOk = False;
  udtTrgLevelsInfo levels;
  levels.dblExtInThreshold = esTrgLevExtInThreshold.Value();
  levels.dblClkInThreshold = esTrgLevClkInThreshold.Value();
  levels.eTriggerOutLevel = CLng(grpTrigLevelTrigOut.Value());
  levels.eStrobeOutLevel = CLng(grpTrigLevelStrobeOut.Value());
  levels.dblExtInInputImp = CDbl(grpTrigLevelExtInImp.Value());
  levels.dblClkInInputImp = CDbl(grpTrigLevelClkInImp.Value());
  levels.eVxiTriggerLine = cboVxiTriggerEnable.GetCurrItemData();
  levels.eVxiTriggerSource = cboVxiTriggerSource.GetCurrItemData();
  if (!Instr().SetTriggerLevels(levels)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageTrigLev);
  fOk = True;
}

void TrigLevPage::DownloadTrigLevels() {
  udtTrgLevelsInfo levels;
  if (!Instr().GetTriggerLevels(levels)) return;
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
  m_panel.SetTabState(ePageIsCurrent, ePageTrigLev);
}

}  // namespace tarvik
