#include "settings/ModeMask.h"
#include "settings/Setting.h"
#include "settings/TimingRules.h"

namespace tarvik {

namespace {

// ---- Words ----

constexpr SettingWord TriggerModes[] = {{"Continuous", eTriggerContinuous},
                                        {"Triggered", eTriggerTriggered},
                                        {"Gated", eTriggerGated},
                                        {"ExtWidth", eTriggerExtWidth}};
constexpr SettingWord PulseModes[] = {{"Stream", ePulseStream}, {"Burst", ePulseBurst}, {"Pattern", ePulsePattern}};
constexpr SettingWord PulseTypes[] = {{"Single", eTypeSingle}, {"Double", eTypeDouble}};
constexpr SettingWord PeriodSources[] = {
    {"Oscillator", eSourceOscillator}, {"Pll", eSourcePll}, {"ClkIn", eSourceClkIn}};
constexpr SettingWord ClockEdges[] = {{"Falling", eSlopeFalling}, {"Rising", eSlopeRising}, {"Keep", eKeepSlope}};
constexpr SettingWord ArmingSources[] = {{"Keep", eKeepArmingSource},
                                         {"Pll", eArmPll},
                                         {"External", eArmExternal},
                                         {"Manual", eArmManual},
                                         {"Eclt0", eVxiEclt0, eLacksVxiLines},
                                         {"Eclt1", eVxiEclt1, eLacksVxiLines},
                                         {"Ttlt0", eVxiTtlt0, eLacksVxiLines},
                                         {"Ttlt1", eVxiTtlt0 + 1, eLacksVxiLines},
                                         {"Ttlt2", eVxiTtlt0 + 2, eLacksVxiLines},
                                         {"Ttlt3", eVxiTtlt0 + 3, eLacksVxiLines},
                                         {"Ttlt4", eVxiTtlt0 + 4, eLacksVxiLines},
                                         {"Ttlt5", eVxiTtlt0 + 5, eLacksVxiLines},
                                         {"Ttlt6", eVxiTtlt0 + 6, eLacksVxiLines},
                                         {"Ttlt7", eVxiTtlt7, eLacksVxiLines}};
constexpr SettingWord ArmingLevels[] = {
    {"Falling", eSlopeFalling}, {"Rising", eSlopeRising}, {"Both", eSlopeBoth}, {"Keep", eKeepSlope}};
constexpr SettingWord PllFormats[] = {{"Period", ePllPeriod}, {"Frequency", ePllFrequency}, {"Keep", eKeepPllFormat}};
constexpr SettingWord LevelFormats[] = {{"OffsetAmplitude", eLevelOffsetAmplitude}, {"HighLow", eLevelHighLow}};
constexpr SettingWord LevelUnits[] = {{"V", eTypeVoltage}, {"A", eTypeCurrent}};
constexpr SettingWord Polarities[] = {{"Normal", ePolarityNormal}, {"Complement", ePolarityComplement}};
constexpr SettingWord ChannelMaths[] = {{"Separate", eMathSeparate}, {"Added", eMathAdded}};
constexpr SettingWord OutLevels[] = {{"TTL", eOutLevelTTL}, {"ECL", eOutLevelECL}};
constexpr SettingWord VxiSources[] = {{"Trigger", eVxiSourceTrigger}, {"Strobe", eVxiSourceStrobe}};
constexpr SettingWord VxiLines[] = {{"Eclt0", eVxiEclt0},     {"Eclt1", eVxiEclt1},     {"Ttlt0", eVxiTtlt0},
                                    {"Ttlt1", eVxiTtlt0 + 1}, {"Ttlt2", eVxiTtlt0 + 2}, {"Ttlt3", eVxiTtlt0 + 3},
                                    {"Ttlt4", eVxiTtlt0 + 4}, {"Ttlt5", eVxiTtlt0 + 5}, {"Ttlt6", eVxiTtlt0 + 6},
                                    {"Ttlt7", eVxiTtlt7}};
constexpr SettingWord PllReferenceSources[] = {{"ClkIn", ePllRefClkIn}, {"Internal", ePllRefInternal}};

// ---- How a Setup carries a setting ----

/// A member of one of the records, or the entry of the channel in it.
template <auto Record, auto Member>
struct Field {
  template <class AnySetup>
  static auto &Of(AnySetup &setup, Long lngChannel) {
    auto &member = setup.*Record.*Member;
    if constexpr (requires { member[lngChannel]; })
      return member[lngChannel];
    else
      return member;
  }
  using Type = std::remove_reference_t<decltype(Of(std::declval<Setup &>(), 0))>;

