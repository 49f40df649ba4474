#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// Levels and output switches of a channel.
class ChannelLevelsObject final : public SessionObject<kolven::IChannelLevels> {
 public:
  ChannelLevelsObject(std::shared_ptr<Session> session, Long lngChannel)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel) {}
  Status TARVIK_CALL GetComplementOutput(VariantBool *pValue) override;
  Status TARVIK_CALL SetComplementOutput(VariantBool on) override;
  Status TARVIK_CALL GetLoadCompensation(Double *pValue) override;
  Status TARVIK_CALL SetLoadCompensation(Double value) override;
  Status TARVIK_CALL GetImpedance(Double *pValue) override;
  Status TARVIK_CALL SetImpedance(Double value) override;
  Status TARVIK_CALL GetOutput(VariantBool *pValue) override;
  Status TARVIK_CALL SetOutput(VariantBool on) override;
  Status TARVIK_CALL GetPolarity(Long *pValue) override;
  Status TARVIK_CALL SetPolarity(Long value) override;
  Status TARVIK_CALL GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) override;
  Status TARVIK_CALL SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) override;

 private:
  /// Reads and writes one plain field of the channel's levels.
  template <class T, class F>
  Status GetField(T *pValue, F ChannelLevels::*field) const;
  template <class F>
  Status SetField(F ChannelLevels::*field, F value) const;

  const Long m_lngChannel;
};

/// Where a pair of limits stands in the channel's limits.
struct LimitFields {
  Double ChannelLimits::*high;
  Double ChannelLimits::*low;
};

inline constexpr LimitFields VoltageLimits{&ChannelLimits::dblHighVoltage, &ChannelLimits::dblLowVoltage};
inline constexpr LimitFields CurrentLimits{&ChannelLimits::dblHighCurrent, &ChannelLimits::dblLowCurrent};

/// One pair of limits. The switch of both pairs of a channel is the same.
class LimitPairObject final : public SessionObject<kolven::ILimitPair> {
 public:
  LimitPairObject(std::shared_ptr<Session> session, Long lngChannel, LimitFields fields)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel), m_fields(fields) {}
  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override;
  Status TARVIK_CALL SetEnabled(VariantBool enable) override;
  Status TARVIK_CALL GetHigh(Double *pValue) override;
  Status TARVIK_CALL SetHigh(Double value) override;
  Status TARVIK_CALL GetLow(Double *pValue) override;
  Status TARVIK_CALL SetLow(Double value) override;

 private:
  Status GetLimit(Double *pValue, Double ChannelLimits::*field) const;
  Status SetLimit(Double ChannelLimits::*field, Double dblValue) const;

  const Long m_lngChannel;
  const LimitFields m_fields;
};

/// The limits of one quantity of a channel.
class LimitGroupObject final : public SessionObject<kolven::ILimitGroup> {
 public:
  LimitGroupObject(std::shared_ptr<Session> session, Long lngChannel, LimitFields fields)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel), m_fields(fields) {}
  Status TARVIK_CALL GetLimits(kolven::ILimitPair **ppObject) override;

 private:
  const Long m_lngChannel;
  const LimitFields m_fields;
};

}  // namespace tarvik::driver
