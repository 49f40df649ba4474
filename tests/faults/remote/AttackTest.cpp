#include <grpcpp/grpcpp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

#include "Attacks.h"
#include "LoopbackServer.h"
#include "RemoteClient.h"
#include "ServerProcess.h"
#include "SessionFrames.h"
#include "StandInDriver.h"
#include "TestCertificates.h"
#include "instrument/DriverCall.h"
#include "remote/Session.grpc.pb.h"

namespace tarvik::remote {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t MiB = 1024u * 1024u;
// The sanitizers keep what is freed, and copies of what is used.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TARVIK_SANITIZED 1
#endif
#endif
#ifdef TARVIK_SANITIZED
constexpr std::size_t GrowthBound = 256 * MiB;
#else
constexpr std::size_t GrowthBound = 12 * MiB;
#endif

/// A stream to the server, in frames by hand.
class RawStream {
 public:
  explicit RawStream(const std::string &strPort)
      : m_stub(DriverSession::NewStub(
            grpc::CreateCustomChannel("127.0.0.1:" + strPort, grpc::InsecureChannelCredentials(), Arguments()))) {}
  ~RawStream() {
    if (!m_stream) return;
    m_context.TryCancel();
    m_stream->Finish();
  }
  RawStream(const RawStream &) = delete;
  RawStream &operator=(const RawStream &) = delete;

  grpc::ClientContext &Context() { return m_context; }
  void Open() { m_stream = m_stub->Connect(&m_context); }
  bool Send(const std::string &strBody) {
    ClientFrame frame;
    frame.set_body(strBody);
    return m_stream->Write(frame);
  }
  /// Of a stream that the server ends.
  grpc::Status End() {
    ServerFrame frame;
    while (m_stream->Read(&frame)) {
    }
    return std::exchange(m_stream, nullptr)->Finish();
  }

 private:
  /// Streams with the same target would share one connection.
  static grpc::ChannelArguments Arguments() {
    grpc::ChannelArguments arguments;
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    arguments.SetMaxSendMessageSize(-1);
    return arguments;
  }

  const std::unique_ptr<DriverSession::Stub> m_stub;
  grpc::ClientContext m_context;
  std::unique_ptr<grpc::ClientReaderWriter<ClientFrame, ServerFrame>> m_stream;
};

void LimitDescriptors(const ServerProcess &server, rlim_t lngCount) {
  const rlimit limit{lngCount, lngCount};
  ASSERT_EQ(prlimit(server.Pid(), RLIMIT_NOFILE, &limit, nullptr), 0);
}

TEST(Attack, FloodOfIdleConnectionsKeepsNobodyOut) {
  rlimit own{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &own), 0);
  own.rlim_cur = std::min<rlim_t>(own.rlim_max, 4096);
  setrlimit(RLIMIT_NOFILE, &own);
  ServerProcess server(ServerProcess::Insecure());
  LimitDescriptors(server, 1024);
  const std::size_t lngBefore = server.OpenFiles();
  IdleConnections flood(server.Port(), 1100, "127.0.0.2");
  ASSERT_GT(flood.Count(), 1000u);
  // While they stand, from the attacker's address and from another, and when they have gone.
  const double dblDuring = SecondsOf([&] { EXPECT_TRUE(Opened(server.Url())); });
  const std::size_t lngDuring = server.OpenFiles();
  flood.Close();
  const double dblAfter = SecondsOf([&] { EXPECT_TRUE(Opened(server.Url())); });
  EXPECT_TRUE(WaitUntil([&] { return server.OpenFiles() <= lngBefore + 8; })) << server.OpenFiles();
  std::printf(
      "1100 idle connections: a client opens in %.3f s meanwhile, %.3f s afterwards; %zu descriptors before, "
      "%zu during, %zu after\n",
      dblDuring, dblAfter, lngBefore, lngDuring, server.OpenFiles());
  EXPECT_LT(lngDuring, 512u);
}

TEST(Attack, IdleConnectionEndsWhenItsTimeIsOver) {
  test::StandInDriver driver;
  ServerOptions options;
  options.gate.greeting = 200ms;
  LoopbackServer server([&](const std::string &strProgId) { return driver.Create(strProgId, {}); }, options);
  IdleConnections idle(std::to_string(server->Port()), 1, "127.0.0.1");
  EXPECT_TRUE(WaitUntil([&] { return server.LogText().find("ended: no greeting in time") != std::string::npos; }));
}

