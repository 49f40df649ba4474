#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarvik::scpi {

/// An instrument that the user has entered.
struct InstrumentEntry {
  std::string strName;
  std::string strAddress;  ///< as Address reads it
  std::string strProfile;
  std::string strLog;  ///< file for what goes over the line; empty for none

  bool operator==(const InstrumentEntry &) const = default;
};

/// The entries of a file scpi-instruments.json; none where there is no file. RunTimeError with the file and one reason
/// for each line.
std::vector<InstrumentEntry> ReadInstruments(const std::filesystem::path &path);
/// Puts a file with these entries in the place of the one before. RunTimeError with the file and the reason.
void WriteInstruments(const std::filesystem::path &path, const std::vector<InstrumentEntry> &arrEntries);

/// Where the user's file stands; empty for a user without a home.
std::filesystem::path UserInstrumentsFile();
/// The user's file and those of the system, by priority.
std::vector<std::filesystem::path> InstrumentsFiles();
/// All instruments of these files. Of those with the same name the first one counts.
std::vector<InstrumentEntry> ReadAllInstruments(const std::vector<std::filesystem::path> &arrFiles);

}  // namespace tarvik::scpi