  static SettingValue Read(const Setup &setup, Long lngChannel) { return Type(Of(setup, lngChannel)); }
  static void Write(Setup &setup, Long lngChannel, const SettingValue &value) {
    Of(setup, lngChannel) = std::get<Type>(value);
  }
};

/// An output switch, which the records of two pages carry.
template <auto OfTiming, auto OfLevels>
struct OutputSwitch : Field<&Setup::Levels, OfLevels> {
  static void Write(Setup &setup, Long lngChannel, const SettingValue &value) {
    Field<&Setup::Levels, OfLevels>::Write(setup, lngChannel, value);
    Field<&Setup::Timing, OfTiming>::Write(setup, lngChannel, value);
  }
};

/// The mode's record sends the pulse type, and the block that takes the delay decides the same once more.
struct PulseTypeField {
  static SettingValue Read(const Setup &setup, Long lngChannel) {
    return setup.Timing.fDoublePulse[lngChannel] ? Long{eTypeDouble} : Long{eTypeSingle};
  }
  static void Write(Setup &setup, Long lngChannel, const SettingValue &value) {
    setup.Mode.PulseType[lngChannel] = std::get<Long>(value);
    setup.Timing.fDoublePulse[lngChannel] = std::get<Long>(value) == eTypeDouble;
  }
};

/// The mode's record sends the same format in pattern mode.
struct RzField {
  static SettingValue Read(const Setup &setup, Long lngChannel) { return setup.fRz[lngChannel]; }
  static void Write(Setup &setup, Long lngChannel, const SettingValue &value) {
    setup.fRz[lngChannel] = std::get<Boolean>(value);
    setup.Mode.SignalFormat[lngChannel] = setup.fRz[lngChannel] ? eFormatRz : eFormatNrz;
  }
};

struct PllFreqField {
  static SettingValue Read(const Setup &setup, Long) { return setup.dblPllRefFreq; }
  static void Write(Setup &setup, Long, const SettingValue &value) { setup.dblPllRefFreq = std::get<Double>(value); }
};

struct PllSourceField {
  static SettingValue Read(const Setup &setup, Long) { return setup.ePllRefSource; }
  static void Write(Setup &setup, Long, const SettingValue &value) { setup.ePllRefSource = std::get<Long>(value); }
};

/// 0 has no reciprocal and stays: it stands for "not told".
Double Reciprocal(Double dblValue) { return dblValue == 0 ? 0 : 1 / dblValue; }

struct PeriodField {
  static SettingValue Read(const Setup &setup, Long) { return Reciprocal(setup.Timing.dblFrequency); }
  static void Write(Setup &setup, Long, const SettingValue &value) {
    setup.Timing.dblFrequency = Reciprocal(std::get<Double>(value));
  }
};

/// The PLL as arming source, told as a period or as a frequency.
template <bool fPeriod>
struct ArmingPllField {
  static bool IsStored(const Setup &setup, Long) { return (setup.Mode.PllFormat == ePllPeriod) == fPeriod; }
  static SettingValue Read(const Setup &setup, Long lngChannel) {
    const Double dblKept = setup.Mode.PllPeriodOrFreq;
    return IsStored(setup, lngChannel) ? dblKept : Reciprocal(dblKept);
  }
  static void Write(Setup &setup, Long lngChannel, const SettingValue &value) {
    const auto dblValue = std::get<Double>(value);
    setup.Mode.PllPeriodOrFreq = IsStored(setup, lngChannel) ? dblValue : Reciprocal(dblValue);
  }
};

/// The two levels of a channel. The first number of the record is the high level or the offset, the second the low
/// level or the amplitude.
struct LevelPair {
  Double dblFirst, dblSecond;

