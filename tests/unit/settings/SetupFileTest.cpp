#include "settings/SetupFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "SetupSamples.h"
#include "support/Conversions.h"

namespace tarvik::test {
namespace {

/// The file of a small model, which is also what the documents show.
constexpr const char *SmallFile = R"({
  "format": "tarvikvi-setup",
  "instrument": {
    "address": "",
    "channels": 1,
    "firmware": "",
    "lacks": ["ChannelMath", "Complement", "Impedance", "LoadCompensation", "TrailingEdge", "VxiEnable", "VxiLines", "VxiSource"],
    "options": "",
    "product": "VP-110",
    "serial": "V110-01932",
    "version": "2.30"
  },
  "settings": {
    "levels.format[1]": "HighLow",
    "levels.high[1]": 2.5,
    "levels.low[1]": -0.0,
    "levels.output[1]": true,
    "levels.polarity[1]": "Normal",
    "levels.unit[1]": "V",
    "limits.enabled[1]": false,
    "limits.highCurrent[1]": 0.1,
    "limits.highVoltage[1]": 5,
    "limits.lowCurrent[1]": -0.1,
    "limits.lowVoltage[1]": -5,
    "mode.armingLevel": "Rising",
    "mode.armingSource": "External",
    "mode.burstLength": 2,
    "mode.clockEdge": "Rising",
    "mode.periodSource": "Oscillator",
    "mode.pllFormat": "Period",
    "mode.pllPeriod": 0,
    "mode.pulse": "Stream",
    "mode.pulseType[1]": "Single",
    "mode.trigger": "Continuous",
    "pattern.rz[1]": true,
    "pattern.stream[1]": {"length": 16, "words": ["1: FF00"]},
    "pattern.strobe": {"length": 4096, "words": [
      "1: 0000*64",
      "1025: 0000*3 0001 0000*12",
      "1281: 0000*176"
    ]},
    "pll.frequency": 5e+06,
    "pll.source": "Internal",
    "timing.delay[1]": 0,
    "timing.frequency": 1e+06,
    "timing.leading[1]": 8e-10,
    "timing.width[1]": 1e-07,
    "trglevels.clkInImpedance": 50,
    "trglevels.clkInThreshold": 2.5,
    "trglevels.extInImpedance": 10000,
    "trglevels.extInThreshold": -1.3,
    "trglevels.strobeOut": "ECL",
    "trglevels.triggerOut": "TTL"
  },
  "version": 1
}
)";

tarvik::Setup SmallSetup() {
  tarvik::Setup setup;
  setup.Instrument.lngNumChannels = 1;
  setup.Instrument.strProductId = "VP-110";
  setup.Instrument.strSerialNum = "V110-01932";
  setup.Instrument.strSysVersion = "2.30";
  setup.lngLacks = AllFunctionality & ~Long{eLacksFreeLeadingEdge};
  setup.Mode.BurstLength = 2;
  setup.Mode.PulseType[1] = eTypeSingle;
  setup.Mode.SignalFormat[1] = eFormatRz;
  setup.Mode.TriggerSlope = setup.Mode.ArmSlope = eSlopeRising;
  setup.Mode.ArmingSource = eArmExternal;
  setup.Timing.dblFrequency = 1e6;
  setup.Timing.dblWidth[1] = 100e-9;
  setup.Timing.dblLeading[1] = 0.8e-9;
  setup.Timing.fChannelOutputOn[1] = setup.Levels.fChannelOutputOn[1] = True;
  setup.Levels.eOutputLevel[1] = eLevelHighLow;
  setup.Levels.dblAmplOrHigh[1] = 2.5;
  setup.Levels.dblOffsetOrLow[1] = -0.0;
  setup.Limits.dblHighVoltage[1] = 5;
  setup.Limits.dblLowVoltage[1] = -5;
  setup.Limits.dblHighCurrent[1] = 0.1;
  setup.Limits.dblLowCurrent[1] = -0.1;
  setup.TrgLevels.dblExtInThreshold = -1.3;
  setup.TrgLevels.dblExtInInputImp = 10000;
  setup.TrgLevels.dblClkInThreshold = 2.5;
  setup.TrgLevels.dblClkInInputImp = 50;
  setup.TrgLevels.eStrobeOutLevel = eOutLevelECL;
  setup.Pattern[0] = {16, {0xFF, 0x00}};
  setup.Pattern[2] = {4096, std::vector<Byte>(512)};
  setup.Pattern[2].arrBytes[135] = 0x01;
  setup.fRz[1] = True;
  setup.dblPllRefFreq = 5e6;
  setup.ePllRefSource = ePllRefInternal;
  return setup;
}

