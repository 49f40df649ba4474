#include "scpi/SettingRow.h"

#include <algorithm>

namespace tarvik::scpi {

namespace {

using driver::ChannelLevels;
using driver::ChannelLimits;
using driver::ChannelTiming;
using driver::InputSettings;
using driver::ModeSettings;
using driver::Settings;
using driver::TriggerLevelSettings;

/// A member behind a chain of members; a ChannelArray on the way is entered at the channel.
template <auto First, auto... Rest>
struct Field {
  template <class Owner>
  static auto &Of(Owner &owner, Long lngChannel) {
    auto &member = owner.*First;
    if constexpr (sizeof...(Rest) == 0)
      return member;
    else if constexpr (requires { member[lngChannel]; })
      return Field<Rest...>::Of(member[lngChannel], lngChannel);
    else
      return Field<Rest...>::Of(member, lngChannel);
  }
  static Double Read(const Settings &settings, Long lngChannel) {
    return static_cast<Double>(Of(settings, lngChannel));
  }
  static void Write(Settings &settings, Long lngChannel, Double dblValue) {
    auto &field = Of(settings, lngChannel);
    field = static_cast<std::remove_reference_t<decltype(field)>>(dblValue);
  }
};

/// Told as the reciprocal; 0 has none and stays.
template <class Told>
struct Reciprocal {
  static Double Of(Double dblValue) { return dblValue == 0 ? 0 : 1 / dblValue; }
  static Double Read(const Settings &settings, Long lngChannel) { return Of(Told::Read(settings, lngChannel)); }
  static void Write(Settings &settings, Long lngChannel, Double dblValue) {
    Told::Write(settings, lngChannel, Of(dblValue));
  }
};

/// Offset and amplitude of the levels that are kept as high and low. Each keeps the other.
template <bool fAmplitude>
struct OffsetAmplitude {
  static Double Read(const Settings &settings, Long lngChannel) {
    const auto [dblOffset, dblAmplitude] = settings.levels[lngChannel].Get(eLevelOffsetAmplitude);
    return fAmplitude ? dblAmplitude : dblOffset;
  }
  static void Write(Settings &settings, Long lngChannel, Double dblValue) {
    ChannelLevels &levels = settings.levels[lngChannel];
    const auto [dblOffset, dblAmplitude] = levels.Get(eLevelOffsetAmplitude);
    levels.Set(eLevelOffsetAmplitude, levels.lngType, fAmplitude ? dblOffset : dblValue,
               fAmplitude ? dblValue : dblAmplitude);
  }
};

template <Long lngOutput>
struct AuxLevel {
  static Double Read(const Settings &settings, Long) {
    return static_cast<Double>(settings.triggerLevels.arrOutLevel[lngOutput]);
  }
  static void Write(Settings &settings, Long, Double dblValue) {
    settings.triggerLevels.arrOutLevel[lngOutput] = static_cast<Long>(dblValue);
  }
};

template <class Access>
constexpr SettingRow Of(std::string_view strKey, std::string_view strLikeKey = {}) {
  return {strKey, strLikeKey.empty() ? strKey : strLikeKey, &Access::Read, &Access::Write};
}
constexpr SettingRow PatternOf(std::string_view strKey, Long lngRow) {
  return {strKey, strKey, nullptr, nullptr, lngRow};
}

template <auto Member>
using Mode = Field<&Settings::mode, Member>;
template <auto Member>
using Timing = Field<&Settings::timing, Member>;
template <auto Member>
using Levels = Field<&Settings::levels, Member>;
template <auto Member>
using Limits = Field<&Settings::limits, Member>;
template <auto... Members>
using TriggerLevels = Field<&Settings::triggerLevels, Members...>;
using T = TriggerLevelSettings;

constexpr SettingRow Table[] = {
    Of<Mode<&ModeSettings::lngTriggerMode>>("mode.trigger"),
    Of<Mode<&ModeSettings::lngPulseMode>>("mode.pulse"),
    Of<Mode<&ModeSettings::lngBurstLength>>("mode.burstLength"),
    Of<Timing<&ChannelTiming::lngPulseType>>("mode.pulseType"),
    Of<Mode<&ModeSettings::lngPeriodSource>>("mode.periodSource"),
    Of<Mode<&ModeSettings::lngClockSlope>>("mode.clockEdge"),
    Of<Mode<&ModeSettings::lngArmSource>>("mode.armingSource"),
    Of<Mode<&ModeSettings::lngArmSlope>>("mode.armingLevel"),
    Of<Reciprocal<Mode<&ModeSettings::dblPllFrequency>>>("mode.pllPeriod"),
    Of<Mode<&ModeSettings::dblPllFrequency>>("mode.pllFrequency"),
    Of<Field<&Settings::dblFrequency>>("timing.frequency"),
    Of<Reciprocal<Field<&Settings::dblFrequency>>>("timing.period"),
    Of<Timing<&ChannelTiming::dblSingleDelay>>("timing.delay"),
    Of<Timing<&ChannelTiming::dblDoubleDelay>>("timing.doubleDelay", "timing.delay"),
    Of<Timing<&ChannelTiming::dblWidth>>("timing.width"),
    Of<Timing<&ChannelTiming::dblLeading>>("timing.leading"),
    Of<Timing<&ChannelTiming::fCoupled>>("timing.coupled"),
    Of<Timing<&ChannelTiming::dblTrailing>>("timing.trailing"),
    Of<Levels<&ChannelLevels::lngType>>("levels.unit"),
    Of<Levels<&ChannelLevels::dblHigh>>("levels.high"),
    Of<Levels<&ChannelLevels::dblLow>>("levels.low"),
    Of<OffsetAmplitude<false>>("levels.offset"),
    Of<OffsetAmplitude<true>>("levels.amplitude"),
    Of<Levels<&ChannelLevels::dblImpedance>>("levels.impedance"),
    Of<Levels<&ChannelLevels::dblLoadCompensation>>("levels.load"),
    Of<Levels<&ChannelLevels::lngPolarity>>("levels.polarity"),
    Of<Levels<&ChannelLevels::fOutput>>("levels.output"),
    Of<Levels<&ChannelLevels::fComplementOutput>>("levels.complement"),
    Of<Field<&Settings::lngChannelMath>>("levels.channelMath"),
    Of<Timing<&ChannelTiming::lngSignalFormat>>("pattern.rz"),
    PatternOf("pattern.stream[1]", ePatternChan1),
    PatternOf("pattern.stream[2]", ePatternChan2),
    PatternOf("pattern.strobe", ePatternStrobe),
    Of<Limits<&ChannelLimits::fEnabled>>("limits.enabled"),
    Of<Limits<&ChannelLimits::dblHighVoltage>>("limits.highVoltage"),
    Of<Limits<&ChannelLimits::dblLowVoltage>>("limits.lowVoltage"),
    Of<Limits<&ChannelLimits::dblHighCurrent>>("limits.highCurrent"),
    Of<Limits<&ChannelLimits::dblLowCurrent>>("limits.lowCurrent"),
    Of<TriggerLevels<&T::extInput, &InputSettings::dblThreshold>>("trglevels.extInThreshold"),
    Of<TriggerLevels<&T::extInput, &InputSettings::dblImpedance>>("trglevels.extInImpedance"),
    Of<TriggerLevels<&T::clockInput, &InputSettings::dblThreshold>>("trglevels.clkInThreshold"),
    Of<TriggerLevels<&T::clockInput, &InputSettings::dblImpedance>>("trglevels.clkInImpedance"),
    Of<AuxLevel<eOutTrigger>>("trglevels.triggerOut"),
    Of<AuxLevel<eOutStrobe>>("trglevels.strobeOut"),
    Of<TriggerLevels<&T::lngVxiLine>>("trglevels.vxiLine"),
    Of<TriggerLevels<&T::lngVxiSource>>("trglevels.vxiSource"),
    Of<Field<&Settings::lngPllReferenceSource>>("pll.source"),
    Of<Field<&Settings::dblPllReference>>("pll.frequency"),
};

}  // namespace

const Setting &SettingRow::Like() const { return *std::ranges::find(tarvik::Settings(), strLikeKey, &Setting::strKey); }

std::span<const SettingRow> SettingRows() { return Table; }

const SettingRow *FindRow(std::string_view strKey) {
  const auto row = std::ranges::find(Table, strKey, &SettingRow::strKey);
  return row == std::end(Table) ? nullptr : row;
}

}  // namespace tarvik::scpi