  static LevelPair HighLowOf(const Setup &setup, Long lngChannel);
  static LevelPair OffsetAmplitudeOf(const Setup &setup, Long lngChannel);
};

bool IsOffsetAmplitude(const Setup &setup, Long lngChannel) {
  return setup.Levels.eOutputLevel[lngChannel] == eLevelOffsetAmplitude;
}
bool IsHighLow(const Setup &setup, Long lngChannel) { return !IsOffsetAmplitude(setup, lngChannel); }

LevelPair ToHighLow(const LevelPair &pair) {
  return {pair.dblFirst + pair.dblSecond / 2, pair.dblFirst - pair.dblSecond / 2};
}
LevelPair ToOffsetAmplitude(const LevelPair &pair) {
  return {(pair.dblFirst + pair.dblSecond) / 2, pair.dblFirst - pair.dblSecond};
}

template <bool fOffsetAmplitude, Double LevelPair::*Part>
struct LevelField {
  static bool IsKept(const Setup &setup, Long lngChannel) {
    return IsOffsetAmplitude(setup, lngChannel) == fOffsetAmplitude;
  }
  static LevelPair Pair(const Setup &setup, Long lngChannel) {
    const LevelPair kept{setup.Levels.dblAmplOrHigh[lngChannel], setup.Levels.dblOffsetOrLow[lngChannel]};
    if (IsKept(setup, lngChannel)) return kept;
    return fOffsetAmplitude ? ToOffsetAmplitude(kept) : ToHighLow(kept);
  }
  static SettingValue Read(const Setup &setup, Long lngChannel) { return Pair(setup, lngChannel).*Part; }
  static void Write(Setup &setup, Long lngChannel, const SettingValue &value) {
    LevelPair pair = Pair(setup, lngChannel);
    pair.*Part = std::get<Double>(value);
    if (!IsKept(setup, lngChannel)) pair = fOffsetAmplitude ? ToHighLow(pair) : ToOffsetAmplitude(pair);
    setup.Levels.dblAmplOrHigh[lngChannel] = pair.dblFirst;
    setup.Levels.dblOffsetOrLow[lngChannel] = pair.dblSecond;
  }
};

template <std::size_t Row>
struct StreamField {
  static SettingValue Read(const Setup &setup, Long) { return setup.Pattern[Row]; }
  static void Write(Setup &setup, Long, const SettingValue &value) {
    setup.Pattern[Row] = std::get<PatternStream>(value);
  }
};

// ---- When a transfer sends a setting ----

bool IsEnabled(const char *strMask, const Setup &setup) {
  return IsEnabledAt(strMask, ModePosition(setup.Mode.TriggerMode, setup.Mode.PulseMode));
}
bool HasPulseModes(const Setup &setup, Long) { return setup.Mode.TriggerMode != eTriggerExtWidth; }
bool HasBursts(const Setup &setup, Long) { return IsEnabled(ModeMasks::BurstLength, setup); }
bool HasPulseTypes(const Setup &setup, Long) { return setup.Mode.PulseMode != ePulsePattern; }
bool HasPeriodSource(const Setup &setup, Long) { return IsEnabled(ModeMasks::PeriodSource, setup); }
bool IsArmed(const Setup &setup, Long) { return IsEnabled(ModeMasks::ArmingSource, setup); }
bool HasArmingLevel(const Setup &setup, Long) {
  return IsEnabled(ModeMasks::ArmingLevel, setup) && setup.Mode.ArmingSource != eArmPll;
}
bool IsArmedByPll(const Setup &setup, Long lngChannel) {
  return IsArmed(setup, lngChannel) && setup.Mode.ArmingSource == eArmPll;
}
bool HasOwnTrailingEdge(const Setup &setup, Long lngChannel) { return !setup.Timing.fAutoCoupleLeTe[lngChannel]; }

bool HasExternalReference(const Setup &setup, Long) { return setup.ePllRefSource == ePllRefClkIn; }

bool IsNeverStored(const Setup &, Long) { return false; }

// ---- Rows ----

/// Turns a setting into one that is written down in the table; each call adds what is not the rule.
struct Row : Setting {
  constexpr explicit Row(const Setting &setting) : Setting(setting) {}
  constexpr Row In(std::string_view strTheUnit, Double dblLowest, Double dblHighest) const {
    Row row = *this;
    row.strUnit = strTheUnit;
    row.dblMin = dblLowest;
    row.dblMax = dblHighest;
    return row;
  }
  constexpr Row InLevelUnit() const {
    Row row = In("", -20, 20);
    row.fLevelUnit = true;
    return row;
  }
  constexpr Row Lacking(Long eBit) const {
    Row row = *this;
    row.eLack = eBit;
    return row;
  }
  constexpr Row FixedBy(Long eBit) const {
    Row row = *this;
    row.eFixed = eBit;
    return row;
  }
  constexpr Row OnlyWords() const {
    Row row = *this;
    row.fOnlyWords = true;
    return row;
  }
  constexpr Row Notation() const {
    Row row = *this;
    row.fNotation = true;
    return row;
  }
  constexpr Row OfPattern2() const {
    Row row = *this;
    row.fOfPattern2 = true;
    return row;
  }
  constexpr Row UsedWhen(Condition fUsed) const {
    Row row = *this;
    row.InUse = fUsed;
    return row;
  }
  constexpr Row StoredWhen(Condition fStored) const {
    Row row = *this;
    row.Stored = fStored;
    return row;
  }
};

enum Scope : bool { OfInstrument = false, OfChannels = true };

template <class Access>
constexpr Row Of(std::string_view strKey, TabNumEnum ePage, std::string_view strCaption, SettingKind eKind,
                 Scope eScope) {
  return Row(Setting{strKey, ePage, strCaption, eKind, eScope, &Access::Read, &Access::Write});
}

template <class Access>
constexpr Row ChoiceOf(std::string_view strKey, TabNumEnum ePage, std::string_view strCaption,
                       std::span<const SettingWord> arrWords, Scope eScope = OfInstrument) {
  Row row = Of<Access>(strKey, ePage, strCaption, SettingKind::Choice, eScope);
  row.arrWords = arrWords;
  return row;
}

template <class Access>
constexpr Row QuantityOf(std::string_view strKey, TabNumEnum ePage, std::string_view strCaption,
                         Scope eScope = OfInstrument) {
  return Of<Access>(strKey, ePage, strCaption, SettingKind::Quantity, eScope);
}

template <class Access>
constexpr Row SwitchOf(std::string_view strKey, TabNumEnum ePage, std::string_view strCaption) {
  return Of<Access>(strKey, ePage, strCaption, SettingKind::Switch, OfChannels);
}

using Info = udtModeInfo;
template <auto Member>
using InMode = Field<&Setup::Mode, Member>;
template <auto Member>
using InTiming = Field<&Setup::Timing, Member>;
template <auto Member>
using InLevels = Field<&Setup::Levels, Member>;
template <auto Member>
using InLimits = Field<&Setup::Limits, Member>;
template <auto Member>
using InTrgLevels = Field<&Setup::TrgLevels, Member>;

using Level = udtLevelInfo;
using Times = udtTimingInfo;
using Limit = udtLimitsInfo;
using Trigger = udtTrgLevelsInfo;

constexpr Double HighestFrequency = 1e12, ShortestEdge = 1e-12;

// The ranges are those of the panel's fields: a number outside of them could not be shown.
constexpr Setting Table[] = {
    // A mode that the instrument class does not know cannot be sent.
    ChoiceOf<InMode<&Info::TriggerMode>>("mode.trigger", ePageMode, "Trigger Mode", TriggerModes).OnlyWords(),
    ChoiceOf<InMode<&Info::PulseMode>>("mode.pulse", ePageMode, "Pulse Mode", PulseModes)
        .OnlyWords()
        .UsedWhen(&HasPulseModes),
    Of<InMode<&Info::BurstLength>>("mode.burstLength", ePageMode, "Burst Length", SettingKind::Count, OfInstrument)
        .In("", 2, 65536)
        .UsedWhen(&HasBursts),
    ChoiceOf<PulseTypeField>("mode.pulseType", ePageMode, "Pulse Type", PulseTypes, OfChannels)
        .OnlyWords()
        .UsedWhen(&HasPulseTypes),
    ChoiceOf<InMode<&Info::PeriodSource>>("mode.periodSource", ePageMode, "Period Source", PeriodSources)
        .UsedWhen(&HasPeriodSource),
    ChoiceOf<InMode<&Info::TriggerSlope>>("mode.clockEdge", ePageMode, "Clock Edge", ClockEdges)
        .UsedWhen(&HasPeriodSource),
    ChoiceOf<InMode<&Info::ArmingSource>>("mode.armingSource", ePageMode, "Arming Source", ArmingSources)
        .UsedWhen(&IsArmed),
    ChoiceOf<InMode<&Info::ArmSlope>>("mode.armingLevel", ePageMode, "Arming Level", ArmingLevels)
        .UsedWhen(&HasArmingLevel),
    ChoiceOf<InMode<&Info::PllFormat>>("mode.pllFormat", ePageMode, "PLL Mode", PllFormats)
        .Notation()
        .UsedWhen(&IsArmedByPll),
    QuantityOf<ArmingPllField<true>>("mode.pllPeriod", ePageMode, "PLL Period")
        .In("s", 1 / HighestFrequency, HighestFrequency)
        .StoredWhen(&ArmingPllField<true>::IsStored)
        .UsedWhen(&IsArmedByPll),
    QuantityOf<ArmingPllField<false>>("mode.pllFrequency", ePageMode, "PLL Frequency")
        .In("Hz", 1 / HighestFrequency, HighestFrequency)
        .StoredWhen(&ArmingPllField<false>::IsStored)
        .UsedWhen(&IsArmedByPll),

    QuantityOf<InTiming<&Times::dblFrequency>>("timing.frequency", ePageTiming, "Frequency")
        .In("Hz", 1 / HighestFrequency, HighestFrequency),
    QuantityOf<PeriodField>("timing.period", ePageTiming, "Period")
        .In("s", 1 / HighestFrequency, HighestFrequency)
        .StoredWhen(&IsNeverStored),
    QuantityOf<InTiming<&Times::dblDelay>>("timing.delay", ePageTiming, "Delay", OfChannels)
        .In("s", DelayRangeOfForm.dblMin, DelayRangeOfForm.dblMax),
    QuantityOf<InTiming<&Times::dblWidth>>("timing.width", ePageTiming, "Width", OfChannels)
        .In("s", WidthRangeOfForm.dblMin, WidthRangeOfForm.dblMax),
    QuantityOf<InTiming<&Times::dblLeading>>("timing.leading", ePageTiming, "Leading Edge", OfChannels)
        .In("s", ShortestEdge, LongestTime)
        .FixedBy(eLacksFreeLeadingEdge),
    SwitchOf<InTiming<&Times::fAutoCoupleLeTe>>("timing.coupled", ePageTiming, "Trail Edge = Lead Edge")
        .Lacking(eLacksTrailingEdge),
    QuantityOf<InTiming<&Times::dblTrailing>>("timing.trailing", ePageTiming, "Trailing Edge", OfChannels)
        .In("s", ShortestEdge, LongestTime)
        .Lacking(eLacksTrailingEdge)
        .UsedWhen(&HasOwnTrailingEdge),

    ChoiceOf<InLevels<&Level::eOutputLevel>>("levels.format", ePageLevels, "Level Format", LevelFormats, OfChannels)
        .OnlyWords()
        .Notation(),
    ChoiceOf<InLevels<&Level::eOutputType>>("levels.unit", ePageLevels, "Voltage/Current", LevelUnits, OfChannels),
    QuantityOf<LevelField<false, &LevelPair::dblFirst>>("levels.high", ePageLevels, "High", OfChannels)
        .InLevelUnit()
        .StoredWhen(&IsHighLow),
    QuantityOf<LevelField<false, &LevelPair::dblSecond>>("levels.low", ePageLevels, "Low", OfChannels)
        .InLevelUnit()
        .StoredWhen(&IsHighLow),
    QuantityOf<LevelField<true, &LevelPair::dblFirst>>("levels.offset", ePageLevels, "Offset", OfChannels)
        .InLevelUnit()
        .StoredWhen(&IsOffsetAmplitude),
    QuantityOf<LevelField<true, &LevelPair::dblSecond>>("levels.amplitude", ePageLevels, "Amplitude", OfChannels)
        .InLevelUnit()
        .StoredWhen(&IsOffsetAmplitude),
    QuantityOf<InLevels<&Level::dblOutputImpedance>>("levels.impedance", ePageLevels, "Output Imp.", OfChannels)
        .In("Ohm", 0, 1e6)
        .Lacking(eLacksImpedance),
    QuantityOf<InLevels<&Level::dblLoadCompensation>>("levels.load", ePageLevels, "Load Compens.", OfChannels)
        .In("Ohm", 0.1, 1e6)
        .Lacking(eLacksLoadCompensation),
    ChoiceOf<InLevels<&Level::eOutputPolarity>>("levels.polarity", ePageLevels, "Polarity", Polarities, OfChannels),
    SwitchOf<OutputSwitch<&Times::fChannelOutputOn, &Level::fChannelOutputOn>>("levels.output", ePageLevels, "Output"),
    SwitchOf<OutputSwitch<&Times::fChannelOutputInvOn, &Level::fChannelOutputInvOn>>("levels.complement", ePageLevels,
                                                                                     "Complement Output")
        .Lacking(eLacksComplement),
    ChoiceOf<InLevels<&Level::eChannelMath>>("levels.channelMath", ePageLevels, "Outputs", ChannelMaths)
        .Lacking(eLacksChannelMath),

    SwitchOf<RzField>("pattern.rz", ePagePattern, "Return to zero"),
    Of<StreamField<0>>("pattern.stream[1]", ePagePattern, "Pattern, channel 1", SettingKind::Stream, OfInstrument),
    Of<StreamField<1>>("pattern.stream[2]", ePagePattern, "Pattern, channel 2", SettingKind::Stream, OfInstrument)
        .OfPattern2(),
    Of<StreamField<2>>("pattern.strobe", ePagePattern, "Strobe", SettingKind::Stream, OfInstrument),

    SwitchOf<InLimits<&Limit::fEnabled>>("limits.enabled", ePageLimits, "Limits"),
    QuantityOf<InLimits<&Limit::dblHighVoltage>>("limits.highVoltage", ePageLimits, "High Voltage", OfChannels)
        .In("V", -20, 20),
    QuantityOf<InLimits<&Limit::dblLowVoltage>>("limits.lowVoltage", ePageLimits, "Low Voltage", OfChannels)
        .In("V", -20, 20),
    QuantityOf<InLimits<&Limit::dblHighCurrent>>("limits.highCurrent", ePageLimits, "High Current", OfChannels)
        .In("A", -0.8, 0.8),
    QuantityOf<InLimits<&Limit::dblLowCurrent>>("limits.lowCurrent", ePageLimits, "Low Current", OfChannels)
        .In("A", -0.8, 0.8),

    QuantityOf<InTrgLevels<&Trigger::dblExtInThreshold>>("trglevels.extInThreshold", ePageTrigLev,
                                                         "External Input Threshold")
        .In("V", -10, 10),
    QuantityOf<InTrgLevels<&Trigger::dblExtInInputImp>>("trglevels.extInImpedance", ePageTrigLev,
                                                        "External Input Impedance")
        .In("Ohm", 0, 1e6),
    QuantityOf<InTrgLevels<&Trigger::dblClkInThreshold>>("trglevels.clkInThreshold", ePageTrigLev,
                                                         "Clock Input Threshold")
        .In("V", -10, 10),
    QuantityOf<InTrgLevels<&Trigger::dblClkInInputImp>>("trglevels.clkInImpedance", ePageTrigLev,
                                                        "Clock Input Impedance")
        .In("Ohm", 0, 1e6),
    ChoiceOf<InTrgLevels<&Trigger::eTriggerOutLevel>>("trglevels.triggerOut", ePageTrigLev, "Trigger Out", OutLevels),
    ChoiceOf<InTrgLevels<&Trigger::eStrobeOutLevel>>("trglevels.strobeOut", ePageTrigLev, "Strobe Out", OutLevels),
    ChoiceOf<InTrgLevels<&Trigger::eVxiTriggerLine>>("trglevels.vxiLine", ePageTrigLev, "VXI Trigger Enable", VxiLines)
        .Lacking(eLacksVxiEnable),
    ChoiceOf<InTrgLevels<&Trigger::eVxiTriggerSource>>("trglevels.vxiSource", ePageTrigLev, "VXI Trigger Source",
                                                       VxiSources)
        .Lacking(eLacksVxiSource),

    ChoiceOf<PllSourceField>("pll.source", ePageConfig, "PLL Reference Source", PllReferenceSources),
    QuantityOf<PllFreqField>("pll.frequency", ePageConfig, "PLL Reference Frequency")
        .In("Hz", 1 / HighestFrequency, HighestFrequency)
        .UsedWhen(&HasExternalReference),
};

}  // namespace

std::span<const Setting> Settings() { return Table; }

}  // namespace tarvik
