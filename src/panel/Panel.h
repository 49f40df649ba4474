#pragma once

#include <memory>
#include <optional>
#include <string>

#include "panel/Page.h"
#include "panel/PanelState.h"
#include "panel/TarvikGUI.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"

namespace tarvik {

class CapabilityGate;
class ConfigPage;
class Highlight;
class InstrPage;
class LevelsPage;
class LimitsPage;
class LostSession;
class SettingMarks;
class ModePage;
class OptionsPage;
class PanelSetups;
class PanelStart;
class PatternPage;
class TimingPage;
class TrigLevPage;
class UndoHistory;

/// Implementation of TarvikGUI: the face with its pages, start and end, page states, and the transfers.
class TARVIK_HIDDEN TarvikGUI::Panel final : public PanelServices {
 public:
  explicit Panel(TarvikGUI &gui);
  ~Panel() override;
  Panel(const Panel &) = delete;
  Panel &operator=(const Panel &) = delete;

  static Panel &Of(TarvikGUI &gui) { return *gui.m; }

  void SetTabState(TabStates eState, TabNumEnum ePage) override;
  PanelState &State() override { return state; }
  clsInstrInterface &ZorvaneInstr() override;
  bool HasInstr() const override { return zorvaneInstr != nullptr; }
  LostSession &Lost() override { return *lost; }
  void EnterVisiblePage() override { tabMain_Click(); }
  void cmdDownload_Click() override;
  void DownloadAllPages() override;
  void EnableControlsForChannels(Long lngChannels) override;
  KnownSetup &Known() override;
  void OutputSwitched(Integer intChan, Boolean fState, Boolean fIsComplement) override;

  /// None of the panel's events that wait behind a box goes on. Answers whether there were any.
  bool EndEvents();
  /// The controls outlive the panel until the toolkit has left them.
  void LeaveFaceToToolkit();
  /// Shows the box for options that could not be saved.
  void TellUnsaved();
  void Start();
  void UserControl_Show();
  void UserControl_Hide();
  void UserControl_Terminate();
  void RestoreOptions();
  void SaveOptions();
  void InitAllPages();
  void HoldInstr();
  QWidget &Sheet(TabNumEnum ePage) const;
  void MakePages();
  void NameTabs();
  /// In the order of the tab key, in which they were made before the pages.
  void PutCommandsBehindPages();
  void ConnectEvents();
  void PlaceFace();
  void PlaceHighlights();
  /// The button of the messages is there where the host has a list of them.
  void OfferMessages();
  void PlaceStatus();
  void ShowUnseenMessages();
  void cmdMessages_Click();
  /// Anew with each theme.
  void TakeDisabledLook();
  QFont ZoomedFont(Long lngPercent) const;
  void tabMain_Click();

  void cmdUpload_Click();
  void UploadPages();
  /// Ends the transaction in which these pages were sent.
  void CommitPages(const std::vector<TabNumEnum> &arrPages);
  void cmdCheckErrors_Click();
  void cmdCheckWarnings_Click();
  Boolean TurnOutputsOff();
  void ShowOutputs();

  /// What the pages show, as an upload of all of them would send it.
  Setup ShownSetup() const;
  /// Writes one page's part of it.
  void TakeShown(Setup &setup, TabNumEnum ePage) const;
  /// Shows a setup on all pages; sends nothing to the instrument. Page states stay.
  void ShowSetup(const Setup &setup);
  void ZorvaneInstr_StatusMessage(const std::string &strStatus);
  void ZorvaneInstr_InstrError();
  void TellLoss(const std::string &strWhy);

  Boolean NeedsUpload(Boolean fAll, Boolean fContinue, Long intPage);
  void ShowHighlights(Boolean fDownload, Boolean fUpload, Boolean fOtherPage);
  void ShowStateOfVisiblePage();
  /// The states in words, for those who do not see the highlights.
  void TellPageStates();
  Page *PageOf(Long lngPage) const;

  TarvikGUI &gui;
  PanelState state;
  std::shared_ptr<clsInstrInterface> zorvaneInstr;
  Event<const std::string &>::Connection statusConnection;
  Event<const std::string &>::Connection errorConnection;
  Event<const std::string &>::Connection lossConnection;
  Event<>::Connection messagesConnection;
  std::unique_ptr<PanelStart> start;
  std::unique_ptr<LostSession> lost;
  bool fStarted = false;  ///< at least once, with whatever result
  bool fEnding = false;
  std::optional<std::string> strUnsaved;  ///< why options could not be saved, until that is told

  /// Carries all controls, so that its font can be zoomed while the panel's own stays the host's.
  QWidget &face;
  Long lngZoom = 100;
  TabControl *tabMain;  ///< made before the rest, so that it comes first in the tab order
  Form controls;
  DisplayBox &txtStatus;
  Highlight &picDownloadHighlight;
  Highlight &picUploadHighlight;

  std::unique_ptr<OptionsPage> optionsPage;
  std::unique_ptr<InstrPage> instrPage;
  std::unique_ptr<TimingPage> timingPage;
  std::unique_ptr<PatternPage> patternPage;
  std::unique_ptr<ModePage> modePage;
  std::unique_ptr<LevelsPage> levelsPage;
  std::unique_ptr<LimitsPage> limitsPage;
  std::unique_ptr<TrigLevPage> trigLevPage;
  std::unique_ptr<ConfigPage> configPage;
  std::unique_ptr<CapabilityGate> gate;
  std::unique_ptr<SettingMarks> marks;
  std::unique_ptr<PanelSetups> setups;
  std::unique_ptr<UndoHistory> undo;
};

}  // namespace tarvik
