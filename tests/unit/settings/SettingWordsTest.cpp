#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

#include "settings/Setting.h"

namespace tarvik::test {
namespace {

TEST(SettingWords, EachWordStandsForTheNumberThatTheInstrumentTakes) {
  using Words = std::vector<std::pair<std::string_view, Long>>;
  const std::pair<const char *, Words> arrSettings[] = {
      {"mode.trigger", {{"Continuous", 0}, {"Triggered", 1}, {"Gated", 2}, {"ExtWidth", 3}}},
      {"mode.pulse", {{"Stream", 0}, {"Burst", 1}, {"Pattern", 2}}},
      {"mode.pulseType[1]", {{"Single", 1}, {"Double", 2}}},
      {"mode.periodSource", {{"Oscillator", 0}, {"Pll", 1}, {"ClkIn", 2}}},
      {"mode.clockEdge", {{"Falling", 0}, {"Rising", 1}, {"Keep", 3}}},
      {"mode.armingSource",
       {{"Keep", 0},
        {"Pll", 1},
        {"External", 3},
        {"Manual", 4},
        {"Eclt0", 5},
        {"Eclt1", 6},
        {"Ttlt0", 7},
        {"Ttlt1", 8},
        {"Ttlt2", 9},
        {"Ttlt3", 10},
        {"Ttlt4", 11},
        {"Ttlt5", 12},
        {"Ttlt6", 13},
        {"Ttlt7", 14}}},
      {"mode.armingLevel", {{"Falling", 0}, {"Rising", 1}, {"Both", 2}, {"Keep", 3}}},
      {"mode.pllFormat", {{"Period", 0}, {"Frequency", 1}, {"Keep", 3}}},
      {"levels.format[1]", {{"OffsetAmplitude", 0}, {"HighLow", 1}}},
      {"levels.unit[1]", {{"V", 0}, {"A", 1}}},
      {"levels.polarity[1]", {{"Normal", 0}, {"Complement", 1}}},
      {"levels.channelMath", {{"Separate", 0}, {"Added", 1}}},
      {"trglevels.triggerOut", {{"TTL", 0}, {"ECL", 1}}},
      {"trglevels.strobeOut", {{"TTL", 0}, {"ECL", 1}}},
      {"trglevels.vxiLine",
       {{"Eclt0", 5},
        {"Eclt1", 6},
        {"Ttlt0", 7},
        {"Ttlt1", 8},
        {"Ttlt2", 9},
        {"Ttlt3", 10},
        {"Ttlt4", 11},
        {"Ttlt5", 12},
        {"Ttlt6", 13},
        {"Ttlt7", 14}}},
      {"trglevels.vxiSource", {{"Trigger", 1}, {"Strobe", 2}}},
      {"pll.source", {{"ClkIn", 0}, {"Internal", 1}}},
  };
  for (const auto &[strKey, arrWords] : arrSettings) {
    Words arrFound;
    for (const SettingWord &word : FindSetting(strKey)->setting->arrWords)
      arrFound.emplace_back(word.strWord, word.lngValue);
    EXPECT_EQ(arrFound, arrWords) << strKey;
  }
}

}  // namespace
}  // namespace tarvik::test
