#include "Driver.h"

namespace tarvik::simulator::testing_support {
namespace {

using namespace tarvik::kolven;

class DriverTest : public ::testing::Test {
 protected:
  DriverTest() { PrivateDataFolder(); }
};

TEST_F(DriverTest, ListsTheDefaultRack) {
  const auto list = Instruments();
  EXPECT_EQ(6, Read<Long>(list, &IInstrumentList::GetCount));
  automation::AutomationVariant key{};
  key.vt = automation::VtInteger;
  key.iVal = 5;
  Ref<automation::IDispatch> object;
  Check(list->GetItem(key, object.Out()));
  automation::String name;
  Check(automation::Narrow<IInstrument>(object)->GetName(name.Out()));
  EXPECT_EQ("VB-200", name.Text());
  Check(list->Refresh());
  EXPECT_EQ(6, Read<Long>(list, &IInstrumentList::GetCount));
}

TEST_F(DriverTest, UnknownKeyIsAFailureThatNamesIt) {
  const auto list = Instruments();
  automation::AutomationVariant key{};
  key.vt = automation::VtInteger;
  key.iVal = 7;
  Ref<automation::IDispatch> object;
  EXPECT_EQ("There is no instrument with the number 7", Refusal(list->GetItem(key, object.Out())));
  EXPECT_FALSE(object);
  key.vt = automation::VtDouble;
  EXPECT_EQ("The key of an instrument is its name or its number", Refusal(list->GetItem(key, object.Out())));
  EXPECT_THROW(Find("VP-999"), RunTimeError);
}

std::vector<Byte> InfoOf(const std::string &strName) {
  automation::ArrayOwner buffer(ByteArray(1, std::vector<Byte>(28, 0xEE)));
  Check(Find(strName)->GetViInfo(buffer.InOut()));
  return automation::ToByteArray(buffer.Get()).Elements();
}

TEST_F(DriverTest, InformationRecordOfASlotInstrument) {
  std::vector<Byte> expected(28, 0);
  expected[16] = 2;
  expected[22] = 3;
  expected[24] = 24;
  expected[26] = 0x10;
  expected[27] = 0x02;
  EXPECT_EQ(expected, InfoOf("VP-210"));
}

TEST_F(DriverTest, InformationRecordOfABox) {
  std::vector<Byte> expected(28, 0);
  expected[16] = 1;
  expected[18] = 9;
  EXPECT_EQ(expected, InfoOf("VB-200"));
}

TEST_F(DriverTest, InformationRecordNeedsItsArray) {
  automation::ArrayOwner buffer(ByteArray(1, std::vector<Byte>(27)));
  EXPECT_EQ("The information record needs an array of 28 bytes", Refusal(Find("VP-210")->GetViInfo(buffer.InOut())));
}

TEST_F(DriverTest, ReservedInstrumentAnswersThatItDidNotOpen) { EXPECT_FALSE(Open(Find("VP-210 reserved"))); }

TEST_F(DriverTest, WithoutASessionOperationsFailWithAReason) {
  const auto instrument = Find("VP-210");
  Long value = 0;
  EXPECT_EQ("No session is open with VP-210", Refusal(instrument->GetChannelMath(&value)));
  ASSERT_TRUE(Open(instrument));
  const auto timing = Fetch(Channel(instrument, 1), &IChannel::GetTiming);
  Check(instrument->Close());
  EXPECT_EQ("No session is open with VP-210", Refusal(timing->SetWidth(1e-7)));
}

TEST_F(DriverTest, PlaceForTheResultIsNeeded) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  EXPECT_EQ(automation::StatusPointer, instrument->GetChannels(nullptr));
  EXPECT_EQ(automation::StatusPointer, instrument->GetChannelMath(nullptr));
}

TEST_F(DriverTest, UncalledOperationsAreNotImplemented) {
  const auto instrument = Find("VP-210");
  EXPECT_EQ(automation::StatusNotImplemented, instrument->Reserved19());
  std::uint32_t count = 0;
  EXPECT_EQ(automation::StatusNotImplemented, instrument->GetTypeInfoCount(&count));
}

TEST_F(DriverTest, ChannelsAreCountedFromOne) {
  const auto instrument = Find("VP-110");
  Open(instrument);
  const auto channels = Fetch(instrument, &IInstrument::GetChannels);
  EXPECT_EQ(1, Read<Long>(channels, &IChannelList::GetCount));
  Ref<IChannel> channel;
  EXPECT_EQ("VP-110 has no channel 2", Refusal(channels->GetItem(2, channel.Out())));
  EXPECT_EQ(964, Read<Long>(Fetch(instrument, &IInstrument::GetRestrictions), &IRestrictions::GetMask));
}

TEST_F(DriverTest, RejectedCommitTellsEveryReasonAndLeavesTheInstrument) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto timing = Fetch(Channel(instrument, 1), &IChannel::GetTiming);
  Check(instrument->Transaction(TransactionBegin));
  Check(timing->SetFrequency(1e6));
  Check(timing->SetWidth(1e-9));
  Check(Channel(instrument, 2)->SetSignalFormat(9));
  Integer first = 0;
  VariantBool open = 0;
  Check(instrument->GetTransactionState(&first, &open));
  EXPECT_EQ(3, first);
  EXPECT_EQ(-1, open);
  EXPECT_EQ(
      R"~(-222,"Data out of range: width of channel 1";-224,"Illegal parameter value: signal format of channel 2")~",
      Refusal(instrument->Transaction(TransactionCommit)));
  Check(instrument->GetTransactionState(&first, &open));
  EXPECT_EQ(0, open);
  EXPECT_EQ(100e-9, Read<Double>(timing, &IChannelTiming::GetWidth));
}

