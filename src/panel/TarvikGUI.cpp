#include "panel/TarvikGUI.h"

#include <QCoreApplication>
#include <QHideEvent>
#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

#include "engrspin/EngrSpin.h"
#include "panel/CapabilityGate.h"
#include "panel/ConfigPage.h"
#include "panel/InstrPage.h"
#include "panel/LevelsPage.h"
#include "panel/LimitsPage.h"
#include "panel/ModePage.h"
#include "panel/OptionsPage.h"
#include "panel/PanelStart.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "panel/TrigLevPage.h"
#include "platform/CommandButton.h"
#include "platform/DisabledLook.h"
#include "platform/Highlight.h"
#include "platform/QtHost.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/EventBoundary.h"
#include "support/Host.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"

namespace tarvik {

namespace {

constexpr const char *SettingsSection = "Config";

constexpr Single PanelWidth = 8640, PanelHeight = 6990;
/// The Levels page needs the most room of all.
constexpr TwipsRect TabPlace{60, 60, 8520, 5430};
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

constexpr TwipsRect DownloadPlace{120, ButtonTop, 2700, 420}, UploadPlace{2970, ButtonTop, 2700, 420};

FormTable Design() {
  return {
      form::Text("lblStatus").At({120, StatusTop + 30, 780, 315}).Caption("Status"),
      form::DisplayBox("txtStatus")
          .At({900, StatusTop, 7620, 735})
          .SpokenName("Status")
          .ToolTip("The last message of the instrument connection"),
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

/// Warnings are not polled while the object lives.
class WarningsHeldBack {
 public:
  explicit WarningsHeldBack(clsInstrInterface &instr) : m_instr(instr), m_fBefore(instr.GetWarningsEnabled()) {
    m_instr.LetWarningsEnabled(False);
  }
  WarningsHeldBack(const WarningsHeldBack &) = delete;
  WarningsHeldBack &operator=(const WarningsHeldBack &) = delete;
  ~WarningsHeldBack() { m_instr.LetWarningsEnabled(m_fBefore); }

 private:
  clsInstrInterface &m_instr;
  const Boolean m_fBefore;
};

QSize SizeAt(qreal dblPixelsPerTwip) {
  return {qRound(PanelWidth * dblPixelsPerTwip), qRound(PanelHeight * dblPixelsPerTwip)};
}

std::string Setting(const char *strKey, const char *strDefault) {
  return TheHost().GetSetting(AppTitle, SettingsSection, strKey, strDefault);
}

}  // namespace

TarvikGUI::TarvikGUI(QWidget *parent)
    : QWidget(parent),
      m_start(std::make_unique<PanelStart>(*this, [this] { Start(); })),
      m_face(*new QWidget(this)),
      m_tabMain(MakeTabs(&m_face)),
      m_form(m_face, Design()),
      txtStatus(m_form.Get<DisplayBox>("txtStatus")),
      picDownloadHighlight(m_form.Get<Highlight>("picDownloadHighlight")),
      picUploadHighlight(m_form.Get<Highlight>("picUploadHighlight")) {
  EnsureQtHost();
  TakeDisabledLook();
  m_face.setObjectName(QStringLiteral("face"));
  m_tabMain->setDocumentMode(false);
  m_tabMain->setUsesScrollButtons(true);
  PlaceFace();
  PlaceHighlights();
  MakePages();
  ConnectEvents();
}

TarvikGUI::~TarvikGUI() {
  m_fEnding = true;
  // Closing the session tells what it does, and what the host's slots would touch may be gone by now.
  blockSignals(true);
  const UserEvent::Waiting waiting;
  if (EndEvents()) LeaveFaceToToolkit();
  // A panel that never started has read no options, and would write its design's over the user's.
  if (m_fStarted)
    RunUserEvent(
        "TarvikGUI", "Terminate", [this] { UserControl_Terminate(); }, this);
  if (gobjPanel() == this) gobjPanel() = nullptr;
  if (!m_strUnsaved) return;
  // The host may destroy the window around the panel while the box stands.
  setParent(nullptr);
  TellUnsaved();
}

void TarvikGUI::LeaveFaceToToolkit() {
  // An event of a control has shown the box at which the host destroys the panel, and the toolkit's code for that
  // control is still running: QComboBox, for one, uses itself after its signals.
  m_face.hide();
  m_face.setParent(nullptr);
  UserEvent::AfterAll([&face = m_face] { face.deleteLater(); });
}

QWidget &TarvikGUI::Sheet(TabNumEnum ePage) const { return *m_tabMain->widget(ePage); }

void TarvikGUI::MakePages() {
  PanelServices &panel = *this;
  m_optionsPage = std::make_unique<OptionsPage>(Sheet(ePageOptions), panel);
  m_instrPage = std::make_unique<InstrPage>(Sheet(ePageInstr), panel, *m_optionsPage);
  m_timingPage = std::make_unique<TimingPage>(Sheet(ePageTiming), panel);
  m_patternPage = std::make_unique<PatternPage>(Sheet(ePagePattern), panel);
  m_modePage = std::make_unique<ModePage>(Sheet(ePageMode), panel, *m_timingPage, *m_patternPage);
  m_levelsPage = std::make_unique<LevelsPage>(Sheet(ePageLevels), panel);
  m_limitsPage = std::make_unique<LimitsPage>(Sheet(ePageLimits), panel);
  m_trigLevPage = std::make_unique<TrigLevPage>(Sheet(ePageTrigLev), panel);
  m_configPage = std::make_unique<ConfigPage>(Sheet(ePageConfig), panel, *m_instrPage);
  m_gate = std::make_unique<CapabilityGate>(*this, panel, *m_timingPage, m_patternPage->Editor());
  NameTabs();
  PutCommandsBehindPages();
}

void TarvikGUI::NameTabs() {
  // Behind the pages: of what shares an access key, the one named first comes first. So R presses Refresh on its page
  // before it leads away to the tab of the trigger levels.
  for (int i = 0; i < eNumPages; ++i) m_tabMain->setTabText(i, QString::fromLatin1(TabCaptions[i]));
}

void TarvikGUI::PutCommandsBehindPages() {
  QWidget *last = m_tabMain;
  for (QWidget *next = last->nextInFocusChain(); next != m_tabMain; next = next->nextInFocusChain())
    if (m_tabMain->isAncestorOf(next)) last = next;
  for (const char *strName : {"txtStatus", "cmdDownload", "cmdUpload", "cmdCheckErrors", "cmdCheckWarnings"}) {
    auto &command = m_form.Get<QWidget>(strName);
    setTabOrder(last, &command);
    last = &command;
  }
}

void TarvikGUI::ConnectEvents() {
  m_form.Placed.Connect([this] { PlaceHighlights(); });
  m_tabMain->Click.Connect([this](Long) { tabMain_Click(); });
  m_instrPage->ClearTabTag = [this] { m_tabMain->SetTag(""); };
  m_form.Get<CommandButton>("cmdUpload").Click.Connect([this] { cmdUpload_Click(); });
  m_form.Get<CommandButton>("cmdDownload").Click.Connect([this] { cmdDownload_Click(); });
  m_form.Get<CommandButton>("cmdCheckErrors").Click.Connect([this] { cmdCheckErrors_Click(); });
  m_form.Get<CommandButton>("cmdCheckWarnings").Click.Connect([this] { cmdCheckWarnings_Click(); });
}

Page *TarvikGUI::PageOf(Long lngPage) const {
  switch (lngPage) {
    case ePageInstr: return m_instrPage.get();
    case ePageMode: return m_modePage.get();
    case ePageTiming: return m_timingPage.get();
    case ePageLevels: return m_levelsPage.get();
    case ePagePattern: return m_patternPage.get();
    case ePageLimits: return m_limitsPage.get();
    case ePageTrigLev: return m_trigLevPage.get();
    case ePageConfig: return m_configPage.get();
    case ePageOptions: return m_optionsPage.get();
    default: return nullptr;
  }
}

// The fields ask what they stand in.
void TarvikGUI::SetTypingReplacesNumber(Boolean fReplaces) { setProperty(TypingReplacesProperty, bool{fReplaces}); }

Boolean TarvikGUI::TypingReplacesNumber() const { return property(TypingReplacesProperty).toBool(); }

// ---- Size and zoom ----

QSize TarvikGUI::sizeHint() const { return SizeAt(PixelsPerTwip(m_face)); }

void TarvikGUI::SetZoom(Long lngPercent) {
  if (lngPercent < MinZoom || lngPercent > MaxZoom)
    throw RunTimeError(ErrInvalidPropertyValue, "A zoom is 50 to 400 percent, not " + std::to_string(lngPercent));
  m_lngZoom = lngPercent;
  PlaceFace();
}

Long TarvikGUI::ZoomToFit(const QSize &room) const {
  const auto scale = [this](Long lngPercent) { return PixelsPerTwip(ZoomedFont(lngPercent)); };
  const auto fits = [&](Long lngPercent) {
    const QSize size = SizeAt(scale(lngPercent));
    return size.width() <= room.width() && size.height() <= room.height();
  };
  // A line of text never gets lower as the font grows, so that the percentages that fit come before those that do not.
  const auto percentages = std::views::iota(Long{MinZoom}, Long{MaxZoom} + 1);
  const Long lngLargest = *std::ranges::partition_point(percentages, fits) - 1;
  if (lngLargest <= MinZoom) return MinZoom;
  // Lines grow by whole pixels, so several percentages have one size; the letters suit the one that the size stands
  // for.
  return std::clamp(static_cast<Long>(std::lround(100 * scale(lngLargest) / scale(100))), Long{MinZoom}, lngLargest);
}

QFont TarvikGUI::ZoomedFont(Long lngPercent) const {
  QFont zoomed = font();
  if (zoomed.pointSizeF() > 0)
    zoomed.setPointSizeF(zoomed.pointSizeF() * lngPercent / 100);
  else
    zoomed.setPixelSize(std::max(1, zoomed.pixelSize() * lngPercent / 100));
  return zoomed;
}

void TarvikGUI::PlaceFace() {
  m_face.setFont(m_lngZoom == 100 ? QFont() : ZoomedFont(m_lngZoom));
  m_tabMain->setGeometry(TwipsToPixels(m_face, TabPlace));
  const QSize size = sizeHint(), spare = (this->size() - size).expandedTo(QSize(0, 0));
  m_face.setGeometry(QRect(QPoint(spare.width() / 2, spare.height() / 2), size));
  updateGeometry();
}

void TarvikGUI::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  PlaceFace();
}

void TarvikGUI::PlaceHighlights() {
  // Taken from the button itself: rounded apart from it, a shadow could come out a pixel wider.
  const int offset = TwipsToPixels(m_face, Shadow);
  picDownloadHighlight.setGeometry(m_form.Get<CommandButton>("cmdDownload").geometry().translated(offset, offset));
  picUploadHighlight.setGeometry(m_form.Get<CommandButton>("cmdUpload").geometry().translated(offset, offset));
}

void TarvikGUI::TakeDisabledLook() {
  QPalette colours = palette();
  SetDisabledLook(colours);
  if (colours != palette()) setPalette(colours);
}

void TarvikGUI::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) TakeDisabledLook();
  if (event->type() == QEvent::FontChange) PlaceFace();
}

