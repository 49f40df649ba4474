#include "support/UserFolders.h"

#include <cstdlib>

#include "support/Conversions.h"

namespace tarvik {

namespace {

std::string Environment(const char *strVariable) {
  const char *value = std::getenv(strVariable);
  return value ? value : "";
}

std::filesystem::path WholePath(const char *strVariable) {
  const std::filesystem::path path(Environment(strVariable));
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

std::vector<std::filesystem::path> FoldersOr(const char *strVariable, const char *strDefault) {
  const std::string strFolders = Environment(strVariable);
  std::vector<std::filesystem::path> arrFolders;
  for (const std::string &strFolder : Split(strFolders.empty() ? strDefault : strFolders, ':'))
    if (const std::filesystem::path folder(strFolder); folder.is_absolute()) arrFolders.push_back(folder);
  return arrFolders;
}

}  // namespace

std::filesystem::path UserConfigFolder() { return FolderOr("XDG_CONFIG_HOME", ".config"); }
std::filesystem::path UserDataFolder() { return FolderOr("XDG_DATA_HOME", ".local/share"); }
std::filesystem::path UserStateFolder() { return FolderOr("XDG_STATE_HOME", ".local/state"); }

std::vector<std::filesystem::path> SystemDataFolders() {
  return FoldersOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}
std::vector<std::filesystem::path> SystemConfigFolders() { return FoldersOr("XDG_CONFIG_DIRS", "/etc/xdg"); }

}  // namespace tarvik
