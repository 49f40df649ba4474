#include <fcntl.h>
#include <grpcpp/grpcpp.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Activation.h"
#include "instrument/DriverCall.h"
#include "instrument/KolvenDriver.h"
#include "remote/Connection.h"
#include "remote/DriverServer.h"
#include "remote/Session.grpc.pb.h"

namespace {

using namespace tarvik;
using namespace tarvik::remote;
using namespace tarvik::kolven;
using Clock = std::chrono::steady_clock;

/// Echoes each frame: the floor of what a stream costs.
class Echo final : public DriverSession::Service {
  grpc::Status Connect(grpc::ServerContext *, grpc::ServerReaderWriter<ServerFrame, ClientFrame> *pStream) override {
    ClientFrame in;
    ServerFrame out;
    while (pStream->Read(&in)) pStream->Write(out);
    return grpc::Status::OK;
  }
};

constexpr double MostTimes = 1.5;

double Microseconds(const auto &round) {
  const auto start = Clock::now();
  round();
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double MedianOf(std::vector<double> &arrValues) {
  const auto middle = arrValues.begin() + static_cast<std::ptrdiff_t>(arrValues.size() / 2);
  std::nth_element(arrValues.begin(), middle, arrValues.end());
  return *middle;
}

automation::Ref<IInstrument> FirstInstrument(const automation::Ref<IDriverRoot> &root) {
  AutomationVariant key{};
  key.vt = automation::VtInteger;
  key.iVal = 1;
  return automation::Narrow<IInstrument>(
      Fetch(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetItem, key));
}

/// Client of Echo. Cheapest use of gRPC: the calling thread polls the completion queue itself.
class PingPong {
 public:
  explicit PingPong(const std::string &strPort)
      : m_stub(DriverSession::NewStub(Channel(strPort))),
        m_stream(m_stub->AsyncConnect(&m_context, &m_queue, nullptr)) {
    Await(1);
  }
  PingPong(const PingPong &) = delete;
  PingPong &operator=(const PingPong &) = delete;
  ~PingPong() {
    m_context.TryCancel();
    m_queue.Shutdown();
    void *pTag = nullptr;
    for (bool fOk = false; m_queue.Next(&pTag, &fOk);) continue;
  }

  void Turn() {
    m_stream->Write(ClientFrame(), nullptr);
    m_stream->Read(&m_answer, nullptr);
    Await(2);
  }

 private:
  static std::shared_ptr<grpc::Channel> Channel(const std::string &strPort) {
    // As the driver's own channel has it; a call that may be repeated costs more.
    grpc::ChannelArguments arguments;
    arguments.SetInt(GRPC_ARG_ENABLE_RETRIES, 0);
    return grpc::CreateCustomChannel("127.0.0.1:" + strPort, grpc::InsecureChannelCredentials(), arguments);
  }
  void Await(int intEvents) {
    void *pTag = nullptr;
    for (bool fOk = false; intEvents > 0; --intEvents)
      if (!m_queue.Next(&pTag, &fOk) || !fOk) throw std::runtime_error("the echo has gone");
  }

  grpc::ClientContext m_context;
  grpc::CompletionQueue m_queue;
  ServerFrame m_answer;
  const std::unique_ptr<DriverSession::Stub> m_stub;
  const std::unique_ptr<grpc::ClientAsyncReaderWriter<ClientFrame, ServerFrame>> m_stream;
};

/// A server process. Its first line of output is its port.
class ServerChild {
 public:
  explicit ServerChild(const char *strKind) {
    int arrPipe[2];
    if (pipe2(arrPipe, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, arrPipe[1], STDOUT_FILENO);
    std::string strProgram = "/proc/self/exe", strOption = strKind;
    char *const arrArguments[] = {strProgram.data(), strOption.data(), nullptr};
    const int lngFailed = posix_spawn(&m_pid, strProgram.c_str(), &actions, nullptr, arrArguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(arrPipe[1]);
    if (lngFailed != 0) throw std::runtime_error("the server does not start");
    for (char ch = 0; read(arrPipe[0], &ch, 1) == 1 && ch != '\n';) m_strPort += ch;
    close(arrPipe[0]);
  }
  ServerChild(const ServerChild &) = delete;
  ServerChild &operator=(const ServerChild &) = delete;
  ~ServerChild() {
    kill(m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
  }
  const std::string &Port() const { return m_strPort; }

 private:
  pid_t m_pid = 0;
  std::string m_strPort;
};

constexpr const char *EchoServer = "--echo-server", *DriversServer = "--driver-server";

[[noreturn]] void ServeEcho() {
  Echo echo;
  int lngPort = 0;
  grpc::ServerBuilder builder;
  builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &lngPort);
  builder.RegisterService(&echo);
  const auto server = builder.BuildAndStart();
  std::cout << lngPort << std::endl;
  for (;;) pause();
}

[[noreturn]] void ServeDrivers() {
  std::ostringstream text;
  ServerLog log(text);
  ServerOptions options;
  options.fInsecure = true;
  options.strHost = "127.0.0.1";
  const auto create = [](const std::string &strProgId) { return automation::CreateObject(strProgId, ""); };
  const DriverServer server(options, create, log);
  std::cout << server.Port() << std::endl;
  for (;;) pause();
}

/// Whether an operation keeps to its bound.
bool CompareWithPingPong() {
  const ServerChild echo(EchoServer), drivers(DriversServer);
  PingPong pingPong(echo.Port());
  const auto ping = [&] { pingPong.Turn(); };
  const auto root =
      automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, "tarvik+insecure://127.0.0.1:" + drivers.Port()));
  const auto instrument = FirstInstrument(root);
  const auto call = [&] { Read(instrument, &IInstrument::GetName); };
  constexpr int Turns = 9, Rounds = 2000;
  std::vector<double> arrRatios;
  for (int turn = 0; turn < Turns; ++turn) {
    // Alternating, so that load on the machine hits both alike.
    std::vector<double> arrPings, arrCalls;
    for (int i = 0; i < Rounds; ++i) {
      arrPings.push_back(Microseconds(ping));
      arrCalls.push_back(Microseconds(call));
    }
    const double dblPing = MedianOf(arrPings), dblCall = MedianOf(arrCalls);
    std::printf("turn %d: ping-pong %.1f us, value-returning operation %.1f us\n", turn, dblPing, dblCall);
    arrRatios.push_back(dblCall / dblPing);
  }
  const double dblRatio = MedianOf(arrRatios);
  const bool fKept = dblRatio <= MostTimes;
  std::printf("ratio of an operation to an empty ping-pong: %.2f (at most %.2f)  %s\n", dblRatio, MostTimes,
              fKept ? "ok" : "MISSED");
  return fKept;
}

}  // namespace

int main(int argc, char **argv) {
  const std::string_view strKind = argc > 1 ? argv[1] : "";
  if (strKind == EchoServer) ServeEcho();
  if (strKind == DriversServer) ServeDrivers();
  return CompareWithPingPong() ? 0 : 1;
}
