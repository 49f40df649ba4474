#pragma once

#include <algorithm>
#include <cmath>
#include <random>

#include "settings/Setting.h"

namespace tarvik::test {

/// A setup of a two-channel instrument that lacks nothing, with a value of its own in every setting.
inline Setup SampleSetup() {
  Setup setup;
  setup.Instrument = {2, "24", "VP-210 Dual Pulse Generator", "V210-00417", "2.31", "010 VXI trigger", ""};
  setup.Mode = {eTriggerTriggered,
                ePulseBurst,
                7,
                {eTypeSingle, eTypeDouble},
                {eFormatNrz, eFormatRz},
                eSourceClkIn,
                eSlopeRising,
                eArmExternal,
                eSlopeBoth,
                ePllFrequency,
                2e6};
  setup.Timing.dblFrequency = 1e6;
  setup.Timing.fDoublePulse = {False, True};
  setup.Timing.fAutoCoupleLeTe = {True, False};
  setup.Timing.dblDelay = {20e-9, 300e-9};
  setup.Timing.dblWidth = {50e-9, 100e-9};
  setup.Timing.dblLeading = {2e-9, 3e-9};
  setup.Timing.dblTrailing = {2e-9, 4e-9};
  setup.Timing.fChannelOutputOn = setup.Levels.fChannelOutputOn = {True, False};
  setup.Timing.fChannelOutputInvOn = setup.Levels.fChannelOutputInvOn = {False, True};
  setup.Levels.eOutputLevel = {eLevelHighLow, eLevelHighLow};
  setup.Levels.dblAmplOrHigh = {2.5, 3.3};
  setup.Levels.dblOffsetOrLow = {0, -0.7};
  setup.Levels.dblLoadCompensation = {50, 75};
  setup.Levels.dblOutputImpedance = {50, 1000};
  setup.Levels.eOutputPolarity = {ePolarityNormal, ePolarityComplement};
  setup.Limits.fEnabled = {False, True};
  setup.Limits.dblHighVoltage = {5, 6};
  setup.Limits.dblLowVoltage = {-5, -6};
  setup.Limits.dblHighCurrent = {0.1, 0.2};
  setup.Limits.dblLowCurrent = {-0.1, -0.2};
  setup.TrgLevels = {2.5, 10000, -1.3, 50, eOutLevelTTL, eOutLevelECL, eVxiSourceStrobe, eVxiTtlt0 + 3};
  setup.Pattern = {PatternStream{16, {0xFF, 0x00}}, PatternStream{20, {0x12, 0x34, 0x50}}, PatternStream{2, {0x80}}};
  setup.fRz = {False, True};
  setup.dblPllRefFreq = 10e6;
  setup.ePllRefSource = ePllRefInternal;
  return setup;
}

/// Setups with any value that a setting can have, of instruments that lack something or nothing.
class RandomSetups {
 public:
  explicit RandomSetups(unsigned seed) : m_random(seed) {}

  Setup Next() {
    Setup setup;
    setup.Instrument = {Whole(1, 2), Text(), Text(), Text(), Text(), Text(), Text()};
    setup.lngLacks = static_cast<Long>(m_random()) & AllFunctionality;
    for (const Setting &setting : Settings())
      for (const Long lngChannel : setting.Channels())
        if (setting.IsHad(setup, lngChannel) && setting.IsStored(setup, lngChannel))
          setting.Write(setup, lngChannel, Value(setting, setup));
    return Canonical(setup);
  }

  Long Whole(Long lngMin, Long lngMax) { return std::uniform_int_distribution<Long>(lngMin, lngMax)(m_random); }

  SettingValue Value(const Setting &setting, const Setup &setup) {
    switch (setting.eKind) {
      case SettingKind::Switch: return Boolean(Whole(0, 1) == 1);
      case SettingKind::Count: return Whole(static_cast<Long>(setting.dblMin), static_cast<Long>(setting.dblMax));
      case SettingKind::Choice: return Choice(setting, setup);
      case SettingKind::Quantity:
        if ((setting.eFixed & setup.lngLacks) != 0) return Whole(0, 1) == 0 ? 0.8e-9 : 1.6e-9;
        return Quantity(setting.dblMin, setting.dblMax);
      case SettingKind::Stream: return Stream();
    }
    return Boolean();
  }

 private:
  Long Choice(const Setting &setting, const Setup &setup) {
    for (;;) {
      const SettingWord &word = setting.arrWords[Index(setting.arrWords.size())];
      if ((word.eLack & setup.lngLacks) == 0) return word.lngValue;
    }
  }

  /// Evenly over the range, near zero, or one of its ends: the places where texts of numbers go wrong.
  Double Quantity(Double dblMin, Double dblMax) {
    switch (Whole(0, 5)) {
      case 0: return dblMin;
      case 1: return dblMax;
      case 2: return dblMin <= 0 ? -0.0 : dblMin;
      case 3: {
        const Double dblSmall = std::ldexp(1 + Part(), Whole(-60, 20));
        return std::clamp(dblMin < 0 && Whole(0, 1) ? -dblSmall : dblSmall, dblMin, dblMax);
      }
      default: return dblMin + (dblMax - dblMin) * Part();
    }
  }

  /// Runs of any length beside noise.
  PatternStream Stream() {
    PatternStream stream;
    stream.lngLength = Whole(0, 3) == 0 ? Whole(0, 3000) : Whole(0, 40);
    stream.arrBytes.resize(static_cast<std::size_t>((stream.lngLength + 7) / 8));
    Byte byRun = 0;
    for (Byte &byPlace : stream.arrBytes) {
      if (Whole(0, 63) == 0) byRun = static_cast<Byte>(m_random());
      byPlace = byRun;
    }
    if (stream.lngLength % 8 != 0)
      stream.arrBytes.back() = static_cast<Byte>(stream.arrBytes.back() & 0xFF << (8 - stream.lngLength % 8));
    return stream;
  }

  std::string Text() {
    static const std::string Characters = "Aa 0,\"\\\n\t{}é";
    std::string strText;
    for (Long i = Whole(0, 6); i > 0; --i) strText += Characters[Index(Characters.size() - 2)];
    return Whole(0, 3) == 0 ? strText + "é" : strText;
  }

  Double Part() { return std::uniform_real_distribution<Double>(0, 1)(m_random); }
  std::size_t Index(std::size_t size) { return std::uniform_int_distribution<std::size_t>(0, size - 1)(m_random); }

  std::mt19937 m_random;
};

}  // namespace tarvik::test
