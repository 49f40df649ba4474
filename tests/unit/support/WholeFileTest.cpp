#include "support/WholeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "support/RunTimeError.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// A folder of its own for each test.
struct WholeFile : testing::Test {
  WholeFile() {
    std::string strName = (fs::temp_directory_path() / "whole-file-XXXXXX").string();
    folder = ::mkdtemp(strName.data());
    file = folder / "a.txt";
  }
  ~WholeFile() override { fs::remove_all(folder); }

  static std::string Content(const fs::path &path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  static void Put(const fs::path &path, const std::string &strText) { std::ofstream(path) << strText; }
  std::vector<std::string> Names() const {
    std::vector<std::string> arrNames;
    for (const auto &entry : fs::directory_iterator(folder)) arrNames.push_back(entry.path().filename());
    std::ranges::sort(arrNames);
    return arrNames;
  }
  /// The failure of an action, as "75 reason"; empty when it worked.
  template <class Action>
  static std::string Failure(Action action) {
    try {
      action();
    } catch (const RunTimeError &error) {
      return std::to_string(error.Number()) + " " + error.Description();
    }
    return {};
  }
  std::string WriteFailure(FileCalls &calls, const std::string &strText = "new") {
    return Failure([&] { WriteWholeFile(file, strText, calls); });
  }

  fs::path folder, file;
};

/// The system's calls, of which one fails, or at which the process is killed.
class FailingCalls : public FileCalls {
 public:
  enum Call { CreateIt, SetModeIt, WriteIt, SyncIt, CloseIt, RenameIt, SyncFolderIt, None };
  explicit FailingCalls(Call eCall, int intError = EIO, bool fDie = false)
      : m_eCall(eCall), m_intError(intError), m_fDie(fDie) {}

  int Create(std::string &strPath, int &intFile) override {
    return Fails(CreateIt) ? m_intError : FileCalls::Create(strPath, intFile);
  }
  int SetMode(int intFile, unsigned mode) override {
    return Fails(SetModeIt) ? m_intError : FileCalls::SetMode(intFile, mode);
  }
  int Write(int intFile, std::string_view strBytes, std::size_t &written) override {
    // In halves, so that the failure meets a file that is half written.
    if (strBytes.size() == 1 && Fails(WriteIt)) return m_intError;
    return FileCalls::Write(intFile, strBytes.substr(0, (strBytes.size() + 1) / 2), written);
  }
  int Sync(int intFile) override { return Fails(SyncIt) ? m_intError : FileCalls::Sync(intFile); }
  int Close(int intFile) override {
    const int intClosed = FileCalls::Close(intFile);
    return Fails(CloseIt) ? m_intError : intClosed;
  }
  int Rename(const std::string &strFrom, const std::string &strTo) override {
    return Fails(RenameIt) ? m_intError : FileCalls::Rename(strFrom, strTo);
  }
  int SyncFolder(const std::string &strFolder) override {
    return Fails(SyncFolderIt) ? m_intError : FileCalls::SyncFolder(strFolder);
  }

 private:
  bool Fails(Call eCall) const {
    if (eCall == m_eCall && m_fDie) ::_exit(7);
    return eCall == m_eCall;
  }

  const Call m_eCall;
  const int m_intError;
  const bool m_fDie;
};

TEST_F(WholeFile, IsWrittenAndRead) {
  WriteWholeFile(file, "first");
  EXPECT_EQ(Content(file), "first");
  WriteWholeFile(file, "second");
  EXPECT_EQ(ReadWholeFile(file, 6), "second");
  WriteWholeFile(file, "");
  EXPECT_EQ(ReadWholeFile(file, 6), "");
  EXPECT_THAT(Names(), ElementsAre("a.txt"));
}

TEST_F(WholeFile, ANameWithoutAFolderStandsInThisOne) {
  const fs::path before = fs::current_path();
  fs::current_path(folder);
  WriteWholeFile("b.txt", "here");
  fs::current_path(before);
  EXPECT_EQ(Content(folder / "b.txt"), "here");
}

TEST_F(WholeFile, ShortWritesAreContinued) {
  FailingCalls calls(FailingCalls::None);
  WriteWholeFile(file, "a text of some length", calls);
  EXPECT_EQ(Content(file), "a text of some length");
}

TEST_F(WholeFile, WhicheverCallFailsTheOldFileStands) {
  for (const auto eCall : {FailingCalls::CreateIt, FailingCalls::SetModeIt, FailingCalls::WriteIt, FailingCalls::SyncIt,
                           FailingCalls::CloseIt, FailingCalls::RenameIt}) {
    Put(file, "old");
    FailingCalls calls(eCall, ENOSPC);
    EXPECT_EQ(WriteFailure(calls), "75 No space left on device") << eCall;
    EXPECT_EQ(Content(file), "old") << eCall;
    EXPECT_THAT(Names(), ElementsAre("a.txt")) << eCall;
  }
}

TEST_F(WholeFile, NoFileIsLeftOpenWhicheverCallFails) {
  const auto open = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()); };
  const auto before = open();
  for (int i = FailingCalls::CreateIt; i <= FailingCalls::None; ++i) {
    FailingCalls calls(static_cast<FailingCalls::Call>(i));
    WriteFailure(calls);
    EXPECT_EQ(open(), before) << "call " << i;
  }
}

TEST_F(WholeFile, WhatTheSystemRefusesIsToldByItsNumber) {
  FileCalls calls;
  std::size_t written = 0;
  EXPECT_EQ(calls.SetMode(-1, 0600), EBADF);
  EXPECT_EQ(calls.Write(-1, "new", written), EBADF);
  EXPECT_EQ(calls.Sync(-1), EBADF);
  EXPECT_EQ(calls.Close(-1), EBADF);
  EXPECT_EQ(calls.Rename(file.string(), (folder / "b.txt").string()), ENOENT);
  EXPECT_EQ(calls.SyncFolder((folder / "nowhere").string()), ENOENT);
}

