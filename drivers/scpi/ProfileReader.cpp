#include "scpi/ProfileReader.h"

#include <algorithm>

#include "scpi/Answer.h"
#include "settings/SettingText.h"
#include "settings/SetupFormat.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {

namespace {

constexpr const char *FormatName = "tarvikvi-scpi-profile";
constexpr Long FormatVersion = 1;
constexpr Long SmallestBuffer = 64, LargestBuffer = 1 << 20;

struct Unit {
  const char *strName;
  const char *strOf;  ///< the contract's unit
  Double dblFactor;
};
constexpr Unit Units[] = {{"s", "s", 1},      {"ms", "s", 1e-3}, {"us", "s", 1e-6},   {"ns", "s", 1e-9},
                          {"ps", "s", 1e-12}, {"Hz", "Hz", 1},   {"kHz", "Hz", 1e3},  {"MHz", "Hz", 1e6},
                          {"GHz", "Hz", 1e9}, {"V", "V", 1},     {"mV", "V", 1e-3},   {"A", "A", 1},
                          {"mA", "A", 1e-3},  {"Ohm", "Ohm", 1}, {"kOhm", "Ohm", 1e3}};

/// A command of the profile and where it is kept.
struct NamedCommand {
  const char *strKey;
  std::string Profile::*field;
};
constexpr NamedCommand Commands[] = {{"calibrate", &Profile::strCalibrate},
                                     {"options", &Profile::strOptions},
                                     {"reset", &Profile::strReset},
                                     {"selfTest", &Profile::strSelfTest}};

/// The word of the setting that a profile gives; a switch has the words of one.
std::optional<Long> ValueOf(const ProfileSetting &setting, std::string_view strWord) {
  const Setting &like = setting.pRow->Like();
  if (like.eKind == SettingKind::Switch) {
    if (strWord == "Off") return 0;
    if (strWord == "On") return 1;
    return std::nullopt;
  }
  const auto word = std::ranges::find(like.arrWords, strWord, &SettingWord::strWord);
  if (word == like.arrWords.end()) return std::nullopt;
  return word->lngValue;
}

bool HasWords(const ProfileSetting &setting) {
  const SettingKind eKind = setting.pRow->Like().eKind;
  return eKind == SettingKind::Choice || eKind == SettingKind::Switch;
}

}  // namespace

Profile ProfileReader::Read(const std::string &strName) {
  const Members file = Open(m_root, "profile");
  CheckFormat(file, FormatName, FormatVersion);
  ReadBase(file);
  m_profile.strName = strName;
  ReadTexts(file);
  using Part = void (ProfileReader::*)(const JsonNode &);
  static constexpr std::pair<const char *, Part> Parts[] = {
      {"lacks", &ProfileReader::ReadLacks},       {"messages", &ProfileReader::ReadMessages},
      {"commands", &ProfileReader::ReadCommands}, {"suits", &ProfileReader::ReadSuits},
      {"settings", &ProfileReader::ReadSettings}, {"order", &ProfileReader::ReadOrder}};
  for (const auto &[strKey, part] : Parts)
    if (const auto found = file.find(strKey); found != file.end()) (this->*part)(*found->second);
  RefuseOthers(file,
               {"$schema", "channels", "commands", "description", "errors", "extends", "format", "lacks", "messages",
                "order", "settings", "suits", "version", "warnings"},
               "");
  CheckWhole();
  Finish();
  return std::move(m_profile);
}

void ProfileReader::ReadBase(const Members &file) {
  const auto found = file.find("extends");
  if (found == file.end()) return;
  const auto strName = Text(*found->second, "extends");
  if (!strName) return;
  try {
    m_profile = m_findBase(*strName);
  } catch (const RunTimeError &error) {
    Refuse(found->second->lngLine, "extends", error.Description());
    Finish();
  }
  // What chooses the base says nothing about what extends it.
  m_profile.arrSuitsIdentity.clear();
  m_profile.strSuitsQuery.clear();
}

