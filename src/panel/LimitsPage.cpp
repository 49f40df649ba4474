#include "panel/LimitsPage.h"

namespace tarvik {

namespace {

PropertyBag VoltageField(const char *strCaption, Double dblDefault, const char *strToolTip) {
  return {{"Caption", strCaption},
          {"CaptionWidth", Double{1320}},
          {"BaseUnit", "V"},
          {"DefaultValue", dblDefault},
          {"Min", -20.0},
          {"Max", 20.0},
          {"MinExponent", Long{-9}},
          {"MaxExponent", Long{0}},
          {"ToolTip", strToolTip}};
}

PropertyBag CurrentField(const char *strCaption, Double dblDefault, const char *strToolTip) {
  return {{"Caption", strCaption},
          {"CaptionWidth", Double{1320}},
          {"BaseUnit", "A"},
          {"DefaultValue", dblDefault},
          {"Min", -0.8},
          {"Max", 0.8},
          {"MinExponent", Long{-3}},
          {"MaxExponent", Long{-3}},
          {"ToolTip", strToolTip}};
}

void AddChannel(std::vector<ControlDesign> &arrDesign, Integer k) {
  // Boxes and fields of both channels stand side by side, with the same rows.
  const std::string strBox = ControlName("grpLimitsChanel", k);
  const Single sngLeft = k == 0 ? 120 : 4290;
  const auto option = static_cast<Integer>(2 * k);
  arrDesign.insert(
      arrDesign.end(),
      {{ControlKind::Frame,
        "grpLimitsChanel",
        k,
        "",
        {sngLeft, 120, 4050, 2550},
        {{"Caption", k == 0 ? " Channel 1 " : " Channel 2 "}}},
       {ControlKind::Option,
        "optLimitsChanel",
        option,
        strBox,
        {120, 345, 1650, 315},
        {{"Caption", "Limits On"}, {"Tag", "True"}, {"ToolTip", "Hold the outputs within the limits below"}}},
       {ControlKind::Option,
        "optLimitsChanel",
        static_cast<Integer>(option + 1),
        strBox,
        {1980, 345, 1650, 315},
        {{"Caption", "Limits Off"}, {"Tag", "False"}, {"Value", True}, {"ToolTip", "Let the outputs go unlimited"}}},
       {ControlKind::Field,
        "esLimitHighVoltage",
        k,
        strBox,
        {120, 825, 3810, 315},
        VoltageField("High Voltage", 0.5, "Highest voltage at the output")},
       {ControlKind::Field,
        "esLimitLowVoltage",
        k,
        strBox,
        {120, 1230, 3810, 315},
        VoltageField("Low Voltage", -0.5, "Lowest voltage at the output")},
       {ControlKind::Field,
        "esLimitHighCurrent",
        k,
        strBox,
        {120, 1695, 3810, 315},
        CurrentField("High Current", 0.01, "Highest current at the output")},
       {ControlKind::Field,
        "esLimitLowCurrent",
        k,
        strBox,
        {120, 2100, 3810, 315},
        CurrentField("Low Current", -0.01, "Lowest current at the output")}});
}

const std::vector<ControlDesign> &Design() {
  static const std::vector<ControlDesign> arrDesign = [] {
    std::vector<ControlDesign> arr;
    AddChannel(arr, 0);
    AddChannel(arr, 1);
    return arr;
  }();
  return arrDesign;
}

}  // namespace

LimitsPage::LimitsPage(QWidget &page, PanelServices &panel)
    : Page(page, panel, Design()),
      grpLimitsChanel(m_form.GetArray<FrameEnhanced>("grpLimitsChanel")),
      optLimitsChanel(m_form.GetArray<OptionButton>("optLimitsChanel")),
      esLimitHighVoltage(m_form.GetArray<EngrSpin>("esLimitHighVoltage")),
      esLimitLowVoltage(m_form.GetArray<EngrSpin>("esLimitLowVoltage")),
      esLimitHighCurrent(m_form.GetArray<EngrSpin>("esLimitHighCurrent")),
      esLimitLowCurrent(m_form.GetArray<EngrSpin>("esLimitLowCurrent")) {
  for (const auto &[lngIndex, button] : optLimitsChanel) button->Click.Connect([this] { MarkDirty(ePageLimits); });
}

void LimitsPage::Enter() { grpLimitsChanel[0].SetFocusOnOpt(); }

void LimitsPage::UploadLimits(Boolean &fOk) {
  fOk = False;
  udtLimitsInfo limits;
  const Long lngChannels = ChannelCount();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    limits.dblHighVoltage[i] = esLimitHighVoltage[k].Value();
    limits.dblLowVoltage[i] = esLimitLowVoltage[k].Value();
    limits.dblHighCurrent[i] = esLimitHighCurrent[k].Value();
    limits.dblLowCurrent[i] = esLimitLowCurrent[k].Value();
  }
  // The switches travel for both channels, whatever the instrument has.
  limits.fEnabled[1] = optLimitsChanel[0].Value();
  limits.fEnabled[2] = optLimitsChanel[2].Value();
  if (!Instr().SetLimits(limits)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageLimits);
  fOk = True;
}

void LimitsPage::DownloadLimits() {
  udtLimitsInfo limits;
  if (!Instr().GetLimits(limits)) return;
  const Long lngChannels = ChannelCount();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    esLimitHighVoltage[k].SetValue(limits.dblHighVoltage[i]);
    esLimitLowVoltage[k].SetValue(limits.dblLowVoltage[i]);
    esLimitHighCurrent[k].SetValue(limits.dblHighCurrent[i]);
    esLimitLowCurrent[k].SetValue(limits.dblLowCurrent[i]);
  }
  grpLimitsChanel[0].SetValue(limits.fEnabled[1]);
  grpLimitsChanel[1].SetValue(limits.fEnabled[2]);
  m_panel.SetTabState(ePageIsCurrent, ePageLimits);
}

}  // namespace tarvik
