#include "platform/OptionButton.h"

#include <QCoreApplication>
#include <QStyleOptionButton>

#include "platform/ControlEvent.h"
#include "platform/ScaledIndicator.h"

namespace tarvik {

OptionButton::OptionButton(QWidget *parent, std::optional<Integer> intIndex)
    : WidgetControl(parent), m_intIndex(intIndex) {
  PassTabStop();
  connect(this, &QRadioButton::toggled, this, [this](bool fOn) {
    PassTabStop();
    if (fOn && !m_fProgramChange) RunUserEvent(*this, "Click", [this] { Click.Raise(); });
  });
}

Integer OptionButton::Index() const {
  if (!m_intIndex) RaiseError(ErrNotAnArray);
  return *m_intIndex;
}

void OptionButton::SetValue(Boolean fValue) {
  if (Value() == fValue) return;
  Choose(fValue);
  Click.Raise();
}

void OptionButton::SetDesignValue(Boolean fValue) { Choose(fValue); }

void OptionButton::Choose(bool fValue) {
  const ScopedFlag byProgram(*this, m_fProgramChange);
  // QRadioButton refuses to uncheck the last button of an exclusive group.
  if (!fValue) setAutoExclusive(false);
  setChecked(fValue);
  if (!fValue) setAutoExclusive(true);
}

void OptionButton::PassTabStop() {
  if (!parentWidget()) return;
  const auto arrButtons = parentWidget()->findChildren<OptionButton *>(QString(), Qt::FindDirectChildrenOnly);
  OptionButton *stop = nullptr;
  for (OptionButton *button : arrButtons) {
    if (!button->Enabled() || !button->Visible()) continue;
    if (!stop || button->isChecked()) stop = button;
  }
  for (OptionButton *button : arrButtons) button->setFocusPolicy(button == stop ? Qt::StrongFocus : Qt::ClickFocus);
}

void OptionButton::focusInEvent(QFocusEvent *event) {
  WidgetControl::focusInEvent(event);
  // Qt would make the button that was focused last the tab stop, chosen or not.
  PassTabStop();
}

void OptionButton::changeEvent(QEvent *event) {
  WidgetControl::changeEvent(event);
  if (event->type() == QEvent::EnabledChange) PassTabStop();
}

bool OptionButton::hitButton(const QPoint &place) const {
  return IsIndicatorScaled(*this) ? HitsScaledIndicator(*this, place, RadioParts) : QRadioButton::hitButton(place);
}

void OptionButton::paintEvent(QPaintEvent *event) {
  if (!IsIndicatorScaled(*this)) {
    QRadioButton::paintEvent(event);
    return;
  }
  QStyleOptionButton option;
  initStyleOption(&option);
  PaintScaledIndicator(*this, option, RadioParts);
}

}  // namespace tarvik
