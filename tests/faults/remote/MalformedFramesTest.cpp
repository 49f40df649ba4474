#include <arpa/inet.h>
#include <grpcpp/grpcpp.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "MalformedFrames.h"
#include "RemoteClient.h"
#include "ServerProcess.h"
#include "SessionFrames.h"
#include "instrument/DriverCall.h"
#include "remote/Session.grpc.pb.h"

namespace tarvik::remote {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t GrowthBoundOfFrames = 64u * 1024u * 1024u;

/// Somebody else's session: works with an instrument until it is told to end, and counts.
class Bystander {
 public:
  explicit Bystander(const std::string &strUrl)
      : m_worker([this, strUrl](const std::stop_token &stop) {
          try {
            const auto instrument = Opened(strUrl, "VP-110");
            for (int i = 0; !stop.stop_requested(); ++i) {
              const Double dblWidth = 1e-7 + 1e-9 * (i % 100);
              dblSlowest = std::max(dblSlowest, SecondsOf([&] {
                                      Begin(instrument);
                                      SetWidth(instrument, dblWidth);
                                      Call(instrument, &IInstrument::Transaction, kolven::TransactionCommit);
                                      lngWrong += Width(instrument) != dblWidth;
                                    }));
              ++lngUploads;
              std::this_thread::sleep_for(2ms);
            }
            Call(instrument, &IInstrument::Close);
          } catch (const RunTimeError &error) {
            strFailure = error.Description();
          }
        }) {}
  void End() {
    m_worker.request_stop();
    m_worker.join();
  }

  std::atomic<long> lngUploads = 0;
  long lngWrong = 0;
  double dblSlowest = 0;
  std::string strFailure;

 private:
  std::jthread m_worker;
};

/// Sends the frames on streams of one connection; a stream that the server ends is followed by the next.
class Attacker {
 public:
  explicit Attacker(const std::string &strPort)
      : m_stub(
            DriverSession::NewStub(grpc::CreateChannel("127.0.0.1:" + strPort, grpc::InsecureChannelCredentials()))) {}

  /// The status with which the server ended the stream that began with these frames, or OK when it took them all.
  grpc::StatusCode Send(const std::vector<std::string> &arrFrames) {
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + 60s);
    const auto stream = m_stub->Connect(&context);
    for (const std::string &strFrame : arrFrames) {
      ClientFrame frame;
      frame.set_body(strFrame);
      if (!stream->Write(frame)) break;
    }
    stream->WritesDone();
    ServerFrame answer;
    while (stream->Read(&answer)) {
    }
    return stream->Finish().error_code();
  }

 private:
  const std::unique_ptr<DriverSession::Stub> m_stub;
};

