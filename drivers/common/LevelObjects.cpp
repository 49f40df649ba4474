#include "common/LevelObjects.h"

namespace tarvik::driver {

template <class T, class F>
Status ChannelLevelsObject::GetField(T *pValue, F ChannelLevels::*field) const {
  return Get(pValue, [&](const Settings &s) {
    if constexpr (std::is_same_v<F, bool>)
      return ToWord(s.levels[m_lngChannel].*field);
    else
      return s.levels[m_lngChannel].*field;
  });
}

template <class F>
Status ChannelLevelsObject::SetField(F ChannelLevels::*field, F value) const {
  return Send([lngChannel = m_lngChannel, field, value](Settings &s) { s.levels[lngChannel].*field = value; });
}

Status ChannelLevelsObject::GetComplementOutput(VariantBool *pValue) {
  return GetField(pValue, &ChannelLevels::fComplementOutput);
}
Status ChannelLevelsObject::SetComplementOutput(VariantBool on) {
  return SetField(&ChannelLevels::fComplementOutput, on != 0);
}
Status ChannelLevelsObject::GetLoadCompensation(Double *pValue) {
  return GetField(pValue, &ChannelLevels::dblLoadCompensation);
}
Status ChannelLevelsObject::SetLoadCompensation(Double value) {
  return SetField(&ChannelLevels::dblLoadCompensation, value);
}
Status ChannelLevelsObject::GetImpedance(Double *pValue) { return GetField(pValue, &ChannelLevels::dblImpedance); }
Status ChannelLevelsObject::SetImpedance(Double value) { return SetField(&ChannelLevels::dblImpedance, value); }
Status ChannelLevelsObject::GetOutput(VariantBool *pValue) { return GetField(pValue, &ChannelLevels::fOutput); }
Status ChannelLevelsObject::SetOutput(VariantBool on) { return SetField(&ChannelLevels::fOutput, on != 0); }
Status ChannelLevelsObject::GetPolarity(Long *pValue) { return GetField(pValue, &ChannelLevels::lngPolarity); }
Status ChannelLevelsObject::SetPolarity(Long value) { return SetField(&ChannelLevels::lngPolarity, value); }

Status ChannelLevelsObject::GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) {
  return Run([&] {
    RequirePlace(pType);
    RequirePlace(pAmplOrHigh);
    RequirePlace(pOffsetOrLow);
    const ChannelLevels levels = m_session->Instrument().CurrentSettings().levels[m_lngChannel];
    const auto [dblFirst, dblSecond] = levels.Get(format);
    *pType = levels.lngType;
    *pAmplOrHigh = dblFirst;
    *pOffsetOrLow = dblSecond;
  });
}

Status ChannelLevelsObject::SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) {
  return Send(
      [=, lngChannel = m_lngChannel](Settings &s) { s.levels[lngChannel].Set(format, type, amplOrHigh, offsetOrLow); });
}

Status LimitPairObject::GetLimit(Double *pValue, Double ChannelLimits::*field) const {
  return Get(pValue, [&](const Settings &s) { return s.limits[m_lngChannel].*field; });
}

Status LimitPairObject::SetLimit(Double ChannelLimits::*field, Double dblValue) const {
  return Send([lngChannel = m_lngChannel, field, dblValue](Settings &s) { s.limits[lngChannel].*field = dblValue; });
}

Status LimitPairObject::GetEnabled(VariantBool *pValue) {
  return Get(pValue, [&](const Settings &s) { return ToWord(s.limits[m_lngChannel].fEnabled); });
}
Status LimitPairObject::SetEnabled(VariantBool enable) {
  return Send([lngChannel = m_lngChannel, enable](Settings &s) { s.limits[lngChannel].fEnabled = enable != 0; });
}
Status LimitPairObject::GetHigh(Double *pValue) { return GetLimit(pValue, m_fields.high); }
Status LimitPairObject::SetHigh(Double value) { return SetLimit(m_fields.high, value); }
Status LimitPairObject::GetLow(Double *pValue) { return GetLimit(pValue, m_fields.low); }
Status LimitPairObject::SetLow(Double value) { return SetLimit(m_fields.low, value); }

Status LimitGroupObject::GetLimits(kolven::ILimitPair **ppObject) {
  return Give<LimitPairObject>(ppObject, m_lngChannel, m_fields);
}

}  // namespace tarvik::driver