void ProfileReader::ReadTexts(const Members &file) {
  if (const auto found = file.find("description"); found != file.end())
    m_profile.strDescription = Text(*found->second, "description").value_or("");
  if (const auto found = file.find("channels"); found != file.end())
    m_profile.lngChannels = NumberBetween(*found->second, "channels", 1, 2).value_or(m_profile.lngChannels);
  static constexpr std::pair<const char *, std::string Profile::*> Queues[] = {{"errors", &Profile::strErrorQuery},
                                                                               {"warnings", &Profile::strWarningQuery}};
  for (const auto &[strKey, field] : Queues) {
    const auto found = file.find(strKey);
    if (found == file.end()) continue;
    const std::string strWhere = std::string(strKey) + ".";
    const Members members = Open(*found->second, strKey);
    if (const JsonNode *pQuery = Wanted(members, "query", strWhere, found->second->lngLine))
      m_profile.*field = ShortForm(Line(*pQuery, strWhere + "query").value_or(""));
    RefuseOthers(members, {"query"}, strWhere);
  }
}

void ProfileReader::ReadLacks(const JsonNode &node) {
  if (!node.Is<JsonNode::List>()) return RefuseKind(node, "lacks", "a list");
  m_profile.lngMask = 0;
  for (const JsonNode &part : node.arrParts) {
    const auto strWord = Text(part, "lacks");
    if (!strWord) continue;
    const auto lack = std::ranges::find(SetupLackWords, *strWord, &SettingWord::strWord);
    if (lack == std::end(SetupLackWords))
      Refuse(part.lngLine, "lacks", "\"" + *strWord + "\" is nothing that an instrument can lack");
    else
      m_profile.lngMask |= lack->lngValue;
  }
}

void ProfileReader::ReadMessages(const JsonNode &node) {
  const Members members = Open(node, "messages");
  static constexpr std::pair<const char *, std::size_t MessageLimits::*> Sizes[] = {{"input", &MessageLimits::input},
                                                                                    {"answer", &MessageLimits::answer}};
  for (const auto &[strKey, field] : Sizes)
    if (const auto found = members.find(strKey); found != members.end())
      if (const auto size =
              NumberBetween(*found->second, std::string("messages.") + strKey, SmallestBuffer, LargestBuffer))
        m_profile.limits.*field = static_cast<std::size_t>(*size);
  if (const auto found = members.find("together"); found != members.end()) {
    if (const bool *pTogether = std::get_if<bool>(&found->second->value))
      m_profile.limits.fTogether = *pTogether;
    else
      RefuseKind(*found->second, "messages.together", "true or false");
  }
  RefuseOthers(members, {"answer", "input", "together"}, "messages.");
}

void ProfileReader::ReadCommands(const JsonNode &node) {
  const Members members = Open(node, "commands");
  std::set<std::string> known{"longest"};
  for (const NamedCommand &command : Commands) {
    known.insert(command.strKey);
    if (const auto found = members.find(command.strKey); found != members.end())
      m_profile.*command.field = Line(*found->second, std::string("commands.") + command.strKey).value_or("");
  }
  if (const auto found = members.find("longest"); found != members.end())
    m_profile.lngLongest = NumberBetween(*found->second, "commands.longest", 1, 3600).value_or(m_profile.lngLongest);
  RefuseOthers(members, known, "commands.");
}

void ProfileReader::ReadSuits(const JsonNode &node) {
  const Members members = Open(node, "suits");
  if (const auto found = members.find("query"); found != members.end())
    m_profile.strSuitsQuery = Line(*found->second, "suits.query").value_or("");
  if (const auto found = members.find("identity"); found != members.end()) {
    if (!found->second->Is<JsonNode::List>()) RefuseKind(*found->second, "suits.identity", "a list");
    for (const JsonNode &part : found->second->arrParts)
      if (auto strPart = Text(part, "suits.identity")) m_profile.arrSuitsIdentity.push_back(*std::move(strPart));
  }
  RefuseOthers(members, {"identity", "query"}, "suits.");
}

// ---- Settings ----

void ProfileReader::ReadSettings(const JsonNode &node) {
  const Members members = Open(node, "settings");
  for (const SettingRow &row : SettingRows())
    if (const auto found = members.find(std::string(row.strKey)); found != members.end())
      ReadSetting(found->first, *found->second);
  for (const auto &[strKey, pNode] : members)
    if (!FindRow(strKey)) Refuse(pNode->lngLine, strKey, "there is no such setting");
}

