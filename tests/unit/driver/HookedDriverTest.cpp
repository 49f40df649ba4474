#include "HookedDriver.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>

#include "OperationTable.h"
#include "StandInEffects.h"
#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "instrument/DriverCall.h"

namespace tarvik::test {
namespace {

using namespace kolven;
using automation::Ref;
using testing::ElementsAre;

/// Writes down what comes to the hook, and answers as the test says.
struct NotingHook : DriverHook {
  automation::Status Run(HookedCall &call) override {
    arrPaths.emplace_back(call.operation.strPath);
    return answer ? answer(call) : Handed(call);
  }
  void CountReference(std::string_view strInterface, int intStep) override {
    references[std::string(strInterface)] += intStep;
  }
  static automation::Status Handed(HookedCall &call) {
    if (call.operation.strPath == "IInstrumentList.GetItem")
      call.Hand(std::make_shared<HookedInstrument>());
    else if (call.operation.HandsObject())
      call.Hand();
    return automation::StatusOk;
  }

  std::vector<std::string> arrPaths;
  std::map<std::string, int> references;
  std::function<automation::Status(HookedCall &)> answer;
};

/// An object behind the interface, got as a caller gets it.
struct HookedDriver : testing::Test {
  Ref<IInstrument> Instrument() {
    const auto list = Fetch(automation::Narrow<IDriverRoot>(MakeHookedRoot(hook)), &IDriverRoot::GetInstruments);
    AutomationVariant key{};
    key.vt = automation::VtInteger;
    key.iVal = 1;
    return automation::Narrow<IInstrument>(Fetch(list, &IInstrumentList::GetItem, key));
  }
  Ref<IChannel> Channel(Long lngChannel) {
    return Fetch(Fetch(Instrument(), &IInstrument::GetChannels), &IChannelList::GetItem, lngChannel);
  }

  NotingHook hook;
};

TEST_F(HookedDriver, EachCallOfEachObjectComesToTheHook) {
  Call(Fetch(Fetch(Channel(2), &IChannel::GetTiming), &IChannelTiming::GetEdges), &IEdges::SetCoupling, 1);
  EXPECT_THAT(hook.arrPaths, ElementsAre("IDriverRoot.GetInstruments", "IInstrumentList.GetItem",
                                         "IInstrument.GetChannels", "IChannelList.GetItem", "IChannel.GetTiming",
                                         "IChannelTiming.GetEdges", "IEdges.SetCoupling"));
}

TEST_F(HookedDriver, ObjectKnowsItsChannelAndWhatIsLimited) {
  const auto limits = Fetch(Fetch(Channel(2), &IChannel::GetCurrentLimits), &ILimitGroup::GetLimits);
  hook.answer = [](HookedCall &call) {
    EXPECT_EQ(call.place.lngChannel, 2);
    EXPECT_EQ(call.place.strQuantity, "current");
    EXPECT_EQ(call.InLast<Double>(), 0.25);
    return automation::StatusOk;
  };
  Call(limits, &ILimitPair::SetHigh, 0.25);
  EXPECT_EQ(hook.arrPaths.back(), "ILimitPair.SetHigh");
}

TEST_F(HookedDriver, ValuesGoInAndResultsComeBack) {
  const auto instrument = Instrument();
  hook.answer = [](HookedCall &call) {
    EXPECT_TRUE(call.In<bool>(0));
    EXPECT_FALSE(call.In<bool>(1));
    EXPECT_EQ(call.Given().size(), 3u);
    call.Fill(true);
    return automation::StatusOk;
  };
  VariantBool opened = 0;
  Call(instrument, &IInstrument::Open, VariantBool{-1}, VariantBool{0}, VariantBool{-1}, &opened);
  EXPECT_EQ(opened, -1);

  hook.answer = [](HookedCall &call) {
    call.Fill(3, "passed");
    EXPECT_THAT(call.Filled(), ElementsAre(Value(Long{3}), Value("passed")));
    return automation::StatusOk;
  };
  Integer intCode = 0;
  automation::String text;
  Call(instrument, &IInstrument::SelfTest, &intCode, text.Out());
  EXPECT_EQ(intCode, 3);
  EXPECT_EQ(text.Text(), "passed");
}

TEST_F(HookedDriver, FilledArrayIsTheCallersAndAReplacedOneHasItsOwnBounds) {
  const auto memory = Fetch(Instrument(), &IInstrument::GetPatternMemory);
  automation::ArrayOwner array(ByteArray(1, {1, 2, 3}));
  const auto *pMine = array.Get();
  hook.answer = [](HookedCall &call) {
    EXPECT_EQ(call.In<std::vector<Byte>>(3), (std::vector<Byte>{1, 2, 3}));
    call.FillBytes({7, 8, 9, 10});
    return automation::StatusOk;
  };
  Call(memory, &IPatternMemory::CalcPrbs, 1, 24, 7, array.InOut());
  EXPECT_EQ(array.Get(), pMine);
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{7, 8, 9}));

  hook.answer = [](HookedCall &call) {
    EXPECT_EQ(call.LowerBound(), 1);
    call.ReplaceBytes(0, {5});
    call.Fill(8);
    return automation::StatusOk;
  };
  Long lngLength = 0;
  Call(memory, &IPatternMemory::GetPattern, 1, PatternForm, array.InOut(), &lngLength);
  EXPECT_EQ(automation::ToByteArray(array.Get()).LowerBound(), 0);
  EXPECT_EQ(automation::ToByteArray(array.Get()).Elements(), (std::vector<Byte>{5}));
  EXPECT_EQ(lngLength, 8);
}

TEST_F(HookedDriver, ResultThatDoesNotFitItsPlaceIsAnErrorOfThePolicy) {
  const auto instrument = Instrument();
  hook.answer = [](HookedCall &call) {
    EXPECT_THROW(call.Fill("text"), std::logic_error);
    EXPECT_THROW(call.Fill(1), std::logic_error) << "the one result is filled";
    EXPECT_THROW(call.HandUnknown(), std::logic_error);
    return automation::StatusOk;
  };
  Long lngMath = 0;
  Call(instrument, &IInstrument::GetChannelMath, &lngMath);
}

TEST_F(HookedDriver, ReferencesAreCountedByInterface) {
  {
    const auto channel = Channel(1);
    const auto same = channel;
    EXPECT_EQ(hook.references["IChannel"], 2);
  }
  for (const auto &[strInterface, intCount] : hook.references) EXPECT_EQ(intCount, 0) << strInterface;
}

TEST(OperationTable, RefusesAnEntryForAnOperationThatTheContractDoesNotHave) {
  OperationTable<int> table;
  EXPECT_THROW(table["IEdges.GetMiddle"] = 1, std::invalid_argument);
  EXPECT_NO_THROW(table["IEdges.GetLeading"] = 1);
}

TEST(StandInDriver, HasAnEffectForEachOperationOfTheContract) {
  EXPECT_EQ(Operations().size(), 121u);
  for (const Operation &operation : Operations()) EXPECT_TRUE(StandInEffectOf(operation)) << operation.strPath;
}

}  // namespace
}  // namespace tarvik::test
