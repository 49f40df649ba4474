#pragma once

#include "scpi/simulator/FaultPlan.h"

namespace tarvik::scpisim {

struct FaultWord {
  const char *strName;      ///< on the command line
  const char *strNotation;  ///< in DIAGnostic:FAULt
  Fault fault;
};

inline constexpr FaultWord FaultWords[] = {
    {"cut", "CUT", Fault::Cut},
    {"half", "HALF", Fault::Half},
    {"silence", "SILence", Fault::Silence},
    {"mute", "MUTE", Fault::Mute},
    {"garbage", "GARBage", Fault::Garbage},
    {"error", "ERRor", Fault::Error},
    {"endless", "ENDLess", Fault::Endless},
    {"stale", "STALe", Fault::Stale},
};

}  // namespace tarvik::scpisim
