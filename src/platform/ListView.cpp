#include "platform/ListView.h"

#include <QAccessible>
#include <QHeaderView>
#include <QKeyEvent>
#include <optional>
#include <utility>

#include "platform/ControlEvent.h"
#include "platform/KeyCodes.h"
#include "platform/Twips.h"

namespace tarvik {

void ListItem::SetChecked(Boolean fChecked) {
  auto *list = static_cast<ListView *>(treeWidget());
  m_fChecked = fChecked;
  std::optional<ScopedFlag<bool>> byProgram;
  if (list) byProgram.emplace(*list, list->m_fProgramChange);
  setCheckState(0, fChecked ? Qt::Checked : Qt::Unchecked);
}

void ListItem::SetSelected(Boolean fSelected) {
  setSelected(fSelected);
  if (fSelected && treeWidget()) treeWidget()->setCurrentItem(this);
}

ListView::ListView(QWidget *parent) : WidgetControl(parent) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(SingleSelection);
  setTabKeyNavigation(false);
  header()->setSectionsMovable(false);
  connect(this, &QTreeWidget::itemChanged, this, &ListView::NoteCheckChange);
}

void ListView::SetColumns(const std::vector<std::string> &arrHeaders) {
  QStringList labels;
  for (const std::string &strHeader : arrHeaders) labels << QString::fromStdString(strHeader);
  setHeaderLabels(labels);
}

std::vector<std::string> ListView::Columns() const {
  std::vector<std::string> arrHeaders;
  for (int i = 0; i < columnCount(); ++i) arrHeaders.push_back(headerItem()->text(i).toStdString());
  return arrHeaders;
}

void ListView::SetColumnWidths(std::vector<Single> arrWidths) {
  m_arrWidths = std::move(arrWidths);
  WidenColumns();
}

void ListView::WidenColumns() {
  for (std::size_t i = 0; i < m_arrWidths.size(); ++i)
    setColumnWidth(static_cast<int>(i), TwipsToPixels(*this, m_arrWidths[i]));
}

void ListView::changeEvent(QEvent *event) {
  WidgetControl::changeEvent(event);
  if (event->type() == QEvent::FontChange) WidenColumns();
}

ListItem *ListView::Add(const std::string &strKey, const std::string &strText) {
  auto *item = new ListItem;  // the list owns it from here on
  item->m_strKey = strKey;
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
  item->setText(0, QString::fromStdString(strText));
  item->setCheckState(0, Qt::Unchecked);
  {
    const ScopedFlag byProgram(*this, m_fProgramChange);
    addTopLevelItem(item);
  }
  m_arrItems.push_back(item);
  // The view asks for a paint only when the message loop lays its rows out, which is too late while a driver is busy.
  viewport()->update();
  return item;
}

void ListView::Clear() {
  m_arrItems.clear();
  clear();
  viewport()->update();
}

ListItem *ListView::Item(int intIndex) const {
  return intIndex >= 0 && intIndex < Count() ? m_arrItems[static_cast<std::size_t>(intIndex)] : nullptr;
}

ListItem *ListView::SelectedItem() const {
  const auto items = selectedItems();
  return items.isEmpty() ? nullptr : static_cast<ListItem *>(items.first());
}

void ListView::TellTick(const QModelIndex &index) {
  QAccessibleInterface *list = QAccessible::isActive() ? QAccessible::queryAccessibleInterface(this) : nullptr;
  QAccessibleTableInterface *table = list ? list->tableInterface() : nullptr;
  QAccessibleInterface *cell = table ? table->cellAt(index.row(), index.column()) : nullptr;
  if (!cell) return;
  // QTreeWidget reports that the row changed, but not what.
  QAccessible::State changed;
  changed.checked = true;
  QAccessibleStateChangeEvent event(cell, changed);
  QAccessible::updateAccessibility(&event);
}

void ListView::NoteCheckChange(QTreeWidgetItem *item, int intColumn) {
  if (intColumn == 0) TellTick(indexFromItem(item));
  if (m_fProgramChange || intColumn != 0) return;
  auto *row = static_cast<ListItem *>(item);
  const bool fChecked = row->checkState(0) == Qt::Checked;
  if (fChecked == row->m_fChecked) return;
  row->m_fChecked = fChecked;
  m_turned = row;
  if (!m_fServing) RaiseItemCheck();
}

void ListView::RaiseItemCheck() {
  if (ListItem *row = std::exchange(m_turned, nullptr)) RunUserEvent(*this, "ItemCheck", [&] { ItemCheck.Raise(row); });
}

/// The event is raised when the toolkit is done: the list may be gone when its handlers are.
template <class Serve>
void ListView::ServeThenRaise(Serve &&serve) {
  {
    const ScopedFlag serving(*this, m_fServing);
    serve();
  }
  RaiseItemCheck();
}

void ListView::mouseReleaseEvent(QMouseEvent *event) {
  ServeThenRaise([&] { WidgetControl::mouseReleaseEvent(event); });
}

void ListView::keyPressEvent(QKeyEvent *event) {
  if (const Integer intCode = KeyCodeOf(*event); intCode != 0)
    RunUserEvent(*this, "KeyDown", [&] { KeyDown.Raise(intCode); });
  const bool fEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (fEnter) {
    event->accept();
    return;
  }
  ServeThenRaise([&] { WidgetControl::keyPressEvent(event); });
}

void ListView::mouseDoubleClickEvent(QMouseEvent *event) {
  // Two quick clicks on a check box toggle it twice; they are no double click on the row.
  const QModelIndex index = indexAt(event->position().toPoint());
  if (index.isValid() && event->button() == Qt::LeftButton) {
    const int boxWidth =
        style()->pixelMetric(QStyle::PM_IndicatorWidth) + 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin);
    const bool fOnBox = index.column() == 0 && event->position().x() < visualRect(index).left() + boxWidth;
    if (fOnBox) {
      mousePressEvent(event);
      return;
    }
    RunUserEvent(*this, "DblClick", [this] { DblClick.Raise(); });
    event->accept();
    return;
  }
  WidgetControl::mouseDoubleClickEvent(event);
}

}  // namespace tarvik
