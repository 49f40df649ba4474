#include "panel/OptionsPage.h"

#include "support/Variant.h"

namespace tarvik {

namespace {

using form::Frame, form::Option, form::Text;

constexpr const char *AllPagesTag = "All";

ControlDesign SettingCheck(const char *strName, Single sngTop) {
  return form::Check(strName).In("grpMiscSettings").At({150, sngTop, 3780, 315});
}

FormTable Settings() {
  return {
      Frame("grpMiscSettings").At({120, 120, 4050, 2295}).Caption("Settings"),
      SettingCheck("chkAutoErrors", 330)
          .Caption("Autocheck Instrument Errors")
          .ToolTip("Check for instrument errors after each transaction"),
      SettingCheck("chkAutoWarnings", 705)
          .Caption("Autocheck Instrument Warnings")
          .ToolTip("Check for instrument warnings after each transaction"),
      SettingCheck("chkAutoDownload", 1080)
          .Caption("Auto-download New Instrument")
          .ToolTip("Download ALL settings of an instrument when first connected"),
      SettingCheck("chkAutoDownOnError", 1455)
          .Caption("Auto-download after Error")
          .ToolTip("Download (refresh) automatically after receiving an instrument error"),
      SettingCheck("chkAutoOutputOnOff", 1830)
          .Caption("Auto-upload Output On/Off")
          .ToolTip("Upload Channel Output changes immediately"),
  };
}

/// The two groups that choose the pages of a transfer.
FormTable Transfer() {
  constexpr TwipsRect FirstRow{150, 330, 3780, 315}, SecondRow{150, 690, 3780, 315};
  return {
      Frame("grpDownload").At({4290, 120, 4050, 1080}).Caption("Download"),
      Option("optDownload", 0)
          .In("grpDownload")
          .At(FirstRow)
          .Caption(" To ALL pages")
          .Tag(AllPagesTag)
          .Chosen()
          .ToolTip("A download reads every page"),
      Option("optDownload", 1)
          .In("grpDownload")
          .At(SecondRow)
          .Caption(" To the visible page ONLY")
          .ToolTip("A download reads the page in front"),
      Frame("grpUpload").At({4290, 1335, 4050, 1080}).Caption("Upload"),
      Option("optUpload", 0)
          .In("grpUpload")
          .At(FirstRow)
          .Caption("From ALL changed pages")
          .Tag(AllPagesTag)
          .Chosen()
          .ToolTip("An upload sends every page with changes"),
      Option("optUpload", 1)
          .In("grpUpload")
          .At(SecondRow)
          .Caption("From the visible page ONLY")
          .ToolTip("An upload sends the page in front"),
  };
}

FormTable Notes() {
  return {
      Text("Label1").At({120, 2595, 900, 315}).Caption("Notes: "),
      Text("Label2", 0)
          .At({1020, 2640, 7320, 480})
          .Caption("1. Limits (max. and min.) do not reflect the actual limits of the connected instrument.")
          .WordWrap(),
      Text("Label2", 1)
          .At({1020, 3165, 7320, 720})
          .Caption("2. Where units are displayed; the unit prefix (and thus the exponent) may be changed by typing the "
                   "prefix and base unit immediately after the number (i.e. 3.05uV)")
          .WordWrap(),
  };
}

FormTable Design() {
  FormTable table;
  table.Add(Settings());
  table.Add(Transfer());
  table.Add(Notes());
  return table;
}

bool ChoosesAll(const FrameEnhanced &group) {
  const OptionButtonControl *button = group.Chosen();
  return button && button->Tag() == std::string_view(AllPagesTag);
}

}  // namespace

OptionsPage::OptionsPage(QWidget &page, PanelServices &panel)
    : Page(page, panel, Design()),
      chkAutoErrors(m_form.Get<CheckBox>("chkAutoErrors")),
      chkAutoWarnings(m_form.Get<CheckBox>("chkAutoWarnings")),
      chkAutoDownload(m_form.Get<CheckBox>("chkAutoDownload")),
      chkAutoDownOnError(m_form.Get<CheckBox>("chkAutoDownOnError")),
      chkAutoOutputOnOff(m_form.Get<CheckBox>("chkAutoOutputOnOff")),
      grpDownload(m_form.Get<FrameEnhanced>("grpDownload")),
      grpUpload(m_form.Get<FrameEnhanced>("grpUpload")) {
  chkAutoErrors.Click.Connect([this] { chkAutoErrors_Click(); });
  chkAutoWarnings.Click.Connect([this] { chkAutoWarnings_Click(); });
  chkAutoOutputOnOff.Click.Connect([this] { chkAutoOutputOnOff_Click(); });
}

void OptionsPage::Enter() {
  m_panel.SetTabState(ePageIsCurrent, eCurrPage);
  grpUpload.SetFocusOnOpt();
}

void OptionsPage::chkAutoErrors_Click() {
  if (m_panel.HasInstr()) Instr().LetErrorsEnabled(chkAutoErrors.Value() == 1);
}

void OptionsPage::chkAutoWarnings_Click() {
  if (m_panel.HasInstr()) Instr().LetWarningsEnabled(chkAutoWarnings.Value() == 1);
}

void OptionsPage::chkAutoOutputOnOff_Click() { m_state.mfAutoOutputOnOff = chkAutoOutputOnOff.Value() == 1; }

Boolean OptionsPage::UploadsAll() const { return ChoosesAll(grpUpload); }

Boolean OptionsPage::DownloadsAll() const { return ChoosesAll(grpDownload); }

}  // namespace tarvik
