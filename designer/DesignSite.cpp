#include "designer/DesignSite.h"

#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerPropertySheetExtension>
#include <QExtensionManager>
#include <QWidget>

namespace tarvik {

void DesignSite::SetWidget(QWidget *widget) {
  m_widget = widget;
  setParent(widget);
}

QDesignerFormWindowInterface *DesignSite::FormWindow() const {
  return m_widget ? QDesignerFormWindowInterface::findFormWindow(m_widget) : nullptr;
}

void DesignSite::PropertyChanged(const std::string &strProperty) {
  const QString property = QString::fromStdString(strProperty);
  // The designer writes its own note of the change behind the assignment that is running.
  QMetaObject::invokeMethod(
      this, [this, property] { Mark(property, true); }, Qt::QueuedConnection);
}

void DesignSite::PropertyAssigned(const std::string &strProperty, Boolean fIsDefault) {
  if (!fIsDefault) return;
  const QString property = QString::fromStdString(strProperty);
  QMetaObject::invokeMethod(
      this, [this, property] { Mark(property, false); }, Qt::QueuedConnection);
}

void DesignSite::Mark(const QString &property, bool fChanged) {
  QDesignerFormWindowInterface *form = FormWindow();
  if (!form) return;
  auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(form->core()->extensionManager(), m_widget.data());
  const int index = sheet ? sheet->indexOf(property) : -1;
  if (index < 0) return;
  sheet->setChanged(index, fChanged);
  form->setDirty(true);
  QDesignerPropertyEditorInterface *editor = form->core()->propertyEditor();
  if (editor && editor->object() == m_widget) editor->setPropertyValue(property, sheet->property(index), fChanged);
}

}  // namespace tarvik
