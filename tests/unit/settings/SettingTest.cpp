#include "settings/Setting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "SetupSamples.h"
#include "settings/SettingText.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;

Setting const &Row(std::string_view strKey) { return *FindSetting(strKey)->setting; }

std::string Entry(const Setup &setup, std::string_view strKey) {
  const auto place = FindSetting(strKey);
  if (!place) return "no setting";
  return EntryText(*place->setting, setup, place->lngChannel);
}

void Put(Setup &setup, std::string_view strKey, const std::string &strText) {
  const auto place = FindSetting(strKey).value();
  place.setting->Write(setup, place.lngChannel, ReadEntryText(*place.setting, setup, place.lngChannel, strText));
}

std::string Refusal(std::string_view strKey, const std::string &strText) {
  tarvik::Setup setup = SampleSetup();
  try {
    Put(setup, strKey, strText);
  } catch (const RunTimeError &error) {
    return error.Description();
  }
  return "taken";
}

TEST(FreshSetup, HoldsZeroForWhatAnInstrumentMayLack) {
  const tarvik::Setup fresh;
  EXPECT_EQ(fresh.Instrument.lngNumChannels, 0);
  EXPECT_EQ(fresh.lngLacks, 0);
  EXPECT_EQ(fresh.Mode.BurstLength, 0);
  EXPECT_EQ(fresh.Mode.PllPeriodOrFreq, 0);
  EXPECT_EQ(fresh.Timing.dblFrequency, 0);
  EXPECT_EQ(fresh.TrgLevels.dblExtInThreshold, 0);
  EXPECT_EQ(fresh.TrgLevels.dblExtInInputImp, 0);
  EXPECT_EQ(fresh.TrgLevels.dblClkInThreshold, 0);
  EXPECT_EQ(fresh.TrgLevels.dblClkInInputImp, 0);
  EXPECT_EQ(fresh.TrgLevels.eVxiTriggerSource, 0);
  EXPECT_EQ(fresh.TrgLevels.eVxiTriggerLine, 0);
  for (const PatternStream &stream : fresh.Pattern) EXPECT_EQ(stream, (PatternStream{0, {}}));
  EXPECT_EQ(fresh.dblPllRefFreq, 0);
  EXPECT_EQ(fresh.ePllRefSource, 0);
}

// ---- The table ----

TEST(SettingTable, HasEachKeyOnceAndFindsEveryRowByIt) {
  std::set<std::string> arrKeys;
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels()) {
      const std::string strKey = setting.Key(lngChannel);
      EXPECT_TRUE(arrKeys.insert(strKey).second) << strKey;
      const auto place = FindSetting(strKey);
      ASSERT_TRUE(place) << strKey;
      EXPECT_EQ(place->setting, &setting) << strKey;
      EXPECT_EQ(place->lngChannel, lngChannel) << strKey;
    }
  EXPECT_EQ(arrKeys.size(), 72U);
}

TEST(SettingTable, KnowsNoOtherKeys) {
  for (const char *strKey : {"", "timing", "timing.", "timing.width", "timing.width[0]", "timing.width[3]",
                             "timing.width[1", "timing.width[1]x", "Timing.width[1]", "mode.trigger[1]",
                             "pattern.stream", "pattern.stream[3]", "mode.triggers"})
    EXPECT_FALSE(FindSetting(strKey)) << strKey;
}

