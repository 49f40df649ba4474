#include "support/Host.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace tarvik {

namespace {

Host *g_host = nullptr;

[[noreturn]] void RaiseFileError(int error) {
  if (error == ENOENT || error == ENOTDIR) RaiseError(ErrPathNotFound);
  if (error == EACCES || error == EPERM || error == EROFS) RaiseError(ErrPermissionDenied);
  RaiseError(ErrPathFileAccess);
}

std::filesystem::path UserStateFolder() {
  if (const char *state = std::getenv("XDG_STATE_HOME"); state && *state == '/') return state;
  if (const char *home = std::getenv("HOME"); home && *home) return std::filesystem::path(home) / ".local/state";
  return std::filesystem::temp_directory_path();
}

}  // namespace

Host &TheHost() {
  assert(g_host && "SetHost has to run before anything else");
  return *g_host;
}

Host *SetHost(Host *host) {
  Host *before = g_host;
  g_host = host;
  return before;
}

std::tm Host::Now() const {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return local;
}

std::string Host::ErrorLogPath() const {
#ifdef _WIN32
  return "c:\\tarvikerr.txt";
#else
  return (UserStateFolder() / "tarvikvi" / "tarvikerr.txt").string();
#endif
}

void Host::AppendToFile(const std::string &strPath, std::string_view strBytes) {
  const std::filesystem::path path(strPath);
  std::error_code error;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);

  errno = 0;
  std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(strPath.c_str(), "ab"), &std::fclose);
  if (!file) RaiseFileError(errno);
  if (std::fwrite(strBytes.data(), 1, strBytes.size(), file.get()) != strBytes.size()) RaiseFileError(errno);
  if (std::fclose(file.release()) != 0) RaiseFileError(errno);
}

}  // namespace tarvik