std::string Refusal(const std::string &strText) {
  try {
    SetupFromText(strText);
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 321);
    return Replace(error.Description(), "\r\n", "\n");
  }
  return "taken";
}

/// The small file with one text in place of another.
std::string Changed(const std::string &strFind, const std::string &strBy) {
  const std::string strText = Replace(SmallFile, strFind, strBy);
  EXPECT_NE(strText, SmallFile) << strFind;
  return strText;
}

// ---- Writing and reading ----

TEST(SetupFile, IsSortedWithASettingOnEachLine) {
  EXPECT_EQ(SmallSetup(), Canonical(SmallSetup()));
  EXPECT_EQ(SetupToText(SmallSetup()), SmallFile);
}

TEST(SetupFile, ReadsWhatItWrote) {
  const tarvik::Setup read = SetupFromText(SmallFile);
  EXPECT_EQ(read, SmallSetup());
  EXPECT_TRUE(std::signbit(read.Levels.dblOffsetOrLow[1]));
}

TEST(SetupFile, OneBitOfALongPatternChangesOneLine) {
  tarvik::Setup other = SmallSetup();
  other.Pattern[2].arrBytes[135] = 0x41;
  EXPECT_EQ(SetupToText(other), Changed("0000*3 0001 0000*12", "0000*3 0041 0000*12"));
}

/// The bits of a Double, so that a zero and its negative are told apart.
bool SameBits(const tarvik::Setup &first, const tarvik::Setup &other) {
  bool fSame = first == other;
  ForEachStored(first, [&](const Setting &setting, Long lngChannel) {
    const SettingValue ofFirst = setting.Read(first, lngChannel), ofOther = setting.Read(other, lngChannel);
    if (const auto *pNumber = std::get_if<Double>(&ofFirst))
      fSame = fSame && std::signbit(*pNumber) == std::signbit(std::get<Double>(ofOther));
  });
  return fSame;
}

TEST(SetupFile, RandomSetupsComeBackBitForBit) {
  const char *strCount = std::getenv("TARVIK_RANDOM_SETUPS");
  const int intCount = strCount ? std::atoi(strCount) : 10000;
  RandomSetups setups(20);
  std::size_t bytes = 0;
  for (int i = 0; i < intCount; ++i) {
    const tarvik::Setup setup = setups.Next();
    const std::string strText = SetupToText(setup);
    bytes += strText.size();
    ASSERT_TRUE(SameBits(SetupFromText(strText), setup)) << strText;
  }
  std::cout << intCount << " setups, " << bytes << " bytes\n";
}

TEST(SetupFile, AValueOfTheDriversOwnIsANumber) {
  tarvik::Setup setup = SmallSetup();
  setup.Mode.PeriodSource = 17;
  EXPECT_EQ(SetupToText(setup), Changed("\"Oscillator\"", "17"));
  EXPECT_EQ(SetupFromText(SetupToText(setup)), setup);
}

TEST(SetupFile, WhatTheModesDoNotUseMayBeOutOfRange) {
  EXPECT_EQ(Refusal(Changed("\"mode.burstLength\": 2", "\"mode.burstLength\": 0")), "taken");
  EXPECT_EQ(Refusal(Replace(Changed("\"mode.burstLength\": 2", "\"mode.burstLength\": 0"), "\"Stream\"", "\"Burst\"")),
            "line 27: mode.burstLength: 0 is out of the range 2 to 65536");
}

// ---- What is refused ----