void ProfileReader::ReadSetting(const std::string &strKey, const JsonNode &node) {
  ProfileSetting setting;
  setting.pRow = FindRow(strKey);
  const auto old = std::ranges::find(m_profile.arrSettings, setting.pRow, &ProfileSetting::pRow);
  if (old != m_profile.arrSettings.end()) setting.order = old->order;
  const bool fFits = !node.Is<std::monostate>();
  if (fFits) {
    const Members members = Open(node, strKey);
    const std::string strWhere = strKey + ".";
    ReadHeaders(setting, members, node, strWhere);
    using Part = void (ProfileReader::*)(ProfileSetting &, const JsonNode &, const std::string &);
    static constexpr std::pair<const char *, Part> Parts[] = {{"words", &ProfileReader::ReadWords},
                                                              {"unit", &ProfileReader::ReadUnit}};
    for (const auto &[strPart, part] : Parts)
      if (const auto found = members.find(strPart); found != members.end())
        (this->*part)(setting, *found->second, strWhere + strPart);
    if (const auto found = members.find("min"); found != members.end())
      setting.dblMin = Quantity(setting, *found->second, strWhere + "min");
    if (const auto found = members.find("max"); found != members.end())
      setting.dblMax = Quantity(setting, *found->second, strWhere + "max");
    if (HasWords(setting) && setting.pRow->Like().eKind == SettingKind::Choice && !members.contains("words"))
      Refuse(node.lngLine, strWhere + "words", "the key is missing");
    RefuseOthers(members, {"command", "max", "min", "query", "unit", "words"}, strWhere);
  }
  // null takes a setting out of what is extended.
  if (old != m_profile.arrSettings.end()) m_profile.arrSettings.erase(old);
  if (fFits) m_profile.arrSettings.push_back(std::move(setting));
}

void ProfileReader::ReadHeaders(ProfileSetting &setting, const Members &members, const JsonNode &node,
                                const std::string &strWhere) {
  const JsonNode *pCommand = Wanted(members, "command", strWhere, node.lngLine);
  if (!pCommand) return;
  const auto arrHeaders = Headers(setting, *pCommand, strWhere + "command");
  const auto query = members.find("query");
  if (query != members.end()) setting.arrQuery = Headers(setting, *query->second, strWhere + "query");
  for (std::size_t unit = 0; unit < arrHeaders.size(); ++unit) {
    const std::string &strHeader = arrHeaders[unit];
    if (strHeader.empty()) continue;
    const bool fHasValue = strHeader.find("{value}") != std::string::npos;
    setting.arrSet[unit] = fHasValue ? strHeader : strHeader + " {value}";
    if (query == members.end()) setting.arrQuery[unit] = strHeader.substr(0, strHeader.find(' ')) + "?";
  }
}

std::array<std::string, 2> ProfileReader::Headers(const ProfileSetting &setting, const JsonNode &node,
                                                  const std::string &strWhere) {
  std::array<std::string, 2> arrHeaders;
  if (setting.IsLevel() && node.Is<JsonNode::Object>()) {
    const Members members = Open(node, strWhere);
    static constexpr std::pair<const char *, OutputType> UnitKeys[] = {{"V", eTypeVoltage}, {"A", eTypeCurrent}};
    for (const auto &[strUnit, eType] : UnitKeys)
      if (const JsonNode *pHeader = Wanted(members, strUnit, strWhere + ".", node.lngLine))
        arrHeaders[static_cast<std::size_t>(eType)] = ShortForm(Line(*pHeader, strWhere + "." + strUnit).value_or(""));
    RefuseOthers(members, {"A", "V"}, strWhere + ".");
  } else {
    arrHeaders.fill(ShortForm(Line(node, strWhere).value_or("")));
  }
  const bool fPerChannel = setting.pRow->Like().fPerChannel;
  for (const std::string &strHeader : arrHeaders) {
    const bool fChannel = strHeader.find("{channel}") != std::string::npos;
    if (strHeader.empty() || fChannel == fPerChannel) continue;
    Refuse(node.lngLine, strWhere,
           fPerChannel ? "the setting is one of each channel; {channel} is missing"
                       : "the setting is one for the instrument; there is no {channel}");
    break;
  }
  return arrHeaders;
}

