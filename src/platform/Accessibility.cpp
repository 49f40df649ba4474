#include "platform/Accessibility.h"

#include <QGroupBox>
#include <QStringList>

namespace tarvik {

QString PlainCaption(const QString &strCaption) { return QString(strCaption).remove(QLatin1Char('&')).trimmed(); }

QString NameInBoxes(const QString &strOwnName, const QWidget &widget) {
  QStringList arrNames;
  if (!strOwnName.isEmpty()) arrNames << strOwnName;
  for (const QWidget *around = widget.parentWidget(); around && !around->isWindow(); around = around->parentWidget()) {
    const auto *box = qobject_cast<const QGroupBox *>(around);
    const QString strCaption = box ? PlainCaption(box->title()) : QString();
    if (!strCaption.isEmpty() && !arrNames.contains(strCaption)) arrNames << strCaption;
  }
  return arrNames.join(QStringLiteral(", "));
}

void TellNameChanged(QWidget &widget) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&widget, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
}

}  // namespace tarvik
