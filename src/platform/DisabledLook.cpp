#include "platform/DisabledLook.h"

#include <algorithm>

namespace tarvik {

namespace {

constexpr QColor Grey(0xC0, 0xC0, 0xC0);

bool IsDarker(const QColor &one, const QColor &other) { return qGray(one.rgb()) < qGray(other.rgb()); }

}  // namespace

QColor DisabledText(const QColor &enabledText, const QColor &back) {
  const auto mix = [](int intText, int intBack) { return (2 * intText + intBack) / 3; };
  return {mix(enabledText.red(), back.red()), mix(enabledText.green(), back.green()),
          mix(enabledText.blue(), back.blue())};
}

DisabledLook DisabledLookOf(const QPalette &theme) {
  const QColor back = std::min(
      {Grey, theme.color(QPalette::Active, QPalette::Base), theme.color(QPalette::Active, QPalette::Button)}, IsDarker);
  return {back, DisabledText(theme.color(QPalette::Active, QPalette::Text), back)};
}

void SetDisabledLook(QPalette &colours) {
  const DisabledLook look = DisabledLookOf(colours);
  for (const auto role : {QPalette::Base, QPalette::Button}) colours.setColor(QPalette::Disabled, role, look.back);
  for (const auto role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
    colours.setColor(QPalette::Disabled, role, look.text);
}

}  // namespace tarvik
