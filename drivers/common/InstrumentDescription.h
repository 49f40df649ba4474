#pragma once

#include <string>
#include <vector>

#include "common/ScpiError.h"
#include "instrument/Vocabulary.h"

namespace tarvik::driver {

/// What one instrument of the rack is. Its settings are no part of it.
struct InstrumentDescription {
  std::string strName;  ///< key in the instrument list; unique in a rack, never empty
  Integer intKind = eKindSlot;
  Integer intAddress = 0;        ///< logical address
  Integer intSlot = 0;           ///< of a slot instrument
  Integer intModelCode = 0;      ///< of a slot instrument; the 16 bits of the code
  Long lngChannels = 2;          ///< 1 or 2
  Long lngMask = 0;              ///< sum of Functionality bits
  std::string strIdentity;       ///< maker, product, serial number, version
  std::string strOptions;        ///< option text
  bool fOpens = true;            ///< whether a session can be opened
  Long lngCalibrationDelay = 0;  ///< milliseconds
  Long lngSelfTestDelay = 0;     ///< milliseconds
  Integer intSelfTestCode = 0;   ///< 0 passed
  std::string strSelfTestText = "Self test passed";
  std::vector<ScpiError> arrErrors;    ///< in the error queue from the start
  std::vector<ScpiError> arrWarnings;  ///< hold until the instrument is reset

  bool HasSlot() const { return IsSlotKind(intKind); }
  bool Lacks(Long lngLack) const { return (lngMask & lngLack) != 0; }
  bool operator==(const InstrumentDescription &) const = default;
};

}  // namespace tarvik::driver
