#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvik {

/// The system calls by which a file is put in the place of another one, in the order of their use. Each answers 0, or
/// the error number. Tests make them fail.
class FileCalls {
 public:
  virtual ~FileCalls() = default;
  /// Makes a new file that only this user can read; the six X at the end of the name are replaced.
  virtual int Create(std::string &strPath, int &intFile);
  virtual int SetMode(int intFile, unsigned mode);
  /// Answers how many bytes were written, which may be fewer than asked for.
  virtual int Write(int intFile, std::string_view strBytes, std::size_t &written);
  virtual int Sync(int intFile);
  virtual int Close(int intFile);
  virtual int Rename(const std::string &strFrom, const std::string &strTo);
  /// Makes the new name of the file last.
  virtual int SyncFolder(const std::string &strFolder);
  virtual void Remove(const std::string &strPath);
};

/// Puts a whole new file with these bytes in the place of the one before, so that nobody ever meets half of it: neither
/// a reader, nor the user after a crash or with a full disk. It keeps the permissions of the file before; a symbolic
/// link stays one and its file is replaced. What is no regular file, or is write protected, is not replaced. Fails with
/// RunTimeError 70, 75 or 76, whose description is the reason alone: "No space left on device". The file before is then
/// as it was; only where the folder's own sync fails the new one may stand already.
void WriteWholeFile(const std::filesystem::path &path, std::string_view strBytes);
void WriteWholeFile(const std::filesystem::path &path, std::string_view strBytes, FileCalls &calls);

/// All bytes of a regular file of at most `most` bytes. RunTimeError 53, 70 or 75 with the reason alone.
std::string ReadWholeFile(const std::filesystem::path &path, std::size_t most);

}  // namespace tarvik
