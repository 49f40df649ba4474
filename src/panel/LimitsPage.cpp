#include "panel/LimitsPage.h"

namespace tarvik {

namespace {

using form::Frame, form::Option;

/// A field of a channel's box at this height, with its caption.
ControlDesign Field(const char *strName, Long k, Single sngTop, const char *strCaption) {
  constexpr Double CaptionWidth = 1320;
  return form::Field(strName, k)
      .In("grpLimitsChanel", k)
      .At({120, sngTop, 3810, 315})
      .Caption(strCaption, CaptionWidth);
}

ControlDesign Voltage(const char *strName, Long k, Single sngTop, const char *strCaption) {
  return Field(strName, k, sngTop, strCaption).BaseUnit("V").Range(-20, 20).Exponents(-9, 0);
}

ControlDesign Current(const char *strName, Long k, Single sngTop, const char *strCaption) {
  return Field(strName, k, sngTop, strCaption).BaseUnit("A").Range(-0.8, 0.8).Exponents(-3, -3);
}

FormTable Channel(Long k, Single sngLeft, const char *strCaption) {
  return {
      Frame("grpLimitsChanel", k).At({sngLeft, 120, 4050, 2550}).Caption(strCaption),
      Option("optLimitsChanel", 2 * k)
          .In("grpLimitsChanel", k)
          .At({120, 345, 1650, 315})
          .Caption("Limits On")
          .Tag("True")
          .ToolTip("Hold the outputs within the limits below"),
      Option("optLimitsChanel", 2 * k + 1)
          .In("grpLimitsChanel", k)
          .At({1980, 345, 1650, 315})
          .Caption("Limits Off")
          .Tag("False")
          .Chosen()
          .ToolTip("Let the outputs go unlimited"),
      Voltage("esLimitHighVoltage", k, 825, "High Voltage").DefaultValue(0.5).ToolTip("Highest voltage at the output"),
      Voltage("esLimitLowVoltage", k, 1230, "Low Voltage").DefaultValue(-0.5).ToolTip("Lowest voltage at the output"),
      Current("esLimitHighCurrent", k, 1695, "High Current")
          .DefaultValue(0.01)
          .ToolTip("Highest current at the output"),
      Current("esLimitLowCurrent", k, 2100, "Low Current").DefaultValue(-0.01).ToolTip("Lowest current at the output"),
  };
}

FormTable Design() {
  FormTable table = Channel(0, 120, " Channel 1 ");
  table.Add(Channel(1, 4290, " Channel 2 "));
  return table;
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

void LimitsPage::TakeShown(Setup &setup) const {
  udtLimitsInfo &limits = setup.Limits;
  const Long lngChannels = RecordChannels();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    limits.dblHighVoltage[i] = esLimitHighVoltage[k].Value();
    limits.dblLowVoltage[i] = esLimitLowVoltage[k].Value();
    limits.dblHighCurrent[i] = esLimitHighCurrent[k].Value();
    limits.dblLowCurrent[i] = esLimitLowCurrent[k].Value();
  }
  // Sent for both channels, also to an instrument with one.
  limits.fEnabled[1] = optLimitsChanel[0].Value();
  limits.fEnabled[2] = optLimitsChanel[2].Value();
}

void LimitsPage::UploadLimits(Boolean &fOk) {
  fOk = False;
  Setup setup;
  TakeShown(setup);
  if (!Instr().SetLimits(setup.Limits)) return;
  m_panel.SetTabState(ePageIsCurrent, ePageLimits);
  fOk = True;
}

void LimitsPage::DownloadLimits() {
  Setup read;
  if (!Instr().GetLimits(read.Limits)) return;
  m_panel.Known().TakeRead(ePageLimits, read);
  ShowLimits(read.Limits);
  m_panel.SetTabState(ePageIsCurrent, ePageLimits);
}

void LimitsPage::ShowSetup(const Setup &setup) { ShowLimits(setup.Limits); }

void LimitsPage::ShowLimits(const udtLimitsInfo &limits) {
  const Long lngChannels = RecordChannels();
  for (Long i = 1; i <= lngChannels; ++i) {
    const Long k = i - 1;
    esLimitHighVoltage[k].SetValue(limits.dblHighVoltage[i]);
    esLimitLowVoltage[k].SetValue(limits.dblLowVoltage[i]);
    esLimitHighCurrent[k].SetValue(limits.dblHighCurrent[i]);
    esLimitLowCurrent[k].SetValue(limits.dblLowCurrent[i]);
  }
  grpLimitsChanel[0].SetValue(limits.fEnabled[1]);
  grpLimitsChanel[1].SetValue(limits.fEnabled[2]);
}

}  // namespace tarvik
