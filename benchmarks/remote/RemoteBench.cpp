#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sstream>
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

/// Sends each frame back as it came: the least that a stream can do.
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

/// Whether an operation keeps to its bound.
bool CompareWithPingPong(const automation::Ref<IInstrument> &instrument) {
  Echo echo;
  int lngPort = 0;
  grpc::ServerBuilder builder;
  builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &lngPort);
  builder.RegisterService(&echo);
  const auto server = builder.BuildAndStart();
  const auto stub = DriverSession::NewStub(
      grpc::CreateChannel("127.0.0.1:" + std::to_string(lngPort), grpc::InsecureChannelCredentials()));
  grpc::ClientContext context;
  const auto stream = stub->Connect(&context);
  const auto ping = [&] {
    ServerFrame answer;
    if (!stream->Write(ClientFrame()) || !stream->Read(&answer)) std::abort();
  };
  const auto call = [&] { Read(instrument, &IInstrument::GetName); };
  constexpr int Turns = 9, Rounds = 2000;
  std::vector<double> arrRatios;
  for (int turn = 0; turn < Turns; ++turn) {
    // One after the other, so that a busy machine meets both alike.
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
  context.TryCancel();
  server->Shutdown();
  return fKept;
}

}  // namespace

int main() {
  std::ostringstream text;
  ServerLog log(text);
  ServerOptions options;
  options.fInsecure = true;
  options.strHost = "127.0.0.1";
  DriverServer server(
      options, [](const std::string &strProgId) { return automation::CreateObject(strProgId, ""); }, log);
  const auto root = automation::Narrow<IDriverRoot>(
      ConnectDriver(DriverProgId, "tarvik+insecure://127.0.0.1:" + std::to_string(server.Port())));
  const auto instrument = FirstInstrument(root);
  automation::VariantBool opened = 0;
  Call(instrument, &IInstrument::Open, automation::VariantBool{0}, automation::VariantBool{0},
       automation::VariantBool{0}, &opened);
  const bool fKept = CompareWithPingPong(instrument);
  Call(instrument, &IInstrument::Close);
  return fKept ? 0 : 1;
}