/// What is no HTTP/2 at all, or ceases to be it behind the preface.
void SendRawBytes(const std::string &strPort, std::mt19937 &random) {
  const int intSocket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(strPort)));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(connect(intSocket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  std::string strBytes = random() % 2 ? "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n" : "";
  for (auto count = random() % 500; count > 0; --count) strBytes += static_cast<char>(random() % 256);
  send(intSocket, strBytes.data(), strBytes.size(), MSG_NOSIGNAL);
  close(intSocket);
}

std::size_t CountOf(const std::string &strText, const std::string &strPart) {
  std::size_t lngCount = 0;
  for (std::size_t at = 0; (at = strText.find(strPart, at)) != std::string::npos; at += strPart.size()) ++lngCount;
  return lngCount;
}

/// How many, unless TARVIK_MALFORMED_FRAMES says otherwise. Among fewer than the least none may open an instrument.
long FrameCount() {
  constexpr long Least = 500;
  const char *strCount = std::getenv("TARVIK_MALFORMED_FRAMES");
  return strCount ? std::max(Least, std::atol(strCount)) : 20'000;
}

TEST(LiveEntry, MalformedFramesDisturbNobodyAndLeaveNothingOpen) {
  constexpr int AttackerCount = 4, RawCount = 200;
  ServerProcess server(ServerProcess::Insecure());
  Bystander bystander(server.Url());
  std::atomic<long> lngRefused = 0, lngTooLarge = 0, lngTaken = 0, lngOther = 0;
  const auto attack = [&](unsigned intSeed, long lngCount) {
    Attacker attacker(server.Port());
    MalformedFrames frames(intSeed);
    for (long i = 0; i < lngCount; ++i) switch (attacker.Send(frames.Next())) {
        case grpc::StatusCode::INVALID_ARGUMENT: ++lngRefused; break;
        case grpc::StatusCode::RESOURCE_EXHAUSTED: ++lngTooLarge; break;
        case grpc::StatusCode::OK: ++lngTaken; break;
        default: ++lngOther;
      }
  };
  const auto attackAll = [&](unsigned intSeed, long lngCount) {
    std::vector<std::jthread> attackers;
    for (unsigned attacker = 0; attacker < AttackerCount; ++attacker) {
      const long lngMore = attacker < lngCount % AttackerCount ? 1 : 0;
      attackers.emplace_back(attack, intSeed + attacker, lngCount / AttackerCount + lngMore);
    }
  };

  const long lngCount = FrameCount(), lngFirst = lngCount / 10;
  const std::size_t lngFilesBefore = server.OpenFiles();
  attackAll(100, lngFirst);
  const std::size_t lngBytesBefore = server.ResidentBytes();
  const double dblSeconds = SecondsOf([&] { attackAll(200, lngCount - lngFirst); });
  EXPECT_EQ(Attacker(server.Port()).Send({Frame().Hello().Bytes(), std::string(2u * 1024u * 1024u, '\4')}),
            grpc::StatusCode::RESOURCE_EXHAUSTED);
  std::mt19937 random(7);
  for (int i = 0; i < RawCount; ++i) SendRawBytes(server.Port(), random);
  const std::size_t lngBytesAfter = server.ResidentBytes();
  // Few frames are sent in less time than that.
  EXPECT_TRUE(WaitUntil([&] { return bystander.lngUploads > 100; })) << bystander.lngUploads;
  bystander.End();

  std::printf("%ld frames: %ld refused, %ld too large, %ld taken as a client's; nine tenths of them in %.1f s\n",
              lngCount, lngRefused.load(), lngTooLarge.load(), lngTaken.load(), dblSeconds);
  std::printf("meanwhile %ld uploads of another client, the slowest took %.3f s; the server grew from %zu to %zu KiB\n",
              bystander.lngUploads.load(), bystander.dblSlowest, lngBytesBefore / 1024, lngBytesAfter / 1024);
  EXPECT_EQ(lngOther, 0);
  EXPECT_EQ(lngRefused + lngTooLarge + lngTaken, lngCount);
  // A change of some bytes may leave a frame that a client could have sent.
  EXPECT_LE(lngTaken, lngCount / 20 + 1);
  EXPECT_EQ(bystander.strFailure, "");
  EXPECT_EQ(bystander.lngWrong, 0);
  EXPECT_LT(bystander.dblSlowest, 2.0);
  EXPECT_LT(lngBytesAfter, lngBytesBefore + GrowthBoundOfFrames);
  EXPECT_TRUE(WaitUntil([&] { return server.OpenFiles() <= lngFilesBefore + AttackerCount; })) << server.OpenFiles();

  const std::string strLog = server.LogText();
  EXPECT_GT(CountOf(strLog, ": opened VP-210\n"), 0u);
  EXPECT_EQ(CountOf(strLog, ": opened "), CountOf(strLog, ": closes ") + CountOf(strLog, ": closed "));
  EXPECT_FALSE(IsInTransaction(Opened(server.Url())));
  EXPECT_EQ(server.End(SIGTERM), 0);
}

/// A client that asks on and on and takes no answer holds only its own line.
TEST(LiveEntry, ClientThatNeverReadsHoldsUpNeitherOthersNorTheStop) {
  ServerProcess server(ServerProcess::Insecure());
  const auto stub =
      DriverSession::NewStub(grpc::CreateChannel("127.0.0.1:" + server.Port(), grpc::InsecureChannelCredentials()));
  grpc::ClientContext context;
  const auto stream = stub->Connect(&context);
  std::atomic<long> lngAsked = 0;
  std::jthread greedy([&] {
    ClientFrame frame;
    for (const Frame &next : {Frame().Hello(), Frame().Fetch(1, "IDriverRoot", "GetInstruments", 2),
                              Frame().Call(2, "IInstrumentList", "GetItem", 3).Key("VP-210")}) {
      frame.set_body(next.Bytes());
      stream->Write(frame);
    }
    frame.set_body(Frame().Call(3, "IInstrument", "GetName").Argument<std::uint8_t>(0).Bytes());
    while (stream->Write(frame)) ++lngAsked;
  });
  // However the test ends, the thread leaves its last Write.
  const std::shared_ptr<void> end(nullptr, [&](void *) { context.TryCancel(); });
  const auto instrument = Opened(server.Url());
  // Its answers, and then its questions, fill everything in between, and it gets no further.
  ASSERT_TRUE(WaitUntil(
      [&] {
        const long lngBefore = lngAsked;
        std::this_thread::sleep_for(500ms);
        return lngAsked > 1000 && lngAsked == lngBefore;
      },
      120s))
      << lngAsked;
  EXPECT_LT(SecondsOf([&] { EXPECT_FALSE(IsInTransaction(instrument)); }), 1.0);
  EXPECT_LT(SecondsOf([&] { EXPECT_EQ(server.End(SIGTERM), 0); }), 5.0);
  EXPECT_TRUE(server.LogSays("server: stopped")) << server.LogText();
}

}  // namespace
}  // namespace tarvik::remote
