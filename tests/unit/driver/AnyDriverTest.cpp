#include <gmock/gmock.h>

#include <limits>
#include <set>

#include "Driver.h"

/// What the panel needs of every driver. The driver is the one that is found by its manifest, or the library that
/// TARVIK_TEST_DRIVER names, and each test takes all its instruments that can be opened.

namespace tarvik::test {
namespace {

using namespace kolven;
using namespace simulator::testing_support;
using automation::String;
using testing::IsEmpty;

struct OpenInstrument {
  std::string strName;
  Ref<IInstrument> instrument;
  Long lngMask = 0, lngChannels = 0;
};

class AnyDriver : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { PrivateDataFolder(); }
  static void TearDownTestSuite() {
    std::error_code error;
    std::filesystem::remove_all(PrivateDataFolder(), error);
  }

  static Ref<IInstrument> Item(Integer intNumber) {
    automation::AutomationVariant key{};
    key.vt = automation::VtInteger;
    key.iVal = intNumber;
    Ref<automation::IDispatch> object;
    Check(Instruments()->GetItem(key, object.Out()));
    return automation::Narrow<IInstrument>(object);
  }
  static std::string NameOf(const Ref<IInstrument> &instrument) {
    String name;
    Check(instrument->GetName(name.Out()));
    return name.Text();
  }
  template <class Body>
  void ForEach(Body body) {
    const Long lngCount = Read<Long>(Instruments(), &IInstrumentList::GetCount);
    int intOpened = 0;
    for (Integer i = 1; i <= lngCount; ++i) {
      OpenInstrument open{NameOf(Item(i)), Item(i)};
      if (!Open(open.instrument)) continue;
      ++intOpened;
      SCOPED_TRACE(open.strName);
      open.lngMask = Read<Long>(Fetch(open.instrument, &IInstrument::GetRestrictions), &IRestrictions::GetMask);
      open.lngChannels = Read<Long>(Fetch(open.instrument, &IInstrument::GetChannels), &IChannelList::GetCount);
      body(open);
      Check(open.instrument->Close());
    }
    EXPECT_GT(intOpened, 0) << "no instrument can be opened";
  }
  static bool InTransaction(const Ref<IInstrument> &instrument) {
    Integer intFirst = 0;
    VariantBool fOpen = 0;
    Check(instrument->GetTransactionState(&intFirst, &fOpen));
    return fOpen != 0;
  }
};

TEST_F(AnyDriver, EachInstrumentIsFoundByItsNumberAndByItsName) {
  const Long lngCount = Read<Long>(Instruments(), &IInstrumentList::GetCount);
  ASSERT_GT(lngCount, 0);
  std::set<std::string> names;
  for (Integer i = 1; i <= lngCount; ++i) {
    const auto byNumber = Item(i);
    ASSERT_TRUE(byNumber) << "number " << i;
    const std::string strName = NameOf(byNumber);
    EXPECT_TRUE(names.insert(strName).second) << "two are called " << strName;
    const auto byName = Find(strName);
    ASSERT_TRUE(byName) << strName;
    EXPECT_EQ(NameOf(byName), strName);
  }
  Check(Instruments()->Refresh());
}

TEST_F(AnyDriver, AKeyThatNoInstrumentHasHandsOutNothing) {
  const String name("there is none of this name");
  automation::AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = name.Get();
  Ref<automation::IDispatch> object;
  static_cast<void>(Instruments()->GetItem(key, object.Out()));
  EXPECT_FALSE(object);
}

TEST_F(AnyDriver, TheInformationRecordFillsTheCallersArrayWhateverItsLowerBound) {
  const Long lngCount = Read<Long>(Instruments(), &IInstrumentList::GetCount);
  for (Integer i = 1; i <= lngCount; ++i) {
    automation::ArrayOwner first(ByteArray(0, std::vector<Byte>(28, 0xEE))),
        second(ByteArray(1, std::vector<Byte>(28, 0x11)));
    Check(Item(i)->GetViInfo(first.InOut()));
    Check(Item(i)->GetViInfo(second.InOut()));
    EXPECT_EQ(automation::ToByteArray(first.Get()).Elements(), automation::ToByteArray(second.Get()).Elements());
    EXPECT_EQ(automation::ToByteArray(first.Get()).Count(), 28);
  }
}

TEST_F(AnyDriver, TheIdentityHasFourFields) {
  ForEach([](const OpenInstrument &open) {
    String identity;
    Check(open.instrument->GetIdentity(identity.Out()));
    const std::string strIdentity = identity.Text();
    EXPECT_GE(std::count(strIdentity.begin(), strIdentity.end(), ','), 3) << strIdentity;
    String options;
    Check(open.instrument->GetOptions(options.Out()));
  });
}

TEST_F(AnyDriver, ThereAreOneOrTwoChannelsCountedFromOne) {
  ForEach([](const OpenInstrument &open) {
    EXPECT_THAT(open.lngChannels, testing::AnyOf(1, 2));
    for (const Long lngNone : {0, open.lngChannels + 1}) {
      Ref<IChannel> channel;
      EXPECT_TRUE(
          automation::Failed(Fetch(open.instrument, &IInstrument::GetChannels)->GetItem(lngNone, channel.Out())));
      EXPECT_FALSE(channel);
    }
  });
}

TEST_F(AnyDriver, ATransactionEndsWithItsCommitItsAbortOrTheSession) {
  ForEach([](const OpenInstrument &open) {
    const auto &instrument = open.instrument;
    EXPECT_FALSE(InTransaction(instrument));
    Check(instrument->Transaction(TransactionAbort));
    Check(instrument->Transaction(TransactionBegin));
    EXPECT_TRUE(InTransaction(instrument));
    Check(instrument->Transaction(TransactionCommit));
    EXPECT_FALSE(InTransaction(instrument));
    Check(instrument->Transaction(TransactionBegin));
    Check(instrument->Transaction(TransactionAbort));
    EXPECT_FALSE(InTransaction(instrument));
    Check(instrument->Transaction(TransactionBegin));
    Check(instrument->Close());
    const auto again = Find(open.strName);
    ASSERT_TRUE(Open(again, false));
    EXPECT_FALSE(InTransaction(again));
    Check(again->Close());
    Open(instrument, false);
  });
}

TEST_F(AnyDriver, AnAbortPutsTheSettingsBack) {
  ForEach([](const OpenInstrument &open) {
    const auto timing = Fetch(Channel(open.instrument, 1), &IChannel::GetTiming);
    const Double dblBefore = Read<Double>(timing, &IChannelTiming::GetWidth);
    Check(open.instrument->Transaction(TransactionBegin));
    Check(timing->SetWidth(dblBefore * 1.25));
    Check(open.instrument->Transaction(TransactionAbort));
    EXPECT_EQ(Read<Double>(timing, &IChannelTiming::GetWidth), dblBefore);
  });
}

TEST_F(AnyDriver, ARefusedSetIsAFailingCommitWithAReasonAndLeavesTheSettings) {
  ForEach([](const OpenInstrument &open) {
    const auto timing = Fetch(Channel(open.instrument, 1), &IChannel::GetTiming);
    const Double dblBefore = Read<Double>(timing, &IChannelTiming::GetWidth);
    Check(open.instrument->Transaction(TransactionBegin));
    Check(timing->SetWidth(-1));
    EXPECT_NE(Refusal(open.instrument->Transaction(TransactionCommit)), "");
    EXPECT_FALSE(InTransaction(open.instrument));
    EXPECT_EQ(Read<Double>(timing, &IChannelTiming::GetWidth), dblBefore);
  });
}

/// Reads what the panel reads and sends it back, one block a procedure.
void SendBackTiming(const OpenInstrument &open, Long lngChannel) {
  const auto timing = Fetch(Channel(open.instrument, lngChannel), &IChannel::GetTiming);
  const auto edges = Fetch(timing, &IChannelTiming::GetEdges);
  Long lngSelector = 0;
  Double dblLeading = 0, dblTrailing = 0, dblDelay = 0;
  Check(edges->GetLeading(&lngSelector, &dblLeading));
  Check(edges->GetTrailing(&lngSelector, &dblTrailing));
  Check(edges->SetLeading(&lngSelector, dblLeading));
  Check(edges->SetTrailing(&lngSelector, dblTrailing));
  if (!(open.lngMask & eLacksTrailingEdge)) Check(edges->SetCoupling(Read<Long>(edges, &IEdges::GetCoupling)));
  Check(timing->SetWidth(Read<Double>(timing, &IChannelTiming::GetWidth)));
  // By way of the period, which the page shows.
  Check(timing->SetFrequency(1 / (1 / Read<Double>(timing, &IChannelTiming::GetFrequency))));
  const auto twice = Fetch(timing, &IChannelTiming::GetDoublePulse);
  if (Read<VariantBool>(twice, &IDoublePulse::GetEnabled)) {
    Check(twice->GetDelay(&lngSelector, &dblDelay));
    Check(twice->SetDelay(&lngSelector, dblDelay));
  } else {
    const auto once = Fetch(timing, &IChannelTiming::GetSinglePulse);
    Check(once->GetDelay(&lngSelector, &dblDelay));
    Check(once->SetDelay(&lngSelector, dblDelay));
  }
  Check(timing->SetPulseType(Read<Long>(timing, &IChannelTiming::GetPulseType)));
}

void SendBackLevels(const OpenInstrument &open, Long lngChannel, Long lngFormat) {
  const auto levels = Levels(Channel(open.instrument, lngChannel));
  Long lngType = 0;
  Double dblFirst = 0, dblSecond = 0;
  Check(levels->GetLevel(lngFormat, &lngType, &dblFirst, &dblSecond));
  Check(levels->SetLevel(lngFormat, lngType, dblFirst, dblSecond));
  if (!(open.lngMask & eLacksLoadCompensation))
    Check(levels->SetLoadCompensation(Read<Double>(levels, &IChannelLevels::GetLoadCompensation)));
  if (!(open.lngMask & eLacksImpedance))
    Check(levels->SetImpedance(Read<Double>(levels, &IChannelLevels::GetImpedance)));
  Check(levels->SetPolarity(Read<Long>(levels, &IChannelLevels::GetPolarity)));
  Check(levels->SetOutput(Read<VariantBool>(levels, &IChannelLevels::GetOutput)));
  if (!(open.lngMask & eLacksComplement))
    Check(levels->SetComplementOutput(Read<VariantBool>(levels, &IChannelLevels::GetComplementOutput)));
}

void SendBackLimits(const OpenInstrument &open, Long lngChannel) {
  const auto channel = Channel(open.instrument, lngChannel);
  const auto voltage = Fetch(Fetch(channel, &IChannel::GetVoltageLimits), &ILimitGroup::GetLimits);
  const auto current = Fetch(Fetch(channel, &IChannel::GetCurrentLimits), &ILimitGroup::GetLimits);
  for (const auto &pair : {voltage, current}) {
    Check(pair->SetHigh(Read<Double>(pair, &ILimitPair::GetHigh)));
    Check(pair->SetLow(Read<Double>(pair, &ILimitPair::GetLow)));
  }
  Check(current->SetEnabled(Read<VariantBool>(voltage, &ILimitPair::GetEnabled)));
}

void SendBackTrigger(const OpenInstrument &open) {
  const auto trigger = Fetch(open.instrument, &IInstrument::GetTriggerSystem);
  const auto aux = Fetch(trigger, &ITriggerSystem::GetAuxOutputs);
  for (const Long lngWhich : {1, 2}) {
    Long lngLevel = 0;
    Check(aux->GetOutLevel(lngWhich, &lngLevel));
    Check(aux->SetOutLevel(lngWhich, lngLevel));
  }
  if (!(open.lngMask & eLacksVxiSource)) Check(aux->SetVxiSource(Read<Long>(aux, &IAuxOutputs::GetVxiSource)));
  if (!(open.lngMask & eLacksVxiEnable)) Check(aux->SetVxiLine(Read<Long>(aux, &IAuxOutputs::GetVxiLine)));
  const auto clock = Fetch(trigger, &ITriggerSystem::GetClockInput);
  Check(clock->SetImpedance(Read<Double>(clock, &IClockInput::GetImpedance)));
  Check(clock->SetThreshold(Read<Double>(clock, &IClockInput::GetThreshold)));
  const auto external = Fetch(trigger, &ITriggerSystem::GetExtInput);
  Check(external->SetImpedance(Read<Double>(external, &IExtInput::GetImpedance)));
  Check(external->SetThreshold(Read<Double>(external, &IExtInput::GetThreshold)));
}

TEST_F(AnyDriver, WhatTheInstrumentTellsItTakesBack) {
  ForEach([](const OpenInstrument &open) {
    for (const Long lngFormat : {1, 0}) {
      Check(open.instrument->Transaction(TransactionBegin));
      for (Long i = 1; i <= open.lngChannels; ++i) {
        SendBackTiming(open, i);
        SendBackLevels(open, i, lngFormat);
        SendBackLimits(open, i);
      }
      SendBackTrigger(open);
      if (!(open.lngMask & eLacksChannelMath))
        Check(open.instrument->SetChannelMath(Read<Long>(open.instrument, &IInstrument::GetChannelMath)));
      EXPECT_EQ(automation::StatusOk, open.instrument->Transaction(TransactionCommit));
    }
  });
}

TEST_F(AnyDriver, TheModeThatItTellsItTakesBack) {
  ForEach([](const OpenInstrument &open) {
    Long lngSelector = 0, lngPulseMode = -1;
    Check(open.instrument->GetPulseMode(&lngSelector, &lngPulseMode));
    const auto trigger = Fetch(open.instrument, &IInstrument::GetTriggerSystem);
    // After a reset every generator makes pulses without end.
    ASSERT_EQ(lngPulseMode, 0);
    ASSERT_EQ(Read<Long>(trigger, &ITriggerSystem::GetTriggerMode), 0);
    Read<Long>(trigger, &ITriggerSystem::GetBurstLength);
    const auto arm = Fetch(trigger, &ITriggerSystem::GetArmSource);
    if (Read<Long>(arm, &IArmSource::GetSource) == 1)
      Read<Double>(arm, &IArmSource::GetPllFrequency);
    else
      Read<Long>(arm, &IArmSource::GetSlope);
    const Long lngSource = Read<Long>(trigger, &ITriggerSystem::GetPeriodSource);
    const Long lngSlope = Read<Long>(Fetch(trigger, &ITriggerSystem::GetClockInput), &IClockInput::GetSlope);
    for (const Long lngSent : {lngSlope, Long{3}}) {
      Check(open.instrument->Transaction(TransactionBegin));
      Check(Fetch(open.instrument, &IInstrument::GetModeSetup)->SetContinuousPulses(lngSource, lngSent));
      EXPECT_EQ(automation::StatusOk, open.instrument->Transaction(TransactionCommit));
    }
  });
}

TEST_F(AnyDriver, WhatIsSetOutsideOfTransactionsIsTakenBackToo) {
  ForEach([](const OpenInstrument &open) {
    const auto reference = Fetch(open.instrument, &IInstrument::GetPllReference);
    Double dblFreq = 0;
    Long lngSource = 0;
    Check(reference->GetReference(&dblFreq, &lngSource));
    Check(reference->SetReference(&dblFreq, lngSource));
    for (Long i = 1; i <= open.lngChannels; ++i) {
      const auto channel = Channel(open.instrument, i);
      Check(channel->SetSignalFormat(Read<Long>(channel, &IChannel::GetSignalFormat)));
      const auto levels = Levels(channel);
      Check(levels->SetOutput(Read<VariantBool>(levels, &IChannelLevels::GetOutput)));
    }
  });
}

TEST_F(AnyDriver, LevelFormat0TellsTheOffsetAndThenTheAmplitude) {
  ForEach([](const OpenInstrument &open) {
    const auto levels = Levels(Channel(open.instrument, 1));
    Long lngType = 0;
    Double dblHigh = 0, dblLow = 0, dblOffset = 0, dblAmplitude = 0;
    Check(levels->GetLevel(1, &lngType, &dblHigh, &dblLow));
    Check(levels->GetLevel(0, &lngType, &dblOffset, &dblAmplitude));
    EXPECT_NEAR(dblOffset, (dblHigh + dblLow) / 2, 1e-9);
    EXPECT_NEAR(dblAmplitude, dblHigh - dblLow, 1e-9);
  });
}

TEST_F(AnyDriver, ARowOfThePatternMemoryHasABitAtLeast) {
  ForEach([](const OpenInstrument &open) {
    const auto memory = Fetch(open.instrument, &IInstrument::GetPatternMemory);
    for (const Long lngRow : {Long{1}, open.lngChannels, Long{3}}) {
      automation::ArrayOwner row;
      Long lngLength = 0;
      Check(memory->GetPattern(lngRow, PatternForm, row.InOut(), &lngLength));
      EXPECT_GT(lngLength, 0);
      EXPECT_GE(automation::ToByteArray(row.Get()).Count() * 8, lngLength);
    }
  });
}

TEST_F(AnyDriver, AnErrorIsToldOnce) {
  ForEach([](const OpenInstrument &open) {
    const auto queue = Fetch(open.instrument, &IInstrument::GetErrorQueue);
    Text(queue, &IErrorQueue::GetErrors);
    EXPECT_EQ(Text(queue, &IErrorQueue::GetErrors), "");
    const std::string strWarnings = Text(queue, &IErrorQueue::GetWarnings);
    EXPECT_EQ(Text(queue, &IErrorQueue::GetWarnings), strWarnings);
    for (const VariantBool fVerbose : {VariantBool{-1}, VariantBool{0}}) {
      Check(queue->SetVerbose(fVerbose));
      EXPECT_EQ(Read<VariantBool>(queue, &IErrorQueue::GetVerbose), fVerbose);
    }
  });
}

TEST_F(AnyDriver, PlacesThatAreNotCalledAnswerNotImplemented) {
  ForEach([](const OpenInstrument &open) {
    EXPECT_EQ(open.instrument->Reserved1(), automation::StatusNotImplemented);
    EXPECT_EQ(open.instrument->Reserved19(), automation::StatusNotImplemented);
    std::uint32_t lngCount = 0;
    EXPECT_EQ(open.instrument->GetTypeInfoCount(&lngCount), automation::StatusNotImplemented);
  });
}

}  // namespace
}  // namespace tarvik::test
