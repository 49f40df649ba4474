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
  explicit PanelUser(QWidget &panel) : m_panel(panel) {}

  template <class T>
  T &Get(const std::string &strName) const {
    T *control = dynamic_cast<T *>(m_panel.findChild<QWidget *>(QString::fromStdString(strName)));
    if (!control) throw std::invalid_argument(strName);
    return *control;
  }
  EngrSpin &Field(const std::string &strName) const { return Get<EngrSpin>(strName); }
  CboEnhanced &List(const std::string &strName) const { return Get<CboEnhanced>(strName); }
  ListView &Instruments() const { return Get<ListView>("lvwInstruments"); }

  void ShowPage(TabNumEnum ePage) const {
    QTabBar &tabs = *Get<QTabWidget>("tabMain").tabBar();
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(ePage).center());
    if (Get<QTabWidget>("tabMain").currentIndex() != ePage) throw std::runtime_error("the tab cannot be reached");
  }
  void Click(const std::string &strName) const { QTest::mouseClick(&Get<QWidget>(strName), Qt::LeftButton); }
  /// Clicks the round or square of an option or a check box.
  void Choose(const std::string &strName) const {
    auto &button = Get<QWidget>(strName);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  }
  /// Takes an item from the open list; the index counts from 0.
  void Take(const std::string &strName, int intItem) const {
    auto &list = *List(strName).findChild<QComboBox *>();
    list.showPopup();
    list.view()->setCurrentIndex(list.model()->index(intItem, 0));
    QTest::keyClick(list.view(), Qt::Key_Return);
  }
  void Type(const std::string &strName, const std::string &strText) const {
    auto &text = *Field(strName).findChild<QLineEdit *>();
    text.setFocus();
    text.selectAll();
    QTest::keyClicks(&text, QString::fromStdString(strText));
    QTest::keyClick(&text, Qt::Key_Return);
  }
  void TakeMenu(const std::string &strName, const char *strKey) const {
    Get<QWidget>(strName).findChild<QAction *>(QString::fromLatin1(strKey))->trigger();
  }
  /// The middle of a row's check box, from the list's viewport.
  QPoint BoxOf(int intRow) const {
    ListView &list = Instruments();
    const QRect rect = list.visualItemRect(list.Item(intRow));
    const QStyle &style = *list.style();
    return {rect.left() + style.pixelMetric(QStyle::PM_FocusFrameHMargin) +
                style.pixelMetric(QStyle::PM_IndicatorWidth) / 2 + 2,
            rect.center().y()};
  }
  /// Turns the check box of a row over; rows count from 0.
  void Tick(int intRow) const { QTest::mouseClick(Instruments().viewport(), Qt::LeftButton, {}, BoxOf(intRow)); }
  void DoubleClick(int intRow) const {
    ListView &list = Instruments();
    const QPoint point = list.visualItemRect(list.Item(intRow)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, point);
  }
  /// The row of the instrument with this name, or -1.
  int RowOf(const std::string &strInstrument) const {
    for (int i = 0; i < Instruments().Count(); ++i)
      if (Instruments().Item(i)->Text() == strInstrument) return i;
    return -1;
  }
  /// The names of the rows that have a tick.
  std::vector<std::string> Ticked() const {
    std::vector<std::string> arrNames;
    for (int i = 0; i < Instruments().Count(); ++i)
      if (Instruments().Item(i)->Checked()) arrNames.push_back(Instruments().Item(i)->Text());
    return arrNames;
  }

 private:
  QWidget &m_panel;
};

}  // namespace tarvik::test
