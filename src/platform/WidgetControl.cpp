#include "platform/WidgetControl.h"

namespace tarvik {

Event<const std::string &> &FocusRequested() {
  static Event<const std::string &> event;
  return event;
}

void GiveFocus(QWidget &widget) {
  FocusRequested().Raise(ObjectName(widget));
  widget.setFocus(Qt::OtherFocusReason);
}

Boolean OwnEnabled(const QWidget &widget) { return !widget.testAttribute(Qt::WA_ForceDisabled); }

Boolean OwnVisible(const QWidget &widget) {
  return !(widget.testAttribute(Qt::WA_WState_ExplicitShowHide) && widget.testAttribute(Qt::WA_WState_Hidden));
}

void SetOwnVisible(QWidget &widget, Boolean fShow) {
  if (OwnVisible(widget) != fShow) widget.setVisible(fShow);
}

std::string ObjectName(const QObject &object) { return object.objectName().toStdString(); }

}  // namespace tarvik
