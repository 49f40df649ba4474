#pragma once

#include <chrono>
#include <string>

#include "scpi/simulator/FaultPlan.h"
#include "scpi/simulator/Server.h"
#include "simulator/model/DriverTypes.h"

namespace tarvik::scpisim {

/// What the program is asked to do.
struct CommandLine {
  ServerOptions server;
  simulator::InstrumentDescription instrument;
  std::chrono::milliseconds answerDelay{0};
  Fault fault = Fault::None;
  Long lngFaultAt = 0;
  bool fFaultEver = false;
  /// Not empty: is printed, and nothing is served.
  std::string strPrint;

  /// Parses the arguments and reads the rack file that they name. Throws RunTimeError on invalid ones.
  static CommandLine Of(int argc, char **argv);
};

}  // namespace tarvik::scpisim
