#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>

#include "FailingMemory.h"
#include "SetupSamples.h"
#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "settings/SetupComparison.h"
#include "settings/SetupDifferences.h"
#include "settings/SetupFile.h"
#include "settings/SetupTransfer.h"
#include "support/Conversions.h"
#include "support/SettingsFile.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::AnyOf;

/// Each allocation of an operation fails once, and then with all that follow it. Until the operation comes to its end,
/// no memory is what it raises; behind it the check sees whether the operation did anything.
void SweepMemory(const char *strName, const std::function<void()> &act, const std::function<void(bool fDone)> &check) {
  int intCases = 0;
  for (const bool fForEver : {false, true})
    for (int k = 1;; ++k) {
      SCOPED_TRACE(std::string(strName) + ", allocation " + std::to_string(k) + (fForEver ? " for ever" : " once"));
      bool fDone = true;
      FailingMemory::FailAt(k, fForEver);
      try {
        act();
      } catch (const std::bad_alloc &) {
        fDone = false;
      } catch (const RunTimeError &error) {
        fDone = false;
        FailingMemory::Stop();
        // Also where a file could not be opened for want of memory.
        EXPECT_THAT(error.Number(), AnyOf(ErrOutOfMemory, ErrPathFileAccess)) << error.Description();
      }
      FailingMemory::Stop();
      check(fDone);
      if (!FailingMemory::HasFailed() || testing::Test::HasFailure()) break;
      ++intCases;
    }
  std::cout << "[ memory   ] " << intCases << " cases: " << strName << std::endl;
}

class RoomsMemory : public testing::Test {
 protected:
  RoomsMemory() {
    std::string strFolder = (fs::temp_directory_path() / "tarvik-memory-XXXXXX").string();
    m_folder = ::mkdtemp(strFolder.data());
  }
  ~RoomsMemory() override { fs::remove_all(m_folder); }
  static std::string Content(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static void Write(const fs::path &path, const std::string &strText) {
    std::ofstream(path, std::ios::binary) << strText;
  }
  std::ptrdiff_t Files() const { return std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()); }

  fs::path m_folder;
};

TEST_F(RoomsMemory, ASettingIsSavedOrTheFileIsAsItWas) {
  const fs::path path = m_folder / "TarvikVI.conf";
  const SettingsFile settings(path);
  const std::string strBefore = "; written by hand, with a comment\n[Config]\nDownload=\n";
  const std::string strAfter = "; written by hand, with a comment\n[Config]\nDownload=\"All of them, one by one\"\n";
  Write(path, strBefore);
  SweepMemory(
      "a setting saved", [&] { settings.Save("Config", "Download", "All of them, one by one"); },
      [&](bool fDone) {
        EXPECT_EQ(Content(path), fDone ? strAfter : strBefore);
        EXPECT_EQ(Files(), 1);
        Write(path, strBefore);
      });
}

TEST_F(RoomsMemory, ASettingIsReadOrNoMemoryIsRaised) {
  const fs::path path = m_folder / "TarvikVI.conf";
  const SettingsFile settings(path);
  Write(path, "[Config]\nDownload=All of them, one by one\n");
  std::optional<std::string> strValue;
  SweepMemory(
      "a setting read", [&] { strValue = settings.Value("Config", "Download"); },
      [&](bool fDone) {
        EXPECT_EQ(strValue.value_or("none"), fDone ? "All of them, one by one" : "none");
        strValue.reset();
      });
}

TEST_F(RoomsMemory, ASetupIsSavedOrTheFileIsAsItWas) {
  const fs::path path = m_folder / "setup.json";
  const tarvik::Setup setup = Canonical(SampleSetup());
  const std::string strText = SetupToText(setup);
  Write(path, "what was there");
  SweepMemory(
      "a setup saved", [&] { SaveSetup(setup, path); },
      [&](bool fDone) {
        EXPECT_EQ(Content(path), fDone ? strText : "what was there");
        EXPECT_EQ(Files(), 1);
        Write(path, "what was there");
      });
}

TEST_F(RoomsMemory, ASetupIsLoadedWholeOrNoMemoryIsRaised) {
  const fs::path path = m_folder / "setup.json";
  SaveSetup(Canonical(SampleSetup()), path);
  const tarvik::Setup whole = LoadSetup(path);
  tarvik::Setup loaded;
  SweepMemory(
      "a setup loaded", [&] { loaded = LoadSetup(path); },
      [&](bool fDone) {
        EXPECT_TRUE(loaded == (fDone ? whole : tarvik::Setup()));
        loaded = {};
      });
}

TEST_F(RoomsMemory, SetupsAreComparedAndTakenOverOrNoMemoryIsRaised) {
  const tarvik::Setup first = Canonical(SampleSetup());
  tarvik::Setup second = first;
  second.Timing.dblWidth[1] *= 2;
  second.TrgLevels.dblClkInThreshold += 1;
  const std::size_t differences = Differences(first, second).size();
  SetupComparison comparison;
  comparison.Set(ComparedSide::Panel, first);
  comparison.Set(ComparedSide::Instrument, second);
  std::size_t found = 0;
  tarvik::Setup taken;
  SweepMemory(
      "setups compared",
      [&] {
        found = 0;
        found = Differences(first, second).size() + comparison.Rows(eAllPages, "t", '.').size();
        taken = TakeOver(first, second).setup;
      },
      [&](bool fDone) {
        if (!fDone) return;
        EXPECT_GE(found, differences);
        EXPECT_TRUE(taken == second);
      });
}

TEST_F(RoomsMemory, AutomationStringsAndArraysAreWholeOrNoMemoryIsRaised) {
  const std::string strText = "a text with an \xC3\xA4 that is longer than what needs no memory";
  std::string strBack;
  SweepMemory(
      "a text as an automation string",
      [&] {
        strBack.clear();
        automation::String text(strText);
        strBack = text.Text();
      },
      [&](bool fDone) { EXPECT_EQ(strBack, fDone ? strText : ""); });

  const ByteArray arrBytes(1, std::vector<Byte>(100, 7));
  Long lngCount = 0;
  SweepMemory(
      "bytes as an automation array",
      [&] {
        lngCount = 0;
        automation::ArrayOwner array(arrBytes);
        lngCount = automation::ToByteArray(array.Get()).Count();
      },
      [&](bool fDone) { EXPECT_EQ(lngCount, fDone ? 100 : 0); });
}

TEST_F(RoomsMemory, ADescriptionIsLeftOrNoMemoryIsRaised) {
  std::string strTaken;
  SweepMemory(
      "a description left behind",
      [&] {
        strTaken.clear();
        automation::SetErrorInfo("a description that is longer than what needs no memory", "a source of the same kind");
        strTaken = automation::TakeDescription(-1);
      },
      [&](bool fDone) {
        automation::ForgetErrorInfo();
        EXPECT_EQ(strTaken, fDone ? "a description that is longer than what needs no memory" : "");
      });
}

}  // namespace
}  // namespace tarvik::test
