#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "settings/JsonTree.h"
#include "settings/Setting.h"

namespace tarvik {

/// Checks the tree of a setup file and fills a setup from it. Everything that is wrong is collected and told at once.
class SetupReader {
 public:
  /// The tree has to outlive the reader.
  explicit SetupReader(const JsonNode &root) : m_root(root) {}

  /// RunTimeError 321 with one reason for each line.
  Setup Read();

 private:
  using Members = std::map<std::string, const JsonNode *>;
  struct Reason {
    Long lngLine;
    std::string strWhy;
  };

  void Refuse(Long lngLine, const std::string &strWhere, const std::string &strWhy);
  void RefuseKind(const JsonNode &node, const std::string &strWhere, const char *strWanted);
  void RefuseOthers(const Members &members, const std::set<std::string> &known, const std::string &strWhere);
  /// Ends the reading if anything was wrong so far.
  void Finish();

  /// The members of an object by name.
  Members Open(const JsonNode &node, const std::string &strWhere);
  const JsonNode *Wanted(const Members &members, const std::string &strKey, const std::string &strWhere, Long lngLine);
  std::optional<Long> WholeNumber(const JsonNode &node, const std::string &strWhere);
  std::optional<std::string> Text(const JsonNode &node, const std::string &strWhere);

  void CheckFormat(const Members &file);
  void ReadIdentity(const JsonNode &identity);
  bool ReadChannels(const JsonNode *pNode);
  bool ReadLacks(const JsonNode *pNode);
  void ReadSettings(const JsonNode &settings);
  std::string WhyNotHere(const Setting &setting, Long lngChannel) const;
  void ReadSetting(const Setting &setting, Long lngChannel, const JsonNode &node);
  std::optional<SettingValue> Value(const Setting &setting, const JsonNode &node, const std::string &strKey);
  std::optional<SettingValue> Choice(const Setting &setting, const JsonNode &node, const std::string &strKey);
  std::optional<SettingValue> Stream(const JsonNode &node, const std::string &strKey);
  std::vector<std::string> Lines(const JsonNode &node, const std::string &strWhere);

  const JsonNode &m_root;
  Setup m_setup;
  /// Channels and lacks are told: without them nobody knows which settings the file has to have.
  bool m_fModelKnown = false;
  std::vector<Reason> m_arrReasons;
};

}  // namespace tarvik
