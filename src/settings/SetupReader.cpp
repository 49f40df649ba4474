#include "settings/SetupReader.h"

#include <algorithm>

#include "settings/PatternText.h"
#include "settings/SettingText.h"
#include "settings/SetupFile.h"
#include "settings/SetupFormat.h"

namespace tarvik {

Setup SetupReader::Read() {
  const Members file = Open(m_root, "file");
  CheckFormat(file, SetupFormatName, SetupFileVersion);
  if (const JsonNode *pIdentity = Wanted(file, "instrument", "", 1)) ReadIdentity(*pIdentity);
  if (const JsonNode *pSettings = Wanted(file, "settings", "", 1); pSettings && m_fModelKnown) ReadSettings(*pSettings);
  RefuseOthers(file, {"format", "instrument", "settings", "version"}, "");
  Finish();
  return Canonical(m_setup);
}

// ---- The file ----

void SetupReader::ReadIdentity(const JsonNode &node) {
  const Members identity = Open(node, "instrument");
  std::set<std::string> known{"channels", "lacks"};
  for (const SetupIdentityRow &row : SetupIdentityRows) {
    known.insert(row.strKey);
    const JsonNode *pText = Wanted(identity, row.strKey, "instrument.", node.lngLine);
    if (!pText) continue;
    if (auto strText = Text(*pText, std::string("instrument.") + row.strKey))
      m_setup.Instrument.*row.field = *std::move(strText);
  }
  const bool fChannels = ReadChannels(Wanted(identity, "channels", "instrument.", node.lngLine));
  const bool fLacks = ReadLacks(Wanted(identity, "lacks", "instrument.", node.lngLine));
  m_fModelKnown = fChannels && fLacks;
  RefuseOthers(identity, known, "instrument.");
}

bool SetupReader::ReadChannels(const JsonNode *pNode) {
  const auto lngChannels = pNode ? WholeNumber(*pNode, "instrument.channels") : std::nullopt;
  if (!lngChannels) return false;
  m_setup.Instrument.lngNumChannels = *lngChannels;
  if (*lngChannels == 1 || *lngChannels == 2) return true;
  Refuse(pNode->lngLine, "instrument.channels", std::to_string(*lngChannels) + " is out of the range 1 to 2");
  return false;
}

bool SetupReader::ReadLacks(const JsonNode *pNode) {
  constexpr const char *Where = "instrument.lacks";
  if (!pNode) return false;
  if (!pNode->Is<JsonNode::List>()) {
    RefuseKind(*pNode, Where, "a list");
    return false;
  }
  const std::size_t reasons = Reasons();
  for (const JsonNode &node : pNode->arrParts) {
    const auto strWord = Text(node, Where);
    if (!strWord) continue;
    const auto lack = std::ranges::find(SetupLackWords, *strWord, &SettingWord::strWord);
    if (lack == std::end(SetupLackWords))
      Refuse(node.lngLine, Where, "\"" + *strWord + "\" is nothing that an instrument can lack");
    else
      m_setup.lngLacks |= lack->lngValue;
  }
  return Reasons() == reasons;
}

// ---- Settings ----

void SetupReader::ReadSettings(const JsonNode &node) {
  const Members settings = Open(node, "settings");
  if (!node.Is<JsonNode::Object>()) return;
  // In the order of the table: how levels are written and the modes are known before what depends on them.
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels()) {
      const std::string strKey = setting.Key(lngChannel), strWhyNot = WhyNotHere(setting, lngChannel);
      const auto found = settings.find(strKey);
      if (found == settings.end()) {
        if (strWhyNot.empty()) Refuse(node.lngLine, strKey, "the key is missing");
      } else if (!strWhyNot.empty()) {
        Refuse(found->second->lngLine, strKey, strWhyNot);
      } else {
        ReadSetting(setting, lngChannel, *found->second);
      }
    }
  for (const auto &[strKey, pNode] : settings)
    if (!FindSetting(strKey)) Refuse(pNode->lngLine, strKey, "there is no such setting");
}