TEST(SettingTable, WritesAndReadsTheRecords) {
  const tarvik::Setup setup = SampleSetup();
  EXPECT_EQ(Entry(setup, "mode.trigger"), "Triggered");
  EXPECT_EQ(Entry(setup, "mode.pulse"), "Burst");
  EXPECT_EQ(Entry(setup, "mode.burstLength"), "7");
  EXPECT_EQ(Entry(setup, "mode.pulseType[2]"), "Double");
  EXPECT_EQ(Entry(setup, "mode.periodSource"), "ClkIn");
  EXPECT_EQ(Entry(setup, "mode.clockEdge"), "Rising");
  EXPECT_EQ(Entry(setup, "mode.armingSource"), "External");
  EXPECT_EQ(Entry(setup, "mode.armingLevel"), "Both");
  EXPECT_EQ(Entry(setup, "mode.pllFrequency"), "2MHz");
  EXPECT_EQ(Entry(setup, "mode.pllPeriod"), "500ns");
  EXPECT_EQ(Entry(setup, "timing.frequency"), "1MHz");
  EXPECT_EQ(Entry(setup, "timing.period"), "1us");
  EXPECT_EQ(Entry(setup, "timing.width[1]"), "50ns");
  EXPECT_EQ(Entry(setup, "timing.delay[2]"), "300ns");
  EXPECT_EQ(Entry(setup, "timing.coupled[1]"), "On");
  EXPECT_EQ(Entry(setup, "timing.trailing[2]"), "4ns");
  EXPECT_EQ(Entry(setup, "levels.high[2]"), "3.3V");
  EXPECT_EQ(Entry(setup, "levels.low[2]"), "-700mV");
  EXPECT_EQ(Entry(setup, "levels.offset[1]"), "1.25V");
  EXPECT_EQ(Entry(setup, "levels.amplitude[1]"), "2.5V");
  EXPECT_EQ(Entry(setup, "levels.impedance[2]"), "1kOhm");
  EXPECT_EQ(Entry(setup, "levels.polarity[2]"), "Complement");
  EXPECT_EQ(Entry(setup, "levels.output[1]"), "On");
  EXPECT_EQ(Entry(setup, "limits.enabled[2]"), "On");
  EXPECT_EQ(Entry(setup, "limits.lowCurrent[2]"), "-200mA");
  EXPECT_EQ(Entry(setup, "trglevels.extInThreshold"), "2.5V");
  EXPECT_EQ(Entry(setup, "trglevels.vxiLine"), "Ttlt3");
  EXPECT_EQ(Entry(setup, "pattern.rz[2]"), "On");
  EXPECT_EQ(Entry(setup, "pattern.stream[1]"), "16 bits; 1: FF00");
  EXPECT_EQ(Entry(setup, "pattern.strobe"), "2 bits; 1: 8000");
  EXPECT_EQ(Entry(setup, "pll.source"), "Internal");
  EXPECT_EQ(Entry(setup, "pll.frequency"), "10MHz");
}

TEST(SettingTable, TakesBackEveryValueThatItWritesDown) {
  RandomSetups setups(1);
  for (int i = 0; i < 200; ++i) {
    const tarvik::Setup setup = setups.Next();
    tarvik::Setup copy = setup;
    ForEachStored(setup, [&](const Setting &setting, Long lngChannel) {
      const std::string strText = EntryText(setting, setup, lngChannel);
      setting.Write(copy, lngChannel, ReadEntryText(setting, setup, lngChannel, strText));
      ASSERT_EQ(copy, setup) << setting.Key(lngChannel) << " = " << strText;
    });
  }
}

TEST(SettingTable, AnOutputSwitchStandsInTheRecordsOfBothPages) {
  tarvik::Setup setup = SampleSetup();
  Put(setup, "levels.output[2]", "on");
  EXPECT_TRUE(setup.Levels.fChannelOutputOn[2]);
  EXPECT_TRUE(setup.Timing.fChannelOutputOn[2]);
}

TEST(SettingTable, APulseTypeIsAlsoTheDelayThatIsSent) {
  tarvik::Setup setup = SampleSetup();
  Put(setup, "mode.pulseType[1]", "double");
  EXPECT_EQ(setup.Mode.PulseType[1], eTypeDouble);
  EXPECT_TRUE(setup.Timing.fDoublePulse[1]);
}

TEST(SettingTable, ReturnToZeroIsAlsoTheFormatOfTheMode) {
  tarvik::Setup setup = SampleSetup();
  Put(setup, "pattern.rz[1]", "on");
  EXPECT_TRUE(setup.fRz[1]);
  EXPECT_EQ(setup.Mode.SignalFormat[1], eFormatRz);
}

TEST(SettingTable, AnOffsetMovesBothLevelsAndAnAmplitudeSpreadsThem) {
  tarvik::Setup setup = SampleSetup();
  Put(setup, "levels.offset[1]", "2V");
  EXPECT_DOUBLE_EQ(setup.Levels.dblAmplOrHigh[1], 3.25);
  EXPECT_DOUBLE_EQ(setup.Levels.dblOffsetOrLow[1], 0.75);
  Put(setup, "levels.amplitude[1]", "1V");
  EXPECT_DOUBLE_EQ(setup.Levels.dblAmplOrHigh[1], 2.5);
  EXPECT_DOUBLE_EQ(setup.Levels.dblOffsetOrLow[1], 1.5);
}

