#pragma once

#include <QAccessibleWidget>
#include <QComboBox>

namespace tarvik {

/// The drop-down list of a CboEnhanced. Its name is the caption, where Qt's own interface would use the selected item.
/// Its one child is the popup list.
class ListAccessible : public QAccessibleWidget {
 public:
  explicit ListAccessible(QComboBox &cbo);

  int childCount() const override { return 1; }
  QAccessibleInterface *child(int intIndex) const override;
  int indexOfChild(const QAccessibleInterface *child) const override;
  /// The value is the chosen item.
  QString text(QAccessible::Text eText) const override;
  QAccessible::State state() const override;

  QStringList actionNames() const override;
  QString localizedActionDescription(const QString &strAction) const override;
  void doAction(const QString &strAction) override;

 private:
  QComboBox &m_cbo;
};

}  // namespace tarvik
