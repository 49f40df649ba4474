#include "settings/OutputRules.h"

namespace tarvik {

Boolean TurnsOutputOn(Integer intOption) { return intOption % 2 == 0; }

Boolean CanSwitchOutput(Integer intChan, Long lngChannels) { return lngChannels == 0 || intChan <= lngChannels; }

}  // namespace tarvik
