#include "platform/ScaledIndicator.h"

#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include "platform/Twips.h"

namespace tarvik {

namespace {

constexpr double TwipsPerDesignPixel = 15;

double ScaleOf(const QAbstractButton &button) { return TwipsPerDesignPixel * PixelsPerTwip(button.font()); }

struct Places {
  QRect indicator;
  QRect label;  ///< the room for the caption
  QRect text;   ///< what the caption takes of it
};

Places PlacesOf(const QAbstractButton &button, const IndicatorParts &parts) {
  const QStyle &style = *button.style();
  const auto scaled = [&](QStyle::PixelMetric eMetric) {
    return qRound(ScaleOf(button) * style.pixelMetric(eMetric, nullptr, &button));
  };
  const int intWidth = scaled(parts.eWidth), intHeight = scaled(parts.eHeight), intSpacing = scaled(parts.eSpacing);
  const QRect whole = button.rect();
  const auto placed = [&](const QRect &rect) { return QStyle::visualRect(button.layoutDirection(), whole, rect); };
  const QRect label = whole.adjusted(intWidth + intSpacing, 0, 0, 0);
  const QRect text =
      style.itemTextRect(button.fontMetrics(), label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic,
                         button.isEnabled(), button.text());
  return {placed({0, (whole.height() - intHeight) / 2, intWidth, intHeight}), placed(label), placed(text)};
}

}  // namespace

bool IsIndicatorScaled(const QAbstractButton &button) { return ScaleOf(button) > 1; }

void PaintScaledIndicator(QAbstractButton &button, const QStyleOptionButton &option, const IndicatorParts &parts) {
  const Places places = PlacesOf(button, parts);
  QStylePainter painter(&button);
  QStyleOptionButton part = option;
  part.rect = places.indicator;
  painter.drawPrimitive(parts.eIndicator, part);
  part.rect = places.label;
  painter.drawControl(parts.eLabel, part);
  if (!(option.state & QStyle::State_HasFocus)) return;
  QStyleOptionFocusRect focus;
  focus.QStyleOption::operator=(option);
  focus.rect = places.text.adjusted(-2, -1, 2, 1) & button.rect();
  painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

bool HitsScaledIndicator(const QAbstractButton &button, const QPoint &place, const IndicatorParts &parts) {
  const Places places = PlacesOf(button, parts);
  return (places.indicator | places.text).contains(place);
}

}  // namespace tarvik
