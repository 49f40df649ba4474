#pragma once

#include "StandInObject.h"

namespace tarvik::test {

class StandInChannelList : public StandInObject<kolven::IChannelList> {
 public:
  static constexpr const char *Name = "IChannelList";
  explicit StandInChannelList(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetCount(Long *pValue) override { return Get("GetCount", pValue, At().instrument->lngChannels); }
  Status TARVIK_CALL GetItem(Long index, kolven::IChannel **ppObject) override;
};

}  // namespace tarvik::test
