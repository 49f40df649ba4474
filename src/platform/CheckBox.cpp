#include "platform/CheckBox.h"

#include <QStyleOptionButton>

#include "platform/ControlEvent.h"
#include "platform/ScaledIndicator.h"

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

bool CheckBox::hitButton(const QPoint &place) const {
  return IsIndicatorScaled(*this) ? HitsScaledIndicator(*this, place, CheckParts) : QCheckBox::hitButton(place);
}

void CheckBox::paintEvent(QPaintEvent *event) {
  if (!IsIndicatorScaled(*this)) {
    QCheckBox::paintEvent(event);
    return;
  }
  QStyleOptionButton option;
  initStyleOption(&option);
  PaintScaledIndicator(*this, option, CheckParts);
}

}  // namespace tarvik
