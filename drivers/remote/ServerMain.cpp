#include <getopt.h>
#include <grpc/grpc.h>
#include <grpc/support/log.h>
#include <pthread.h>

#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "automation/Activation.h"
#include "remote/DriverServer.h"
#include "remote/ServerAddress.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace {

using namespace tarvik;
using namespace tarvik::remote;

constexpr const char *Usage =
    "Usage: tarvik-driver-server [OPTION]...\n"
    "Serves the instrument drivers of this machine to named clients.\n\n"
    "  --listen HOST          address or name to listen on (default: 0.0.0.0)\n"
    "  --port N               port, 0 for one that the system chooses (default: 17830)\n"
    "  --certificate FILE     the server's certificate (PEM)\n"
    "  --key FILE             its key (PEM)\n"
    "  --authority FILE       certificate of the authority that signs clients (PEM)\n"
    "  --allow NAME           a client name that may connect; may be repeated\n"
    "  --allow-file FILE      such names, one a line, # begins a comment\n"
    "  --insecure             no transport security; on a loopback address only\n"
    "  --max-clients N        clients at a time (default: 64)\n"
    "  --max-objects N        objects that one client holds at a time (default: 1000)\n"
    "  --max-message BYTES    size of one message of a client (default: 1048576)\n"
    "  --keepalive SECONDS    a client silent for twice as long has vanished (default: 15)\n"
    "  --log FILE             log file to append to (default: standard error)\n"
    "  --help                 this text\n";

std::string ReadFile(const std::string &strPath) {
  std::ifstream file(strPath, std::ios::binary);
  std::string strText{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) throw RunTimeError(ErrFileNotFound, strPath + " cannot be read");
  return strText;
}

template <class Number>
Number NumberOf(const std::string &strOption, const std::string &strText, Number least, Number most) {
  Number value{};
  const auto [end, error] = std::from_chars(strText.data(), strText.data() + strText.size(), value);
  if (error != std::errc{} || end != strText.data() + strText.size() || value < least || value > most)
    throw RunTimeError(ErrInvalidPropertyValue, "--" + strOption + " takes a number from " + std::to_string(least) +
                                                    " to " + std::to_string(most));
  return value;
}

void AddNames(std::set<std::string> &names, const std::string &strText) {
  for (const std::string &strLine : Split(strText, '\n'))
    if (const std::string strName = Trim(Replace(strLine.substr(0, strLine.find('#')), "\r", "")); !strName.empty())
      names.insert(strName);
}

struct CommandLine {
  ServerOptions options;
  std::string strLogFile;
  bool fHelp = false;
};

CommandLine ReadCommandLine(int argc, char **argv) {
  static constexpr option LongOptions[] = {{"listen", required_argument, nullptr, 'l'},
                                           {"port", required_argument, nullptr, 'p'},
                                           {"certificate", required_argument, nullptr, 'c'},
                                           {"key", required_argument, nullptr, 'k'},
                                           {"authority", required_argument, nullptr, 'a'},
                                           {"allow", required_argument, nullptr, 'n'},
                                           {"allow-file", required_argument, nullptr, 'f'},
                                           {"insecure", no_argument, nullptr, 'i'},
                                           {"max-clients", required_argument, nullptr, 'C'},
                                           {"max-objects", required_argument, nullptr, 'O'},
                                           {"max-message", required_argument, nullptr, 'M'},
                                           {"keepalive", required_argument, nullptr, 'K'},
                                           {"log", required_argument, nullptr, 'L'},
                                           {"help", no_argument, nullptr, 'h'},
                                           {nullptr, 0, nullptr, 0}};
  constexpr std::uint32_t LeastMessage = 64u * 1024u, MostMessage = 64u * 1024u * 1024u;
  // An idle client looks at its line every 5 seconds; it must not be taken for one that has vanished.
  constexpr int LeastKeepalive = 6, MostKeepalive = 3600;
  CommandLine line;
  ServerOptions &options = line.options;
  options.strHost = "0.0.0.0";
  options.lngPort = ServerAddress::DefaultPort;
  for (int chOption = 0; (chOption = getopt_long(argc, argv, "", LongOptions, nullptr)) != -1;) {
    const std::string strValue = optarg ? optarg : "";
    switch (chOption) {
      case 'l': options.strHost = strValue; break;
      case 'p': options.lngPort = NumberOf<std::uint16_t>("port", strValue, 0, 65535); break;
      case 'c': options.strCertificate = ReadFile(strValue); break;
      case 'k': options.strKey = ReadFile(strValue); break;
      case 'a': options.strAuthority = ReadFile(strValue); break;
      case 'n': options.allowedClients.insert(strValue); break;
      case 'f': AddNames(options.allowedClients, ReadFile(strValue)); break;
      case 'i': options.fInsecure = true; break;
      case 'C': options.lngClients = NumberOf<std::size_t>("max-clients", strValue, 1, 10'000); break;
      case 'O': options.limits.lngObjects = NumberOf<std::size_t>("max-objects", strValue, 16, 1'000'000); break;
      case 'M':
        options.limits.lngFrameBytes = NumberOf<std::uint32_t>("max-message", strValue, LeastMessage, MostMessage);
        break;
      case 'K':
        options.keepalive = std::chrono::seconds(NumberOf<int>("keepalive", strValue, LeastKeepalive, MostKeepalive));
        break;
      case 'L': line.strLogFile = strValue; break;
      case 'h': line.fHelp = true; break;
      default: throw RunTimeError(ErrInvalidPropertyValue, "try --help");
    }
  }
  if (optind < argc) throw RunTimeError(ErrInvalidPropertyValue, std::string(argv[optind]) + " is not an option");
  if (!options.fInsecure && !line.fHelp &&
      (options.strCertificate.empty() || options.strKey.empty() || options.strAuthority.empty()))
    throw RunTimeError(ErrInvalidPropertyValue, "--certificate, --key and --authority are needed");
  return line;
}

/// What the transport reports as an error goes into the same log: a client whose certificate is not taken gets no
/// further than the handshake, and nobody else would tell of it.
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
  // Every thread is started with these blocked, so that the wait below is the only one to get them.
  sigset_t signals;
  sigemptyset(&signals);
  for (const int lngSignal : {SIGTERM, SIGINT}) sigaddset(&signals, lngSignal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // A log that nobody reads any more is no reason to let the clients down.
  std::signal(SIGPIPE, SIG_IGN);

  const CommandLine line = ReadCommandLine(argc, argv);
  if (line.fHelp) {
    std::cout << Usage;
    return EXIT_SUCCESS;
  }
  std::ofstream logFile;
  if (!line.strLogFile.empty()) {
    logFile.open(line.strLogFile, std::ios::app);
    if (!logFile) throw RunTimeError(ErrPathFileAccess, line.strLogFile + " cannot be written");
  }
  ServerLog log(logFile.is_open() ? static_cast<std::ostream &>(logFile) : std::cerr);
  const TransportReports reports(log);
  // The transport's own end may wait ten seconds for a line on which nothing moves any more. With one use of it left
  // over the process ends without.
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
  // Whoever asks a second time does not want to wait for the calls at work.
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