void ProfileReader::ReadWords(ProfileSetting &setting, const JsonNode &node, const std::string &strWhere) {
  if (!HasWords(setting)) return Refuse(node.lngLine, strWhere, "the setting has no words");
  for (const auto &[strWord, pNode] : Open(node, strWhere)) {
    const std::string strPlace = strWhere + "." + strWord;
    const auto lngValue = ValueOf(setting, strWord);
    if (!lngValue) {
      Refuse(pNode->lngLine, strPlace, "the setting has no such word");
      continue;
    }
    ProfileWord word{*lngValue, {}};
    const bool fList = pNode->Is<JsonNode::List>() && !pNode->arrParts.empty();
    for (const JsonNode &spelling : fList ? pNode->arrParts : std::vector{*pNode})
      if (auto strSpelling = Line(spelling, strPlace)) word.arrSpellings.push_back(*std::move(strSpelling));
    if (!word.arrSpellings.empty()) setting.arrWords.push_back(std::move(word));
  }
}

void ProfileReader::ReadUnit(ProfileSetting &setting, const JsonNode &node, const std::string &strWhere) {
  const auto strUnit = Text(node, strWhere);
  if (!strUnit) return;
  const Setting &like = setting.pRow->Like();
  const auto unit = std::ranges::find_if(Units, [&](const Unit &known) {
    return *strUnit == known.strName &&
           (like.fLevelUnit ? known.strOf[0] == 'V' || known.strOf[0] == 'A' : like.strUnit == known.strOf);
  });
  if (unit == std::end(Units)) return Refuse(node.lngLine, strWhere, "\"" + *strUnit + "\" is no unit of this setting");
  setting.dblUnit = unit->dblFactor;
}

std::optional<Double> ProfileReader::Quantity(const ProfileSetting &setting, const JsonNode &node,
                                              const std::string &strWhere) {
  const auto *pNumber = std::get_if<JsonNode::Number>(&node.value);
  if (pNumber) return pNumber->dblValue * setting.dblUnit;
  RefuseKind(node, strWhere, "a number");
  return std::nullopt;
}

// ---- Order ----

void ProfileReader::ReadOrder(const JsonNode &node) {
  if (!node.Is<JsonNode::List>()) return RefuseKind(node, "order", "a list");
  for (ProfileSetting &setting : m_profile.arrSettings) setting.order.reset();
  for (std::size_t stage = 0; stage < node.arrParts.size(); ++stage) {
    const JsonNode &part = node.arrParts[stage];
    const std::string strWhere = "order[" + std::to_string(stage + 1) + "].";
    const Members members = Open(part, "order");
    const JsonNode *pSetting = Wanted(members, "setting", strWhere, part.lngLine);
    const JsonNode *pRoom = Wanted(members, "room", strWhere, part.lngLine);
    RefuseOthers(members, {"aside", "room", "setting"}, strWhere);
    const auto strKey = pSetting ? Text(*pSetting, strWhere + "setting") : std::nullopt;
    if (!strKey || !pRoom) continue;
    const auto setting = std::ranges::find_if(
        m_profile.arrSettings, [&](const ProfileSetting &known) { return known.pRow->strKey == *strKey; });
    if (setting == m_profile.arrSettings.end())
      Refuse(pSetting->lngLine, strWhere + "setting", "\"" + *strKey + "\" is none of the profile's settings");
    else {
      ReadRoom(*setting, *pRoom, stage, strWhere + "room");
      if (const auto aside = members.find("aside"); aside != members.end())
        ReadAside(*setting, *aside->second, strWhere + "aside.");
    }
  }
}