struct BadFile {
  const char *strName, *strFind, *strBy, *strRefusal;
};
void PrintTo(const BadFile &file, std::ostream *out) { *out << file.strName; }

class SetupFileWith : public testing::TestWithParam<BadFile> {};

TEST_P(SetupFileWith, IsRefusedWithTheReasonAndItsPlace) {
  EXPECT_EQ(Refusal(Changed(GetParam().strFind, GetParam().strBy)), GetParam().strRefusal);
}

constexpr BadFile BadFiles[] = {
    {"AMissingComma", "\"VP-110\",", "\"VP-110\"",
     "line 10, column 12: syntax error while parsing object - unexpected string literal; expected '}'"},
    {"NaN", "8e-10", "NaN",
     "line 46, column 26: syntax error while parsing value - invalid literal; last read: '\"timing.leading[1]\": N'"},
    {"ANumberBeyondADouble", "8e-10", "8e400", "line 46, column 31: number overflow parsing '8e400'"},
    {"AnotherFormat", "tarvikvi-setup", "shopping-list", "line 2: format: \"shopping-list\" is not \"tarvikvi-setup\""},
    {"ANewerVersion", "\"version\": 1\n", "\"version\": 2\n",
     "line 55: version: the file has version 2, this program reads version 1"},
    {"NoVersion", ",\n  \"version\": 1\n", "\n", "line 1: version: the key is missing"},
    {"AnUnknownKey", "\"version\": 1\n", "\"version\": 1, \"colour\": \"blue\"\n",
     "line 55: colour: there is no such key"},
    {"AnUnknownKeyOfTheInstrument", "\"options\": \"\"", "\"options\": \"\", \"colour\": \"blue\"",
     "line 8: instrument.colour: there is no such key"},
    {"AnUnknownSetting", "\"timing.frequency\"", "\"timing.colour\": 1, \"timing.frequency\"",
     "line 45: timing.colour: there is no such setting"},
    {"AKeyThatStandsTwice", "\"pll.source\": \"Internal\"", "\"pll.source\": \"Internal\", \"pll.source\": \"ClkIn\"",
     "line 43: pll.source: the key stands in line 43 too"},
    {"AMissingSetting", "    \"timing.width[1]\": 1e-07,\n", "", "line 13: timing.width[1]: the key is missing"},
    {"ATextForANumber", "1e-07", "\"100ns\"", "line 47: timing.width[1]: a number is wanted, not a text"},
    {"ANumberForASwitch", "\"limits.enabled[1]\": false", "\"limits.enabled[1]\": 0",
     "line 20: limits.enabled[1]: true or false is wanted, not a number"},
    {"AListForAChoice", "\"Normal\"", "[]", "line 18: levels.polarity[1]: a text is wanted, not a list"},
    {"AFractionForACount", "\"mode.burstLength\": 2", "\"mode.burstLength\": 2.5",
     "line 27: mode.burstLength: a whole number is wanted, not a fraction"},
    {"ACountBeyondALong", "\"mode.burstLength\": 2", "\"mode.burstLength\": 3000000000",
     "line 27: mode.burstLength: the number is too large"},
    {"AnUnknownWord", "\"Continuous\"", "\"Sometimes\"",
     "line 34: mode.trigger: \"Sometimes\" is not Continuous, Triggered, Gated or ExtWidth"},
    {"ANumberForAModeThatCannotBeSent", "\"Continuous\"", "7", "line 34: mode.trigger: a text is wanted, not a number"},
    {"ANumberOutOfRange", "1e-07", "1e-09", "line 47: timing.width[1]: 1ns is out of the range 1.5ns to 999.5s"},
    {"SettingsThatAreNoObject", "\"settings\": {", "\"settings\": 1, \"rest\": {",
     "line 13: settings: an object is wanted, not a number\n"
     "line 13: rest: there is no such key"},
    {"ThreeChannels", "\"channels\": 1", "\"channels\": 3",
     "line 5: instrument.channels: 3 is out of the range 1 to 2"},
    {"AnUnknownLack", "\"VxiSource\"]", "\"Paint\"]",
     "line 7: instrument.lacks: \"Paint\" is nothing that an instrument can lack"},
    {"ASettingOfAnotherModel", "\"levels.low[1]\"", "\"levels.load[1]\": 50, \"levels.low[1]\"",
     "line 16: levels.load[1]: the instrument of this file does not have it"},
    {"ASecondChannel", "\"levels.low[1]\"", "\"levels.low[2]\": 0, \"levels.low[1]\"",
     "line 16: levels.low[2]: the instrument of this file has one channel"},
    {"ALevelInTwoWays", "\"levels.low[1]\"", "\"levels.offset[1]\": 0, \"levels.low[1]\"",
     "line 16: levels.offset[1]: another key of this file tells it"},
    {"APatternThatIsTooShort", "\"length\": 16", "\"length\": 32",
     "line 36: pattern.stream[1]: 1 words do not hold 32 bits, 2 are needed"},
    {"APatternThatIsTooLong", "FF00", "FF00*2", "line 36: pattern.stream[1]: line 1: more words than 16 bits have"},
    {"BitsBehindTheEnd", "\"length\": 16", "\"length\": 7",
     "line 36: pattern.stream[1]: bits are set behind the length of 7"},
    {"APatternBeyondTheMemory", "\"length\": 16", "\"length\": 16385",
     "line 36: pattern.stream[1]: a length of 16385 bits is out of the range 0 to 16384"},
    {"ANegativeLength", "\"length\": 16", "\"length\": -1",
     "line 36: pattern.stream[1]: a length of -1 bits is out of the range 0 to 16384"},
    {"AWordThatIsNone", "FF00", "FF0",
     "line 36: pattern.stream[1]: line 1: \"FF0\" is neither a word of four hexadecimal digits nor one with its count, "
     "as 00FF*16"},
    {"AGapInThePattern",
     "\"1281: ", "\"1297: ", "line 37: pattern.strobe: line 3: address 1297 is not the next one, 1281"},
    {"WordsWithoutAnAddress", "\"1: FF00\"", "\"FF00\"",
     "line 36: pattern.stream[1]: line 1: an address and a colon are missing before the words"},
    {"APatternThatIsAText", "{\"length\": 16, \"words\": [\"1: FF00\"]}", "\"FF00\"",
     "line 36: pattern.stream[1]: an object is wanted, not a text"},
    {"APatternWithoutLength", "\"length\": 16, ", "", "line 36: pattern.stream[1].length: the key is missing"},
};
INSTANTIATE_TEST_SUITE_P(Bad, SetupFileWith, testing::ValuesIn(BadFiles),
                         [](const auto &test) { return std::string(test.param.strName); });

