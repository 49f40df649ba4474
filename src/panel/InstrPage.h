#pragma once

#include <functional>

#include "panel/Page.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"

namespace tarvik {

class OptionsPage;

/// The list of the instruments that the driver knows, and the road from a row to an open session. At most one row is
/// checked: that of the instrument in session.
class InstrPage : public Page {
 public:
  InstrPage(QWidget &page, PanelServices &panel, OptionsPage &options);

  void Enter() override;

  /// Ends the session and lists the instruments anew.
  void cmdRefresh_Click();
  /// Ends whatever session there is and, when starting, opens one with the row's instrument. Without a row it only
  /// ends.
  void InstrStartStop(ListItem *Item, Boolean fStart);
  /// Takes every tick away. Raises nothing.
  void UncheckAllInstruments();
  /// The driver's number of the checked row; 1 and false where none is checked.
  Boolean GetCheckedInstrNum(Long &lngInstrNum) const;

  /// The page control's tag is emptied with the ticks.
  std::function<void()> ClearTabTag;

  CommandButton &cmdRefresh;
  ListView &lvwInstruments;

 private:
  friend class PanelTestAccess;

  void lvwInstruments_DblClick();
  void lvwInstruments_KeyDown(Integer KeyCode);
  void lvwInstruments_ItemCheck(ListItem *Item);
  void ListInstruments();
  void AddRow(Integer Index, const viInfo &record, const std::string &strName);
  void StartSession(ListItem *Item);

  OptionsPage &m_options;
  bool m_fInItemCheck = false;
};

}  // namespace tarvik