// ---- Start and end ----

void TarvikGUI::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  // A window that comes back from the task bar was never hidden by its host.
  if (event->spontaneous()) return;
  gobjPanel() = this;
  m_start->Await();
}

void TarvikGUI::Start() {
  m_fStarted = true;
  RunUserEvent(
      "TarvikGUI", "Show", [this] { UserControl_Show(); }, this);
}

void TarvikGUI::hideEvent(QHideEvent *event) {
  QWidget::hideEvent(event);
  if (event->spontaneous() || m_fEnding || m_start->GiveUp()) return;
  EndEvents();
  const UserEvent::Waiting waiting;
  RunUserEvent(
      "TarvikGUI", "Hide", [this] { UserControl_Hide(); }, this);
  // The toolkit is still hiding the panel, and the host may destroy it while the box stands. At low priority, so that a
  // program that is about to quit does so first; the panel's end then saves once more.
  if (m_strUnsaved) QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
}

void TarvikGUI::customEvent(QEvent *) { TellUnsaved(); }

void TarvikGUI::TellUnsaved() {
  const auto strReason = std::exchange(m_strUnsaved, std::nullopt);
  if (!strReason) return;
  const UserEvent::Waiting waiting;
  RunUserEvent(
      "TarvikGUI", "Terminate", [&] { ShowBox("Unable to save settings: " + *strReason, BoxIcon::Information); }, this);
}

