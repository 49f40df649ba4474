// What distance costs, and how much a server carries: a download and an upload of all settings through lines that take
// their time, together and call by call; calls each second of several clients, and the server's memory.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "DelayingRelay.h"
#include "automation/AutomationString.h"
#include "automation/CallsAhead.h"
#include "automation/Ref.h"
#include "instrument/DriverCall.h"
#include "instrument/KolvenDriver.h"
#include "instrument/clsInstrInterface.h"
#include "remote/Connection.h"
#include "settings/SetupTransfer.h"
#include "support/Host.h"

extern char **environ;

namespace {

using namespace tarvik;
using namespace tarvik::remote;
using namespace tarvik::kolven;
using Clock = std::chrono::steady_clock;

constexpr const char *InstrumentName = "VP-210";

/// A host whose stored settings name a server.
class ServedHost final : public Host {
 public:
  std::string strServer;

 private:
  BoxAnswer MsgBox(const std::string &strText, BoxIcon, BoxButtons, const std::string &) override {
    throw std::runtime_error(strText);
  }
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return strServer; }
  void Beep() override {}
  Integer MousePointer() const override { return PointerDefault; }
  void SetMousePointer(Integer) override {}
  std::string GetSetting(const std::string &, const std::string &, const std::string &strKey,
                         const std::string &strDefault) override {
    return strKey == "ServerURL" ? strServer : strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return '.'; }
  void AppendToFile(const std::string &, std::string_view) override {}
  void DoEvents() override {}
};

/// The server program on the simulated instruments.
class Server {
 public:
  Server() {
    int arrPipe[2];
    if (pipe2(arrPipe, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const char *arrArguments[] = {SERVER_PROGRAM, "--insecure", "--share", "--listen",  "127.0.0.1",
                                  "--port",       "0",          "--log",   "/dev/null", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, arrPipe[1], STDOUT_FILENO);
    const int intError =
        posix_spawn(&m_pid, SERVER_PROGRAM, &actions, nullptr, const_cast<char **>(arrArguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(arrPipe[1]);
    if (intError != 0) throw std::runtime_error("the server does not start");
    std::string strLine;
    for (char ch = 0; read(arrPipe[0], &ch, 1) == 1 && ch != '\n';) strLine += ch;
    close(arrPipe[0]);
    m_lngPort = static_cast<std::uint16_t>(std::stoi(strLine.substr(strLine.rfind(':') + 1)));
  }
  Server(const Server &) = delete;
  Server &operator=(const Server &) = delete;
  ~Server() {
    kill(m_pid, SIGTERM);
    waitpid(m_pid, nullptr, 0);
  }
  std::uint16_t Port() const { return m_lngPort; }
  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + std::to_string(m_lngPort); }
  long ResidentKiB() const {
    std::ifstream file("/proc/" + std::to_string(m_pid) + "/statm");
    long lngTotal = 0, lngResident = 0;
    file >> lngTotal >> lngResident;
    return lngResident * (sysconf(_SC_PAGESIZE) / 1024);
  }

 private:
  pid_t m_pid = 0;
  std::uint16_t m_lngPort = 0;
};

double SecondsOf(const auto &work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void PrintRow(const char *strTransfer, int intMilliseconds, std::initializer_list<double> arrSeconds) {
  std::printf("%-10s %10d", strTransfer, intMilliseconds);
  for (const double dblSeconds : arrSeconds) std::printf(" %14.3f", dblSeconds);
  std::printf("\n");
}

/// The tables have one row in each line and no blanks in their cells, for scripts.
void PrintDistances(const Server &server, ServedHost &host) {
  std::printf("# All settings of an instrument with two channels, patterns included; seconds\n");
  std::printf("%-10s %10s %14s %14s %14s\n", "transfer", "delay_ms", "call_by_call", "together_first", "together");
  const auto announcedByNobody = ConnectDriver(DriverProgId, server.Url());
  for (const int intMilliseconds : {0, 1, 20, 50}) {
    const DelayingRelay relay(server.Port(), std::chrono::milliseconds(intMilliseconds));
    clsInstrInterface instr;
    host.strServer = relay.Url();
    if (!instr.Connect() || !instr.OpenInstrument(InstrumentName, False, False, False))
      throw std::runtime_error("the instrument is not opened");
    Setup setup;
    const auto download = [&] { ReadSetup(instr, setup); };
    const auto upload = [&] {
      const SetupWritten written = WriteSetup(instr, setup);
      if (!written.fDone) throw std::runtime_error("the upload is refused: " + written.strReasons);
    };
    const double dblFirst = SecondsOf(download), dblKnown = SecondsOf(download);
    const double dblPlain = SecondsOf([&] { ReadParts(instr, setup, eAllParts); });
    PrintRow("download", intMilliseconds, {dblPlain, dblFirst, dblKnown});
    const double dblFirstUp = SecondsOf(upload), dblUp = SecondsOf(upload);
    const double dblPlainUp = SecondsOf([&] {
      // Of announcements within one another the outermost counts, and this one tells of nothing.
      const automation::CallsAhead nothing(automation::Narrow<IDriverRoot>(announcedByNobody), [] {});
      upload();
    });
    PrintRow("upload", intMilliseconds, {dblPlainUp, dblFirstUp, dblUp});
    instr.CloseInstrument();
  }
}

automation::Ref<IInstrument> OpenedAt(const std::string &strUrl) {
  const auto root = automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, strUrl));
  const automation::String name(InstrumentName);
  AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = name.Get();
  const auto list = Fetch(root, &IDriverRoot::GetInstruments);
  auto instrument = automation::Narrow<IInstrument>(Fetch(list, &IInstrumentList::GetItem, key));
  automation::VariantBool fOpened = 0;
  Call(instrument, &IInstrument::Open, automation::VariantBool{0}, automation::VariantBool{0},
       automation::VariantBool{0}, &fOpened);
  return instrument;
}

void PrintClients(const Server &server) {
  constexpr std::chrono::seconds Time{3};
  std::printf("\n# Calls of several clients at once\n%10s %16s %16s\n", "clients", "calls_per_s", "server_KiB");
  for (const int intClients : {1, 10, 50}) {
    std::vector<long> arrCalls(static_cast<std::size_t>(intClients));
    long lngMemory = 0;
    const double dblSeconds = SecondsOf([&] {
      std::vector<std::jthread> clients;
      for (long &lngCalls : arrCalls)
        clients.emplace_back([&, until = Clock::now() + Time] {
          const auto instrument = OpenedAt(server.Url());
          for (; Clock::now() < until; ++lngCalls) Read(instrument, &IInstrument::GetName);
          Call(instrument, &IInstrument::Close);
        });
      std::this_thread::sleep_for(Time / 2);
      lngMemory = server.ResidentKiB();
    });
    long lngAll = 0;
    for (const long lngCalls : arrCalls) lngAll += lngCalls;
    std::printf("%10d %16.0f %16ld\n", intClients, static_cast<double>(lngAll) / dblSeconds, lngMemory);
  }
}

}  // namespace

int main() {
  try {
    ServedHost host;
    SetHost(&host);
    const Server server;
    PrintDistances(server, host);
    PrintClients(server);
    SetHost(nullptr);
    return EXIT_SUCCESS;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
