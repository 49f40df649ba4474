#include "instrument/DriverCall.h"
#include "instrument/Vocabulary.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik {

using namespace kolven;
using automation::Ref;

Boolean clsInstrInterface::SetLevels(const udtLevelInfo &LevelInfo) {
  return m->SetWithin("SetLevels", [&] {
    for (Long i = 1; i <= m->m_NumChannels; ++i) m->SendLevels(LevelInfo, i);
    if (IsNotRestricted(eLacksChannelMath)) Call(m->m_Instr, &IInstrument::SetChannelMath, LevelInfo.eChannelMath);
  });
}

void clsInstrInterface::Private::SendLevels(const udtLevelInfo &LevelInfo, Long lngChannel) {
  const auto levels = Levels(lngChannel);
  Call(levels, &IChannelLevels::SetLevel, LevelInfo.eOutputLevel[lngChannel], LevelInfo.eOutputType[lngChannel],
       LevelInfo.dblAmplOrHigh[lngChannel], LevelInfo.dblOffsetOrLow[lngChannel]);
  if (face.IsNotRestricted(eLacksLoadCompensation))
    Call(levels, &IChannelLevels::SetLoadCompensation, LevelInfo.dblLoadCompensation[lngChannel]);
  if (face.IsNotRestricted(eLacksImpedance))
    Call(levels, &IChannelLevels::SetImpedance, LevelInfo.dblOutputImpedance[lngChannel]);
  Call(levels, &IChannelLevels::SetPolarity, LevelInfo.eOutputPolarity[lngChannel]);
  Call(levels, &IChannelLevels::SetOutput, LevelInfo.fChannelOutputOn[lngChannel]);
  if (face.IsNotRestricted(eLacksComplement))
    Call(levels, &IChannelLevels::SetComplementOutput, LevelInfo.fChannelOutputInvOn[lngChannel]);
}

Boolean clsInstrInterface::GetLevels(udtLevelInfo &LevelInfo) {
  return m->WhileOnline("GetLevels", [&](Boolean &fResult) {
    for (Long i = 1; i <= m->m_NumChannels; ++i) m->ReadLevels(LevelInfo, i);
    if (IsNotRestricted(eLacksChannelMath)) LevelInfo.eChannelMath = Read(m->m_Instr, &IInstrument::GetChannelMath);
    fResult = True;
  });
}

void clsInstrInterface::Private::ReadLevels(udtLevelInfo &LevelInfo, Long lngChannel) {
  const auto levels = Levels(lngChannel);
  Long eType = 0;
  Double dblAmplOrHigh = 0, dblOffsetOrLow = 0;
  Call(levels, &IChannelLevels::GetLevel, LevelInfo.eOutputLevel[lngChannel], &eType, &dblAmplOrHigh, &dblOffsetOrLow);
  LevelInfo.eOutputType[lngChannel] = eType;
  LevelInfo.dblAmplOrHigh[lngChannel] = dblAmplOrHigh;
  LevelInfo.dblOffsetOrLow[lngChannel] = dblOffsetOrLow;
  if (face.IsNotRestricted(eLacksLoadCompensation))
    LevelInfo.dblLoadCompensation[lngChannel] = Read(levels, &IChannelLevels::GetLoadCompensation);
  if (face.IsNotRestricted(eLacksImpedance))
    LevelInfo.dblOutputImpedance[lngChannel] = Read(levels, &IChannelLevels::GetImpedance);
  LevelInfo.eOutputPolarity[lngChannel] = Read(levels, &IChannelLevels::GetPolarity);
  LevelInfo.fChannelOutputOn[lngChannel] = Read(levels, &IChannelLevels::GetOutput);
  if (face.IsNotRestricted(eLacksComplement))
    LevelInfo.fChannelOutputInvOn[lngChannel] = Read(levels, &IChannelLevels::GetComplementOutput);
}

namespace {

Ref<ILimitPair> VoltagePair(const Ref<IChannel> &channel) {
  return Fetch(Fetch(channel, &IChannel::GetVoltageLimits), &ILimitGroup::GetLimits);
}

Ref<ILimitPair> CurrentPair(const Ref<IChannel> &channel) {
  return Fetch(Fetch(channel, &IChannel::GetCurrentLimits), &ILimitGroup::GetLimits);
}

}  // namespace

// One switch serves both pairs of a channel: it is written on the current pair and read on the voltage pair.

