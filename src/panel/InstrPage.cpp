#include "panel/InstrPage.h"

#include "panel/LostSession.h"
#include "panel/OptionsPage.h"
#include "platform/ControlEvent.h"
#include "support/Conversions.h"
#include "support/Host.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

constexpr const char *KeyPrefix = "InstrNum";
constexpr const char *NoValue = " - ";
constexpr Integer ModelCodeDigits = 4;

enum Column { ColumnName, ColumnSlot, ColumnAddress, ColumnModel };

FormTable Design() {
  return {
      form::ListView("lvwInstruments")
          .At({120, 120, 8220, 4260})
          .Columns({"Instrument", "Slot", "Log. Addr.", "Model Code"})
          .ColumnWidths({3900, 1300, 1500})
          .SpokenName("Instruments")
          .ToolTip("Tick an instrument to start a session with it"),
      form::Button("cmdRefresh")
          .At({120, 4500, 1500, 390})
          .Caption("&Refresh")
          .Disabled()
          .ToolTip("Refresh the instrument list"),
      form::Button("cmdConnect")
          .At({1740, 4500, 1500, 390})
          .Caption("&Connect")
          .Hidden()
          .ToolTip("Connect to the automation server (ActiveX interface)"),
  };
}

/// Logs a failure of the procedure. Where the log fails as well, the busy pointer is reset before that error goes on.
void ReportAndRelease(const char *strProc, const RunTimeError &error) {
  try {
    LogError(AppTitle, strProc, error.Number(), error.Description());
  } catch (const RunTimeError &) {
    SetHourglass(False);
    throw;
  }
}

}  // namespace

InstrPage::InstrPage(QWidget &page, PanelServices &panel, OptionsPage &options)
    : Page(page, panel, Design()),
      cmdRefresh(m_form.Get<CommandButton>("cmdRefresh")),
      lvwInstruments(m_form.Get<ListView>("lvwInstruments")),
      m_options(options) {
  cmdRefresh.Click.Connect([this] { cmdRefresh_Click(); });
  lvwInstruments.ItemCheck.Connect([this](ListItem *Item) { lvwInstruments_ItemCheck(Item); });
  lvwInstruments.DblClick.Connect([this] { lvwInstruments_DblClick(); });
  lvwInstruments.KeyDown.Connect([this](Integer KeyCode) { lvwInstruments_KeyDown(KeyCode); });
}

void InstrPage::Enter() {
  m_panel.SetTabState(ePageIsCurrent, eCurrPage);
  SetFocusIfEnabled(cmdRefresh);
}

void InstrPage::cmdRefresh_Click() {
  try {
    UncheckAllInstruments();
    Instr().CloseInstrument();
    m_panel.Known().Forget();
    if (!Reconnected()) return;
    if (!Instr().InstrumentCommands(ICRefresh)) return;
    SetHourglass(True);
    ListInstruments();
  } catch (const RunTimeError &error) {
    ReportAndRelease("cmdRefresh_Click", error);
  }
  SetHourglass(False);
}

bool InstrPage::Reconnected() {
  LostSession &lost = m_panel.Lost();
  if (!lost.IsLost()) return true;
  if (!Instr().ConnectAgain()) return false;
  lost.ConnectionIsBack();
  return true;
}

void InstrPage::ListInstruments() {
  lvwInstruments.Clear();
  viInfo record;
  std::string strName;
  for (Integer Index = 1; Instr().GetViInfo(Index, record, strName); Index = CInt(1.0 + Index))
    if (m_state.mfWorkWithBoxes || record.HasSlot()) AddRow(Index, record, strName);
}

void InstrPage::AddRow(Integer Index, const viInfo &record, const std::string &strName) {
  // The key holds the driver's index, so entries that are not shown leave gaps.
  ListItem *item = lvwInstruments.Add(KeyPrefix + CStr(Long{Index}), Trim(strName));
  const bool fHasSlot = record.HasSlot();
  item->SetText(ColumnSlot, fHasSlot ? CStr(Long{record.Slot()}) : NoValue);
  item->SetText(ColumnAddress, CStr(Long{record.LogicalAddress()}));
  item->SetText(ColumnModel, fHasSlot ? FmtHex(record.ModelCode(), ModelCodeDigits) : NoValue);
}

void InstrPage::UncheckAllInstruments() {
  for (int i = 0; i < lvwInstruments.Count(); ++i) {
    ListItem *mitmInstr = lvwInstruments.Item(i);
    if (mitmInstr->Checked()) mitmInstr->SetChecked(False);
  }
  if (ClearTabTag) ClearTabTag();
}

Boolean InstrPage::GetCheckedInstrNum(Long &lngInstrNum) const {
  lngInstrNum = 1;
  for (int i = 0; i < lvwInstruments.Count(); ++i) {
    const ListItem *mitmInstr = lvwInstruments.Item(i);
    if (!mitmInstr->Checked()) continue;
    lngInstrNum = CLng(std::string_view(mitmInstr->Key()).substr(std::string_view(KeyPrefix).size()));
    return True;
  }
  return False;
}

void InstrPage::lvwInstruments_ItemCheck(ListItem *Item) {
  if (m_fInItemCheck) return;
  const ScopedFlag guard(m_form, m_fInItemCheck);
  InstrStartStop(Item, Item->Checked());
}

void InstrPage::lvwInstruments_DblClick() {
  if (ListItem *mitmInstr = lvwInstruments.SelectedItem()) InstrStartStop(mitmInstr, !mitmInstr->Checked());
}

void InstrPage::lvwInstruments_KeyDown(Integer KeyCode) {
  constexpr Integer EnterKey = 13;
  if (KeyCode == EnterKey) lvwInstruments_DblClick();
}

void InstrPage::InstrStartStop(ListItem *Item, Boolean fStart) {
  try {
    UncheckAllInstruments();
    m_panel.Lost().NoteChanges();
    Instr().CloseInstrument();
    m_panel.Known().Forget();
    m_panel.SetTabState(ePageIsCurrent, eAllPages);
    m_panel.Lost().MarkChanges();
    if (fStart) {
      if (!Item) {
        SetHourglass(False);
        return;
      }
      StartSession(Item);
    }
    m_panel.EnableControlsForChannels(ChannelCount());
  } catch (const RunTimeError &error) {
    ReportAndRelease("InstrStartStop", error);
  }
  SetHourglass(False);
}

void InstrPage::StartSession(ListItem *Item) {
  Item->SetSelected(True);
  SetHourglass(True);
  const Boolean fAutoDetectErrors = m_options.chkAutoErrors.Value() == 1;
  if (Instr().OpenInstrument(Item->Text(), False, False, fAutoDetectErrors)) {
    Item->SetChecked(True);
    m_panel.SetTabState(ePageNeedsDownloading, eAllPages);
    m_panel.SetTabState(ePageIsCurrent, ePageInstr);
    const bool fAutoDownload = m_options.chkAutoDownload.Value() == 1;
    const bool fKeepsChanges = m_panel.Lost().KeepsChanges(fAutoDownload);
    if (fAutoDownload && !fKeepsChanges) m_panel.DownloadAllPages();
  } else {
    Item->SetChecked(False);
    SetHourglass(False);
    ShowStopMessage("Unable to start a session with this instrument");
  }
}

}  // namespace tarvik
