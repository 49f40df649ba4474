#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>

#include "settings/SettingText.h"
#include "settings/SetupFile.h"
#include "settings/SetupFormat.h"

namespace tarvik::test {
namespace {

using nlohmann::json;

/// The schema that the documents hand out.
json Schema() { return json::parse(std::ifstream(SCHEMA)); }

/// What the schema says of a setting; null where it says nothing.
json Said(const json &schema, const std::string &strKey) {
  const json &settings = schema["properties"]["settings"];
  if (settings["properties"].contains(strKey)) return settings["properties"][strKey];
  for (const auto &[strPattern, said] : settings["patternProperties"].items())
    if (std::regex_search(strKey, std::regex(strPattern))) return said;
  return {};
}

json WordsOfTable(const Setting &setting) {
  json words = json::array();
  for (const SettingWord &word : setting.arrWords) words.push_back(std::string(word.strWord));
  return words;
}

void ExpectSaid(const json &said, const Setting &setting) {
  switch (setting.eKind) {
    case SettingKind::Switch: EXPECT_EQ(said["type"], "boolean"); break;
    case SettingKind::Count: EXPECT_EQ(said["type"], "integer"); break;
    case SettingKind::Stream: EXPECT_EQ(said["$ref"], "#/$defs/stream"); break;
    case SettingKind::Choice:
      EXPECT_EQ(setting.fOnlyWords ? said["enum"] : said["anyOf"][0]["enum"], WordsOfTable(setting));
      EXPECT_EQ(setting.fOnlyWords, !said.contains("anyOf"));
      break;
    case SettingKind::Quantity:
      EXPECT_EQ(said["type"], "number");
      // Out of use a number may be anything.
      ASSERT_EQ(said.contains("minimum"), setting.InUse == nullptr);
      if (setting.InUse) break;
      EXPECT_EQ(said["minimum"].get<Double>(), setting.dblMin);
      EXPECT_EQ(said["maximum"].get<Double>(), setting.dblMax);
      break;
  }
}

TEST(SetupSchema, SaysOfEverySettingWhatTheTableSays) {
  const json schema = Schema();
  std::size_t kept = 0;
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels()) {
      const std::string strKey = setting.Key(lngChannel);
      SCOPED_TRACE(strKey);
      const json said = Said(schema, strKey);
      // No file has a period beside its frequency.
      if (strKey == "timing.period") {
        EXPECT_TRUE(said.is_null());
        continue;
      }
      ASSERT_FALSE(said.is_null());
      ExpectSaid(said, setting);
      ++kept;
    }
  EXPECT_EQ(kept, 71U);
  const json &settings = schema["properties"]["settings"];
  EXPECT_EQ(settings["properties"].size() + 2 * settings["patternProperties"].size(), kept);
}

TEST(SetupSchema, SaysOfTheRestWhatTheReaderWants) {
  const json schema = Schema();
  EXPECT_EQ(schema["properties"]["format"]["const"], SetupFormatName);
  EXPECT_EQ(schema["properties"]["version"]["const"], SetupFileVersion);
  json lacks = json::array();
  for (const SettingWord &lack : SetupLackWords) lacks.push_back(std::string(lack.strWord));
  EXPECT_EQ(schema["properties"]["instrument"]["properties"]["lacks"]["items"]["enum"], lacks);
  EXPECT_EQ(schema["$defs"]["stream"]["properties"]["length"]["maximum"], PatternStream::MaxLength);
}

}  // namespace
}  // namespace tarvik::test
