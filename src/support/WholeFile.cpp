#include "support/WholeFile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "support/RunTimeError.h"
#include "support/Uninterrupted.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tarvik {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void Fail(std::int32_t lngNumber, const std::string &strWhy) { throw RunTimeError(lngNumber, strWhy); }

[[noreturn]] void FailWith(int intError) {
  const std::int32_t lngNumber = intError == EACCES || intError == EPERM || intError == EROFS ? ErrPermissionDenied
                                 : intError == ENOENT || intError == ENOTDIR                  ? ErrPathNotFound
                                                                                              : ErrPathFileAccess;
  Fail(lngNumber, std::strerror(intError));
}

/// The file behind a chain of links, which may not exist yet.
fs::path BehindLinks(fs::path path) {
  std::error_code error;
  for (int intLinks = 0; fs::is_symlink(fs::symlink_status(path, error)); ++intLinks) {
    if (intLinks == 40) FailWith(ELOOP);
    const fs::path link = fs::read_symlink(path, error);
    if (error) FailWith(error.value());
    path = path.parent_path() / link;
  }
  return path;
}

}  // namespace

#ifdef _WIN32

int FileCalls::Create(std::string &, int &) { return ENOSYS; }
int FileCalls::SetMode(int, unsigned) { return ENOSYS; }
int FileCalls::Write(int, std::string_view, std::size_t &) { return ENOSYS; }
int FileCalls::Sync(int) { return ENOSYS; }
int FileCalls::Close(int) { return ENOSYS; }
int FileCalls::Rename(const std::string &, const std::string &) { return ENOSYS; }
int FileCalls::SyncFolder(const std::string &) { return ENOSYS; }
void FileCalls::Remove(const std::string &) {}

void WriteWholeFile(const fs::path &path, std::string_view strBytes, FileCalls &) {
  const fs::path target = BehindLinks(path), fresh = target.string() + ".new";
  std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
  file.write(strBytes.data(), static_cast<std::streamsize>(strBytes.size()));
  file.close();
  std::error_code error;
  if (file) fs::rename(fresh, target, error);
  if (file && !error) return;
  fs::remove(fresh, error);
  FailWith(EIO);
}

#else

namespace {

int ErrorOf(int intResult) { return intResult < 0 ? errno : 0; }

/// The permissions of the file that is replaced, or those that a new file gets.
unsigned ModeOf(const fs::path &target) {
  struct stat before {};
  if (::stat(target.c_str(), &before) != 0) {
    if (errno != ENOENT) FailWith(errno);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
  }
  if (S_ISDIR(before.st_mode)) FailWith(EISDIR);
  if (!S_ISREG(before.st_mode)) Fail(ErrPathFileAccess, "It is no regular file");
  // A rename asks for the folder's permission alone and would replace a file that its owner has protected.
  if (::access(target.c_str(), W_OK) != 0) FailWith(errno);
  return before.st_mode & 0777;
}

/// A file under a name of its own, which is removed unless it was put in its place.
class FreshFile {
 public:
  FreshFile(FileCalls &calls, const fs::path &target) : m_calls(calls), m_strPath(target.string() + ".XXXXXX") {
    if (const int intError = m_calls.Create(m_strPath, m_intFile)) FailWith(intError);
  }
  FreshFile(const FreshFile &) = delete;
  FreshFile &operator=(const FreshFile &) = delete;
  ~FreshFile() {
    if (m_intFile >= 0) m_calls.Close(m_intFile);
    if (!m_strPath.empty()) m_calls.Remove(m_strPath);
  }

  void Fill(std::string_view strBytes, unsigned mode) {
    Check(m_calls.SetMode(m_intFile, mode));
    while (!strBytes.empty()) {
      std::size_t written = 0;
      Check(m_calls.Write(m_intFile, strBytes, written));
      strBytes.remove_prefix(written);
    }
    Check(m_calls.Sync(m_intFile));
    // Network file systems tell a full disk at the close.
    Check(m_calls.Close(std::exchange(m_intFile, -1)));
  }
  void PutInPlaceOf(const std::string &strTarget) {
    Check(m_calls.Rename(m_strPath, strTarget));
    m_strPath.clear();
  }

