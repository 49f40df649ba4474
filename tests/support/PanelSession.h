#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PanelStart.h"
#include "PanelUser.h"
#include "RecordingHost.h"
#include "StandInDriver.h"
#include "controls/FrameEnhanced.h"
#include "instrument/clsInstrInterface.h"
#include "panel/ModePage.h"
#include "panel/Panel.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"

namespace tarvik::test {

/// The instrument class, which keeps what the pages send and what came of it.
class KeepingInstr : public clsInstrInterface {
 public:
  using clsInstrInterface::TransActive;

  Boolean SetMode(const udtModeInfo &ModeInfo) override;
  Boolean SetTiming(const udtTimingInfo &TimingInfo) override;
  Boolean SetLimits(const udtLimitsInfo &LimitsInfo) override;
  Boolean GetMode(udtModeInfo &ModeInfo) override;
  Boolean GetTiming(udtTimingInfo &TimingInfo) override;
  Boolean Output(Integer intChan, Boolean fState, Boolean fIsComplement) override;
  Boolean SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen) override;
  Boolean GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) override;

  udtModeInfo mode;
  udtTimingInfo timing;
  udtLimitsInfo limits;
  std::vector<std::string> arrOutputs, arrRows;
  Boolean fAnswer;
};

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

  RecordingHost host;
  StandInDriver driver;
  std::shared_ptr<KeepingInstr> instr;
  std::unique_ptr<TarvikGUI> panel;
};

}  // namespace tarvik::test
