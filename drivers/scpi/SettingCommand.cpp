#include "scpi/SettingCommand.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "common/ScpiError.h"
#include "scpi/Answer.h"
#include "support/Conversions.h"

namespace tarvik::scpi {

namespace {

using driver::Settings;

std::string Filled(std::string_view strCommand, Long lngChannel) {
  return Replace(strCommand, "{channel}", std::to_string(lngChannel));
}

std::size_t UnitIndex(const ProfilePlace &place, const Settings &settings) {
  const bool fCurrent = place.pSetting->IsLevel() && settings.levels[place.lngChannel].lngType == eTypeCurrent;
  return static_cast<std::size_t>(fCurrent ? eTypeCurrent : eTypeVoltage);
}

const driver::PatternRow &PatternAt(const ProfilePlace &place, const Settings &settings) {
  return settings.arrPattern[static_cast<std::size_t>(place.pSetting->pRow->lngPatternRow - 1)];
}

/// The word for a value; null where the profile has none.
const ProfileWord *WordFor(const ProfileSetting &setting, Long lngValue) {
  const auto word = std::ranges::find(setting.arrWords, lngValue, &ProfileWord::lngValue);
  return word == setting.arrWords.end() ? nullptr : &*word;
}

std::string PatternText(const driver::PatternRow &row) {
  const std::vector<Byte> bytes = row.Read();
  return std::to_string(row.Length()) + "," + ToBlock({reinterpret_cast<const char *>(bytes.data()), bytes.size()});
}

/// The value as it goes over the line. There is one: WhyNotSent has been asked.
std::string ValueText(const ProfilePlace &place, const Settings &settings) {
  const ProfileSetting &setting = *place.pSetting;
  if (setting.pRow->lngPatternRow > 0) return PatternText(PatternAt(place, settings));
  const Double dblValue = place.Value(settings);
  if (!setting.arrWords.empty()) return ShortForm(WordFor(setting, static_cast<Long>(dblValue))->arrSpellings.front());
  if (setting.pRow->Like().eKind == SettingKind::Switch) return dblValue != 0 ? "ON" : "OFF";
  return driver::Quantity(dblValue / setting.dblUnit, "");
}

std::string TakePattern(const ProfilePlace &place, const std::string &strAnswer, Settings &settings) {
  const std::vector<std::string> arrParts = SplitAnswer(strAnswer, ',');
  const auto dblLength = arrParts.size() == 2 ? NumberOf(arrParts[0]) : std::nullopt;
  const auto strBytes = arrParts.size() == 2 ? BlockOf(arrParts[1]) : std::nullopt;
  if (!dblLength || !strBytes || *dblLength != std::floor(*dblLength)) return "is no number of bits and block";
  if (*dblLength < 1 || *dblLength > driver::PatternBits) return "has a length out of range";
  const auto lngLength = static_cast<Long>(*dblLength);
  if (strBytes->size() != static_cast<std::size_t>((lngLength + 7) / 8)) return "has too many or too few bytes";
  const std::vector<Byte> bytes(strBytes->begin(), strBytes->end());
  settings.arrPattern[static_cast<std::size_t>(place.pSetting->pRow->lngPatternRow - 1)].Write(bytes, lngLength);
  return {};
}

/// A word that is a switch may be answered as a number.
bool IsSwitch(const std::string &strAnswer, const std::string &strSpelling) {
  return (strSpelling == "ON" && strAnswer == "1") || (strSpelling == "OFF" && strAnswer == "0");
}

std::string TakeWord(const ProfilePlace &place, const std::string &strAnswer, Settings &settings) {
  const std::string strWord = Unquoted(strAnswer);
  for (const ProfileWord &word : place.pSetting->arrWords)
    for (const std::string &strSpelling : word.arrSpellings)
      if (IsWord(strWord, strSpelling) || IsSwitch(strWord, strSpelling)) {
        place.pSetting->pRow->Write(settings, place.lngChannel, static_cast<Double>(word.lngValue));
        return {};
      }
  return "is no word of the profile";
}

/// ON and OFF for those who do not answer 1 and 0.
std::optional<Double> SwitchOf(const std::string &strAnswer) {
  if (IsWord(strAnswer, "ON")) return 1;
  if (IsWord(strAnswer, "OFF")) return 0;
  const auto dblValue = NumberOf(strAnswer);
  return dblValue == 0 || dblValue == 1 ? dblValue : std::nullopt;
}

std::string TakeNumber(const ProfilePlace &place, const std::string &strAnswer, Settings &settings) {
  const SettingKind eKind = place.pSetting->pRow->Like().eKind;
  if (eKind == SettingKind::Switch) {
    const auto dblSwitch = SwitchOf(strAnswer);
    if (!dblSwitch) return "is no switch";
    place.pSetting->pRow->Write(settings, place.lngChannel, *dblSwitch);
    return {};
  }
  const auto dblValue = NumberOf(strAnswer);
  if (!dblValue) return "is no number";
  if (eKind == SettingKind::Count && (*dblValue != std::floor(*dblValue) || std::abs(*dblValue) > 1e9))
    return "is no whole number";
  place.pSetting->pRow->Write(settings, place.lngChannel, *dblValue * place.pSetting->dblUnit);
  return {};
}

// ---- Order ----

/// How much room a value leaves to other settings, as a number to compare with others of the same setting.
Double RoomOf(const ProfileOrder &order, Double dblValue) {
  switch (order.eRoom) {
    case ProfileOrder::Room::Up: return dblValue;
    case ProfileOrder::Room::Down: return -dblValue;
    case ProfileOrder::Room::Words: break;
  }
  const auto word = std::ranges::find(order.arrWords, static_cast<Long>(dblValue));
  return static_cast<Double>(word - order.arrWords.begin());
}

/// Where a step stands: what gives room goes from the outermost stage inwards, what takes it from the innermost
/// outwards.
struct Turn {
  enum Phase { Gives, Neutral, Takes } ePhase = Neutral;
  std::size_t stage = 0;

