#pragma once

#include <QAbstractButton>
#include <QStyle>

namespace tarvik {

/// What a style calls the parts of a button with a circle or a box before its caption.
struct IndicatorParts {
  QStyle::PrimitiveElement eIndicator;
  QStyle::ControlElement eLabel;
  QStyle::PixelMetric eWidth, eHeight, eSpacing;
};
inline constexpr IndicatorParts RadioParts{QStyle::PE_IndicatorRadioButton, QStyle::CE_RadioButtonLabel,
                                           QStyle::PM_ExclusiveIndicatorWidth, QStyle::PM_ExclusiveIndicatorHeight,
                                           QStyle::PM_RadioButtonLabelSpacing};
inline constexpr IndicatorParts CheckParts{QStyle::PE_IndicatorCheckBox, QStyle::CE_CheckBoxLabel,
                                           QStyle::PM_IndicatorWidth, QStyle::PM_IndicatorHeight,
                                           QStyle::PM_CheckBoxLabelSpacing};

/// A style draws circle and box in one size, however large the caption is. A panel that is shown larger scales them
/// with its font; at the design font and below the style draws as ever.
bool IsIndicatorScaled(const QAbstractButton &button);
void PaintScaledIndicator(QAbstractButton &button, const QStyleOptionButton &option, const IndicatorParts &parts);
/// Whether a click there presses the button: on the indicator or the caption.
bool HitsScaledIndicator(const QAbstractButton &button, const QPoint &place, const IndicatorParts &parts);

}  // namespace tarvik
