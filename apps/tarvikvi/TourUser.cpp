#include "TourUser.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

namespace tarvik {

void TourUser::Settle() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents();
}

void TourUser::ClickAt(QWidget &widget, const QPoint &point) {
  const QPointF local(point), global(widget.mapToGlobal(point));
  QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&widget, &press);
  QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&widget, &release);
  Settle();
}

void TourUser::Press(QWidget &widget, int intKey, const QString &text) {
  QKeyEvent press(QEvent::KeyPress, intKey, Qt::NoModifier, text);
  QApplication::sendEvent(&widget, &press);
  QKeyEvent release(QEvent::KeyRelease, intKey, Qt::NoModifier, text);
  QApplication::sendEvent(&widget, &release);
}

void TourUser::Click(const QString &name) const {
  auto &widget = Find<QWidget>(name);
  // Of an option the left end is the button.
  const int indicator = widget.style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) / 2 + 2;
  const bool fOption = widget.inherits("QRadioButton") || widget.inherits("QCheckBox");
  ClickAt(widget, fOption ? QPoint(indicator, widget.height() / 2) : widget.rect().center());
}

void TourUser::ClickTab(int intPage) const {
  QTabBar &bar = *Find<QTabWidget>(QStringLiteral("tabMain")).tabBar();
  ClickAt(bar, bar.tabRect(intPage).center());
}

void TourUser::Enter(const QString &name, const QString &text) const {
  auto &box = *Find<QWidget>(name).findChild<QLineEdit *>(QStringLiteral("txtNumber"));
  box.setFocus();
  // The first character begins the entry, so that the rest replaces the old number as a whole.
  box.selectAll();
  for (const QChar ch : text) {
    const int key = ch.toUpper().unicode();
    Press(box, key, QString(ch));
    if (box.selectionLength() > 0) box.deselect();
  }
  Press(box, Qt::Key_Return, QStringLiteral("\r"));
  Settle();
}

void TourUser::Choose(const QString &name, int intItem) const {
  auto &list = *Find<QWidget>(name).findChild<QComboBox *>(QStringLiteral("cbo"));
  list.setFocus();
  while (list.currentIndex() != intItem) {
    const int before = list.currentIndex();
    Press(list, before < intItem ? Qt::Key_Down : Qt::Key_Up);
    if (list.currentIndex() == before) qFatal("%s does not follow the keys", qPrintable(name));
  }
  Settle();
}

void TourUser::TakeMenu(const QString &name, const QString &key) const {
  for (QAction *action : Find<QToolButton>(name).menu()->actions())
    if (action->objectName() == key) action->trigger();
  Settle();
}

void TourUser::Tick(int intRow) const {
  const auto &list = Find<QTreeWidget>(QStringLiteral("lvwInstruments"));
  const QRect rect = list.visualItemRect(list.topLevelItem(intRow));
  const int box = list.style()->pixelMetric(QStyle::PM_IndicatorWidth);
  ClickAt(*list.viewport(), QPoint(rect.left() + list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + box / 2 + 2,
                                   rect.center().y()));
}

}  // namespace tarvik
