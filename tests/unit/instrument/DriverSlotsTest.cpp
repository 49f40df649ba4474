#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <string>

#include "HookedCall.h"
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

struct Place {
  const char *strOperation;
  std::size_t slot, expected;
};
#define PLACE(operation, expected) \
  { #operation, SlotOf(&operation), expected }

constexpr auto Basic = "automation::";

const Place Places[] = {
    PLACE(automation::IUnknown::QueryInterface, 0),
    PLACE(automation::IUnknown::AddRef, 1),
    PLACE(automation::IUnknown::Release, 2),
    PLACE(automation::IDispatch::GetTypeInfoCount, 3),
    PLACE(automation::IDispatch::GetTypeInfo, 4),
    PLACE(automation::IDispatch::GetIDsOfNames, 5),
    PLACE(automation::IDispatch::Invoke, 6),
    PLACE(automation::IClassFactory::CreateInstance, 3),
    PLACE(automation::IClassFactory::LockServer, 4),
    PLACE(IDriverRoot::GetInstruments, 10),
    PLACE(IInstrumentList::GetCount, 7),
    PLACE(IInstrumentList::GetItem, 8),
    PLACE(IInstrumentList::Refresh, 10),
    PLACE(IInstrument::GetViInfo, 7),
    PLACE(IInstrument::SetAutoDetectErrors, 9),
    PLACE(IInstrument::Calibrate, 13),
    PLACE(IInstrument::GetChannelMath, 14),
    PLACE(IInstrument::SetChannelMath, 15),
    PLACE(IInstrument::GetChannels, 16),
    PLACE(IInstrument::Close, 17),
    PLACE(IInstrument::GetErrorQueue, 19),
    PLACE(IInstrument::GetIdentity, 22),
    PLACE(IInstrument::GetTransactionState, 25),
    PLACE(IInstrument::GetModeSetup, 28),
    PLACE(IInstrument::GetName, 29),
    PLACE(IInstrument::Open, 30),
    PLACE(IInstrument::GetOptions, 31),
    PLACE(IInstrument::GetPatternMemory, 33),
    PLACE(IInstrument::GetPllReference, 36),
    PLACE(IInstrument::GetPulseMode, 37),
    PLACE(IInstrument::Reset, 39),
    PLACE(IInstrument::GetRestrictions, 40),
    PLACE(IInstrument::SelfTest, 43),
    PLACE(IInstrument::GetPnpTimeout, 46),
    PLACE(IInstrument::SetPnpTimeout, 47),
    PLACE(IInstrument::Transaction, 48),
    PLACE(IInstrument::GetTriggerSystem, 49),
    PLACE(IRestrictions::GetMask, 7),
    PLACE(IErrorQueue::GetErrors, 9),
    PLACE(IErrorQueue::GetVerbose, 14),
    PLACE(IErrorQueue::SetVerbose, 15),
    PLACE(IErrorQueue::GetWarnings, 16),
    PLACE(IChannelList::GetCount, 7),
    PLACE(IChannelList::GetItem, 8),
    PLACE(IChannel::GetCurrentLimits, 7),
    PLACE(IChannel::GetLevels, 11),
    PLACE(IChannel::GetTiming, 13),
    PLACE(IChannel::GetSignalFormat, 14),
    PLACE(IChannel::SetSignalFormat, 15),
    PLACE(IChannel::GetVoltageLimits, 16),
    PLACE(ILimitGroup::GetLimits, 11),
    PLACE(ILimitPair::GetEnabled, 7),
    PLACE(ILimitPair::SetEnabled, 8),
    PLACE(ILimitPair::GetHigh, 9),
    PLACE(ILimitPair::SetHigh, 10),
    PLACE(ILimitPair::GetLow, 11),
    PLACE(ILimitPair::SetLow, 12),
    PLACE(IChannelTiming::GetSinglePulse, 7),
    PLACE(IChannelTiming::GetDoublePulse, 8),
    PLACE(IChannelTiming::GetFrequency, 11),
    PLACE(IChannelTiming::SetFrequency, 12),
    PLACE(IChannelTiming::GetEdges, 17),
    PLACE(IChannelTiming::GetPulseType, 18),
    PLACE(IChannelTiming::SetPulseType, 19),
    PLACE(IChannelTiming::GetWidth, 20),
    PLACE(IChannelTiming::SetWidth, 21),
    PLACE(IEdges::GetCoupling, 7),
    PLACE(IEdges::SetCoupling, 8),
    PLACE(IEdges::GetLeading, 13),
    PLACE(IEdges::SetLeading, 14),
    PLACE(IEdges::GetTrailing, 15),
    PLACE(IEdges::SetTrailing, 16),
    PLACE(ISinglePulse::GetDelay, 11),
    PLACE(ISinglePulse::SetDelay, 12),
    PLACE(IDoublePulse::GetEnabled, 9),
    PLACE(IDoublePulse::GetDelay, 13),
    PLACE(IDoublePulse::SetDelay, 14),
    PLACE(IChannelLevels::GetComplementOutput, 7),
    PLACE(IChannelLevels::SetComplementOutput, 8),
    PLACE(IChannelLevels::GetLoadCompensation, 11),
    PLACE(IChannelLevels::SetLoadCompensation, 12),
    PLACE(IChannelLevels::GetImpedance, 13),
    PLACE(IChannelLevels::SetImpedance, 14),
    PLACE(IChannelLevels::GetOutput, 15),
    PLACE(IChannelLevels::SetOutput, 16),
    PLACE(IChannelLevels::GetPolarity, 17),
    PLACE(IChannelLevels::SetPolarity, 18),
    PLACE(IChannelLevels::GetLevel, 19),
    PLACE(IChannelLevels::SetLevel, 20),
    PLACE(IModeSetup::SetContinuousBurst, 7),
    PLACE(IModeSetup::SetContinuousPattern, 8),
    PLACE(IModeSetup::SetContinuousPulses, 9),
    PLACE(IModeSetup::SetGatedBurst, 10),
    PLACE(IModeSetup::SetGatedPattern, 11),
    PLACE(IModeSetup::SetGatedPulses, 12),
    PLACE(IModeSetup::SetTriggeredBurst, 13),
    PLACE(IModeSetup::SetTriggeredPattern, 14),
    PLACE(IModeSetup::SetTriggeredPulses, 15),
    PLACE(ITriggerSystem::GetArmSource, 7),
    PLACE(ITriggerSystem::GetClockInput, 8),
    PLACE(ITriggerSystem::GetBurstLength, 9),
    PLACE(ITriggerSystem::GetExtInput, 11),
    PLACE(ITriggerSystem::GetTriggerMode, 13),
    PLACE(ITriggerSystem::SetTriggerMode, 14),
    PLACE(ITriggerSystem::GetAuxOutputs, 15),
    PLACE(ITriggerSystem::GetPeriodSource, 16),
    PLACE(IArmSource::GetPllFrequency, 7),
    PLACE(IArmSource::GetSlope, 13),
    PLACE(IArmSource::GetSource, 15),
    PLACE(IArmSource::SetSource, 16),
    PLACE(IClockInput::GetImpedance, 7),
    PLACE(IClockInput::SetImpedance, 8),
    PLACE(IClockInput::GetSlope, 9),
    PLACE(IClockInput::GetThreshold, 11),
    PLACE(IClockInput::SetThreshold, 12),
    PLACE(IExtInput::GetImpedance, 7),
    PLACE(IExtInput::SetImpedance, 8),
    PLACE(IExtInput::GetThreshold, 9),
    PLACE(IExtInput::SetThreshold, 10),
    PLACE(IAuxOutputs::GetOutLevel, 9),
    PLACE(IAuxOutputs::SetOutLevel, 10),
    PLACE(IAuxOutputs::GetVxiSource, 13),
    PLACE(IAuxOutputs::SetVxiSource, 14),
    PLACE(IAuxOutputs::GetVxiLine, 15),
    PLACE(IAuxOutputs::SetVxiLine, 16),
    PLACE(IPatternMemory::CalcPrbs, 7),
    PLACE(IPatternMemory::SetPattern, 8),
    PLACE(IPatternMemory::GetPattern, 12),
    PLACE(IPllReference::GetReference, 7),
    PLACE(IPllReference::SetReference, 8),
};
#undef PLACE

TEST(DriverSlots, EachOperationHasItsPlace) {
  for (const Place &place : Places) EXPECT_EQ(place.slot, place.expected) << place.strOperation;
}

TEST(DriverSlots, EveryOperationOfTheContractIsWrittenDown) {
  std::set<std::string> written, declared;
  for (const Place &place : Places)
    if (std::string strPath = place.strOperation; !strPath.starts_with(Basic))
      written.insert(strPath.replace(strPath.find("::"), 2, "."));
  for (const test::Operation &operation : test::Operations()) declared.emplace(operation.strPath);
  EXPECT_EQ(written, declared);
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