bool TarvikGUI::EndEvents() {
  const auto arrParts = findChildren<const QObject *>();
  const auto isPart = [&](const void *owner) {
    return owner == this || std::find(arrParts.begin(), arrParts.end(), owner) != arrParts.end();
  };
  if (!UserEvent::EndAllOf(isPart)) return false;
  // They cannot put back what they had set.
  m_state.mfDownloading = False;
  m_state.mfForceDownloadAll = False;
  return true;
}

void TarvikGUI::HoldInstr() {
  m_zorvaneInstr = InstrInterface();
  m_statusConnection = m_zorvaneInstr->StatusMessage.ConnectScoped(
      [this](const std::string &strStatus) { ZorvaneInstr_StatusMessage(strStatus); });
  m_errorConnection =
      m_zorvaneInstr->InstrError.ConnectScoped([this](const std::string &) { ZorvaneInstr_InstrError(); });
}

clsInstrInterface &TarvikGUI::ZorvaneInstr() {
  if (!m_zorvaneInstr) RaiseError(ErrObjectNotSet);
  return *m_zorvaneInstr;
}

void TarvikGUI::UserControl_Show() {
  HoldInstr();
  RestoreOptions();
  InitAllPages();
  if (ZorvaneInstr().Connect()) {
    m_tabMain->SetTab(ePageInstr);
    m_instrPage->cmdRefresh.SetEnabled(True);
    YieldToEvents();
    m_instrPage->cmdRefresh_Click();
  }
  EnableControlsForChannels(0);
}