TEST_F(DriverTest, VerboseErrorsTellValueAndRange) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto queue = Fetch(instrument, &IInstrument::GetErrorQueue);
  EXPECT_EQ(0, Read<VariantBool>(queue, &IErrorQueue::GetVerbose));
  Check(queue->SetVerbose(-1));
  EXPECT_EQ(-1, Read<VariantBool>(queue, &IErrorQueue::GetVerbose));
  EXPECT_EQ(R"~(-222,"Data out of range: width of channel 1 (1e-09 s, allowed 1.5e-09 s to 999.5 s)")~",
            Refusal(Fetch(Channel(instrument, 1), &IChannel::GetTiming)->SetWidth(1e-9)));
}

TEST_F(DriverTest, WithoutErrorDetectionErrorsWaitInTheQueueOnce) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto queue = Fetch(instrument, &IInstrument::GetErrorQueue);
  Check(instrument->SetAutoDetectErrors(0));
  Check(Fetch(Channel(instrument, 1), &IChannel::GetTiming)->SetWidth(1e-9));
  EXPECT_EQ(R"~(-222,"Data out of range: width of channel 1")~", Text(queue, &IErrorQueue::GetErrors));
  EXPECT_EQ("", Text(queue, &IErrorQueue::GetErrors));
}

TEST_F(DriverTest, WarningLastsWhileItsConditionHolds) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto queue = Fetch(instrument, &IInstrument::GetErrorQueue);
  const auto timing = Fetch(Channel(instrument, 2), &IChannel::GetTiming);
  Check(timing->SetWidth(0.98e-6));
  EXPECT_EQ(R"~(101,"Width of channel 2 close to the period")~", Text(queue, &IErrorQueue::GetWarnings));
  EXPECT_EQ(R"~(101,"Width of channel 2 close to the period")~", Text(queue, &IErrorQueue::GetWarnings));
  Check(instrument->Reset());
  EXPECT_EQ("", Text(queue, &IErrorQueue::GetWarnings));
}

TEST_F(DriverTest, StateOutlivesObjectsAndIsSharedByRoots) {
  {
    const auto instrument = Find("VP-210");
    Open(instrument);
    Check(Fetch(Channel(instrument, 1), &IChannel::GetTiming)->SetWidth(55e-9));
  }
  const auto again = Find("VP-210");
  Open(again, false);
  const auto other = Find("VP-210");
  Open(other, false);
  const auto timing = Fetch(Channel(other, 1), &IChannel::GetTiming);
  EXPECT_EQ(55e-9, Read<Double>(timing, &IChannelTiming::GetWidth));
  Check(Fetch(Channel(again, 1), &IChannel::GetTiming)->SetWidth(66e-9));
  EXPECT_EQ(66e-9, Read<Double>(timing, &IChannelTiming::GetWidth));
}

