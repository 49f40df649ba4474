#include "bitpattern/PatternBits.h"

#include <gtest/gtest.h>

#include "BitText.h"

namespace tarvik::test {
namespace {

TEST(PatternBits, FirstAddressOfAByteIsItsMostSignificantBit) {
  ByteArray arr = EmptyStream();
  SetBit(arr, 1);
  SetBit(arr, 8);
  SetBit(arr, 9);
  SetBit(arr, 16384);
  EXPECT_EQ(arr[1], 0x81);
  EXPECT_EQ(arr[2], 0x80);
  EXPECT_EQ(arr[2048], 0x01);
}

TEST(PatternBits, ByteAndPlaceOfAnAddress) {
  EXPECT_EQ(BitByteIndex(1), 1);
  EXPECT_EQ(BitByteIndex(8), 1);
  EXPECT_EQ(BitByteIndex(9), 2);
  EXPECT_EQ(BitByteIndex(16384), 2048);
  EXPECT_EQ(BitMaskIndex(1), 0);
  EXPECT_EQ(BitMaskIndex(8), 7);
  EXPECT_EQ(BitMaskIndex(9), 0);
}

TEST(PatternBits, ClearAndToggleTouchOneBit) {
  ByteArray arr = EmptyStream();
  arr[2] = 0xFF;
  ClearBit(arr, 11);
  EXPECT_EQ(arr[2], 0xDF);
  ToggleBit(arr, 11);
  ToggleBit(arr, 16);
  EXPECT_EQ(arr[2], 0xFE);
}

TEST(PatternBits, AddressOutsideOfTheArrayFails) {
  ByteArray arr = EmptyStream();
  Boolean fBit;
  for (const Long lngAddress : {0, -1, -7, 16385}) {
    EXPECT_THROW(SetBit(arr, lngAddress), RunTimeError) << lngAddress;
    EXPECT_THROW(GetBit(arr, lngAddress, fBit), RunTimeError) << lngAddress;
  }
}

TEST(PatternBits, WriteTakesZeroOneAndToggleOnly) {
  ByteArray arr = EmptyStream();
  Boolean fDone;
  WriteBit(arr, 3, 1, fDone);
  EXPECT_TRUE(fDone);
  EXPECT_EQ(arr[1], 0x20);
  WriteBit(arr, 3, 4, fDone);
  EXPECT_TRUE(fDone);
  EXPECT_EQ(arr[1], 0x00);
  for (const Long lngValue : {2, 3, 5, -1}) {
    arr[1] = 0x20;
    WriteBit(arr, 3, lngValue, fDone);
    EXPECT_FALSE(fDone) << lngValue;
    EXPECT_EQ(arr[1], 0x20) << lngValue;
  }
  WriteBit(arr, 3, 0, fDone);
  EXPECT_TRUE(fDone);
  EXPECT_EQ(arr[1], 0x00);
}

TEST(ByteRange, StartAtAByteHasNoBitPhase) {
  EXPECT_EQ(ByteRange(1, 2), (PatternRange{1, 0, 1, 2}));
  EXPECT_EQ(ByteRange(9, 2), (PatternRange{1, 0, 2, 2}));
}

TEST(ByteRange, BitPhaseRunsToTheEndOfItsByte) {
  EXPECT_EQ(ByteRange(3, 4), (PatternRange{3, 8, 2, 4}));
  EXPECT_EQ(ByteRange(16, 4), (PatternRange{16, 16, 3, 4}));
}

TEST(ByteRange, SingleLastByteBehindTheBitPhaseIsDropped) {
  const PatternRange range = ByteRange(3, 2);
  EXPECT_EQ(range.lngFirstBit, 3);
  EXPECT_EQ(range.lngLastBit, 8);
  EXPECT_GT(range.lngFirstByte, range.lngLastByte);
}

TEST(ByteRange, StartInTheLastByteHasTheBitPhaseOnly) {
  const PatternRange range = ByteRange(11, 2);
  EXPECT_EQ(range.lngFirstBit, 11);
  EXPECT_EQ(range.lngLastBit, 16);
  EXPECT_GT(range.lngFirstByte, range.lngLastByte);
}

TEST(FillRange, LeavesTheLastByteBehindABitPhase) {
  ByteArray arr = EmptyStream();
  FillRange(arr, ByteRange(3, BitByteIndex(16)), True);
  EXPECT_EQ(BitsOf(arr, 24), "00111111 00000000 00000000");
}

TEST(FillRange, ReachesTheLastByteFromAByteStart) {
  ByteArray arr = EmptyStream();
  FillRange(arr, ByteRange(9, BitByteIndex(16)), True);
  EXPECT_EQ(BitsOf(arr, 24), "00000000 11111111 00000000");
}

TEST(FillRange, ReachesTwoWholeBytesBehindABitPhase) {
  ByteArray arr = EmptyStream();
  FillRange(arr, ByteRange(3, BitByteIndex(24)), True);
  EXPECT_EQ(BitsOf(arr, 32), "00111111 11111111 11111111 00000000");
}

TEST(FillRange, PassesTheLengthUpToTheEndOfItsByte) {
  ByteArray arr = EmptyStream();
  FillRange(arr, ByteRange(10, BitByteIndex(11)), True);
  EXPECT_EQ(BitsOf(arr, 24), "00000000 01111111 00000000");
}

TEST(InvertRange, WorksOnTheSameSplit) {
  ByteArray arr = StreamOf("10101010 11110000 00001111");
  InvertRange(arr, ByteRange(4, BitByteIndex(24)));
  EXPECT_EQ(BitsOf(arr, 24), "10110101 00001111 11110000");
  InvertRange(arr, ByteRange(4, BitByteIndex(16)));
  EXPECT_EQ(BitsOf(arr, 24), "10101010 00001111 11110000");
}

TEST(InsertBit, DoublesTheBitAtTheStartAndDropsTheLast) {
  ByteArray arr = StreamOf("01101001 01110");
  InsertBit(arr, 4, 12);
  EXPECT_EQ(BitsOf(arr, 13), "01100100 10110");
}

TEST(InsertBit, AtTheLastAddressChangesNothing) {
  ByteArray arr = StreamOf("01101001 0111");
  InsertBit(arr, 12, 12);
  EXPECT_EQ(BitsOf(arr, 12), "01101001 0111");
}

TEST(DeleteBit, ClosesTheGapAndDoublesTheLast) {
  ByteArray arr = StreamOf("01101001 01101");
  DeleteBit(arr, 4, 11);
  EXPECT_EQ(BitsOf(arr, 13), "01110010 11101");
}

TEST(DeleteBit, AtTheLastAddressTakesTheBitBefore) {
  ByteArray arr = StreamOf("01101001 0110");
  DeleteBit(arr, 12, 12);
  EXPECT_EQ(BitsOf(arr, 12), "01101001 0111");
  arr = StreamOf("01101001 0101");
  DeleteBit(arr, 12, 12);
  EXPECT_EQ(BitsOf(arr, 12), "01101001 0100");
}

TEST(SetClockBits, PhaseCountsFromAddressOne) {
  ByteArray arr = EmptyStream();
  SetClockBits(arr, 4, 6, 4);
  EXPECT_EQ(BitsOf(arr, 8), "00001100");
}

TEST(SetClockBits, OddPeriodHasOneMoreZero) {
  ByteArray arr = EmptyStream();
  SetClockBits(arr, 1, 16, 5);
  EXPECT_EQ(BitsOf(arr, 16), "11000110 00110001");
}

TEST(SetClockBits, ClearsNothing) {
  ByteArray arr = StreamOf("00010001 0001");
  SetClockBits(arr, 1, 12, 4);
  EXPECT_EQ(BitsOf(arr, 12), "11011101 1101");
}

TEST(SetClockBits, PeriodLongerThanThePatternIsHighInItsFirstHalf) {
  ByteArray arr = EmptyStream();
  SetClockBits(arr, 1, 16, 20);
  EXPECT_EQ(BitsOf(arr, 24), "11111111 11000000 00000000");
}

TEST(SetClockBits, PeriodBelowTwoSetsNothingAndZeroFails) {
  ByteArray arr = EmptyStream();
  SetClockBits(arr, 1, 16, 1);
  SetClockBits(arr, 1, 16, -4);
  EXPECT_EQ(BitsOf(arr, 16), "00000000 00000000");
  SetClockBits(arr, 17, 16, 0);
  try {
    SetClockBits(arr, 1, 16, 0);
    FAIL() << "a period of 0 was taken";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 11);
  }
}

}  // namespace
}  // namespace tarvik::test
