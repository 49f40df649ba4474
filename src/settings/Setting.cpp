#include "settings/Setting.h"

#include <algorithm>
#include <array>

namespace tarvik {

namespace {

constexpr std::array<Long, 2> BothChannels{1, 2};
constexpr std::array<Long, 1> NoChannel{0};

}  // namespace

bool Setting::IsHad(const Setup &setup, Long lngChannel) const {
  if ((setup.lngLacks & eLack) != 0) return false;
  const Long lngNeeded = fPerChannel ? lngChannel : fOfPattern2 ? 2 : 1;
  return lngNeeded <= setup.Instrument.lngNumChannels;
}

bool Setting::KeepsItsOwn(const Setup &setup, Long lngChannel) const {
  return eKind == SettingKind::Choice && WordOf(std::get<Long>(Read(setup, lngChannel))) == "Keep";
}

std::string_view Setting::Unit(const Setup &setup, Long lngChannel) const {
  if (!fLevelUnit) return strUnit;
  return setup.Levels.eOutputType[lngChannel] == eTypeCurrent ? "A" : "V";
}

std::string_view Setting::WordOf(Long lngValue) const {
  const auto word = std::ranges::find(arrWords, lngValue, &SettingWord::lngValue);
  return word == arrWords.end() ? std::string_view() : word->strWord;
}

std::string Setting::Key(Long lngChannel) const {
  std::string strText(strKey);
  if (fPerChannel) strText += "[" + std::to_string(lngChannel) + "]";
  return strText;
}

std::string Setting::Caption(Long lngChannel) const {
  std::string strText(strCaption);
  if (fPerChannel) strText += ", channel " + std::to_string(lngChannel);
  return strText;
}

std::span<const Long> Setting::Channels() const {
  if (fPerChannel) return BothChannels;
  return NoChannel;
}

std::optional<SettingPlace> FindSetting(std::string_view strKey) {
  for (const Setting &setting : Settings()) {
    if (!strKey.starts_with(setting.strKey)) continue;
    const std::string_view strRest = strKey.substr(setting.strKey.size());
    if (!setting.fPerChannel && strRest.empty()) return SettingPlace{&setting, 0};
    if (setting.fPerChannel && strRest == "[1]") return SettingPlace{&setting, 1};
    if (setting.fPerChannel && strRest == "[2]") return SettingPlace{&setting, 2};
  }
  return std::nullopt;
}

void WriteAsMeant(const SettingPlace &place, Setup &setup, const SettingValue &value) {
  const auto &[setting, lngChannel] = place;
  std::vector<std::pair<const Setting *, SettingValue>> arrKept;
  if (setting->fNotation)
    for (const Setting &written : Settings())
      if (written.Stored && written.ePage == setting->ePage && written.fPerChannel == setting->fPerChannel &&
          written.IsStored(setup, lngChannel))
        arrKept.emplace_back(&written, written.Read(setup, lngChannel));
  setting->Write(setup, lngChannel, value);
  for (const auto &[kept, meant] : arrKept) kept->Write(setup, lngChannel, meant);
}

Setup Canonical(const Setup &setup) {
  Setup canonical;
  canonical.Instrument = setup.Instrument;
  canonical.lngLacks = setup.lngLacks;
  // The rows that tell how others are kept come first in the table.
  ForEachStored(setup, [&](const Setting &setting, Long lngChannel) {
    setting.Write(canonical, lngChannel, setting.Read(setup, lngChannel));
  });
  return canonical;
}

}  // namespace tarvik
