#include "scpi/InstrumentsFile.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>

#include "scpi/ScpiRack.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {
namespace {

namespace fs = std::filesystem;

class ScpiInstruments : public testing::Test {
 protected:
  ScpiInstruments() { fs::create_directories(folder); }
  ~ScpiInstruments() override { fs::remove_all(folder); }

  std::string WhyNot(const std::string &strText) {
    std::ofstream(file) << strText;
    try {
      ReadInstruments(file);
    } catch (const RunTimeError &error) {
      return Replace(error.Description(), file.string() + ":\r\n", "");
    }
    return "taken";
  }
  static std::string Replace(std::string strText, const std::string &strFind, const std::string &strBy) {
    const auto place = strText.find(strFind);
    return place == std::string::npos ? strText : strText.replace(place, strFind.size(), strBy);
  }

  const fs::path folder =
      fs::path(testing::TempDir()) /
      ("instruments-" + std::to_string(getpid()) + "-" + testing::UnitTest::GetInstance()->current_test_info()->name());
  const fs::path file = folder / "user" / "scpi-instruments.json", system = folder / "system.json";
  const InstrumentEntry left{"left", "TCPIP::127.0.0.1::5025::SOCKET", "scpi-99", ""};
  const InstrumentEntry right{"right \"b\"", "USB::/dev/usbtmc0", "mine", "/tmp/line.log"};
};

TEST_F(ScpiInstruments, WhatWasWrittenIsReadAgain) {
  WriteInstruments(file, {left, right});
  EXPECT_EQ((std::vector{left, right}), ReadInstruments(file));
  WriteInstruments(file, {});
  EXPECT_TRUE(ReadInstruments(file).empty());
  EXPECT_TRUE(ReadInstruments(folder / "absent.json").empty());
}

TEST_F(ScpiInstruments, FileWithFaultsIsRefusedWithAllOfThem) {
  fs::create_directories(file.parent_path());
  EXPECT_EQ(
      "line 2: instruments[1].address: \"COM1\" is no address. Addresses are written as TCPIP::host::port::SOCKET, "
      "TCPIP::host::INSTR or USB::/dev/usbtmc0\r\n"
      "line 3: instruments[2].profile: the key is missing\r\n"
      "line 3: instruments[2].colour: there is no such key\r\n"
      "line 3: instruments[2].name: \"a\" is another instrument's name",
      WhyNot(R"({"format": "tarvikvi-scpi-instruments", "version": 1, "instruments": [
        {"name": "a", "address": "COM1", "profile": "scpi-99"},
        {"name": "a", "address": "USB::/dev/usbtmc0", "colour": 1}]})"));
  EXPECT_EQ("line 1: instruments: the key is missing",
            WhyNot(R"({"format": "tarvikvi-scpi-instruments", "version": 1})"));
}

TEST_F(ScpiInstruments, OfTwoFilesTheUsersCountsFirst) {
  WriteInstruments(file, {left});
  InstrumentEntry other = left;
  other.strProfile = "other";
  WriteInstruments(system, {other, right});
  EXPECT_EQ((std::vector{left, right}), ReadAllInstruments({file, system}));
}

TEST_F(ScpiInstruments, RackListsThemWithTheirAddressAndFindsThemWithAndWithoutIt) {
  WriteInstruments(file, {left, right});
  ScpiRack rack({file}, ProfileFolders::OfMachine());
  rack.Load();
  ASSERT_EQ(2, rack.Count());
  const auto first = rack.ByNumber(1);
  EXPECT_EQ("left (TCPIP::127.0.0.1::5025::SOCKET)", first->Description().strName);
  EXPECT_EQ(eKindBox, first->Description().intKind);
  EXPECT_EQ(2, rack.ByNumber(2)->Description().intAddress);
  EXPECT_EQ(first, rack.ByName("left"));
  EXPECT_EQ(first, rack.ByName("left (TCPIP::127.0.0.1::5025::SOCKET)"));
  EXPECT_EQ(nullptr, rack.ByName("middle"));
}

TEST_F(ScpiInstruments, SearchingAgainKeepsTheInstrumentsThatAreStillEntered) {
  WriteInstruments(file, {left, right});
  ScpiRack rack({file}, ProfileFolders::OfMachine());
  rack.Load();
  const auto first = rack.ByNumber(1);
  WriteInstruments(file, {left});
  rack.Refresh();
  EXPECT_EQ(1, rack.Count());
  EXPECT_EQ(first, rack.ByNumber(1));
  std::ofstream(file) << "{";
  EXPECT_THROW(rack.Refresh(), driver::Failure);
  EXPECT_EQ(1, rack.Count());
}

TEST_F(ScpiInstruments, ProfileThatIsWrongFailsItsOwnInstrumentOnly) {
  WriteInstruments(file, {{"left", "TCPIP::127.0.0.1::1::SOCKET", "absent", ""}});
  ScpiRack rack({file}, ProfileFolders({folder}));
  rack.Load();
  try {
    rack.ByNumber(1)->Connect();
    FAIL();
  } catch (const driver::Failure &failure) {
    EXPECT_STREQ("left (TCPIP::127.0.0.1::1::SOCKET): there is no profile \"absent\"", failure.what());
  }
}

}  // namespace
}  // namespace tarvik::scpi