TEST_F(DriverTest, LimitSwitchIsOneForBothPairs) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto channel = Channel(instrument, 1);
  const auto voltage = Fetch(Fetch(channel, &IChannel::GetVoltageLimits), &ILimitGroup::GetLimits);
  const auto current = Fetch(Fetch(channel, &IChannel::GetCurrentLimits), &ILimitGroup::GetLimits);
  Check(voltage->SetHigh(5));
  Check(current->SetEnabled(-1));
  EXPECT_EQ(-1, Read<VariantBool>(voltage, &ILimitPair::GetEnabled));
  EXPECT_EQ(R"~(-221,"Settings conflict: high level of channel 1 above the high voltage limit")~",
            Refusal(Levels(channel)->SetLevel(1, 0, 6, 0)));
}

TEST_F(DriverTest, PatternRowsReadBackWithTheirLength) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
  automation::ArrayOwner sent(ByteArray(1, {0xA5, 0xC0}));
  Check(memory->SetPattern(3, 2, sent.InOut(), 10));
  automation::ArrayOwner read;
  Long lngLength = 0;
  Check(memory->GetPattern(3, 2, read.InOut(), &lngLength));
  EXPECT_EQ(10, lngLength);
  EXPECT_EQ(1, automation::ToByteArray(read.Get()).LowerBound());
  EXPECT_EQ((std::vector<Byte>{0xA5, 0xC0}), automation::ToByteArray(read.Get()).Elements());
  automation::ArrayOwner zeroBased(ByteArray(0, {1, 2, 3}));
  Check(memory->GetPattern(3, 2, zeroBased.InOut(), &lngLength));
  EXPECT_EQ(0, automation::ToByteArray(zeroBased.Get()).LowerBound());
  EXPECT_EQ(2, automation::ToByteArray(zeroBased.Get()).Count());
  EXPECT_EQ(R"~(-224,"Illegal parameter value: pattern form")~", Refusal(memory->SetPattern(1, 1, sent.InOut(), 8)));
  EXPECT_EQ(R"~(-224,"Illegal parameter value: pattern row")~", Refusal(memory->SetPattern(4, 2, sent.InOut(), 8)));
}

TEST_F(DriverTest, PrbsFillsTheCallersArrayWhateverItsLowerBound) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
  for (const Long lngLowerBound : {0, 1}) {
    automation::ArrayOwner arr(ByteArray(lngLowerBound, {0x00, 0x00, 0xFF}));
    Check(memory->CalcPrbs(1, 16, 7, arr.InOut()));
    EXPECT_EQ((std::vector<Byte>{0xFE, 0x04, 0xFF}), automation::ToByteArray(arr.Get()).Elements());
  }
  automation::ArrayOwner arr(ByteArray(1, {0}));
  EXPECT_EQ(R"~(-222,"Data out of range: PRBS base")~", Refusal(memory->CalcPrbs(1, 8, 15, arr.InOut())));
}

TEST_F(DriverTest, SelfTestReplacesTheCallersText) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  Integer intCode = 9;
  automation::AutomationString bstr = automation::AllocString("old");
  Check(instrument->SelfTest(&intCode, &bstr));
  const automation::String text = automation::String::Adopt(bstr);
  EXPECT_EQ(0, intCode);
  EXPECT_EQ("Self test passed", text.Text());
}

TEST_F(DriverTest, TransactionCommandsOutOfPlaceFail) {
  const auto instrument = Find("VP-210");
  Open(instrument);
  EXPECT_EQ(R"~(-221,"Settings conflict: no transaction is open")~",
            Refusal(instrument->Transaction(TransactionCommit)));
  Check(instrument->Transaction(TransactionAbort));
  EXPECT_EQ("There is no transaction command 3", Refusal(instrument->Transaction(3)));
}

}  // namespace
}  // namespace tarvik::simulator::testing_support
