#include "settings/SetupReader.h"

#include <algorithm>
#include <limits>

#include "settings/PatternText.h"
#include "settings/SettingText.h"
#include "settings/SetupFile.h"
#include "settings/SetupFormat.h"
#include "support/RunTimeError.h"

namespace tarvik {

Setup SetupReader::Read() {
  const Members file = Open(m_root, "file");
  CheckFormat(file);
  if (const JsonNode *pIdentity = Wanted(file, "instrument", "", 1)) ReadIdentity(*pIdentity);
  if (const JsonNode *pSettings = Wanted(file, "settings", "", 1); pSettings && m_fModelKnown) ReadSettings(*pSettings);
  RefuseOthers(file, {"format", "instrument", "settings", "version"}, "");
  Finish();
  return Canonical(m_setup);
}

// ---- What is wrong ----

void SetupReader::Refuse(Long lngLine, const std::string &strWhere, const std::string &strWhy) {
  m_arrReasons.push_back({lngLine, strWhere + ": " + strWhy});
}

void SetupReader::RefuseKind(const JsonNode &node, const std::string &strWhere, const char *strWanted) {
  Refuse(node.lngLine, strWhere, std::string(strWanted) + " is wanted, not " + node.KindName());
}

void SetupReader::RefuseOthers(const Members &members, const std::set<std::string> &known,
                               const std::string &strWhere) {
  for (const auto &[strKey, pNode] : members)
    if (!known.contains(strKey)) Refuse(pNode->lngLine, strWhere + strKey, "there is no such key");
}

void SetupReader::Finish() {
  if (m_arrReasons.empty()) return;
  std::ranges::stable_sort(m_arrReasons, {}, &Reason::lngLine);
  std::string strAll;
  for (const Reason &reason : m_arrReasons)
    strAll += (strAll.empty() ? "" : "\r\n") + ("line " + std::to_string(reason.lngLine) + ": " + reason.strWhy);
  throw RunTimeError(ErrInvalidFileFormat, strAll);
}

// ---- Parts of a tree ----

SetupReader::Members SetupReader::Open(const JsonNode &node, const std::string &strWhere) {
  Members members;
  if (!node.Is<JsonNode::Object>()) {
    RefuseKind(node, strWhere, "an object");
    return members;
  }
  // A person would follow one of two equal keys, a program the other.
  for (const JsonNode &part : node.arrParts)
    if (const auto [place, fNew] = members.emplace(part.strName, &part); !fNew)
      Refuse(part.lngLine, part.strName, "the key stands in line " + std::to_string(place->second->lngLine) + " too");
  return members;
}

const JsonNode *SetupReader::Wanted(const Members &members, const std::string &strKey, const std::string &strWhere,
                                    Long lngLine) {
  const auto found = members.find(strKey);
  if (found != members.end()) return found->second;
  Refuse(lngLine, strWhere + strKey, "the key is missing");
  return nullptr;
}

std::optional<Long> SetupReader::WholeNumber(const JsonNode &node, const std::string &strWhere) {
  const auto *pNumber = std::get_if<JsonNode::Number>(&node.value);
  if (!pNumber) {
    RefuseKind(node, strWhere, "a whole number");
    return std::nullopt;
  }
  if (!pNumber->fWhole) {
    Refuse(node.lngLine, strWhere, "a whole number is wanted, not a fraction");
    return std::nullopt;
  }
  if (pNumber->dblValue < std::numeric_limits<Long>::min() || pNumber->dblValue > std::numeric_limits<Long>::max()) {
    Refuse(node.lngLine, strWhere, "the number is too large");
    return std::nullopt;
  }
  return static_cast<Long>(pNumber->dblValue);
}

std::optional<std::string> SetupReader::Text(const JsonNode &node, const std::string &strWhere) {
  if (const auto *pText = std::get_if<std::string>(&node.value)) return *pText;
  RefuseKind(node, strWhere, "a text");
  return std::nullopt;
}

// ---- The file ----

void SetupReader::CheckFormat(const Members &file) {
  if (const JsonNode *pFormat = Wanted(file, "format", "", 1))
    if (const auto strFormat = Text(*pFormat, "format"); strFormat && *strFormat != SetupFormatName)
      Refuse(pFormat->lngLine, "format", "\"" + *strFormat + "\" is not \"" + SetupFormatName + "\"");
  if (const JsonNode *pVersion = Wanted(file, "version", "", 1))
    if (const auto lngVersion = WholeNumber(*pVersion, "version"); lngVersion && *lngVersion != SetupFileVersion)
      Refuse(pVersion->lngLine, "version",
             "the file has version " + std::to_string(*lngVersion) + ", this program reads version " +
                 std::to_string(SetupFileVersion));
  // What another format or a newer version means is not known here.
  Finish();
}

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
  const std::size_t reasons = m_arrReasons.size();
  for (const JsonNode &node : pNode->arrParts) {
    const auto strWord = Text(node, Where);
    if (!strWord) continue;
    const auto lack = std::ranges::find(SetupLackWords, *strWord, &SettingWord::strWord);
    if (lack == std::end(SetupLackWords))
      Refuse(node.lngLine, Where, "\"" + *strWord + "\" is nothing that an instrument can lack");
    else
      m_setup.lngLacks |= lack->lngValue;
  }
  return m_arrReasons.size() == reasons;
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
  const std::size_t reasons = m_arrReasons.size();
  const Members stream = Open(node, strKey);
  if (m_arrReasons.size() != reasons) return std::nullopt;
  const JsonNode *pLength = Wanted(stream, "length", strKey + ".", node.lngLine);
  const JsonNode *pWords = Wanted(stream, "words", strKey + ".", node.lngLine);
  RefuseOthers(stream, {"length", "words"}, strKey + ".");
  const auto lngLength = pLength ? WholeNumber(*pLength, strKey + ".length") : std::nullopt;
  const auto arrLines = pWords ? Lines(*pWords, strKey + ".words") : std::vector<std::string>();
  if (m_arrReasons.size() != reasons) return std::nullopt;
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
