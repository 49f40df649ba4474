#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarvik {

/// Texts by section and key in a file of the toolkit's form, so that programs with and without the toolkit share one:
///
///     [LastUsed]
///     ServerURL=tarvik://lab.example
///
/// A file that is not there holds nothing. One that cannot be read, or that is no file of settings, is a failure
/// (RunTimeError 75) and is never written over. Lines of others stay as they are.
class SettingsFile {
 public:
  explicit SettingsFile(std::filesystem::path path) : m_path(std::move(path)) {}
  /// The file of an application in the user's configuration folder. Where there is no such folder nothing is stored,
  /// and a write fails.
  static SettingsFile Of(const std::string &strApplication);

  std::optional<std::string> Value(const std::string &strSection, const std::string &strKey) const;
  /// Puts a whole new file in the place of the old one, so that no reader meets half of it.
  void Save(const std::string &strSection, const std::string &strKey, const std::string &strValue) const;

 private:
  struct Line;
  std::vector<Line> Read() const;
  void Write(const std::vector<Line> &arrLines) const;
  std::string Content() const;
  Line Understood(const std::string &strText, std::string &strSection, std::size_t number) const;

  std::filesystem::path m_path;
};

}  // namespace tarvik
