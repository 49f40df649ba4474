#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "instrument/KolvenDriver.h"

namespace tarvik::kolven {
namespace {

/// The usual form of an identifier.
std::string Text(const automation::Guid &guid) {
  const auto &[first, second, third, rest] = guid;
  char text[37];
  std::snprintf(text, sizeof text, "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", first, second, third, rest[0],
                rest[1], rest[2], rest[3], rest[4], rest[5], rest[6], rest[7]);
  return text;
}

// Drivers of other makers are asked for these.
TEST(ContractIdentifiers, AreThoseThatDriversHoldCompiledIn) {
  EXPECT_EQ(Text(IPllReference::Iid), "C66BF399-8B0F-898B-BD5C-112D71F75D0F");
  EXPECT_EQ(Text(IPatternMemory::Iid), "6262E42D-075A-8A29-AB89-075F41F52CDD");
  EXPECT_EQ(Text(IAuxOutputs::Iid), "CEB671AA-CDD2-836F-8666-B8B4A784925C");
  EXPECT_EQ(Text(IExtInput::Iid), "D74C30D3-107F-8304-B238-4BD588257106");
  EXPECT_EQ(Text(IClockInput::Iid), "224FA3A9-C41C-8EF9-A486-5D455293A6FC");
  EXPECT_EQ(Text(IArmSource::Iid), "41A630AA-EED0-8EF9-B25E-9FEA1DE38FAE");
  EXPECT_EQ(Text(ITriggerSystem::Iid), "9E7D9406-16A6-855F-AB5B-4B86BC237AD9");
  EXPECT_EQ(Text(IModeSetup::Iid), "B41DC108-915A-8ABF-96F0-79BF31D30C9F");
  EXPECT_EQ(Text(IChannelLevels::Iid), "51000F37-3755-8EC5-B9EF-26412C122E5D");
  EXPECT_EQ(Text(IDoublePulse::Iid), "9EF7540C-0142-8926-A8FE-382CFAD9E9E9");
  EXPECT_EQ(Text(ISinglePulse::Iid), "029BEA21-EA17-80A1-B45F-C4592D347B86");
  EXPECT_EQ(Text(IEdges::Iid), "CCE5C1EE-C48B-8932-87AC-DAC696A6C2D0");
  EXPECT_EQ(Text(IChannelTiming::Iid), "5251FD92-84E9-8D06-B5E3-F14EF1DBBA2D");
  EXPECT_EQ(Text(ILimitPair::Iid), "54BABF44-D385-815B-92F4-E99BBB4EA864");
  EXPECT_EQ(Text(ILimitGroup::Iid), "059D263A-6190-880B-B24D-B66E96C046F8");
  EXPECT_EQ(Text(IChannel::Iid), "623E3BAA-708C-8AE5-874B-BCF9C6BDF97F");
  EXPECT_EQ(Text(IChannelList::Iid), "380B4FDD-55D3-8681-8849-190485B5936C");
  EXPECT_EQ(Text(IErrorQueue::Iid), "5DD99C43-E782-8D35-83AD-14259227432E");
  EXPECT_EQ(Text(IRestrictions::Iid), "F05C1AA2-52DD-84FD-B553-6F74B58D9C4C");
  EXPECT_EQ(Text(IInstrument::Iid), "1B6ED75A-5CB6-8D36-898A-2F49EAA67538");
  EXPECT_EQ(Text(IInstrumentList::Iid), "BC6FAB6A-CC0F-87EF-B944-706223514D0D");
  EXPECT_EQ(Text(IDriverRoot::Iid), "2A36D5D2-43D3-8736-8993-AD205F2A99B0");
}

}  // namespace
}  // namespace tarvik::kolven