TEST(Attack, CompressedMessageIsRefusedBeforeItIsTakenApart) {
  ServerProcess server(ServerProcess::Insecure());
  EXPECT_TRUE(Opened(server.Url()));
  const std::size_t lngBefore = PeakBytes(server.Pid());
  RawStream bomb(server.Port());
  bomb.Context().set_compression_algorithm(GRPC_COMPRESS_GZIP);
  bomb.Open();
  bomb.Send(std::string(96 * MiB, '\0'));
  const grpc::Status status = bomb.End();
  EXPECT_EQ(status.error_code(), grpc::StatusCode::UNIMPLEMENTED) << status.error_message();
  const std::size_t lngGrown = PeakBytes(server.Pid()) - lngBefore;
  std::printf("96 MiB of zeros in one compressed message: the server grew by %zu KiB\n", lngGrown / 1024);
  EXPECT_LT(lngGrown, GrowthBound);
}

TEST(Attack, StreamsThatNeverGreetTakeNoPlacesAndEnd) {
  test::StandInDriver driver;
  driver.Add("Alpha");
  ServerOptions options;
  options.lngClients = 4;
  options.gate.greeting = 1s;
  LoopbackServer server([&](const std::string &strProgId) { return driver.Create(strProgId, {}); }, options);
  std::vector<std::unique_ptr<RawStream>> silent;
  for (int i = 0; i < 8; ++i) {
    silent.push_back(std::make_unique<RawStream>(std::to_string(server->Port())));
    silent.back()->Open();
  }
  EXPECT_TRUE(Root(server.Url()));
  for (const auto &stream : silent) EXPECT_FALSE(stream->End().ok());
  EXPECT_TRUE(Root(server.Url()));
}

TEST(Attack, HeadersWithoutEndAreCutOffEarly) {
  TestCertificates certificates;
  ServerProcess server(certificates.ServerOptions());
  constexpr std::uint64_t Most = 512 * MiB;
  const std::uint64_t lngTaken =
      SendEndlessHeaders(server.Port(), certificates.File("stranger.pem"), certificates.File("stranger.key"), Most);
  std::printf("headers without end: the server took %zu KiB of %zu\n", static_cast<std::size_t>(lngTaken / 1024),
              static_cast<std::size_t>(Most / 1024));
  EXPECT_LT(lngTaken, Most);
  EXPECT_TRUE(server.LogSays("ended: too much is sent before the greeting"));
  certificates.UseClient("client");
  EXPECT_TRUE(Opened("tarvik://localhost:" + server.Port()));
}

TEST(Attack, OneNameHasSoManySessionsAndNoMore) {
  TestCertificates certificates;
  auto arrOptions = certificates.ServerOptions();
  arrOptions.insert(arrOptions.end(), {"--max-sessions", "3", "--allow", "stranger"});
  ServerProcess server(arrOptions);
  const std::string strUrl = "tarvik://localhost:" + server.Port();
  certificates.UseClient("client");
  std::vector<Ref<IDriverRoot>> roots;
  for (int i = 0; i < 3; ++i) roots.push_back(Root(strUrl));
  const RunTimeError error = ErrorOf([&] { Root(strUrl); });
  EXPECT_EQ(error.Number(), StatusServerTooBusy);
  EXPECT_NE(error.Description().find("no more than 3 sessions of bench at a time"), std::string::npos)
      << error.Description();
  certificates.UseClient("stranger");
  EXPECT_TRUE(Root(strUrl));
}

TEST(Attack, TransactionHoldsNoMoreThanItsLimitAndGivesItBack) {
  ServerProcess server(ServerProcess::Insecure());
  const auto other = Opened(server.Url(), "VP-110");
  const std::size_t lngBefore = server.ResidentBytes();
  {
    const auto instrument = Opened(server.Url());
    Begin(instrument);
    const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
    automation::ArrayOwner array(ByteArray(1, std::vector<Byte>(MiB - 4096)));
    automation::Status status = automation::StatusOk;
    int intTaken = 0;
    for (; intTaken < 100; ++intTaken) {
      status = memory->SetPattern(1, kolven::PatternForm, array.InOut(), 8);
      if (status == automation::StatusOutOfMemory) break;
    }
    EXPECT_EQ(status, automation::StatusOutOfMemory);
    EXPECT_EQ(intTaken, 16);
    const double dblOther = SecondsOf([&] { EXPECT_FALSE(IsInTransaction(other)); });
    std::printf(
        "patterns of 1 MiB in one transaction: %d taken, the server grew by %zu KiB, another client's call took "
        "%.3f s\n",
        intTaken, (server.ResidentBytes() - lngBefore) / 1024, dblOther);
    // The transaction itself can still be ended.
    Call(instrument, &IInstrument::Transaction, kolven::TransactionAbort);
  }
  EXPECT_TRUE(WaitUntil([&] { return server.ResidentBytes() < lngBefore + GrowthBound; })) << server.ResidentBytes();
}

