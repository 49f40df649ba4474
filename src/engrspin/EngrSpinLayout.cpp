// Where the parts of a field stand, and what room the field asks for.
#include <QEvent>
#include <QResizeEvent>
#include <algorithm>
#include <cmath>

#include "engrspin/EngrSpin.h"
#include "engrspin/SpinControl.h"
#include "platform/FieldLabel.h"
#include "platform/Twips.h"
#include "platform/WidgetControl.h"

namespace tarvik {

namespace {

/// Further than any form reaches; keeps the arithmetic of pixels in range.
constexpr Single FarAway = 1e6F;

}  // namespace

void EngrSpin::Resize(Single sngWidth, Single sngHeight) {
  if (!std::isfinite(sngWidth) || !std::isfinite(sngHeight)) return;
  m_layout.sngWidth = sngWidth;
  m_layout.sngHeight = sngHeight;
  Layout();
}

void EngrSpin::Move(Single sngLeft, Single sngTop, Single sngWidth, Single sngHeight) {
  Resize(sngWidth, sngHeight);
  const TwipsRect place{sngLeft, sngTop, m_layout.sngWidth, m_layout.sngHeight};
  const QWidget &container = parentWidget() ? *parentWidget() : *this;
  m_fInResize = True;
  setGeometry(TwipsToPixels(container, place));
  m_fInResize = False;
  PlaceParts(m_layout);
}

void EngrSpin::Layout() {
  if (m_fInResize) return;
  m_fInResize = True;
  // A layout of the toolkit gives the field its room, and nobody drags it there: its parts stand at the left within
  // their bounds, and the room that is left over stays empty.
  const bool fInLayout = StandsInLayout(*this);
  m_layout.Arrange(!m_site.UserMode() && !fInLayout);
  if (!fInLayout) resize(TwipsToPixels(*this, m_layout.sngWidth), TwipsToPixels(*this, m_layout.sngHeight));
  m_fInResize = False;
  PlaceParts(m_layout);
}

void EngrSpin::PlaceParts(const FieldLayout &layout) {
  const auto put = [this](QWidget *part, const FieldPart &where) {
    if (!where.fMoved) return;
    const FieldPlace &p = where.place;
    const auto held = [](Single sngTwips) { return std::clamp(sngTwips, -FarAway, FarAway); };
    part->setGeometry(
        TwipsToPixels(*this, TwipsRect{held(p.sngLeft), held(p.sngTop), held(p.sngWidth), held(p.sngHeight)}));
  };
  put(lblCaption, layout.lblCaption);
  put(txtNumber, layout.txtNumber);
  put(spinCtl, layout.spinCtl);
  put(lblUnits, layout.lblUnits);
  // Labels begin lower than the text box; the margin below brings their text to the same line.
  for (FieldLabel *label : {lblCaption, lblUnits})
    label->setContentsMargins(0, 0, 0, TwipsToPixels(*this, layout.lblCaption.place.sngTop));
}

void EngrSpin::NotePart(bool fAppears) {
  updateGeometry();
  if (!fAppears || !IsLaidOut() || m_fLoading) return;
  // While the field runs, its layout waits for the next resize, TextBoxWidth with it. On the screen what has just
  // appeared may not cover the number until then.
  FieldLayout shown = m_layout;
  shown.Arrange(false);
  PlaceParts(shown);
}

void EngrSpin::TakeSizeOfForm() { Resize(PixelsToTwips(*this, width()), PixelsToTwips(*this, height())); }

void EngrSpin::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  if (m_fInResize) return;
  // Taken back from pixels the size would differ a little from the one that a program gave in twips.
  const QSize known(TwipsToPixels(*this, m_layout.sngWidth), TwipsToPixels(*this, m_layout.sngHeight));
  if (event->size() != known)
    TakeSizeOfForm();
  else if (!IsLaidOut())
    Layout();
}

void EngrSpin::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && OwnEnabled(*this) != m_fEnabled)
    m_form.Write("Enabled", QVariant(static_cast<bool>(OwnEnabled(*this))));
  // The colours that the text box sets for itself would hide the change from it.
  if (event->type() == QEvent::PaletteChange) txtNumber->UpdateColours();
  if (event->type() != QEvent::FontChange || !IsLaidOut()) return;
  if (StandsInLayout(*this))
    TakeSizeOfForm();
  else
    Layout();
}

Single EngrSpin::RoomForDigits() const {
  const auto lngCharacters = SignificantDigits() + 2;  // with sign and separator
  return PixelsToTwips(*this, txtNumber->WidthFor(QString(lngCharacters, QLatin1Char('0'))));
}

QSize EngrSpin::sizeHint() const {
  const Single sngWidth = m_layout.WidthAround(std::max(FieldLayout::UsualTextBox, RoomForDigits()));
  return {TwipsToPixels(*this, sngWidth), TwipsToPixels(*this, FieldLayout::UsualHeight)};
}

QSize EngrSpin::minimumSizeHint() const {
  return {TwipsToPixels(*this, m_layout.WidthAround(RoomForDigits())), TwipsToPixels(*this, FieldLayout::MinHeight)};
}

}  // namespace tarvik
