#pragma once

#include "instrument/clsInstrInterface.h"
#include "panel/Form.h"
#include "panel/PanelState.h"
#include "settings/KnownSetup.h"

namespace tarvik {

class LostSession;
class StateArchive;

/// What a page asks of the panel.
class PanelServices {
 public:
  virtual ~PanelServices() = default;
  virtual void SetTabState(TabStates eState, TabNumEnum ePage) = 0;
  virtual PanelState &State() = 0;
  /// The instrument interface; error 91 while the panel is hidden and holds none.
  virtual clsInstrInterface &ZorvaneInstr() = 0;
  virtual bool HasInstr() const = 0;
  /// What a lost connection has left on the pages.
  virtual LostSession &Lost() = 0;
  /// Runs what the visible page does when it is entered.
  virtual void EnterVisiblePage() = 0;
  /// Reads pages from the instrument, all of them while mfForceDownloadAll is set.
  virtual void cmdDownload_Click() = 0;
  /// Reads all pages, whatever the option says.
  virtual void DownloadAllPages() = 0;
  /// What is known of the open instrument's settings.
  virtual KnownSetup &Known() = 0;
  /// The instrument has switched an output at once.
  virtual void OutputSwitched(Integer intChan, Boolean fState, Boolean fIsComplement) = 0;
  /// Adapts the controls to the open instrument; 0 without one.
  virtual void EnableControlsForChannels(Long lngChannels) = 0;
};

/// A page of the panel: its controls, its rules and its transfer.
class Page {
 public:
  Page(QWidget &page, PanelServices &panel, const FormTable &table)
      : m_panel(panel), m_state(panel.State()), m_form(page, table) {}
  virtual ~Page() = default;
  Page(const Page &) = delete;
  Page &operator=(const Page &) = delete;

  /// The page came to the front.
  virtual void Enter() = 0;

  /// Writes the page's part of a setup from what it shows: the record that an upload sends. Pages without settings of
  /// the instrument write nothing.
  virtual void TakeShown(Setup &) const {}
  /// Shows the page's part of a setup as it is: no range and no preset changes a value of it. What the open instrument
  /// has no control for is left out.
  virtual void ShowSetup(const Setup &) {}

  /// What the page remembers besides its controls.
  virtual void VisitState(StateArchive &) {}

  const Form &Controls() const { return m_form; }

 protected:
  clsInstrInterface &Instr() const { return m_panel.ZorvaneInstr(); }
  void MarkDirty(TabNumEnum ePage) const { m_panel.SetTabState(ePageIsDirty, ePage); }

  /// Number of channels of the open instrument, 0 without one.
  Long ChannelCount() const { return Instr().ChannelCount().value_or(0); }
  /// Number of channels in the page's record: both without an instrument, since the controls of both are open then.
  Long RecordChannels() const { return Instr().ChannelCount().value_or(2); }

  PanelServices &m_panel;
  PanelState &m_state;
  Form m_form;
};

}  // namespace tarvik