TEST(SetupFile, TellsAllReasonsInTheOrderOfTheLines) {
  std::string strText = Changed("1e-07", "-1");
  strText = Replace(strText, "\"levels.high[1]\": 2.5", "\"levels.high[1]\": \"high\"");
  strText = Replace(strText, "\"TTL\"", "\"CMOS\"");
  strText = Replace(strText, "    \"pll.source\": \"Internal\",\n", "");
  EXPECT_EQ(Refusal(strText),
            "line 13: pll.source: the key is missing\n"
            "line 15: levels.high[1]: a number is wanted, not a text\n"
            "line 46: timing.width[1]: -1s is out of the range 1.5ns to 999.5s\n"
            "line 52: trglevels.triggerOut: \"CMOS\" is not TTL or ECL");
}

TEST(SetupFile, EveryCutOfAFileIsRefusedWithAPlace) {
  const std::string strText = SmallFile;
  for (std::size_t size = 0; size + 2 < strText.size(); ++size)
    ASSERT_THAT(Refusal(strText.substr(0, size)), testing::StartsWith("line ")) << size;
}

TEST(SetupFile, AnyChangedByteIsRefusedOrGivesASetup) {
  std::mt19937 random(40);
  const auto below = [&](std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
  };
  int intTaken = 0, intRefused = 0;
  for (int i = 0; i < 500; ++i) {
    std::string strText = SmallFile;
    for (std::size_t changes = 1 + below(2); changes > 0; --changes) {
      const std::size_t place = below(strText.size());
      const std::size_t digit = strText.find_first_of("0123456789", place);
      // A piece of the file somewhere else, any byte, or another digit.
      switch (below(3)) {
        case 0: strText.insert(place, strText.substr(below(strText.size()), below(40))); break;
        case 1: strText[place] = static_cast<char>(random()); break;
        default:
          if (digit != std::string::npos) strText[digit] = static_cast<char>('0' + below(10));
      }
    }
    try {
      const tarvik::Setup setup = SetupFromText(strText);
      ASSERT_EQ(SetupFromText(SetupToText(setup)), setup) << strText;
      ++intTaken;
    } catch (const RunTimeError &error) {
      ASSERT_EQ(error.Number(), 321) << strText;
      ASSERT_THAT(error.Description(), testing::StartsWith("line ")) << strText;
      ++intRefused;
    }
  }
  std::cout << intRefused << " refused, " << intTaken << " taken\n";
  EXPECT_GT(intTaken, 20);
  EXPECT_GT(intRefused, 300);
}

