#include "common/Prbs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "common/ScpiError.h"

namespace tarvik::driver {
namespace {

std::string BitsOf(const std::vector<Byte> &bytes, Long lngFirst, Long lngLast) {
  std::string strBits;
  for (Long a = lngFirst; a <= lngLast; ++a)
    strBits += (bytes[static_cast<std::size_t>((a - 1) / 8)] >> (7 - (a - 1) % 8)) & 1 ? '1' : '0';
  return strBits;
}

class PrbsOfBase : public testing::TestWithParam<Long> {};

TEST_P(PrbsOfBase, VisitsEveryStateButZeroOnceInAPeriod) {
  const Long n = GetParam();
  const Long lngPeriod = (1 << n) - 1;
  std::vector<Byte> bytes(2048, 0);
  FillPrbs(bytes, 1, lngPeriod, n);
  std::string strBits = BitsOf(bytes, 1, lngPeriod);
  strBits += strBits.substr(0, static_cast<std::size_t>(n));
  std::set<std::string> windows;
  for (Long i = 0; i < lngPeriod; ++i)
    windows.insert(strBits.substr(static_cast<std::size_t>(i), static_cast<std::size_t>(n)));
  EXPECT_EQ(lngPeriod, static_cast<Long>(windows.size()));
  EXPECT_FALSE(windows.contains(std::string(static_cast<std::size_t>(n), '0')));
}

TEST_P(PrbsOfBase, RepeatsAfterItsPeriodAndHoldsOneMoreOneThanZeros) {
  const Long n = GetParam();
  const Long lngPeriod = (1 << n) - 1;
  std::vector<Byte> bytes(2048, 0);
  FillPrbs(bytes, 1, 16384, n);
  const std::string strBits = BitsOf(bytes, 1, 16384);
  const std::string strPeriod = strBits.substr(0, static_cast<std::size_t>(lngPeriod));
  EXPECT_EQ((1 << (n - 1)), std::count(strPeriod.begin(), strPeriod.end(), '1'));
  for (Long i = lngPeriod; i < 16384; ++i)
    ASSERT_EQ(strBits[static_cast<std::size_t>(i - lngPeriod)], strBits[static_cast<std::size_t>(i)]) << i;
}

INSTANTIATE_TEST_SUITE_P(Bases, PrbsOfBase, testing::Range<Long>(7, 15),
                         [](const testing::TestParamInfo<Long> &test) { return "Base" + std::to_string(test.param); });

TEST(Prbs, BeginsWithAllOnesThenTheFeedbackOfBase7) {
  std::vector<Byte> bytes(2, 0);
  FillPrbs(bytes, 1, 16, 7);
  EXPECT_EQ("1111111000000100", BitsOf(bytes, 1, 16));
}

TEST(Prbs, LeavesBitsOutsideTheAddresses) {
  std::vector<Byte> bytes(3, 0xFF);
  FillPrbs(bytes, 11, 12, 7);
  EXPECT_EQ((std::vector<Byte>{0xFF, 0xFF, 0xFF}), bytes);  // the sequence begins with ones
  bytes.assign(3, 0x00);
  FillPrbs(bytes, 11, 12, 7);
  EXPECT_EQ((std::vector<Byte>{0x00, 0x30, 0x00}), bytes);
}

struct BadPrbs {
  Long lngStart, lngLast, lngBase;
  std::string strEntry;
};

TEST(Prbs, RefusesWhatIsOutOfRangeAndWritesNothing) {
  const BadPrbs cases[] = {
      {1, 16, 6, R"~(-222,"Data out of range: PRBS base (6, allowed 7 to 14)")~"},
      {1, 16, 15, R"~(-222,"Data out of range: PRBS base (15, allowed 7 to 14)")~"},
      {0, 16, 7, R"~(-222,"Data out of range: PRBS address (0 to 16, allowed 1 to 16384 in rising order)")~"},
      {9, 8, 7, R"~(-222,"Data out of range: PRBS address (9 to 8, allowed 1 to 16384 in rising order)")~"},
      {1, 16385, 7, R"~(-222,"Data out of range: PRBS address (1 to 16385, allowed 1 to 16384 in rising order)")~"},
      {1, 17, 7, R"~(-109,"Missing parameter: PRBS array (2 bytes do not reach address 17)")~"},
  };
  for (const BadPrbs &bad : cases) {
    std::vector<Byte> bytes(2, 0);
    try {
      FillPrbs(bytes, bad.lngStart, bad.lngLast, bad.lngBase);
      ADD_FAILURE() << bad.strEntry;
    } catch (const Rejected &rejected) {
      EXPECT_EQ(bad.strEntry, JoinEntries(rejected.Errors(), true));
    }
    EXPECT_EQ((std::vector<Byte>{0, 0}), bytes);
  }
}

}  // namespace
}  // namespace tarvik::driver
