#include "automation/ReadAhead.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ServedInstrument.h"

namespace tarvik::remote {
namespace {

using namespace kolven;
using testing::HasSubstr;
using testing::Not;

/// Reads of an instrument behind a server, as the order of a name that no other test has.
class ReadingAheadOnServer : public ServedInstrument {
 protected:
  std::string Reads(Long lngLast = 2) const {
    std::string strRead = Read(instrument, &IInstrument::GetIdentity);
    for (Long i = 1; i <= lngLast; ++i) {
      const auto timing = Timing(i);
      strRead += " " + std::to_string(Read(timing, &IChannelTiming::GetWidth));
      strRead += " " + std::to_string(ReadSelected(Fetch(timing, &IChannelTiming::GetEdges), &IEdges::GetLeading));
    }
    return strRead;
  }
  /// The same within an order of this test's name.
  Cost Ahead(const std::function<std::string()> &work) {
    return Of([&] {
      const automation::ReadAhead ahead(testing::UnitTest::GetInstance()->current_test_info()->name());
      return work();
    });
  }
};

TEST_F(ReadingAheadOnServer, AnOrderThatIsKnownCostsOneRoundTripAndTheDriverSeesTheSame) {
  const Cost plain = Of([&] { return Reads(); });
  const Cost first = Ahead([&] { return Reads(); });
  const Cost known = Ahead([&] { return Reads(); });
  EXPECT_EQ(plain.lngTrips, 5u);
  EXPECT_EQ(first.lngTrips, 5u);
  EXPECT_EQ(known.lngTrips, 1u);
  for (const Cost &cost : {first, known}) {
    EXPECT_EQ(cost.strRead, plain.strRead);
    EXPECT_EQ(cost.arrCalls, plain.arrCalls);
  }
  EXPECT_THAT(server.LogText(), Not(HasSubstr("not taken")));
}

TEST_F(ReadingAheadOnServer, ValuesAreThoseOfTheMoment) {
  Ahead([&] { return Reads(); });
  Call(Timing(2), &IChannelTiming::SetWidth, 5e-7);
  EXPECT_EQ(Ahead([&] { return std::to_string(Read(Timing(2), &IChannelTiming::GetWidth) * 1e9); }).strRead,
            std::to_string(500.0));
}

TEST_F(ReadingAheadOnServer, WhatWasAskedAheadAndNotTakenIsLetGoAndLogged) {
  Ahead([&] { return Reads(); });
  const Cost shorter = Ahead([&] { return Reads(1); });
  EXPECT_EQ(shorter.lngTrips, 1u);
  EXPECT_THAT(server.LogText(), HasSubstr("2 calls were made ahead and their answers not taken"));
  // It is known from now on.
  EXPECT_EQ(Ahead([&] { return Reads(1); }).arrCalls, Of([&] { return Reads(1); }).arrCalls);
  instrument = nullptr;
  root = nullptr;
  for (const auto &[strInterface, intCount] : driver.References()) EXPECT_EQ(intCount, 0) << strInterface;
}

TEST_F(ReadingAheadOnServer, AnotherOrderThanTheKnownOneReadsTheSameValues) {
  const auto other = [&] {
    const auto timing = Timing(2);
    return std::to_string(Read(timing, &IChannelTiming::GetFrequency)) + " " +
           std::to_string(Read(timing, &IChannelTiming::GetWidth)) + Reads(1);
  };
  const std::string strPlain = Of(other).strRead;
  Ahead([&] { return Reads(); });
  EXPECT_EQ(Ahead(other).strRead, strPlain);
  const Cost known = Ahead(other);
  EXPECT_EQ(known.strRead, strPlain);
}

TEST_F(ReadingAheadOnServer, ReadThatFailsIsToldAtItsCallAndNothingBehindItReachesTheDriver) {
  Ahead([&] { return Reads(); });
  const auto failing = [&] {
    driver.FailAt(6, {-2147221000, "not now"});
    try {
      Reads();
    } catch (const RunTimeError &error) {
      return error.Description();
    }
    return std::string();
  };
  const Cost plain = Of(failing), ahead = Ahead(failing);
  EXPECT_EQ(ahead.strRead, "not now");
  EXPECT_EQ(ahead.strRead, plain.strRead);
  EXPECT_EQ(ahead.arrCalls, plain.arrCalls);
  EXPECT_EQ(Of([&] { return Reads(); }).strRead, Ahead([&] { return Reads(); }).strRead);
}

TEST_F(ReadingAheadOnServer, SetterWithinAnOrderEndsIt) {
  const auto work = [&] {
    std::string strRead = Reads(1);
    Call(Timing(2), &IChannelTiming::SetWidth, 4e-7);
    return strRead + Reads();
  };
  const Cost plain = Of(work);
  Ahead(work);
  const Cost known = Ahead(work);
  EXPECT_EQ(known.strRead, plain.strRead);
  EXPECT_EQ(known.arrCalls, plain.arrCalls);
}

TEST_F(ReadingAheadOnServer, LostConnectionIsToldByTheReadThatMeetsIt) {
  Ahead([&] { return Reads(); });
  server->Stop();
  const automation::ReadAhead ahead(testing::UnitTest::GetInstance()->current_test_info()->name());
  EXPECT_THROW(Reads(), RunTimeError);
  EXPECT_THROW(Reads(), RunTimeError);
}

}  // namespace
}  // namespace tarvik::remote
