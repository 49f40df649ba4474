#include "settings/ModeMask.h"

namespace tarvik {

Integer ModePosition(Long eTriggerMode, Long ePulseMode) {
  return static_cast<Integer>(eTriggerMode * 4 + ePulseMode + 1);
}

std::string GetModeMaskChar(std::string_view strMask, Integer intModePos) {
  const auto pos = static_cast<std::size_t>(intModePos);
  return intModePos >= 1 && pos <= strMask.size() ? std::string(1, strMask[pos - 1]) : std::string();
}

Boolean IsEnabledAt(std::string_view strMask, Integer intModePos) {
  return GetModeMaskChar(strMask, intModePos) != "D";
}

}  // namespace tarvik
