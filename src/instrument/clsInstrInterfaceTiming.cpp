#include "instrument/DriverCall.h"
#include "instrument/Vocabulary.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik {

using namespace kolven;
using automation::Ref;

Ref<IChannel> clsInstrInterface::Private::Channel(Long lngChannel) const {
  return Fetch(Fetch(m_Instr, &IInstrument::GetChannels), &IChannelList::GetItem, lngChannel);
}

Ref<IChannelLevels> clsInstrInterface::Private::Levels(Long lngChannel) const {
  return Narrowed<IChannelLevels>(Fetch(Channel(lngChannel), &IChannel::GetLevels));
}

// Blocks are fetched before the record's fields are read, so for a channel beyond the record's bounds the fetch
// still reaches the driver.

Boolean clsInstrInterface::SetTiming(const udtTimingInfo &TimingInfo) {
  return m->SetWithin("SetTiming", [&] {
    for (Long i = 1; i <= m->m_NumChannels; ++i) {
      m->SendTiming(TimingInfo, i);
      Output(static_cast<Integer>(i), TimingInfo.fChannelOutputOn[i], False);
      Output(static_cast<Integer>(i), TimingInfo.fChannelOutputInvOn[i], True);
    }
  });
}

void clsInstrInterface::Private::SendTiming(const udtTimingInfo &TimingInfo, Long lngChannel) {
  const auto timing = Fetch(Channel(lngChannel), &IChannel::GetTiming);
  const auto edges = [&] { return Fetch(timing, &IChannelTiming::GetEdges); };
  {
    const auto block = edges();
    CallSelected(block, &IEdges::SetLeading, TimingInfo.dblLeading[lngChannel]);
  }
  {
    const auto block = edges();
    CallSelected(block, &IEdges::SetTrailing, TimingInfo.dblTrailing[lngChannel]);
  }
  Call(timing, &IChannelTiming::SetWidth, TimingInfo.dblWidth[lngChannel]);
  Call(timing, &IChannelTiming::SetFrequency, TimingInfo.dblFrequency);
  // The block that takes the delay decides between single and double pulse.
  if (TimingInfo.fDoublePulse[lngChannel]) {
    const auto block = Fetch(timing, &IChannelTiming::GetDoublePulse);
    CallSelected(block, &IDoublePulse::SetDelay, TimingInfo.dblDelay[lngChannel]);
  } else {
    const auto block = Fetch(timing, &IChannelTiming::GetSinglePulse);
    CallSelected(block, &ISinglePulse::SetDelay, TimingInfo.dblDelay[lngChannel]);
  }
  if (!face.IsRestricted(eLacksTrailingEdge)) {
    const auto block = edges();
    Call(block, &IEdges::SetCoupling, TimingInfo.fAutoCoupleLeTe[lngChannel] ? eEdgesCoupled : eEdgesIndependent);
  }
}

Boolean clsInstrInterface::GetTiming(udtTimingInfo &TimingInfo) {
  return m->WhileOnline("GetTiming", [&](Boolean &fResult) {
    for (Long i = 1; i <= m->m_NumChannels; ++i) {
      m->ReadTiming(TimingInfo, i);
      const auto levels = m->Levels(i);
      const Boolean fOn = Read(levels, &IChannelLevels::GetOutput);
      TimingInfo.fChannelOutputOn[i] = fOn;
      if (IsNotRestricted(eLacksComplement)) {
        const Boolean fInvOn = Read(levels, &IChannelLevels::GetComplementOutput);
        TimingInfo.fChannelOutputInvOn[i] = fInvOn;
      }
    }
    fResult = True;
  });
}

void clsInstrInterface::Private::ReadTiming(udtTimingInfo &TimingInfo, Long lngChannel) {
  const auto timing = Fetch(Channel(lngChannel), &IChannel::GetTiming);
  const auto edges = [&] { return Fetch(timing, &IChannelTiming::GetEdges); };

  const Boolean fCoupled =
      face.IsRestricted(eLacksTrailingEdge) || Read(edges(), &IEdges::GetCoupling) != eEdgesIndependent;
  TimingInfo.fAutoCoupleLeTe[lngChannel] = fCoupled;
  TimingInfo.dblLeading[lngChannel] = ReadSelected(edges(), &IEdges::GetLeading);
  TimingInfo.dblTrailing[lngChannel] = ReadSelected(edges(), &IEdges::GetTrailing);
  TimingInfo.dblWidth[lngChannel] = Read(timing, &IChannelTiming::GetWidth);
  // One value for the instrument; the last channel's is kept.
  TimingInfo.dblFrequency = Read(timing, &IChannelTiming::GetFrequency);
  const auto doublePulse = [&] { return Fetch(timing, &IChannelTiming::GetDoublePulse); };
  TimingInfo.fDoublePulse[lngChannel] = Read(doublePulse(), &IDoublePulse::GetEnabled);
  TimingInfo.dblDelay[lngChannel] =
      TimingInfo.fDoublePulse[lngChannel]
          ? ReadSelected(doublePulse(), &IDoublePulse::GetDelay)
          : ReadSelected(Fetch(timing, &IChannelTiming::GetSinglePulse), &ISinglePulse::GetDelay);
}

Boolean clsInstrInterface::Output(Integer intChan, Boolean fState, Boolean fIsComplement) {
  return m->SendAndCheck("Output", [&] { m->SwitchOutput(intChan, fState, fIsComplement); });
}

void clsInstrInterface::Private::SwitchOutput(Integer intChan, Boolean fState, Boolean fIsComplement) {
  const auto levels = Levels(intChan);
  if (!fIsComplement)
    Call(levels, &IChannelLevels::SetOutput, fState);
  else if (face.IsNotRestricted(eLacksComplement))
    Call(levels, &IChannelLevels::SetComplementOutput, fState);
}

}  // namespace tarvik
