#include "bitpattern/PatternStore.h"

#include <gmock/gmock.h>

#include "BitText.h"
#include "RecordingHost.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PatternStoreTest : public testing::Test {
 protected:
  PatternStoreTest() { m_store.EnableChan2(True); }

  static ByteArray Bytes(std::vector<Byte> arr, Long lngLowerBound = 1) {
    return ByteArray(lngLowerBound, std::move(arr));
  }
  Boolean Take(Long eChannel, std::vector<Byte> arr) { return m_store.TakePattern(eChannel, Bytes(std::move(arr))); }

  RecordingHost m_host;
  PatternStore m_store;
};

TEST_F(PatternStoreTest, StartsWithZerosAndTheRowsOfTheView) {
  EXPECT_EQ(m_store.Chan1().Elements(), std::vector<Byte>(2048));
  EXPECT_EQ(m_store.Chan1().LowerBound(), 1);
  EXPECT_EQ(m_store.Length(), 2);
  EXPECT_EQ(m_store.PendingChannels(), 0);
  EXPECT_FALSE(PatternStore().Chan2Enabled());
  const auto &rows = m_store.Rows();
  EXPECT_EQ(rows[0].lngChannel, 1);
  EXPECT_EQ(rows[1].lngChannel, 2);
  EXPECT_EQ(rows[2].lngChannel, 4);
  EXPECT_EQ(rows[3].lngChannel, 8);
  EXPECT_TRUE(rows[0].fRz && rows[1].fRz && rows[2].fRz && !rows[3].fRz);
  EXPECT_TRUE(!rows[0].fNumeric && !rows[1].fNumeric && rows[2].fNumeric && !rows[3].fNumeric);
}

TEST_F(PatternStoreTest, BytesFollowTheLength) {
  for (const auto &[lngLength, lngBytes] : {std::pair{2, 1}, {8, 1}, {9, 2}, {16, 2}, {17, 3}, {16384, 2048}}) {
    m_store.SetLength(lngLength);
    EXPECT_EQ(m_store.BytesUsed(), lngBytes) << lngLength;
    EXPECT_EQ(m_store.GetPatternArraySize(), lngBytes) << lngLength;
  }
}

TEST_F(PatternStoreTest, BothChannelsShareOneDigit) {
  Boolean fDone;
  Long lngValue;
  for (const Long lngDigit : {0, 1, 2, 3}) {
    m_store.WriteChannelBit(4, 5, lngDigit, fDone);
    EXPECT_TRUE(fDone);
    m_store.ReadChannelBit(4, 5, lngValue);
    EXPECT_EQ(lngValue, lngDigit);
    m_store.ReadChannelBit(1, 5, lngValue);
    EXPECT_EQ(lngValue, lngDigit & 1);
    m_store.ReadChannelBit(2, 5, lngValue);
    EXPECT_EQ(lngValue, lngDigit >> 1);
  }
  m_store.WriteChannelBit(4, 5, 2, fDone);
  m_store.WriteChannelBit(4, 5, 4, fDone);
  EXPECT_TRUE(fDone);
  m_store.ReadChannelBit(4, 5, lngValue);
  EXPECT_EQ(lngValue, 1) << "4 toggles both";
}

TEST_F(PatternStoreTest, StrobeBitStandsAlone) {
  Boolean fDone;
  m_store.WriteChannelBit(8, 2, 1, fDone);
  EXPECT_TRUE(fDone);
  EXPECT_EQ(BitsOf(m_store.Strobe(), 4), "0100");
  EXPECT_EQ(BitsOf(m_store.Chan1(), 4), "0000");
  m_store.WriteChannelBit(8, 3, 2, fDone);
  EXPECT_FALSE(fDone);
  EXPECT_EQ(BitsOf(m_store.Strobe(), 4), "0100");
}

