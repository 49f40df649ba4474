#pragma once

#include <filesystem>
#include <vector>

namespace tarvik {

/// Where a user's files of one kind stand: the folder that the variable of the environment names, else the usual one
/// below the home folder. Empty where there is neither; names that are no whole paths do not count, so that what
/// somebody left in the current folder is never taken for the user's.
std::filesystem::path UserConfigFolder();
std::filesystem::path UserDataFolder();
std::filesystem::path UserStateFolder();

/// The system's folders of data, first one first: those of XDG_DATA_DIRS, else /usr/local/share and /usr/share.
std::vector<std::filesystem::path> SystemDataFolders();

}  // namespace tarvik
