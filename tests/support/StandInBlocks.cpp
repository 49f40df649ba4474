#include "StandInBlocks.h"

#include "automation/AutomationArray.h"

namespace tarvik::test {

namespace {

constexpr Long InvalidPatternRow = -2147220734;

PatternRow &Row(InstrumentSettings &settings, Long lngRow) {
  if (lngRow < 1 || lngRow > 3) throw DriverFailure{InvalidPatternRow, "Invalid pattern row"};
  return settings.rows[static_cast<std::size_t>(lngRow - 1)];
}

std::vector<Byte> BytesOf(automation::AutomationArray **ppArray) {
  return automation::ToByteArray(*ppArray).Elements();
}

}  // namespace

Status StandInPllReference::GetReference(Double *pFreq, Long *pSource) {
  return Operate("GetReference()", [&] {
    *pFreq = Settings().dblReference;
    *pSource = Settings().lngReferenceSource;
    return Words(*pFreq, *pSource);
  });
}

Status StandInPllReference::SetReference(Double *pFreq, Long source) {
  return Operate(Line("SetReference", *pFreq, source), [&] {
    const std::optional<Double> dblRound = At().instrument->dblPllRound;
    if (dblRound) *pFreq = *dblRound;
    Settings().dblReference = *pFreq;
    Settings().lngReferenceSource = source;
    return dblRound ? Word(*pFreq) : std::string("ok");
  });
}

Status StandInPatternMemory::CalcPrbs(Long startAddr, Long lastAddr, Long base, automation::AutomationArray **ppArray) {
  return Operate(Line("CalcPrbs", startAddr, lastAddr, base, BytesOf(ppArray)), [&] {
    std::vector<Byte> arrBytes = BytesOf(ppArray);
    for (std::size_t j = 0; j < arrBytes.size(); ++j) {
      const std::int64_t lngSum = std::int64_t{startAddr} * 7 + std::int64_t{lastAddr} * 3 + std::int64_t{base} * 11 +
                                  static_cast<std::int64_t>(j) * 5;
      arrBytes[j] = static_cast<Byte>(((lngSum % 256) + 256) % 256);
    }
    std::copy(arrBytes.begin(), arrBytes.end(), static_cast<Byte *>((*ppArray)->pvData));
    return Word(arrBytes);
  });
}

Status StandInPatternMemory::SetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long length) {
  const std::vector<Byte> arrBytes = BytesOf(ppArray);
  return Do(Line("SetPattern", channel, form, arrBytes, length), [&] {
    Row(Settings(), channel) = PatternRow{arrBytes, length};
  });
}

Status StandInPatternMemory::GetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long *pLength) {
  return Operate(Line("GetPattern", channel, form), [&] {
    const PatternRow &row = Row(Settings(), channel);
    automation::FreeArray(*ppArray);
    *ppArray = automation::AllocByteArray(0, row.arrBytes.data(), static_cast<std::uint32_t>(row.arrBytes.size()));
    *pLength = row.lngLength;
    return Words(row.arrBytes, row.lngLength);
  });
}

Long *StandInAuxOutputs::OutLevel(Long which) {
  return which == 1 ? &Settings().lngTriggerOut : which == 2 ? &Settings().lngStrobeOut : nullptr;
}

Status StandInAuxOutputs::GetOutLevel(Long which, Long *pValue) {
  return Operate(Line("GetOutLevel", which), [&] { return Word(*pValue = *OutLevel(which)); });
}

Status StandInAuxOutputs::SetOutLevel(Long which, Long value) {
  return Do(Line("SetOutLevel", which, value), [&] { *OutLevel(which) = value; });
}

namespace {

enum Trigger : Long { Continuous, Triggered, Gated };
enum Pulses : Long { Stream, Burst, Pattern };

}  // namespace

void StandInModeSetup::Enter(Long lngTriggerMode, Long lngPulseMode) {
  Settings().lngTriggerMode = lngTriggerMode;
  Settings().lngPulseMode = lngPulseMode;
}