void TarvikGUI::RestoreOptions() {
  OptionsPage &options = *m_optionsPage;
  const auto number = [](const char *strKey, const char *strDefault) {
    return CInt(std::string_view(Setting(strKey, strDefault)));
  };
  options.grpUpload.SetValue(Setting("Upload", "All"));
  options.grpDownload.SetValue(Setting("Download", "All"));
  // The handlers run whether or not the assignment changed anything.
  options.chkAutoWarnings.SetValue(number("AutoWarnings", "1"));
  options.chkAutoWarnings_Click();
  options.chkAutoErrors.SetValue(number("AutoErrors", "1"));
  options.chkAutoErrors_Click();
  options.chkAutoDownOnError.SetValue(number("AutoDownOnError", "0"));
  options.chkAutoDownload.SetValue(number("AutoDownload", "1"));
  options.chkAutoOutputOnOff.SetValue(number("AutoOutputOnOff", "1"));
  options.chkAutoOutputOnOff_Click();
  m_state.mfWorkWithBoxes = Setting("WorkWithBoxes", "0") != "0";
}

void TarvikGUI::InitAllPages() {
  m_modePage->InitModePage();
  m_levelsPage->FillLevelCombos();
  m_trigLevPage->FillTrigLevelControls();
  m_configPage->InitPllRefCombos();
}

void TarvikGUI::UserControl_Hide() { UserControl_Terminate(); }

void TarvikGUI::UserControl_Terminate() {
  try {
    SaveOptions();
    if (!m_zorvaneInstr) return;
    m_zorvaneInstr->CloseInstrument();
    m_statusConnection.Disconnect();
    m_errorConnection.Disconnect();
    m_zorvaneInstr.reset();
  } catch (const RunTimeError &error) {
    m_strUnsaved = error.Description();
  }
}

