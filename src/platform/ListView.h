#pragma once

#include <QTreeWidget>
#include <string>
#include <vector>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

class ListView;

/// One row of a list view; owned by the list and deleted when the list is cleared.
class ListItem : public QTreeWidgetItem {
 public:
  const std::string &Key() const { return m_strKey; }
  /// Column 0 is the row's text.
  std::string Text(int intColumn = 0) const { return text(intColumn).toStdString(); }
  void SetText(int intColumn, const std::string &strText) { setText(intColumn, QString::fromStdString(strText)); }
  Boolean Checked() const { return m_fChecked; }
  /// A change by the program raises no ItemCheck.
  void SetChecked(Boolean fChecked);
  Boolean Selected() const { return isSelected(); }
  void SetSelected(Boolean fSelected);

 private:
  friend class ListView;
  std::string m_strKey;
  bool m_fChecked = false;
};

/// A report-style list with a check box on each row and a key for each.
class ListView : public WidgetControl<QTreeWidget> {
  Q_OBJECT

 public:
  explicit ListView(QWidget *parent = nullptr);

  void SetColumns(const std::vector<std::string> &arrHeaders);
  std::vector<std::string> Columns() const;
  /// Widths in twips, from the first column on; kept in proportion as the font grows.
  void SetColumnWidths(std::vector<Single> arrWidths);

  /// Adds a row at the end.
  ListItem *Add(const std::string &strKey, const std::string &strText);
  void Clear();
  int Count() const { return static_cast<int>(m_arrItems.size()); }
  /// From 0; null for an index that the list does not have.
  ListItem *Item(int intIndex) const;
  ListItem *SelectedItem() const;

  /// The user toggled the check box of a row, which has its new state.
  Event<ListItem *> ItemCheck;
  Event<> DblClick;
  /// Key codes of the automation world: 13 is Enter.
  Event<Integer> KeyDown;

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  friend class ListItem;
  /// Notifies assistive technology of the toggled check box.
  void TellTick(const QModelIndex &index);
  void NoteCheckChange(QTreeWidgetItem *item, int intColumn);
  void RaiseItemCheck();
  template <class Serve>
  void ServeThenRaise(Serve &&serve);
  void WidenColumns();
  std::vector<ListItem *> m_arrItems;
  std::vector<Single> m_arrWidths;
  ListItem *m_turned = nullptr;  ///< its ItemCheck is still to be raised
  bool m_fServing = false;       ///< the toolkit is at work on an event of the user
  bool m_fProgramChange = false;
};

}  // namespace tarvik