/// A server that answers with these frames, the last one over and over.
class FakeServer final : public DriverSession::Service {
 public:
  explicit FakeServer(std::vector<std::string> arrFrames, bool fCompressed = false)
      : m_arrFrames(std::move(arrFrames)), m_fCompressed(fCompressed) {
    grpc::ServerBuilder builder;
    builder.AddListeningPort("127.0.0.1:0", grpc::InsecureServerCredentials(), &m_intPort);
    builder.RegisterService(this);
    m_server = builder.BuildAndStart();
  }
  ~FakeServer() override { m_server->Shutdown(std::chrono::system_clock::now()); }
  grpc::Status Connect(grpc::ServerContext *pContext,
                       grpc::ServerReaderWriter<ServerFrame, ClientFrame> *pStream) override {
    if (m_fCompressed) pContext->set_compression_algorithm(GRPC_COMPRESS_GZIP);
    for (std::size_t i = 0;; i = std::min(i + 1, m_arrFrames.size() - 1)) {
      ServerFrame frame;
      frame.set_body(m_arrFrames[i]);
      if (!pStream->Write(frame)) return grpc::Status::OK;
      std::this_thread::sleep_for(5ms);
    }
  }
  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + std::to_string(m_intPort); }

 private:
  const std::vector<std::string> m_arrFrames;
  const bool m_fCompressed;
  int m_intPort = 0;
  std::unique_ptr<grpc::Server> m_server;
};

const std::string Heartbeat(1, static_cast<char>(Answer::Heartbeat));

std::string WelcomeFrame() {
  Writer out;
  out.Put(static_cast<std::uint8_t>(Answer::Welcome));
  out.PutSuccess(automation::StatusOk);
  out.Put<std::uint8_t>(0);
  out.Put<std::uint32_t>(MiB);
  return out.Take();
}

std::string FailureFrame(Answer eAnswer, std::uint8_t intForm, std::int32_t lngNumber) {
  Writer out;
  out.Put(static_cast<std::uint8_t>(eAnswer));
  out.Put(intForm);
  out.Put(lngNumber);
  out.PutText("of no kind");
  out.PutText("");
  return out.Take();
}

Patience Hasty() {
  Patience patience = Short;
  patience.greeting = patience.call = 300ms;
  return patience;
}

std::string GreetingFailure(const FakeServer &server) {
  const RunTimeError error = ErrorOf([&] { ConnectDriver(kolven::DriverProgId, server.Url(), Hasty()); });
  EXPECT_EQ(error.Number(), StatusCallLost);
  return error.Description();
}

TEST(BadServer, HeartbeatsAloneDoNotKeepAGreetingForEver) {
  const FakeServer server({Heartbeat});
  EXPECT_EQ(GreetingFailure(server),
            "The driver server " + server.Url() + " is alive and has not answered for 0.3 seconds");
}

TEST(BadServer, HeartbeatsAloneDoNotKeepACallForEver) {
  const FakeServer server({WelcomeFrame(), Heartbeat});
  Connection connection(ParseServerAddress(server.Url()), nullptr, Hasty());
  EXPECT_TRUE(connection.Greet(kolven::DriverProgId));
  EXPECT_EQ(connection.Sync(), StatusCallLost);
  EXPECT_EQ(automation::TakeDescription(StatusCallLost),
            "The driver server " + server.Url() + " is alive and has not answered for 0.3 seconds");
}

TEST(BadServer, FailuresThatAreNoneBreakTheRules) {
  const struct {
    std::uint8_t intForm;
    std::int32_t lngNumber;
    const char *strSaid;
  } cases[] = {{1, 0, "a failure with the status of a success"},
               {1, 5, "a failure with the status of a success"},
               {2, 0, "a failure with the status of a success"},
               {3, -5, "a failure of an unknown kind"}};
  for (const auto &one : cases) {
    const FakeServer greeting({FailureFrame(Answer::Welcome, one.intForm, one.lngNumber)});
    EXPECT_EQ(GreetingFailure(greeting), "The driver server " + greeting.Url() + " is not understood: " + one.strSaid);
    const FakeServer calling({WelcomeFrame(), FailureFrame(Answer::Result, one.intForm, one.lngNumber)});
    Connection connection(ParseServerAddress(calling.Url()), nullptr, Hasty());
    connection.Greet(kolven::DriverProgId);
    EXPECT_EQ(connection.Sync(), StatusCallLost);
    EXPECT_EQ(automation::TakeDescription(StatusCallLost),
              "The driver server " + calling.Url() + " is not understood: " + one.strSaid);
  }
}

TEST(BadServer, CompressedAnswerIsRefusedBeforeItIsTakenApart) {
  const FakeServer server({std::string(64 * MiB, '\0')}, true);
  const RunTimeError error = ErrorOf([&] { ConnectDriver(kolven::DriverProgId, server.Url(), Short); });
  EXPECT_NE(error.Description().find("Compression algorithm 'gzip' is disabled"), std::string::npos)
      << error.Description();
}

}  // namespace
}  // namespace tarvik::remote