TEST(SettingTable, AHighLevelIsWrittenIntoOffsetAndAmplitudeToo) {
  tarvik::Setup setup = SampleSetup();
  setup.Levels.eOutputLevel[1] = eLevelOffsetAmplitude;
  setup.Levels.dblAmplOrHigh[1] = 1;   // offset
  setup.Levels.dblOffsetOrLow[1] = 2;  // amplitude
  EXPECT_EQ(Entry(setup, "levels.high[1]"), "2V");
  EXPECT_EQ(Entry(setup, "levels.low[1]"), "0V");
  Put(setup, "levels.high[1]", "4V");
  EXPECT_DOUBLE_EQ(setup.Levels.dblAmplOrHigh[1], 2);
  EXPECT_DOUBLE_EQ(setup.Levels.dblOffsetOrLow[1], 4);
}

TEST(SettingTable, APeriodIsTheReciprocalOfTheFrequency) {
  tarvik::Setup setup = SampleSetup();
  Put(setup, "timing.period", "250ns");
  EXPECT_DOUBLE_EQ(setup.Timing.dblFrequency, 4e6);
  setup.Timing.dblFrequency = 0;
  EXPECT_EQ(Entry(setup, "timing.period"), "0s");
}

TEST(SettingTable, LevelsAreInTheUnitOfTheirChannel) {
  tarvik::Setup setup = SampleSetup();
  setup.Levels.eOutputType[1] = eTypeCurrent;
  EXPECT_EQ(Entry(setup, "levels.high[1]"), "2.5A");
  EXPECT_EQ(Entry(setup, "levels.high[2]"), "3.3V");
}

TEST(SettingTable, AModelHasNeitherWhatItLacksNorASecondChannelThatItHasNot) {
  tarvik::Setup setup = SampleSetup();
  setup.Instrument.lngNumChannels = 1;
  setup.lngLacks = eLacksTrailingEdge | eLacksImpedance | eLacksLoadCompensation | eLacksChannelMath |
                   eLacksComplement | eLacksVxiSource | eLacksVxiEnable;
  std::vector<std::string> arrMissing;
  for (const Setting &setting : Settings())
    if (!setting.IsHad(setup, setting.Channels().front())) arrMissing.emplace_back(setting.strKey);
  EXPECT_THAT(arrMissing,
              ElementsAre("timing.coupled", "timing.trailing", "levels.impedance", "levels.load", "levels.complement",
                          "levels.channelMath", "pattern.stream[2]", "trglevels.vxiLine", "trglevels.vxiSource"));
  EXPECT_TRUE(Row("timing.width[1]").IsHad(setup, 1));
  EXPECT_FALSE(Row("timing.width[2]").IsHad(setup, 2));
  EXPECT_TRUE(Row("pattern.strobe").IsHad(setup, 0));
}

struct UseRow {
  Long eTrigger, ePulse, eArming;
  std::vector<std::string> arrUnused;
};

/// What the nine mode setters and the one for an external width do not take.
TEST(SettingTable, KnowsWhatAModeDoesNotSend) {
  const UseRow rows[] = {
      {eTriggerContinuous,
       ePulseStream,
       eArmExternal,
       {"mode.burstLength", "mode.armingSource", "mode.armingLevel", "mode.pllFormat", "mode.pllPeriod",
        "mode.pllFrequency"}},
      {eTriggerContinuous,
       ePulseBurst,
       eArmExternal,
       {"mode.armingSource", "mode.armingLevel", "mode.pllFormat", "mode.pllPeriod", "mode.pllFrequency"}},
      {eTriggerTriggered,
       ePulseStream,
       eArmExternal,
       {"mode.burstLength", "mode.periodSource", "mode.clockEdge", "mode.pllFormat", "mode.pllPeriod",
        "mode.pllFrequency"}},
      {eTriggerTriggered, ePulseBurst, eArmPll, {"mode.armingLevel"}},
      {eTriggerTriggered, ePulsePattern, eArmPll, {"mode.burstLength", "mode.pulseType", "mode.armingLevel"}},
      {eTriggerGated, ePulseBurst, eArmExternal, {"mode.pllFormat", "mode.pllPeriod", "mode.pllFrequency"}},
      {eTriggerExtWidth,
       ePulseStream,
       eArmExternal,
       {"mode.pulse", "mode.burstLength", "mode.periodSource", "mode.clockEdge", "mode.armingLevel", "mode.pllFormat",
        "mode.pllPeriod", "mode.pllFrequency"}},
  };
  for (const UseRow &row : rows) {
    tarvik::Setup setup = SampleSetup();
    setup.Mode.TriggerMode = row.eTrigger;
    setup.Mode.PulseMode = row.ePulse;
    setup.Mode.ArmingSource = row.eArming;
    setup.Timing.fAutoCoupleLeTe = {False, False};
    setup.ePllRefSource = ePllRefClkIn;
    std::vector<std::string> arrUnused;
    for (const Setting &setting : Settings())
      if (!setting.IsInUse(setup, setting.Channels().front())) arrUnused.emplace_back(setting.strKey);
    EXPECT_EQ(arrUnused, row.arrUnused) << row.eTrigger << " " << row.ePulse;
  }
}