 private:
  static void Check(int intError) {
    if (intError != 0) FailWith(intError);
  }

  FileCalls &m_calls;
  std::string m_strPath;
  int m_intFile = -1;
};

}  // namespace

int FileCalls::Create(std::string &strPath, int &intFile) {
  // An interrupted call has used the pattern up.
  const std::string strPattern = strPath;
  intFile = Uninterrupted([&] {
    strPath = strPattern;
    return ::mkostemp(strPath.data(), O_CLOEXEC);
  });
  return ErrorOf(intFile);
}
int FileCalls::SetMode(int intFile, unsigned mode) { return ErrorOf(::fchmod(intFile, mode)); }
int FileCalls::Write(int intFile, std::string_view strBytes, std::size_t &written) {
  const ssize_t count = Uninterrupted([&] { return ::write(intFile, strBytes.data(), strBytes.size()); });
  if (count < 0) return errno;
  written = static_cast<std::size_t>(count);
  return 0;
}
int FileCalls::Sync(int intFile) {
  return ErrorOf(Uninterrupted([&] { return ::fsync(intFile); }));
}
int FileCalls::Close(int intFile) {
  const int intError = ErrorOf(::close(intFile));
  return intError == EINTR ? 0 : intError;
}
int FileCalls::Rename(const std::string &strFrom, const std::string &strTo) {
  return ErrorOf(::rename(strFrom.c_str(), strTo.c_str()));
}
int FileCalls::SyncFolder(const std::string &strFolder) {
  const int intFolder = Uninterrupted([&] { return ::open(strFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (intFolder < 0) return errno;
  const int intError = ErrorOf(Uninterrupted([&] { return ::fsync(intFolder); }));
  ::close(intFolder);
  // Some file systems have no sync of a folder, and keep its order without one.
  return intError == EINVAL ? 0 : intError;
}
void FileCalls::Remove(const std::string &strPath) { ::unlink(strPath.c_str()); }

void WriteWholeFile(const fs::path &path, std::string_view strBytes, FileCalls &calls) {
  const fs::path target = BehindLinks(path), folder = target.parent_path();
  const unsigned mode = ModeOf(target);
  // Before the file is replaced, so that no lack of memory tells a failure behind it.
  const std::string strTarget = target.string(), strFolder = folder.empty() ? "." : folder.string();
  FreshFile fresh(calls, target);
  fresh.Fill(strBytes, mode);
  fresh.PutInPlaceOf(strTarget);
  if (const int intError = calls.SyncFolder(strFolder)) FailWith(intError);
}

#endif

void WriteWholeFile(const fs::path &path, std::string_view strBytes) {
  FileCalls calls;
  WriteWholeFile(path, strBytes, calls);
}

std::string ReadWholeFile(const fs::path &path, std::size_t most) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) Fail(ErrFileNotFound, "There is no such file");
  if (fs::is_directory(status)) Fail(ErrPathFileAccess, "It is a folder");
  if (error) FailWith(error.value());
  // A pipe or a device may have no end.
  if (!fs::is_regular_file(status)) Fail(ErrPathFileAccess, "It is no regular file");
  std::ifstream file(path, std::ios::binary);
  if (!file) FailWith(errno != 0 ? errno : EACCES);
  std::string strBytes;
  // By read, which keeps a failure of the system in the stream's state; an iterator would let it out as an exception.
  for (std::array<char, 4096> arrPart{}; file.read(arrPart.data(), arrPart.size()) || file.gcount() > 0;) {
    strBytes.append(arrPart.data(), static_cast<std::size_t>(file.gcount()));
    if (strBytes.size() > most) Fail(ErrPathFileAccess, "It is larger than " + std::to_string(most / 1024) + " KiB");
  }
  if (file.bad()) FailWith(EIO);
  return strBytes;
}

}  // namespace tarvik
