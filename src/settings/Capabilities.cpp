#include "settings/Capabilities.h"

#include "instrument/Vocabulary.h"

namespace tarvik {

Capabilities CapabilitiesOf(Long lngChannels, const std::function<Boolean(Long)> &Lacks) {
  const auto has = [&](Long eFunctionality) { return Boolean(!Lacks(eFunctionality)); };
  return {
      .fSession = lngChannels != 0,
      .fDualChannel = lngChannels != 1,
      .fComplement = has(eLacksComplement),
      .fChannelMath = has(eLacksChannelMath),
      .fTrailingEdge = has(eLacksTrailingEdge),
      .fVxiLines = has(eLacksVxiLines),
      .fVxiTrigger = has(eLacksAnyVxi),
      .fVxiSource = has(eLacksVxiSource),
      .fVxiEnable = has(eLacksVxiEnable),
  };
}

}  // namespace tarvik
