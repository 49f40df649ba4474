#include "simulator/model/Rack.h"

#include <gtest/gtest.h>

#include <fstream>

namespace tarvik::simulator {
namespace {

namespace fs = std::filesystem;

class RackTest : public testing::Test {
 protected:
  RackTest() { fs::create_directories(folder); }
  ~RackTest() override { fs::remove_all(folder); }
  void Write(const std::string &strText) { std::ofstream(file) << strText; }

  const fs::path folder = fs::path(testing::TempDir()) /
                          ("rack-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
  const fs::path file = folder / "KolvenAtl.Kolven.rack";
  Rack rack{{folder / "absent.rack", file}};
};

TEST_F(RackTest, WithoutAFileIsTheDefaultRack) {
  rack.Load();
  EXPECT_EQ(6, rack.Count());
  EXPECT_EQ("VP-210", rack.ByNumber(1)->Description().strName);
}

TEST_F(RackTest, FindsByNumberAndExactName) {
  Write("[A]\n[B]\n");
  rack.Load();
  EXPECT_EQ(2, rack.Count());
  EXPECT_EQ(rack.ByNumber(2), rack.ByName("B"));
  EXPECT_EQ(nullptr, rack.ByName("b"));
  EXPECT_EQ(nullptr, rack.ByNumber(0));
  EXPECT_EQ(nullptr, rack.ByNumber(3));
}

TEST_F(RackTest, BadFileIsToldWithItsPathAndMayBeMended) {
  Write("[A]\nbad\n");
  try {
    rack.Load();
    FAIL() << "taken";
  } catch (const RackFileError &error) {
    EXPECT_EQ(file.string() + ":2: neither [name] nor key = value", error.what());
  }
  Write("[A]\n");
  rack.Load();
  EXPECT_EQ(1, rack.Count());
}

TEST_F(RackTest, RefreshKeepsTheStateOfUnchangedInstruments) {
  Write("[A]\n[B]\n");
  rack.Load();
  rack.ByName("A")->Apply({[](Settings &s) { s.dblFrequency = 2e6; }});
  rack.ByName("B")->Apply({[](Settings &s) { s.dblFrequency = 2e6; }});
  Write("[C]\n[B]\nslot = 2\n[A]\n");
  rack.Load();
  EXPECT_EQ(2, rack.Count());
  rack.Refresh();
  EXPECT_EQ(3, rack.Count());
  EXPECT_EQ(2e6, rack.ByName("A")->CurrentSettings().dblFrequency);
  EXPECT_EQ(1e6, rack.ByName("B")->CurrentSettings().dblFrequency);
}

TEST_F(RackTest, RefreshWithABadFileLeavesTheRack) {
  Write("[A]\n");
  rack.Load();
  const auto instrument = rack.ByName("A");
  Write("[A\n");
  EXPECT_THROW(rack.Refresh(), RackFileError);
  EXPECT_EQ(1, rack.Count());
  EXPECT_EQ(instrument, rack.ByName("A"));
}

TEST_F(RackTest, FileMayBeAMegabyteLong) {
  const std::string strEntry = "[Far]\n";
  Write(strEntry + std::string((1 << 20) - strEntry.size(), '#'));
  rack.Load();
  EXPECT_EQ(1, rack.Count());
}

TEST_F(RackTest, FileThatIsAFolderOrTooLongIsRefused) {
  fs::create_directories(file);
  EXPECT_THROW(rack.Load(), RackFileError);
  fs::remove_all(file);
  Write(std::string((1 << 20) + 1, '#'));
  EXPECT_THROW(rack.Load(), RackFileError);
}

}  // namespace
}  // namespace tarvik::simulator
