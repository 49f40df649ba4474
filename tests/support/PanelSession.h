#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "PanelStart.h"
#include "PanelUser.h"
#include "RecordingHost.h"
#include "StandInDriver.h"
#include "controls/FrameEnhanced.h"
#include "instrument/clsInstrInterfacePrivate.h"
#include "panel/ModePage.h"
#include "panel/Panel.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"

namespace tarvik::test {

/// A shown panel between a recording host and a stand-in driver with one instrument, and its user.
class PanelSession : public PanelUser {
 public:
  struct Start {
    StandInConfig config = {};
    bool fAutoDownload = true;
    bool fAutoOutput = true;
    bool fOpen = true;
  };

  PanelSession() : PanelSession(Start{}) {}
  explicit PanelSession(const Start &start);
  PanelSession(const PanelSession &) = delete;
  PanelSession &operator=(const PanelSession &) = delete;
  ~PanelSession();

  /// Forgets what was recorded so far.
  void Forget();
  void Open() { OpenFirst(); }

  PanelState &State() const { return TarvikGUI::Panel::Of(*panel).state; }
  TabStates StateOf(TabNumEnum ePage) const { return State().meTabState[static_cast<std::size_t>(ePage)]; }

  /// The driver's calls so far, without their outcome, whose operation is one of these: "SetOutput", "GetPattern".
  std::vector<std::string> Calls(std::initializer_list<std::string_view> arrOperations) const;
  /// Whether the log has a failure of this operation of the instrument class.
  bool Failed(const std::string &strOperation) const;
  bool InTransaction() const { return clsInstrInterface::Private::Of(*instr).m_TransActive; }

  RecordingHost host;
  StandInDriver driver;
  std::shared_ptr<clsInstrInterface> instr;
  std::unique_ptr<TarvikGUI> panel;
};

}  // namespace tarvik::test
