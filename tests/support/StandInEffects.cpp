#include "StandInEffects.h"

#include <algorithm>

#include "OperationTable.h"
#include "automation/Abi.h"
#include "instrument/Vocabulary.h"

namespace tarvik::test {

namespace {

using Effects = OperationTable<StandInEffect>;

constexpr Long InvalidChannelIndex = -2147220735, InvalidPatternRow = -2147220734;
/// The number that the stand-in answers as the driver's own part of the transaction state.
constexpr Integer OwnTransactionWord = 7;

InstrumentSettings &Of(const StandInWork &at, InstrumentSettings *) { return at.Settings(); }
ChannelSettings &Of(const StandInWork &at, ChannelSettings *) { return at.Channel(); }
StandInState &Of(const StandInWork &at, StandInState *) { return at.Instrument(); }

/// A value in a call; truth values are bool there.
template <class Value>
using InCall = std::conditional_t<std::is_same_v<Value, Boolean>, bool, Value>;

template <class Owner, class Value>
StandInEffect Read(Value Owner::*field) {
  return [=](const StandInWork &at) { at.call.Fill(Of(at, static_cast<Owner *>(nullptr)).*field); };
}
template <class Owner, class Value>
StandInEffect Write(Value Owner::*field) {
  return [=](const StandInWork &at) { Of(at, static_cast<Owner *>(nullptr)).*field = at.call.InLast<InCall<Value>>(); };
}

/// Setter and getter of a setting that is kept as it comes.
template <class Owner, class Value>
void Keep(Effects &effects, const std::string &strInterface, const std::string &strName, Value Owner::*field) {
  effects[strInterface + ".Get" + strName] = Read(field);
  effects[strInterface + ".Set" + strName] = Write(field);
}

void AddInstrument(Effects &effects) {
  effects["IInstrument.GetViInfo"] = [](const StandInWork &at) { at.call.FillBytes(at.Instrument().arrVi); };
  effects["IInstrument.SetAutoDetectErrors"] = Write(&StandInState::fAutoDetect);
  effects["IInstrument.Calibrate"] = [](const StandInWork &) {};
  Keep(effects, "IInstrument", "ChannelMath", &InstrumentSettings::lngChannelMath);
  effects["IInstrument.Close"] = [](const StandInWork &at) { at.Instrument().Abort(); };
  effects["IInstrument.GetIdentity"] = Read(&StandInState::strIdentity);
  effects["IInstrument.GetTransactionState"] = [](const StandInWork &at) {
    at.call.Fill(OwnTransactionWord, at.Instrument().copy.has_value());
  };
  effects["IInstrument.GetName"] = Read(&StandInState::strName);
  effects["IInstrument.Open"] = [](const StandInWork &at) {
    StandInState &instrument = at.Instrument();
    at.call.Fill(instrument.fOpens);
    if (!instrument.fOpens) return;
    instrument.fAutoDetect = at.call.In<bool>(2);
    if (at.call.In<bool>(1)) instrument.settings = InstrumentSettings();
  };
  effects["IInstrument.GetOptions"] = Read(&StandInState::strOptions);
  effects["IInstrument.GetPulseMode"] = Read(&InstrumentSettings::lngPulseMode);
  effects["IInstrument.Reset"] = [](const StandInWork &at) { at.Settings() = InstrumentSettings(); };
  effects["IInstrument.SelfTest"] = [](const StandInWork &at) {
    at.call.Fill(at.Instrument().intSelfTestCode, at.Instrument().strSelfTest);
  };
  Keep(effects, "IInstrument", "PnpTimeout", &StandInState::lngTimeout);
  effects["IInstrument.Transaction"] = [](const StandInWork &at) {
    switch (at.call.In<Long>(0)) {
      case kolven::TransactionBegin: return at.Instrument().Begin();
      case kolven::TransactionCommit: return at.Instrument().End();
      case kolven::TransactionAbort: return at.Instrument().Abort();
    }
  };
}

void AddLists(Effects &effects) {
  effects["IInstrumentList.GetCount"] = [](const StandInWork &at) { at.call.Fill(at.driver.Instruments().size()); };
  effects["IInstrumentList.GetItem"] = [](const StandInWork &at) {
    if (auto instrument = at.driver.Find(at.call.In<InstrumentKey>(0))) at.Hand(std::move(instrument));
  };
  effects["IInstrumentList.Refresh"] = [](const StandInWork &at) { at.driver.JoinPending(); };
  effects["IChannelList.GetCount"] = Read(&StandInState::lngChannels);
  effects["IChannelList.GetItem"] = [](const StandInWork &at) {
    const Long lngIndex = at.call.In<Long>(0);
    if (lngIndex < 1 || lngIndex > std::min(at.Instrument().lngChannels, Long{3}))
      throw DriverFailure{InvalidChannelIndex, "Invalid channel index"};
    at.Hand();
  };
  effects["IErrorQueue.GetErrors"] = [](const StandInWork &at) { at.call.Fill(at.driver.TakeErrors()); };
  effects["IErrorQueue.GetWarnings"] = [](const StandInWork &at) { at.call.Fill(at.driver.TakeWarnings()); };
  Keep(effects, "IErrorQueue", "Verbose", &StandInState::fVerbose);
  effects["IRestrictions.GetMask"] = Read(&StandInState::lngMask);
}

void AddTrigger(Effects &effects) {
  effects["IPllReference.GetReference"] = [](const StandInWork &at) {
    at.call.Fill(at.Settings().dblReference, at.Settings().lngReferenceSource);
  };
  effects["IPllReference.SetReference"] = [](const StandInWork &at) {
    const std::optional<Double> dblRound = at.Instrument().dblPllRound;
    if (dblRound) at.call.Fill(*dblRound);
    at.Settings().dblReference = dblRound.value_or(at.call.In<Double>(0));
    at.Settings().lngReferenceSource = at.call.In<Long>(1);
  };
  const auto outLevel = [](const StandInWork &at) -> Long & {
    return at.call.In<Long>(0) == eOutTrigger ? at.Settings().lngTriggerOut : at.Settings().lngStrobeOut;
  };
  effects["IAuxOutputs.GetOutLevel"] = [=](const StandInWork &at) { at.call.Fill(outLevel(at)); };
  effects["IAuxOutputs.SetOutLevel"] = [=](const StandInWork &at) { outLevel(at) = at.call.In<Long>(1); };
  Keep(effects, "IAuxOutputs", "VxiSource", &InstrumentSettings::lngVxiSource);
  Keep(effects, "IAuxOutputs", "VxiLine", &InstrumentSettings::lngVxiLine);
  Keep(effects, "IExtInput", "Impedance", &InstrumentSettings::dblExtImpedance);
  Keep(effects, "IExtInput", "Threshold", &InstrumentSettings::dblExtThreshold);
  Keep(effects, "IClockInput", "Impedance", &InstrumentSettings::dblClockImpedance);
  Keep(effects, "IClockInput", "Threshold", &InstrumentSettings::dblClockThreshold);
  effects["IClockInput.GetSlope"] = Read(&InstrumentSettings::lngClockSlope);
  effects["IArmSource.GetPllFrequency"] = Read(&InstrumentSettings::dblPllFrequency);
  effects["IArmSource.GetSlope"] = Read(&InstrumentSettings::lngArmSlope);
  Keep(effects, "IArmSource", "Source", &InstrumentSettings::lngArmingSource);
  effects["ITriggerSystem.GetBurstLength"] = Read(&InstrumentSettings::lngBurstLength);
  Keep(effects, "ITriggerSystem", "TriggerMode", &InstrumentSettings::lngTriggerMode);
  effects["ITriggerSystem.GetPeriodSource"] = Read(&InstrumentSettings::lngPeriodSource);
}

/// The setters of both modes differ in which groups of arguments they have, in one order: burst length, period, arming,
/// PLL. Triggered single pulses have no period: each comes with its trigger.
StandInEffect Mode(TriggerMode eTrigger, PulseMode ePulses) {
  return [=](const StandInWork &at) {
    InstrumentSettings &settings = at.Settings();
    settings.lngTriggerMode = eTrigger;
    settings.lngPulseMode = ePulses;
    std::size_t next = 0;
    const auto take = [&](Long &lngSetting) { lngSetting = at.call.In<Long>(next++); };
    if (ePulses == ePulseBurst) take(settings.lngBurstLength);
    if (eTrigger != eTriggerTriggered || ePulses != ePulseStream) {
      take(settings.lngPeriodSource);
      take(settings.lngClockSlope);
    }
    if (eTrigger != eTriggerContinuous) {
      take(settings.lngArmingSource);
      take(settings.lngArmSlope);
    }
    if (eTrigger != eTriggerTriggered || ePulses == ePulseStream) return;
    const bool fFrequency = at.call.In<Long>(next) == ePllFrequency;
    const auto dblPll = at.call.In<Double>(next + 1);
    const Double dblFromPeriod = dblPll == 0 ? 0 : 1 / dblPll;
    settings.dblPllFrequency = fFrequency ? dblPll : dblFromPeriod;
  };
}

void AddModes(Effects &effects) {
  effects["IModeSetup.SetContinuousBurst"] = Mode(eTriggerContinuous, ePulseBurst);
  effects["IModeSetup.SetContinuousPattern"] = Mode(eTriggerContinuous, ePulsePattern);
  effects["IModeSetup.SetContinuousPulses"] = Mode(eTriggerContinuous, ePulseStream);
  effects["IModeSetup.SetGatedBurst"] = Mode(eTriggerGated, ePulseBurst);
  effects["IModeSetup.SetGatedPattern"] = Mode(eTriggerGated, ePulsePattern);
  effects["IModeSetup.SetGatedPulses"] = Mode(eTriggerGated, ePulseStream);
  effects["IModeSetup.SetTriggeredBurst"] = Mode(eTriggerTriggered, ePulseBurst);
  effects["IModeSetup.SetTriggeredPattern"] = Mode(eTriggerTriggered, ePulsePattern);
  effects["IModeSetup.SetTriggeredPulses"] = Mode(eTriggerTriggered, ePulseStream);
}

PatternRow &Row(const StandInWork &at) {
  const Long lngRow = at.call.In<Long>(0);
  if (lngRow < 1 || lngRow > 3) throw DriverFailure{InvalidPatternRow, "Invalid pattern row"};
  return at.Settings().rows[static_cast<std::size_t>(lngRow - 1)];
}

void AddPattern(Effects &effects) {
  effects["IPatternMemory.CalcPrbs"] = [](const StandInWork &at) {
    auto arrBytes = at.call.In<std::vector<Byte>>(3);
    const std::int64_t lngFirst = std::int64_t{at.call.In<Long>(0)} * 7 + std::int64_t{at.call.In<Long>(1)} * 3 +
                                  std::int64_t{at.call.In<Long>(2)} * 11;
    for (std::size_t j = 0; j < arrBytes.size(); ++j)
      arrBytes[j] = static_cast<Byte>(lngFirst + static_cast<std::int64_t>(j) * 5);
    at.call.FillBytes(arrBytes);
  };
  effects["IPatternMemory.SetPattern"] = [](const StandInWork &at) {
    Row(at) = PatternRow{at.call.In<std::vector<Byte>>(2), at.call.In<Long>(3)};
  };
  effects["IPatternMemory.GetPattern"] = [](const StandInWork &at) {
    const PatternRow &row = Row(at);
    at.call.ReplaceBytes(at.driver.lngFirstByte, row.arrBytes);
    at.call.Fill(row.lngLength);
  };
}

/// A delay block, which makes its channel one of its kind of pulse.
void AddDelay(Effects &effects, const std::string &strInterface, Double ChannelSettings::*field, Long lngPulseType) {
  effects[strInterface + ".GetDelay"] = Read(field);
  effects[strInterface + ".SetDelay"] = [=](const StandInWork &at) {
    at.Channel().*field = at.call.InLast<Double>();
    at.Channel().lngPulseType = lngPulseType;
  };
}

void AddTiming(Effects &effects) {
  AddDelay(effects, "ISinglePulse", &ChannelSettings::dblSingleDelay, eTypeSingle);
  AddDelay(effects, "IDoublePulse", &ChannelSettings::dblDoubleDelay, eTypeDouble);
  effects["IDoublePulse.GetEnabled"] = [](const StandInWork &at) {
    at.call.Fill(at.Channel().lngPulseType == eTypeDouble);
  };
  Keep(effects, "IEdges", "Coupling", &ChannelSettings::lngCoupling);
  Keep(effects, "IEdges", "Leading", &ChannelSettings::dblLeading);
  Keep(effects, "IEdges", "Trailing", &ChannelSettings::dblTrailing);
  Keep(effects, "IChannelTiming", "Frequency", &ChannelSettings::dblFrequency);
  Keep(effects, "IChannelTiming", "PulseType", &ChannelSettings::lngPulseType);
  Keep(effects, "IChannelTiming", "Width", &ChannelSettings::dblWidth);
  Keep(effects, "IChannel", "SignalFormat", &ChannelSettings::lngSignalFormat);
}

void AddLevels(Effects &effects) {
  Keep(effects, "IChannelLevels", "ComplementOutput", &ChannelSettings::fComplement);
  Keep(effects, "IChannelLevels", "LoadCompensation", &ChannelSettings::dblLoadCompensation);
  Keep(effects, "IChannelLevels", "Impedance", &ChannelSettings::dblImpedance);
  Keep(effects, "IChannelLevels", "Output", &ChannelSettings::fOutput);
  Keep(effects, "IChannelLevels", "Polarity", &ChannelSettings::lngPolarity);
  effects["IChannelLevels.GetLevel"] = [](const StandInWork &at) {
    const ChannelSettings &channel = at.Channel();
    if (at.call.In<Long>(0) == eLevelHighLow)
      at.call.Fill(channel.lngLevelType, channel.dblHigh, channel.dblLow);
    else
      at.call.Fill(channel.lngLevelType, channel.dblHigh - channel.dblLow, (channel.dblHigh + channel.dblLow) / 2);
  };
  effects["IChannelLevels.SetLevel"] = [](const StandInWork &at) {
    const auto dblFirst = at.call.In<Double>(2), dblSecond = at.call.In<Double>(3);
    const bool fHighAndLow = at.call.In<Long>(0) == eLevelHighLow;
    at.Channel().lngLevelType = at.call.In<Long>(1);
    at.Channel().dblHigh = fHighAndLow ? dblFirst : dblSecond + dblFirst / 2;
    at.Channel().dblLow = fHighAndLow ? dblSecond : dblSecond - dblFirst / 2;
  };
}

/// Getter and setter of a limit, which is kept for voltage and current.
void AddLimit(Effects &effects, const std::string &strName, Double ChannelSettings::*voltage,
              Double ChannelSettings::*current) {
  const auto limit = [=](const StandInWork &at) -> Double & {
    return at.Channel().*(at.call.place.strQuantity == "voltage" ? voltage : current);
  };
  effects["ILimitPair.Get" + strName] = [=](const StandInWork &at) { at.call.Fill(limit(at)); };
  effects["ILimitPair.Set" + strName] = [=](const StandInWork &at) { limit(at) = at.call.InLast<Double>(); };
}

void AddLimits(Effects &effects) {
  Keep(effects, "ILimitPair", "Enabled", &ChannelSettings::fLimits);
  AddLimit(effects, "High", &ChannelSettings::dblHighVoltage, &ChannelSettings::dblHighCurrent);
  AddLimit(effects, "Low", &ChannelSettings::dblLowVoltage, &ChannelSettings::dblLowCurrent);
}

Effects AllEffects() {
  Effects effects;
  for (const Operation &operation : Operations())
    if (operation.HandsObject()) effects[operation.strPath] = [](const StandInWork &at) { at.Hand(); };
  AddLists(effects);
  AddInstrument(effects);
  AddTrigger(effects);
  AddModes(effects);
  AddPattern(effects);
  AddTiming(effects);
  AddLevels(effects);
  AddLimits(effects);
  return effects;
}

}  // namespace

void StandInWork::Hand() const {
  if (driver.IsSpoilt(DriverFault::Nothing)) return;
  if (driver.IsSpoilt(DriverFault::WrongObject) && call.operation.fGeneric)
    call.HandUnknown();
  else
    call.Hand();
}

void StandInWork::Hand(std::shared_ptr<StandInState> instrument) const {
  if (driver.IsSpoilt(DriverFault::Nothing)) return;
  if (driver.IsSpoilt(DriverFault::WrongObject))
    call.HandUnknown();
  else
    call.Hand(std::move(instrument));
}

const StandInEffect &StandInEffectOf(const Operation &operation) {
  static const Effects effects = AllEffects();
  return effects[operation];
}

}  // namespace tarvik::test
