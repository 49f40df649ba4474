#pragma once

#include <QWidget>
#include <memory>
#include <vector>

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
class PatternPage;
class TimingPage;
class TrigLevPage;

/// The front panel: a host places it on a form and gets a complete panel. It starts when it is shown and its
/// first frame painted: options are restored, the driver is connected, the instruments are listed. Hiding saves the
/// options and ends the session; a later show starts anew. All of it lives on the thread that made it; only the last
/// panel shown is told of changes.
class TARVIK_EXPORT TarvikGUI : public QWidget, public PanelReference, private PanelServices {
  Q_OBJECT

 public:
  explicit TarvikGUI(QWidget *parent = nullptr);
  ~TarvikGUI() override;

  /// Gives one page, the visible page (eCurrPage) or all pages (eAllPages) a state, or with ePageSetStatus none, and
  /// shows the highlights anew. A dirty mark during a download is dropped. Another page number is error 9.
  void SetTabState(TabStates eState, TabNumEnum ePage) override;

  static constexpr Long MinZoom = 50, MaxZoom = 400;
  /// Shows the panel larger or smaller than its font asks for, in percent (MinZoom to MaxZoom, 100 at first); its size
  /// hints follow. Another percentage is error 380, and nothing changes. Where a style sheet gives the controls a font
  /// of their own, that font stands.
  void SetZoom(Long lngPercent);
  Long Zoom() const { return m_lngZoom; }
  /// The largest zoom at which the whole panel has room in this many pixels; MinZoom where even that is cut off.
  Long ZoomToFit(const QSize &room) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void showEvent(QShowEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  void changeEvent(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void customEvent(QEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  friend class PanelTestAccess;

  PanelState &State() override { return m_state; }
  clsInstrInterface &ZorvaneInstr() override;
  bool HasInstr() const override { return m_zorvaneInstr != nullptr; }
  void EnterVisiblePage() override { tabMain_Click(); }
  void cmdDownload_Click() override;
  void EnableControlsForChannels(Long lngChannels) override;

  void StartSoon();
  void StartIfPending();
  /// The window whose exposure will bring the first frame; null where it has been, or is not to come at all.
  QWindow *WindowToBeExposed() const;
  void UserControl_Show();
  void UserControl_Hide();
  void UserControl_Terminate();
  void RestoreOptions();
  void SaveOptions();
  void InitAllPages();
  void HoldInstr();
  QWidget &Sheet(TabNumEnum ePage) const;
  void MakeFirstPages();
  void MakeOtherPages();
  /// What of the panel takes the focus, in the order of the tab key.
  std::vector<QWidget *> TabStops() const;
  void ConnectEvents();
  void PlaceFace();
  void PlaceHighlights();
  QFont ZoomedFont(Long lngPercent) const;
  void tabMain_Click();

  void cmdUpload_Click();
  void UploadPages();
  void cmdCheckErrors_Click();
  void cmdCheckWarnings_Click();
  void ZorvaneInstr_StatusMessage(const std::string &strStatus);
  void ZorvaneInstr_InstrError();

  Boolean NeedsUpload(Boolean fAll, Boolean fContinue, Long intPage);
  TabStates &StateOf(Long lngPage);
  void ShowHighlights(Boolean fDownload, Boolean fUpload, Boolean fOtherPage);
  void ShowStateOfVisiblePage();
  Page *PageOf(Long lngPage) const;

  PanelState m_state;
  std::shared_ptr<clsInstrInterface> m_zorvaneInstr;
  Event<const std::string &>::Connection m_statusConnection;
  Event<const std::string &>::Connection m_errorConnection;
  bool m_fStartPending = false;  ///< shown, and the start has not run yet
  bool m_fStarted = false;       ///< at least once

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
  // Made behind the first frame, which does not show them; null until the panel starts or another tab is chosen.
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