/// Why the file may not have the setting; empty when it has to.
std::string SetupReader::WhyNotHere(const Setting &setting, Long lngChannel) const {
  if ((m_setup.lngLacks & setting.eLack) != 0) return "the instrument of this file does not have it";
  if (!setting.IsHad(m_setup, lngChannel)) return "the instrument of this file has one channel";
  if (!setting.IsStored(m_setup, lngChannel)) return "another key of this file tells it";
  return {};
}

void SetupReader::ReadSetting(const Setting &setting, Long lngChannel, const JsonNode &node) {
  const std::string strKey = setting.Key(lngChannel);
  const std::optional<SettingValue> value = Value(setting, node, strKey);
  if (!value) return;
  setting.Write(m_setup, lngChannel, *value);
  // What the modes do not use may be anything: an instrument tells a frequency of 0 for a PLL that does not arm.
  if (!setting.IsInUse(m_setup, lngChannel)) return;
  if (const std::string strWhy = Objection(setting, m_setup, lngChannel, *value); !strWhy.empty())
    Refuse(node.lngLine, strKey, strWhy);
}

std::optional<SettingValue> SetupReader::Value(const Setting &setting, const JsonNode &node,
                                               const std::string &strKey) {
  switch (setting.eKind) {
    case SettingKind::Switch:
      if (const bool *pValue = std::get_if<bool>(&node.value)) return Boolean(*pValue);
      RefuseKind(node, strKey, "true or false");
      return std::nullopt;
    case SettingKind::Count: return WholeNumber(node, strKey);
    case SettingKind::Choice: return Choice(setting, node, strKey);
    case SettingKind::Quantity:
      if (const auto *pNumber = std::get_if<JsonNode::Number>(&node.value)) return pNumber->dblValue;
      RefuseKind(node, strKey, "a number");
      return std::nullopt;
    case SettingKind::Stream: return Stream(node, strKey);
  }
  return std::nullopt;
}

std::optional<SettingValue> SetupReader::Choice(const Setting &setting, const JsonNode &node,
                                                const std::string &strKey) {
  if (node.Is<JsonNode::Number>() && !setting.fOnlyWords) return WholeNumber(node, strKey);
  const auto strText = Text(node, strKey);
  if (!strText) return std::nullopt;
  const auto word = std::ranges::find(setting.arrWords, *strText, &SettingWord::strWord);
  if (word != setting.arrWords.end()) return word->lngValue;
  Refuse(node.lngLine, strKey, "\"" + *strText + "\" is not " + WordsOf(setting));
  return std::nullopt;
}

std::optional<SettingValue> SetupReader::Stream(const JsonNode &node, const std::string &strKey) {
  const std::size_t reasons = Reasons();
  const Members stream = Open(node, strKey);
  if (Reasons() != reasons) return std::nullopt;
  const JsonNode *pLength = Wanted(stream, "length", strKey + ".", node.lngLine);
  const JsonNode *pWords = Wanted(stream, "words", strKey + ".", node.lngLine);
  RefuseOthers(stream, {"length", "words"}, strKey + ".");
  const auto lngLength = pLength ? WholeNumber(*pLength, strKey + ".length") : std::nullopt;
  const auto arrLines = pWords ? Lines(*pWords, strKey + ".words") : std::vector<std::string>();
  if (Reasons() != reasons) return std::nullopt;
  PatternStream pattern;
  const std::string strWrong = ReadPatternLines(*lngLength, arrLines, pattern);
  if (strWrong.empty()) return pattern;
  Refuse(node.lngLine, strKey, strWrong);
  return std::nullopt;
}

std::vector<std::string> SetupReader::Lines(const JsonNode &node, const std::string &strWhere) {
  std::vector<std::string> arrLines;
  if (!node.Is<JsonNode::List>()) RefuseKind(node, strWhere, "a list");
  for (const JsonNode &part : node.arrParts)
    if (auto strText = Text(part, strWhere)) arrLines.push_back(*std::move(strText));
  return arrLines;
}

}  // namespace tarvik
