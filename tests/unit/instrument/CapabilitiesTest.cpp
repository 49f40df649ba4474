#include <gmock/gmock.h>

#include <limits>

#include "InstrumentSession.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CapabilitiesTest : public testing::Test {
 protected:
  clsInstrInterface &Instr() { return *session.instr; }
  std::vector<std::string> Calls() { return session.driver.TakeTrace(); }
  std::vector<std::string> Boxes() { return session.host.TakeBoxes(); }

  InstrumentSession session;
};

TEST_F(CapabilitiesTest, AnErrorCheckThatIsOffAnswersTrueWithoutTheDriver) {
  session.Open();
  EXPECT_TRUE(Instr().CheckErrors());
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(CapabilitiesTest, AnErrorCheckOfflineIsSilent) {
  EXPECT_FALSE(Instr().CheckErrors(True));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(CapabilitiesTest, TwoErrorEntriesStandOnTwoLinesWithoutQuotes) {
  session.Open();
  session.driver.strErrors = "\"E1\";\"E2\"";
  EXPECT_TRUE(Instr().CheckErrors(True));
  EXPECT_THAT(Boxes(), ElementsAre("box exclamation: Instrument Errors(s):\r\nE1\r\nE2"));
  EXPECT_FALSE(Instr().CheckErrors(True)) << "an error is returned once";
}

TEST_F(CapabilitiesTest, AWarningIsShownOnceAndAgainAfterATransaction) {
  session.Open();
  session.driver.arrWarnings = {"\"W1\";W2"};
  EXPECT_TRUE(Instr().CheckWarnings(True));
  EXPECT_TRUE(Instr().CheckWarnings(True));
  EXPECT_THAT(Boxes(), ElementsAre("box exclamation: Instrument Warning(s):\r\nW1\r\nW2"));
  Instr().TransactionStart();
  Instr().TransactionFinish();
  EXPECT_TRUE(Instr().CheckWarnings(True));
  EXPECT_THAT(Boxes(), ElementsAre("box exclamation: Instrument Warning(s):\r\nW1\r\nW2"));
}

TEST_F(CapabilitiesTest, AWarningThatCameBackIsShownAgain) {
  session.Open();
  session.driver.arrWarnings = {"W", "", "W"};
  for (int i = 0; i < 3; ++i) Instr().CheckWarnings(True);
  EXPECT_THAT(Boxes(), ElementsAre("box exclamation: Instrument Warning(s):\r\nW",
                                   "box exclamation: Instrument Warning(s):\r\nW"));
}

TEST_F(CapabilitiesTest, AGlobalTransactionHoldsWarningsBack) {
  session.Open();
  session.driver.arrWarnings = {"W"};
  Instr().TransactionStart(True);
  session.Forget();
  EXPECT_TRUE(Instr().CheckWarnings(True));
  EXPECT_THAT(Calls(), IsEmpty());
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(CapabilitiesTest, AWarningCheckOfflineAnswersTrue) {
  EXPECT_TRUE(Instr().CheckWarnings(True));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(CapabilitiesTest, OnlyAChangeOfErrorsEnabledReachesTheDriver) {
  session.Open();
  Instr().LetErrorsEnabled(False);
  EXPECT_THAT(Calls(), IsEmpty());
  Instr().LetErrorsEnabled(True);
  Instr().LetErrorsEnabled(True);
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.SetAutoDetectErrors(True) -> ok"));
}

TEST_F(CapabilitiesTest, TheTimeoutOfflineIsZeroWithAMessage) {
  EXPECT_EQ(Instr().GetPnpTimeout(), 0);
  EXPECT_THAT(Boxes(), ElementsAre(OfflineBox));
}

TEST_F(CapabilitiesTest, TheWalkEndsSilentlyOutsideOfTheList) {
  viInfo info;
  std::string strName = "x";
  EXPECT_FALSE(Instr().GetViInfo(1, info, strName)) << "unconnected";
  Instr().Connect();
  session.Forget();
  EXPECT_FALSE(Instr().GetViInfo(0, info, strName));
  EXPECT_FALSE(Instr().GetViInfo(2, info, strName));
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(strName, "x");
}

TEST_F(CapabilitiesTest, AnEntryOfTheListIsReadWhileOffline) {
  session.Renew({{"vi", "00000000000000000000000000000000020005000000030009000100"}});
  Instr().Connect();
  viInfo info;
  std::string strName;
  EXPECT_TRUE(Instr().GetViInfo(1, info, strName));
  EXPECT_EQ(strName, "Alpha");
  EXPECT_EQ(info.Kind(), 2);
  EXPECT_TRUE(info.HasSlot());
  EXPECT_EQ(info.Slot(), 3);
  EXPECT_EQ(info.LogicalAddress(), 9);
  EXPECT_EQ(info.ModelCode(), 1);
  EXPECT_FALSE(Instr().IsOnline(True));
}

TEST_F(CapabilitiesTest, AnEntryWithoutASlotHasItsAddressElsewhere) {
  viInfo info;
  info.arrBytes[16] = 1;
  info.arrBytes[18] = 0xFE;
  info.arrBytes[19] = 0xFF;
  EXPECT_FALSE(info.HasSlot());
  EXPECT_EQ(info.LogicalAddress(), -2);
}

TEST(viInfo, IsWrittenIntoAnArrayWithRoomForIt) {
  const viInfo record = viInfo::Of(eKindSlot, 24, 3, 0x0210);
  const automation::ArrayOwner array(ByteArray(1, std::vector<Byte>(30, 0xEE)));
  EXPECT_TRUE(record.WriteTo(array.Get()));
  const std::vector<Byte> arrBytes = automation::ToByteArray(array.Get()).Elements();
  EXPECT_EQ(arrBytes, (std::vector<Byte>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  0, 0,    0, 0,    0,
                                         0, 2, 0, 0, 0, 0, 0, 3, 0, 24, 0, 0x10, 2, 0xEE, 0xEE}));
}

TEST(viInfo, IsNotWrittenIntoAnythingElse) {
  const automation::ArrayOwner array(ByteArray(0, std::vector<Byte>(27, 0xEE)));
  EXPECT_FALSE(viInfo::Of(eKindBox, 9).WriteTo(array.Get()));
  EXPECT_THAT(automation::ToByteArray(array.Get()).Elements(), testing::Each(0xEE));
  EXPECT_FALSE(viInfo().WriteTo(nullptr));
}

TEST(viInfo, KeepsWhatAShorterArrayLacksAndDropsWhatALongerOneHasMore) {
  viInfo record = viInfo::Of(eKindSlotOnController, 24, 3, 0x0210);
  record.ReadFrom(automation::ArrayOwner(ByteArray(1, std::vector<Byte>(24, 7))).Get());
  EXPECT_EQ(record.Slot(), 0x0707);
  EXPECT_EQ(record.ModelCode(), 0x0210);
  record.ReadFrom(automation::ArrayOwner(ByteArray(0, std::vector<Byte>(40, 9))).Get());
  EXPECT_THAT(record.arrBytes, testing::Each(9));
}

TEST_F(CapabilitiesTest, OfflineThereIsNoChannelCountAndNoRestriction) {
  EXPECT_EQ(Instr().ChannelCount(), std::nullopt);
  EXPECT_FALSE(Instr().IsSingleChannel());
  EXPECT_FALSE(Instr().IsDualChannel());
  EXPECT_FALSE(Instr().IsRestricted(4));
  EXPECT_TRUE(Instr().IsNotRestricted(4));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(CapabilitiesTest, RestrictionsAreASignedMask) {
  session.Open({{"channels", 1}, {"mask", -2147483648LL + 1024}});
  EXPECT_TRUE(Instr().IsSingleChannel());
  EXPECT_TRUE(Instr().IsRestricted(7168));
  EXPECT_FALSE(Instr().IsRestricted(512));
  EXPECT_FALSE(Instr().IsRestricted(std::numeric_limits<Long>::min()));
}

TEST_F(CapabilitiesTest, TheReferenceThatTheDriverTookComesBack) {
  session.Open({{"pllround", 5000000.0}});
  Double dblFreq = 5000001;
  Long eSource = 0;
  EXPECT_TRUE(Instr().PllRefSource(dblFreq, eSource, False));
  EXPECT_EQ(dblFreq, 5000000.0);
  EXPECT_TRUE(Instr().PllRefSource(dblFreq, eSource, True));
  EXPECT_EQ(eSource, 0);
}

}  // namespace
}  // namespace tarvik::test
