#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// Edges of a channel.
class EdgesObject final : public SessionObject<kolven::IEdges> {
 public:
  EdgesObject(std::shared_ptr<Session> session, Long lngChannel)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel) {}
  Status TARVIK_CALL GetCoupling(Long *pValue) override;
  Status TARVIK_CALL SetCoupling(Long value) override;
  Status TARVIK_CALL GetLeading(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetLeading(Long *pSelector, Double value) override;
  Status TARVIK_CALL GetTrailing(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetTrailing(Long *pSelector, Double value) override;

 private:
  const Long m_lngChannel;
};

/// Delay of a single pulse.
class SinglePulseObject final : public SessionObject<kolven::ISinglePulse> {
 public:
  SinglePulseObject(std::shared_ptr<Session> session, Long lngChannel)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel) {}
  Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetDelay(Long *pSelector, Double value) override;

 private:
  const Long m_lngChannel;
};

/// Delay of the second pulse of a double pulse.
class DoublePulseObject final : public SessionObject<kolven::IDoublePulse> {
 public:
  DoublePulseObject(std::shared_ptr<Session> session, Long lngChannel)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel) {}
  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override;
  Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetDelay(Long *pSelector, Double value) override;

 private:
  const Long m_lngChannel;
};

/// Timing of a channel.
class ChannelTimingObject final : public SessionObject<kolven::IChannelTiming> {
 public:
  ChannelTimingObject(std::shared_ptr<Session> session, Long lngChannel)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel) {}
  Status TARVIK_CALL GetSinglePulse(kolven::ISinglePulse **ppObject) override;
  Status TARVIK_CALL GetDoublePulse(kolven::IDoublePulse **ppObject) override;
  Status TARVIK_CALL GetFrequency(Double *pValue) override;
  Status TARVIK_CALL SetFrequency(Double value) override;
  Status TARVIK_CALL GetEdges(kolven::IEdges **ppObject) override;
  Status TARVIK_CALL GetPulseType(Long *pValue) override;
  Status TARVIK_CALL SetPulseType(Long value) override;
  Status TARVIK_CALL GetWidth(Double *pValue) override;
  Status TARVIK_CALL SetWidth(Double value) override;

 private:
  const Long m_lngChannel;
};

}  // namespace tarvik::driver
