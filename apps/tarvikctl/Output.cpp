#include "Output.h"

#include <cmath>
#include <utility>

#include "settings/JsonTree.h"
#include "settings/SettingText.h"
#include "settings/SetupFile.h"
#include "settings/SetupFormat.h"

namespace tarvik {

namespace {

using Members = std::vector<std::pair<std::string, std::string>>;

constexpr const char *PageNames[eNumPages] = {"Instr",  "Mode",    "Timing", "Levels", "Pattern",
                                              "Limits", "Trg-Lev", "Config", "Options"};

std::string JsonObject(const Members &members) {
  std::string strText;
  for (const auto &[strKey, strValue] : members)
    strText += (strText.empty() ? "" : ", ") + JsonText(strKey) + ": " + strValue;
  return "{" + strText + "}";
}

/// One element a line.
std::string JsonLines(const std::vector<std::string> &arrElements, char chOpen, char chClose) {
  std::string strText(1, chOpen);
  for (std::size_t i = 0; i < arrElements.size(); ++i) strText += (i == 0 ? "\n  " : ",\n  ") + arrElements[i];
  return strText + (arrElements.empty() ? "" : "\n") + chClose + "\n";
}

std::string JsonWhole(Long lngValue) { return std::to_string(lngValue); }

std::string InstrumentLine(const ListedInstrument &instrument) {
  const std::string strAddress = "address " + std::to_string(instrument.info.LogicalAddress());
  return instrument.strName + "\t" +
         (instrument.info.HasSlot() ? "slot " + std::to_string(instrument.info.Slot()) + ", " : std::string()) +
         strAddress;
}

std::string InstrumentJson(const ListedInstrument &instrument) {
  Members members{{"name", JsonText(instrument.strName)}, {"address", JsonWhole(instrument.info.LogicalAddress())}};
  if (instrument.info.HasSlot()) {
    members.emplace_back("slot", JsonWhole(instrument.info.Slot()));
    members.emplace_back("model", JsonWhole(static_cast<std::uint16_t>(instrument.info.ModelCode())));
  }
  return JsonObject(members);
}

std::vector<std::string> LackWords(const Setup &identity) {
  std::vector<std::string> arrWords;
  for (const SettingWord &lack : SetupLackWords)
    if ((identity.lngLacks & lack.lngValue) != 0) arrWords.emplace_back(lack.strWord);
  return arrWords;
}

std::string Joined(const std::vector<std::string> &arrTexts) {
  std::string strAll;
  for (const std::string &strText : arrTexts) strAll += (strAll.empty() ? "" : ", ") + strText;
  return strAll;
}

/// What values a setting can have, for people.
std::string Values(const Setting &setting) {
  switch (setting.eKind) {
    case SettingKind::Switch: return "On or Off";
    case SettingKind::Choice: return WordsOf(setting);
    case SettingKind::Stream: return "bits of a pattern";
    case SettingKind::Count:
    case SettingKind::Quantity: {
      const std::string_view strUnit = setting.fLevelUnit ? "" : setting.strUnit;
      return ExactText(setting.dblMin, strUnit) + " to " + ExactText(setting.dblMax, strUnit);
    }
  }
  return {};
}

std::string KeyJson(const Setting &setting, Long lngChannel) {
  Members members{{"key", JsonText(setting.Key(lngChannel))},
                  {"page", JsonText(PageNames[setting.ePage])},
                  {"caption", JsonText(std::string(setting.strCaption))},
                  {"unit", JsonText(std::string(setting.strUnit))}};
  if (std::isfinite(setting.dblMin)) members.emplace_back("min", JsonNumber(setting.dblMin));
  if (std::isfinite(setting.dblMax)) members.emplace_back("max", JsonNumber(setting.dblMax));
  std::vector<std::string> arrWords;
  for (const SettingWord &word : setting.arrWords) arrWords.push_back(JsonText(std::string(word.strWord)));
  if (!arrWords.empty()) members.emplace_back("words", "[" + Joined(arrWords) + "]");
  return JsonObject(members);
}

}  // namespace

std::string InstrumentsText(const std::vector<ListedInstrument> &arrInstruments, bool fJson) {
  std::vector<std::string> arrLines;
  for (const ListedInstrument &instrument : arrInstruments)
    arrLines.push_back(fJson ? InstrumentJson(instrument) : InstrumentLine(instrument));
  return fJson ? JsonLines(arrLines, '[', ']') : LinesText(arrLines, false);
}

std::string IdentityText(const Setup &identity, bool fJson) {
  std::vector<std::string> arrLines;
  const auto add = [&](const std::string &strKey, const std::string &strText, const std::string &strJson) {
    arrLines.push_back(fJson ? JsonText(strKey) + ": " + strJson : strKey + ": " + strText);
  };
  const udtInstrInfo &info = identity.Instrument;
  for (const auto &[strKey, strText] :
       {std::pair{"product", info.strProductId}, std::pair{"serial", info.strSerialNum},
        std::pair{"version", info.strSysVersion}, std::pair{"options", info.strInstOptions}})
    add(strKey, strText, JsonText(strText));
  add("channels", std::to_string(info.lngNumChannels), std::to_string(info.lngNumChannels));
  std::vector<std::string> arrJson;
  for (const std::string &strWord : LackWords(identity)) arrJson.push_back(JsonText(strWord));
  add("lacks", Joined(LackWords(identity)), "[" + Joined(arrJson) + "]");
  return fJson ? JsonLines(arrLines, '{', '}') : LinesText(arrLines, false);
}

std::string DifferencesText(const std::vector<SetupDifference> &arrDifferences, bool fJson) {
  std::vector<std::string> arrLines;
  for (const SetupDifference &difference : arrDifferences) {
    if (fJson)
      arrLines.push_back(JsonObject({{"key", JsonText(difference.Key())},
                                     {"page", JsonText(PageNames[difference.setting->ePage])},
                                     {"setting", JsonText(difference.setting->Caption(difference.lngChannel))},
                                     {"first", JsonText(difference.strFirst)},
                                     {"second", JsonText(difference.strSecond)}}));
    else
      arrLines.push_back(difference.Key() + ": " + (difference.strFirst.empty() ? "-" : difference.strFirst) + " | " +
                         (difference.strSecond.empty() ? "-" : difference.strSecond));
  }
  return fJson ? JsonLines(arrLines, '[', ']') : LinesText(arrLines, false);
}

std::string SettingsText(const Setup &setup, const std::vector<SettingPlace> &arrPlaces, bool fJson) {
  std::vector<std::string> arrLines;
  for (const SettingPlace &place : arrPlaces)
    arrLines.push_back(fJson ? JsonText(place.Key()) + ": " + SettingJson(*place.setting, setup, place.lngChannel)
                             : place.Key() + "=" + EntryText(*place.setting, setup, place.lngChannel));
  return fJson ? JsonLines(arrLines, '{', '}') : LinesText(arrLines, false);
}

std::string KeysText(bool fJson) {
  std::vector<std::string> arrLines;
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels())
      arrLines.push_back(fJson ? KeyJson(setting, lngChannel)
                               : setting.Key(lngChannel) + "\t" + PageNames[setting.ePage] + ": " +
                                     setting.Caption(lngChannel) + "\t" + Values(setting));
  return fJson ? JsonLines(arrLines, '[', ']') : LinesText(arrLines, false);
}

std::string LinesText(const std::vector<std::string> &arrLines, bool fJson) {
  std::vector<std::string> arrJson;
  std::string strText;
  for (const std::string &strLine : arrLines) {
    arrJson.push_back(JsonText(strLine));
    strText += strLine + "\n";
  }
  return fJson ? JsonLines(arrJson, '[', ']') : strText;
}

}  // namespace tarvik
