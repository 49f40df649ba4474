#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "instrument/KolvenDriver.h"

// A driver is reached through the places of its operations, so each place is written down: 0 to 2 count
// references, 3 to 6 are the dispatch operations, the interface's own begin at 7.

namespace tarvik::kolven {
namespace {

/// A pointer to a virtual member holds its offset in the table plus 1 (Itanium C++ ABI).
template <class Operation>
std::size_t SlotOf(Operation operation) {
  static_assert(sizeof operation == 2 * sizeof(std::uintptr_t));
  std::uintptr_t word = 0;
  std::memcpy(&word, &operation, sizeof word);
  return (word - 1) / sizeof(void *);
}

TEST(DriverSlots, Basic) {
  EXPECT_EQ(SlotOf(&automation::IUnknown::QueryInterface), 0u);
  EXPECT_EQ(SlotOf(&automation::IUnknown::AddRef), 1u);
  EXPECT_EQ(SlotOf(&automation::IUnknown::Release), 2u);
  EXPECT_EQ(SlotOf(&automation::IDispatch::GetTypeInfoCount), 3u);
  EXPECT_EQ(SlotOf(&automation::IDispatch::GetTypeInfo), 4u);
  EXPECT_EQ(SlotOf(&automation::IDispatch::GetIDsOfNames), 5u);
  EXPECT_EQ(SlotOf(&automation::IDispatch::Invoke), 6u);
  EXPECT_EQ(SlotOf(&automation::IClassFactory::CreateInstance), 3u);
  EXPECT_EQ(SlotOf(&automation::IClassFactory::LockServer), 4u);
}

TEST(DriverSlots, DriverRoot) { EXPECT_EQ(SlotOf(&IDriverRoot::GetInstruments), 10u); }

TEST(DriverSlots, InstrumentList) {
  EXPECT_EQ(SlotOf(&IInstrumentList::GetCount), 7u);
  EXPECT_EQ(SlotOf(&IInstrumentList::GetItem), 8u);
  EXPECT_EQ(SlotOf(&IInstrumentList::Refresh), 10u);
}

TEST(DriverSlots, Instrument) {
  EXPECT_EQ(SlotOf(&IInstrument::GetViInfo), 7u);
  EXPECT_EQ(SlotOf(&IInstrument::SetAutoDetectErrors), 9u);
  EXPECT_EQ(SlotOf(&IInstrument::Calibrate), 13u);
  EXPECT_EQ(SlotOf(&IInstrument::GetChannelMath), 14u);
  EXPECT_EQ(SlotOf(&IInstrument::SetChannelMath), 15u);
  EXPECT_EQ(SlotOf(&IInstrument::GetChannels), 16u);
  EXPECT_EQ(SlotOf(&IInstrument::Close), 17u);
  EXPECT_EQ(SlotOf(&IInstrument::GetErrorQueue), 19u);
  EXPECT_EQ(SlotOf(&IInstrument::GetIdentity), 22u);
  EXPECT_EQ(SlotOf(&IInstrument::GetTransactionState), 25u);
  EXPECT_EQ(SlotOf(&IInstrument::GetModeSetup), 28u);
  EXPECT_EQ(SlotOf(&IInstrument::GetName), 29u);
  EXPECT_EQ(SlotOf(&IInstrument::Open), 30u);
  EXPECT_EQ(SlotOf(&IInstrument::GetOptions), 31u);
  EXPECT_EQ(SlotOf(&IInstrument::GetPatternMemory), 33u);
  EXPECT_EQ(SlotOf(&IInstrument::GetPllReference), 36u);
  EXPECT_EQ(SlotOf(&IInstrument::GetPulseMode), 37u);
  EXPECT_EQ(SlotOf(&IInstrument::Reset), 39u);
  EXPECT_EQ(SlotOf(&IInstrument::GetRestrictions), 40u);
  EXPECT_EQ(SlotOf(&IInstrument::SelfTest), 43u);
  EXPECT_EQ(SlotOf(&IInstrument::GetPnpTimeout), 46u);
  EXPECT_EQ(SlotOf(&IInstrument::SetPnpTimeout), 47u);
  EXPECT_EQ(SlotOf(&IInstrument::Transaction), 48u);
  EXPECT_EQ(SlotOf(&IInstrument::GetTriggerSystem), 49u);
}

TEST(DriverSlots, Restrictions) { EXPECT_EQ(SlotOf(&IRestrictions::GetMask), 7u); }

TEST(DriverSlots, ErrorQueue) {
  EXPECT_EQ(SlotOf(&IErrorQueue::GetErrors), 9u);
  EXPECT_EQ(SlotOf(&IErrorQueue::GetVerbose), 14u);
  EXPECT_EQ(SlotOf(&IErrorQueue::SetVerbose), 15u);
  EXPECT_EQ(SlotOf(&IErrorQueue::GetWarnings), 16u);
}

TEST(DriverSlots, ChannelList) {
  EXPECT_EQ(SlotOf(&IChannelList::GetCount), 7u);
  EXPECT_EQ(SlotOf(&IChannelList::GetItem), 8u);
}

TEST(DriverSlots, Channel) {
  EXPECT_EQ(SlotOf(&IChannel::GetCurrentLimits), 7u);
  EXPECT_EQ(SlotOf(&IChannel::GetLevels), 11u);
  EXPECT_EQ(SlotOf(&IChannel::GetTiming), 13u);
  EXPECT_EQ(SlotOf(&IChannel::GetSignalFormat), 14u);
  EXPECT_EQ(SlotOf(&IChannel::SetSignalFormat), 15u);
  EXPECT_EQ(SlotOf(&IChannel::GetVoltageLimits), 16u);
}

TEST(DriverSlots, LimitGroup) { EXPECT_EQ(SlotOf(&ILimitGroup::GetLimits), 11u); }

TEST(DriverSlots, LimitPair) {
  EXPECT_EQ(SlotOf(&ILimitPair::GetEnabled), 7u);
  EXPECT_EQ(SlotOf(&ILimitPair::SetEnabled), 8u);
  EXPECT_EQ(SlotOf(&ILimitPair::GetHigh), 9u);
  EXPECT_EQ(SlotOf(&ILimitPair::SetHigh), 10u);
  EXPECT_EQ(SlotOf(&ILimitPair::GetLow), 11u);
  EXPECT_EQ(SlotOf(&ILimitPair::SetLow), 12u);
}

TEST(DriverSlots, ChannelTiming) {
  EXPECT_EQ(SlotOf(&IChannelTiming::GetSinglePulse), 7u);
  EXPECT_EQ(SlotOf(&IChannelTiming::GetDoublePulse), 8u);
  EXPECT_EQ(SlotOf(&IChannelTiming::GetFrequency), 11u);
  EXPECT_EQ(SlotOf(&IChannelTiming::SetFrequency), 12u);
  EXPECT_EQ(SlotOf(&IChannelTiming::GetEdges), 17u);
  EXPECT_EQ(SlotOf(&IChannelTiming::GetPulseType), 18u);
  EXPECT_EQ(SlotOf(&IChannelTiming::SetPulseType), 19u);
  EXPECT_EQ(SlotOf(&IChannelTiming::GetWidth), 20u);
  EXPECT_EQ(SlotOf(&IChannelTiming::SetWidth), 21u);
}

TEST(DriverSlots, Edges) {
  EXPECT_EQ(SlotOf(&IEdges::GetCoupling), 7u);
  EXPECT_EQ(SlotOf(&IEdges::SetCoupling), 8u);
  EXPECT_EQ(SlotOf(&IEdges::GetLeading), 13u);
  EXPECT_EQ(SlotOf(&IEdges::SetLeading), 14u);
  EXPECT_EQ(SlotOf(&IEdges::GetTrailing), 15u);
  EXPECT_EQ(SlotOf(&IEdges::SetTrailing), 16u);
}

TEST(DriverSlots, SinglePulse) {
  EXPECT_EQ(SlotOf(&ISinglePulse::GetDelay), 11u);
  EXPECT_EQ(SlotOf(&ISinglePulse::SetDelay), 12u);
}

TEST(DriverSlots, DoublePulse) {
  EXPECT_EQ(SlotOf(&IDoublePulse::GetEnabled), 9u);
  EXPECT_EQ(SlotOf(&IDoublePulse::GetDelay), 13u);
  EXPECT_EQ(SlotOf(&IDoublePulse::SetDelay), 14u);
}

TEST(DriverSlots, ChannelLevels) {
  EXPECT_EQ(SlotOf(&IChannelLevels::GetComplementOutput), 7u);
  EXPECT_EQ(SlotOf(&IChannelLevels::SetComplementOutput), 8u);
  EXPECT_EQ(SlotOf(&IChannelLevels::GetLoadCompensation), 11u);
  EXPECT_EQ(SlotOf(&IChannelLevels::SetLoadCompensation), 12u);
  EXPECT_EQ(SlotOf(&IChannelLevels::GetImpedance), 13u);
  EXPECT_EQ(SlotOf(&IChannelLevels::SetImpedance), 14u);
  EXPECT_EQ(SlotOf(&IChannelLevels::GetOutput), 15u);
  EXPECT_EQ(SlotOf(&IChannelLevels::SetOutput), 16u);
  EXPECT_EQ(SlotOf(&IChannelLevels::GetPolarity), 17u);
  EXPECT_EQ(SlotOf(&IChannelLevels::SetPolarity), 18u);
  EXPECT_EQ(SlotOf(&IChannelLevels::GetLevel), 19u);
  EXPECT_EQ(SlotOf(&IChannelLevels::SetLevel), 20u);
}

TEST(DriverSlots, ModeSetup) {
  EXPECT_EQ(SlotOf(&IModeSetup::SetContinuousBurst), 7u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetContinuousPattern), 8u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetContinuousPulses), 9u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetGatedBurst), 10u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetGatedPattern), 11u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetGatedPulses), 12u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetTriggeredBurst), 13u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetTriggeredPattern), 14u);
  EXPECT_EQ(SlotOf(&IModeSetup::SetTriggeredPulses), 15u);
}

