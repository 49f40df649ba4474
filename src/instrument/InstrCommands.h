#pragma once

#include "support/Types.h"

namespace tarvik {

/// Commands that have no settings.
enum InstrCommands : Long {
  ICReset = 0,      ///< default state of the instrument
  ICSelftest = 1,   ///< self test; hands back its text
  ICCalibrate = 2,  ///< calibration; returns when it ends
  ICRefresh = 3,    ///< new search of the driver; needs a connection only
  ICOptions = 4,    ///< hands back the option text
};

}  // namespace tarvik
