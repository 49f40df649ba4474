#include "common/TimingObjects.h"

namespace tarvik::driver {

Status EdgesObject::GetCoupling(Long *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].fCoupled ? 1 : 0; });
}

Status EdgesObject::SetCoupling(Long value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) {
    if (value != 0 && value != 1)
      Reject(ScpiIllegalParameterValue, "Illegal parameter value: edge coupling",
             std::to_string(value) + ", allowed 0, 1");
    s.timing[lngChannel].fCoupled = value != 0;
  });
}

Status EdgesObject::GetLeading(Long *, Double *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].dblLeading; });
}

Status EdgesObject::SetLeading(Long *, Double value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].dblLeading = value; });
}

Status EdgesObject::GetTrailing(Long *, Double *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].TrailingInForce(); });
}

Status EdgesObject::SetTrailing(Long *, Double value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].dblTrailing = value; });
}

Status SinglePulseObject::GetDelay(Long *, Double *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].dblSingleDelay; });
}

Status SinglePulseObject::SetDelay(Long *, Double value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].SetSingleDelay(value); });
}

Status DoublePulseObject::GetEnabled(VariantBool *pValue) {
  return Get(pValue, [&](const Settings &s) { return ToWord(s.timing[m_lngChannel].IsDouble()); });
}

Status DoublePulseObject::GetDelay(Long *, Double *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].dblDoubleDelay; });
}

Status DoublePulseObject::SetDelay(Long *, Double value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].SetDoubleDelay(value); });
}

Status ChannelTimingObject::GetSinglePulse(kolven::ISinglePulse **ppObject) {
  return Give<SinglePulseObject>(ppObject, m_lngChannel);
}

Status ChannelTimingObject::GetDoublePulse(kolven::IDoublePulse **ppObject) {
  return Give<DoublePulseObject>(ppObject, m_lngChannel);
}

Status ChannelTimingObject::GetFrequency(Double *pValue) {
  return Get(pValue, [](const Settings &s) { return s.dblFrequency; });
}

Status ChannelTimingObject::SetFrequency(Double value) {
  return Send([value](Settings &s) { s.dblFrequency = value; });
}

Status ChannelTimingObject::GetEdges(kolven::IEdges **ppObject) { return Give<EdgesObject>(ppObject, m_lngChannel); }

Status ChannelTimingObject::GetPulseType(Long *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].lngPulseType; });
}

Status ChannelTimingObject::SetPulseType(Long value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].SetPulseType(value); });
}

Status ChannelTimingObject::GetWidth(Double *pValue) {
  return Get(pValue, [&](const Settings &s) { return s.timing[m_lngChannel].dblWidth; });
}

Status ChannelTimingObject::SetWidth(Double value) {
  return Send([lngChannel = m_lngChannel, value](Settings &s) { s.timing[lngChannel].dblWidth = value; });
}

}  // namespace tarvik::driver
