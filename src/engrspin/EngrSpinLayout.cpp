// Where the parts of a field stand, and what room the field asks for.
#include <QEvent>
#include <QResizeEvent>
#include <algorithm>
#include <cmath>

#include "engrspin/EngrSpinPrivate.h"
#include "engrspin/SpinControl.h"
#include "platform/FieldLabel.h"
#include "platform/Twips.h"
#include "platform/WidgetControl.h"

namespace tarvik {

namespace {

/// Larger than any form; keeps the conversion to pixels in the range of int.
constexpr Single FarAway = 1e6F;

}  // namespace

void EngrSpin::Resize(Single sngWidth, Single sngHeight) {
  if (!std::isfinite(sngWidth) || !std::isfinite(sngHeight)) return;
  m->layout.sngWidth = sngWidth;
  m->layout.sngHeight = sngHeight;
  m->Layout();
}

void EngrSpin::Move(Single sngLeft, Single sngTop, Single sngWidth, Single sngHeight) {
  Resize(sngWidth, sngHeight);
  const TwipsRect place{sngLeft, sngTop, m->layout.sngWidth, m->layout.sngHeight};
  const QWidget &container = parentWidget() ? *parentWidget() : *this;
  m->fInResize = True;
  setGeometry(TwipsToPixels(container, place));
  m->fInResize = False;
  m->PlaceParts(m->layout);
}

void EngrSpin::Private::Layout() {
  if (fInResize) return;
  fInResize = True;
  // A QLayout decides the size: the parts keep to the left within their bounds, and excess width stays empty.
  const bool fInLayout = StandsInLayout(field);
  layout.Arrange(!site.UserMode() && !fInLayout);
  if (!fInLayout) field.resize(TwipsToPixels(field, layout.sngWidth), TwipsToPixels(field, layout.sngHeight));
  fInResize = False;
  PlaceParts(layout);
}

void EngrSpin::Private::PlaceParts(const FieldLayout &places) {
  const auto put = [this](QWidget *part, const FieldPart &where) {
    if (!where.fMoved) return;
    const FieldPlace &p = where.place;
    const auto held = [](Single sngTwips) { return std::clamp(sngTwips, -FarAway, FarAway); };
    part->setGeometry(
        TwipsToPixels(field, TwipsRect{held(p.sngLeft), held(p.sngTop), held(p.sngWidth), held(p.sngHeight)}));
  };
  put(lblCaption, places.lblCaption);
  put(txtNumber, places.txtNumber);
  put(spinCtl, places.spinCtl);
  put(lblUnits, places.lblUnits);
  // Labels start lower than the text box; the bottom margin aligns their text with its line.
  for (FieldLabel *label : {lblCaption, lblUnits})
    label->setContentsMargins(0, 0, 0, TwipsToPixels(field, places.lblCaption.place.sngTop));
}

void EngrSpin::Private::NotePart(bool fAppears) {
  field.updateGeometry();
  if (!fAppears || !IsLaidOut() || fLoading) return;
  // At run time the layout and TextBoxWidth change with the next resize only. Until then the new part must not cover
  // the number on the screen.
  FieldLayout shown = layout;
  shown.Arrange(false);
  PlaceParts(shown);
}

void EngrSpin::Private::TakeSizeOfForm() {
  field.Resize(PixelsToTwips(field, field.width()), PixelsToTwips(field, field.height()));
}

void EngrSpin::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  if (m->fInResize) return;
  // Converting pixels back to twips would lose the exact size that the program set.
  const QSize known(TwipsToPixels(*this, m->layout.sngWidth), TwipsToPixels(*this, m->layout.sngHeight));
  if (event->size() != known)
    m->TakeSizeOfForm();
  else if (!m->IsLaidOut())
    m->Layout();
}

void EngrSpin::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && OwnEnabled(*this) != m->fEnabled)
    SetPropertyValue("Enabled", QVariant(static_cast<bool>(OwnEnabled(*this))));
  // The text box has a palette of its own, so it does not inherit the change.
  if (event->type() == QEvent::PaletteChange) m->txtNumber->UpdateColours();
  if (event->type() != QEvent::FontChange || !m->IsLaidOut()) return;
  if (StandsInLayout(*this))
    m->TakeSizeOfForm();
  else
    m->Layout();
}

Single EngrSpin::Private::RoomForDigits() const {
  const auto lngCharacters = field.SignificantDigits() + 2;  // with sign and separator
  return PixelsToTwips(field, txtNumber->WidthFor(QString(lngCharacters, QLatin1Char('0'))));
}

QSize EngrSpin::sizeHint() const {
  const Single sngWidth = m->layout.WidthAround(std::max(FieldLayout::UsualTextBox, m->RoomForDigits()));
  return {TwipsToPixels(*this, sngWidth), TwipsToPixels(*this, FieldLayout::UsualHeight)};
}

QSize EngrSpin::minimumSizeHint() const {
  return {TwipsToPixels(*this, m->layout.WidthAround(m->RoomForDigits())),
          TwipsToPixels(*this, FieldLayout::MinHeight)};
}

}  // namespace tarvik
