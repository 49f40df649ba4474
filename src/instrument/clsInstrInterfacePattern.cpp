#include "instrument/DriverCall.h"
#include "instrument/OperationFrames.h"

namespace tarvik {

using namespace kolven;

Boolean clsInstrInterface::SetRz(const BooleanArray &fRz) {
  return WhileOnline("SetRz", [&](Boolean &fResult) {
    SendFormats(fRz);
    fResult = clsInstrInterface::CheckWarnings(False);
  });
}

void clsInstrInterface::SendFormats(const BooleanArray &fRz) {
  const auto channels = Fetch(m_Instr, &IInstrument::GetChannels);
  for (Long i = 1; i <= m_NumChannels; ++i) {
    const auto channel = Fetch(channels, &IChannelList::GetItem, i);
    Call(channel, &IChannel::SetSignalFormat, fRz[i] ? eFormatRz : eFormatNrz);
  }
}

Boolean clsInstrInterface::GetRz(BooleanArray &fRz) {
  return WhileOnline("GetRz", [&](Boolean &fResult) {
    const auto channels = Fetch(m_Instr, &IInstrument::GetChannels);
    for (Long i = 1; i <= m_NumChannels; ++i) {
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
  return WhileOnline("SetPatternArray", [&](Boolean &fResult) {
    SendPattern(m_Instr, eChan, arr, lngPatternLen);
    fResult = clsInstrInterface::CheckWarnings(False);
  });
}

Boolean clsInstrInterface::GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) {
  return WhileOnline("GetPatternArray", [&](Boolean &fResult) {
    const auto memory = Fetch(m_Instr, &IInstrument::GetPatternMemory);
    automation::ArrayOwner array(arr);
    Long lngLength = lngPatternLen;
    Call(memory, &IPatternMemory::GetPattern, eChan, PatternForm, array.InOut(), &lngLength);
    arr = automation::ToByteArray(array.Get());
    lngPatternLen = lngLength;
    fResult = True;
  });
}

Boolean clsInstrInterface::CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) {
  return WhileOnline("CalcPRBS", [&](Boolean &fResult) {
    const auto memory = Fetch(m_Instr, &IInstrument::GetPatternMemory);
    automation::ArrayOwner array(arr);
    Call(memory, &IPatternMemory::CalcPrbs, lngStartAddr, lngLastAddr, lngBase, array.InOut());
    arr = automation::ToByteArray(array.Get());
    fResult = True;
  });
}

}  // namespace tarvik