TEST(CanonicalSetup, HasOneValueWhereRecordsCarryTwoAndFreshOnesForWhatIsMissing) {
  tarvik::Setup setup = SampleSetup();
  setup.Timing.fChannelOutputOn[1] = False;
  setup.Mode.SignalFormat = {eFormatRz, eFormatNrz};
  setup.lngLacks = eLacksLoadCompensation;
  const tarvik::Setup canonical = Canonical(setup);
  EXPECT_TRUE(canonical.Timing.fChannelOutputOn[1]);
  EXPECT_EQ(canonical.Mode.SignalFormat, (ChannelArray<Long>{eFormatNrz, eFormatRz}));
  EXPECT_EQ(canonical.Levels.dblLoadCompensation, (ChannelArray<Double>{0, 0}));
  EXPECT_EQ(canonical.Instrument, setup.Instrument);
  EXPECT_EQ(Canonical(SampleSetup()), SampleSetup());
}

// ---- Texts ----

TEST(SettingText, ShowsQuantitiesAsTheFieldsDo) {
  EXPECT_EQ(EngineeringText(5, "V"), "5.000 V");
  EXPECT_EQ(EngineeringText(50e-9, "s"), "50.00 ns");
  EXPECT_EQ(EngineeringText(-0.7, "V"), "-700.0 mV");
  EXPECT_EQ(EngineeringText(330e6, "Hz"), "330.0 MHz");
  EXPECT_EQ(EngineeringText(0, "s"), "0.000 s");
  EXPECT_EQ(EngineeringText(1.23456, "V", 6), "1.23456 V");
  EXPECT_EQ(EngineeringText(1.5, "V", 4, ','), "1,500 V");
  EXPECT_EQ(EngineeringText(1e-15, "s"), "1e-15 s");
  EXPECT_EQ(EngineeringText(std::nan(""), "s"), "nan s");
}

TEST(SettingText, WritesTheShortestExactNumberWithItsPrefix) {
  EXPECT_EQ(ExactText(50e-9, "s"), "50ns");
  EXPECT_EQ(ExactText(1.515e-9, "s"), "1.515ns");
  EXPECT_EQ(ExactText(0.1 + 0.2, "V"), "300.00000000000004mV");
  EXPECT_EQ(ExactText(-20, "V"), "-20V");
  EXPECT_EQ(ExactText(0, "s"), "0s");
  EXPECT_EQ(ExactText(-0.0, "V"), "-0V");
  EXPECT_EQ(ExactText(1e-15, "s"), "1e-15");
  EXPECT_EQ(ExactText(5e-324, "s"), "5e-324");
}

struct TakenRow {
  const char *strKey, *strText;
  Double dblValue;
};

TEST(SettingText, TakesNumbersAsTheFieldsDo) {
  constexpr TakenRow Taken[] = {
      {"timing.width[1]", "50n", 50e-9},
      {"timing.width[1]", "50ns", 50e-9},
      {"timing.width[1]", " 50 ns ", 50e-9},
      {"timing.width[1]", "5e-8", 5e-8},
      {"timing.width[1]", "2", 2},
      {"levels.high[2]", "3.3V", 3.3},
      {"levels.high[2]", "-700mV", -0.7},
      {"timing.frequency", "1MHz", 1e6},
      {"timing.frequency", "1k", 1e3},
      {"levels.load[1]", "1kOhm", 1000},
      {"trglevels.extInThreshold", "+1.5", 1.5},
  };
  for (const TakenRow &row : Taken) {
    const auto place = FindSetting(row.strKey).value();
    EXPECT_EQ(std::get<Double>(ReadEntryText(*place.setting, SampleSetup(), place.lngChannel, row.strText)),
              row.dblValue)
        << row.strText;
  }
}

