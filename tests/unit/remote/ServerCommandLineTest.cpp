#include "remote/ServerCommandLine.h"

#include <gmock/gmock.h>

namespace tarvik::remote {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

ServerCommandLine Parsed(std::vector<std::string> arrArguments) {
  arrArguments.insert(arrArguments.begin(), "tarvik-driver-server");
  std::vector<char *> arrPointers;
  for (std::string &strArgument : arrArguments) arrPointers.push_back(strArgument.data());
  return ServerCommandLine::Of(static_cast<int>(arrPointers.size()), arrPointers.data());
}

TEST(ServerCommandLine, WhatIsNotToldIsAsTheManualSays) {
  const ServerCommandLine line = Parsed({"--insecure"});
  EXPECT_EQ(line.options.strHost, "127.0.0.1");
  EXPECT_EQ(line.options.lngPort, 17830);
  EXPECT_EQ(line.options.lngClients, 64u);
  EXPECT_EQ(line.options.limits.lngObjects, 1000u);
  EXPECT_EQ(line.options.limits.lngFrameBytes, 1048576u);
  EXPECT_EQ(line.options.keepalive, std::chrono::seconds(15));
  EXPECT_TRUE(line.options.fInsecure);
  EXPECT_EQ(line.strLogFile, "");
  EXPECT_EQ(line.strHelp, "");
}

TEST(ServerCommandLine, EachOptionIsTaken) {
  const ServerCommandLine line =
      Parsed({"--insecure", "--listen", "::1", "--port=0", "--max-clients", "2", "--max-objects", "16", "--max-message",
              "65536", "--keepalive", "3600", "--log", "server.log", "--allow", "hall3", "--allow=bench"});
  EXPECT_EQ(line.options.strHost, "::1");
  EXPECT_EQ(line.options.lngPort, 0);
  EXPECT_EQ(line.options.lngClients, 2u);
  EXPECT_EQ(line.options.limits.lngObjects, 16u);
  EXPECT_EQ(line.options.limits.lngFrameBytes, 65536u);
  EXPECT_EQ(line.options.keepalive, std::chrono::hours(1));
  EXPECT_EQ(line.strLogFile, "server.log");
  EXPECT_THAT(line.options.rules.allowedClients, ElementsAre("bench", "hall3"));
}

TEST(ServerCommandLine, ADriverCanBeChosenByItsName) {
  const ServerCommandLine line =
      Parsed({"--insecure", "--driver", "KolvenAtl.Kolven/scpi", "--driver", "Bench.Driver"});
  EXPECT_THAT(line.options.drivers, ElementsAre("Bench.Driver", "KolvenAtl.Kolven"));
  EXPECT_THAT(line.chosenDrivers, ElementsAre(Pair("Bench.Driver", ""), Pair("KolvenAtl.Kolven", "scpi")));
  EXPECT_THAT(Parsed({"--insecure"}).chosenDrivers, IsEmpty());
}

TEST(ServerCommandLine, OfAnOptionGivenTwiceTheLastCounts) {
  EXPECT_EQ(Parsed({"--insecure", "--port", "1x", "--port", "80"}).options.lngPort, 80);
}

TEST(ServerCommandLine, AValueMayLookLikeAnOption) {
  EXPECT_EQ(Parsed({"--insecure", "--log", "--odd"}).strLogFile, "--odd");
}

TEST(ServerCommandLine, HelpNeedsNoKeys) { EXPECT_THAT(Parsed({"--help"}).strHelp, HasSubstr("--certificate FILE")); }

}  // namespace
}  // namespace tarvik::remote
