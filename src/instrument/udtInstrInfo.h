#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik {

/// Identity of the open instrument.
struct udtInstrInfo {
  Long lngNumChannels = 0;
  std::string strLogAddr;  ///< the host's own, never written by the instrument class
  std::string strProductId;
  std::string strSerialNum;
  std::string strSysVersion;
  std::string strInstOptions;    ///< " - " where the instrument does not tell its options
  std::string strFwCompileInfo;  ///< the host's own, never written by the instrument class

  bool operator==(const udtInstrInfo &) const = default;
};

}  // namespace tarvik
