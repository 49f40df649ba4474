#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <string>

#include "controls/FrameEnhanced.h"
#include "panel/Page.h"
#include "panel/PanelState.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"
#include "support/Export.h"
#include "support/modGlobals.h"

namespace tarvik {

class CapabilityGate;
class ConfigPage;
class Highlight;
class InstrPage;
class LevelsPage;
class LimitsPage;
class ModePage;
class OptionsPage;
class PanelStart;
class PatternPage;
class TimingPage;
class TrigLevPage;

/// The front panel: a host places it on a form and gets a complete panel. It starts when it is shown and its
/// first frame painted: options are restored, the driver is connected, the instruments are listed. Until then it takes
/// no command. Hiding saves the options and ends the session; a later show starts anew. All of it lives on the thread
/// that made it; only the last panel shown is told of changes.
class TARVIK_EXPORT TarvikGUI : public QWidget, public PanelReference, private PanelServices {
  Q_OBJECT

 public:
  explicit TarvikGUI(QWidget *parent = nullptr);
  ~TarvikGUI() override;

  /// Gives one page, the visible page (eCurrPage) or all pages (eAllPages) a state, or with ePageSetStatus none, and
  /// shows the highlights anew. A dirty mark during a download is dropped. Another page number is error 9.
  void SetTabState(TabStates eState, TabNumEnum ePage) override;

  /// Turns the normal and the inverse output of each channel off at once, also where the output switches wait for an
  /// upload; asks nothing, changes no mark, and the pages follow. False without an open instrument, in silence, and
  /// when an output failed, whose box the user has seen; the others are off then all the same.
  Boolean AllOutputsOff();

  /// Whether what is typed into a number field at rest takes the place of the whole number instead of the selected
  /// digit; in all fields of the panel alike. False at first.
  void SetTypingReplacesNumber(Boolean fReplaces);
  Boolean TypingReplacesNumber() const;

  static constexpr Long MinZoom = 50, MaxZoom = 400;
  /// Shows the panel larger or smaller than its font asks for, in percent (MinZoom to MaxZoom, 100 at first); its size
  /// hints follow. Another percentage is error 380, and nothing changes. Where a style sheet gives the controls a font
  /// of their own, that font stands.
  void SetZoom(Long lngPercent);
  Long Zoom() const { return m_lngZoom; }
  /// The zoom at which the whole panel is as large as it can be in this many pixels; MinZoom where even that is cut
  /// off.
  Long ZoomToFit(const QSize &room) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  /// A text came into the status line; comes from within the operation that tells it. A slot must let no exception out.
  void statusMessage(const QString &strStatus);

 protected:
  void showEvent(QShowEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  void changeEvent(QEvent *event) override;
  void customEvent(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  friend class PanelTestAccess;

  PanelState &State() override { return m_state; }
  clsInstrInterface &ZorvaneInstr() override;
  bool HasInstr() const override { return m_zorvaneInstr != nullptr; }
  void EnterVisiblePage() override { tabMain_Click(); }
  void cmdDownload_Click() override;
  void EnableControlsForChannels(Long lngChannels) override;

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
  /// Anew with each theme.
  void TakeDisabledLook();
  QFont ZoomedFont(Long lngPercent) const;
  void tabMain_Click();

  void cmdUpload_Click();
  void UploadPages();
  void cmdCheckErrors_Click();
  void cmdCheckWarnings_Click();
  Boolean TurnOutputsOff();
  void ShowOutputs();
  void ZorvaneInstr_StatusMessage(const std::string &strStatus);
  void ZorvaneInstr_InstrError();

  Boolean NeedsUpload(Boolean fAll, Boolean fContinue, Long intPage);
  void ShowHighlights(Boolean fDownload, Boolean fUpload, Boolean fOtherPage);
  void ShowStateOfVisiblePage();
  /// The states in words, for those who do not see the highlights.
  void TellPageStates();
  Page *PageOf(Long lngPage) const;

  PanelState m_state;
  std::shared_ptr<clsInstrInterface> m_zorvaneInstr;
  Event<const std::string &>::Connection m_statusConnection;
  Event<const std::string &>::Connection m_errorConnection;
  std::unique_ptr<PanelStart> m_start;
  bool m_fStarted = false;  ///< at least once, with whatever result
  bool m_fEnding = false;
  std::optional<std::string> m_strUnsaved;  ///< why options could not be saved, until that is told

  /// Carries all controls, so that its font can be zoomed while the panel's own stays the host's.
  QWidget &m_face;
  Long m_lngZoom = 100;
  TabControl *m_tabMain;  ///< made before the rest, so that it comes first in the tab order
  Form m_form;
  DisplayBox &txtStatus;
  Highlight &picDownloadHighlight;
  Highlight &picUploadHighlight;

  std::unique_ptr<OptionsPage> m_optionsPage;
  std::unique_ptr<InstrPage> m_instrPage;
  std::unique_ptr<TimingPage> m_timingPage;
  std::unique_ptr<PatternPage> m_patternPage;
  std::unique_ptr<ModePage> m_modePage;
  std::unique_ptr<LevelsPage> m_levelsPage;
  std::unique_ptr<LimitsPage> m_limitsPage;
  std::unique_ptr<TrigLevPage> m_trigLevPage;
  std::unique_ptr<ConfigPage> m_configPage;
  std::unique_ptr<CapabilityGate> m_gate;
};

}  // namespace tarvik
