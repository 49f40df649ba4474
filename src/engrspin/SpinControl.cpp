#include "engrspin/SpinControl.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <algorithm>
#include <utility>

namespace tarvik {

namespace {

/// Milliseconds before a held button repeats, and between its repeats.
constexpr int FirstDelay = 400;
constexpr int RepeatDelay = 60;

}  // namespace

SpinControl::SpinControl(std::function<void()> changed, std::function<void()> entered, QWidget *parent)
    : QWidget(parent), m_changed(std::move(changed)), m_entered(std::move(entered)) {
  setFocusPolicy(Qt::ClickFocus);
  connect(&m_repeat, &QTimer::timeout, this, [this] {
    m_repeat.setInterval(RepeatDelay);
    // A message box that a step opened grabs the mouse, so its release never arrives here.
    const QWidget *modal = QApplication::activeModalWidget();
    if (modal && modal != window()) StopHolding();
    if (m_fOnButton) Step();
  });
}

void SpinControl::SetValue(Long lngValue) {
  lngValue = std::clamp(lngValue, Minimum, Maximum);
  if (lngValue == m_lngValue) return;
  m_lngValue = lngValue;
  m_changed();
}

void SpinControl::SetLocked(bool fLocked) {
  if (fLocked == m_fLocked) return;
  m_fLocked = fLocked;
  StopHolding();
}

void SpinControl::Step() { SetValue(m_lngValue + m_intHeld); }

QRect SpinControl::ButtonRect(int intDirection) const {
  const int intHalf = height() / 2;
  return intDirection > 0 ? QRect(0, 0, width(), intHalf) : QRect(0, intHalf, width(), height() - intHalf);
}

void SpinControl::mousePressEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  if (m_fLocked) return;
  m_intHeld = ButtonRect(1).contains(event->position().toPoint()) ? 1 : -1;
  m_fOnButton = true;
  m_repeat.start(FirstDelay);
  update();
  Step();
}

void SpinControl::mouseMoveEvent(QMouseEvent *event) {
  if (m_intHeld == 0) return;
  m_fOnButton = ButtonRect(m_intHeld).contains(event->position().toPoint());
  update();
}

void SpinControl::mouseReleaseEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton) return;
  StopHolding();
  // The keyboard works on the digit cursor in the text box.
  if (m_focusHome && hasFocus() && m_focusHome->isEnabled()) m_focusHome->setFocus(Qt::OtherFocusReason);
}

void SpinControl::StopHolding() {
  m_repeat.stop();
  m_intHeld = 0;
  m_fOnButton = false;
  update();
}

void SpinControl::focusInEvent(QFocusEvent *event) {
  QWidget::focusInEvent(event);
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) m_entered();
}

void SpinControl::keyPressEvent(QKeyEvent *event) {
  // Keys belong to the text box, whichever part has the focus.
  if (!m_focusHome || !m_focusHome->isEnabled()) {
    event->ignore();
    return;
  }
  m_focusHome->setFocus(Qt::OtherFocusReason);
  QApplication::sendEvent(m_focusHome, event);
}

void SpinControl::wheelEvent(QWheelEvent *event) {
  if (m_focusHome && (hasFocus() || m_focusHome->hasFocus())) {
    QApplication::sendEvent(m_focusHome, event);
  } else {
    event->ignore();
  }
}

void SpinControl::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && !isEnabled()) StopHolding();
}

void SpinControl::hideEvent(QHideEvent *event) {
  QWidget::hideEvent(event);
  StopHolding();
}

void SpinControl::DrawButton(QPainter &painter, int intDirection) {
  QStyleOptionButton option;
  option.initFrom(this);
  option.rect = ButtonRect(intDirection);
  const bool fDown = m_intHeld == intDirection && m_fOnButton;
  option.state.setFlag(QStyle::State_Sunken, fDown);
  option.state.setFlag(QStyle::State_Raised, !fDown);
  option.state.setFlag(QStyle::State_HasFocus, false);
  style()->drawPrimitive(QStyle::PE_PanelButtonBevel, &option, &painter, this);

  const QRectF box(option.rect);
  const qreal half = std::max<qreal>(2.0, std::min(box.width() / 4, box.height() / 3));
  const QPointF tip = box.center() - QPointF(0, intDirection * half / 2);
  const qreal base = tip.y() + intDirection * half;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(
      palette().color(isEnabled() && !m_fLocked ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
  painter.drawPolygon(QPolygonF{{tip, {tip.x() + half, base}, {tip.x() - half, base}}});
}

void SpinControl::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  DrawButton(painter, 1);
  DrawButton(painter, -1);
}

}  // namespace tarvik