Boolean clsInstrInterface::SetLimits(const udtLimitsInfo &Limits) {
  return m->SetWithin("SetLimits", [&] {
    for (Long i = 1; i <= m->m_NumChannels; ++i) {
      const auto channel = m->Channel(i);
      const auto voltage = VoltagePair(channel);
      Call(voltage, &ILimitPair::SetHigh, Limits.dblHighVoltage[i]);
      Call(voltage, &ILimitPair::SetLow, Limits.dblLowVoltage[i]);
      const auto current = CurrentPair(channel);
      Call(current, &ILimitPair::SetHigh, Limits.dblHighCurrent[i]);
      Call(current, &ILimitPair::SetLow, Limits.dblLowCurrent[i]);
      Call(current, &ILimitPair::SetEnabled, Limits.fEnabled[i]);
    }
  });
}

Boolean clsInstrInterface::GetLimits(udtLimitsInfo &Limits) {
  return m->WhileOnline("GetLimits", [&](Boolean &fResult) {
    for (Long i = 1; i <= m->m_NumChannels; ++i) {
      const auto channel = m->Channel(i);
      const auto voltage = VoltagePair(channel);
      const Boolean fEnabled = Read(voltage, &ILimitPair::GetEnabled);
      Limits.fEnabled[i] = fEnabled;
      Limits.dblHighVoltage[i] = Read(voltage, &ILimitPair::GetHigh);
      Limits.dblLowVoltage[i] = Read(voltage, &ILimitPair::GetLow);
      const auto current = CurrentPair(channel);
      Limits.dblHighCurrent[i] = Read(current, &ILimitPair::GetHigh);
      Limits.dblLowCurrent[i] = Read(current, &ILimitPair::GetLow);
    }
    fResult = True;
  });
}

namespace {

Long ReadOutLevel(const Ref<IAuxOutputs> &aux, Long lngWhich) {
  Long lngLevel = 0;
  Call(aux, &IAuxOutputs::GetOutLevel, lngWhich, &lngLevel);
  return lngLevel;
}

}  // namespace

Boolean clsInstrInterface::SetTriggerLevels(const udtTrgLevelsInfo &TrgLevels) {
  return m->SetWithin("SetTriggerLevels", [&] {
    const auto trigger = Fetch(m->m_Instr, &IInstrument::GetTriggerSystem);
    const auto aux = Fetch(trigger, &ITriggerSystem::GetAuxOutputs);
    Call(aux, &IAuxOutputs::SetOutLevel, eOutTrigger, TrgLevels.eTriggerOutLevel);
    Call(aux, &IAuxOutputs::SetOutLevel, eOutStrobe, TrgLevels.eStrobeOutLevel);
    if (IsNotRestricted(eLacksVxiSource)) Call(aux, &IAuxOutputs::SetVxiSource, TrgLevels.eVxiTriggerSource);
    if (IsNotRestricted(eLacksVxiEnable)) Call(aux, &IAuxOutputs::SetVxiLine, TrgLevels.eVxiTriggerLine);
    const auto clock = Fetch(trigger, &ITriggerSystem::GetClockInput);
    Call(clock, &IClockInput::SetImpedance, TrgLevels.dblClkInInputImp);
    Call(clock, &IClockInput::SetThreshold, TrgLevels.dblClkInThreshold);
    const auto external = Fetch(trigger, &ITriggerSystem::GetExtInput);
    Call(external, &IExtInput::SetImpedance, TrgLevels.dblExtInInputImp);
    Call(external, &IExtInput::SetThreshold, TrgLevels.dblExtInThreshold);
  });
}

Boolean clsInstrInterface::GetTriggerLevels(udtTrgLevelsInfo &TrgLevels) {
  return m->WhileOnline("GetTriggerLevels", [&](Boolean &fResult) {
    const auto trigger = Fetch(m->m_Instr, &IInstrument::GetTriggerSystem);
    const auto aux = Fetch(trigger, &ITriggerSystem::GetAuxOutputs);
    TrgLevels.eTriggerOutLevel = ReadOutLevel(aux, eOutTrigger);
    TrgLevels.eStrobeOutLevel = ReadOutLevel(aux, eOutStrobe);
    if (IsNotRestricted(eLacksVxiSource)) TrgLevels.eVxiTriggerSource = Read(aux, &IAuxOutputs::GetVxiSource);
    if (IsNotRestricted(eLacksVxiEnable)) TrgLevels.eVxiTriggerLine = Read(aux, &IAuxOutputs::GetVxiLine);
    const auto clock = Fetch(trigger, &ITriggerSystem::GetClockInput);
    TrgLevels.dblClkInInputImp = Read(clock, &IClockInput::GetImpedance);
    TrgLevels.dblClkInThreshold = Read(clock, &IClockInput::GetThreshold);
    const auto external = Fetch(trigger, &ITriggerSystem::GetExtInput);
    TrgLevels.dblExtInInputImp = Read(external, &IExtInput::GetImpedance);
    TrgLevels.dblExtInThreshold = Read(external, &IExtInput::GetThreshold);
    fResult = True;
  });
}

}  // namespace tarvik
