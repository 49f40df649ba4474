#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <set>

#include "FailingCalls.h"
#include "SetupSamples.h"
#include "settings/SetupFile.h"
#include "support/Host.h"
#include "support/RunTimeError.h"
#include "support/SettingsFile.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int Errors[] = {ENOSPC, EIO, EACCES, EINTR, FailingCalls::Short};

bool MayWait(const std::string &strCall) {
  static const std::set<std::string> calls{"open", "read", "write", "fsync", "flock", "close", "mkostemp"};
  return calls.contains(strCall);
}

/// Everything a host has to have; the files are those of the base.
class FileHost : public Host {
 public:
  FileHost() : m_before(SetHost(this)) {}
  FileHost(const FileHost &) = delete;
  FileHost &operator=(const FileHost &) = delete;
  ~FileHost() override { SetHost(m_before); }
  BoxAnswer MsgBox(const std::string &, BoxIcon, BoxButtons, const std::string &) override { return BoxAnswer::Ok; }
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  void Beep() override {}
  Integer MousePointer() const override { return 0; }
  void SetMousePointer(Integer) override {}
  std::string GetSetting(const std::string &, const std::string &, const std::string &,
                         const std::string &strDefault) override {
    return strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return '.'; }
  void DoEvents() override {}

 private:
  Host *m_before;
};

class FailingFiles : public testing::Test {
 protected:
  FailingFiles() {
    std::string strFolder = (fs::temp_directory_path() / "tarvik-files-XXXXXX").string();
    m_folder = ::mkdtemp(strFolder.data());
  }
  ~FailingFiles() override { fs::remove_all(m_folder); }

  static std::string Content(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static void Write(const fs::path &path, const std::string &strText) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << strText;
  }
  static std::ptrdiff_t OpenFiles() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  }
  static std::ptrdiff_t FilesIn(const fs::path &folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  }

  /// What a case does, and what has to hold behind it: with what was raised, empty for nothing.
  struct Steps {
    std::function<void()> arrange, act;
    std::function<void(const std::string &strRaised)> check;
  };

  void Sweep(const Steps &steps) {
    steps.arrange();
    FailingCalls::FailAt(0, 0, false);
    steps.act();
    const std::vector<std::string> arrCalls = FailingCalls::Stop();
    ASSERT_FALSE(arrCalls.empty());
    std::map<std::string, int> counts;
    for (std::size_t k = 1; k <= arrCalls.size() && !HasFailure(); ++k)
      for (const int intError : Errors)
        for (const bool fForEver : {false, true}) {
          const std::string &strCall = arrCalls[k - 1];
          const bool fCanBeShort = strCall == "write" || strCall == "read";
          if (intError == FailingCalls::Short && !fCanBeShort) continue;
          // Signals interrupt what may wait, and one that came for ever would let nothing through.
          if (intError == EINTR && (fForEver || !MayWait(strCall))) continue;
          RunOne(steps, static_cast<int>(k), strCall, intError, fForEver);
          ++counts[strCall];
        }
    Print(counts);
  }

  fs::path m_folder;

 private:
  void RunOne(const Steps &steps, int k, const std::string &strCall, int intError, bool fForEver) {
    SCOPED_TRACE("call " + std::to_string(k) + " " + strCall + ": " +
                 (intError == FailingCalls::Short ? "short" : std::strerror(intError)) +
                 (fForEver ? " for ever" : " once"));
    steps.arrange();
    const auto before = OpenFiles();
    FailingCalls::FailAt(k, intError, fForEver);
    const std::string strRaised = RaisedBy(steps.act);
    FailingCalls::Stop();
    EXPECT_EQ(OpenFiles(), before) << "a file is left open";
    steps.check(strRaised);
    if (intError == EINTR) {
      EXPECT_EQ(strRaised, "") << "a signal is no failure";
    }
  }
  static std::string RaisedBy(const std::function<void()> &act) {
    try {
      act();
      return "";
    } catch (const RunTimeError &error) {
      EXPECT_THAT(error.Number(), AnyOf(ErrPermissionDenied, ErrPathFileAccess, ErrPathNotFound, ErrFileNotFound));
      EXPECT_NE(error.Description(), "");
      return error.Description();
    }
  }
  static void Print(const std::map<std::string, int> &counts) {
    int intAll = 0;
    std::string strCalls;
    for (const auto &[strCall, intCount] : counts) {
      intAll += intCount;
      strCalls += (strCalls.empty() ? ": " : ", ") + strCall + " " + std::to_string(intCount);
    }
    std::cout << "[ files    ] " << intAll << " cases" << strCalls << std::endl;
  }
};

