#include <grpc/grpc.h>
#include <grpc/support/log.h>
#include <pthread.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <optional>
#include <utility>
#include <vector>

#include "automation/Activation.h"
#include "remote/ControlSocket.h"
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
        pLog->Write("transport", {"handshake", pReport->message});
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

/// Sees by their times and sizes that files have changed.
class FileWatch {
 public:
  explicit FileWatch(const std::vector<std::string> &arrFiles) : m_arrFiles(arrFiles), m_arrSeen(Look()) {}
  /// Whether anything has changed since it was last asked.
  bool HaveChanged() {
    const auto arrBefore = std::exchange(m_arrSeen, Look());
    return m_arrSeen != arrBefore;
  }

 private:
  struct Seen {
    bool fThere = false;
    std::filesystem::file_time_type time{};
    std::uintmax_t lngSize = 0;
    bool operator==(const Seen &) const = default;
  };
  std::vector<Seen> Look() const {
    std::vector<Seen> arrSeen;
    for (const std::string &strFile : m_arrFiles) {
      std::error_code error;
      const auto time = std::filesystem::last_write_time(strFile, error);
      arrSeen.push_back(error ? Seen{} : Seen{true, time, std::filesystem::file_size(strFile, error)});
    }
    return arrSeen;
  }

  const std::vector<std::string> m_arrFiles;
  std::vector<Seen> m_arrSeen;
};

sigset_t SignalsOf(std::initializer_list<int> signals) {
  sigset_t set;
  sigemptyset(&set);
  for (const int lngSignal : signals) sigaddset(&set, lngSignal);
  return set;
}

/// Reads all files of the command line again.
void Renew(DriverServer &server, ServerLog &log, int argc, char **argv) {
  try {
    server.SetRules(ServerCommandLine::Of(argc, argv).options.rules);
    log.Write("server", {"reload", "has read its certificates and lists again"});
  } catch (const std::exception &error) {
    log.Write("server",
              {"reload", "goes on with the certificates and lists that it had: " + std::string(error.what())});
  }
}

/// Works until a signal asks for the end; reads the rules again on SIGHUP and when their files change.
void WorkUntilStopped(DriverServer &server, ServerLog &log, FileWatch &files, int argc, char **argv) {
  constexpr timespec Interval{1, 0};
  const sigset_t signals = SignalsOf({SIGTERM, SIGINT, SIGHUP});
  for (;;) {
    const int lngSignal = sigtimedwait(&signals, nullptr, &Interval);
    if (lngSignal == SIGTERM || lngSignal == SIGINT) return;
    const bool fAsked = lngSignal == SIGHUP;
    if (fAsked) log.Reopen();
    if (files.HaveChanged() || fAsked) Renew(server, log, argc, argv);
  }
}

int Run(int argc, char **argv) {
  // Blocked before any thread starts, so that only the wait below receives them.
  const sigset_t signals = SignalsOf({SIGTERM, SIGINT, SIGHUP});
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // A closed log pipe must not end the server.
  std::signal(SIGPIPE, SIG_IGN);

  // Parsed twice, because a file that changes after it was read and before it is watched would be missed.
  FileWatch files(ServerCommandLine::Of(argc, argv).arrRuleFiles);
  const ServerCommandLine line = ServerCommandLine::Of(argc, argv);
  if (!line.strHelp.empty()) {
    std::cout << line.strHelp;
    return EXIT_SUCCESS;
  }
  std::optional<ServerLog> log;
  if (line.strLogFile.empty())
    log.emplace(std::cerr, line.eLogFormat);
  else
    log.emplace(line.strLogFile, line.eLogFormat);
  const TransportReports reports(*log);
  // gRPC shutdown can block for ten seconds on a dead connection. An extra grpc_init keeps the library initialized, so
  // that the process exits without the shutdown.
  grpc_init();
  for (const auto &[strProgId, strName] : line.chosenDrivers) automation::ChooseDriver(strProgId, strName);
  const auto create = [](const std::string &strProgId) { return automation::CreateObject(strProgId, ""); };
  DriverServer server(line.options, create, *log);
  std::optional<ControlSocket> control;
  if (!line.strControl.empty())
    control.emplace(line.strControl, [&](const std::string &strCommand) { return server.Administer(strCommand); });
  const ServerAddress address{!line.options.fInsecure, line.options.strHost, server.Port()};
  std::cout << "tarvik-driver-server: listening on " << address.HostAndPort() << std::endl;
  log->Write("server", {"listening", "listening on " + address.HostAndPort() +
                                         (line.options.fInsecure ? " without transport security" : "")});

  WorkUntilStopped(server, *log, files, argc, argv);
  log->Write("server", {"stopping", "stopping"});
  // A second signal ends the process without waiting for calls in progress.
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  control.reset();
  server.Stop();
  log->Write("server", {"stopped", "stopped"});
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
