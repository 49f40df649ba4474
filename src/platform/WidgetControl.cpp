#include "platform/WidgetControl.h"

#include <QLayout>

namespace tarvik {

namespace {

bool Holds(const QLayout &layout, const QWidget &widget) {
  for (int i = 0; i < layout.count(); ++i) {
    QLayoutItem *item = layout.itemAt(i);
    if (item->widget() == &widget || (item->layout() && Holds(*item->layout(), widget))) return true;
  }
  return false;
}

}  // namespace

void GiveFocus(QWidget &widget) { widget.setFocus(Qt::OtherFocusReason); }

bool TakeFocusForClick(QWidget &button) {
  if (button.hasFocus() || !(button.focusPolicy() & Qt::ClickFocus)) return true;
  button.setFocus(Qt::ShortcutFocusReason);
  return button.isEnabled();
}

Boolean OwnEnabled(const QWidget &widget) { return !widget.testAttribute(Qt::WA_ForceDisabled); }

Boolean OwnVisible(const QWidget &widget) {
  return !(widget.testAttribute(Qt::WA_WState_ExplicitShowHide) && widget.testAttribute(Qt::WA_WState_Hidden));
}

void SetOwnVisible(QWidget &widget, Boolean fShow) {
  if (OwnVisible(widget) != fShow) widget.setVisible(fShow);
}

bool StandsInLayout(const QWidget &widget) {
  const QWidget *container = widget.parentWidget();
  return container && container->layout() && Holds(*container->layout(), widget);
}

std::string ObjectName(const QObject &object) { return object.objectName().toStdString(); }

}  // namespace tarvik
