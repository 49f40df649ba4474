#include <gtest/gtest.h>

#include <functional>

#include "remote/Marshal.h"

namespace tarvik::remote {
namespace {

using automation::ArrayOwner;

/// What a driver of a server does with the array of a call.
using Driver = std::function<void(AutomationArray **)>;

/// Hands the caller's array over the wire, and what the driver made of it back.
void ReturnThrough(ArrayOwner &array, const Driver &driver) {
  using Place = AutomationArray **;
  Writer request;
  Outgoing<Place>::Send(request, array.InOut());
  const std::string strRequest = request.Take();
  Reader arriving(strRequest);
  Incoming<Place> argument(arriving);
  driver(argument.Pass());
  Writer answer;
  argument.Return(answer, false);
  const std::string strAnswer = answer.Take();
  Reader returning(strAnswer);
  Outgoing<Place>::Store(returning, array.InOut());
  EXPECT_TRUE(returning.AtEnd());
}

void Replace(AutomationArray **ppArray, const ByteArray &arr) {
  automation::FreeArray(*ppArray);
  *ppArray =
      automation::AllocByteArray(arr.LowerBound(), arr.Elements().data(), static_cast<std::uint32_t>(arr.Count()));
}

TEST(ArrayReturn, AnArrayComesBackWithTheLowerBoundThatTheDriverGaveIt) {
  ArrayOwner array(ByteArray(1, {7, 8, 9}));
  ReturnThrough(array, [](AutomationArray **ppArray) {
    EXPECT_EQ(automation::ToByteArray(*ppArray).LowerBound(), 1);
    Replace(ppArray, ByteArray(0, {7, 8, 9}));
  });
  const ByteArray arr = automation::ToByteArray(array.Get());
  EXPECT_EQ(arr.LowerBound(), 0) << "the bytes are the same and their number, too";
  EXPECT_EQ(arr.Elements(), (std::vector<Byte>{7, 8, 9}));

  ReturnThrough(array, [](AutomationArray **ppArray) { Replace(ppArray, ByteArray(-5, {1, 2, 3})); });
  EXPECT_EQ(automation::ToByteArray(array.Get()).LowerBound(), -5);
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{1, 2, 3}));
}

TEST(ArrayReturn, NewBytesWithinTheSameBoundsGoIntoTheCallersOwnMemory) {
  ArrayOwner array(ByteArray(1, {7, 8, 9}));
  const void *pMemory = array.Get()->pvData;
  ReturnThrough(array, [](AutomationArray **ppArray) { Replace(ppArray, ByteArray(1, {1, 0, 255})); });
  EXPECT_EQ(array.Get()->pvData, pMemory);
  EXPECT_EQ(automation::ToByteArray(array.Get()).LowerBound(), 1);
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{1, 0, 255}));
}

TEST(ArrayReturn, AnotherNumberOfBytesReplacesTheArray) {
  ArrayOwner array(ByteArray(1, {7, 8, 9}));
  ReturnThrough(array, [](AutomationArray **ppArray) { Replace(ppArray, ByteArray(1, {5})); });
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{5}));
  ReturnThrough(array, [](AutomationArray **ppArray) { Replace(ppArray, ByteArray(1, {5, 6, 7, 8})); });
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{5, 6, 7, 8}));
}

TEST(ArrayReturn, AnArrayThatTheDriverTakesAwayOrBringsIsGoneOrThere) {
  ArrayOwner array(ByteArray(1, {7, 8, 9}));
  ReturnThrough(array, [](AutomationArray **ppArray) { automation::FreeArray(std::exchange(*ppArray, nullptr)); });
  EXPECT_EQ(array.Get(), nullptr);
  ReturnThrough(array, [](AutomationArray **ppArray) {
    EXPECT_EQ(*ppArray, nullptr);
    Replace(ppArray, ByteArray(2, {4, 5}));
  });
  EXPECT_EQ(automation::ToByteArray(array.Get()).LowerBound(), 2);
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{4, 5}));
}

TEST(ArrayReturn, AnArrayThatTheDriverOnlyReadsDoesNotTravelBack) {
  ArrayOwner array(ByteArray(1, {7, 8, 9}));
  Writer request, answer;
  PutArray(request, array.Get());
  Reader arriving(request.Bytes());
  Incoming<AutomationArray **> argument(arriving);
  argument.Return(answer, false);
  EXPECT_EQ(answer.Size(), 1u);
}

}  // namespace
}  // namespace tarvik::remote
