#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/JsonReader.h"
#include "settings/Setting.h"

namespace tarvik {

/// Checks the tree of a setup file and fills a setup from it.
class SetupReader : private JsonReader {
 public:
  /// The tree has to outlive the reader.
  explicit SetupReader(const JsonNode &root) : m_root(root) {}

  /// RunTimeError 321 with one reason for each line.
  Setup Read();

 private:
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
};

}  // namespace tarvik
