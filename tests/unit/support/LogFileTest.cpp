#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "RecordingHost.h"
#include "support/EventBoundary.h"
#include "support/Host.h"
#include "support/modErrorLog.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/// A variable of the environment as the test needs it; what it was comes back.
class Variable {
 public:
  Variable(const char *strName, const char *strValue) : m_strName(strName) {
    if (const char *before = std::getenv(strName)) m_before = before;
    Put(strValue);
  }
  Variable(const Variable &) = delete;
  Variable &operator=(const Variable &) = delete;
  ~Variable() { Put(m_before ? m_before->c_str() : nullptr); }

 private:
  void Put(const char *strValue) const { strValue ? setenv(m_strName, strValue, 1) : unsetenv(m_strName); }

  const char *m_strName;
  std::optional<std::string> m_before;
};

/// The recording host with the real files of a machine.
class FileHost : public RecordingHost {
 public:
  std::string ErrorLogPath() const override { return Host::ErrorLogPath(); }
  void AppendToFile(const std::string &strPath, std::string_view strBytes) override {
    Host::AppendToFile(strPath, strBytes);
  }
};

class LogFileTest : public testing::Test {
 protected:
  LogFileTest() { fs::create_directories(folder); }
  ~LogFileTest() override {
    std::error_code error;
    fs::remove_all(folder, error);
  }
  static Long FailureOfThePath() {
    try {
      TheHost().ErrorLogPath();
      return 0;
    } catch (const RunTimeError &error) {
      return error.Number();
    }
  }

  const fs::path folder = fs::path(testing::TempDir()) / ("tarvik-log-" + std::to_string(getpid()));
  FileHost host;
};

TEST_F(LogFileTest, TheLogStandsInTheUsersStateFolder) {
  const Variable state("XDG_STATE_HOME", nullptr), home("HOME", "/users/one");
  EXPECT_EQ(host.ErrorLogPath(), "/users/one/.local/state/tarvikvi/tarvikerr.txt");
  const Variable own("XDG_STATE_HOME", "/var/state");
  EXPECT_EQ(host.ErrorLogPath(), "/var/state/tarvikvi/tarvikerr.txt");
}

TEST_F(LogFileTest, WithoutAHomeTheLogStandsAmongTheTemporaryFiles) {
  const Variable state("XDG_STATE_HOME", nullptr), home("HOME", nullptr), temp("TMPDIR", folder.c_str());
  EXPECT_EQ(host.ErrorLogPath(), (folder / "tarvikvi/tarvikerr.txt").string());
}

TEST_F(LogFileTest, AHomeThatIsNoWholePathIsNoHome) {
  const Variable state("XDG_STATE_HOME", "state"), home("HOME", "home"), temp("TMPDIR", folder.c_str());
  EXPECT_EQ(host.ErrorLogPath(), (folder / "tarvikvi/tarvikerr.txt").string());
}

TEST_F(LogFileTest, WithoutAnyFolderThePathIsNotFound) {
  const Variable state("XDG_STATE_HOME", nullptr), home("HOME", nullptr), temp("TMPDIR", "/nonexistent");
  EXPECT_EQ(FailureOfThePath(), 76);
}

TEST_F(LogFileTest, WithoutAnyFolderAReportIsShownAndItsFailureEndsAtTheEventBoundary) {
  const Variable state("XDG_STATE_HOME", nullptr), home("HOME", nullptr), temp("TMPDIR", "/nonexistent");
  bool fWentOn = false;
  EXPECT_FALSE(RunUserEvent("cmdUpload", "Click", [&] {
    LogError("Mod", "Proc", 13, "Type mismatch");
    fWentOn = true;
  }));
  EXPECT_FALSE(fWentOn);
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box stop: Type mismatch", "box stop: Path not found"));
}

/// How often this thread has asked the system to write.
long long Writes() {
  std::ifstream io("/proc/thread-self/io");
  std::string strKey;
  for (long long lngCount = 0; io >> strKey >> lngCount;)
    if (strKey == "syscw:") return lngCount;
  return -1;
}

/// What a driver says begins no line of the log, controls no terminal that shows it and turns no writing around.
TEST_F(LogFileTest, ControlAndDirectionCharactersOfADriverStandInTheLogAsTheirCodes) {
  RecordingHost recording;
  recording.SetClock(2026, 5, 4, 12, 30);
  WriteLogRecord("Mod", "Proc", -2147221503,
                 "a\\b \xC2\xB5s\r\n  Error: 0 forged\x1B[2J \xE2\x80\xAE"
                 "desrever \xFF end\t\x7F");
  EXPECT_THAT(
      recording.TakeLines(),
      ElementsAre("log: 05/04/26 12:30\r\n  Error: -2147221503 a\\b \xC2\xB5s\\x0D\\x0A  Error: 0 forged\\x1B[2J "
                  "\\u202Edesrever \\xFF end\\x09\\x7F\r\n  Mod: Mod; Proc: Proc\r\n\r\n\r\n"));
}

