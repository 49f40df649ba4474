#include <grpc/grpc.h>
#include <grpc/support/log.h>
#include <pthread.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "automation/Activation.h"
#include "remote/DriverServer.h"
#include "remote/ServerAddress.h"
#include "remote/ServerCommandLine.h"
#include "support/RunTimeError.h"

namespace {

using namespace tarvik;
using namespace tarvik::remote;

/// Routes errors of gRPC into the log: a client that fails the TLS handshake appears nowhere else.
class TransportReports {
 public:
  explicit TransportReports(ServerLog &log) {
    TheLog() = &log;
    gpr_set_log_function([](gpr_log_func_args *pReport) {
      if (ServerLog *pLog = TheLog(); pLog && pReport->severity == GPR_LOG_SEVERITY_ERROR)
        pLog->Write("transport", pReport->message);
    });
  }
  TransportReports(const TransportReports &) = delete;
  TransportReports &operator=(const TransportReports &) = delete;
  ~TransportReports() { TheLog() = nullptr; }

 private:
  static std::atomic<ServerLog *> &TheLog() {
    static std::atomic<ServerLog *> pLog = nullptr;
    return pLog;
  }
};

int Run(int argc, char **argv) {
  // Blocked before any thread starts, so that only the sigwait below receives them.
  sigset_t signals;
  sigemptyset(&signals);
  for (const int lngSignal : {SIGTERM, SIGINT}) sigaddset(&signals, lngSignal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // A closed log pipe must not end the server.
  std::signal(SIGPIPE, SIG_IGN);

  const ServerCommandLine line = ServerCommandLine::Of(argc, argv);
  if (!line.strHelp.empty()) {
    std::cout << line.strHelp;
    return EXIT_SUCCESS;
  }
  std::ofstream logFile;
  if (!line.strLogFile.empty()) {
    logFile.open(line.strLogFile, std::ios::app);
    if (!logFile) throw RunTimeError(ErrPathFileAccess, line.strLogFile + " cannot be written");
  }
  ServerLog log(logFile.is_open() ? static_cast<std::ostream &>(logFile) : std::cerr);
  const TransportReports reports(log);
  // gRPC shutdown can block for ten seconds on a dead connection. An extra grpc_init keeps the library initialized, so
  // that the process exits without the shutdown.
  grpc_init();
  const auto create = [](const std::string &strProgId) { return automation::CreateObject(strProgId, ""); };
  DriverServer server(line.options, create, log);
  const ServerAddress address{!line.options.fInsecure, line.options.strHost, server.Port()};
  std::cout << "tarvik-driver-server: listening on " << address.HostAndPort() << std::endl;
  log.Write("server",
            "listening on " + address.HostAndPort() + (line.options.fInsecure ? " without transport security" : ""));

  int lngSignal = 0;
  sigwait(&signals, &lngSignal);
  log.Write("server", "stopping");
  // A second signal ends the process without waiting for calls in progress.
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  server.Stop();
  log.Write("server", "stopped");
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char **argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception &error) {
    std::cerr << "tarvik-driver-server: " << error.what() << std::endl;
    return EXIT_FAILURE;
  }
}
