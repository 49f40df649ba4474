#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QStyle>
#include <QTabBar>
#include <QTest>
#include <stdexcept>
#include <string>
#include <vector>

#include "controls/CboEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/TarvikGUI.h"
#include "platform/ListView.h"

namespace tarvik::test {

/// A user in front of a panel: works it by its object names, with keys and mouse.
class PanelUser {
 public:
  explicit PanelUser(QWidget &panel) : m_panel(&panel) {}
  /// From now on this panel is worked.
  void SitDownAt(QWidget &panel) { m_panel = &panel; }

  template <class T>
  T *Find(const std::string &strName) const {
    return dynamic_cast<T *>(m_panel->findChild<QWidget *>(QString::fromStdString(strName)));
  }
  /// Raises std::invalid_argument where no control of this kind has the name.
  template <class T>
  T &Get(const std::string &strName) const {
    if (T *control = Find<T>(strName)) return *control;
    throw std::invalid_argument(strName);
  }
  EngrSpin &Field(const std::string &strName) const { return Get<EngrSpin>(strName); }
  CboEnhanced &List(const std::string &strName) const { return Get<CboEnhanced>(strName); }
  ListView &Instruments() const { return Get<ListView>("lvwInstruments"); }

  /// Raises std::runtime_error when the page does not come up.
  void ShowPage(TabNumEnum ePage) const;
  /// Clicks the tab, whatever comes of it.
  void ClickTab(TabNumEnum ePage) const;
  void Click(const std::string &strName) const;
  /// Clicks the round or square of an option or a check box.
  void Choose(const std::string &strName) const;
  /// Takes an item from the open list; the index counts from 0.
  void Take(const std::string &strName, int intItem) const;
  void Type(const std::string &strName, const std::string &strText) const;
  /// Leaves the entry open.
  void TypeWithoutEnter(const std::string &strName, const std::string &strText) const;
  /// A key in the field's text box.
  void PressIn(const std::string &strName, Qt::Key key) const;
  /// Takes the entry with this key from a menu, which need not be open. Raises std::invalid_argument where there is
  /// none.
  void TakeMenu(const std::string &strName, const std::string &strKey) const;
  /// A key together with Alt, wherever the focus is.
  void PressAccessKey(Qt::Key key) const;

  /// The middle of a row's check box, from the list's viewport.
  QPoint BoxOf(int intRow) const;
  /// Turns the check box of a row over; rows count from 0.
  void Tick(int intRow) const;
  /// Clicks beside the check box.
  void Select(int intRow) const;
  void DoubleClick(int intRow) const;
  /// The same anywhere in the list, from its viewport.
  void DoubleClickAt(QPoint place) const;
  void PressInList(Qt::Key key) const;
  /// Opens the first instrument by the keyboard, or ends its session.
  void OpenFirst() const;
  /// The row of the instrument with this name, or -1.
  int RowOf(const std::string &strInstrument) const;
  /// The names of the rows that have a tick.
  std::vector<std::string> Ticked() const;
  /// "text=item data" of each item.
  std::vector<std::string> Items(const std::string &strName) const;

 protected:
  /// Before there is a panel.
  PanelUser() = default;

 private:
  QLineEdit &TextBox(const std::string &strName) const;

  QWidget *m_panel = nullptr;
};

}  // namespace tarvik::test
