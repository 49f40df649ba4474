#include "StateReader.h"

#include <vector>

#include "Procedures.h"
#include "ValueText.h"
#include "bitpattern/BitPatternPrivate.h"
#include "controls/CboEnhancedPrivate.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"
#include "platform/ToolPopup.h"

namespace tarvik::paneltest {

namespace {

/// Names with "()" behind them stand for a pair with the indices 0 and 1.
constexpr const char *Fields[] = {
    "esBurstLength",
    "esPllPeriodOrFreq",
    "esPeriodOrFreq",
    "esTrgLevExtInThreshold",
    "esDelay()",
    "esTrgLevClkInThreshold",
    "esWidth()",
    "esLeadingEdge()",
    "esTrailingEdge()",
    "esLevelHigh()",
    "esLevelLo()",
    "esLoadCompensation()",
    "esLimitHighVoltage()",
    "esLimitLowVoltage()",
    "esLimitHighCurrent()",
    "esLimitLowCurrent()",
};
constexpr const char *Lists[] = {
    "cboPulseType1",  "cboPulseType2",       "cboPeriodSource",     "cboTriggerSlope",      "cboArmingSource",
    "cboArmingLevel", "cboLevelFormat()",    "cboLevelUnits()",     "cboOutputImpedance()", "cboPllRefSource",
    "cboPllRefFreq",  "cboVxiTriggerEnable", "cboVxiTriggerSource",
};
constexpr const char *Groups[] = {
    "grpTriggerMode",       "grpPulseMode",        "grpTimingChan1",        "grpTimingChan2",
    "grpChan1OnOff()",      "grpChan1InvOnOff()",  "grpChan2OnOff()",       "grpChan2InvOnOff()",
    "grpLevelFormat()",     "grpChannelOutput()",  "grpNormalCompliment()", "grpOutputs",
    "grpLimitsChanel()",    "grpTrigLevelExtIn",   "grpTrigLevelClkIn",     "grpTrigLevelExtInImp",
    "grpTrigLevelClkInImp", "grpTrigLevelTrigOut", "grpTrigLevelStrobeOut", "grpVxiTrigger",
    "grpPllReference",      "grpMiscSettings",     "grpDownload",           "grpUpload",
};
constexpr const char *Checks[] = {
    "chkAutoErrors", "chkAutoWarnings", "chkAutoDownload", "chkAutoDownOnError", "chkAutoOutputOnOff",
};
constexpr const char *Buttons[] = {
    "cmdRefresh", "cmdConnect",  "cmdResetInstr",  "cmdSelfTest",      "cmdCalibrate",
    "cmdUpload",  "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings", "cmdPeriodOrFreq",
};
constexpr const char *Texts[] = {
    "txtNumChannels", "txtSlot",         "txtLogAddr", "txtModelCode",
    "txtProductId",   "txtSerialNumber", "txtVersion", "txtOptions",
};

/// Grey of a list that is disabled.
constexpr QRgb GreyBack = 0xFFC0C0C0;

template <class Names>
std::vector<std::string> Expanded(const Names &names) {
  std::vector<std::string> arrNames;
  for (const std::string strName : names) {
    if (!strName.ends_with("()")) {
      arrNames.push_back(strName);
      continue;
    }
    const std::string strBare = strName.substr(0, strName.size() - 2);
    arrNames.push_back(strBare + "(0)");
    arrNames.push_back(strBare + "(1)");
  }
  return arrNames;
}

/// Writes keys of one panel.
class Keys {
 public:
  Keys(std::string strPrefix, StateMap &state) : m_strPrefix(std::move(strPrefix)), m_state(state) {}
  void Put(const std::string &strKey, Json value) const { m_state[m_strPrefix + strKey] = std::move(value); }

