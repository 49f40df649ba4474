#include "support/UserFolders.h"

#include <cstdlib>

namespace tarvik {

namespace {

std::filesystem::path WholePath(const char *strVariable) {
  const char *value = std::getenv(strVariable);
  if (!value) return {};
  const std::filesystem::path path(value);
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path FolderOr(const char *strVariable, const char *strBelowHome) {
  if (auto folder = WholePath(strVariable); !folder.empty()) return folder;
#ifdef _WIN32
  if (auto folder = WholePath("APPDATA"); !folder.empty()) return folder;
#endif
  const auto home = WholePath("HOME");
  return home.empty() ? home : home / strBelowHome;
}

}  // namespace

std::filesystem::path UserConfigFolder() { return FolderOr("XDG_CONFIG_HOME", ".config"); }
std::filesystem::path UserDataFolder() { return FolderOr("XDG_DATA_HOME", ".local/share"); }
std::filesystem::path UserStateFolder() { return FolderOr("XDG_STATE_HOME", ".local/state"); }

}  // namespace tarvik
