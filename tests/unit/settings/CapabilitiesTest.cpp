#include "settings/Capabilities.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarvik::test {
namespace {

/// As the instrument class answers for a model that lacks these bits.
Capabilities Of(Long lngChannels, Long lngMask) {
  return CapabilitiesOf(lngChannels, [=](Long lngBits) { return Boolean((lngMask & lngBits) > 0); });
}

constexpr Capabilities Everything{True, True, True, True, True, True, True, True, True};

TEST(Capabilities, AModelThatLacksNothingHasEverything) { EXPECT_EQ(Of(2, 0), Everything); }

TEST(Capabilities, OnlyOneChannelTakesTheSecondAway) {
  for (const Long lngChannels : {0, 2, 3}) EXPECT_TRUE(Of(lngChannels, 0).fDualChannel) << lngChannels;
  Capabilities expected = Everything;
  expected.fDualChannel = False;
  EXPECT_EQ(Of(1, 0), expected);
}

TEST(Capabilities, WithoutASessionThereAreNoCommandsAndEverythingElse) {
  Capabilities expected = Everything;
  expected.fSession = False;
  EXPECT_EQ(Of(0, 0), expected);
}

struct LackRow {
  Long lngBit;
  Capabilities expected;
};

class Lacking : public testing::TestWithParam<LackRow> {};

TEST_P(Lacking, OneBitTakesAwayWhatItStandsForOnAnyNumberOfChannels) {
  Capabilities expected = GetParam().expected;
  EXPECT_EQ(Of(2, GetParam().lngBit), expected);
  expected.fDualChannel = False;
  EXPECT_EQ(Of(1, GetParam().lngBit), expected);
}

//                                        session  two  inverse  math  edge  lines  vxi  source  enable
INSTANTIATE_TEST_SUITE_P(Bits, Lacking,
                         testing::Values(LackRow{4, {True, True, True, True, False, True, True, True, True}},
                                         LackRow{256, {True, True, True, False, True, True, True, True, True}},
                                         LackRow{512, {True, True, False, True, True, True, True, True, True}},
                                         LackRow{1024, {True, True, True, True, True, True, False, False, True}},
                                         LackRow{2048, {True, True, True, True, True, True, False, True, False}},
                                         LackRow{4096, {True, True, True, True, True, False, False, True, True}}),
                         [](const testing::TestParamInfo<LackRow> &test) {
                           return "Bit" + std::to_string(test.param.lngBit);
                         });

TEST(Capabilities, EveryOtherBitTakesNothingAway) {
  for (int intBit = 0; intBit < 31; ++intBit) {
    const Long lngMask = Long{1} << intBit;
    if (lngMask & (4 | 256 | 512 | 1024 | 2048 | 4096)) continue;
    EXPECT_EQ(Of(2, lngMask), Everything) << lngMask;
  }
  EXPECT_EQ(Of(2, std::numeric_limits<Long>::min()), Everything) << "the sign alone restricts nothing";
}

}  // namespace
}  // namespace tarvik::test
