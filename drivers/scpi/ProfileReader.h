#pragma once

#include <functional>

#include "scpi/Profile.h"
#include "settings/JsonReader.h"

namespace tarvik::scpi {

/// Checks the tree of a profile and makes the profile of it.
class ProfileReader : private JsonReader {
 public:
  /// The profile that another one extends, by its name. RunTimeError where it is none.
  using FindBase = std::function<Profile(const std::string &strName)>;

  ProfileReader(const JsonNode &root, FindBase findBase) : m_root(root), m_findBase(std::move(findBase)) {}

  /// RunTimeError 321 with one reason for each line.
  Profile Read(const std::string &strName);

 private:
  void ReadBase(const Members &file);
  void ReadTexts(const Members &file);
  void ReadLacks(const JsonNode &node);
  void ReadMessages(const JsonNode &node);
  void ReadCommands(const JsonNode &node);
  void ReadSuits(const JsonNode &node);
  void ReadSettings(const JsonNode &node);
  void ReadSetting(const std::string &strKey, const JsonNode &node);
  void ReadHeaders(ProfileSetting &setting, const Members &members, const JsonNode &node, const std::string &strWhere);
  std::array<std::string, 2> Headers(const ProfileSetting &setting, const JsonNode &node, const std::string &strWhere);
  void ReadWords(ProfileSetting &setting, const JsonNode &node, const std::string &strWhere);
  void ReadUnit(ProfileSetting &setting, const JsonNode &node, const std::string &strWhere);
  std::optional<Double> Quantity(const ProfileSetting &setting, const JsonNode &node, const std::string &strWhere);
  void ReadOrder(const JsonNode &node);
  void ReadRoom(ProfileSetting &setting, const JsonNode &node, std::size_t stage, const std::string &strWhere);
  void ReadAside(ProfileSetting &setting, const JsonNode &node, const std::string &strWhere);
  void CheckWhole();

  /// A command or query: one line of printable characters.
  std::optional<std::string> Line(const JsonNode &node, const std::string &strWhere);
  std::optional<Long> NumberBetween(const JsonNode &node, const std::string &strWhere, Long lngMin, Long lngMax);

  const JsonNode &m_root;
  const FindBase m_findBase;
  Profile m_profile;
};

}  // namespace tarvik::scpi
