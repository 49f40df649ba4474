#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

#include "scpi/simulator/CommandLine.h"
#include "scpi/simulator/Server.h"

namespace {

using namespace tarvik::scpisim;

/// Becomes readable at SIGTERM and SIGINT, which end nothing by themselves any more.
int StopDescriptor() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int intSignal : {SIGTERM, SIGINT}) sigaddset(&signals, intSignal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

int Run(int argc, char **argv) {
  const CommandLine line = CommandLine::Of(argc, argv);
  if (!line.strPrint.empty()) {
    std::cout << line.strPrint;
    return EXIT_SUCCESS;
  }
  const int intStop = StopDescriptor();
  Device device(line.instrument);
  device.answerDelay = line.answerDelay;
  if (line.fault != Fault::None) device.faults.Order(FaultPlan::Nobody, line.lngFaultAt, line.fault, line.fFaultEver);
  Server server(line.server, device);
  std::cout << "tarvik-scpi-simulator: " << line.instrument.strName << " listening on " << server.Address()
            << std::endl;
  server.Run(intStop);
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char **argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception &error) {
    std::cerr << "tarvik-scpi-simulator: " << error.what() << std::endl;
    return EXIT_FAILURE;
  }
}
