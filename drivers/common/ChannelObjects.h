#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// One output channel.
class ChannelObject final : public SessionObject<kolven::IChannel> {
 public:
  ChannelObject(std::shared_ptr<Session> session, Long lngChannel)
      : SessionObject(std::move(session)), m_lngChannel(lngChannel) {}
  Status TARVIK_CALL GetCurrentLimits(kolven::ILimitGroup **ppObject) override;
  Status TARVIK_CALL GetLevels(kolven::IDispatch **ppObject) override;
  Status TARVIK_CALL GetTiming(kolven::IChannelTiming **ppObject) override;
  Status TARVIK_CALL GetSignalFormat(Long *pValue) override;
  Status TARVIK_CALL SetSignalFormat(Long value) override;
  Status TARVIK_CALL GetVoltageLimits(kolven::ILimitGroup **ppObject) override;

 private:
  const Long m_lngChannel;
};

/// The channels of an instrument.
class ChannelListObject final : public SessionObject<kolven::IChannelList> {
 public:
  explicit ChannelListObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetCount(Long *pValue) override;
  Status TARVIK_CALL GetItem(Long index, kolven::IChannel **ppObject) override;
};

}  // namespace tarvik::driver
