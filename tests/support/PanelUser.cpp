#include "PanelUser.h"

#include <QAction>
#include <QApplication>
#include <QTabWidget>

namespace tarvik::test {

QLineEdit &PanelUser::TextBox(const std::string &strName) const {
  return *Field(strName).findChild<QLineEdit *>(QStringLiteral("txtNumber"));
}

void PanelUser::ShowPage(TabNumEnum ePage) const {
  ClickTab(ePage);
  if (Get<QTabWidget>("tabMain").currentIndex() != ePage) throw std::runtime_error("the tab cannot be reached");
}

void PanelUser::ClickTab(TabNumEnum ePage) const {
  QTabBar &tabs = *Get<QTabWidget>("tabMain").tabBar();
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(ePage).center());
}

void PanelUser::Click(const std::string &strName) const { QTest::mouseClick(&Get<QWidget>(strName), Qt::LeftButton); }

void PanelUser::Choose(const std::string &strName) const {
  auto &button = Get<QWidget>(strName);
  QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

void PanelUser::Take(const std::string &strName, int intItem) const {
  auto &list = *List(strName).findChild<QComboBox *>();
  list.showPopup();
  list.view()->setCurrentIndex(list.model()->index(intItem, 0));
  QTest::keyClick(list.view(), Qt::Key_Return);
}

void PanelUser::Type(const std::string &strName, const std::string &strText) const {
  TypeWithoutEnter(strName, strText);
  PressIn(strName, Qt::Key_Return);
}

void PanelUser::TypeWithoutEnter(const std::string &strName, const std::string &strText) const {
  QLineEdit &text = TextBox(strName);
  text.setFocus();
  text.selectAll();
  QTest::keyClicks(&text, QString::fromStdString(strText));
}

void PanelUser::PressIn(const std::string &strName, Qt::Key key) const { QTest::keyClick(&TextBox(strName), key); }

void PanelUser::TakeMenu(const std::string &strName, const std::string &strKey) const {
  auto *action = Get<QWidget>(strName).findChild<QAction *>(QString::fromStdString(strKey));
  if (!action) throw std::invalid_argument("no such entry: " + strKey);
  action->trigger();
}

void PanelUser::PressAccessKey(Qt::Key key) const {
  m_panel->activateWindow();
  QTest::keyClick(QApplication::focusWidget(), key, Qt::AltModifier);
}

QPoint PanelUser::BoxOf(int intRow) const {
  ListView &list = Instruments();
  const QRect rect = list.visualItemRect(list.Item(intRow));
  const QStyle &style = *list.style();
  return {rect.left() + style.pixelMetric(QStyle::PM_FocusFrameHMargin) +
              style.pixelMetric(QStyle::PM_IndicatorWidth) / 2 + 2,
          rect.center().y()};
}

void PanelUser::Tick(int intRow) const {
  QTest::mouseClick(Instruments().viewport(), Qt::LeftButton, {}, BoxOf(intRow));
}

void PanelUser::Select(int intRow) const {
  ListView &list = Instruments();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.Item(intRow)).center());
}

void PanelUser::DoubleClick(int intRow) const {
  ListView &list = Instruments();
  DoubleClickAt(list.visualItemRect(list.Item(intRow)).center());
}

void PanelUser::DoubleClickAt(QPoint place) const {
  QWidget *viewport = Instruments().viewport();
  QTest::mouseClick(viewport, Qt::LeftButton, {}, place);
  QTest::mouseDClick(viewport, Qt::LeftButton, {}, place);
}

void PanelUser::PressInList(Qt::Key key) const { QTest::keyClick(&Instruments(), key); }

void PanelUser::OpenFirst() const {
  Instruments().setCurrentItem(Instruments().topLevelItem(0));
  PressInList(Qt::Key_Return);
}

int PanelUser::RowOf(const std::string &strInstrument) const {
  for (int i = 0; i < Instruments().Count(); ++i)
    if (Instruments().Item(i)->Text() == strInstrument) return i;
  return -1;
}

std::vector<std::string> PanelUser::Ticked() const {
  std::vector<std::string> arrNames;
  for (int i = 0; i < Instruments().Count(); ++i)
    if (Instruments().Item(i)->Checked()) arrNames.push_back(Instruments().Item(i)->Text());
  return arrNames;
}

std::vector<std::string> PanelUser::Items(const std::string &strName) const {
  const CboEnhanced &list = List(strName);
  std::vector<std::string> arrItems;
  for (Long i = 0; i < list.ListCount(); ++i)
    arrItems.push_back(list.ItemText(i) + "=" + std::to_string(list.ItemData(i)));
  return arrItems;
}

}  // namespace tarvik::test
