#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>

#include "scpi/ProfileFolders.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {
namespace {

namespace fs = std::filesystem;

class ScpiProfile : public testing::Test {
 protected:
  ScpiProfile() { fs::create_directories(folder); }
  ~ScpiProfile() override { fs::remove_all(folder); }

  void Write(const std::string &strName, const std::string &strText) {
    std::ofstream(folder / (strName + ".json")) << strText;
  }
  /// A profile with this in it.
  static std::string With(const std::string &strMore) {
    return "{\n\"format\": \"tarvikvi-scpi-profile\",\n\"version\": 1, \"errors\": {\"query\": \":SYSTem:ERRor?\"}" +
           std::string(strMore.empty() ? "" : ",") + "\n" + strMore + "}\n";
  }
  /// Why a profile with this in it is refused, without its path.
  std::string WhyNot(const std::string &strMore) {
    Write("mine", With(strMore));
    return WhyNotRead("mine");
  }
  std::string WhyNotRead(const std::string &strName) {
    try {
      folders.Read(strName);
    } catch (const RunTimeError &error) {
      const std::string strPath = (folder / (strName + ".json")).string() + ":\r\n", strWhy = error.Description();
      return strWhy.starts_with(strPath) ? strWhy.substr(strPath.size()) : strWhy;
    }
    return "taken";
  }

  const fs::path folder =
      fs::path(testing::TempDir()) /
      ("profiles-" + std::to_string(getpid()) + "-" + testing::UnitTest::GetInstance()->current_test_info()->name());
  ProfileFolders folders{{folder}};
};

TEST_F(ScpiProfile, ThoseThatComeWithTheDriverAreWhole) {
  const ProfileFolders shipped = ProfileFolders::OfMachine();
  EXPECT_THAT(shipped.Names(), testing::IsSupersetOf({"scpi-99", "scpi-99-pattern"}));
  EXPECT_EQ(28u, shipped.Read("scpi-99").arrSettings.size());
  const Profile pattern = shipped.Read("scpi-99-pattern");
  // Of each pair that tells the same, offset and amplitude among them, it has one.
  EXPECT_EQ(SettingRows().size() - 4, pattern.arrSettings.size());
  EXPECT_EQ(0, pattern.lngMask);
  EXPECT_EQ(":SOUR{channel}:PULS:WIDT {value}", pattern.Find("timing.width")->arrSet[0]);
  EXPECT_EQ(":SOUR{channel}:CURR:LEV:IMM:HIGH?", pattern.Find("levels.high")->arrQuery[1]);
}

TEST_F(ScpiProfile, ExtendsAnotherOneAndTakesOutWhatIsNull) {
  Write("base", With(R"("channels": 1, "suits": {"identity": ["Base"]}, "settings": {
    "timing.width": {"command": ":SOURce{channel}:PULSe:WIDTh", "unit": "ns"},
    "timing.delay": {"command": ":SOURce{channel}:PULSe:DELay"}})"));
  Write("mine", R"({"format": "tarvikvi-scpi-profile", "version": 1, "extends": "base",
    "settings": {"timing.delay": null}})");
  const Profile profile = folders.Read("mine");
  EXPECT_EQ("mine", profile.strName);
  EXPECT_EQ(1, profile.lngChannels);
  EXPECT_EQ(1e-9, profile.Find("timing.width")->dblUnit);
  EXPECT_EQ(nullptr, profile.Find("timing.delay"));
  EXPECT_TRUE(profile.arrSuitsIdentity.empty());
}

TEST_F(ScpiProfile, EverythingThatIsWrongIsToldAtOnceWithItsLine) {
  EXPECT_EQ(
      "line 5: timing.wide: there is no such setting\r\n"
      "line 6: timing.width.command: the setting is one of each channel; {channel} is missing\r\n"
      "line 6: timing.width.unit: \"V\" is no unit of this setting\r\n"
      "line 7: mode.trigger.words.Sometimes: the setting has no such word\r\n"
      "line 8: timing.frequency.colour: there is no such key\r\n"
      "line 9: channels: 3 is out of the range 1 to 2\r\n"
      "line 10: lacks: \"Wheels\" is nothing that an instrument can lack\r\n"
      "line 11: speed: there is no such key",
      WhyNot("\"settings\": {\n"
             "\"timing.wide\": {\"command\": \":A\"},\n"
             "\"timing.width\": {\"command\": \":A\", \"unit\": \"V\"},\n"
             "\"mode.trigger\": {\"command\": \":B\", \"words\": {\"Sometimes\": \"SOMetimes\"}},\n"
             "\"timing.frequency\": {\"command\": \":C\", \"colour\": 1}},\n"
             "\"channels\": 3,\n"
             "\"lacks\": [\"Wheels\"],\n"
             "\"speed\": 7"));
}

TEST_F(ScpiProfile, PartsOfAWrongKindAreRefused) {
  EXPECT_EQ("line 4: settings: an object is wanted, not a list", WhyNot("\"settings\": []"));
  EXPECT_EQ("line 4: messages.input: 10 is out of the range 64 to 1048576", WhyNot("\"messages\": {\"input\": 10}"));
  EXPECT_EQ("line 4: messages.together: true or false is wanted, not a number",
            WhyNot("\"messages\": {\"together\": 1}"));
  EXPECT_EQ("line 4: commands.reset: a command is one line of printable characters",
            WhyNot("\"commands\": {\"reset\": \"*RST\\n*CLS\"}"));
  EXPECT_EQ("line 4: order[1].setting: \"timing.width\" is none of the profile's settings",
            WhyNot("\"order\": [{\"setting\": \"timing.width\", \"room\": \"up\"}]"));
  EXPECT_EQ("line 4: mode.trigger.words: the key is missing",
            WhyNot("\"settings\": {\"mode.trigger\": {\"command\": \":B\"}}"));
  EXPECT_EQ(
      "line 1: timing.period: tells the same as timing.frequency",
      WhyNot("\"settings\": {\"timing.period\": {\"command\": \":A\"}, \"timing.frequency\": {\"command\": \":B\"}}"));
}

TEST_F(ScpiProfile, WhatIsNoProfileIsRefused) {
  EXPECT_EQ("there is no profile \"mine\"", WhyNotRead("mine"));
  EXPECT_EQ("\"../mine\" is no name of a profile", WhyNotRead("../mine"));
  Write("mine", "{");
  EXPECT_THAT(WhyNotRead("mine"), testing::StartsWith("line 1, column 1: "));
  Write("mine", R"({"format": "tarvikvi-setup", "version": 2})");
  EXPECT_EQ(
      "line 1: format: \"tarvikvi-setup\" is not \"tarvikvi-scpi-profile\"\r\n"
      "line 1: version: the file has version 2, this program reads version 1",
      WhyNotRead("mine"));
  Write("mine", R"({"format": "tarvikvi-scpi-profile", "version": 1, "extends": "mine"})");
  EXPECT_THAT(WhyNotRead("mine"), testing::HasSubstr("the profile \"mine\" extends itself"));
}

}  // namespace
}  // namespace tarvik::scpi
