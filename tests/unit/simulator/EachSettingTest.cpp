#include "Driver.h"

namespace tarvik::simulator::testing_support {
namespace {

using namespace tarvik::kolven;

/// Every operation that sets something, told by those that read it.
class EachSetting : public ::testing::Test {
 protected:
  EachSetting() {
    PrivateDataFolder();
    instrument = Find("VP-210");
    Open(instrument);
    trigger = Fetch(instrument, &IInstrument::GetTriggerSystem);
    arming = Fetch(trigger, &ITriggerSystem::GetArmSource);
    setup = Fetch(instrument, &IInstrument::GetModeSetup);
  }
  /// Trigger mode, pulse mode, burst length, period source, clock slope, arming source, arming slope.
  std::vector<Long> Mode() const {
    Long lngSelector = 0, lngPulseMode = 0;
    Check(instrument->GetPulseMode(&lngSelector, &lngPulseMode));
    return {Read<Long>(trigger, &ITriggerSystem::GetTriggerMode),
            lngPulseMode,
            Read<Long>(trigger, &ITriggerSystem::GetBurstLength),
            Read<Long>(trigger, &ITriggerSystem::GetPeriodSource),
            Read<Long>(Fetch(trigger, &ITriggerSystem::GetClockInput), &IClockInput::GetSlope),
            Read<Long>(arming, &IArmSource::GetSource),
            Read<Long>(arming, &IArmSource::GetSlope)};
  }
  Double PllFrequency() const { return Read<Double>(arming, &IArmSource::GetPllFrequency); }