TEST_F(LogFileTest, ARecordOfAnyLengthIsOneWrite) {
  const std::string strPath = (folder / "deep/er/log.txt").string();
  std::string strExpected;
  for (const std::size_t lngLength : {1u, 100u, 4096u, 5000u, 70001u}) {
    const std::string strRecord(lngLength, static_cast<char>('a' + lngLength % 26));
    const long long lngBefore = Writes();
    ASSERT_GE(lngBefore, 0) << "this system does not count writes";
    host.AppendToFile(strPath, strRecord);
    EXPECT_EQ(Writes() - lngBefore, 1) << lngLength << " bytes";
    strExpected += strRecord;
  }
  std::ifstream file(strPath, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), strExpected);
}

TEST_F(LogFileTest, ANewLogIsForItsOwnerAlone) {
  const fs::path log = folder / "log.txt";
  host.AppendToFile(log.string(), "record");
  EXPECT_EQ(fs::status(log).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LogFileTest, InASharedFolderNoLinkIsFollowed) {
  const fs::path shared = folder / "shared", own = folder / "own";
  fs::create_directories(shared);
  fs::create_directories(own);
  fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
  fs::create_symlink(own / "file", shared / "log.txt");
  fs::create_directory_symlink(own, shared / "folder");
  for (const fs::path &planted : {shared / "log.txt", shared / "folder/log.txt"}) {
    try {
      host.AppendToFile(planted.string(), "record");
      ADD_FAILURE() << planted << " is written";
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), 70);
    }
  }
  EXPECT_TRUE(fs::is_empty(own));
  // What this user made there is taken, and so is a link in a folder of this user.
  host.AppendToFile((shared / "mine/log.txt").string(), "record");
  fs::create_symlink(own / "file", folder / "log.txt");
  host.AppendToFile((folder / "log.txt").string(), "record");
  EXPECT_EQ(fs::file_size(own / "file"), 6u);
}

TEST_F(LogFileTest, ALogWhoseFolderCannotBeMadeIsAPathThatIsNotThere) {
  const fs::path file = folder / "file", lost = folder / "lost";
  std::ofstream(file) << "no folder";
  fs::create_directory_symlink(folder / "nowhere/at/all", lost);
  for (const fs::path &log : {file / "log.txt", lost / "log.txt"}) {
    try {
      host.AppendToFile(log.string(), "record");
      ADD_FAILURE() << log << " is written";
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), 76) << log;
      EXPECT_EQ(error.Description(), "Path not found");
    }
  }
}

TEST_F(LogFileTest, AFolderInPlaceOfTheLogIsAnAccessError) {
  try {
    host.AppendToFile(folder.string(), "record");
    FAIL() << "written";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 75);
  }
}

TEST_F(LogFileTest, AFullDeviceIsAnAccessError) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no such device here";
  try {
    host.AppendToFile("/dev/full", "record");
    FAIL() << "written";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 75);
  }
}

/// No file of this process grows beyond the size while the object lives; a write that would reach beyond is cut short.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t lngBytes) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{lngBytes, m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit &) = delete;
  FileSizeLimit &operator=(const FileSizeLimit &) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }

 private:
  rlimit m_before{};
};

TEST_F(LogFileTest, ARecordThatIsCutShortIsAnAccessErrorWhateverFailedBefore) {
  const std::string strPath = (folder / "log.txt").string();
  host.AppendToFile(strPath, "");
  const FileSizeLimit limit(10);
  for (const int intEarlier : {EACCES, ENOENT}) {
    fs::resize_file(strPath, 0);
    errno = intEarlier;
    try {
      host.AppendToFile(strPath, "a record of more than ten bytes");
      ADD_FAILURE() << "written whole";
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), 75) << intEarlier;
    }
    EXPECT_EQ(fs::file_size(strPath), 10u);
  }
}

TEST_F(LogFileTest, ALogThatMayBeOpenedButNotWrittenIsPermissionDenied) {
  const int file = memfd_create("log", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  if (file < 0 || fcntl(file, F_ADD_SEALS, F_SEAL_WRITE) != 0) GTEST_SKIP() << "no sealed files here";
  try {
    host.AppendToFile("/proc/self/fd/" + std::to_string(file), "record");
    ADD_FAILURE() << "written";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 70);
  }
  close(file);
}

}  // namespace
}  // namespace tarvik::test
