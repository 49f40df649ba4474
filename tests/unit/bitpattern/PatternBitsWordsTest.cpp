// The operations work on whole machine words. Here each is compared with the same operation written plainly, one
// address after the other, for every start in patterns of every small length and of the lengths around the largest.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "BitText.h"

namespace tarvik::test {
namespace {

using Operation = void (*)(ByteArray &arr, Long lngStart, Long lngLength, Long lngParam);

bool Bit(const ByteArray &arr, Long a) {
  const int byte = arr.Elements()[static_cast<std::size_t>((a - 1) / 8)];
  return (byte >> (7 - (a - 1) % 8)) & 1;
}

void PutBit(ByteArray &arr, Long a, bool fValue) {
  Byte &byte = arr.Elements()[static_cast<std::size_t>((a - 1) / 8)];
  const int mask = 1 << (7 - (a - 1) % 8);
  byte = static_cast<Byte>(fValue ? byte | mask : byte & ~mask);
}

/// Calls the change for each address that an operation from lngStart to the end reaches.
template <class Change>
void ForEachReached(Long lngStart, Long lngLength, Change change) {
  const Long lngLastByte = (lngLength - 1) / 8 + 1;
  Long a = lngStart;
  if (lngStart % 8 != 1) {
    while (a % 8 != 1) change(a++);
    if ((a - 1) / 8 + 1 == lngLastByte) return;
  }
  for (; a <= lngLastByte * 8; ++a) change(a);
}

void PlainFill0(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  ForEachReached(lngStart, lngLength, [&](Long a) { PutBit(arr, a, false); });
}

void PlainFill1(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  ForEachReached(lngStart, lngLength, [&](Long a) { PutBit(arr, a, true); });
}

void PlainInvert(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  ForEachReached(lngStart, lngLength, [&](Long a) { PutBit(arr, a, !Bit(arr, a)); });
}

void PlainInsert(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  for (Long a = lngLength; a >= lngStart + 1; --a) PutBit(arr, a, Bit(arr, a - 1));
}

void PlainDelete(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  for (Long a = lngStart; a <= lngLength - 1; ++a) PutBit(arr, a, Bit(arr, a + 1));
  PutBit(arr, lngLength, Bit(arr, lngLength - 1));
}

void PlainClock(ByteArray &arr, Long lngStart, Long lngLength, Long lngPeriod) {
  for (Long a = lngStart; a <= lngLength; ++a)
    if ((a - 1) % lngPeriod + 1 <= lngPeriod / 2) PutBit(arr, a, true);
}

void Fill0(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  FillRange(arr, ByteRange(lngStart, BitByteIndex(lngLength)), False);
}

void Fill1(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  FillRange(arr, ByteRange(lngStart, BitByteIndex(lngLength)), True);
}

void Invert(ByteArray &arr, Long lngStart, Long lngLength, Long) {
  InvertRange(arr, ByteRange(lngStart, BitByteIndex(lngLength)));
}

void Insert(ByteArray &arr, Long lngStart, Long lngLength, Long) { InsertBit(arr, lngStart, lngLength); }
void Delete(ByteArray &arr, Long lngStart, Long lngLength, Long) { DeleteBit(arr, lngStart, lngLength); }

struct Pair {
  const char *strName;
  Operation byWords;
  Operation plain;
  std::vector<Long> arrParams;

  friend void PrintTo(const Pair &pair, std::ostream *os) { *os << pair.strName; }
};

class ByWords : public testing::TestWithParam<Pair> {
 protected:
  ByWords() {
    std::mt19937 random(20011);
    for (Byte &byte : m_arrNoise.Elements()) byte = static_cast<Byte>(random());
  }

  void Compare(Long lngStart, Long lngLength) {
    for (const Long lngParam : GetParam().arrParams) {
      ByteArray arrWords = m_arrNoise, arrPlain = m_arrNoise;
      GetParam().byWords(arrWords, lngStart, lngLength, lngParam);
      GetParam().plain(arrPlain, lngStart, lngLength, lngParam);
      ASSERT_TRUE(arrWords.Elements() == arrPlain.Elements())
          << "start " << lngStart << ", length " << lngLength << ", parameter " << lngParam << ", first different byte "
          << FirstDifference(arrWords, arrPlain);
    }
  }

 private:
  static std::ptrdiff_t FirstDifference(const ByteArray &arr, const ByteArray &arrOther) {
    const auto &bytes = arr.Elements();
    return std::mismatch(bytes.begin(), bytes.end(), arrOther.Elements().begin()).first - bytes.begin() + 1;
  }

  ByteArray m_arrNoise = EmptyStream();
};

TEST_P(ByWords, EqualsOneAddressAfterTheOtherInSmallPatterns) {
  for (Long lngLength = 2; lngLength <= 200; ++lngLength)
    for (Long lngStart = 1; lngStart <= lngLength; ++lngStart) ASSERT_NO_FATAL_FAILURE(Compare(lngStart, lngLength));
}

TEST_P(ByWords, EqualsOneAddressAfterTheOtherAroundTheLargestPattern) {
  for (Long lngLength = 16367; lngLength <= 16384; ++lngLength) {
    for (Long lngStart = 1; lngStart <= 17; ++lngStart) ASSERT_NO_FATAL_FAILURE(Compare(lngStart, lngLength));
    for (Long lngStart = lngLength - 17; lngStart <= lngLength; ++lngStart)
      ASSERT_NO_FATAL_FAILURE(Compare(lngStart, lngLength));
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, ByWords,
                         testing::Values(Pair{"Fill0", Fill0, PlainFill0, {0}}, Pair{"Fill1", Fill1, PlainFill1, {0}},
                                         Pair{"Invert", Invert, PlainInvert, {0}},
                                         Pair{"InsertBit", Insert, PlainInsert, {0}},
                                         Pair{"DeleteBit", Delete, PlainDelete, {0}},
                                         Pair{"ShortClock", SetClockBits, PlainClock, {2, 3, 4, 7, 8, 13}},
                                         Pair{"LongClock", SetClockBits, PlainClock, {63, 64, 65, 100, 1001, 16384}}),
                         [](const auto &row) { return std::string(row.param.strName); });

TEST(SetClockBits, EveryPeriodOverTheWholePattern) {
  for (Long lngPeriod = 2; lngPeriod <= 16384; lngPeriod += lngPeriod < 600 ? 1 : 271) {
    ByteArray arrWords = EmptyStream(), arrPlain = EmptyStream();
    SetClockBits(arrWords, 1, 16384, lngPeriod);
    PlainClock(arrPlain, 1, 16384, lngPeriod);
    ASSERT_TRUE(arrWords.Elements() == arrPlain.Elements()) << "period " << lngPeriod;
  }
}

}  // namespace
}  // namespace tarvik::test
