#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <optional>
#include <thread>

#include "HelperClient.h"
#include "RemoteClient.h"
#include "ServerProcess.h"
#include "automation/Activation.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {
namespace {

using namespace std::chrono_literals;

TEST(RemoteFaults, StoppedServerEndsTheCallInTimeAndServesAgainWhenContinued) {
  ServerProcess server(ServerProcess::Insecure());
  const auto instrument = Opened(server.Url());
  server.Signal(SIGSTOP);
  const double dblSeconds = SecondsOf([&] {
    const RunTimeError error = ErrorOf([&] { Call(instrument, &IInstrument::Reset); });
    EXPECT_EQ(error.Number(), StatusCallLost);
    EXPECT_EQ(error.Description(), "The driver server " + server.Url() + " gave no sign of life for 2 seconds");
  });
  EXPECT_GT(dblSeconds, 1.9);
  EXPECT_LT(dblSeconds, 4.0);
  // The kernel takes the connection of a stopped server; the greeting has its own time.
  const double dblConnect = SecondsOf([&] {
    EXPECT_EQ(ErrorOf([&] { Root(server.Url()); }).Description(),
              "The driver server " + server.Url() + " does not answer");
  });
  EXPECT_GT(dblConnect, 4.9);
  EXPECT_LT(dblConnect, 7.0);
  server.Signal(SIGCONT);
  EXPECT_TRUE(server.LogSays("closes VP-210, which was left open")) << server.LogText();
  EXPECT_TRUE(Opened(server.Url()));
}

TEST(RemoteFaults, ShortStopOfTheServerOnlyDelaysTheCall) {
  ServerProcess server(ServerProcess::Insecure());
  const auto instrument = Opened(server.Url());
  server.Signal(SIGSTOP);
  std::jthread waker([&] {
    std::this_thread::sleep_for(700ms);
    server.Signal(SIGCONT);
  });
  const double dblSeconds = SecondsOf([&] { EXPECT_FALSE(IsInTransaction(instrument)); });
  EXPECT_GT(dblSeconds, 0.5);
  EXPECT_LT(dblSeconds, 1.9);
  SetWidth(instrument, 2e-7);
  EXPECT_DOUBLE_EQ(Width(instrument), 2e-7);
}

TEST(RemoteFaults, NewConnectWorksAfterARestartOnTheSamePort) {
  std::optional<ServerProcess> server(std::in_place, ServerProcess::Insecure());
  const std::string strPort = server->Port(), strUrl = server->Url();
  const auto instrument = Opened(strUrl);
  server.reset();
  EXPECT_EQ(ErrorOf([&] { Call(instrument, &IInstrument::Reset); }).Number(), StatusServerUnavailable);
  EXPECT_EQ(ErrorOf([&] { Root(strUrl); }).Number(), StatusServerUnavailable);
  server.emplace(ServerProcess::Insecure(strPort));
  EXPECT_TRUE(Opened(strUrl));
  // The connection to the server before does not come back to life.
  EXPECT_EQ(ErrorOf([&] { Call(instrument, &IInstrument::Reset); }).Number(), StatusServerUnavailable);
}

TEST(RemoteFaults, KilledClientsTransactionIsDroppedAndItsSessionClosed) {
  ServerProcess server(ServerProcess::Insecure());
  const auto other = Opened(server.Url());
  const Double dblBefore = Width(other);
  ChildProcess client(HelperCommand({"in-transaction", server.Url(), "VP-210"}));
  ASSERT_EQ(client.ReadLine(), "ready");
  EXPECT_EQ(server.LogText().find("left open"), std::string::npos);
  client.End(SIGKILL);
  // Noticed by the end of the socket, not by the silence of the client.
  EXPECT_TRUE(server.LogSays("closes VP-210, which was left open in a transaction", 2s)) << server.LogText();

  const auto next = Opened(server.Url());
  EXPECT_FALSE(IsInTransaction(next));
  EXPECT_DOUBLE_EQ(Width(next), dblBefore);
  EXPECT_NE(dblBefore, 3e-7);
  Begin(next);
  SetWidth(next, 4e-7);
  Call(next, &IInstrument::Transaction, kolven::TransactionCommit);
  EXPECT_DOUBLE_EQ(Width(other), 4e-7);
}

TEST(RemoteFaults, ServerStopsCleanlyOnASignal) {
  for (const int lngSignal : {SIGTERM, SIGINT}) {
    ServerProcess server(ServerProcess::Insecure());
    const auto instrument = Opened(server.Url());
    EXPECT_EQ(server.End(lngSignal), 0);
    EXPECT_TRUE(server.LogSays("closes VP-210, which was left open"));
    EXPECT_TRUE(server.LogSays("server: stopped"));
    EXPECT_EQ(ErrorOf([&] { Call(instrument, &IInstrument::Reset); }).Number(), StatusServerUnavailable);
  }
}

TEST(RemoteFaults, ObjectIsMadeThroughTheLibraryNamedByTheManifest) {
  ServerProcess server(ServerProcess::Insecure());
  EXPECT_TRUE(automation::Narrow<IDriverRoot>(automation::CreateObject(kolven::DriverProgId, server.Url())));
  EXPECT_EQ(ErrorOf([] { automation::CreateObject(kolven::DriverProgId, "rack1"); }).Number(), 5);
}

}  // namespace
}  // namespace tarvik::remote
