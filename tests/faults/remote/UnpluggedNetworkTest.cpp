#include <gtest/gtest.h>

#include <chrono>

#include "RemoteClient.h"
#include "ServerProcess.h"
#include "TcpRelay.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// With `--keepalive 6` the server asks a silent client after 6 seconds and waits for as many again.
constexpr auto KeepaliveBound = 12s;
constexpr auto Slack = 3s;

std::vector<std::string> Options() {
  auto arrOptions = ServerProcess::Insecure();
  arrOptions.insert(arrOptions.end(), {"--keepalive", "6"});
  return arrOptions;
}

/// A call on a line that carries nothing ends by the client's own clock.
void ExpectLostInTime(const Ref<IInstrument> &instrument) {
  const double dblSeconds = SecondsOf([&] {
    const RunTimeError error = ErrorOf([&] { Call(instrument, &IInstrument::Transaction, kolven::TransactionCommit); });
    EXPECT_EQ(error.Number(), StatusCallLost);
    EXPECT_NE(error.Description().find("gave no sign of life for 2 seconds"), std::string::npos) << error.Description();
  });
  EXPECT_GT(dblSeconds, 1.9);
  EXPECT_LT(dblSeconds, 4.0);
}

TEST(UnpluggedNetwork, CallsEndInTimeAndTheServerClosesWhatTheVanishedClientsLeftOpen) {
  ServerProcess server(Options());
  TcpRelay both(server.Port()), toServer(server.Port()), toClient(server.Port()), idle(server.Port());
  const auto undisturbed = Opened(server.Url(), "VP-110");
  const auto bothLost = Opened(both.Url(), "VP-210");
  const auto callLost = Opened(toServer.Url(), "VP-220");
  const auto answerLost = Opened(toClient.Url(), "VB-200");
  const auto silent = Opened(idle.Url(), "VP-250F");
  const Double dblBefore = Width(bothLost);
  for (const auto &instrument : {bothLost, callLost, answerLost, silent}) {
    Begin(instrument);
    SetWidth(instrument, 3e-7);
  }

  const auto pulled = Clock::now();
  both.Pull();
  idle.Pull();
  toServer.Pull(true, false);
  toClient.Pull(false, true);
  for (const auto &instrument : {bothLost, callLost, answerLost}) ExpectLostInTime(instrument);
  const double dblConnect = SecondsOf([&] { EXPECT_EQ(ErrorOf([&] { Root(both.Url()); }).Number(), StatusCallLost); });
  EXPECT_GT(dblConnect, 4.9);
  EXPECT_LT(dblConnect, 7.0);

  const auto until = pulled + KeepaliveBound + Slack;
  for (const char *strName : {"VP-210", "VP-220", "VP-250F"})
    EXPECT_TRUE(server.LogSays(std::string("closes ") + strName + ", which was left open in a transaction",
                               std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now())))
        << server.LogText();
  // What had reached the server before the answer was lost is done: a commit is no longer open.
  EXPECT_TRUE(server.LogSays("closes VB-200, which was left open\n")) << server.LogText();

  // Whoever was on another line has not noticed, though idle all the while.
  EXPECT_FALSE(IsInTransaction(undisturbed));
  EXPECT_EQ(server.LogText().find("closes VP-110"), std::string::npos);
  both.PlugIn();
  ExpectLostInTime(silent);
  const auto next = Opened(both.Url(), "VP-210");
  EXPECT_FALSE(IsInTransaction(next));
  EXPECT_DOUBLE_EQ(Width(next), dblBefore);
}

}  // namespace
}  // namespace tarvik::remote
