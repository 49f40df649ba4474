#include "ScriptedEffects.h"

#include <algorithm>
#include <utility>

#include "OperationTable.h"
#include "automation/Abi.h"
#include "instrument/KolvenDriver.h"
#include "instrument/Vocabulary.h"
#include "instrument/viInfo.h"

namespace tarvik::paneltest {

namespace {

using Effects = test::OperationTable<ScriptedEffect>;

/// An instrument that nobody knows by this name or number.
constexpr Long NotFound = -2147220990;
/// Number of a commit that the script lets fail.
constexpr Long CommitRefused = -2147220991;

ScriptedEffect Answer(const char *strField) {
  return [=](const ScriptedWork &at) { at.call.Fill(at.Answer(strField)); };
}
/// What several pages read has an answer for each of them: the one if this operation of the class is running.
ScriptedEffect AnswerIn(const char *strRunning, const char *strField, const char *strElse) {
  return [=](const ScriptedWork &at) {
    at.call.Fill(at.Answer(at.script.strOperation == strRunning ? strField : strElse));
  };
}
ScriptedEffect AnswerLimit(const char *strVoltage, const char *strCurrent) {
  return [=](const ScriptedWork &at) {
    at.call.Fill(at.Answer(at.call.place.strQuantity == "voltage" ? strVoltage : strCurrent));
  };
}
template <class Value>
ScriptedEffect Tell(Value InstrumentScript::*field) {
  return [=](const ScriptedWork &at) { at.call.Fill(at.Instrument().*field); };
}
template <class Value>
ScriptedEffect Tell(Value DriverScript::*field) {
  return [=](const ScriptedWork &at) { at.call.Fill(at.script.*field); };
}

void AddMode(Effects &effects) {
  effects["IInstrument.GetPulseMode"] = Answer("mode.PulseMode");
  effects["ITriggerSystem.GetTriggerMode"] = Answer("mode.TriggerMode");
  effects["ITriggerSystem.GetBurstLength"] = Answer("mode.BurstLength");
  effects["ITriggerSystem.GetPeriodSource"] = Answer("mode.PeriodSource");
  effects["IClockInput.GetSlope"] = Answer("mode.TriggerSlope");
  effects["IArmSource.GetSource"] = Answer("mode.ArmingSource");
  effects["IArmSource.GetSlope"] = Answer("mode.ArmSlope");
  effects["IArmSource.GetPllFrequency"] = Answer("mode.PllFreq");
  effects["IChannelTiming.GetPulseType"] = Answer("mode.PulseType");
  effects["IChannel.GetSignalFormat"] = AnswerIn("GetRz", "rz", "mode.SignalFormat");
  effects["IPllReference.GetReference"] = [](const ScriptedWork &at) {
    at.call.Fill(at.script.Answer("pll", 1), at.script.Answer("pll", 2));
  };
}

void AddTiming(Effects &effects) {
  effects["IChannelTiming.GetFrequency"] = Answer("timing.dblFrequency");
  effects["IChannelTiming.GetWidth"] = Answer("timing.dblWidth");
  effects["ISinglePulse.GetDelay"] = Answer("timing.dblDelay");
  effects["IDoublePulse.GetDelay"] = Answer("timing.dblDelay");
  effects["IDoublePulse.GetEnabled"] = Answer("timing.fDoublePulse");
  effects["IEdges.GetCoupling"] = Answer("timing.fAutoCoupleLeTe");
  effects["IEdges.GetLeading"] = Answer("timing.dblLeading");
  effects["IEdges.GetTrailing"] = Answer("timing.dblTrailing");
}

void AddLevels(Effects &effects) {
  effects["IChannelLevels.GetOutput"] = AnswerIn("GetLevels", "levels.fChannelOutputOn", "timing.fChannelOutputOn");
  effects["IChannelLevels.GetComplementOutput"] =
      AnswerIn("GetLevels", "levels.fChannelOutputInvOn", "timing.fChannelOutputInvOn");
  effects["IChannelLevels.GetLoadCompensation"] = Answer("levels.dblLoadCompensation");
  effects["IChannelLevels.GetImpedance"] = Answer("levels.dblOutputImpedance");
  effects["IChannelLevels.GetPolarity"] = Answer("levels.eOutputPolarity");
  effects["IChannelLevels.GetLevel"] = [](const ScriptedWork &at) {
    at.call.Fill(at.Answer("levels.eOutputType"), at.Answer("levels.dblAmplOrHigh"),
                 at.Answer("levels.dblOffsetOrLow"));
  };
  effects["IInstrument.GetChannelMath"] = Answer("levels.eChannelMath");
  effects["ILimitPair.GetEnabled"] = Answer("limits.fEnabled");
  effects["ILimitPair.GetHigh"] = AnswerLimit("limits.dblHighVoltage", "limits.dblHighCurrent");
  effects["ILimitPair.GetLow"] = AnswerLimit("limits.dblLowVoltage", "limits.dblLowCurrent");
}

void AddTriggerLevels(Effects &effects) {
  effects["IExtInput.GetImpedance"] = Answer("trglev.dblExtInInputImp");
  effects["IExtInput.GetThreshold"] = Answer("trglev.dblExtInThreshold");
  effects["IClockInput.GetImpedance"] = Answer("trglev.dblClkInInputImp");
  effects["IClockInput.GetThreshold"] = Answer("trglev.dblClkInThreshold");
  effects["IAuxOutputs.GetVxiSource"] = Answer("trglev.eVxiTriggerSource");
  effects["IAuxOutputs.GetVxiLine"] = Answer("trglev.eVxiTriggerLine");
  effects["IAuxOutputs.GetOutLevel"] = [](const ScriptedWork &at) {
    at.call.Fill(at.Answer(at.call.In<Long>(0) == eOutTrigger ? "trglev.eTriggerOutLevel" : "trglev.eStrobeOutLevel"));
  };
}

void AddPattern(Effects &effects) {
  effects["IPatternMemory.GetPattern"] = [](const ScriptedWork &at) {
    const auto row = static_cast<std::size_t>(std::clamp<Long>(at.call.In<Long>(0), ePatternChan1, ePatternStrobe));
    const PatternScript &pattern = at.script.arrRows[row];
    at.call.ReplaceBytes(at.call.LowerBound(), pattern.arrBytes);
    at.call.Fill(pattern.lngBits);
  };
}

void AddLists(Effects &effects) {
  effects["IInstrumentList.GetCount"] = [](const ScriptedWork &at) { at.call.Fill(at.script.InstrumentCount()); };
  effects["IInstrumentList.GetItem"] = [](const ScriptedWork &at) {
    const auto key = at.call.In<test::InstrumentKey>(0);
    auto instrument = key.intType == automation::VtString ? at.script.Instrument(key.strName)
                                                          : at.script.Instrument(Long{key.intNumber});
    if (!instrument) throw FailureScript{.lngNumber = NotFound, .strText = "Instrument not found"};
    at.call.Hand(std::move(instrument));
  };
  effects["IChannelList.GetCount"] = Tell(&InstrumentScript::lngChannels);
  effects["IChannelList.GetItem"] = [](const ScriptedWork &at) {
    const Long lngIndex = at.call.In<Long>(0);
    if (lngIndex < 1 || lngIndex > at.Instrument().lngChannels)
      throw FailureScript{.lngNumber = automation::StatusBadIndex, .strText = "No such channel"};
    at.call.Hand();
  };
  effects["IErrorQueue.GetErrors"] = [](const ScriptedWork &at) {
    at.call.Fill(std::exchange(at.script.strErrors, {}));
  };
  effects["IErrorQueue.GetWarnings"] = Tell(&DriverScript::strWarnings);
  effects["IErrorQueue.GetVerbose"] = Tell(&InstrumentScript::fVerbose);
  effects["IErrorQueue.SetVerbose"] = [](const ScriptedWork &at) { at.Instrument().fVerbose = at.call.In<bool>(0); };
  effects["IRestrictions.GetMask"] = Tell(&InstrumentScript::lngMask);
}

void TellViInfo(const ScriptedWork &at) {
  const InstrumentScript &instrument = at.Instrument();
  const bool fSlot = IsSlotKind(instrument.intKind);
  const viInfo record = viInfo::Of(instrument.intKind, fSlot ? instrument.intAddress : instrument.intBox,
                                   instrument.intSlot, instrument.intModel);
  at.call.FillBytes({record.arrBytes.begin(), record.arrBytes.end()});
}

void AddInstrument(Effects &effects) {
  effects["IInstrument.GetViInfo"] = TellViInfo;
  effects["IInstrument.Open"] = Tell(&InstrumentScript::fOpens);
  effects["IInstrument.Close"] = [](const ScriptedWork &at) { at.Instrument().fTransaction = false; };
  effects["IInstrument.GetIdentity"] = Tell(&InstrumentScript::strIdentity);
  effects["IInstrument.GetName"] = Tell(&InstrumentScript::strName);
  effects["IInstrument.GetOptions"] = Tell(&InstrumentScript::strOptions);
  effects["IInstrument.SelfTest"] = [](const ScriptedWork &at) { at.call.Fill(0, at.script.strSelfTest); };
  effects["IInstrument.GetPnpTimeout"] = [](const ScriptedWork &at) { at.call.Fill(0); };
  effects["IInstrument.GetTransactionState"] = [](const ScriptedWork &at) {
    at.call.Fill(0, at.Instrument().fTransaction);
  };
  effects["IInstrument.Transaction"] = [](const ScriptedWork &at) {
    const Long lngCommand = at.call.In<Long>(0);
    at.Instrument().fTransaction = lngCommand == kolven::TransactionBegin;
    if (lngCommand != kolven::TransactionCommit || !at.script.commitFailure) return;
    throw FailureScript{.lngNumber = CommitRefused, .strText = *std::exchange(at.script.commitFailure, std::nullopt)};
  };
}

Effects AllEffects() {
  Effects effects;
  for (const test::Operation &operation : test::Operations())
    if (operation.HandsObject()) effects[operation.strPath] = [](const ScriptedWork &at) { at.call.Hand(); };
  AddLists(effects);
  AddInstrument(effects);
  AddMode(effects);
  AddTiming(effects);
  AddLevels(effects);
  AddTriggerLevels(effects);
  AddPattern(effects);
  return effects;
}

}  // namespace

const ScriptedEffect &ScriptedEffectOf(const test::Operation &operation) {
  static const Effects effects = AllEffects();
  return effects[operation];
}

}  // namespace tarvik::paneltest