void TarvikGUI::SaveOptions() {
  const OptionsPage &options = *m_optionsPage;
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

void TarvikGUI::SetTabState(TabStates eState, TabNumEnum ePage) {
  const Boolean fProgramFills = m_state.mfDownloading || m_start->IsAwaited();
  if (!SetPageState(m_state.meTabState, eState, ePage, m_tabMain->Tab(), fProgramFills)) return;
  TellPageStates();
  ShowStateOfVisiblePage();
}

void TarvikGUI::TellPageStates() {
  for (Long lngPage = 0; lngPage < m_tabMain->Tabs(); ++lngPage) {
    const TabStates eState = StateOf(m_state.meTabState, lngPage);
    m_tabMain->SetSpokenNote(lngPage, eState == ePageIsDirty            ? "changed, not uploaded"
                                      : eState == ePageNeedsDownloading ? "not read from the instrument yet"
                                                                        : "");
  }
}

void TarvikGUI::ShowStateOfVisiblePage() {
  const Long lngVisible = m_tabMain->Tab();
  if (!IsPageState(StateOf(m_state.meTabState, lngVisible))) ShowIllegalCase();
  const auto show = HighlightsOf(m_state.meTabState, lngVisible, m_optionsPage->UploadsAll());
  if (show) ShowHighlights(show->fDownload, show->fUpload, show->fOtherPage);
}

void TarvikGUI::ShowHighlights(Boolean fDownload, Boolean fUpload, Boolean fOtherPage) {
  picDownloadHighlight.SetVisible(fDownload);
  if (fUpload) picUploadHighlight.SetBackColor(fOtherPage ? ButtonShadow : DarkShadow);
  picUploadHighlight.SetVisible(fUpload);
}

void TarvikGUI::tabMain_Click() {
  if (Page *page = PageOf(m_tabMain->Tab()))
    page->Enter();
  else
    ShowIllegalCase();
  SetTabState(ePageSetStatus, eCurrPage);
}

// ---- Upload and download ----

Boolean TarvikGUI::NeedsUpload(Boolean fAll, Boolean fContinue, Long intPage) {
  return tarvik::NeedsUpload(m_state.meTabState, intPage, m_tabMain->Tab(), fAll, fContinue);
}

void TarvikGUI::cmdUpload_Click() {
  const auto instr = m_zorvaneInstr;
  try {
    UploadPages();
  } catch (const RunTimeError &) {
    ZorvaneInstr().TransactionCancel();
  } catch (const EventEnded &) {
    // The panel may be gone; the instrument interface is not, and must not believe in a transaction.
    instr->TransactionCancel();
    throw;
  }
  SetHourglass(False);
}

void TarvikGUI::UploadPages() {
  clsInstrInterface &instr = ZorvaneInstr();
  if (!instr.IsOnline(False)) return;
  SetHourglass(True);
  instr.TransactionStart(True);
  const Boolean fAll = m_optionsPage->UploadsAll();
  Boolean fOk = True;

  static constexpr struct {
    TabNumEnum ePage;
    void (*upload)(TarvikGUI &panel, Boolean &fOk);
  } Steps[] = {
      // Not the tab order: the pattern's flags go last, its bits follow behind the transaction.
      {ePageMode, [](TarvikGUI &panel, Boolean &f) { panel.m_modePage->UploadMode(f); }},
      {ePageTiming, [](TarvikGUI &panel, Boolean &f) { panel.m_timingPage->UploadTiming(f); }},
      {ePageLevels, [](TarvikGUI &panel, Boolean &f) { panel.m_levelsPage->UploadLevels(f); }},
      {ePageLimits, [](TarvikGUI &panel, Boolean &f) { panel.m_limitsPage->UploadLimits(f); }},
      {ePageTrigLev, [](TarvikGUI &panel, Boolean &f) { panel.m_trigLevPage->UploadTrigLevels(f); }},
      {ePageConfig, [](TarvikGUI &panel, Boolean &f) { panel.m_configPage->UploadConfig(f); }},
      {ePagePattern, [](TarvikGUI &panel, Boolean &f) { panel.m_patternPage->UploadRz(f); }},
  };
  for (const auto &step : Steps)
    if (NeedsUpload(fAll, fOk, step.ePage)) step.upload(*this, fOk);

  if (fOk) {
    instr.TransactionFinish(True);
    instr.CheckWarnings(False);
  } else {
    instr.TransactionCancel();
  }
  if (NeedsUpload(fAll, fOk, ePagePattern)) m_patternPage->UploadPattern(fOk);
}

void TarvikGUI::cmdDownload_Click() {
  if (!ZorvaneInstr().IsOnline(False)) return;
  // A failure below leaves the pointer and the flag as they are until the next download that works.
  SetHourglass(True);
  m_state.mfDownloading = True;
  const Long intPage = m_tabMain->Tab();
  const Boolean fAll = m_state.mfForceDownloadAll || m_optionsPage->DownloadsAll();

  static constexpr struct {
    TabNumEnum ePage;
    void (*download)(TarvikGUI &panel);
  } Steps[] = {
      {ePageMode, [](TarvikGUI &panel) { panel.m_modePage->DownloadMode(); }},
      {ePageTiming, [](TarvikGUI &panel) { panel.m_timingPage->DownloadTiming(); }},
      {ePageLevels, [](TarvikGUI &panel) { panel.m_levelsPage->DownloadLevels(); }},
      {ePagePattern, [](TarvikGUI &panel) { panel.m_patternPage->DownloadPattern(); }},
      {ePageLimits, [](TarvikGUI &panel) { panel.m_limitsPage->DownloadLimits(); }},
      {ePageTrigLev, [](TarvikGUI &panel) { panel.m_trigLevPage->DownloadTrigLevels(); }},
      {ePageConfig, [](TarvikGUI &panel) { panel.m_configPage->DownloadConfig(); }},
  };
  for (const auto &step : Steps)
    if (intPage == step.ePage || fAll) step.download(*this);

  m_state.mfDownloading = False;
  SetHourglass(False);
  ZorvaneInstr().CheckWarnings(False);
}

void TarvikGUI::EnableControlsForChannels(Long lngChannels) { m_gate->EnableControlsForChannels(lngChannels); }

// ---- All outputs off ----

Boolean TarvikGUI::AllOutputsOff() {
  Boolean fAllOff = False;
  RunUserEvent(
      "TarvikGUI", "AllOutputsOff", [&] { fAllOff = TurnOutputsOff(); }, this);
  return fAllOff;
}

Boolean TarvikGUI::TurnOutputsOff() {
  const std::shared_ptr<clsInstrInterface> instr = m_zorvaneInstr;
  if (!instr || !instr->IsOnline(True)) return False;
  const QPointer<TarvikGUI> self(this);
  Boolean fAllOff = True;
  {
    // The box of a warning would keep the outputs behind it on until somebody has read it.
    const WarningsHeldBack heldBack(*instr);
    for (const Boolean fIsComplement : {False, True}) {
      for (Integer intChan = 1; intChan <= instr->ChannelCount().value_or(0); ++intChan) {
        const Boolean fOff = instr->Output(intChan, False, fIsComplement);
        fAllOff = fAllOff && fOff;
        if (fOff && self) (fIsComplement ? m_state.mfOutputInvOn : m_state.mfOutputOn)[intChan] = False;
      }
    }
  }
  if (self) ShowOutputs();
  instr->CheckWarnings(False);
  return fAllOff;
}

void TarvikGUI::ShowOutputs() {
  // The switches only follow here: their clicks neither send what the instrument has already nor mark a page.
  const Boolean fAuto = std::exchange(m_state.mfAutoOutputOnOff, False);
  const Boolean fDownloading = std::exchange(m_state.mfDownloading, True);
  m_timingPage->ShowTimingOutputs();
  m_levelsPage->ShowLevelOutputs();
  m_state.mfAutoOutputOnOff = fAuto;
  m_state.mfDownloading = fDownloading;
}

// ---- Errors, warnings and events of the instrument ----

void TarvikGUI::cmdCheckErrors_Click() {
  if (!ZorvaneInstr().IsOnline(False)) return;
  if (!ZorvaneInstr().CheckErrors(True)) ShowBox("No Instrument Errors", BoxIcon::Information);
}

void TarvikGUI::cmdCheckWarnings_Click() {
  if (!ZorvaneInstr().IsOnline(False)) return;
  if (!ZorvaneInstr().CheckWarnings(True)) ShowBox("No Instrument Warnings", BoxIcon::Information);
}

void TarvikGUI::ZorvaneInstr_StatusMessage(const std::string &strStatus) {
  txtStatus.SetText(strStatus);
  Q_EMIT statusMessage(QString::fromStdString(strStatus));
}

void TarvikGUI::ZorvaneInstr_InstrError() {
  if (m_optionsPage->chkAutoDownOnError.Value() != 1) return;
  SetTabState(ePageNeedsDownloading, eAllPages);
  m_state.mfForceDownloadAll = True;
  cmdDownload_Click();
  m_state.mfForceDownloadAll = False;
}

}  // namespace tarvik
