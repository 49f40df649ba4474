#include <cmath>

#include "Driver.h"
#include "TestName.h"

namespace tarvik::simulator::testing_support {
namespace {

using namespace tarvik::kolven;

/// Reads a channel's settings as a panel does and sends them back unchanged.
void SendBackChannel(const Ref<IInstrument> &instrument, Long lngChannel, Long lngMask, Long lngFormat) {
  const auto channel = Channel(instrument, lngChannel);
  const auto timing = Fetch(channel, &IChannel::GetTiming);
  const auto edges = Fetch(timing, &IChannelTiming::GetEdges);
  Long lngSelector = 0;
  Double dblLeading = 0, dblTrailing = 0, dblDelay = 0;
  Check(edges->GetLeading(&lngSelector, &dblLeading));
  Check(edges->GetTrailing(&lngSelector, &dblTrailing));
  Check(edges->SetLeading(&lngSelector, dblLeading));
  Check(edges->SetTrailing(&lngSelector, dblTrailing));
  Check(timing->SetWidth(Read<Double>(timing, &IChannelTiming::GetWidth)));
  const Double dblPeriod = 1 / Read<Double>(timing, &IChannelTiming::GetFrequency);
  Check(timing->SetFrequency(1 / dblPeriod));
  const auto twice = Fetch(timing, &IChannelTiming::GetDoublePulse);
  const auto once = Fetch(timing, &IChannelTiming::GetSinglePulse);
  if (Read<VariantBool>(twice, &IDoublePulse::GetEnabled)) {
    Check(twice->GetDelay(&lngSelector, &dblDelay));
    Check(twice->SetDelay(&lngSelector, dblDelay));
  } else {
    Check(once->GetDelay(&lngSelector, &dblDelay));
    Check(once->SetDelay(&lngSelector, dblDelay));
  }
  if (!(lngMask & 4)) Check(edges->SetCoupling(Read<Long>(edges, &IEdges::GetCoupling)));

  const auto levels = Levels(channel);
  Long lngType = 0;
  Double dblFirst = 0, dblSecond = 0;
  Check(levels->GetLevel(lngFormat, &lngType, &dblFirst, &dblSecond));
  Check(levels->SetLevel(lngFormat, lngType, dblFirst, dblSecond));
  if (!(lngMask & 128)) Check(levels->SetLoadCompensation(Read<Double>(levels, &IChannelLevels::GetLoadCompensation)));
  if (!(lngMask & 64)) Check(levels->SetImpedance(Read<Double>(levels, &IChannelLevels::GetImpedance)));
  Check(levels->SetPolarity(Read<Long>(levels, &IChannelLevels::GetPolarity)));
  Check(levels->SetOutput(Read<VariantBool>(levels, &IChannelLevels::GetOutput)));
  if (!(lngMask & 512))
    Check(levels->SetComplementOutput(Read<VariantBool>(levels, &IChannelLevels::GetComplementOutput)));
}

class RoundTrip : public ::testing::TestWithParam<const char *> {
 protected:
  RoundTrip() { PrivateDataFolder(); }
};

TEST_P(RoundTrip, WhatTheInstrumentTellsItTakesBack) {
  const auto instrument = Find(GetParam());
  ASSERT_TRUE(Open(instrument));
  const Long lngMask = Read<Long>(Fetch(instrument, &IInstrument::GetRestrictions), &IRestrictions::GetMask);
  const Long lngChannels = Read<Long>(Fetch(instrument, &IInstrument::GetChannels), &IChannelList::GetCount);
  for (const Long lngFormat : {1, 0}) {
    for (const Double dblFrequency : {1e6, 3.3e6, 7e4 / 3}) {
      const auto timing = Fetch(Channel(instrument, 1), &IChannel::GetTiming);
      Check(timing->SetFrequency(dblFrequency));
      Check(timing->SetWidth(1 / dblFrequency));  // the whole period
      Check(instrument->Transaction(TransactionBegin));
      for (Long i = 1; i <= lngChannels; ++i) SendBackChannel(instrument, i, lngMask, lngFormat);
      EXPECT_EQ(automation::StatusOk, instrument->Transaction(TransactionCommit));
      Check(timing->SetWidth(100e-9));
    }
  }
}

TEST_P(RoundTrip, FreshPanelsDefaultsAreTaken) {
  const auto instrument = Find(GetParam());
  ASSERT_TRUE(Open(instrument));
  const Long lngMask = Read<Long>(Fetch(instrument, &IInstrument::GetRestrictions), &IRestrictions::GetMask);
  const Long lngChannels = Read<Long>(Fetch(instrument, &IInstrument::GetChannels), &IChannelList::GetCount);
  Check(instrument->Transaction(TransactionBegin));
  Check(Fetch(instrument, &IInstrument::GetModeSetup)->SetContinuousPulses(0, 3));
  for (Long i = 1; i <= lngChannels; ++i) {
    const auto timing = Fetch(Channel(instrument, i), &IChannel::GetTiming);
    const auto edges = Fetch(timing, &IChannelTiming::GetEdges);
    Long lngSelector = 0;
    Check(edges->SetLeading(&lngSelector, 1e-12));
    Check(edges->SetTrailing(&lngSelector, 1e-12));
    Check(timing->SetWidth(1.5e-9));
    Check(timing->SetFrequency(1));
    Check(Fetch(timing, &IChannelTiming::GetSinglePulse)->SetDelay(&lngSelector, 0));
    if (!(lngMask & 4)) Check(edges->SetCoupling(0));
    const auto levels = Levels(Channel(instrument, i));
    Check(levels->SetLevel(1, 0, 0, 0));
    if (!(lngMask & 128)) Check(levels->SetLoadCompensation(0.1));
  }
  EXPECT_EQ(automation::StatusOk, instrument->Transaction(TransactionCommit));
}

TEST_P(RoundTrip, Format0TellsOffsetThenAmplitude) {
  const auto instrument = Find(GetParam());
  ASSERT_TRUE(Open(instrument));
  const auto levels = Levels(Channel(instrument, 1));
  Check(levels->SetLevel(1, 0, -0.85, -1.8));
  Long lngType = 9;
  Double dblOffset = 0, dblAmplitude = 0;
  Check(levels->GetLevel(0, &lngType, &dblOffset, &dblAmplitude));
  EXPECT_EQ(0, lngType);
  EXPECT_NEAR(-1.325, dblOffset, 1e-12);
  EXPECT_NEAR(0.95, dblAmplitude, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Models, RoundTrip, ::testing::Values("VP-210", "VP-110", "VP-220", "VP-250F", "VB-200"),
                         [](const ::testing::TestParamInfo<const char *> &model) {
                           return test::TestName(model.param);
                         });

}  // namespace
}  // namespace tarvik::simulator::testing_support
