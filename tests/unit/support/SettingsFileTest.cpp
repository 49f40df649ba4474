#include "support/SettingsFile.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "support/RunTimeError.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;

class SettingsFileTest : public testing::Test {
 protected:
  SettingsFileTest() { fs::create_directories(folder); }
  ~SettingsFileTest() override {
    std::error_code error;
    fs::remove_all(folder, error);
  }
  void Write(const std::string &strText) const { std::ofstream(path, std::ios::binary) << strText; }
  std::string Text() const {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  template <class Action>
  static std::string Failure(Action action) {
    try {
      action();
      return "no failure";
    } catch (const RunTimeError &error) {
      return std::to_string(error.Number()) + " " + error.Description();
    }
  }
  std::string FailureOfReading() const {
    return Failure([&] { file.Value("LastUsed", "ServerURL"); });
  }

  const fs::path folder = fs::path(testing::TempDir()) / ("tarvik-settings-" + std::to_string(getpid()));
  const fs::path path = folder / "App/App.conf";
  const SettingsFile file{path};
};

TEST_F(SettingsFileTest, AFileThatIsNotThereHoldsNothingAndIsMadeByTheFirstSetting) {
  EXPECT_FALSE(file.Value("LastUsed", "ServerURL"));
  file.Save("LastUsed", "ServerURL", "lab");
  EXPECT_EQ(Text(), "[LastUsed]\nServerURL=lab\n");
  EXPECT_EQ(file.Value("LastUsed", "ServerURL"), "lab");
  EXPECT_FALSE(file.Value("Config", "ServerURL"));
}

TEST_F(SettingsFileTest, AnEmptyTextIsStoredAndNotNothing) {
  file.Save("LastUsed", "ServerURL", "");
  EXPECT_EQ(Text(), "[LastUsed]\nServerURL=\n");
  EXPECT_EQ(file.Value("LastUsed", "ServerURL"), "");
}

/// As the toolkit's own store writes them.
TEST_F(SettingsFileTest, TextsStandAsTheToolkitWritesThem) {
  const std::pair<std::string, std::string> arrTexts[] = {
      {"1", "1"},
      {"tarvik://h:80/a;b, c=\"x\" \\ \n\t", R"("tarvik://h:80/a;b, c=\"x\" \\ \n\t")"},
      {" pad ", "\" pad \""},
      {"@at", "@@at"},
      {"M\xC3\xBC\xE2\x82\xAC", "M\xC3\xBC\xE2\x82\xAC"},
      {"\x01"
       "9",
       R"(\x1\x39)"},
      {"a%b;c", "\"a%b;c\""},
      {"\x1f\x30\x41\x46\x47\x61\x66\x67\x39", R"(\x1f\x30\x41\x46Gafg9)"},
      {"\x0E\x61\x66\x67", R"(\xe\x61\x66g)"},
  };
  for (const auto &[strText, strLine] : arrTexts) {
    SCOPED_TRACE(strLine);
    fs::remove(path);
    file.Save("Config", "A", strText);
    EXPECT_EQ(Text(), "[Config]\nA=" + strLine + "\n");
    EXPECT_EQ(file.Value("Config", "A"), strText);
  }
  file.Save("Sec tion", "k y", "x");
  EXPECT_THAT(Text(), EndsWith("\n\n[Sec%20tion]\nk%20y=x\n"));
  EXPECT_EQ(file.Value("Sec tion", "k y"), "x");
}

TEST_F(SettingsFileTest, NamesCarryTheirOtherCharactersAsTwoHexadecimalDigits) {
  file.Save("azAZ09_-./", "\x0F:@{[`\x7F", "x");
  EXPECT_EQ(Text(), "[azAZ09_-.%2f]\n%0f%3a%40%7b%5b%60%7f=x\n");
  EXPECT_EQ(file.Value("azAZ09_-./", "\x0F:@{[`\x7F"), "x");
  // As others may write them; what is no such number stands for itself.
  Write("[Config]\na%2F%aFb=upper\n%4g=1\n%g4=2\n%4=3\n%=4\n%%41=5\nA%20=6\n%:9=7\n%@1=8\n%`1=9\n");
  EXPECT_EQ(file.Value("Config", "a/\xAF\x62"), "upper");
  const std::pair<const char *, const char *> arrNames[] = {{"%4g", "1"}, {"%g4", "2"}, {"%4", "3"},
                                                            {"%", "4"},   {"%A", "5"},  {"A ", "6"},
                                                            {"%:9", "7"}, {"%@1", "8"}, {"%`1", "9"}};
  for (const auto &[strName, strValue] : arrNames) EXPECT_EQ(file.Value("Config", strName), strValue) << strName;
}

TEST_F(SettingsFileTest, NumbersOfAnOlderToolkitAreUnitsOfUtf16) {
  fs::create_directories(path.parent_path());
  Write("[Config]\nA=M\\xfc \\x20ac\\x41\n");
  EXPECT_EQ(file.Value("Config", "A"),
            "M\xC3\xBC \xE2\x82\xAC"
            "A");
}

TEST_F(SettingsFileTest, WhatSomebodyElseWroteStaysAsItStands) {
  fs::create_directories(path.parent_path());
  Write("; mine\n[Config]\nUpload=All\nwindow=@ByteArray(\\x1\\xd9\\0)\n\n[LastUsed]\r\nServerURL = \"a, b\" \n");
  EXPECT_EQ(file.Value("LastUsed", "ServerURL"), "a, b");
  file.Save("Config", "Upload", "Current");
  file.Save("Config", "Download", "All");
  EXPECT_EQ(Text(),
            "; mine\n[Config]\nUpload=Current\nwindow=@ByteArray(\\x1\\xd9\\0)\nDownload=All\n\n[LastUsed]\n"
            "ServerURL = \"a, b\" \n");
}

TEST_F(SettingsFileTest, OfTwoLinesForOneSettingTheLastCounts) {
  fs::create_directories(path.parent_path());
  Write("[Config]\nUpload=All\nUpload=None\n");
  EXPECT_EQ(file.Value("Config", "Upload"), "None");
  file.Save("Config", "Upload", "Some");
  EXPECT_EQ(file.Value("Config", "Upload"), "Some");
}

TEST_F(SettingsFileTest, GarbageIsAFailureOfReadingThatNamesItsLineAndIsNotWrittenOver) {
  fs::create_directories(path.parent_path());
  const std::pair<std::string, int> arrGarbage[] = {
      {"[Config]\nUpload=All\nno setting at all\n", 3},
      {std::string("\x7F\x45LF\x02\x00\x01=", 8), 1},
      {"[Config\nUpload=All\n", 1},
      {"[LastUsed]\nServerURL=\"open\n", 2},
      {"[LastUsed]\n=value\n", 2},
      {"[LastUsed]\nServerURL=open\\\n", 2},
  };
  for (const auto &[strText, intLine] : arrGarbage) {
    SCOPED_TRACE(strText);
    Write(strText);
    const std::string strExpected =
        "75 Cannot read the settings file " + path.string() + ": line " + std::to_string(intLine) + " is no setting";
    EXPECT_EQ(FailureOfReading(), strExpected);
    EXPECT_EQ(Failure([&] { file.Save("LastUsed", "ServerURL", "lab"); }), strExpected);
    EXPECT_EQ(Text(), strText);
  }
}

TEST_F(SettingsFileTest, AFolderInItsPlaceIsAFailureOfReading) {
  fs::create_directories(path);
  EXPECT_EQ(FailureOfReading(), "75 Cannot read the settings file " + path.string() + ": it is a folder");
}

TEST_F(SettingsFileTest, WhatCannotBeOpenedIsAFailureOfReading) {
  fs::create_directories(path.parent_path());
  // A socket: not even the administrator opens it as a file.
  ASSERT_EQ(mknod(path.c_str(), S_IFSOCK | 0600, 0), 0);
  EXPECT_EQ(FailureOfReading(), "75 Cannot read the settings file " + path.string() + ": no access");
}

TEST_F(SettingsFileTest, AFileThatIsALinkStaysOneAndKeepsItsAccess) {
  fs::create_directories(path.parent_path());
  const fs::path kept = folder / "kept.conf";
  std::ofstream(kept) << "[Config]\nUpload=All\n";
  fs::permissions(kept, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(kept, path);
  file.Save("Config", "Upload", "None");
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(SettingsFile(kept).Value("Config", "Upload"), "None");
  EXPECT_EQ(fs::status(kept).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2) << "nothing is left over";
}

TEST_F(SettingsFileTest, WithoutAHomeNothingIsStoredAndAWriteFails) {
  const char *home = std::getenv("HOME"), *config = std::getenv("XDG_CONFIG_HOME");
  const std::string strHome = home ? home : "", strConfig = config ? config : "";
  unsetenv("HOME");
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_FALSE(SettingsFile::Of("App").Value("LastUsed", "ServerURL"));
  EXPECT_EQ(Failure([] { SettingsFile::Of("App").Save("LastUsed", "ServerURL", "lab"); }),
            "76 Cannot write the settings: there is no folder for the user's configuration");
  if (home) setenv("HOME", strHome.c_str(), 1);
  if (config) setenv("XDG_CONFIG_HOME", strConfig.c_str(), 1);
}

}  // namespace
}  // namespace tarvik::test