TEST_F(PatternStoreTest, UnknownCodeIsAnIllegalCase) {
  Boolean fDone = True;
  Long lngValue = 7;
  for (const Long lngCode : {0, 3, 5, 16, -1}) {
    m_store.WriteChannelBit(lngCode, 1, 1, fDone);
    EXPECT_FALSE(fDone);
    EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal case"));
    m_store.ReadChannelBit(lngCode, 1, lngValue);
    EXPECT_EQ(lngValue, 0);
    EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal case"));
  }
}

TEST_F(PatternStoreTest, RefusalsCarryTheTitleOfTheApplication) {
  m_store.TakePattern(1, Bytes({1}, 0));
  ASSERT_EQ(m_host.arrEntries.size(), 1u);
  EXPECT_EQ(m_host.arrEntries[0].strTitle, "TarvikVI");
  EXPECT_EQ(m_host.arrEntries[0].buttons, BoxButtons::Ok);
}

TEST_F(PatternStoreTest, GetPatternCopiesToTheStartOfALargerArray) {
  m_store.SetLength(12);
  SetBit(m_store.Strobe(), 1);
  SetBit(m_store.Strobe(), 16);
  ByteArray arr = Bytes({0xA5, 0xA5, 0xA5}, 0);
  Long lngSize = 0;
  EXPECT_TRUE(m_store.GetPattern(8, arr, lngSize));
  EXPECT_EQ(lngSize, 2);
  EXPECT_THAT(arr.Elements(), ElementsAre(0x80, 0x01, 0xA5)) << "bits behind the length come as they stand";
  EXPECT_THAT(m_host.TakeLines(), IsEmpty());
}

TEST_F(PatternStoreTest, GetPatternTellsTheSizeToATooSmallArray) {
  m_store.SetLength(17);
  ByteArray arr = Bytes({0xA5, 0xA5});
  Long lngSize = 0;
  EXPECT_FALSE(m_store.GetPattern(1, arr, lngSize));
  EXPECT_EQ(lngSize, 3);
  EXPECT_THAT(arr.Elements(), ElementsAre(0xA5, 0xA5));
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal Array size"));
}

TEST_F(PatternStoreTest, GetPatternHasNoCodeForBoth) {
  ByteArray arr = Bytes({0xA5});
  Long lngSize = 0;
  for (const Long lngCode : {0, 3, 4, 9}) {
    EXPECT_FALSE(m_store.GetPattern(lngCode, arr, lngSize));
    EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal Case"));
  }
  EXPECT_THAT(arr.Elements(), ElementsAre(0xA5));
  EXPECT_EQ(lngSize, 1);
}

TEST_F(PatternStoreTest, GetPatternReportsAnArrayOfTwoDimensions) {
  ByteArray arr = ByteArray::WithDimensions(2);
  Long lngSize = 0;
  EXPECT_FALSE(m_store.GetPattern(1, arr, lngSize));
  EXPECT_EQ(lngSize, 1);
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Subscript out of range",
                                              "log: 02/03/01 04:05\r\n  Error: 9 Subscript out of range\r\n"
                                              "  Mod: BitPattern; Proc: GetPattern\r\n\r\n\r\n"));
}

TEST_F(PatternStoreTest, DeliveryTakesEachStreamOnce) {
  m_store.SetPatternInit();
  EXPECT_EQ(m_store.PendingChannels(), 15);
  EXPECT_TRUE(Take(1, {0x12, 0x34}));
  EXPECT_TRUE(Take(2, {0x56, 0x78}));
  EXPECT_TRUE(Take(8, {0x9A, 0xBC}));
  EXPECT_EQ(m_store.PendingChannels(), 4);
  EXPECT_EQ(m_store.Chan1()[1], 0x12);
  EXPECT_EQ(m_store.Chan2()[2], 0x78);
  EXPECT_EQ(m_store.Strobe()[2], 0xBC);
  EXPECT_THAT(m_host.TakeLines(), IsEmpty());
}

