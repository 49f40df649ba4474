#include "settings/JsonReader.h"

#include <algorithm>
#include <limits>

#include "support/RunTimeError.h"

namespace tarvik {

// ---- What is wrong ----

void JsonReader::Refuse(Long lngLine, const std::string &strWhere, const std::string &strWhy) {
  m_arrReasons.push_back({lngLine, strWhere + ": " + strWhy});
}

void JsonReader::RefuseKind(const JsonNode &node, const std::string &strWhere, const char *strWanted) {
  Refuse(node.lngLine, strWhere, std::string(strWanted) + " is wanted, not " + node.KindName());
}

void JsonReader::RefuseOthers(const Members &members, const std::set<std::string> &known, const std::string &strWhere) {
  for (const auto &[strKey, pNode] : members)
    if (!known.contains(strKey)) Refuse(pNode->lngLine, strWhere + strKey, "there is no such key");
}

void JsonReader::Finish() {
  if (m_arrReasons.empty()) return;
  std::ranges::stable_sort(m_arrReasons, {}, &Reason::lngLine);
  std::string strAll;
  for (const Reason &reason : m_arrReasons)
    strAll += (strAll.empty() ? "" : "\r\n") + ("line " + std::to_string(reason.lngLine) + ": " + reason.strWhy);
  throw RunTimeError(ErrInvalidFileFormat, strAll);
}

// ---- Parts of a tree ----

JsonReader::Members JsonReader::Open(const JsonNode &node, const std::string &strWhere) {
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

const JsonNode *JsonReader::Wanted(const Members &members, const std::string &strKey, const std::string &strWhere,
                                   Long lngLine) {
  const auto found = members.find(strKey);
  if (found != members.end()) return found->second;
  Refuse(lngLine, strWhere + strKey, "the key is missing");
  return nullptr;
}

std::optional<Long> JsonReader::WholeNumber(const JsonNode &node, const std::string &strWhere) {
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

std::optional<std::string> JsonReader::Text(const JsonNode &node, const std::string &strWhere) {
  if (const auto *pText = std::get_if<std::string>(&node.value)) return *pText;
  RefuseKind(node, strWhere, "a text");
  return std::nullopt;
}

void JsonReader::CheckFormat(const Members &file, const char *strFormatName, Long lngFormatVersion) {
  if (const JsonNode *pFormat = Wanted(file, "format", "", 1))
    if (const auto strFormat = Text(*pFormat, "format"); strFormat && *strFormat != strFormatName)
      Refuse(pFormat->lngLine, "format", "\"" + *strFormat + "\" is not \"" + strFormatName + "\"");
  if (const JsonNode *pVersion = Wanted(file, "version", "", 1))
    if (const auto lngVersion = WholeNumber(*pVersion, "version"); lngVersion && *lngVersion != lngFormatVersion)
      Refuse(pVersion->lngLine, "version",
             "the file has version " + std::to_string(*lngVersion) + ", this program reads version " +
                 std::to_string(lngFormatVersion));
  // What another format or a newer version means is not known here.
  Finish();
}

}  // namespace tarvik