  Ref<IInstrument> instrument;
  Ref<ITriggerSystem> trigger;
  Ref<IArmSource> arming;
  Ref<IModeSetup> setup;
};

using Longs = std::vector<Long>;

TEST_F(EachSetting, TheContinuousModesTakeBurstPeriodAndSlope) {
  EXPECT_EQ((Longs{0, 0, 2, 0, 1, 3, 1}), Mode()) << "after a reset";
  Check(setup->SetContinuousBurst(7, 1, 0));
  EXPECT_EQ((Longs{0, 1, 7, 1, 0, 3, 1}), Mode());
  Check(setup->SetContinuousPattern(2, 1));
  EXPECT_EQ((Longs{0, 2, 7, 2, 1, 3, 1}), Mode());
  Check(setup->SetContinuousPulses(1, 0));
  EXPECT_EQ((Longs{0, 0, 7, 1, 0, 3, 1}), Mode());
}

TEST_F(EachSetting, TheGatedModesTakeArmingToo) {
  Check(setup->SetGatedBurst(9, 1, 0, 4, 0));
  EXPECT_EQ((Longs{2, 1, 9, 1, 0, 4, 0}), Mode());
  Check(setup->SetGatedPattern(2, 1, 3, 1));
  EXPECT_EQ((Longs{2, 2, 9, 2, 1, 3, 1}), Mode());
  Check(setup->SetGatedPulses(0, 0, 4, 0));
  EXPECT_EQ((Longs{2, 0, 9, 0, 0, 4, 0}), Mode());
}

TEST_F(EachSetting, TheTriggeredModesTakeThePllWhileItArms) {
  Check(setup->SetTriggeredBurst(11, 2, 0, 1, 0, 1, 2.5e6));
  EXPECT_EQ((Longs{1, 1, 11, 2, 0, 1, 0}), Mode());
  EXPECT_EQ(2.5e6, PllFrequency());
  Check(setup->SetTriggeredPattern(0, 1, 1, 1, 0, 4e-6));
  EXPECT_EQ((Longs{1, 2, 11, 0, 1, 1, 1}), Mode());
  EXPECT_EQ(1 / 4e-6, PllFrequency());
  Check(setup->SetTriggeredPattern(0, 1, 3, 0, 1, 9e6));
  EXPECT_EQ(1 / 4e-6, PllFrequency()) << "the PLL does not arm";
  Check(setup->SetTriggeredPulses(4, 1));
  EXPECT_EQ((Longs{1, 0, 11, 0, 1, 4, 1}), Mode());
}

TEST_F(EachSetting, SelectorsWithoutAChoiceKeepWhatTheInstrumentHas) {
  Check(setup->SetGatedPulses(1, 0, 4, 0));
  Check(setup->SetGatedPulses(2, 3, 0, 3));
  EXPECT_EQ((Longs{2, 0, 2, 2, 0, 4, 0}), Mode());
  Check(setup->SetTriggeredBurst(5, 0, 3, 1, 3, 1, 3e6));
  Check(setup->SetTriggeredBurst(5, 0, 3, 0, 3, 3, 9e6));
  EXPECT_EQ(3e6, PllFrequency());
}

TEST_F(EachSetting, ContinuousModesFreeThePllThatArmed) {
  Check(setup->SetTriggeredBurst(4, 0, 1, 1, 1, 1, 2e6));
  Check(setup->SetContinuousPulses(1, 3));
  EXPECT_EQ((Longs{0, 0, 4, 1, 1, 3, 1}), Mode());
}

TEST_F(EachSetting, ModeAndArmingSourceCanBeSetAlone) {
  Check(setup->SetContinuousBurst(6, 0, 3));
  Check(trigger->SetTriggerMode(2));
  Check(arming->SetSource(4));
  EXPECT_EQ((Longs{2, 1, 6, 0, 1, 4, 1}), Mode());
}

TEST_F(EachSetting, OutputsForTriggersAndTheBusReadBack) {
  const auto outputs = Fetch(trigger, &ITriggerSystem::GetAuxOutputs);
  Long lngLevel = 9;
  Check(outputs->SetOutLevel(1, 1));
  Check(outputs->GetOutLevel(1, &lngLevel));
  EXPECT_EQ(1, lngLevel);
  Check(outputs->GetOutLevel(2, &lngLevel));
  EXPECT_EQ(0, lngLevel) << "the other output";
  for (const Long lngWhich : {0, 3}) {
    EXPECT_EQ("There is no auxiliary output " + std::to_string(lngWhich), Refusal(outputs->SetOutLevel(lngWhich, 0)));
    EXPECT_EQ("There is no auxiliary output " + std::to_string(lngWhich),
              Refusal(outputs->GetOutLevel(lngWhich, &lngLevel)));
  }
  Check(outputs->SetVxiSource(2));
  EXPECT_EQ(2, Read<Long>(outputs, &IAuxOutputs::GetVxiSource));
  Check(outputs->SetVxiLine(8));
  EXPECT_EQ(8, Read<Long>(outputs, &IAuxOutputs::GetVxiLine));
}

TEST_F(EachSetting, InputsReadBack) {
  const auto clock = Fetch(trigger, &ITriggerSystem::GetClockInput);
  Check(clock->SetThreshold(1.5));
  EXPECT_EQ(1.5, Read<Double>(clock, &IClockInput::GetThreshold));
  Check(clock->SetImpedance(1e4));
  EXPECT_EQ(1e4, Read<Double>(clock, &IClockInput::GetImpedance));
  const auto external = Fetch(trigger, &ITriggerSystem::GetExtInput);
  Check(external->SetThreshold(-0.5));
  EXPECT_EQ(-0.5, Read<Double>(external, &IExtInput::GetThreshold));
  EXPECT_EQ(1.5, Read<Double>(clock, &IClockInput::GetThreshold));
  Check(external->SetImpedance(1e4));
  EXPECT_EQ(1e4, Read<Double>(external, &IExtInput::GetImpedance));
}

TEST_F(EachSetting, SettingsOfTheInstrumentReadBack) {
  Check(instrument->SetChannelMath(1));
  EXPECT_EQ(1, Read<Long>(instrument, &IInstrument::GetChannelMath));
  const auto reference = Fetch(instrument, &IInstrument::GetPllReference);
  Double dblFrequency = 10e6;
  Long lngSource = 9;
  Check(reference->SetReference(&dblFrequency, 0));
  dblFrequency = 0;
  Check(reference->GetReference(&dblFrequency, &lngSource));
  EXPECT_EQ(10e6, dblFrequency);
  EXPECT_EQ(0, lngSource);
  for (const Long lngTimeout : {2500, 0}) {
    Check(instrument->SetPnpTimeout(lngTimeout));
    EXPECT_EQ(lngTimeout, Read<Long>(instrument, &IInstrument::GetPnpTimeout));
  }
  EXPECT_EQ("A time-out of -1 milliseconds is not possible", Refusal(instrument->SetPnpTimeout(-1)));
  EXPECT_EQ(0, Read<Long>(instrument, &IInstrument::GetPnpTimeout));
}

TEST_F(EachSetting, SettingsOfAChannelReadBackAndLeaveTheOther) {
  const auto channel = Channel(instrument, 1), other = Channel(instrument, 2);
  EXPECT_EQ(1, Read<Long>(channel, &IChannel::GetSignalFormat));
  Check(channel->SetSignalFormat(0));
  EXPECT_EQ(0, Read<Long>(channel, &IChannel::GetSignalFormat));
  EXPECT_EQ(1, Read<Long>(other, &IChannel::GetSignalFormat));
  const auto timing = Fetch(channel, &IChannel::GetTiming);
  const auto edges = Fetch(timing, &IChannelTiming::GetEdges);
  Long lngSelector = 0;
  Double dblTime = 0;
  Check(edges->SetCoupling(0));
  EXPECT_EQ(0, Read<Long>(edges, &IEdges::GetCoupling));
  Check(edges->SetLeading(&lngSelector, 2e-9));
  Check(edges->SetTrailing(&lngSelector, 3e-9));
  Check(edges->GetLeading(&lngSelector, &dblTime));
  EXPECT_EQ(2e-9, dblTime);
  Check(edges->GetTrailing(&lngSelector, &dblTime));
  EXPECT_EQ(3e-9, dblTime);
  Check(timing->SetPulseType(2));
  EXPECT_EQ(2, Read<Long>(timing, &IChannelTiming::GetPulseType));
  const auto levels = Levels(channel);
  Check(levels->SetPolarity(1));
  EXPECT_EQ(1, Read<Long>(levels, &IChannelLevels::GetPolarity));
  Check(levels->SetOutput(-1));
  EXPECT_EQ(-1, Read<VariantBool>(levels, &IChannelLevels::GetOutput));
  EXPECT_EQ(0, Read<VariantBool>(levels, &IChannelLevels::GetComplementOutput));
  EXPECT_EQ(0, Read<VariantBool>(Levels(other), &IChannelLevels::GetOutput));
}

TEST_F(EachSetting, AnOperationWithoutAPlaceForItsResultSaysSo) {
  Integer intCode = 0;
  automation::AutomationString bstr = nullptr;
  Double dblFrequency = 0;
  Long lngSource = 0;
  const auto reference = Fetch(instrument, &IInstrument::GetPllReference);
  for (const Status status :
       {instrument->SelfTest(nullptr, &bstr), instrument->SelfTest(&intCode, nullptr),
        instrument->GetPnpTimeout(nullptr), instrument->GetOptions(nullptr), instrument->GetName(nullptr),
        instrument->GetIdentity(nullptr), instrument->Open(0, 0, 0, nullptr),
        instrument->GetTransactionState(nullptr, nullptr), instrument->GetTransactionState(&intCode, nullptr),
        reference->GetReference(nullptr, &lngSource), reference->GetReference(&dblFrequency, nullptr),
        reference->SetReference(nullptr, 0)})
    EXPECT_EQ(automation::StatusPointer, status);
  EXPECT_EQ(nullptr, bstr);
}

}  // namespace
}  // namespace tarvik::simulator::testing_support
