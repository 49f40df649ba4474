#include "controls/ForeignControl.h"

#include "platform/WidgetControl.h"

namespace tarvik {

ForeignControl &ForeignControl::Of(QWidget &widget) {
  if (auto *known = widget.findChild<ForeignControl *>(QString(), Qt::FindDirectChildrenOnly)) return *known;
  return *new ForeignControl(widget);
}

Boolean ForeignControl::Enabled() const { return OwnEnabled(m_widget); }

Boolean ForeignControl::Visible() const { return OwnVisible(m_widget); }

void ForeignControl::SetFocus() { GiveFocus(m_widget); }

}  // namespace tarvik
