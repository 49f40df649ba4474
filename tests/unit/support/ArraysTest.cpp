#include <gtest/gtest.h>

#include "support/DynamicArray.h"
#include "support/RunTimeError.h"

namespace tarvik::test {
namespace {

/// Number of the error that reading this place raises; 0 for none.
template <class Array>
Long FailureAt(const Array &arr, Long lngIndex) {
  try {
    static_cast<void>(arr[lngIndex]);
    return 0;
  } catch (const RunTimeError &error) {
    return error.Number();
  }
}

TEST(DynamicArray, IsReadAndWrittenWithinItsBounds) {
  ByteArray arr(3, {7, 8, 9});
  EXPECT_EQ(arr.LowerBound(), 3);
  EXPECT_EQ(arr.UpperBound(), 5);
  EXPECT_EQ(arr.Count(), 3);
  EXPECT_EQ(arr[3], 7);
  EXPECT_EQ(arr[5], 9);
  arr[4] = 80;
  EXPECT_EQ(arr.Elements(), (std::vector<Byte>{7, 80, 9}));
  EXPECT_EQ(FailureAt(arr, 2), 9);
  EXPECT_EQ(FailureAt(arr, 6), 9);
}

TEST(DynamicArray, NewBoundsLoseWhatWasInIt) {
  ByteArray arr(0, {1, 2, 3});
  arr.ReDim(-1, 2);
  EXPECT_EQ(arr.LowerBound(), -1);
  EXPECT_EQ(arr.UpperBound(), 2);
  EXPECT_EQ(arr.Elements(), (std::vector<Byte>{0, 0, 0, 0}));
  arr.ReDim(5, 4);
  EXPECT_EQ(arr.Count(), 0);
  EXPECT_EQ(FailureAt(arr, 5), 9);
}

TEST(DynamicArray, OneWithoutOrWithTwoDimensionsFailsAtEachAccessUntilItGetsBounds) {
  for (const Integer intDimensions : {Integer{0}, Integer{2}}) {
    auto arr = BooleanArray::WithDimensions(intDimensions);
    EXPECT_EQ(arr.Dimensions(), intDimensions);
    arr.Elements().push_back(True);
    EXPECT_EQ(FailureAt(arr, 0), 9);
    arr.ReDim(0, 1);
    EXPECT_EQ(arr.Dimensions(), 1);
    EXPECT_EQ(FailureAt(arr, 1), 0);
  }
}

TEST(DynamicArray, IsEmptyFromZeroAtFirst) {
  const ByteArray arr;
  EXPECT_EQ(arr.Dimensions(), 1);
  EXPECT_EQ(arr.LowerBound(), 0);
  EXPECT_EQ(arr.UpperBound(), -1);
}

TEST(ChannelArray, HasTheChannelsOneAndTwo) {
  ChannelArray<Long> arr(10, 20);
  EXPECT_EQ(arr[1], 10);
  EXPECT_EQ(arr[2], 20);
  arr[2] = 21;
  EXPECT_EQ(arr, (ChannelArray<Long>(10, 21)));
  EXPECT_EQ(FailureAt(arr, 0), 9);
  EXPECT_EQ(FailureAt(arr, 3), 9);
}

}  // namespace
}  // namespace tarvik::test
