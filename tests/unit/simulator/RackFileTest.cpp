#include "simulator/model/RackFile.h"

#include <gtest/gtest.h>

#include "TestName.h"

namespace tarvik::simulator {
namespace {

TEST(RackFile, DescribesInstrumentsInTheirOrder) {
  const auto rack = ParseRack(
      "\xEF\xBB\xBF# my rack\r\n"
      "[ North ]\r\n"
      "kind = slot\r\n"
      "address = 24\n"
      "slot=3\n"
      "model code = 0x8001\n"
      "channels = 1\n"
      "lacks = 4, 64,0x80\n"
      "identity = Maker, One, 17, 1.0\n"
      "options = 010; 020\n"
      "opens = no\n"
      "calibration delay = 250 ms\n"
      "self test delay = 7\n"
      "self test = 3, RAM check failed\n"
      "error = -240,\"Hardware error: fan stopped\"\n"
      "error = -241, \"Hardware missing\"\n"
      "warning = 120,\"Warming up\"\n"
      "\n"
      "[South]\n"
      "kind = box",
      "f");
  ASSERT_EQ(2u, rack.size());
  InstrumentDescription north;
  north.strName = "North";
  north.intKind = 2;
  north.intAddress = 24;
  north.intSlot = 3;
  north.intModelCode = static_cast<Integer>(0x8001);
  north.lngChannels = 1;
  north.lngMask = 196;
  north.strIdentity = "Maker, One, 17, 1.0";
  north.strOptions = "010; 020";
  north.fOpens = false;
  north.lngCalibrationDelay = 250;
  north.lngSelfTestDelay = 7;
  north.intSelfTestCode = 3;
  north.strSelfTestText = "RAM check failed";
  north.arrErrors = {{-240, "Hardware error: fan stopped", ""}, {-241, "Hardware missing", ""}};
  north.arrWarnings = {{120, "Warming up", ""}};
  EXPECT_EQ(north, rack[0]);
  EXPECT_EQ("South", rack[1].strName);
  EXPECT_EQ(1, rack[1].intKind);
  EXPECT_EQ(2, rack[1].lngChannels);
  EXPECT_EQ("Velmora,South,0,1.0", rack[1].strIdentity);
}

TEST(RackFile, WithoutInstrumentsIsAnEmptyRack) {
  EXPECT_TRUE(ParseRack("", "f").empty());
  EXPECT_TRUE(ParseRack("# nothing\n\n", "f").empty());
}

struct Bad {
  std::string strText;
  std::string strMessage;
};

class BadRackFile : public testing::TestWithParam<Bad> {};

TEST_P(BadRackFile, IsRefusedWithFileAndLine) {
  try {
    ParseRack(GetParam().strText, "my.rack");
    FAIL() << "taken";
  } catch (const RackFileError &error) {
    EXPECT_EQ(GetParam().strMessage, error.what());
  }
}

const Bad Faults[] = {
    {"kind = slot\n", "my.rack:1: a key before the first [name]"},
    {"# x\n[A\n", "my.rack:2: a name ends with ]"},
    {"[\n", "my.rack:1: a name ends with ]"},
    {"[ ]\n", "my.rack:1: an instrument needs a name"},
    {"[A]\n[B]\n[A]\n", "my.rack:3: a second instrument is called \"A\""},
    {"[A]\nnonsense\n", "my.rack:2: neither [name] nor key = value"},
    {"[A]\ncolour = red\n", "my.rack:2: unknown key \"colour\""},
    {"[A]\nKind = slot\n", "my.rack:2: unknown key \"Kind\""},
    {"[A]\nslot = 1\nslot = 1\n", "my.rack:3: \"slot\" stands twice"},
    {"[A]\nkind = rack\n", "my.rack:2: \"rack\" is no whole number"},
    {"[A]\nkind = -1\n", "my.rack:2: -1 is not from 0 to 32767"},
    {"[A]\naddress = \n", "my.rack:2: \"\" is no whole number"},
    {"[A]\naddress = 1.5\n", "my.rack:2: \"1.5\" is no whole number"},
    {"[A]\naddress = 0x\n", "my.rack:2: \"0x\" is no whole number"},
    {"[A]\naddress = 99999999999999999999\n", "my.rack:2: 99999999999999999999 is not from 0 to 32767"},
    {"[A]\nslot = 32768\n", "my.rack:2: 32768 is not from 0 to 32767"},
    {"[A]\nmodel code = 0x10000\n", "my.rack:2: 0x10000 is not from 0 to 65535"},
    {"[A]\nchannels = 3\n", "my.rack:2: 3 is not from 1 to 2"},
    {"[A]\nlacks = 8\n", "my.rack:2: 8 is no sum of known capabilities"},
    {"[A]\nlacks = 4,,64\n", "my.rack:2: \"\" is no whole number"},
    {"[A]\nopens = maybe\n", "my.rack:2: \"maybe\" is neither yes nor no"},
    {"[A]\ncalibration delay = 60001\n", "my.rack:2: 60001 is not from 0 to 60000"},
    {"[A]\nself test delay = 1 s\n", "my.rack:2: \"1 s\" is no whole number"},
    {"[A]\nself test = passed\n", "my.rack:2: \"passed\" is no whole number"},
    {"[A]\nerror = fan\n", "my.rack:2: an entry has the form number,\"text\""},
    {"[A]\nerror = -1,fan\n", "my.rack:2: an entry has the form number,\"text\""},
    {"[A]\nerror = -1,\"\"\n", "my.rack:2: an entry has the form number,\"text\""},
    {"[A]\nerror = x,\"fan\"\n", "my.rack:2: \"x\" is no whole number"},
    {"[A]\nwarning = 1,\"a;b\"\n", "my.rack:2: the text of an entry holds no quote and no semicolon"},
    {std::string("[A]\nidentity = a\0b\n", 19), "my.rack:2: a control character"},
};

INSTANTIATE_TEST_SUITE_P(Faults, BadRackFile, testing::ValuesIn(Faults), [](const testing::TestParamInfo<Bad> &fault) {
  // Several have the same message.
  const std::string &strMessage = fault.param.strMessage;
  return std::to_string(fault.index) + "_" + test::TestName(strMessage.substr(strMessage.find(' ') + 1));
});

TEST(RackFile, HasRoomFor32EntriesAnd256Instruments) {
  std::string strText = "[A]\n";
  for (int i = 0; i < 32; ++i) strText += "error = 1,\"e\"\n";
  EXPECT_EQ(32u, ParseRack(strText, "f").at(0).arrErrors.size());
  EXPECT_THROW(ParseRack(strText + "error = 1,\"e\"\n", "f"), RackFileError);
  strText.clear();
  for (int i = 0; i < 256; ++i) strText += "[" + std::to_string(i) + "]\n";
  EXPECT_EQ(256u, ParseRack(strText, "f").size());
  EXPECT_THROW(ParseRack(strText + "[x]\n", "f"), RackFileError);
}

TEST(DefaultRack, HasOneInstrumentOfEachKind) {
  const auto rack = DefaultRack();
  ASSERT_EQ(6u, rack.size());
  const Long masks[] = {0, 964, 7168, 16388, 7168, 0};
  const Long channels[] = {2, 1, 2, 2, 2, 2};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(masks[i], rack[i].lngMask) << i;
    EXPECT_EQ(channels[i], rack[i].lngChannels) << i;
    EXPECT_EQ(i != 4, rack[i].HasSlot()) << i;
    EXPECT_EQ(i != 5, rack[i].fOpens) << i;
  }
}

}  // namespace
}  // namespace tarvik::simulator
