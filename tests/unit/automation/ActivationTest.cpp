#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "automation/Activation.h"
#include "automation/ErrorInfo.h"
#include "automation/Object.h"
#include "support/RunTimeError.h"

namespace tarvik::automation {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char *ProgId = "Bench.Driver";

/// A user's data folder of its own for the manifests of one test.
class ActivationTest : public testing::Test {
 protected:
  ActivationTest() {
    m_folder = fs::temp_directory_path() / ("tarvik-activation-" + std::to_string(::getpid()));
    setenv("XDG_DATA_HOME", m_folder.c_str(), 1);
    setenv("XDG_DATA_DIRS", (m_folder / "system").c_str(), 1);
    fs::create_directories(UserManifestFolder());
  }
  ~ActivationTest() override {
    ChooseDriver(ProgId, "");
    std::error_code error;
    fs::remove_all(m_folder, error);
  }
  std::string Manifest() const { return (UserManifestFolder() / (std::string(ProgId) + ".driver")).string(); }
  void WriteManifest(const std::string &strText) const { std::ofstream(Manifest()) << strText; }
  void WriteNamed(const char *strName, const std::string &strText) const {
    fs::create_directories(UserManifestFolder() / ProgId);
    std::ofstream(UserManifestFolder() / ProgId / (std::string(strName) + ".driver")) << strText;
  }
  RunTimeError Failure(const std::string &strServer = {}) const {
    try {
      CreateObject(ProgId, strServer);
    } catch (const RunTimeError &error) {
      return error;
    }
    return RunTimeError(0, "no failure");
  }

  fs::path m_folder;
};

TEST_F(ActivationTest, AMissingManifestNamesTheFilesThatWereTried) {
  const RunTimeError error = Failure();
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr("no driver manifest found"), HasSubstr(Manifest()),
                                         HasSubstr("system/tarvikvi/drivers/Bench.Driver.driver")));
}

TEST_F(ActivationTest, DriversWithANameAreListedOnceEachInOrder) {
  EXPECT_THAT(DriversOf(ProgId), IsEmpty());
  const fs::path system = m_folder / "system/tarvikvi/drivers" / ProgId;
  WriteNamed("scpi", DRIVER_FAILING);
  WriteNamed("bench", DRIVER_FAILING);
  fs::create_directories(system);
  std::ofstream(system / "scpi.driver") << "elsewhere";
  std::ofstream(system / "another.driver") << "elsewhere";
  std::ofstream(system / "read.me") << "no manifest";
  std::ofstream(system / "odd name.driver") << "nobody could choose it";
  EXPECT_THAT(DriversOf(ProgId), ElementsAre("another", "bench", "scpi"));
  EXPECT_THAT(DriversOf("../" + std::string(ProgId)), IsEmpty());
}

TEST_F(ActivationTest, AChosenDriverTakesThePlaceOfTheOneWithoutAName) {
  WriteManifest(DRIVER_WITHOUT_EXPORT);
  WriteNamed("bench", DRIVER_FAILING);
  RegisterClass(ProgId, [] { return Ref<IUnknown>(); });
  EXPECT_EQ(Failure().Description(), "no failure") << "what is registered comes first";
  ChooseDriver(ProgId, "bench");
  EXPECT_EQ(ChosenDriver(ProgId), "bench");
  EXPECT_THAT(Failure().Description(), HasSubstr(DRIVER_FAILING));
  RegisterClass(ProgId, {});
  EXPECT_THAT(Failure().Description(), HasSubstr(DRIVER_FAILING));
  ChooseDriver(ProgId, "");
  EXPECT_THAT(Failure().Description(), HasSubstr("does not export DllGetClassObject"));
}

TEST_F(ActivationTest, AChosenDriverThatIsNotInstalledNamesThoseThatAre) {
  WriteNamed("scpi", DRIVER_FAILING);
  WriteNamed("bench", DRIVER_FAILING);
  ChooseDriver(ProgId, "benhc");
  EXPECT_THAT(Failure().Description(), AllOf(HasSubstr(std::string(ProgId) + "/benhc.driver"),
                                             EndsWith("; drivers to choose from: bench, scpi")));
  ChooseDriver(ProgId, "../benhc");
  EXPECT_EQ(Failure().Description(), "Cannot create Bench.Driver: \"../benhc\" cannot be the name of a driver");
}

