#include "common/ChannelObjects.h"

#include "common/LevelObjects.h"
#include "common/TimingObjects.h"

namespace tarvik::driver {

Status ChannelObject::GetCurrentLimits(kolven::ILimitGroup **ppObject) {
  return Give<LimitGroupObject>(ppObject, m_lngChannel, CurrentLimits);
}

Status ChannelObject::GetLevels(kolven::IDispatch **ppObject) {
  return Give<ChannelLevelsObject>(ppObject, m_lngChannel);
}

Status ChannelObject::GetTiming(kolven::IChannelTiming **ppObject) {
  return Give<ChannelTimingObject>(ppObject, m_lngChannel);
}

Status ChannelObject::GetSignalFormat(Long *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].lngSignalFormat; });
}

Status ChannelObject::SetSignalFormat(Long value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].lngSignalFormat = value; });
}

Status ChannelObject::GetVoltageLimits(kolven::ILimitGroup **ppObject) {
  return Give<LimitGroupObject>(ppObject, m_lngChannel, VoltageLimits);
}

Status ChannelListObject::GetCount(Long *pValue) {
  return Run([&] {
    RequirePlace(pValue);
    *pValue = m_session->Description().lngChannels;
  });
}

Status ChannelListObject::GetItem(Long index, kolven::IChannel **ppObject) {
  if (ppObject) *ppObject = nullptr;
  return Run([&] {
    RequirePlace(ppObject);
    if (index < 1 || index > m_session->Description().lngChannels)
      throw CallFailure{automation::StatusBadIndex,
                        m_session->Description().strName + " has no channel " + std::to_string(index)};
    *ppObject = automation::MakeObject<ChannelObject>(m_session, index).Detach();
  });
}

}  // namespace tarvik::driver
