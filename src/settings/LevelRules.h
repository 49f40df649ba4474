#pragma once

#include <array>
#include <optional>
#include <string>

#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik {

/// Base units of the level fields.
inline constexpr const char *Volts = "V", *Amperes = "A";

/// High and low level of a channel that a preset brought last, volts; zero before the first one. Neither typing nor a
/// download changes them.
struct LevelPreset {
  Double sdblHigh = 0;
  Double sdblLow = 0;
  bool operator==(const LevelPreset &) const = default;
};

/// One item of the list of level formats.
struct LevelFormat {
  const char *strItem;
  LevelFormatEnum eFormat;
  OutputLevel eOutputLevel;  ///< how the instrument is told the two levels; several formats share one
  Boolean fGroupDefault;     ///< chosen when the instrument tells this kind of levels
  const char *strHighCaption, *strLowCaption;
  std::optional<LevelPreset> preset;
};

/// In the order of the list.
extern const std::array<LevelFormat, 4> LevelFormats;

/// What the choice of a format writes to the two level fields of its channel.
struct LevelFields {
  const LevelFormat *format;  ///< whose captions they take; null where they keep theirs
  Double dblHighOrOffset;
  Double dblLowOrAmplitude;
  Boolean fLocked;  ///< the numbers of a preset cannot be edited
};

/// Takes up the preset where the item is one. The fields are always filled from the preset, never converted from what
/// stood in them. An index that is no format gives its high and low level, free for editing.
LevelFields ChooseLevelFormat(Long lngListIndex, LevelPreset &preset);

/// The base unit behind an item of the list of units; empty for an index that is none.
std::string LevelUnitOf(Long lngListIndex);

/// A level field as a conversion finds it.
struct LevelField {
  std::string strBaseUnit;
  std::string strAuxUnits;
  Double dblValue;
  Double dblAuxValue;  ///< the voltage that the field keeps while it shows a current
};

/// Resistance of the load, and its reciprocal as its own field tells it.
struct LevelLoad {
  Double dblOhm;
  Double dblSiemens;
};

/// What a conversion writes to a level field, in this order; what is empty stays.
struct LevelConversion {
  std::optional<std::string> strBaseUnit;
  std::optional<Double> dblAuxValue;
  std::optional<Double> dblValue;
  bool operator==(const LevelConversion &) const = default;
};

/// Shows a level in strUnits; an empty text stands for the unit that it is shown in. Leaving volts, the field keeps its
/// voltage, from which each current is worked out anew; back in volts, the current shown counts. A field that goes on
/// showing volts changes nothing.
LevelConversion ConvertLevel(const LevelField &field, const std::string &strUnits, const LevelLoad &load);

/// The voltage behind a level that the instrument told in this base unit, for later conversions; empty for volts, which
/// need none.
std::optional<Double> VoltageBehind(Double dblLevel, const std::string &strBaseUnit, Double dblLoadOhm);

}  // namespace tarvik
