#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "scpi/ProfileFolders.h"
#include "scpi/SettingCommand.h"
#include "simulator/model/RackFile.h"
#include "simulator/model/Validation.h"

namespace tarvik::scpi {
namespace {

using driver::Settings;

/// Random settings that the simulated instrument would take.
class SettingsSource {
 public:
  explicit SettingsSource(unsigned seed) : m_random(seed) {}

  Settings Next() {
    for (;;) {
      const Settings settings = Any();
      if (simulator::Violations(settings, Description()).empty()) return settings;
    }
  }
  static simulator::InstrumentDescription Description() { return simulator::DefaultRack().front(); }

 private:
  Long Number(Long lngMin, Long lngMax) { return std::uniform_int_distribution<Long>(lngMin, lngMax)(m_random); }
  bool Coin() { return Number(0, 1) == 1; }
  Double Time() { return std::pow(10, std::uniform_real_distribution<Double>(-8.5, -3)(m_random)); }
  Double Level(Double dblMost) { return std::uniform_real_distribution<Double>(-dblMost, dblMost)(m_random); }

  Settings Any() {
    Settings s;
    s.mode.lngTriggerMode = Number(0, 3);
    s.mode.lngPulseMode = Number(0, 2);
    s.mode.lngPeriodSource = Number(0, 2);
    s.mode.lngArmSource = Coin() ? eArmPll : Number(3, 14);
    s.dblFrequency = 1 / Time();
    for (const Long lngChannel : {1, 2}) {
      driver::ChannelTiming &timing = s.timing[lngChannel];
      timing.lngPulseType = Coin() ? eTypeDouble : eTypeSingle;
      timing.lngSignalFormat = Coin() ? eFormatNrz : eFormatRz;
      timing.dblWidth = Time();
      timing.dblSingleDelay = Time();
      timing.dblDoubleDelay = Time();
      driver::ChannelLevels &levels = s.levels[lngChannel];
      levels.lngType = Coin() ? eTypeCurrent : eTypeVoltage;
      const Double dblMost = levels.lngType == eTypeCurrent ? 0.8 : 20;
      levels.dblLow = Level(dblMost);
      levels.dblHigh = Level(dblMost);
      s.limits[lngChannel] = {Coin(), 10 + Level(10), -10 + Level(10), 0.4 + Level(0.4), -0.4 + Level(0.4)};
    }
    return s;
  }

  std::mt19937 m_random;
};

/// The settings after one step, as an instrument has them that takes each message by itself.
void Take(Settings &settings, const std::vector<ProfilePlace> &arrPlaces, const Settings &to) {
  for (const ProfilePlace &place : arrPlaces) place.pSetting->pRow->Write(settings, place.lngChannel, place.Value(to));
}

TEST(ScpiOrder, NoStepBetweenTwoAllowedStatesPassesThroughAForbiddenOne) {
  const char *strCount = std::getenv("TARVIK_RANDOM_SETUPS");
  const int count = strCount ? std::atoi(strCount) : 300;
  const Profile profile = ProfileFolders::OfMachine().Read("scpi-99-pattern");
  SettingsSource source(20240611);
  Settings from = source.Next();
  int steps = 0;
  for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
    const Settings to = source.Next();
    Settings now = from;
    std::string strPath;
    for (const auto &arrPlaces : StepsBetween(profile, from, to)) {
      Take(now, arrPlaces, to);
      strPath += " " + arrPlaces.front().Key();
      ++steps;
      const auto arrWhy = simulator::Violations(now, SettingsSource::Description());
      EXPECT_TRUE(arrWhy.empty()) << "pair " << i << ":" << strPath << ": " << driver::JoinEntries(arrWhy, true);
    }
    EXPECT_TRUE(now == to) << strPath;
    from = to;
  }
  std::printf("%d steps between %d pairs of states\n", steps, count);
}

TEST(ScpiOrder, WhatGivesRoomGoesFirstAndWhatTakesItLast) {
  const Profile profile = ProfileFolders::OfMachine().Read("scpi-99-pattern");
  Settings from, to;
  to.dblFrequency = 1e3;
  to.timing[1].dblWidth = 5e-4;
  to.timing[2].dblWidth = 50e-9;
  std::string strKeys;
  for (const auto &arrPlaces : StepsBetween(profile, from, to)) strKeys += arrPlaces.front().Key() + " ";
  EXPECT_EQ("timing.frequency timing.width[2] timing.width[1] ", strKeys);
  strKeys.clear();
  for (const auto &arrPlaces : StepsBetween(profile, to, from)) strKeys += arrPlaces.front().Key() + " ";
  EXPECT_EQ("timing.width[1] timing.width[2] timing.frequency ", strKeys);
}

TEST(ScpiOrder, AnotherUnitOfTheLevelsAndBothOfThemAreOneEntry) {
  const Profile profile = ProfileFolders::OfMachine().Read("scpi-99-pattern");
  Settings from, to;
  to.levels[2].lngType = eTypeCurrent;
  to.levels[2].dblHigh = 0.02;
  const auto arrSteps = StepsBetween(profile, from, to);
  ASSERT_EQ(1u, arrSteps.size());
  EXPECT_EQ(":SOUR2:FUNC:MODE CURR;:SOUR2:CURR:LEV:IMM:HIGH 0.02;:SOUR2:CURR:LEV:IMM:LOW 0",
            CommandsOf(arrSteps[0], to));
}

}  // namespace
}  // namespace tarvik::scpi