TEST(SetupFile, BracketsWithoutEndDoNotUseUpTheStack) {
  EXPECT_EQ(Refusal(std::string(1000000, '[')), "line 1, column 1: too many brackets within one another");
}

TEST(SetupFile, TextThatIsNoSetupIsRefused) {
  EXPECT_EQ(Refusal(""),
            "line 1, column 1: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
            "literal");
  EXPECT_EQ(Refusal("42"),
            "line 1: file: an object is wanted, not a number\n"
            "line 1: format: the key is missing\nline 1: version: the key is missing");
  EXPECT_EQ(Refusal("{}"), "line 1: format: the key is missing\nline 1: version: the key is missing");
}

// ---- On the disk ----

/// The failure of an action, without the name of the folder.
template <class Action>
std::string Failure(Action action, const std::filesystem::path &folder) {
  try {
    action();
  } catch (const RunTimeError &error) {
    return Replace(Replace(error.Description(), folder.string(), "FOLDER"), "\r\n", "\n");
  }
  return "done";
}

TEST(SetupFile, IsSavedAndLoadedOrTheFileIsNamed) {
  std::string strName = (std::filesystem::temp_directory_path() / "setup-file-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(strName.data());
  const auto load = [&](const char *strFile) { return Failure([&] { LoadSetup(folder / strFile); }, folder); };

  SaveSetup(SmallSetup(), folder / "a.setup");
  EXPECT_EQ(LoadSetup(folder / "a.setup"), SmallSetup());
  EXPECT_EQ(load("b.setup"), "Cannot load FOLDER/b.setup: There is no such file");
  std::ofstream(folder / "bad.setup") << Changed("1e-07", "-1");
  EXPECT_EQ(load("bad.setup"),
            "Cannot load FOLDER/bad.setup:\nline 47: timing.width[1]: -1s is out of the range 1.5ns to 999.5s");
  std::ofstream(folder / "large.setup") << std::string(LargestSetupFile + 1, ' ');
  EXPECT_EQ(load("large.setup"), "Cannot load FOLDER/large.setup: It is larger than 1024 KiB");
  EXPECT_EQ(Failure([&] { SaveSetup(SmallSetup(), folder / "none" / "a.setup"); }, folder),
            "Cannot save FOLDER/none/a.setup: No such file or directory");
  std::filesystem::remove_all(folder);
}

TEST(SetupFile, TheLargestSetupIsFarBelowTheLargestFile) {
  tarvik::Setup setup = SampleSetup();
  for (PatternStream &stream : setup.Pattern) {
    stream = {PatternStream::MaxLength, std::vector<Byte>(PatternStream::MaxLength / 8)};
    for (std::size_t i = 0; i < stream.arrBytes.size(); ++i) stream.arrBytes[i] = static_cast<Byte>(i * 37 + i / 256);
  }
  EXPECT_LT(SetupToText(setup).size(), LargestSetupFile / 20);
  EXPECT_EQ(SetupFromText(SetupToText(setup)), setup);
}

}  // namespace
}  // namespace tarvik::test
