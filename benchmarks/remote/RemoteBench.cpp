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

/// Median of one round in microseconds; the two are measured in turns, so that a busy machine meets both.
template <class Round>
double MedianOf(const Round &round) {
  constexpr int Rounds = 2000;
  std::vector<double> arrTimes;
  for (int i = 0; i < Rounds; ++i) {
    const auto start = Clock::now();
    round();
    arrTimes.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
  }
  std::nth_element(arrTimes.begin(), arrTimes.begin() + Rounds / 2, arrTimes.end());
  return arrTimes[Rounds / 2];
}

automation::Ref<IInstrument> FirstInstrument(const automation::Ref<IDriverRoot> &root) {
  AutomationVariant key{};
  key.vt = automation::VtInteger;
  key.iVal = 1;
  return automation::Narrow<IInstrument>(
      Fetch(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetItem, key));
}

void CompareWithPingPong(const automation::Ref<IInstrument> &instrument) {
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
  std::vector<double> arrRatios;
  for (int turn = 0; turn < 9; ++turn) {
    const double dblPing = MedianOf(ping), dblCall = MedianOf(call);
    std::printf("turn %d: ping-pong %.1f us, value-returning operation %.1f us\n", turn, dblPing, dblCall);
    arrRatios.push_back(dblCall / dblPing);
  }
  std::nth_element(arrRatios.begin(), arrRatios.begin() + 4, arrRatios.end());
  std::printf("ratio of an operation to an empty ping-pong: %.2f (at most 1.50)\n", arrRatios[4]);
  context.TryCancel();
  server->Shutdown();
}

/// The calls of an upload of timing and levels of both channels, counted.
void CountRoundTrips(const automation::Ref<IInstrument> &instrument) {
  int intAnswered = 0, intFetched = 0;
  const auto call = [&](auto &&...arguments) { ++intAnswered, Call(arguments...); };
  const auto fetch = [&](auto &&...arguments) { return ++intFetched, Fetch(arguments...); };
  const auto lngBefore = RoundTripsSoFar();
  call(instrument, &IInstrument::Transaction, TransactionBegin);
  for (Long channel = 1; channel <= 2; ++channel) {
    const auto channels = fetch(instrument, &IInstrument::GetChannels);
    const auto object = fetch(channels, &IChannelList::GetItem, channel);
    const auto timing = fetch(object, &IChannel::GetTiming);
    call(timing, &IChannelTiming::SetFrequency, 1e6);
    call(timing, &IChannelTiming::SetWidth, 1e-7);
    const auto edges = fetch(timing, &IChannelTiming::GetEdges);
    Long lngSelector = 0;
    call(edges, &IEdges::SetLeading, &lngSelector, 2e-9);
    call(edges, &IEdges::SetTrailing, &lngSelector, 2e-9);
    const auto levels = automation::Narrow<IChannelLevels>(fetch(object, &IChannel::GetLevels));
    call(levels, &IChannelLevels::SetLevel, Long{1}, Long{0}, 1.0, 0.0);
    call(levels, &IChannelLevels::SetImpedance, 50.0);
  }
  call(instrument, &IInstrument::Transaction, TransactionCommit);
  std::printf("upload: %d operations that return or can fail, %d fetches, %llu round trips\n", intAnswered, intFetched,
              static_cast<unsigned long long>(RoundTripsSoFar() - lngBefore));
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
  CompareWithPingPong(instrument);
  CountRoundTrips(instrument);
  Call(instrument, &IInstrument::Close);
  return 0;
}
