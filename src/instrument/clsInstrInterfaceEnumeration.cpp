#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik {

using namespace kolven;

Boolean clsInstrInterface::GetViInfo(Integer Index, tarvik::viInfo &viInfo, std::string &strName) {
  return Reported("GetViInfo", [&](Boolean &fResult) {
    if (!IsConnected()) return;
    const Long lngCount = Read(Fetch(m->m_Root, &IDriverRoot::GetInstruments), &IInstrumentList::GetCount);
    if (Index > lngCount || Index <= 0) return;

    AutomationVariant key{};
    key.vt = automation::VtInteger;
    key.iVal = Index;
    const auto list = Fetch(m->m_Root, &IDriverRoot::GetInstruments);
    const auto instrument = Narrowed<IInstrument>(Fetch(list, &IInstrumentList::GetItem, key));
    if (!instrument) return;
    strName = Read(instrument, &IInstrument::GetName);
    // The driver writes into an array whose first element has the index 1, and may hand back another one.
    automation::ArrayOwner array(ByteArray(1, {m->m_ViBuffer.arrBytes.begin(), m->m_ViBuffer.arrBytes.end()}));
    Call(instrument, &IInstrument::GetViInfo, array.InOut());
    m->m_ViBuffer.ReadFrom(array.Get());
    viInfo = m->m_ViBuffer;
    fResult = True;
  });
}

std::optional<Long> clsInstrInterface::ChannelCount() const {
  if (!IsOnline(True)) return std::nullopt;
  return m->m_NumChannels;
}

Boolean clsInstrInterface::IsSingleChannel() const { return ChannelCount() == 1; }

Boolean clsInstrInterface::IsDualChannel() const { return ChannelCount() == 2; }

Boolean clsInstrInterface::IsRestricted(Long eFunctionality) const {
  // Signed: the highest bit alone restricts nothing.
  return (m->m_Restrictions & eFunctionality) > 0;
}

Boolean clsInstrInterface::IsNotRestricted(Long eFunctionality) const { return !IsRestricted(eFunctionality); }

}  // namespace tarvik