TEST_F(FailingFiles, ARecordOfTheLogIsThereOrItsFailureIsRaised) {
  FileHost host;
  const fs::path log = m_folder / "state" / "tarvikerr.txt";
  const std::string strRecord = "02/03/01 04:05\r\n  Error: 7 a record\r\n", strOther = "another record\r\n";
  Sweep({.arrange = [&] { Write(log, "what was there\r\n"); },
         .act = [&] { host.AppendToFile(log.string(), strRecord); },
         .check =
             [&](const std::string &strRaised) {
               const std::string strNow = Content(log);
               ASSERT_THAT(strNow, StartsWith("what was there\r\n"));
               const std::string strAdded = strNow.substr(std::strlen("what was there\r\n"));
               if (strRaised.empty())
                 EXPECT_EQ(strAdded, strRecord);
               else
                 EXPECT_THAT(strRecord, StartsWith(strAdded)) << "more than a part of the record";
               host.AppendToFile(log.string(), strOther);
               EXPECT_EQ(Content(log), strNow + strOther);
             }});
}

TEST_F(FailingFiles, TheFirstRecordOfTheLogIsThereOrItsFailureIsRaised) {
  FileHost host;
  const fs::path log = m_folder / "state" / "deep" / "tarvikerr.txt";
  Sweep({.arrange = [&] { fs::remove_all(m_folder / "state"); },
         .act = [&] { host.AppendToFile(log.string(), "record\r\n"); },
         .check =
             [&](const std::string &strRaised) {
               if (strRaised.empty()) {
                 EXPECT_EQ(Content(log), "record\r\n");
               }
             }});
}

TEST_F(FailingFiles, ASettingIsSavedOrAllSettingsAreAsTheyWere) {
  const fs::path folder = m_folder / "config", path = folder / "TarvikVI.conf";
  const std::string strBefore = "; mine\n[Config]\nUpload=All\nDownload=\n";
  const std::string strAfter = "; mine\n[Config]\nUpload=All\nDownload=All\n";
  const SettingsFile settings(path);
  Sweep({.arrange = [&] { Write(path, strBefore); },
         .act = [&] { settings.Save("Config", "Download", "All"); },
         .check =
             [&](const std::string &strRaised) {
               EXPECT_THAT(Content(path), AnyOf(strBefore, strAfter));
               if (strRaised.empty()) {
                 EXPECT_EQ(Content(path), strAfter);
               } else {
                 EXPECT_THAT(strRaised, HasSubstr(path.string()));
               }
               EXPECT_EQ(FilesIn(folder), 1) << "a file is left behind";
               settings.Save("Config", "Download", "All");
               EXPECT_EQ(Content(path), strAfter);
             }});
}

TEST_F(FailingFiles, ASettingIsReadOrItsFailureIsRaised) {
  const fs::path path = m_folder / "config" / "TarvikVI.conf";
  const SettingsFile settings(path);
  std::optional<std::string> strValue;
  Sweep({.arrange =
             [&] {
               strValue.reset();
               Write(path, "[Config]\nDownload=All\n");
             },
         .act = [&] { strValue = settings.Value("Config", "Download"); },
         .check =
             [&](const std::string &strRaised) {
               if (strRaised.empty())
                 EXPECT_EQ(strValue, "All") << "a file that could not be read counts as empty";
               else
                 EXPECT_THAT(strRaised, HasSubstr(path.string()));
               EXPECT_EQ(settings.Value("Config", "Download"), "All");
             }});
}

TEST_F(FailingFiles, ASetupIsSavedOrTheFileIsAsItWas) {
  const fs::path path = m_folder / "setup.json";
  const tarvik::Setup setup = Canonical(SampleSetup());
  Sweep({.arrange = [&] { Write(path, "what was there"); },
         .act = [&] { SaveSetup(setup, path); },
         .check =
             [&](const std::string &strRaised) {
               const std::string strNow = Content(path);
               EXPECT_TRUE(strNow == "what was there" || strNow == SetupToText(setup));
               if (strRaised.empty()) {
                 EXPECT_EQ(strNow, SetupToText(setup));
               } else {
                 EXPECT_THAT(strRaised, StartsWith("Cannot save " + path.string()));
               }
               EXPECT_EQ(FilesIn(m_folder), 1) << "a file is left behind";
               SaveSetup(setup, path);
               EXPECT_EQ(Content(path), SetupToText(setup));
             }});
}

TEST_F(FailingFiles, ASetupIsLoadedWholeOrItsFailureIsRaised) {
  const fs::path path = m_folder / "setup.json";
  const tarvik::Setup setup = Canonical(SampleSetup());
  SaveSetup(setup, path);
  const tarvik::Setup whole = LoadSetup(path);
  std::optional<tarvik::Setup> loaded;
  Sweep({.arrange = [&] { loaded.reset(); },
         .act = [&] { loaded = LoadSetup(path); },
         .check =
             [&](const std::string &strRaised) {
               EXPECT_EQ(loaded.has_value(), strRaised.empty());
               if (loaded) {
                 EXPECT_EQ(*loaded, whole);
               }
               if (!strRaised.empty()) {
                 EXPECT_THAT(strRaised, StartsWith("Cannot load " + path.string()));
               }
             }});
}

}  // namespace
}  // namespace tarvik::test
