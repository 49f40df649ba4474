#pragma once

#include <functional>

#include "panel/Page.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"

namespace tarvik {

class OptionsPage;

/// Lists the instruments that the driver knows, and opens and closes sessions with them. At most one row is checked:
/// that of the open instrument.
class InstrPage : public Page {
 public:
  InstrPage(QWidget &page, PanelServices &panel, OptionsPage &options);

  void Enter() override;

  /// Closes the session and lists the instruments again.
  void cmdRefresh_Click();
  /// Closes the session, if any, and with fStart opens one with the row's instrument. Item may be null: then it only
  /// closes.
  void InstrStartStop(ListItem *Item, Boolean fStart);
  /// Clears all ticks without raising an event.
  void UncheckAllInstruments();
  /// The driver's index of the checked row; 1 and false where none is checked.
  Boolean GetCheckedInstrNum(Long &lngInstrNum) const;

  /// Called when the ticks are cleared; clears the tag of the page control.
  std::function<void()> ClearTabTag;

  CommandButton &cmdRefresh;
  ListView &lvwInstruments;

 private:
  void lvwInstruments_DblClick();
  void lvwInstruments_KeyDown(Integer KeyCode);
  void lvwInstruments_ItemCheck(ListItem *Item);
  /// Makes a lost connection anew. True where there is none to be made.
  bool Reconnected();
  void ListInstruments();
  void AddRow(Integer Index, const viInfo &record, const std::string &strName);
  void StartSession(ListItem *Item);

  OptionsPage &m_options;
  bool m_fInItemCheck = false;
};

}  // namespace tarvik