TEST(DriverSlots, TriggerSystem) {
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetArmSource), 7u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetClockInput), 8u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetBurstLength), 9u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetExtInput), 11u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetTriggerMode), 13u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::SetTriggerMode), 14u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetAuxOutputs), 15u);
  EXPECT_EQ(SlotOf(&ITriggerSystem::GetPeriodSource), 16u);
}

TEST(DriverSlots, ArmSource) {
  EXPECT_EQ(SlotOf(&IArmSource::GetPllFrequency), 7u);
  EXPECT_EQ(SlotOf(&IArmSource::GetSlope), 13u);
  EXPECT_EQ(SlotOf(&IArmSource::GetSource), 15u);
  EXPECT_EQ(SlotOf(&IArmSource::SetSource), 16u);
}

TEST(DriverSlots, ClockInput) {
  EXPECT_EQ(SlotOf(&IClockInput::GetImpedance), 7u);
  EXPECT_EQ(SlotOf(&IClockInput::SetImpedance), 8u);
  EXPECT_EQ(SlotOf(&IClockInput::GetSlope), 9u);
  EXPECT_EQ(SlotOf(&IClockInput::GetThreshold), 11u);
  EXPECT_EQ(SlotOf(&IClockInput::SetThreshold), 12u);
}

TEST(DriverSlots, ExtInput) {
  EXPECT_EQ(SlotOf(&IExtInput::GetImpedance), 7u);
  EXPECT_EQ(SlotOf(&IExtInput::SetImpedance), 8u);
  EXPECT_EQ(SlotOf(&IExtInput::GetThreshold), 9u);
  EXPECT_EQ(SlotOf(&IExtInput::SetThreshold), 10u);
}

