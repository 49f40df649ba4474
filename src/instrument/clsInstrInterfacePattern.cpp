#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik {

using namespace kolven;

Boolean clsInstrInterface::SetRz(const BooleanArray &fRz) {
  return m->SendAndCheck("SetRz", [&] { m->SendFormats(fRz); });
}

void clsInstrInterface::Private::SendFormats(const BooleanArray &fRz) {
  const auto channels = Fetch(m_Instr, &IInstrument::GetChannels);
  for (Long i = 1; i <= m_NumChannels; ++i) {
    const auto channel = Fetch(channels, &IChannelList::GetItem, i);
    Call(channel, &IChannel::SetSignalFormat, fRz[i] ? eFormatRz : eFormatNrz);
  }
}

Boolean clsInstrInterface::GetRz(BooleanArray &fRz) {
  return m->WhileOnline("GetRz", [&](Boolean &fResult) {
    const auto channels = Fetch(m->m_Instr, &IInstrument::GetChannels);
    for (Long i = 1; i <= m->m_NumChannels; ++i) {
      const auto channel = Fetch(channels, &IChannelList::GetItem, i);
      const Long lngFormat = Read(channel, &IChannel::GetSignalFormat);
      fRz[i] = lngFormat != eFormatNrz;
    }
    fResult = True;
  });
}

namespace {

void SendPattern(const automation::Ref<IInstrument> &instrument, Long eChan, ByteArray &arr, Long lngPatternLen) {
  const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
  automation::ArrayOwner array(arr);
  Call(memory, &IPatternMemory::SetPattern, eChan, PatternForm, array.InOut(), lngPatternLen);
  arr = automation::ToByteArray(array.Get());
}

}  // namespace

Boolean clsInstrInterface::SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen) {
  return m->SendAndCheck("SetPatternArray", [&] { SendPattern(m->m_Instr, eChan, arr, lngPatternLen); });
}

Boolean clsInstrInterface::GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) {
  return m->WhileOnline("GetPatternArray", [&](Boolean &fResult) {
    const auto memory = Fetch(m->m_Instr, &IInstrument::GetPatternMemory);
    automation::ArrayOwner array(arr);
    Long lngLength = lngPatternLen;
    Call(memory, &IPatternMemory::GetPattern, eChan, PatternForm, array.InOut(), &lngLength);
    arr = automation::ToByteArray(array.Get());
    lngPatternLen = lngLength;
    fResult = True;
  });
}

Boolean clsInstrInterface::CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) {
  return m->WhileOnline("CalcPRBS", [&](Boolean &fResult) {
    const auto memory = Fetch(m->m_Instr, &IInstrument::GetPatternMemory);
    automation::ArrayOwner array(arr);
    Call(memory, &IPatternMemory::CalcPrbs, lngStartAddr, lngLastAddr, lngBase, array.InOut());
    arr = automation::ToByteArray(array.Get());
    fResult = True;
  });
}

}  // namespace tarvik
