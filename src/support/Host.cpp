#include "support/Host.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "support/Uninterrupted.h"
#include "support/UserFolders.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tarvik {

namespace {

Host *g_host = nullptr;

[[noreturn]] void RaiseFileError(int error) {
  if (error == ENOENT || error == ENOTDIR) RaiseError(ErrPathNotFound);
  if (error == EACCES || error == EPERM || error == EROFS) RaiseError(ErrPermissionDenied);
  RaiseError(ErrPathFileAccess);
}

#ifdef _WIN32

void AppendAtOnce(const std::string &strPath, std::string_view strBytes) {
  std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(strPath.c_str(), "ab"), &std::fclose);
  if (!file) RaiseFileError(errno);
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  if (std::fwrite(strBytes.data(), 1, strBytes.size(), file.get()) != strBytes.size()) RaiseFileError(errno);
}

#else

/// Whether everybody can write into the folder.
bool IsForEverybody(const std::filesystem::path &folder) {
  struct stat status {};
  return ::stat(folder.c_str(), &status) == 0 && (status.st_mode & S_IWOTH) != 0;
}

/// A folder into which everybody can write may hold what somebody planted: a link to a file of this user, or a folder
/// of somebody else's on the way to the log.
void RefusePlanted(const std::filesystem::path &path) {
  for (std::filesystem::path part = path; part.has_relative_path(); part = part.parent_path()) {
    struct stat found {};
    if (!IsForEverybody(part.parent_path()) || ::lstat(part.c_str(), &found) != 0) continue;
    if (S_ISLNK(found.st_mode) || (found.st_uid != ::geteuid() && found.st_uid != 0)) RaiseFileError(EACCES);
  }
}

/// A single write to a file opened for appending, so that records of several processes do not interleave.
void AppendAtOnce(const std::string &strPath, std::string_view strBytes) {
  RefusePlanted(strPath);
  const int intFollow = IsForEverybody(std::filesystem::path(strPath).parent_path()) ? O_NOFOLLOW : 0;
  const int file = Uninterrupted([&] {
    return ::open(strPath.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | intFollow, S_IRUSR | S_IWUSR);
  });
  if (file < 0) RaiseFileError(errno);
  const ssize_t lngWritten = Uninterrupted([&] { return ::write(file, strBytes.data(), strBytes.size()); });
  const int intWhy = lngWritten < 0 ? errno : ENOSPC;
  const bool fClosed = ::close(file) == 0 || errno == EINTR;
  if (lngWritten != static_cast<ssize_t>(strBytes.size()) || !fClosed) RaiseFileError(intWhy);
}

#endif

#ifndef _WIN32

/// The folder of the log: the user's own, or that of temporary files.
std::filesystem::path LogFolder() {
  if (auto folder = UserStateFolder(); !folder.empty()) return folder;
  std::error_code error;
  const auto temporary = std::filesystem::temp_directory_path(error);
  if (error) RaiseError(ErrPathNotFound);
  return temporary;
}

#endif

}  // namespace

Host &TheHost() {
  assert(g_host && "SetHost has to run before anything else");
  return *g_host;
}

Host *InstalledHost() { return g_host; }

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
  return (LogFolder() / "tarvikvi" / "tarvikerr.txt").string();
#endif
}

void Host::AppendToFile(const std::string &strPath, std::string_view strBytes) {
  const std::filesystem::path path(strPath);
  std::error_code error;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);

  AppendAtOnce(strPath, strBytes);
}

}  // namespace tarvik
