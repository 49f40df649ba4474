#include "bitpattern/WavePicture.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "bitpattern/PictureAccessible.h"
#include "platform/Accessibility.h"
#include "platform/ControlEvent.h"
#include "platform/KeyCodes.h"

namespace tarvik {

namespace {

/// The character of a key, 0 for none. Chords that start commands make none.
char32_t CharacterOf(const QKeyEvent &event) {
  if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return 0;
  const auto arrCharacters = event.text().toUcs4();
  return arrCharacters.size() == 1 ? static_cast<char32_t>(arrCharacters.front()) : 0;
}

Integer ButtonNumber(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton: return 1;
    case Qt::RightButton: return 2;
    case Qt::MiddleButton: return 4;
    default: return 0;
  }
}

}  // namespace

WavePicture::WavePicture(QWidget *parent) : PictureBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  OfferAccessible<WavePicture, PictureAccessible>();
}

void WavePicture::TellPlace() {
  if (!QAccessible::isActive()) return;
  TellNameChanged(*this);
  QAccessibleValueChangeEvent event(this, Place ? QVariant(Place().lngAddress) : QVariant());
  QAccessible::updateAccessibility(&event);
}

void WavePicture::keyPressEvent(QKeyEvent *event) {
  const Integer intKeyCode = KeyCodeOf(*event);
  Integer intCodeAfter = intKeyCode;
  RunUserEvent(*this, "KeyDown", [&] { KeyDown.Raise(intCodeAfter); });
  const bool fUsed = intKeyCode != 0 && intCodeAfter == 0;
  const char32_t character = CharacterOf(*event);
  if (!fUsed && character != 0) RunUserEvent(*this, "KeyPress", [&] { KeyPress.Raise(character); });
  // Tab, Enter and Escape go to the form.
  event->setAccepted(fUsed || character > U' ');
}

void WavePicture::mousePressEvent(QMouseEvent *event) {
  const QRectF area = contentsRect();
  if (area.isEmpty()) return;
  const QPointF place = event->position() - area.topLeft();
  const auto sngX = static_cast<Single>(place.x() / area.width()) * ScaleWidth();
  const auto sngY = static_cast<Single>(place.y() / area.height()) * ScaleHeight();
  RunUserEvent(*this, "MouseDown", [&] { MouseDown.Raise(ButtonNumber(event->button()), sngX, sngY); });
}

void WavePicture::focusInEvent(QFocusEvent *event) {
  PictureBox::focusInEvent(event);
  update();
}

void WavePicture::focusOutEvent(QFocusEvent *event) {
  PictureBox::focusOutEvent(event);
  update();
}

void WavePicture::paintEvent(QPaintEvent *event) {
  PictureBox::paintEvent(event);
  if (!hasFocus()) return;
  constexpr int RingWidth = 2, Lighter = 160;
  QPainter painter(this);
  painter.setPen(QPen(palette().color(QPalette::Highlight).lighter(Lighter), RingWidth));
  painter.drawRect(rect().adjusted(RingWidth / 2, RingWidth / 2, -RingWidth / 2, -RingWidth / 2));
}

}  // namespace tarvik