TEST_F(WholeFile, WithoutASyncOfTheFolderTheUserIsToldThatTheFileMayNotLast) {
  Put(file, "old");
  FailingCalls calls(FailingCalls::SyncFolderIt);
  EXPECT_EQ(WriteFailure(calls), "75 Input/output error");
  EXPECT_EQ(Content(file), "new");
}

TEST_F(WholeFile, AProcessThatDiesAtAnyCallLeavesTheOldFileOrTheNewOne) {
  for (const auto eCall : {FailingCalls::CreateIt, FailingCalls::SetModeIt, FailingCalls::WriteIt, FailingCalls::SyncIt,
                           FailingCalls::CloseIt, FailingCalls::RenameIt, FailingCalls::SyncFolderIt}) {
    Put(file, "old");
    const pid_t child = ::fork();
    if (child == 0) {
      FailingCalls calls(eCall, EIO, true);
      WriteWholeFile(file, "new", calls);
      ::_exit(0);
    }
    int intStatus = 0;
    ::waitpid(child, &intStatus, 0);
    EXPECT_EQ(WEXITSTATUS(intStatus), 7) << eCall;
    EXPECT_EQ(Content(file), eCall == FailingCalls::SyncFolderIt ? "new" : "old") << eCall;
  }
}

TEST_F(WholeFile, ADiskThatIsFullLeavesTheOldFile) {
  Put(file, "old");
  const pid_t child = ::fork();
  if (child == 0) {
    // The system itself refuses to write further.
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const std::string strFailure = Failure([&] { WriteWholeFile(file, std::string(10000, 'x')); });
    ::_exit(strFailure == "75 File too large" ? 7 : 8);
  }
  int intStatus = 0;
  ::waitpid(child, &intStatus, 0);
  EXPECT_EQ(WEXITSTATUS(intStatus), 7);
  EXPECT_EQ(Content(file), "old");
  EXPECT_THAT(Names(), ElementsAre("a.txt"));
}

TEST_F(WholeFile, KeepsThePermissionsOfTheFileBefore) {
  Put(file, "old");
  fs::permissions(file, fs::perms(0640));
  WriteWholeFile(file, "new");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(WholeFile, ANewFileHasThePermissionsThatTheUserGivesToFiles) {
  const mode_t before = ::umask(027);
  WriteWholeFile(file, "new");
  ::umask(before);
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST_F(WholeFile, AWriteProtectedFileIsNotReplaced) {
  if (::geteuid() == 0) {
    // The system's administrator may write everywhere, so somebody else has to try.
    fs::permissions(folder, fs::perms(0777));
    Put(file, "old");
    fs::permissions(file, fs::perms(0444));
    const pid_t child = ::fork();
    if (child == 0) {
      if (::setuid(65534) != 0) ::_exit(9);
      ::_exit(Failure([&] { WriteWholeFile(file, "new"); }) == "70 Permission denied" ? 7 : 8);
    }
    int intStatus = 0;
    ::waitpid(child, &intStatus, 0);
    EXPECT_EQ(WEXITSTATUS(intStatus), 7);
  } else {
    Put(file, "old");
    fs::permissions(file, fs::perms(0444));
    EXPECT_EQ(Failure([&] { WriteWholeFile(file, "new"); }), "70 Permission denied");
  }
  EXPECT_EQ(Content(file), "old");
}

TEST_F(WholeFile, ALinkStaysALinkToTheNewFile) {
  Put(file, "old");
  fs::create_symlink("a.txt", folder / "link");
  fs::create_symlink("link", folder / "link2");
  WriteWholeFile(folder / "link2", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link2"));
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(Content(file), "new");
}

TEST_F(WholeFile, ALinkToNothingGetsItsFile) {
  fs::create_symlink("later.txt", folder / "link");
  WriteWholeFile(folder / "link", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(Content(folder / "later.txt"), "new");
}

TEST_F(WholeFile, WhatIsNoFileIsNotReplaced) {
  fs::create_symlink("loop", folder / "loop");
  fs::create_directory(folder / "folder");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  const auto failure = [&](const fs::path &path) { return Failure([&] { WriteWholeFile(path, "new"); }); };
  EXPECT_EQ(failure(folder / "loop"), "75 Too many levels of symbolic links");
  EXPECT_EQ(failure(folder / "folder"), "75 Is a directory");
  EXPECT_EQ(failure(folder / "pipe"), "75 It is no regular file");
  EXPECT_EQ(failure("/dev/full"), "75 It is no regular file");
  EXPECT_EQ(failure(folder / "nowhere" / "a.txt"), "76 No such file or directory");
  EXPECT_THAT(Names(), ElementsAre("folder", "loop", "pipe"));
}

TEST_F(WholeFile, WhatCannotBeReadIsToldWithItsReason) {
  Put(file, "12345");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  const auto failure = [&](const fs::path &path) { return Failure([&] { ReadWholeFile(path, 4); }); };
  EXPECT_EQ(failure(folder / "nothing"), "53 There is no such file");
  EXPECT_EQ(failure(folder), "75 It is a folder");
  EXPECT_EQ(failure(folder / "pipe"), "75 It is no regular file");
  EXPECT_EQ(failure("/dev/zero"), "75 It is no regular file");
  EXPECT_EQ(failure(file), "75 It is larger than 0 KiB");
}

}  // namespace
}  // namespace tarvik::test
