#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "HelperClient.h"
#include "RemoteClient.h"
#include "ServerProcess.h"

namespace tarvik::remote {
namespace {

namespace fs = std::filesystem;

constexpr int ClientCount = 50;
/// Nobody waits longer for one call, also with all of them at work on two processors.
constexpr double SlowestCall = 5.0;
/// What the second fifty may add to what the first fifty left. The first are no measure: they warm up the allocator's
/// arenas and the transport's pools, and a sanitizer's shadow memory multiplies that. What a client leaks, each leaks.
constexpr std::size_t GrowthBoundOfFifty = std::size_t{16} * 1024 * 1024;

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TARVIK_THREAD_SANITIZER
#endif
#endif
#if defined(TARVIK_THREAD_SANITIZER) || defined(__SANITIZE_THREAD__)
constexpr bool UnderThreadSanitizer = true;
#else
constexpr bool UnderThreadSanitizer = false;
#endif

std::string InstrumentOf(int intClient) { return "Bench " + std::to_string(intClient); }

/// A data folder with one instrument for each client.
class ManyClients : public testing::Test {
 protected:
  ManyClients() {
    fs::create_directories(folder / "tarvikvi/drivers");
    std::ofstream rack(folder / "tarvikvi/drivers/KolvenAtl.Kolven.rack");
    for (int client = 0; client < ClientCount; ++client) rack << "[" << InstrumentOf(client) << "]\n";
  }
  ~ManyClients() override { fs::remove_all(folder); }

  const fs::path folder = fs::temp_directory_path() / ("tarvik-soak-" + std::to_string(getpid()));
};

/// Lets fifty clients work until their time is over.
void WorkOfFifty(const ServerProcess &server) {
  const char *strSeconds = std::getenv("TARVIK_SOAK_SECONDS");
  std::vector<std::unique_ptr<ChildProcess>> clients;
  for (int client = 0; client < ClientCount; ++client)
    clients.push_back(std::make_unique<ChildProcess>(
        HelperCommand({"soak", server.Url(), InstrumentOf(client), strSeconds ? strSeconds : "5"})));
  for (const auto &client : clients) ASSERT_EQ(client->ReadLine(), "ready");
  const std::size_t lngBytesBefore = server.ResidentBytes();

  long lngAllCalls = 0, lngFewest = -1;
  double dblSlowest = 0;
  for (const auto &client : clients) {
    const std::string strReport = client->ReadLine();
    long lngCalls = 0, lngWrong = 0;
    double dblSeconds = 0;
    ASSERT_EQ(std::sscanf(strReport.c_str(), "%ld %ld %lf", &lngCalls, &lngWrong, &dblSeconds), 3) << strReport;
    EXPECT_EQ(client->End(0), 0);
    EXPECT_EQ(lngWrong, 0);
    lngAllCalls += lngCalls;
    lngFewest = lngFewest < 0 ? lngCalls : std::min(lngFewest, lngCalls);
    dblSlowest = std::max(dblSlowest, dblSeconds);
  }
  std::printf(
      "%d clients: %ld calls, at least %ld each, the slowest took %.3f s; the server grew from %zu to %zu KiB\n",
      ClientCount, lngAllCalls, lngFewest, dblSlowest, lngBytesBefore / 1024, server.ResidentBytes() / 1024);
  EXPECT_GT(lngFewest, 5);  // nobody is starved
  EXPECT_LT(dblSlowest, SlowestCall);
}

/// TARVIK_SOAK_SECONDS sets how long each fifty work.
TEST_F(ManyClients, FiftyAtOnceGetTheirOwnValuesInTimeAndLeaveNothingBehind) {
  ServerProcess server(ServerProcess::Insecure(), {"XDG_DATA_HOME=" + folder.string()});
  ASSERT_NO_FATAL_FAILURE(WorkOfFifty(server));
  const std::size_t lngBytesOnce = server.ResidentBytes();
  ASSERT_NO_FATAL_FAILURE(WorkOfFifty(server));
  // The thread sanitizer keeps a history of its own in the server, which grows with every thread and every block.
  if (!UnderThreadSanitizer) EXPECT_LT(server.ResidentBytes(), lngBytesOnce + GrowthBoundOfFifty);

  const std::string strLog = server.LogText();
  for (int client = 0; client < ClientCount; ++client) {
    EXPECT_NE(strLog.find(": opened " + InstrumentOf(client) + "\n"), std::string::npos);
    EXPECT_NE(strLog.find(": closed " + InstrumentOf(client) + "\n"), std::string::npos);
  }
  EXPECT_EQ(strLog.find("left open"), std::string::npos);
  EXPECT_TRUE(Opened(server.Url(), InstrumentOf(0)));
}

TEST_F(ManyClients, OneBeyondTheLimitIsRefusedAndGetsInWhenAnotherLeaves) {
  auto arrOptions = ServerProcess::Insecure();
  arrOptions.insert(arrOptions.end(), {"--max-clients", "3"});
  ServerProcess server(arrOptions, {"XDG_DATA_HOME=" + folder.string()});
  std::vector<Ref<IInstrument>> opened;
  for (int client = 0; client < 3; ++client) opened.push_back(Opened(server.Url(), InstrumentOf(client)));
  const RunTimeError error = ErrorOf([&] { Root(server.Url()); });
  EXPECT_EQ(error.Number(), StatusServerTooBusy);
  EXPECT_NE(error.Description().find("it serves no more than 3 clients at a time"), std::string::npos);
  EXPECT_FALSE(IsInTransaction(opened.front()));
  opened.pop_back();
  EXPECT_TRUE(WaitUntil([&] { return server.LogText().find("disconnected") != std::string::npos; }));
  EXPECT_TRUE(Opened(server.Url(), InstrumentOf(2)));
}

}  // namespace
}  // namespace tarvik::remote
