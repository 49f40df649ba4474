#include "platform/CheckBox.h"

#include "platform/ControlEvent.h"

namespace tarvik {

CheckBox::CheckBox(QWidget *parent) : WidgetControl(parent) {
  connect(this, &QCheckBox::stateChanged, this, [this] {
    if (!m_fProgramChange) RunUserEvent(*this, "Click", [this] { Click.Raise(); });
  });
}

Integer CheckBox::Value() const {
  switch (checkState()) {
    case Qt::Unchecked: return 0;
    case Qt::Checked: return 1;
    default: return 2;
  }
}

void CheckBox::SetValue(Integer intValue) {
  if (intValue < 0 || intValue > 2) RaiseError(ErrInvalidPropertyValue);
  if (intValue == Value()) return;
  {
    const ScopedFlag byProgram(*this, m_fProgramChange);
    setCheckState(intValue == 0 ? Qt::Unchecked : intValue == 1 ? Qt::Checked : Qt::PartiallyChecked);
  }
  Click.Raise();
}

void CheckBox::nextCheckState() { setCheckState(checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked); }

}  // namespace tarvik
