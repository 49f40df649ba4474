#include "panel/OptionsPage.h"

#include "support/Variant.h"

namespace tarvik {

namespace {

constexpr const char *AllPagesTag = "All";

const std::vector<ControlDesign> &Design() {
  static const std::vector<ControlDesign> arrDesign{
      {ControlKind::Frame, "grpMiscSettings", NoIndex, "", {120, 120, 4050, 2295}, {{"Caption", "Settings"}}},
      {ControlKind::Check,
       "chkAutoErrors",
       NoIndex,
       "grpMiscSettings",
       {150, 330, 3780, 315},
       {{"Caption", "Autocheck Instrument Errors"}, {"ToolTip", "Check for instrument errors after each transaction"}}},
      {ControlKind::Check,
       "chkAutoWarnings",
       NoIndex,
       "grpMiscSettings",
       {150, 705, 3780, 315},
       {{"Caption", "Autocheck Instrument Warnings"},
        {"ToolTip", "Check for instrument warnings after each transaction"}}},
      {ControlKind::Check,
       "chkAutoDownload",
       NoIndex,
       "grpMiscSettings",
       {150, 1080, 3780, 315},
       {{"Caption", "Auto-download New Instrument"},
        {"ToolTip", "Download ALL settings of an instrument when first connected"}}},
      {ControlKind::Check,
       "chkAutoDownOnError",
       NoIndex,
       "grpMiscSettings",
       {150, 1455, 3780, 315},
       {{"Caption", "Auto-download after Error"},
        {"ToolTip", "Download (refresh) automatically after receiving an instrument error"}}},
      {ControlKind::Check,
       "chkAutoOutputOnOff",
       NoIndex,
       "grpMiscSettings",
       {150, 1830, 3780, 315},
       {{"Caption", "Auto-upload Output On/Off"}, {"ToolTip", "Upload Channel Output changes immediately"}}},
      {ControlKind::Frame, "grpDownload", NoIndex, "", {4290, 120, 4050, 1080}, {{"Caption", "Download"}}},
      {ControlKind::Option,
       "optDownload",
       0,
       "grpDownload",
       {150, 330, 3780, 315},
       {{"Caption", " To ALL pages"},
        {"Tag", AllPagesTag},
        {"Value", True},
        {"ToolTip", "A download reads every page"}}},
      {ControlKind::Option,
       "optDownload",
       1,
       "grpDownload",
       {150, 690, 3780, 315},
       {{"Caption", " To the visible page ONLY"}, {"ToolTip", "A download reads the page in front"}}},
      {ControlKind::Frame, "grpUpload", NoIndex, "", {4290, 1335, 4050, 1080}, {{"Caption", "Upload"}}},
      {ControlKind::Option,
       "optUpload",
       0,
       "grpUpload",
       {150, 330, 3780, 315},
       {{"Caption", "From ALL changed pages"},
        {"Tag", AllPagesTag},
        {"Value", True},
        {"ToolTip", "An upload sends every page with changes"}}},
      {ControlKind::Option,
       "optUpload",
       1,
       "grpUpload",
       {150, 690, 3780, 315},
       {{"Caption", "From the visible page ONLY"}, {"ToolTip", "An upload sends the page in front"}}},
      {ControlKind::Text, "Label1", NoIndex, "", {120, 2595, 900, 315}, {{"Caption", "Notes: "}}},
      {ControlKind::Text,
       "Label2",
       0,
       "",
       {1020, 2640, 7320, 480},
       {{"Caption", "1. Limits (max. and min.) do not reflect the actual limits of the connected instrument."},
        {"WordWrap", True}}},
      {ControlKind::Text,
       "Label2",
       1,
       "",
       {1020, 3165, 7320, 720},
       {{"Caption",
         "2. Where units are displayed; the unit prefix (and thus the exponent) may be changed by typing the prefix "
         "and base unit immediately after the number (i.e. 3.05uV)"},
        {"WordWrap", True}}},
  };
  return arrDesign;
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

namespace {

bool ChoosesAll(const FrameEnhanced &group) {
  const OptionButtonControl *button = group.Chosen();
  return button && button->Tag() == std::string_view(AllPagesTag);
}

}  // namespace

Boolean OptionsPage::UploadsAll() const { return ChoosesAll(grpUpload); }

Boolean OptionsPage::DownloadsAll() const { return ChoosesAll(grpDownload); }

}  // namespace tarvik
