#include "panel/ConfigPage.h"

#include "panel/InstrPage.h"
#include "settings/modCboTags.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

using form::Button, form::Display, form::Frame, form::List, form::Text;

constexpr const char *NoValue = " - ";
/// Memory slot of the lists, which do not depend on the mode.
constexpr Integer OnlyPosition = 1;

struct IdentityRow {
  const char *strTextBox;
  const char *strLabelName;
  const char *strLabel;
  const char *strToolTip;
};

constexpr IdentityRow IdentityRows[] = {
    {"txtNumChannels", "lblNumChannels", "Num Channels", "Number of output channels"},
    {"txtSlot", "lblSlot", "Slot Number", "Slot in which the instrument is plugged"},
    {"txtLogAddr", "lblLogAddr", "Logical Addr.", "Logical address of the instrument"},
    {"txtModelCode", "lblModelCode", "Model Code", "Model code of a slot instrument, decimal"},
    {"txtProductId", "lblProductId", "Product ID", "Product identity that the instrument tells"},
    {"txtSerialNumber", "lblSerialNumber", "Serial Num.", "Serial number"},
    {"txtVersion", "lblVersion", "Sys. Version", "Version of the instrument's system"},
    {"txtOptions", "lblOptions", "Inst. Options", "Options that are built in"},
};

constexpr Double PllCaptionWidth = 900;
constexpr Single IdentityTop = 330, IdentityPitch = 390;

FormTable Identity() {
  FormTable table{Frame("grpIdentity").At({120, 120, 4620, 3540}).Caption("Instrument")};
  Single sngTop = IdentityTop;
  for (const IdentityRow &row : IdentityRows) {
    table.Add({Text(row.strLabelName).In("grpIdentity").At({150, sngTop, 1350, 315}).Caption(row.strLabel),
               Display(row.strTextBox)
                   .In("grpIdentity")
                   .At({1530, sngTop, 2940, 315})
                   .SpokenName(row.strLabel)
                   .ToolTip(row.strToolTip)});
    sngTop += IdentityPitch;
  }
  return table;
}

FormTable Design() {
  FormTable table = Identity();
  table.Add({
      Frame("grpPllReference").At({4860, 120, 3480, 1260}).Caption("PLL Reference"),
      List("cboPllRefSource")
          .In("grpPllReference")
          .At({150, 330, 3180, 345})
          .Caption("Source", PllCaptionWidth)
          .TagX("0")
          .ToolTip("Where the reference of the internal PLL comes from"),
      List("cboPllRefFreq")
          .In("grpPllReference")
          .At({150, 780, 3180, 345})
          .Caption("Freq.", PllCaptionWidth)
          .TagX("0")
          .ToolTip("Frequency of the external reference"),
      Button("cmdResetInstr").At({4860, 1560, 1680, 420}).Caption("Reset Instr.").ToolTip("Reset the instrument"),
      Button("cmdSelfTest")
          .At({6660, 1560, 1680, 420})
          .Caption("Selftest")
          .ToolTip("Conduct a selftest of the instrument"),
      Button("cmdCalibrate")
          .At({4860, 2100, 1680, 420})
          .Caption("Calibrate")
          .ToolTip("Perform instrument self-calibration"),
  });
  return table;
}

bool UserAgrees(const std::string &strQuestion, const char *strTitleTail) {
  return ShowBox(strQuestion, BoxIcon::Question, BoxButtons::YesNo, std::string(AppTitle) + strTitleTail) ==
         BoxAnswer::Yes;
}

}  // namespace

ConfigPage::ConfigPage(QWidget &page, PanelServices &panel, InstrPage &instruments)
    : Page(page, panel, Design()),
      cmdResetInstr(m_form.Get<CommandButton>("cmdResetInstr")),
      cmdSelfTest(m_form.Get<CommandButton>("cmdSelfTest")),
      cmdCalibrate(m_form.Get<CommandButton>("cmdCalibrate")),
      m_instruments(instruments),
      cboPllRefSource(m_form.Get<CboEnhanced>("cboPllRefSource")),
      cboPllRefFreq(m_form.Get<CboEnhanced>("cboPllRefFreq")),
      txtNumChannels(m_form.Get<DisplayField>("txtNumChannels")),
      txtSlot(m_form.Get<DisplayField>("txtSlot")),
      txtLogAddr(m_form.Get<DisplayField>("txtLogAddr")),
      txtModelCode(m_form.Get<DisplayField>("txtModelCode")),
      txtProductId(m_form.Get<DisplayField>("txtProductId")),
      txtSerialNumber(m_form.Get<DisplayField>("txtSerialNumber")),
      txtVersion(m_form.Get<DisplayField>("txtVersion")),
      txtOptions(m_form.Get<DisplayField>("txtOptions")) {
  cmdResetInstr.Click.Connect([this] { cmdResetInstr_Click(); });
  cmdSelfTest.Click.Connect([this] { cmdSelfTest_Click(); });
  cmdCalibrate.Click.Connect([this] { cmdCalibrate_Click(); });
  cboPllRefSource.Click.Connect([this] { cboPllRefSource_Click(); });
  cboPllRefFreq.Click.Connect([this] { cboPllRefFreq_Click(); });
}

void ConfigPage::Enter() { SetFocusIfEnabled(cboPllRefSource); }

