#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace tarvik::test {

/// Relative luminance of a colour, 0 to 1, as the Web Content Accessibility Guidelines 2.1 define it
/// (https://www.w3.org/TR/WCAG21/#dfn-relative-luminance).
inline double Luminance(const QColor &colour) {
  const auto linear = [](double dblPart) {
    return dblPart <= 0.03928 ? dblPart / 12.92 : std::pow((dblPart + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// Contrast ratio of two colours, 1 to 21 (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio).
inline double Contrast(const QColor &one, const QColor &other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

/// From here on the guidelines (success criterion 1.4.3) take text of usual size as readable. They ask it of enabled
/// controls only; ours hold it for disabled ones, too, because those go on showing values.
inline constexpr double Readable = 4.5;

}  // namespace tarvik::test
