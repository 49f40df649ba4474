#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include "HelperClient.h"
#include "RemoteClient.h"
#include "ServerProcess.h"
#include "TestCertificates.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr automation::Status StatusHeld = static_cast<automation::Status>(0x800700AA);

std::vector<std::string> WithoutSharing(std::vector<std::string> arrOptions) {
  std::erase(arrOptions, "--share");
  return arrOptions;
}

TEST(Holders, InstrumentThatAnotherClientHoldsIsRefusedWithNameTimeAndPlace) {
  const TestCertificates certificates;
  auto arrOptions = WithoutSharing(certificates.ServerOptions());
  arrOptions.insert(arrOptions.end(), {"--allow", "stranger"});
  ServerProcess server(arrOptions);
  const std::string strUrl = "tarvik://localhost:" + server.Port();
  certificates.UseClient("client");
  auto held = Opened(strUrl);
  certificates.UseClient("stranger");
  const auto root = Root(strUrl);
  const RunTimeError error = ErrorOf([&] { Opened(root, "VP-210"); });
  EXPECT_EQ(error.Number(), StatusHeld);
  EXPECT_THAT(error.Description(), MatchesRegex("VP-210 is held by bench at 127\\.0\\.0\\.1:[0-9]+ since "
                                                "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} UTC"));
  EXPECT_TRUE(server.LogSays("refused to open: VP-210 is held by bench at 127.0.0.1:"));
  // Another instrument is free, and this one once it is closed.
  EXPECT_TRUE(Opened(root, "VP-110"));
  Call(held, &IInstrument::Close);
  EXPECT_TRUE(Opened(root, "VP-210"));
}

TEST(Holders, NumberOfTheInstrumentIsNoWayAroundItsHolder) {
  ServerProcess server(WithoutSharing(ServerProcess::Insecure()));
  const auto held = Opened(server.Url());
  const auto root = Root(server.Url());
  const auto list = Fetch(root, &IDriverRoot::GetInstruments);
  automation::AutomationVariant key{};
  key.vt = automation::VtInteger;
  int intHeld = 0;
  for (key.iVal = 1; key.iVal <= Read(list, &kolven::IInstrumentList::GetCount); ++key.iVal) {
    const auto instrument = automation::Narrow<IInstrument>(Fetch(list, &kolven::IInstrumentList::GetItem, key));
    automation::VariantBool opened = 0;
    if (instrument->Open(0, 0, 0, &opened) == StatusHeld) ++intHeld;
  }
  EXPECT_EQ(intHeld, 1);
}

TEST(Holders, InstrumentOfAKilledClientIsFree) {
  ServerProcess server(WithoutSharing(ServerProcess::Insecure()));
  ChildProcess client(HelperCommand({"in-transaction", server.Url(), "VP-210"}));
  ASSERT_EQ(client.ReadLine(), "ready");
  EXPECT_EQ(ErrorOf([&] { Opened(server.Url()); }).Number(), StatusHeld);
  client.End(SIGKILL);
  EXPECT_TRUE(server.LogSays("closes VP-210, which was left open in a transaction"));
  EXPECT_TRUE(Opened(server.Url()));
}

TEST(Holders, ClientMayOpenItsOwnInstrumentTwice) {
  ServerProcess server(WithoutSharing(ServerProcess::Insecure()));
  const auto root = Root(server.Url());
  const auto first = Opened(root, "VP-210"), second = Opened(root, "VP-210");
  Call(first, &IInstrument::Close);
  EXPECT_EQ(ErrorOf([&] { Opened(server.Url()); }).Number(), StatusHeld);
  Call(second, &IInstrument::Close);
  EXPECT_TRUE(Opened(server.Url()));
}

TEST(Holders, ServerThatSharesRefusesNobody) {
  ServerProcess server(ServerProcess::Insecure());
  const auto first = Opened(server.Url());
  EXPECT_TRUE(Opened(server.Url()));
}

}  // namespace
}  // namespace tarvik::remote