 private:
  std::string m_strPrefix;
  StateMap &m_state;
};

bool Flag(Boolean fValue) { return fValue; }

void ReadField(const Keys &keys, const std::string &strName, const EngrSpin &field) {
  keys.Put(strName + ".Value", field.Value());
  keys.Put(strName + ".Min", field.Min());
  keys.Put(strName + ".Max", field.Max());
  keys.Put(strName + ".Enabled", Flag(field.Enabled()));
  keys.Put(strName + ".Locked", Flag(field.Locked()));
  keys.Put(strName + ".Blank", field.Text() == "----");
  keys.Put(strName + ".BaseUnit", field.BaseUnit());
  keys.Put(strName + ".Caption", field.Caption());
  keys.Put(strName + ".ValueArray", field.ValueArray());
  keys.Put("priv." + strName + ".AuxValue", field.AuxValue());
}

void ReadList(const Keys &keys, const std::string &strName, const CboEnhanced &list) {
  Json items = Json::array();
  for (Long i = 0; i < list.ListCount(); ++i) items.push_back(Json::array({list.ItemText(i), list.ItemData(i)}));
  keys.Put(strName + ".Items", std::move(items));
  keys.Put(strName + ".ListIndex", list.ListIndex());
  keys.Put(strName + ".Enabled", Flag(list.Enabled()));
  keys.Put(strName + ".Caption", list.Caption());
  const auto &inside = CboEnhanced::Private::Of(list);
  keys.Put(strName + ".BackColor", BackColorName(*inside.cbo));
  keys.Put("priv." + strName + ".Saved", inside.strSavedIndexes);
}

void ReadGroup(const Keys &keys, const std::string &strName, const FrameEnhanced &group) {
  keys.Put(strName + ".Enabled", Flag(group.Enabled()));
  const auto arrButtons = group.OptionButtons();
  if (arrButtons.empty()) return;
  std::string strEnabled;
  Json tags = Json::array();
  for (const OptionButtonControl *button : arrButtons) {
    strEnabled += button->Enabled() ? '1' : '0';
    tags.push_back(button->Tag());
  }
  keys.Put(strName + ".Chosen", ChosenIndex(group));
  keys.Put(strName + ".OptEnabled", strEnabled);
  keys.Put("priv." + strName + ".Tags", std::move(tags));
}

void ReadPattern(const Keys &keys, const PanelUnderTest &panel) {
  auto &editor = panel.Get<BitPattern>("BitPattern1");
  keys.Put("BitPattern1.Length", editor.GetPatternLength());
  constexpr std::pair<const char *, Long> Streams[] = {{"Chan1", 1}, {"Chan2", 2}, {"Strobe", 8}};
  for (const auto &[strStream, lngCode] : Streams) {
    ByteArray arr(1, std::vector<Byte>(static_cast<std::size_t>(editor.GetPatternArraySize())));
    Long lngSize = 0;
    editor.GetPattern(lngCode, arr, lngSize);
    keys.Put(std::string("BitPattern1.") + strStream, test::ToHex(arr.Elements()));
  }
  BooleanArray fRz(1, {False, False});
  editor.GetRz(fRz);
  keys.Put("BitPattern1.Rz", Json::array({Flag(fRz[1]), Flag(fRz[2])}));
  const auto &group1 = panel.Get<FrameEnhanced>("grpChannelRzOrNrz(0)");
  const auto &group2 = panel.Get<FrameEnhanced>("grpChannelRzOrNrz(1)");
  keys.Put("BitPattern1.RzChosen", Json::array({ChosenIndex(group1), ChosenIndex(group2)}));
  keys.Put("BitPattern1.Channel2", Flag(BitPattern::Private::Of(editor).store.Chan2Enabled()));
  keys.Put("BitPattern1.Chan2GroupEnabled", Flag(group2.Enabled()));
}

void ReadForm(const Keys &keys, const PanelUnderTest &panel) {
  keys.Put("tabMain.Tab", panel.Get<TabControl>("tabMain").Tab());
  const auto &list = panel.Get<ListView>("lvwInstruments");
  Json rows = Json::array();
  Long lngSelected = 0;
  for (int i = 0; i < list.Count(); ++i) {
    const ListItem &row = *list.Item(i);
    rows.push_back({row.Key(), row.Text(0), row.Text(1), row.Text(2), row.Text(3), Flag(row.Checked())});
    if (&row == list.SelectedItem()) lngSelected = i + 1;
  }
  keys.Put("lvwInstruments.Rows", std::move(rows));
  keys.Put("lvwInstruments.Selected", lngSelected);
  keys.Put("picDownloadHighlight.Visible", Flag(panel.Get<PictureBox>("picDownloadHighlight").Visible()));
  const auto &highlight = panel.Get<PictureBox>("picUploadHighlight");
  const bool fShown = highlight.Visible();
  keys.Put("picUploadHighlight.Visible", fShown);
  keys.Put("picUploadHighlight.Color", fShown ? Json(highlight.BackColor() & ~SystemColour) : Json(nullptr));
  keys.Put("txtStatus.Text", panel.Get<DisplayBox>("txtStatus").Text());
  for (const char *strName : Texts) keys.Put(std::string(strName) + ".Text", panel.Get<DisplayField>(strName).Text());
  for (const std::string strName : {"toolPopupTEdge(0)", "toolPopupTEdge(1)"}) {
    const auto &menu = panel.Get<ToolPopup>(strName);
    keys.Put(strName + ".Enabled", Flag(menu.Enabled()));
    keys.Put("priv." + strName + ".Tag", menu.Tag());
  }
}

void ReadPrivate(const Keys &keys, const PanelUnderTest &panel) {
  const TarvikGUI::Panel &inside = panel.Inside();
  const PanelState &state = inside.state;
  const auto flags = [](const auto &arr) { return Json::array({Flag(arr[1]), Flag(arr[2])}); };
  Json states = Json::array();
  for (const TabStates eState : state.meTabState) states.push_back(static_cast<Long>(eState));
  keys.Put("priv.meTabState", std::move(states));
  keys.Put("priv.mfDownloading", Flag(state.mfDownloading));
  keys.Put("priv.mfForceDownloadAll", Flag(state.mfForceDownloadAll));
  keys.Put("priv.mfAutoOutputOnOff", Flag(state.mfAutoOutputOnOff));
  keys.Put("priv.mfWorkWithBoxes", Flag(state.mfWorkWithBoxes));
  keys.Put("priv.mfDualChannel", Flag(state.mfDualChannel));
  keys.Put("priv.mfVxiLines", Flag(state.mfVxiLines));
  keys.Put("priv.meTriggerMode", state.meTriggerMode);
  keys.Put("priv.mePulseMode", state.mePulseMode);
  keys.Put("priv.mintModePos", state.mintModePos);
  keys.Put("priv.mfOutputOn", flags(state.mfOutputOn));
  keys.Put("priv.mfOutputInvOn", flags(state.mfOutputInvOn));
  keys.Put("priv.mfRz", flags(state.mfRz));
  keys.Put("priv.mfDoublePulse", flags(state.mfDoublePulse));
  keys.Put("priv.mfTeEqLe", Json::array({Flag(state.mfTeEqLe[0]), Flag(state.mfTeEqLe[1])}));
  keys.Put("priv.sdblHigh", PresetsHigh(inside));
  keys.Put("priv.sdblLow", PresetsLow(inside));
}

}  // namespace

const char *BackColorName(const QComboBox &list) {
  return list.palette().color(QPalette::Active, QPalette::Base).rgb() == GreyBack ? "grey" : "window";
}

Long ChosenIndex(const FrameEnhanced &group) {
  for (const OptionButtonControl *button : group.OptionButtons())
    if (button->Value()) return button->Index();
  return -1;
}

void ReadPanelState(const PanelUnderTest &panel, const std::string &strPrefix, StateMap &state) {
  const Keys keys(strPrefix, state);
  for (const std::string &strName : Expanded(Fields)) ReadField(keys, strName, panel.Get<EngrSpin>(strName));
  for (const std::string &strName : Expanded(Lists)) ReadList(keys, strName, panel.Get<CboEnhanced>(strName));
  for (const std::string &strName : Expanded(Groups)) ReadGroup(keys, strName, panel.Get<FrameEnhanced>(strName));
  for (const std::string strName : Checks) {
    const auto &check = panel.Get<CheckBox>(strName);
    keys.Put(strName + ".Value", check.Value());
    keys.Put(strName + ".Enabled", Flag(check.Enabled()));
  }
  for (const std::string strName : Buttons) {
    const auto &button = panel.Get<CommandButton>(strName);
    keys.Put(strName + ".Caption", button.Caption());
    keys.Put(strName + ".Enabled", Flag(button.Enabled()));
    keys.Put(strName + ".Visible", Flag(button.Visible()));
  }
  ReadPattern(keys, panel);
  ReadForm(keys, panel);
  ReadPrivate(keys, panel);
}

void ReadCommonState(const World &world, StateMap &state) {
  const RecordingInstr *instr = world.Instr();
  state["screen.Pointer"] = world.host.intPointer;
  state["instr.Connected"] = instr && instr->IsConnected();
  state["instr.Online"] = instr && instr->IsOnline(True);
  state["instr.ErrorsEnabled"] = instr && instr->GetErrorsEnabled();
  state["instr.WarningsEnabled"] = instr && instr->GetWarningsEnabled();
  state["priv.instr.TransActive"] = instr && instr->InTransaction();
  state["priv.instr.GlobalTrans"] = instr && instr->InGlobalTransaction();
}

}  // namespace tarvik::paneltest
