#include "settings/LevelRules.h"

namespace tarvik {

const std::array<LevelFormat, 4> LevelFormats{{
    {"Set TTL", eFormatTTL, eLevelHighLow, False, "TTL-High", "TTL-Low", LevelPreset{2.5, 0}},
    {"High-Low", eFormatHighLow, eLevelHighLow, True, "High", "Low", {}},
    {"Offset-Amplitude", eFormatOffsetAmpl, eLevelOffsetAmplitude, True, "Offset", "Amplitude", {}},
    {"Set ECL", eFormatECL, eLevelHighLow, False, "ECL-High", "ECL-Low", LevelPreset{-0.85, -1.8}},
}};

LevelFields ChooseLevelFormat(Long lngListIndex, LevelPreset &preset) {
  const bool fIsFormat = lngListIndex >= 0 && lngListIndex < static_cast<Long>(LevelFormats.size());
  const LevelFormat *format = fIsFormat ? &LevelFormats[static_cast<std::size_t>(lngListIndex)] : nullptr;
  if (format && format->preset) preset = *format->preset;
  if (format && format->eFormat == eFormatOffsetAmpl)
    return {format, (preset.sdblHigh + preset.sdblLow) / 2, preset.sdblHigh - preset.sdblLow, False};
  return {format, preset.sdblHigh, preset.sdblLow, format && format->preset};
}

std::string LevelUnitOf(Long lngListIndex) { return lngListIndex == 0 ? Volts : lngListIndex == 1 ? Amperes : ""; }

LevelConversion ConvertLevel(const LevelField &field, const std::string &strUnits, const LevelLoad &load) {
  LevelConversion conversion;
  const std::string &strUnit = strUnits.empty() ? field.strBaseUnit : strUnits;
  if (strUnit != field.strBaseUnit) {
    conversion.strBaseUnit = strUnit;
    if (field.strAuxUnits != strUnit)
      conversion.dblAuxValue = field.dblValue;
    else
      conversion.dblValue = load.dblOhm * field.dblValue;
  }
  if (strUnit == Amperes) conversion.dblValue = conversion.dblAuxValue.value_or(field.dblAuxValue) * load.dblSiemens;
  return conversion;
}

std::optional<Double> VoltageBehind(Double dblLevel, const std::string &strBaseUnit, Double dblLoadOhm) {
  if (strBaseUnit != Amperes) return std::nullopt;
  return dblLevel * dblLoadOhm;
}

}  // namespace tarvik
