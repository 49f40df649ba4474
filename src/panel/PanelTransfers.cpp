#include <utility>

#include "automation/CallsAhead.h"
#include "automation/ReadAhead.h"
#include "panel/ConfigPage.h"
#include "panel/LevelsPage.h"
#include "panel/LimitsPage.h"
#include "panel/LostSession.h"
#include "panel/ModePage.h"
#include "panel/OptionsPage.h"
#include "panel/Panel.h"
#include "panel/PatternPage.h"
#include "panel/ProgramShows.h"
#include "panel/SettingMarks.h"
#include "panel/TimingPage.h"
#include "panel/TrigLevPage.h"
#include "platform/ScopedFlag.h"
#include "settings/RunningOutput.h"
#include "support/EventBoundary.h"
#include "support/Host.h"
#include "support/modUtils.h"

namespace tarvik {

namespace {

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

}  // namespace

Boolean TarvikGUI::Panel::NeedsUpload(Boolean fAll, Boolean fContinue, Long intPage) {
  return tarvik::NeedsUpload(state.meTabState, intPage, tabMain->Tab(), fAll, fContinue);
}

void TarvikGUI::Panel::cmdUpload_Click() {
  const auto instr = zorvaneInstr;
  lost->UploadBegins();
  try {
    RunCatchable([this] { UploadPages(); });
  } catch (const RunTimeError &) {
    ZorvaneInstr().TransactionCancel();
  } catch (const EventEnded &) {
    // The panel may be gone; the instrument interface is not, and must not believe in a transaction.
    instr->TransactionCancel();
    throw;
  }
  lost->UploadEnds();
  SetHourglass(False);
}

void TarvikGUI::Panel::UploadPages() {
  clsInstrInterface &instr = ZorvaneInstr();
  if (!instr.IsOnline(False)) return;
  SetHourglass(True);
  instr.TransactionStart(True);
  const Boolean fAll = optionsPage->UploadsAll();
  Boolean fOk = True;

  static constexpr struct {
    TabNumEnum ePage;
    void (*upload)(Panel &panel, Boolean &fOk);
  } Steps[] = {
      // Not the tab order: the pattern's flags go last, its bits follow behind the transaction.
      {ePageMode, [](Panel &panel, Boolean &f) { panel.modePage->UploadMode(f); }},
      {ePageTiming, [](Panel &panel, Boolean &f) { panel.timingPage->UploadTiming(f); }},
      {ePageLevels, [](Panel &panel, Boolean &f) { panel.levelsPage->UploadLevels(f); }},
      {ePageLimits, [](Panel &panel, Boolean &f) { panel.limitsPage->UploadLimits(f); }},
      {ePageTrigLev, [](Panel &panel, Boolean &f) { panel.trigLevPage->UploadTrigLevels(f); }},
      {ePageConfig, [](Panel &panel, Boolean &f) { panel.configPage->UploadConfig(f); }},
      {ePagePattern, [](Panel &panel, Boolean &f) { panel.patternPage->UploadRz(f); }},
  };
  std::vector<TabNumEnum> arrSent;
  for (const auto &step : Steps) {
    if (!NeedsUpload(fAll, fOk, step.ePage)) continue;
    arrSent.push_back(step.ePage);
    step.upload(*this, fOk);
  }

  if (fOk) {
    const auto ahead = instr.FinishAhead(True);
    CommitPages(arrSent);
    instr.CheckWarnings(False);
  } else {
    instr.TransactionCancel();
  }
  if (NeedsUpload(fAll, fOk, ePagePattern)) patternPage->UploadPattern(fOk);
}

void TarvikGUI::Panel::CommitPages(const std::vector<TabNumEnum> &arrPages) {
  // Taken before the commit, whose refusal serves the user with a box.
  Setup sent;
  IgnoreErrors([&] { sent = ShownSetup(); });
  sent.Pattern = {};
  if (!ZorvaneInstr().TransactionFinish(True)) return;
  for (const TabNumEnum ePage : arrPages) Known().TakeSent(ePage, sent);
}

void TarvikGUI::Panel::cmdDownload_Click() {
  if (!ZorvaneInstr().IsOnline(False)) return;
  // A failure below leaves the pointer and the flag as they are until the next download that works.
  SetHourglass(True);
  state.mfDownloading = True;
  const Long intPage = tabMain->Tab();
  const Boolean fAll = state.mfForceDownloadAll || optionsPage->DownloadsAll();

  static constexpr struct {
    TabNumEnum ePage;
    void (*download)(Panel &panel);
  } Steps[] = {
      {ePageMode, [](Panel &panel) { panel.modePage->DownloadMode(); }},
      {ePageTiming, [](Panel &panel) { panel.timingPage->DownloadTiming(); }},
      {ePageLevels, [](Panel &panel) { panel.levelsPage->DownloadLevels(); }},
      {ePagePattern, [](Panel &panel) { panel.patternPage->DownloadPattern(); }},
      {ePageLimits, [](Panel &panel) { panel.limitsPage->DownloadLimits(); }},
      {ePageTrigLev, [](Panel &panel) { panel.trigLevPage->DownloadTrigLevels(); }},
      {ePageConfig, [](Panel &panel) { panel.configPage->DownloadConfig(); }},
  };
  {
    const automation::ReadAhead ahead(fAll ? "panel download" : nullptr);
    for (const auto &step : Steps)
      if (intPage == step.ePage || fAll) step.download(*this);
  }

  state.mfDownloading = False;
  SetHourglass(False);
  ZorvaneInstr().CheckWarnings(False);
}

void TarvikGUI::Panel::DownloadAllPages() {
  // A failure that leaves the download must not take the option away from those that follow.
  const ScopedFlag forcing(gui, state.mfForceDownloadAll);
  cmdDownload_Click();
}

// ---- All outputs off ----

Boolean TarvikGUI::Panel::TurnOutputsOff() {
  const std::shared_ptr<clsInstrInterface> instr = zorvaneInstr;
  if (!instr || !instr->IsOnline(True)) return False;
  const QPointer<TarvikGUI> self(&gui);
  Boolean fAllOff = True;
  {
    // The box of a warning would keep the outputs behind it on until somebody has read it.
    const WarningsHeldBack heldBack(*instr);
    for (const Boolean fIsComplement : {False, True}) {
      for (Integer intChan = 1; intChan <= instr->ChannelCount().value_or(0); ++intChan) {
        const Boolean fOff = instr->Output(intChan, False, fIsComplement);
        fAllOff = fAllOff && fOff;
        if (fOff && self) {
          (fIsComplement ? state.mfOutputInvOn : state.mfOutputOn)[intChan] = False;
          Known().TakeOutput(intChan, fIsComplement, False);
        }
      }
    }
  }
  if (self) ShowOutputs();
  instr->CheckWarnings(False);
  return fAllOff;
}

void TarvikGUI::Panel::ShowOutputs() {
  const ProgramShows shows(gui, state);
  timingPage->ShowTimingOutputs();
  levelsPage->ShowLevelOutputs();
}

void TarvikGUI::Panel::OutputSwitched(Integer intChan, Boolean fState, Boolean fIsComplement) {
  Known().TakeOutput(intChan, fIsComplement, fState);
  if (!fState) return;
  const std::string strRunning =
      RunningText(Known(), intChan, fIsComplement, marks->AllDifferences(), TheHost().DecimalSeparator());
  if (!strRunning.empty()) Q_EMIT gui.outputRunsWithOthers(QString::fromStdString(strRunning));
}

}  // namespace tarvik
