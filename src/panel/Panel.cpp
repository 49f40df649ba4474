#include "panel/Panel.h"

#include <algorithm>
#include <utility>

#include "engrspin/EngrSpin.h"
#include "panel/CapabilityGate.h"
#include "panel/ConfigPage.h"
#include "panel/InstrPage.h"
#include "panel/LevelsPage.h"
#include "panel/LimitsPage.h"
#include "panel/LostSession.h"
#include "panel/ModePage.h"
#include "panel/OptionsPage.h"
#include "panel/PanelSetups.h"
#include "panel/PanelStart.h"
#include "panel/PatternPage.h"
#include "panel/ProgramShows.h"
#include "panel/SettingMarks.h"
#include "panel/TimingPage.h"
#include "panel/TrigLevPage.h"
#include "panel/UndoHistory.h"
#include "platform/CommandButton.h"
#include "platform/Highlight.h"
#include "platform/QtHost.h"
#include "platform/ScopedFlag.h"
#include "support/Boxes.h"
#include "support/ConnectionLoss.h"
#include "support/Conversions.h"
#include "support/EventBoundary.h"
#include "support/Host.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"

namespace tarvik {

namespace {

constexpr const char *SettingsSection = "Config";

/// Tops of what stands below the pages.
constexpr Single StatusTop = 5580, ButtonTop = 6450;
/// How far a highlight looks out from under its button.
constexpr Single Shadow = 50;

/// The toolkit's shadow colours behind the numbers of the system's colour table.
constexpr Colour ButtonShadow = SystemColour | 16, DarkShadow = SystemColour | 21;

/// Teal; the upload highlight has two greys.
constexpr Long DownloadShadow = 0x00A0A000;

constexpr const char *TabCaptions[eNumPages] = {"I&nstr.", "&Mode/Trg", "&Timing", "&Levels", "&Pattern",
                                                "L&imits", "T&rg-Lev",  "Co&nfig", "&Options"};

constexpr TwipsRect StatusPlace{900, StatusTop, 7620, 735}, MessagesPlace{7245, StatusTop, 1275, 420};
/// Of the status box beside the button of the messages.
constexpr Single NarrowStatus = 6255;
constexpr const char *MessagesCaption = "Messa&ges";

constexpr TwipsRect DownloadPlace{120, ButtonTop, 2700, 420}, UploadPlace{2970, ButtonTop, 2700, 420};

FormTable Design() {
  return {
      form::Text("lblStatus").At({120, StatusTop + 30, 780, 315}).Caption("Status"),
      form::DisplayBox("txtStatus")
          .At(StatusPlace)
          .SpokenName("Status")
          .ToolTip("The last message of the instrument connection"),
      form::Button("cmdMessages")
          .At(MessagesPlace)
          .Caption(MessagesCaption)
          .Hidden()
          .ToolTip("The messages so far, and where the error log is"),
      // The highlights are made before the buttons, so that they lie behind them.
      form::Highlight("picDownloadHighlight")
          .At(DownloadPlace)
          .BackColor(DownloadShadow)
          .Hidden()
          .SpokenName("This page has not been read from the instrument yet"),
      form::Highlight("picUploadHighlight").At(UploadPlace).Hidden().SpokenName("There are changes to upload"),
      form::Button("cmdDownload")
          .At(DownloadPlace)
          .Caption("&Download From Instrument")
          .ToolTip("Download settings FROM the instrument"),
      form::Button("cmdUpload")
          .At(UploadPlace)
          .Caption("&Upload To Instrument")
          .ToolTip("Upload current settings TO the instrument"),
      form::Button("cmdCheckErrors")
          .At({5820, ButtonTop, 1275, 420})
          .Caption("Errors")
          .ToolTip("Check instrument for errors"),
      form::Button("cmdCheckWarnings")
          .At({7245, ButtonTop, 1275, 420})
          .Caption("Warnings")
          .ToolTip("Check instrument for warnings"),
  };
}

TabControl *MakeTabs(QWidget *panel) {
  auto *tabs = new TabControl(panel);
  tabs->setObjectName(QStringLiteral("tabMain"));
  for (int i = 0; i < eNumPages; ++i) tabs->addTab(new QWidget, QString());
  return tabs;
}

std::string StoredOption(const char *strKey, const char *strDefault) {
  return TheHost().GetSetting(AppTitle, SettingsSection, strKey, strDefault);
}

}  // namespace

TarvikGUI::Panel::Panel(TarvikGUI &objGui)
    : gui(objGui),
      start(std::make_unique<PanelStart>(gui, [this] { Start(); })),
      lost(std::make_unique<LostSession>(*this)),
      face(*new QWidget(&gui)),
      tabMain(MakeTabs(&face)),
      controls(face, Design()),
      txtStatus(controls.Get<DisplayBox>("txtStatus")),
      picDownloadHighlight(controls.Get<Highlight>("picDownloadHighlight")),
      picUploadHighlight(controls.Get<Highlight>("picUploadHighlight")) {}

TarvikGUI::Panel::~Panel() = default;

void TarvikGUI::Panel::LeaveFaceToToolkit() {
  // An event of a control has shown the box at which the host destroys the panel, and the toolkit's code for that
  // control is still running: QComboBox, for one, uses itself after its signals.
  face.hide();
  face.setParent(nullptr);
  UserEvent::AfterAll([&face = face] { face.deleteLater(); });
}

QWidget &TarvikGUI::Panel::Sheet(TabNumEnum ePage) const { return *tabMain->widget(ePage); }

void TarvikGUI::Panel::MakePages() {
  PanelServices &panel = *this;
  optionsPage = std::make_unique<OptionsPage>(Sheet(ePageOptions), panel);
  instrPage = std::make_unique<InstrPage>(Sheet(ePageInstr), panel, *optionsPage);
  timingPage = std::make_unique<TimingPage>(Sheet(ePageTiming), panel);
  patternPage = std::make_unique<PatternPage>(Sheet(ePagePattern), panel);
  modePage = std::make_unique<ModePage>(Sheet(ePageMode), panel, *timingPage, *patternPage);
  levelsPage = std::make_unique<LevelsPage>(Sheet(ePageLevels), panel);
  limitsPage = std::make_unique<LimitsPage>(Sheet(ePageLimits), panel);
  trigLevPage = std::make_unique<TrigLevPage>(Sheet(ePageTrigLev), panel);
  configPage = std::make_unique<ConfigPage>(Sheet(ePageConfig), panel, *instrPage);
  gate = std::make_unique<CapabilityGate>(gui, panel, *timingPage, patternPage->Editor());
  NameTabs();
  PutCommandsBehindPages();
  // Behind the order of the Tab key, which nothing without focus may end.
  marks = std::make_unique<SettingMarks>(*tabMain, [this](Setup &setup, TabNumEnum ePage) { TakeShown(setup, ePage); });
  marks->PageMarked.Connect([this] { TellPageStates(); });
  setups = std::make_unique<PanelSetups>(*this);
  marks->Touched.Connect([this] { setups->TellFile(); });
  undo = std::make_unique<UndoHistory>(*this);
}

void TarvikGUI::Panel::NameTabs() {
  // Behind the pages: of what shares an access key, the one named first comes first. So R presses Refresh on its page
  // before it leads away to the tab of the trigger levels.
  for (int i = 0; i < eNumPages; ++i) tabMain->setTabText(i, QString::fromLatin1(TabCaptions[i]));
}

void TarvikGUI::Panel::PutCommandsBehindPages() {
  QWidget *last = tabMain;
  for (QWidget *next = last->nextInFocusChain(); next != tabMain; next = next->nextInFocusChain())
    if (tabMain->isAncestorOf(next)) last = next;
  for (const char *strName :
       {"txtStatus", "cmdMessages", "cmdDownload", "cmdUpload", "cmdCheckErrors", "cmdCheckWarnings"}) {
    auto &command = controls.Get<QWidget>(strName);
    QWidget::setTabOrder(last, &command);
    last = &command;
  }
}

void TarvikGUI::Panel::ConnectEvents() {
  controls.Placed.Connect([this] {
    PlaceHighlights();
    PlaceStatus();
  });
  tabMain->Click.Connect([this](Long) { tabMain_Click(); });
  instrPage->ClearTabTag = [this] { tabMain->SetTag(""); };
  controls.Get<CommandButton>("cmdMessages").Click.Connect([this] { cmdMessages_Click(); });
  controls.Get<CommandButton>("cmdUpload").Click.Connect([this] { cmdUpload_Click(); });
  controls.Get<CommandButton>("cmdDownload").Click.Connect([this] { cmdDownload_Click(); });
  controls.Get<CommandButton>("cmdCheckErrors").Click.Connect([this] { cmdCheckErrors_Click(); });
  controls.Get<CommandButton>("cmdCheckWarnings").Click.Connect([this] { cmdCheckWarnings_Click(); });
}

Page *TarvikGUI::Panel::PageOf(Long lngPage) const {
  switch (lngPage) {
    case ePageInstr: return instrPage.get();
    case ePageMode: return modePage.get();
    case ePageTiming: return timingPage.get();
    case ePageLevels: return levelsPage.get();
    case ePagePattern: return patternPage.get();
    case ePageLimits: return limitsPage.get();
    case ePageTrigLev: return trigLevPage.get();
    case ePageConfig: return configPage.get();
    case ePageOptions: return optionsPage.get();
    default: return nullptr;
  }
}

void TarvikGUI::Panel::PlaceHighlights() {
  // Taken from the button itself: rounded apart from it, a shadow could come out a pixel wider.
  const int offset = TwipsToPixels(face, Shadow);
  picDownloadHighlight.setGeometry(controls.Get<CommandButton>("cmdDownload").geometry().translated(offset, offset));
  picUploadHighlight.setGeometry(controls.Get<CommandButton>("cmdUpload").geometry().translated(offset, offset));
}

// ---- List of messages ----

void TarvikGUI::Panel::OfferMessages() {
  QtHost *host = QtHost::Installed();
  controls.Get<CommandButton>("cmdMessages").SetVisible(host != nullptr);
  PlaceStatus();
  messagesConnection.Disconnect();
  if (!host) return;
  messagesConnection = host->Messages().Changed.ConnectScoped([this] { ShowUnseenMessages(); });
  ShowUnseenMessages();
}

void TarvikGUI::Panel::PlaceStatus() {
  TwipsRect place = StatusPlace;
  if (controls.Get<CommandButton>("cmdMessages").Visible()) place.sngWidth = NarrowStatus;
  txtStatus.setGeometry(TwipsToPixels(txtStatus, place));
}

void TarvikGUI::Panel::ShowUnseenMessages() {
  auto &button = controls.Get<CommandButton>("cmdMessages");
  const QtHost *host = QtHost::Installed();
  const Long lngUnseen = host ? host->Messages().Unseen() : 0;
  button.SetCaption(lngUnseen == 0 ? MessagesCaption : MessagesCaption + (" (" + CStr(lngUnseen) + ")"));
  button.setAccessibleDescription(
      lngUnseen == 0 ? QString() : QString::number(lngUnseen) + QStringLiteral(" messages came without a box"));
}

void TarvikGUI::Panel::cmdMessages_Click() {
  if (QtHost *host = QtHost::Installed()) host->ShowMessages(&gui);
}

// ---- Start and end ----

void TarvikGUI::Panel::Start() {
  fStarted = true;
  RunUserEvent(
      "TarvikGUI", "Show", [this] { UserControl_Show(); }, &gui);
}

void TarvikGUI::Panel::TellUnsaved() {
  const auto strReason = std::exchange(strUnsaved, std::nullopt);
  if (!strReason) return;
  const UserEvent::Waiting waiting;
  RunUserEvent(
      "TarvikGUI", "Terminate", [&] { ShowBox("Unable to save settings: " + *strReason, BoxIcon::Information); }, &gui);
}

bool TarvikGUI::Panel::EndEvents() {
  const auto arrParts = gui.findChildren<const QObject *>();
  const auto isPart = [&](const void *owner) {
    return owner == &gui || std::find(arrParts.begin(), arrParts.end(), owner) != arrParts.end();
  };
  if (!UserEvent::EndAllOf(isPart)) return false;
  // They cannot put back what they had set.
  state.mfDownloading = False;
  state.mfForceDownloadAll = False;
  lost->UploadEnds();
  return true;
}

void TarvikGUI::Panel::HoldInstr() {
  zorvaneInstr = InstrInterface();
  statusConnection = zorvaneInstr->StatusMessage.ConnectScoped(
      [this](const std::string &strStatus) { ZorvaneInstr_StatusMessage(strStatus); });
  lost = std::make_unique<LostSession>(*this);
  lossConnection = ConnectionLost().ConnectScoped([this](const std::string &strWhy) { TellLoss(strWhy); });
  errorConnection = zorvaneInstr->InstrError.ConnectScoped([this](const std::string &) { ZorvaneInstr_InstrError(); });
}

clsInstrInterface &TarvikGUI::Panel::ZorvaneInstr() {
  if (!zorvaneInstr) RaiseError(ErrObjectNotSet);
  return *zorvaneInstr;
}

void TarvikGUI::Panel::UserControl_Show() {
  undo->Clear();
  HoldInstr();
  RestoreOptions();
  InitAllPages();
  if (ZorvaneInstr().Connect()) {
    tabMain->SetTab(ePageInstr);
    instrPage->cmdRefresh.SetEnabled(True);
    YieldToEvents();
    instrPage->cmdRefresh_Click();
  }
  EnableControlsForChannels(0);
}

void TarvikGUI::Panel::RestoreOptions() {
  OptionsPage &options = *optionsPage;
  const auto number = [](const char *strKey, const char *strDefault) {
    return CInt(std::string_view(StoredOption(strKey, strDefault)));
  };
  options.grpUpload.SetValue(StoredOption("Upload", "All"));
  options.grpDownload.SetValue(StoredOption("Download", "All"));
  // The handlers run whether or not the assignment changed anything.
  options.chkAutoWarnings.SetValue(number("AutoWarnings", "1"));
  options.chkAutoWarnings_Click();
  options.chkAutoErrors.SetValue(number("AutoErrors", "1"));
  options.chkAutoErrors_Click();
  options.chkAutoDownOnError.SetValue(number("AutoDownOnError", "0"));
  options.chkAutoDownload.SetValue(number("AutoDownload", "1"));
  options.chkAutoOutputOnOff.SetValue(number("AutoOutputOnOff", "1"));
  options.chkAutoOutputOnOff_Click();
  state.mfWorkWithBoxes = StoredOption("WorkWithBoxes", "0") != "0";
}

void TarvikGUI::Panel::InitAllPages() {
  modePage->InitModePage();
  levelsPage->FillLevelCombos();
  trigLevPage->FillTrigLevelControls();
  configPage->InitPllRefCombos();
}

void TarvikGUI::Panel::UserControl_Hide() { UserControl_Terminate(); }

void TarvikGUI::Panel::UserControl_Terminate() {
  try {
    SaveOptions();
    if (!zorvaneInstr) return;
    zorvaneInstr->CloseInstrument();
    Known().Forget();
    statusConnection.Disconnect();
    errorConnection.Disconnect();
    lossConnection.Disconnect();
    zorvaneInstr.reset();
  } catch (const RunTimeError &error) {
    strUnsaved = error.Description();
  }
}

void TarvikGUI::Panel::SaveOptions() {
  const OptionsPage &options = *optionsPage;
  const auto save = [](const char *strKey, const std::string &strValue) {
    TheHost().SaveSetting(AppTitle, SettingsSection, strKey, strValue);
  };
  save("Upload", CStr(options.grpUpload.Value()));
  save("Download", CStr(options.grpDownload.Value()));
  save("AutoWarnings", CStr(Long{options.chkAutoWarnings.Value()}));
  save("AutoErrors", CStr(Long{options.chkAutoErrors.Value()}));
  save("AutoDownOnError", CStr(Long{options.chkAutoDownOnError.Value()}));
  save("AutoDownload", CStr(Long{options.chkAutoDownload.Value()}));
  save("AutoOutputOnOff", CStr(Long{options.chkAutoOutputOnOff.Value()}));
}

// ---- Page states ----

void TarvikGUI::Panel::SetTabState(TabStates eState, TabNumEnum ePage) {
  const Boolean fProgramFills = state.mfDownloading || start->IsAwaited();
  const Boolean fTaken = SetPageState(state.meTabState, eState, ePage, tabMain->Tab(), fProgramFills);
  if (eState != ePageSetStatus) marks->Touch(ePage);
  if (!fTaken) return;
  if (eState == ePageIsDirty && undo) undo->NoteMark(ePage);
  TellPageStates();
  ShowStateOfVisiblePage();
}

void TarvikGUI::Panel::TellPageStates() {
  for (Long lngPage = 0; lngPage < tabMain->Tabs(); ++lngPage) {
    const TabStates eState = StateOf(state.meTabState, lngPage);
    tabMain->SetSpokenNote(lngPage, eState == ePageIsDirty            ? "changed, not uploaded"
                                    : eState == ePageNeedsDownloading ? "not read from the instrument yet"
                                    : marks->IsMarked(lngPage)        ? "differs from the instrument"
                                                                      : "");
  }
}

void TarvikGUI::Panel::ShowStateOfVisiblePage() {
  const Long lngVisible = tabMain->Tab();
  if (!IsPageState(StateOf(state.meTabState, lngVisible))) ShowIllegalCase();
  const auto show = HighlightsOf(state.meTabState, lngVisible, optionsPage->UploadsAll());
  if (show) ShowHighlights(show->fDownload, show->fUpload, show->fOtherPage);
}

void TarvikGUI::Panel::ShowHighlights(Boolean fDownload, Boolean fUpload, Boolean fOtherPage) {
  picDownloadHighlight.SetVisible(fDownload);
  if (fUpload) picUploadHighlight.SetBackColor(fOtherPage ? ButtonShadow : DarkShadow);
  picUploadHighlight.SetVisible(fUpload);
}

void TarvikGUI::Panel::tabMain_Click() {
  if (Page *page = PageOf(tabMain->Tab()))
    page->Enter();
  else
    ShowIllegalCase();
  SetTabState(ePageSetStatus, eCurrPage);
}

void TarvikGUI::Panel::EnableControlsForChannels(Long lngChannels) { gate->EnableControlsForChannels(lngChannels); }

KnownSetup &TarvikGUI::Panel::Known() { return marks->Known(); }

// ---- Setups ----

Setup TarvikGUI::Panel::ShownSetup() const {
  Setup setup;
  for (Long lngPage = 0; lngPage < eNumPages; ++lngPage) TakeShown(setup, static_cast<TabNumEnum>(lngPage));
  return setup;
}

void TarvikGUI::Panel::TakeShown(Setup &setup, TabNumEnum ePage) const {
  if (!zorvaneInstr) RaiseError(ErrObjectNotSet);
  setup.Instrument = marks->Known().Values().Instrument;
  setup.Instrument.lngNumChannels = zorvaneInstr->ChannelCount().value_or(2);
  setup.lngLacks = 0;
  for (Long eBit = 1; eBit <= AllFunctionality; eBit *= 2)
    if ((AllFunctionality & eBit) != 0 && zorvaneInstr->IsRestricted(eBit)) setup.lngLacks |= eBit;
  PageOf(ePage)->TakeShown(setup);
}

void TarvikGUI::Panel::ShowSetup(const Setup &setup) {
  const ProgramShows shows(gui, state);
  // In the order of a download: the mode decides what the other pages can show.
  for (const TabNumEnum ePage :
       {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
    PageOf(ePage)->ShowSetup(setup);
}

// ---- Errors, warnings and events of the instrument ----

void TarvikGUI::Panel::cmdCheckErrors_Click() {
  if (!ZorvaneInstr().IsOnline(False)) return;
  if (!ZorvaneInstr().CheckErrors(True)) ShowBox("No Instrument Errors", BoxIcon::Information);
}

void TarvikGUI::Panel::cmdCheckWarnings_Click() {
  if (!ZorvaneInstr().IsOnline(False)) return;
  if (!ZorvaneInstr().CheckWarnings(True)) ShowBox("No Instrument Warnings", BoxIcon::Information);
}

void TarvikGUI::Panel::ZorvaneInstr_StatusMessage(const std::string &strStatus) {
  txtStatus.SetText(strStatus);
  Q_EMIT gui.statusMessage(QString::fromStdString(strStatus));
}

void TarvikGUI::Panel::TellLoss(const std::string &strWhy) {
  if (lost->IsLost() || !zorvaneInstr->IsConnected()) return;
  lost->Begin();
  const std::string strText =
      "Connection lost: " + strWhy + "\r\nChanges stay on the pages. Refresh connects again, then tick the instrument.";
  ZorvaneInstr_StatusMessage(strText);
  TheHost().ConnectionLost(strText);
}

void TarvikGUI::Panel::ZorvaneInstr_InstrError() {
  // There is nothing to read from, and the marks of the changed pages have to stay.
  if (lost->IsLost()) return;
  if (optionsPage->chkAutoDownOnError.Value() != 1) return;
  SetTabState(ePageNeedsDownloading, eAllPages);
  DownloadAllPages();
}

}  // namespace tarvik