TEST(SettingText, SaysWhatIsWrongWithAnEntry) {
  EXPECT_EQ(Refusal("timing.width[1]", ""), "\"\" is no number with a unit like 50ns");
  EXPECT_EQ(Refusal("timing.width[1]", "fifty"), "\"fifty\" is no number with a unit like 50ns");
  EXPECT_EQ(Refusal("timing.width[1]", "50V"), "\"50V\" is no number with a unit like 50ns");
  EXPECT_EQ(Refusal("timing.width[1]", "3.0.5us"), "\"3.0.5us\" is no number with a unit like 50ns");
  EXPECT_EQ(Refusal("timing.width[1]", "1e400"), "\"1e400\" is no number with a unit like 50ns");
  EXPECT_EQ(Refusal("timing.width[1]", "nan"), "\"nan\" is no number with a unit like 50ns");
  EXPECT_EQ(Refusal("mode.burstLength", "2.5"), "\"2.5\" is no whole number");
  EXPECT_EQ(Refusal("mode.burstLength", "x"), "\"x\" is no number like 12");
  EXPECT_EQ(Refusal("mode.trigger", "Sometimes"), "\"Sometimes\" is not Continuous, Triggered, Gated or ExtWidth");
  EXPECT_EQ(Refusal("mode.trigger", "7"), "\"7\" is not Continuous, Triggered, Gated or ExtWidth");
  EXPECT_EQ(Refusal("mode.periodSource", "7"), "taken");
  EXPECT_EQ(Refusal("levels.output[1]", "1"), "\"1\" is not On or Off");
  EXPECT_EQ(Refusal("pattern.stream[1]", "FF00"), "\"FF00\" is no pattern like \"16 bits; 1: FF00\"");
  EXPECT_EQ(Refusal("mode.trigger", "triggered"), "taken");
}

std::string ObjectionTo(std::string_view strKey, const SettingValue &value, Long lngLacks = 0) {
  tarvik::Setup setup = SampleSetup();
  setup.lngLacks = lngLacks;
  const auto place = FindSetting(strKey).value();
  return Objection(*place.setting, setup, place.lngChannel, value);
}

TEST(SettingText, ObjectsToWhatIsOutOfRange) {
  EXPECT_EQ(ObjectionTo("timing.width[1]", 1.5e-9), "");
  EXPECT_EQ(ObjectionTo("timing.width[1]", 1e-9), "1ns is out of the range 1.5ns to 999.5s");
  EXPECT_EQ(ObjectionTo("timing.width[1]", std::nan("")), "nan is out of the range 1.5ns to 999.5s");
  EXPECT_EQ(ObjectionTo("levels.high[1]", 20.5), "20.5V is out of the range -20V to 20V");
  EXPECT_EQ(ObjectionTo("mode.burstLength", Long{1}), "1 is out of the range 2 to 65536");
  EXPECT_EQ(ObjectionTo("mode.trigger", Long{9}), "9 is not Continuous, Triggered, Gated or ExtWidth");
  EXPECT_EQ(ObjectionTo("mode.periodSource", Long{9}), "");
  EXPECT_EQ(ObjectionTo("mode.armingSource", Long{eVxiTtlt0}), "");
  EXPECT_EQ(ObjectionTo("mode.armingSource", Long{eVxiTtlt0}, eLacksVxiLines), "the instrument does not have Ttlt0");
}

TEST(SettingTable, AnotherNotationLeavesWhatTheNumbersMean) {
  tarvik::Setup setup = SampleSetup();
  setup.Levels.dblAmplOrHigh[1] = 3;
  setup.Levels.dblOffsetOrLow[1] = 1;
  WriteAsMeant(*FindSetting("levels.format[1]"), setup, Long{eLevelOffsetAmplitude});
  EXPECT_EQ(setup.Levels.eOutputLevel[1], eLevelOffsetAmplitude);
  EXPECT_EQ(setup.Levels.dblAmplOrHigh[1], 2);
  EXPECT_EQ(setup.Levels.dblOffsetOrLow[1], 2);
  EXPECT_EQ(setup.Levels.dblAmplOrHigh[2], SampleSetup().Levels.dblAmplOrHigh[2]);
  WriteAsMeant(*FindSetting("mode.pllFormat"), setup, Long{ePllPeriod});
  EXPECT_EQ(setup.Mode.PllPeriodOrFreq, 500e-9) << "of 2 MHz";
}

}  // namespace
}  // namespace tarvik::test
