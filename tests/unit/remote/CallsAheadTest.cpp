#include "automation/CallsAhead.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ServedInstrument.h"
#include "automation/Object.h"

namespace tarvik::remote {
namespace {

using namespace kolven;
using automation::CallsAhead;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

/// An operation of many calls on an instrument behind a server, call by call and rehearsed.
class RehearsedOnServer : public ServedInstrument {
 protected:
  using Operation = std::function<void()>;

  /// The operation's failure; empty when it has run to its end.
  static std::string FailureOf(const Operation &operation) {
    try {
      operation();
    } catch (const RunTimeError &error) {
      return std::to_string(error.Number()) + " " + error.Description();
    }
    return {};
  }
  Cost CallByCall(const Operation &operation) {
    return Of([&] { return FailureOf(operation); });
  }
  Cost Rehearsed(const Operation &operation) {
    return Of([&] {
      const CallsAhead ahead(instrument, operation);
      return FailureOf(operation);
    });
  }
  void SetWidths() const {
    for (Long i = 1; i <= 2; ++i) {
      const auto timing = Timing(i);
      Call(timing, &IChannelTiming::SetWidth, 1e-7 * i);
      CallSelected(Fetch(timing, &IChannelTiming::GetEdges), &IEdges::SetLeading, 1e-9 * i);
    }
  }
  bool IsOpenAtDriver() const {
    Integer intUnused = 0;
    VariantBool fIsOpen = 0;
    Call(instrument, &IInstrument::GetTransactionState, &intUnused, &fIsOpen);
    return fIsOpen != 0;
  }
  void Begin() const {
    Call(instrument, &IInstrument::Transaction, TransactionAbort);
    if (!IsOpenAtDriver()) Call(instrument, &IInstrument::Transaction, TransactionBegin);
  }
  void SetChannels() const {
    const auto channels = Fetch(instrument, &IInstrument::GetChannels);
    const Long lngCount = Read(channels, &IChannelList::GetCount);
    for (Long i = 1; i <= lngCount; ++i)
      Call(Fetch(channels, &IChannelList::GetItem, i), &IChannel::SetSignalFormat, 1);
  }
};

TEST_F(RehearsedOnServer, OperationCostsOneRoundTripAndTheDriverSeesTheSame) {
  const Cost plain = CallByCall([&] { SetWidths(); });
  const Cost together = Rehearsed([&] { SetWidths(); });
  EXPECT_EQ(plain.lngTrips, 4u);
  EXPECT_EQ(together.lngTrips, 1u);
  EXPECT_EQ(together.arrCalls, plain.arrCalls);
  EXPECT_EQ(together.strRead, "");
  EXPECT_THAT(server.LogText(), Not(HasSubstr("not taken")));
  EXPECT_EQ(Read(Timing(2), &IChannelTiming::GetWidth), 2e-7);
}

TEST_F(RehearsedOnServer, FailureOfEachCallIsToldAtThatCallAndNothingBehindItReachesTheDriver) {
  const std::size_t lngCalls = CallByCall([&] { SetWidths(); }).arrCalls.size();
  ASSERT_EQ(lngCalls, 12u);
  for (int k = 1; k <= static_cast<int>(lngCalls); ++k) {
    SCOPED_TRACE(k);
    driver.FailAt(k, {-2147221000, "not this one"});
    const Cost plain = CallByCall([&] { SetWidths(); });
    driver.FailAt(k, {-2147221000, "not this one"});
    const Cost together = Rehearsed([&] { SetWidths(); });
    EXPECT_EQ(plain.strRead, "-2147221000 not this one");
    EXPECT_EQ(together.strRead, plain.strRead);
    EXPECT_EQ(together.arrCalls, plain.arrCalls);
  }
  // Nothing was given a number that the server does not know.
  EXPECT_EQ(Rehearsed([&] { SetWidths(); }).strRead, "");
}

TEST_F(RehearsedOnServer, OperationGoesOnBehindAFailureThatItBearsAndBehindWhatComesBetween) {
  const auto bearing = [&] {
    try {
      Call(Timing(1), &IChannelTiming::SetWidth, 1e-7);
    } catch (const RunTimeError &) {
      Read(instrument, &IInstrument::GetName);
    }
    SetWidths();
  };
  const auto fail = [&] { driver.FailMatching("IChannelTiming.SetWidth", 1, {-2147221000, "not now"}); };
  fail();
  const Cost plain = CallByCall(bearing);
  fail();
  const Cost together = Rehearsed(bearing);
  EXPECT_EQ(plain.lngTrips, 6u);
  EXPECT_EQ(together.lngTrips, 3u);  // as far as the failure, the name, the rest
  EXPECT_EQ(together.arrCalls, plain.arrCalls);
}

TEST_F(RehearsedOnServer, StateOfTheTransactionIsForeseenAndOneThatIsOpenAllTheSameIsTakenOver) {
  EXPECT_EQ(Rehearsed([&] { Begin(); }).lngTrips, 1u);
  EXPECT_TRUE(IsOpenAtDriver());

  driver.FailMatching("IInstrument.Transaction(2)", 1, {-2147221000, "no abort"});
  const auto begin = [&] {
    IgnoreErrors([&] { Call(instrument, &IInstrument::Transaction, TransactionAbort); });
    if (!IsOpenAtDriver()) Call(instrument, &IInstrument::Transaction, TransactionBegin);
  };
  const Cost open = Rehearsed(begin);
  EXPECT_EQ(open.lngTrips, 2u);
  ASSERT_THAT(open.arrCalls, SizeIs(2));
  EXPECT_THAT(open.arrCalls[1], HasSubstr("GetTransactionState"));
}

TEST_F(RehearsedOnServer, NumberOfChannelsIsForeseenOnceItWasToldAndAnotherOneEndsTheFrame) {
  EXPECT_EQ(Rehearsed([&] { SetChannels(); }).lngTrips, 3u);
  EXPECT_EQ(Rehearsed([&] { SetChannels(); }).lngTrips, 1u);
  driver.Configure("Alpha", {{"channels", std::int64_t{1}}});
  const Cost fewer = Rehearsed([&] { SetChannels(); });
  EXPECT_EQ(fewer.lngTrips, 2u);
  EXPECT_THAT(fewer.arrCalls, SizeIs(4));
  EXPECT_THAT(server.LogText(), Not(HasSubstr("not taken")));
}

TEST_F(RehearsedOnServer, AnswerThatNobodyForeseesIsTheLastThatIsAskedAhead) {
  const auto operation = [&] {
    SetWidths();
    Read(Fetch(instrument, &IInstrument::GetErrorQueue), &IErrorQueue::GetWarnings);
    SetWidths();
  };
  const Cost plain = CallByCall(operation), together = Rehearsed(operation);
  EXPECT_EQ(plain.lngTrips, 9u);
  EXPECT_EQ(together.lngTrips, 1u + 4u);
  EXPECT_EQ(together.arrCalls, plain.arrCalls);
}

TEST_F(RehearsedOnServer, DeedsAreNeverMadeAhead) {
  const auto operation = [&] {
    SetWidths();
    Call(instrument, &IInstrument::Reset);
    SetWidths();
  };
  EXPECT_EQ(Rehearsed(operation).arrCalls, CallByCall(operation).arrCalls);
  driver.TakeTrace();
  { const CallsAhead ahead(instrument, operation); }
  SynchroniseConnections();
  EXPECT_THAT(driver.TakeTrace(), SizeIs(0));
}

TEST_F(RehearsedOnServer, CallsBeyondOneFrameTakeSeveral) {
  const auto operation = [&] {
    const auto timing = Timing(1);
    for (int i = 1; i <= 600; ++i) Call(timing, &IChannelTiming::SetWidth, 1e-9 * i);
  };
  const Cost plain = CallByCall(operation), together = Rehearsed(operation);
  EXPECT_EQ(plain.lngTrips, 600u);
  EXPECT_EQ(together.lngTrips, 3u);
  EXPECT_EQ(together.arrCalls, plain.arrCalls);
}

TEST_F(RehearsedOnServer, PatternsBeyondTheBytesOfOneFrameTakeSeveral) {
  const auto operation = [&] {
    const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
    for (Long lngRow = 1; lngRow <= 3; ++lngRow) {
      automation::ArrayOwner array{ByteArray(0, std::vector<Byte>(300'000, static_cast<Byte>(lngRow)))};
      Call(memory, &IPatternMemory::SetPattern, lngRow, PatternForm, array.InOut(), 300'000);
    }
  };
  EXPECT_EQ(Rehearsed(operation).lngTrips, 3u);
  for (std::size_t row = 0; row < 3; ++row)
    EXPECT_EQ(driver.Find("Alpha")->settings.rows[row].arrBytes,
              std::vector<Byte>(300'000, static_cast<Byte>(row + 1)));
}

TEST_F(RehearsedOnServer, ServerThatIsGoneIsToldByTheFirstCall) {
  const CallsAhead ahead(instrument, [&] { SetWidths(); });
  server->Stop();
  EXPECT_THAT(FailureOf([&] { SetWidths(); }), HasSubstr("has gone"));
  EXPECT_THAT(FailureOf([&] { SetWidths(); }), HasSubstr("has gone"));
  bool fSecond = false;
  EXPECT_THAT(FailureOf([&] {
                const CallsAhead again(instrument, [&] { SetWidths(); });
                fSecond = true;
                SetWidths();
              }),
              HasSubstr("has gone"));
  EXPECT_TRUE(fSecond);
}

TEST_F(RehearsedOnServer, OfTwoWithinOneAnotherTheOuterCounts) {
  const Cost cost = Of([&] {
    const CallsAhead ahead(instrument, [&] { SetWidths(); });
    const CallsAhead inner(instrument, [&] { ADD_FAILURE() << "rehearsed within another"; });
    SetWidths();
    return std::string();
  });
  EXPECT_EQ(cost.lngTrips, 1u);
}

TEST(CallsAheadHere, DriverOfThisMachineIsNotRehearsedWith) {
  test::StandInDriver driver;
  driver.Add("Alpha");
  const auto root = automation::Narrow<IDriverRoot>(driver.Create(DriverProgId, {}));
  const CallsAhead ahead(root, [] { ADD_FAILURE(); });
  const CallsAhead none(Ref<IInstrument>(), [] { ADD_FAILURE(); });
}

/// A driver's object that answers to every interface, known or not.
class Obliging final : public automation::Object<IRestrictions> {
 public:
  Status TARVIK_CALL QueryInterface(const automation::Guid &, void **ppvObject) override {
    AddRef();
    *ppvObject = this;
    return automation::StatusOk;
  }
  Status TARVIK_CALL GetMask(Long *) override { return automation::StatusNotImplemented; }
};

TEST(CallsAheadHere, DriverThatAnswersToEveryInterfaceIsNotRehearsedWith) {
  const CallsAhead ahead(automation::MakeObject<Obliging>(), [] { ADD_FAILURE() << "its calls would be made twice"; });
}

}  // namespace
}  // namespace tarvik::remote
