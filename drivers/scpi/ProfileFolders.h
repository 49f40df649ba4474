#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "scpi/Profile.h"

namespace tarvik::scpi {

/// The profiles of the machine: files NAME.json in folders of which the first one counts.
class ProfileFolders {
 public:
  explicit ProfileFolders(std::vector<std::filesystem::path> arrFolders) : m_arrFolders(std::move(arrFolders)) {}
  /// The folders of the user, of the system and of the installation, and the one beside the libraries.
  static ProfileFolders OfMachine();

  /// The names of all profiles, sorted; none twice.
  std::vector<std::string> Names() const;
  /// Reads the profile and those that it extends. RunTimeError with the file and one reason for each line.
  Profile Read(const std::string &strName) const;
  /// The profile in a file that stands anywhere; what it extends is looked for in the folders.
  Profile ReadFile(const std::filesystem::path &path) const;

 private:
  Profile ReadFile(const std::filesystem::path &path, std::vector<std::string> arrWithin) const;
  Profile Read(const std::string &strName, std::vector<std::string> arrWithin) const;

  const std::vector<std::filesystem::path> m_arrFolders;
};

}  // namespace tarvik::scpi
