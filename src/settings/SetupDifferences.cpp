#include "settings/SetupDifferences.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engrspin/EngrFormat.h"
#include "settings/PatternText.h"
#include "settings/SettingText.h"

namespace tarvik {

namespace {

/// Below this a difference is what a sum or a reciprocal leaves of rounding.
Double LastPlace(std::string_view strUnit) {
  if (strUnit == "s") return 1e-15;
  if (strUnit == "A") return 1e-12;
  return 1e-9;
}

bool Agree(const Setting &setting, Long lngChannel, const Setup &first, const Setup &second, Double dblTolerance) {
  if (setting.KeepsItsOwn(first, lngChannel) || setting.KeepsItsOwn(second, lngChannel)) return true;
  const SettingValue ofFirst = setting.Read(first, lngChannel), ofSecond = setting.Read(second, lngChannel);
  if (setting.eKind != SettingKind::Quantity) return ofFirst == ofSecond;
  return SameQuantity(std::get<Double>(ofFirst), std::get<Double>(ofSecond), setting.Unit(first, lngChannel),
                      dblTolerance);
}

/// Both values, quantities with as many digits as tell them apart.
std::pair<std::string, std::string> Texts(const Setting &setting, Long lngChannel, const Setup &first,
                                          const Setup &second, char chSeparator) {
  if (setting.eKind == SettingKind::Stream) {
    const auto ofFirst = std::get<PatternStream>(setting.Read(first, lngChannel));
    const auto ofSecond = std::get<PatternStream>(setting.Read(second, lngChannel));
    return {PatternSummary(ofFirst, &ofSecond), PatternSummary(ofSecond, &ofFirst)};
  }
  std::pair<std::string, std::string> texts;
  for (Long lngDigits = ShownDigits; lngDigits <= RoundedDigits; ++lngDigits) {
    texts = {ShownText(setting, first, lngChannel, lngDigits, chSeparator),
             ShownText(setting, second, lngChannel, lngDigits, chSeparator)};
    if (texts.first != texts.second) return texts;
  }
  return {EntryText(setting, first, lngChannel), EntryText(setting, second, lngChannel)};
}

}  // namespace

bool SameQuantity(Double dblFirst, Double dblSecond, std::string_view strUnit, Double dblTolerance) {
  if (dblFirst == dblSecond) return true;
  if (dblTolerance == 0) return false;
  const Double dblLarger = std::max(std::abs(dblFirst), std::abs(dblSecond));
  return std::abs(dblFirst - dblSecond) <= std::max(dblTolerance * dblLarger, LastPlace(strUnit));
}

std::optional<SetupDifference> DifferenceIn(const Setting &setting, Long lngChannel, const Setup &first,
                                            const Setup &second, Double dblTolerance, char chSeparator) {
  const bool fOfFirst = setting.IsHad(first, lngChannel), fOfSecond = setting.IsHad(second, lngChannel);
  if (fOfFirst && fOfSecond) {
    if (Agree(setting, lngChannel, first, second, dblTolerance)) return std::nullopt;
    auto [strFirst, strSecond] = Texts(setting, lngChannel, first, second, chSeparator);
    return SetupDifference{&setting, lngChannel, std::move(strFirst), std::move(strSecond)};
  }
  if (!fOfFirst && !fOfSecond) return std::nullopt;
  const auto text = [&](bool fHas, const Setup &setup) {
    return fHas ? ShownText(setting, setup, lngChannel, ShownDigits, chSeparator) : "";
  };
  return SetupDifference{&setting, lngChannel, text(fOfFirst, first), text(fOfSecond, second)};
}

std::vector<SetupDifference> Differences(const Setup &first, const Setup &second, Double dblTolerance) {
  std::vector<SetupDifference> arrDifferences;
  for (const Setting &setting : Settings()) {
    if (setting.fNotation) continue;
    for (const Long lngChannel : setting.Channels()) {
      const bool fOfFirst = setting.IsHad(first, lngChannel), fOfSecond = setting.IsHad(second, lngChannel);
      const Setup &guide = fOfFirst ? first : second;
      if (!setting.IsStored(guide, lngChannel)) continue;
      const bool fUsed =
          (fOfFirst && setting.IsInUse(first, lngChannel)) || (fOfSecond && setting.IsInUse(second, lngChannel));
      if (!fUsed) continue;
      if (auto difference = DifferenceIn(setting, lngChannel, first, second, dblTolerance))
        arrDifferences.push_back(std::move(*difference));
    }
  }
  return arrDifferences;
}

}  // namespace tarvik
