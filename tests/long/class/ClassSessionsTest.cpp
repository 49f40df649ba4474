#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "LiveMemory.h"
#include "LongRun.h"
#include "RecordingHost.h"
#include "instrument/clsInstrInterface.h"
#include "settings/SetupTransfer.h"

namespace tarvik::test {

namespace fs = std::filesystem;

/// Of the simulated family: two channels, a bench instrument, one channel.
constexpr std::array Instruments{"VP-210", "VB-200", "VP-110"};
constexpr long ResidentBound = 1024 * 1024;

struct ManySessions : testing::Test {
  ManySessions() {
    fs::create_directories(folder);
    for (const char *strName : {"XDG_DATA_HOME", "XDG_DATA_DIRS"}) setenv(strName, folder.c_str(), 1);
  }
  ~ManySessions() override { fs::remove_all(folder); }

  /// Opens an instrument, reads everything, finds the width of the session before, sends everything with another one.
  void Run(long n) {
    clsInstrInterface &instr = *InstrInterface();
    const std::size_t lngInstrument = static_cast<std::size_t>(n) % Instruments.size();
    ASSERT_TRUE(instr.Connect());
    ASSERT_TRUE(instr.OpenInstrument(Instruments[lngInstrument]));
    tarvik::Setup setup;
    ASSERT_TRUE(ReadSetup(instr, setup));
    if (dblSent[lngInstrument] > 0) ASSERT_DOUBLE_EQ(setup.Timing.dblWidth[1], dblSent[lngInstrument]);
    setup.Timing.dblWidth[1] = dblSent[lngInstrument] = (50 + static_cast<Double>(n % 7)) * 1e-9;
    ASSERT_TRUE(WriteSetup(instr, setup).fDone);
    instr.CloseInstrument();
    ASSERT_EQ(host.TakeBoxes(), std::vector<std::string>());
    // Now and then the class itself comes and goes.
    if (n % 5 == 4) gobjInstr().reset();
  }

  const fs::path folder = fs::path(testing::TempDir()) / ("long-" + std::to_string(getpid()));
  RecordingHost host;
  std::array<Double, Instruments.size()> dblSent{};
};

TEST_F(ManySessions, LeaveNothingBehindInTheClassOrInItsDriver) {
  const LongRun run =
      RunSessions(SessionCount("TARVIK_LONG_SESSIONS", 1000), "libtarviksimulator", [this](long n) { Run(n); });
  EXPECT_EQ(run.late.lngAllocations, run.early.lngAllocations);
  EXPECT_EQ(run.late.lngDriver, run.early.lngDriver);
  EXPECT_LE(run.late.lngResident, run.early.lngResident + ResidentBound);
}

TEST_F(ManySessions, EndWithoutAnObjectOfTheDriver) {
  RunSessions(Instruments.size(), "libtarviksimulator", [this](long n) { Run(n); });
  gobjInstr().reset();
  const long lngWithout = LiveMemory::Now().lngDriver;
  clsInstrInterface &instr = *InstrInterface();
  ASSERT_TRUE(instr.Connect() && instr.OpenInstrument(Instruments[0]));
  EXPECT_GT(LiveMemory::Now().lngDriver, lngWithout);
  gobjInstr().reset();
  EXPECT_EQ(LiveMemory::Now().lngDriver, lngWithout);
}

}  // namespace tarvik::test