void ConfigPage::InitPllRefCombos() {
  cboPllRefSource.AddItemData("Internal", ePllRefInternal);
  cboPllRefSource.AddItemData("CLK-IN", ePllRefClkIn);
  cboPllRefSource.SetListIndexByItemData(ePllRefInternal);
  cboPllRefFreq.AddItemData("5 MHz", ePllRef5MHz);
  cboPllRefFreq.AddItemData("10 MHz", ePllRef10MHz);
  cboPllRefFreq.SetListIndexByItemData(ePllRef5MHz);
  cboPllRefFreq.SaveListIndex(OnlyPosition);
  cboPllRefFreq.SetEnabled(False);
}

void ConfigPage::cboPllRefSource_Click() {
  // The frequency is a setting of the external reference only.
  if (cboPllRefSource.GetCurrItemData() != ePllRefClkIn)
    cboPllRefFreq.SetEnabled(False);
  else
    cboPllRefFreq.EnableAndRecall(True, OnlyPosition);
}

void ConfigPage::cboPllRefFreq_Click() { cboPllRefFreq.SaveListIndex(OnlyPosition); }

void ConfigPage::TakeShown(Setup &setup) const {
  setup.dblPllRefFreq = cboPllRefFreq.GetCurrItemData(ePllRef5MHz);
  setup.ePllRefSource = cboPllRefSource.GetCurrItemData(ePllRefInternal);
}

void ConfigPage::ShowSetup(const Setup &setup) { ShowPllReference(setup.dblPllRefFreq, setup.ePllRefSource); }

void ConfigPage::UploadConfig(Boolean &fOk) {
  fOk = False;
  Setup setup;
  TakeShown(setup);
  if (Instr().PllRefSource(setup.dblPllRefFreq, setup.ePllRefSource, False)) {
    m_panel.SetTabState(ePageIsCurrent, ePageConfig);
    fOk = True;
  }
}

void ConfigPage::DownloadConfig() {
  udtInstrInfo info;
  if (!Instr().GetInstrInfo(info)) return;
  m_panel.Known().TakeIdentity(info);
  txtNumChannels.SetText(CStr(info.lngNumChannels));
  txtProductId.SetText(info.strProductId);
  txtSerialNumber.SetText(info.strSerialNum);
  txtVersion.SetText(info.strSysVersion);
  txtOptions.SetText(info.strInstOptions);
  ShowEntryOfSession();
  ReadPllReference();
  m_panel.SetTabState(ePageIsCurrent, ePageConfig);
}

void ConfigPage::ShowEntryOfSession() {
  Long lngInstrNum = 0;
  if (!m_instruments.GetCheckedInstrNum(lngInstrNum)) return;
  viInfo record;
  std::string strName;
  if (!Instr().GetViInfo(CInt(Double(lngInstrNum)), record, strName)) return;
  const bool fHasSlot = record.HasSlot();
  txtSlot.SetText(fHasSlot ? CStr(Long{record.Slot()}) : NoValue);
  txtLogAddr.SetText(CStr(Long{record.LogicalAddress()}));
  txtModelCode.SetText(fHasSlot ? CStr(Long{record.ModelCode()}) : NoValue);
}

void ConfigPage::ReadPllReference() {
  Double dblFreq = 0;
  Long eSource = 0;
  if (!Instr().PllRefSource(dblFreq, eSource, True)) return;
  Setup read;
  read.dblPllRefFreq = dblFreq;
  read.ePllRefSource = eSource;
  m_panel.Known().TakeRead(ePageConfig, read);
  ShowSetup(read);
}

void ConfigPage::ShowPllReference(Double dblFreq, Long eSource) {
  cboPllRefSource.SetListIndexByItemData(eSource);
  cboPllRefFreq.SetListIndexByItemData(CLng(dblFreq));
  cboPllRefFreq.SaveListIndex(OnlyPosition);
  tarvik::SetEnabled(cboPllRefFreq, cboPllRefSource.GetCurrItemData() == ePllRefClkIn);
}

void ConfigPage::cmdResetInstr_Click() {
  if (!Instr().IsOnline(False)) return;
  if (!UserAgrees("Do you really want to reset?", ": Confirm Instrument Reset")) return;
  Instr().InstrumentCommands(ICReset);
  m_panel.Known().Forget();
  m_panel.cmdDownload_Click();
}

void ConfigPage::cmdSelfTest_Click() {
  if (!Instr().IsOnline(False)) return;
  if (!UserAgrees("Do you really want to perform a selftest?", ": Confirm Instrument Selftest")) return;
  std::string strResult;
  Instr().InstrumentCommands(ICSelftest, &strResult);
  if (strResult.empty()) strResult = "Selftest failed!";
  ShowBox("Result: \r\n" + strResult, BoxIcon::Information, BoxButtons::Ok, std::string(AppTitle) + ": Selftest");
}

void ConfigPage::cmdCalibrate_Click() {
  if (!Instr().IsOnline(False)) return;
  if (!UserAgrees("Do you really want to calibrate the instrument?\r\n(This may take up to 30 seconds)",
                  ": Confirm Instrument Reset"))
    return;
  Instr().InstrumentCommands(ICCalibrate);
}

}  // namespace tarvik