TEST_F(ActivationTest, ANameThatLeadsOutOfTheManifestFoldersIsNoProgId) {
  const fs::path outside = m_folder / "outside";
  std::ofstream(outside.string() + ".driver") << DRIVER_FAILING;
  const std::string arrNames[] = {
      outside.string(),     "../../outside", "", ".hidden", "Bench Driver", std::string("Bench\0Driver", 12),
      std::string(201, 'a')};
  for (const std::string &strName : arrNames) {
    SCOPED_TRACE(strName);
    try {
      CreateObject(strName, "");
      ADD_FAILURE() << "created";
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), 429);
      EXPECT_EQ(error.Description(), "Cannot create an object: the name is no ProgID");
    }
  }
}

TEST(ProgId, HasUpToTwoHundredLettersDigitsDotsUnderscoresAndHyphens) {
  EXPECT_TRUE(IsProgId("KolvenAtl.Kolven"));
  EXPECT_TRUE(IsProgId("a-Z_0.9"));
  EXPECT_TRUE(IsProgId(std::string(200, 'a')));
  EXPECT_FALSE(IsProgId(std::string(201, 'a')));
  EXPECT_FALSE(IsProgId(".a"));
  EXPECT_FALSE(IsProgId("a/b"));
  EXPECT_FALSE(IsProgId(""));
}

TEST_F(ActivationTest, AnEmptyManifestIsNamed) {
  WriteManifest("");
  EXPECT_THAT(Failure().Description(), AllOf(HasSubstr(Manifest()), HasSubstr("is empty or cannot be read")));
}

TEST_F(ActivationTest, AManifestWithABlankLineNamesNoLibrary) {
  WriteManifest("   \n");
  EXPECT_THAT(Failure().Description(), AllOf(HasSubstr(Manifest()), HasSubstr("names no library")));
}

TEST_F(ActivationTest, AManifestMayEndItsLineAsAnySystemDoes) {
  for (const char *strEnd : {"", "\n", "\r\n", " \r\n", "\r"}) {
    WriteManifest(DRIVER_FAILING + std::string(strEnd));
    EXPECT_THAT(Failure().Description(), HasSubstr(std::string(DRIVER_FAILING) + " gives no class factory"));
  }
  WriteManifest("\r\n");
  EXPECT_THAT(Failure().Description(), EndsWith(" names no library"));
}

TEST_F(ActivationTest, WhatOthersCanWriteIsNotLoaded) {
  const fs::path library = m_folder / "driver.so";
  fs::copy_file(DRIVER_FAILING, library);
  WriteManifest(library.string());
  const auto expectRefused = [&](const fs::path &path, fs::perms added) {
    fs::permissions(path, added, fs::perm_options::add);
    EXPECT_EQ(Failure().Description(), "Cannot create Bench.Driver: others can write " + path.string() +
                                           "; chmod o-w \"" + path.string() + "\" mends it");
    fs::permissions(path, added, fs::perm_options::remove);
  };
  expectRefused(library, fs::perms::others_write);
  expectRefused(m_folder, fs::perms::others_write);
  expectRefused(Manifest(), fs::perms::others_write);
  EXPECT_THAT(Failure().Description(), testing::Not(HasSubstr("others can write")));
}

TEST_F(ActivationTest, WithoutAHomeFolderNothingIsLookedForInTheCurrentOne) {
  const fs::path before = fs::current_path();
  const fs::path below = m_folder / ".local/share/tarvikvi/drivers";
  fs::create_directories(below);
  for (const fs::path &folder : {m_folder, below}) std::ofstream(folder / "Bench.Driver.driver") << DRIVER_FAILING;
  fs::current_path(m_folder);
  const char *strHome = getenv("HOME");
  const std::string strKept = strHome ? strHome : "";
  unsetenv("XDG_DATA_HOME");
  for (const char *strValue : {"", ".", "relative"}) {
    setenv("HOME", strValue, 1);
    EXPECT_THAT(Failure().Description(), HasSubstr("no driver manifest found")) << strValue;
  }
  unsetenv("HOME");
  EXPECT_THAT(Failure().Description(), HasSubstr("no driver manifest found"));
  setenv("HOME", strKept.c_str(), 1);
  fs::current_path(before);
}

TEST_F(ActivationTest, AMissingLibraryIsNamedTogetherWithItsManifest) {
  WriteManifest("absent.so\r\n");
  EXPECT_THAT(Failure().Description(), AllOf(HasSubstr((UserManifestFolder() / "absent.so").string()),
                                             HasSubstr(Manifest()), HasSubstr("cannot be loaded")));
}

TEST_F(ActivationTest, ALibraryWithoutTheExportIsNoDriver) {
  WriteManifest(DRIVER_WITHOUT_EXPORT);
  EXPECT_THAT(Failure().Description(),
              AllOf(HasSubstr(DRIVER_WITHOUT_EXPORT), HasSubstr("does not export DllGetClassObject")));
}

