#pragma once

#include <filesystem>
#include <string>

#include "settings/Setup.h"

namespace tarvik {

class FileCalls;
struct Setting;

/// The version of the files that are written; files of this one and older ones are read.
inline constexpr Long SetupFileVersion = 1;

/// A larger file is no setup.
inline constexpr std::size_t LargestSetupFile = std::size_t{1} << 20;

/// The setup as JSON, whose form docs/setups.md tells: sorted, one setting a line, SI units, every number the shortest
/// that gives the same Double. Settings that the instrument lacks are left out.
std::string SetupToText(const Setup &setup);

/// The value of one setting as it stands in such a text.
std::string SettingJson(const Setting &setting, const Setup &setup, Long lngChannel);

/// The setup of such a text. A text that is not wholly right is refused with RunTimeError 321, whose description tells
/// all reasons and their places, one in a line: "line 12: timing.width[1]: 1ns is out of the range 1.5ns to 999.5s".
/// The setup is as Canonical makes it.
Setup SetupFromText(const std::string &strText);

/// Writes the file as WriteWholeFile does. The failure's description begins with "Cannot save FILE: ".
void SaveSetup(const Setup &setup, const std::filesystem::path &path);
void SaveSetup(const Setup &setup, const std::filesystem::path &path, FileCalls &calls);

/// Reads a file. The description of a failure begins with "Cannot load FILE: ".
Setup LoadSetup(const std::filesystem::path &path);

}  // namespace tarvik