void ProfileReader::ReadRoom(ProfileSetting &setting, const JsonNode &node, std::size_t stage,
                             const std::string &strWhere) {
  ProfileOrder order;
  order.stage = stage;
  if (node.Is<JsonNode::List>()) {
    order.eRoom = ProfileOrder::Room::Words;
    for (const JsonNode &part : node.arrParts) {
      const auto strWord = Text(part, strWhere);
      const auto lngValue = strWord ? ValueOf(setting, *strWord) : std::nullopt;
      if (lngValue)
        order.arrWords.push_back(*lngValue);
      else if (strWord)
        Refuse(part.lngLine, strWhere, "\"" + *strWord + "\" is no word of " + std::string(setting.pRow->strKey));
    }
  } else if (const auto strRoom = Text(node, strWhere)) {
    if (*strRoom != "up" && *strRoom != "down")
      return Refuse(node.lngLine, strWhere, "\"" + *strRoom + "\" is neither \"up\" nor \"down\" nor a list of words");
    order.eRoom = *strRoom == "up" ? ProfileOrder::Room::Up : ProfileOrder::Room::Down;
  }
  setting.order = std::move(order);
}

void ProfileReader::ReadAside(ProfileSetting &setting, const JsonNode &node, const std::string &strWhere) {
  const Members members = Open(node, strWhere);
  RefuseOthers(members, {"while", "word"}, strWhere);
  const JsonNode *pWord = Wanted(members, "word", strWhere, node.lngLine);
  const JsonNode *pWhile = Wanted(members, "while", strWhere, node.lngLine);
  const auto strWord = pWord ? Text(*pWord, strWhere + "word") : std::nullopt;
  if (!strWord || !pWhile || !setting.order) return;
  setting.order->lngAside = ValueOf(setting, *strWord);
  if (!setting.order->lngAside)
    Refuse(pWord->lngLine, strWhere + "word",
           "\"" + *strWord + "\" is no word of " + std::string(setting.pRow->strKey));
  if (!pWhile->Is<JsonNode::List>()) RefuseKind(*pWhile, strWhere + "while", "a list");
  for (const JsonNode &part : pWhile->arrParts) {
    const auto strKey = Text(part, strWhere + "while");
    if (!strKey) continue;
    if (const SettingRow *pRow = FindRow(*strKey))
      setting.order->arrWhile.push_back(pRow);
    else
      Refuse(part.lngLine, strWhere + "while", "there is no setting \"" + *strKey + "\"");
  }
}

void ProfileReader::CheckWhole() {
  std::ranges::sort(m_profile.arrSettings, {}, &ProfileSetting::pRow);
  if (m_profile.strErrorQuery.empty()) Refuse(1, "errors", "the key is missing");
  static constexpr std::pair<const char *, const char *> Exclusive[] = {
      {"timing.frequency", "timing.period"}, {"mode.pllFrequency", "mode.pllPeriod"},
      {"levels.high", "levels.offset"},      {"levels.high", "levels.amplitude"},
      {"levels.low", "levels.offset"},       {"levels.low", "levels.amplitude"}};
  for (const auto &[strFirst, strSecond] : Exclusive)
    if (m_profile.Find(strFirst) && m_profile.Find(strSecond))
      Refuse(1, strSecond, std::string("tells the same as ") + strFirst);
}

// ---- Values ----

std::optional<std::string> ProfileReader::Line(const JsonNode &node, const std::string &strWhere) {
  auto strText = Text(node, strWhere);
  if (!strText) return std::nullopt;
  if (std::ranges::all_of(*strText, [](char ch) { return ch >= 0x20 && ch < 0x7F; })) return strText;
  Refuse(node.lngLine, strWhere, "a command is one line of printable characters");
  return std::nullopt;
}

std::optional<Long> ProfileReader::NumberBetween(const JsonNode &node, const std::string &strWhere, Long lngMin,
                                                 Long lngMax) {
  const auto lngValue = WholeNumber(node, strWhere);
  if (!lngValue || (*lngValue >= lngMin && *lngValue <= lngMax)) return lngValue;
  Refuse(
      node.lngLine, strWhere,
      std::to_string(*lngValue) + " is out of the range " + std::to_string(lngMin) + " to " + std::to_string(lngMax));
  return std::nullopt;
}

}  // namespace tarvik::scpi