void StandInModeSetup::TakePeriod(Long periodSource, Long triggerSlope) {
  Settings().lngPeriodSource = periodSource;
  Settings().lngClockSlope = triggerSlope;
}

void StandInModeSetup::TakeArming(Long armingSource, Long armSlope) {
  Settings().lngArmingSource = armingSource;
  Settings().lngArmSlope = armSlope;
}

void StandInModeSetup::TakePll(Long pllFormat, Double pllPeriodOrFreq) {
  const Double dblFromPeriod = pllPeriodOrFreq == 0 ? 0 : 1 / pllPeriodOrFreq;
  Settings().dblPllFrequency = pllFormat == 1 ? pllPeriodOrFreq : dblFromPeriod;
}

Status StandInModeSetup::SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) {
  return Do(Line("SetContinuousBurst", burstLength, periodSource, triggerSlope), [&] {
    Enter(Continuous, Burst);
    Settings().lngBurstLength = burstLength;
    TakePeriod(periodSource, triggerSlope);
  });
}

Status StandInModeSetup::SetContinuousPattern(Long periodSource, Long triggerSlope) {
  return Do(Line("SetContinuousPattern", periodSource, triggerSlope), [&] {
    Enter(Continuous, Pattern);
    TakePeriod(periodSource, triggerSlope);
  });
}

Status StandInModeSetup::SetContinuousPulses(Long periodSource, Long triggerSlope) {
  return Do(Line("SetContinuousPulses", periodSource, triggerSlope), [&] {
    Enter(Continuous, Stream);
    TakePeriod(periodSource, triggerSlope);
  });
}

Status StandInModeSetup::SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                       Long armSlope) {
  return Do(Line("SetGatedBurst", burstLength, periodSource, triggerSlope, armingSource, armSlope), [&] {
    Enter(Gated, Burst);
    Settings().lngBurstLength = burstLength;
    TakePeriod(periodSource, triggerSlope);
    TakeArming(armingSource, armSlope);
  });
}

Status StandInModeSetup::SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Do(Line("SetGatedPattern", periodSource, triggerSlope, armingSource, armSlope), [&] {
    Enter(Gated, Pattern);
    TakePeriod(periodSource, triggerSlope);
    TakeArming(armingSource, armSlope);
  });
}

Status StandInModeSetup::SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) {
  return Do(Line("SetGatedPulses", periodSource, triggerSlope, armingSource, armSlope), [&] {
    Enter(Gated, Stream);
    TakePeriod(periodSource, triggerSlope);
    TakeArming(armingSource, armSlope);
  });
}

Status StandInModeSetup::SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                           Long armSlope, Long pllFormat, Double pllPeriodOrFreq) {
  return Do(Line("SetTriggeredBurst", burstLength, periodSource, triggerSlope, armingSource, armSlope, pllFormat,
                 pllPeriodOrFreq),
            [&] {
              Enter(Triggered, Burst);
              Settings().lngBurstLength = burstLength;
              TakePeriod(periodSource, triggerSlope);
              TakeArming(armingSource, armSlope);
              TakePll(pllFormat, pllPeriodOrFreq);
            });
}

Status StandInModeSetup::SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                             Long pllFormat, Double pllPeriodOrFreq) {
  return Do(Line("SetTriggeredPattern", periodSource, triggerSlope, armingSource, armSlope, pllFormat, pllPeriodOrFreq),
            [&] {
              Enter(Triggered, Pattern);
              TakePeriod(periodSource, triggerSlope);
              TakeArming(armingSource, armSlope);
              TakePll(pllFormat, pllPeriodOrFreq);
            });
}

Status StandInModeSetup::SetTriggeredPulses(Long armingSource, Long armSlope) {
  return Do(Line("SetTriggeredPulses", armingSource, armSlope), [&] {
    Enter(Triggered, Stream);
    TakeArming(armingSource, armSlope);
  });
}

}  // namespace tarvik::test