TEST_F(ActivationTest, ADriverThatRefusesIsQuotedWithItsOwnWords) {
  WriteManifest(DRIVER_FAILING);
  const RunTimeError error = Failure();
  EXPECT_EQ(error.Number(), StatusClassNotAvailable);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(DRIVER_FAILING), HasSubstr("the licence file is missing")));
}

TEST_F(ActivationTest, ADriverThatRefusesWithoutWordsShowsItsStatusInEightHexadecimalDigits) {
  WriteManifest(DRIVER_SILENT);
  SetErrorInfo("left by another library");
  const RunTimeError error = Failure();
  EXPECT_EQ(error.Number(), StatusClassNotAvailable);
  EXPECT_THAT(error.Description(), EndsWith("gives no class factory: Automation error 80040111"));
}

/// No folder of the user is known: no home, or one that names no place on the whole machine.
class HomelessActivationTest : public ActivationTest, public testing::WithParamInterface<const char *> {
 protected:
  HomelessActivationTest() {
    if (const char *home = std::getenv("HOME")) m_strHome = home;
    unsetenv("XDG_DATA_HOME");
    if (*GetParam())
      setenv("HOME", GetParam(), 1);
    else
      unsetenv("HOME");
    // Whoever can write here could name a library of his own.
    m_before = fs::current_path();
    const fs::path planted = m_folder / GetParam() / ".local/share/tarvikvi/drivers";
    fs::create_directories(planted);
    std::ofstream(planted / (std::string(ProgId) + ".driver")) << DRIVER_FAILING;
    fs::current_path(m_folder);
  }
  ~HomelessActivationTest() override {
    fs::current_path(m_before);
    if (m_strHome) setenv("HOME", m_strHome->c_str(), 1);
  }

  std::optional<std::string> m_strHome;
  fs::path m_before;
};

TEST_P(HomelessActivationTest, NoDriverIsLookedForRelativeToTheCurrentFolder) {
  EXPECT_TRUE(UserManifestFolder().empty());
  for (const fs::path &folder : ManifestFolders()) EXPECT_TRUE(folder.is_absolute()) << folder;
  const RunTimeError error = Failure();
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(error.Description(), HasSubstr("no driver manifest found; tried /"));
}

INSTANTIATE_TEST_SUITE_P(Homes, HomelessActivationTest, testing::Values("", ".", "home"));

TEST_F(ActivationTest, AServerWithoutRemoteActivationIsNamed) {
  EXPECT_THAT(Failure("lab").Description(), HasSubstr("\"lab\""));
}

class INamed : public IDispatch {
 public:
  static constexpr Guid Iid{0x11111111, 0x2222, 0x8333, {0x84, 0x44, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}};

 protected:
  ~INamed() = default;
};

class IOther : public IDispatch {
 public:
  static constexpr Guid Iid{0x11111112, 0x2222, 0x8333, {0x84, 0x44, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}};

 protected:
  ~IOther() = default;
};

class Named : public Object<INamed> {};

TEST_F(ActivationTest, AClassOfTheProcessGoesBeforeAnyManifest) {
  WriteManifest("absent.so");
  RegisterClass(ProgId, [] { return Ref<IUnknown>(MakeObject<Named>()); });
  const Ref<IUnknown> object = CreateObject(ProgId, {});
  EXPECT_TRUE(Narrow<INamed>(object));
  EXPECT_FALSE(Narrow<IOther>(object));
  RegisterClass(ProgId, {});
  EXPECT_EQ(Failure().Number(), 429);
}

TEST(ClassId, DependsOnTheNameAndNotOnItsCase) {
  EXPECT_EQ(ClassIdOf("KolvenAtl.Kolven"), ClassIdOf("kolvenatl.KOLVEN"));
  EXPECT_FALSE(ClassIdOf("KolvenAtl.Kolven") == ClassIdOf("KolvenAtl.Kolver"));
  EXPECT_EQ(ClassIdOf("KolvenAtl.Kolven").Data3 >> 12, 8);
  EXPECT_EQ(ClassIdOf("KolvenAtl.Kolven").Data4[0] >> 6, 2);
}

TEST(ClassId, StaysWhatRegistriesHold) {
  EXPECT_EQ(ClassIdOf("KolvenAtl.Kolven"),
            (Guid{0xD2675325, 0x3502, 0x81BA, {0x83, 0xBA, 0x84, 0xB2, 0xB6, 0x84, 0x13, 0x92}}));
  EXPECT_EQ(ClassIdOf("TarvikVI.clsInstrInterface"),
            (Guid{0x202E77E9, 0x90DA, 0x86A1, {0xBF, 0x21, 0x6B, 0x10, 0x11, 0xD7, 0x22, 0x3C}}));
}

}  // namespace
}  // namespace tarvik::automation
