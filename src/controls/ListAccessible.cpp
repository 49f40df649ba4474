#include "controls/ListAccessible.h"

#include <QAbstractItemView>

#include "controls/CboEnhanced.h"
#include "platform/Accessibility.h"

namespace tarvik {

ListAccessible::ListAccessible(QComboBox &cbo) : QAccessibleWidget(&cbo, QAccessible::ComboBox), m_cbo(cbo) {}

QAccessibleInterface *ListAccessible::child(int intIndex) const {
  return intIndex == 0 ? QAccessible::queryAccessibleInterface(m_cbo.view()) : nullptr;
}

int ListAccessible::indexOfChild(const QAccessibleInterface *child) const {
  return child && child->object() == m_cbo.view() ? 0 : -1;
}

QString ListAccessible::text(QAccessible::Text eText) const {
  const QWidget *control = m_cbo.parentWidget();
  switch (eText) {
    case QAccessible::Name: {
      const QString strGiven = control->accessibleName();
      const auto *list = dynamic_cast<const CboEnhanced *>(control);
      const QString strCaption = list ? PlainCaption(QString::fromStdString(list->Caption())) : QString();
      const QString strOwn = !strGiven.isEmpty() ? strGiven : !strCaption.isEmpty() ? strCaption : control->toolTip();
      return NameInBoxes(strOwn, m_cbo);
    }
    case QAccessible::Value: return m_cbo.currentText();
    case QAccessible::Description: return control->toolTip();
    default: return QAccessibleWidget::text(eText);
  }
}

QAccessible::State ListAccessible::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.expandable = true;
  state.expanded = m_cbo.view()->isVisible();
  state.collapsed = !state.expanded;
  return state;
}

QStringList ListAccessible::actionNames() const { return {showMenuAction()}; }

QString ListAccessible::localizedActionDescription(const QString &strAction) const {
  return strAction == showMenuAction() ? QComboBox::tr("Open the combo box selection popup")
                                       : QAccessibleWidget::localizedActionDescription(strAction);
}

void ListAccessible::doAction(const QString &strAction) {
  if (strAction != showMenuAction() || !m_cbo.isEnabled()) return;
  if (m_cbo.view()->isVisible()) {
    m_cbo.hidePopup();
  } else {
    m_cbo.showPopup();
  }
}

}  // namespace tarvik
