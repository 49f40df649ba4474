#pragma once

#include <filesystem>
#include <vector>

namespace tarvik {

/// The user's folder for files of one kind: the value of its XDG variable, otherwise the default below the home folder.
/// Empty if neither is set. Relative paths are ignored, so that files in the current folder are never taken for the
/// user's.
std::filesystem::path UserConfigFolder();
std::filesystem::path UserDataFolder();
std::filesystem::path UserStateFolder();

/// The system's data folders by priority: those of XDG_DATA_DIRS, otherwise /usr/local/share and /usr/share.
std::vector<std::filesystem::path> SystemDataFolders();
/// The system's folders for configuration by priority: those of XDG_CONFIG_DIRS, otherwise /etc/xdg.
std::vector<std::filesystem::path> SystemConfigFolders();

}  // namespace tarvik
