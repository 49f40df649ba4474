#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik {

using namespace kolven;
using automation::Ref;

namespace {

using Info = udtModeInfo;
using ModeSetter = void (*)(const Ref<IModeSetup> &, const Info &);

/// Calls one mode setter with these fields of the record, in this order.
template <auto Operation, auto... Fields>
void SendFields(const Ref<IModeSetup> &setup, const Info &ModeInfo) {
  Call(setup, Operation, ModeInfo.*Fields...);
}

/// By trigger mode, then by pulse mode. Triggered pulses take nothing but the arming.
constexpr ModeSetter ModeSetters[3][3] = {
    {
        &SendFields<&IModeSetup::SetContinuousPulses, &Info::PeriodSource, &Info::TriggerSlope>,
        &SendFields<&IModeSetup::SetContinuousBurst, &Info::BurstLength, &Info::PeriodSource, &Info::TriggerSlope>,
        &SendFields<&IModeSetup::SetContinuousPattern, &Info::PeriodSource, &Info::TriggerSlope>,
    },
    {
        &SendFields<&IModeSetup::SetTriggeredPulses, &Info::ArmingSource, &Info::ArmSlope>,
        &SendFields<&IModeSetup::SetTriggeredBurst, &Info::BurstLength, &Info::PeriodSource, &Info::TriggerSlope,
                    &Info::ArmingSource, &Info::ArmSlope, &Info::PllFormat, &Info::PllPeriodOrFreq>,
        &SendFields<&IModeSetup::SetTriggeredPattern, &Info::PeriodSource, &Info::TriggerSlope, &Info::ArmingSource,
                    &Info::ArmSlope, &Info::PllFormat, &Info::PllPeriodOrFreq>,
    },
    {
        &SendFields<&IModeSetup::SetGatedPulses, &Info::PeriodSource, &Info::TriggerSlope, &Info::ArmingSource,
                    &Info::ArmSlope>,
        &SendFields<&IModeSetup::SetGatedBurst, &Info::BurstLength, &Info::PeriodSource, &Info::TriggerSlope,
                    &Info::ArmingSource, &Info::ArmSlope>,
        &SendFields<&IModeSetup::SetGatedPattern, &Info::PeriodSource, &Info::TriggerSlope, &Info::ArmingSource,
                    &Info::ArmSlope>,
    },
};

}  // namespace

Boolean clsInstrInterface::SetMode(const udtModeInfo &ModeInfo) {
  return m->SetWithin("SetMode", [&] {
    if (ModeInfo.TriggerMode == eTriggerExtWidth) {
      m->SendExtWidth(ModeInfo.ArmingSource);
      return;
    }
    m->SendMode(ModeInfo);
    m->SendChannelModes(ModeInfo);
  });
}

void clsInstrInterface::Private::SendExtWidth(Long ArmingSource) {
  const auto arm = Fetch(Fetch(m_Instr, &IInstrument::GetTriggerSystem), &ITriggerSystem::GetArmSource);
  Call(arm, &IArmSource::SetSource, ArmingSource);
  Call(Fetch(m_Instr, &IInstrument::GetTriggerSystem), &ITriggerSystem::SetTriggerMode, eTriggerExtWidth);
}

void clsInstrInterface::Private::SendMode(const udtModeInfo &ModeInfo) {
  const auto fKnown = [](Long lngMode) { return lngMode >= 0 && lngMode < 3; };
  if (!fKnown(ModeInfo.TriggerMode) || !fKnown(ModeInfo.PulseMode)) {
    automation::CallsAhead::LeaveRehearsal();
    ShowStopMessage("Illegal case in SetMode");
    return;
  }
  const auto setter = ModeSetters[ModeInfo.TriggerMode][ModeInfo.PulseMode];
  setter(Fetch(m_Instr, &IInstrument::GetModeSetup), ModeInfo);
}

void clsInstrInterface::Private::SendChannelModes(const udtModeInfo &ModeInfo) {
  const auto channels = Fetch(m_Instr, &IInstrument::GetChannels);
  const Long lngCount = Read(channels, &IChannelList::GetCount);
  for (Long i = 1; i <= lngCount; ++i) {
    const auto channel = Fetch(channels, &IChannelList::GetItem, i);
    if (ModeInfo.PulseMode == ePulsePattern) {
      Call(channel, &IChannel::SetSignalFormat, ModeInfo.SignalFormat[i]);
    } else {
      const auto timing = Fetch(channel, &IChannel::GetTiming);
      Call(timing, &IChannelTiming::SetPulseType, ModeInfo.PulseType[i]);
    }
  }
}

Boolean clsInstrInterface::GetMode(udtModeInfo &ModeInfo) {
  return m->WhileOnline("GetMode", [&](Boolean &fResult) {
    ModeInfo.PulseMode = ReadSelected(m->m_Instr, &IInstrument::GetPulseMode);
    m->ReadTriggering(ModeInfo);
    m->ReadChannelModes(ModeInfo);
    fResult = True;
  });
}

void clsInstrInterface::Private::ReadTriggering(udtModeInfo &ModeInfo) {
  const auto trigger = Fetch(m_Instr, &IInstrument::GetTriggerSystem);
  ModeInfo.TriggerMode = Read(trigger, &ITriggerSystem::GetTriggerMode);
  ModeInfo.BurstLength = Read(trigger, &ITriggerSystem::GetBurstLength);
  ModeInfo.PeriodSource = Read(trigger, &ITriggerSystem::GetPeriodSource);
  ModeInfo.TriggerSlope = Read(Fetch(trigger, &ITriggerSystem::GetClockInput), &IClockInput::GetSlope);

  const auto arm = [&] { return Fetch(trigger, &ITriggerSystem::GetArmSource); };
  ModeInfo.ArmingSource = Read(arm(), &IArmSource::GetSource);
  // The driver reports a slope only if the PLL is not the source, and the PLL only as a frequency.
  if (ModeInfo.ArmingSource == eArmPll) {
    ModeInfo.PllFormat = ePllFrequency;
    ModeInfo.PllPeriodOrFreq = Read(arm(), &IArmSource::GetPllFrequency);
  } else {
    ModeInfo.ArmSlope = Read(arm(), &IArmSource::GetSlope);
    ModeInfo.PllPeriodOrFreq = 0;
  }
}

void clsInstrInterface::Private::ReadChannelModes(udtModeInfo &ModeInfo) {
  const bool fPattern = ModeInfo.PulseMode == ePulsePattern;
  ChannelArray<Long> &arrModes = fPattern ? ModeInfo.SignalFormat : ModeInfo.PulseType;
  arrModes = {1, 1};
  const auto channels = Fetch(m_Instr, &IInstrument::GetChannels);
  const Long lngCount = Read(channels, &IChannelList::GetCount);
  for (Long i = 1; i <= lngCount; ++i) {
    const auto channel = Fetch(channels, &IChannelList::GetItem, i);
    const Long lngMode = fPattern ? Read(channel, &IChannel::GetSignalFormat)
                                  : Read(Fetch(channel, &IChannel::GetTiming), &IChannelTiming::GetPulseType);
    arrModes[i] = lngMode;
  }
}

}  // namespace tarvik