TEST_F(PatternStoreTest, SecondCallForAStreamIsRefusedAndTheFirstStays) {
  m_store.SetPatternInit();
  EXPECT_TRUE(Take(1, {0x12}));
  EXPECT_FALSE(Take(1, {0xFF}));
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Duplicate call to SetPattern"));
  EXPECT_EQ(m_store.Chan1()[1], 0x12);
}

TEST_F(PatternStoreTest, SequenceStaysOpenAfterTheLastStream) {
  m_store.SetPatternInit();
  Take(1, {1});
  Take(2, {1});
  Take(8, {1});
  EXPECT_FALSE(Take(8, {2}));
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Duplicate call to SetPattern"));
  m_store.SetPatternInit();
  EXPECT_TRUE(Take(8, {2, 3}));
  EXPECT_EQ(m_store.Strobe()[2], 3);
}

TEST_F(PatternStoreTest, WithoutInitNothingIsTaken) {
  EXPECT_FALSE(Take(1, {0xFF}));
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal use of SetPattern()"));
  EXPECT_EQ(m_store.Chan1()[1], 0);
}

TEST_F(PatternStoreTest, WrongBoundsAreRefusedBeforeAnythingChanges) {
  m_store.SetPatternInit();
  EXPECT_FALSE(m_store.TakePattern(1, Bytes({0xFF}, 0)));
  EXPECT_FALSE(m_store.TakePattern(1, Bytes({0xFF}, 2)));
  EXPECT_FALSE(m_store.TakePattern(1, Bytes(std::vector<Byte>(2049, 0xFF))));
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Array boundary mismatch", "box stop: Array boundary mismatch",
                                              "box stop: Array boundary mismatch"));
  EXPECT_EQ(m_store.PendingChannels(), 15);
  EXPECT_EQ(m_store.Chan1().Elements(), std::vector<Byte>(2048));
  EXPECT_TRUE(Take(1, std::vector<Byte>(2048, 0xFF)));
}

TEST_F(PatternStoreTest, ArraysOfOneDeliveryHaveTheSameSize) {
  m_store.SetPatternInit();
  EXPECT_TRUE(Take(1, {1, 2}));
  EXPECT_FALSE(Take(2, {3}));
  EXPECT_FALSE(Take(2, {3, 4, 5}));
  EXPECT_THAT(m_host.TakeLines(),
              ElementsAre("box stop: Illegal use of SetPattern()", "box stop: Illegal use of SetPattern()"));
  EXPECT_EQ(m_store.Chan2()[1], 0);
  EXPECT_TRUE(Take(2, {3, 4}));
}

TEST_F(PatternStoreTest, DisabledChannel2IsRefusedAndStaysPending) {
  m_store.EnableChan2(False);
  m_store.SetPatternInit();
  EXPECT_FALSE(Take(2, {0xFF}));
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Channel 2 Disabled!"));
  EXPECT_EQ(m_store.PendingChannels(), 15);
  EXPECT_EQ(m_store.Chan2()[1], 0);
  m_store.EnableChan2(True);
  EXPECT_TRUE(Take(2, {0xFF, 0xFE})) << "a refused first call does not fix the size";
}

TEST_F(PatternStoreTest, UnknownStreamIsAnIllegalCase) {
  m_store.SetPatternInit();
  for (const Long eChannel : {0, 3, 4, 15, -1}) {
    EXPECT_FALSE(Take(eChannel, {0xFF}));
    EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal Case"));
  }
  EXPECT_EQ(m_store.PendingChannels(), 15);
}

TEST_F(PatternStoreTest, ArrayWithoutElementsOrWithTwoDimensionsFails) {
  m_store.SetPatternInit();
  EXPECT_THROW(Take(1, {}), RunTimeError);
  EXPECT_THROW(m_store.TakePattern(1, ByteArray::WithDimensions(0)), RunTimeError);
  EXPECT_THROW(m_store.TakePattern(1, ByteArray::WithDimensions(2)), RunTimeError);
  EXPECT_EQ(m_store.PendingChannels(), 15);
}

}  // namespace
}  // namespace tarvik::test