  auto operator<=>(const Turn &) const = default;
};

Turn TurnOf(const ProfilePlace &place, const Settings &from, const Settings &to) {
  const auto &order = place.pSetting->order;
  if (!order) return {};
  const Double dblBefore = RoomOf(*order, place.Value(from)), dblAfter = RoomOf(*order, place.Value(to));
  if (dblAfter == dblBefore) return {};
  const auto Innermost = std::numeric_limits<std::size_t>::max();
  return dblAfter > dblBefore ? Turn{Turn::Gives, order->stage} : Turn{Turn::Takes, Innermost - order->stage};
}

bool Differs(const ProfilePlace &place, const Settings &from, const Settings &to) {
  if (place.pSetting->pRow->lngPatternRow > 0) return PatternAt(place, from) != PatternAt(place, to);
  return place.Value(from) != place.Value(to);
}

bool UnitChanges(const ProfilePlace &place, const Settings &from, const Settings &to) {
  return from.levels[place.lngChannel].lngType != to.levels[place.lngChannel].lngType;
}

/// A trailing edge that was coupled has told the leading edge's value; what it is by itself is not known.
bool MustBeTold(const ProfilePlace &place, const Settings &from, const Settings &to) {
  return place.pSetting->pRow->strKey == "timing.trailing" && from.timing[place.lngChannel].fCoupled &&
         !to.timing[place.lngChannel].fCoupled;
}

struct Step {
  Turn turn;
  std::vector<ProfilePlace> arrPlaces;
};

std::vector<std::vector<ProfilePlace>> OrderedSteps(const Profile &profile, const Settings &from, const Settings &to) {
  std::vector<Step> arrSteps;
  for (const ProfilePlace &place : PlacesOf(profile)) {
    if (!place.pSetting->IsSet()) continue;
    if (place.pSetting->IsLevel() && UnitChanges(place, from, to)) {
      // The numbers of the other unit mean nothing; the row of the unit stands before those of the levels.
      const auto unit = std::ranges::find_if(arrSteps, [&](const Step &step) {
        return step.arrPlaces.front().pSetting->pRow->strKey == "levels.unit" &&
               step.arrPlaces.front().lngChannel == place.lngChannel;
      });
      if (unit != arrSteps.end()) unit->arrPlaces.push_back(place);
    } else if (Differs(place, from, to) || MustBeTold(place, from, to)) {
      arrSteps.push_back({TurnOf(place, from, to), {place}});
    }
  }
  std::ranges::stable_sort(arrSteps, {}, &Step::turn);
  std::vector<std::vector<ProfilePlace>> arrPlaces;
  for (Step &step : arrSteps) arrPlaces.push_back(std::move(step.arrPlaces));
  return arrPlaces;
}

bool Changes(const SettingRow &row, const Profile &profile, const Settings &from, const Settings &to) {
  return std::ranges::any_of(PlacesOf(profile), [&](const ProfilePlace &place) {
    return place.pSetting->pRow == &row && Differs(place, from, to);
  });
}

/// Whether the value that the setting has at both ends stands in the way of others that change.
bool MustStandAside(const ProfilePlace &place, const Profile &profile, const Settings &from, const Settings &to) {
  const auto &order = place.pSetting->order;
  if (!order || !order->lngAside) return false;
  const Double dblRoom = RoomOf(*order, static_cast<Double>(*order->lngAside));
  if (RoomOf(*order, place.Value(from)) >= dblRoom || RoomOf(*order, place.Value(to)) >= dblRoom) return false;
  return std::ranges::any_of(order->arrWhile,
                             [&](const SettingRow *pRow) { return Changes(*pRow, profile, from, to); });
}

}  // namespace

Double ProfilePlace::Value(const Settings &settings) const {
  return lngAside ? static_cast<Double>(*lngAside) : pSetting->pRow->Read(settings, lngChannel);
}

std::string ProfilePlace::Key() const {
  const std::string strKey(pSetting->pRow->strKey);
  return lngChannel == 0 ? strKey : strKey + "[" + std::to_string(lngChannel) + "]";
}

std::string ProfilePlace::Caption() const { return pSetting->pRow->Like().Caption(lngChannel); }

std::string ProfilePlace::SetCommand(const Settings &settings) const {
  return Filled(pSetting->arrSet[UnitIndex(*this, settings)], lngChannel);
}

std::string ProfilePlace::Query(const Settings &settings) const {
  return Filled(pSetting->arrQuery[UnitIndex(*this, settings)], lngChannel);
}

std::vector<ProfilePlace> PlacesOf(const Profile &profile) {
  std::vector<ProfilePlace> arrPlaces;
  for (const ProfileSetting &setting : profile.arrSettings) {
    const Long lngRow = setting.pRow->lngPatternRow;
    if (lngRow == ePatternChan2 && profile.lngChannels < 2) continue;
    if (!setting.pRow->Like().fPerChannel) {
      arrPlaces.push_back({&setting, 0});
      continue;
    }
    for (Long lngChannel = 1; lngChannel <= profile.lngChannels; ++lngChannel)
      arrPlaces.push_back({&setting, lngChannel});
  }
  return arrPlaces;
}

std::string WhyNotSent(const ProfilePlace &place, const Settings &settings) {
  const ProfileSetting &setting = *place.pSetting;
  if (setting.pRow->lngPatternRow > 0) return {};
  const Double dblValue = place.Value(settings);
  if (!setting.arrWords.empty())
    return WordFor(setting, static_cast<Long>(dblValue))
               ? ""
               : "the profile has no word for the value " + driver::Quantity(dblValue, "");
  const std::string strUnit(setting.pRow->Like().strUnit);
  if (!std::isfinite(dblValue)) return "no finite number";
  if (setting.dblMin && dblValue < *setting.dblMin)
    return driver::Quantity(dblValue, strUnit.c_str()) + ", at least " +
           driver::Quantity(*setting.dblMin, strUnit.c_str());
  if (setting.dblMax && dblValue > *setting.dblMax)
    return driver::Quantity(dblValue, strUnit.c_str()) + ", at most " +
           driver::Quantity(*setting.dblMax, strUnit.c_str());
  return {};
}

std::string TakeAnswer(const ProfilePlace &place, const std::string &strAnswer, Settings &settings) {
  if (place.pSetting->pRow->lngPatternRow > 0) return TakePattern(place, strAnswer, settings);
  if (!place.pSetting->arrWords.empty()) return TakeWord(place, strAnswer, settings);
  return TakeNumber(place, strAnswer, settings);
}

std::vector<std::vector<ProfilePlace>> StepsBetween(const Profile &profile, const Settings &from, const Settings &to) {
  Settings start = from;
  std::vector<std::vector<ProfilePlace>> arrAll;
  for (const ProfilePlace &place : PlacesOf(profile))
    if (MustStandAside(place, profile, from, to)) {
      arrAll.push_back({{place.pSetting, place.lngChannel, place.pSetting->order->lngAside}});
      place.pSetting->pRow->Write(start, place.lngChannel, arrAll.back().front().Value(start));
    }
  for (auto &arrPlaces : OrderedSteps(profile, start, to)) arrAll.push_back(std::move(arrPlaces));
  return arrAll;
}

std::string CommandsOf(const std::vector<ProfilePlace> &arrPlaces, const Settings &settings) {
  std::string strCommands;
  for (const ProfilePlace &place : arrPlaces) {
    if (!strCommands.empty()) strCommands += ';';
    strCommands += Replace(place.SetCommand(settings), "{value}", ValueText(place, settings));
  }
  return strCommands;
}

}  // namespace tarvik::scpi
