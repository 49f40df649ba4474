#include "scpi/simulator/UnitSuffix.h"

namespace tarvik::scpisim {

namespace {

struct Multiplier {
  std::string_view strLetters;
  int intPower;
};

/// IEEE 488.2, 7.7.3.
constexpr Multiplier Multipliers[] = {
    {"EX", 18}, {"PE", 15}, {"T", 12}, {"G", 9},   {"MA", 6},  {"K", 3},   {"", 0},
    {"M", -3},  {"U", -6},  {"N", -9}, {"P", -12}, {"F", -15}, {"A", -18},
};

struct UnitName {
  std::string_view strName;
  Unit unit;
  int intM;  ///< what M stands for: IEEE 488.2, 7.7.3, has MHZ and MOHM as megahertz and megohm
};

constexpr UnitName UnitNames[] = {
    {"S", Unit::Second, -3}, {"HZ", Unit::Hertz, 6}, {"V", Unit::Volt, -3},
    {"A", Unit::Ampere, -3}, {"OHM", Unit::Ohm, 6},
};

int PowerOf(std::string_view strSuffix, const UnitName &unit) {
  if (strSuffix.ends_with(unit.strName)) {
    const std::string_view strLetters = strSuffix.substr(0, strSuffix.size() - unit.strName.size());
    if (strLetters == "M") return unit.intM;
    for (const Multiplier &multiplier : Multipliers)
      if (multiplier.strLetters == strLetters) return multiplier.intPower;
  }
  throw ScpiFault{ScpiInvalidSuffix, std::string(strSuffix)};
}

}  // namespace

int SuffixPower(std::string_view strSuffix, Unit unit) {
  if (unit == Unit::None) throw ScpiFault{ScpiSuffixNotAllowed, std::string(strSuffix)};
  if (unit == Unit::Percent && strSuffix == "PCT") return 0;  // percent take no multiplier
  for (const UnitName &name : UnitNames)
    if (name.unit == unit) return PowerOf(strSuffix, name);
  throw ScpiFault{ScpiInvalidSuffix, std::string(strSuffix)};
}

}  // namespace tarvik::scpisim