TEST(DriverSlots, AuxOutputs) {
  EXPECT_EQ(SlotOf(&IAuxOutputs::GetOutLevel), 9u);
  EXPECT_EQ(SlotOf(&IAuxOutputs::SetOutLevel), 10u);
  EXPECT_EQ(SlotOf(&IAuxOutputs::GetVxiSource), 13u);
  EXPECT_EQ(SlotOf(&IAuxOutputs::SetVxiSource), 14u);
  EXPECT_EQ(SlotOf(&IAuxOutputs::GetVxiLine), 15u);
  EXPECT_EQ(SlotOf(&IAuxOutputs::SetVxiLine), 16u);
}

TEST(DriverSlots, PatternMemory) {
  EXPECT_EQ(SlotOf(&IPatternMemory::CalcPrbs), 7u);
  EXPECT_EQ(SlotOf(&IPatternMemory::SetPattern), 8u);
  EXPECT_EQ(SlotOf(&IPatternMemory::GetPattern), 12u);
}

TEST(DriverSlots, PllReference) {
  EXPECT_EQ(SlotOf(&IPllReference::GetReference), 7u);
  EXPECT_EQ(SlotOf(&IPllReference::SetReference), 8u);
}

TEST(DriverLayout, ObjectsHoldNothingButTheirTable) {
  EXPECT_EQ(sizeof(IInstrument), sizeof(void *));
  EXPECT_EQ(sizeof(IChannelTiming), sizeof(void *));
}

TEST(DriverLayout, ValuesHaveTheSizesOfTheAutomationWorld) {
  EXPECT_EQ(sizeof(VariantBool), 2u);
  EXPECT_EQ(sizeof(Status), 4u);
  EXPECT_EQ(sizeof(Guid), 16u);
  EXPECT_EQ(sizeof(AutomationVariant), 24u);
}

}  // namespace
}  // namespace tarvik::kolven
