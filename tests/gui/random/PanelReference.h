#pragma once

#include <bitset>
#include <set>
#include <string>
#include <vector>

#include "RandomActions.h"
#include "panel/PanelState.h"
#include "settings/PageStates.h"
#include "settings/Setting.h"
#include "settings/Setup.h"

namespace tarvik::test {

/// What a panel has to show and to remember, told by the rules alone: page states, marks and steps of the user. Watches
/// the panel by its public events. Has to begin with an open instrument whose pages were all read.
class PanelReference {
 public:
  explicit PanelReference(SimulatorSession &session);
  PanelReference(const PanelReference &) = delete;
  PanelReference &operator=(const PanelReference &) = delete;

  void Before();
  /// What is wrong now; empty for nothing. `held` is what the instrument has, read past the panel.
  std::string After(const Done &done, const Setup &held);
  /// Undoes all steps and does them again; what is wrong, or empty.
  std::string WalkBack();

 private:
  using Pages = std::bitset<eNumPages>;
  struct Step {
    std::vector<std::string> arrShown;  ///< what the panel showed behind it
    Pages marks;                        ///< the pages that it marks as changed, done, undone or done again
  };

  Pages MarkedBy(const Done &done) const;
  void FollowStates(const Done &done, const Pages &marks);
  /// The controls of the settings in use in which panel and instrument differ.
  std::set<std::string> Differing(const Setup &shown, const Setup &held) const;
  /// The instrument keeps less of a number than it was sent.
  bool IsRounded(const Setting &setting, Long lngChannel, const Setup &held) const;
  std::string CheckMarks(const Setup &held) const;
  /// The pages with a setting that the last action changed.
  Pages ChangedPages() const;
  std::string FirstChange() const;
  std::string FollowStep(const Done &done, Pages &marks);
  std::string CheckShown() const;

  SimulatorSession &m_session;
  PageStates m_states{};
  std::vector<Step> m_steps;  ///< the first is the start
  std::size_t m_step = 0;     ///< the one that the panel shows
  std::string m_strRun;       ///< the field in which a run of the digit cursor is at work
  // Before the action:
  std::vector<std::string> m_arrBefore;
  std::vector<bool> m_arrSwitches, m_arrOutputs;
  decltype(PanelState::mfTeEqLe) m_arrCoupled{};
  bool m_fUploadsAll = false, m_fDownloadsAll = false, m_fAutoOutput = false, m_fReadsAfterError = false;
  Double m_dblAddress = 0;
  std::size_t m_visible = 0;
  // Since then:
  bool m_fTaken = false;    ///< a field raised its event
  bool m_fRefused = false;  ///< the instrument did not take an upload
  std::vector<Event<>::Connection> m_arrEvents;
  Event<const std::string &>::Connection m_refused;
};

}  // namespace tarvik::test
