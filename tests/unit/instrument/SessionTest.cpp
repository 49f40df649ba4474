#include <gmock/gmock.h>

#include "InstrumentSession.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SessionTest : public testing::Test {
 protected:
  clsInstrInterface &Instr() { return *session.instr; }
  std::vector<std::string> Calls() { return session.driver.TakeTrace(); }
  std::vector<std::string> Boxes() { return session.host.TakeBoxes(); }

  InstrumentSession session;
};

TEST_F(SessionTest, TheInstanceIsMadeOnFirstUseAndStaysTheSame) {
  gobjInstr().reset();
  const auto first = InstrInterface();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(InstrInterface(), first);
  EXPECT_EQ(gobjInstr(), first);
}

TEST_F(SessionTest, TheFirstConnectStoresTheEmptyAddress) {
  EXPECT_TRUE(Instr().Connect());
  EXPECT_THAT(session.host.TakeLines(),
              ElementsAre("get LastUsed/ServerURL=Unknown", "pointer 11", "pointer 0", "save LastUsed/ServerURL="));
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Local Connection"));
}

TEST_F(SessionTest, AConnectToTheStoredServerStillSaysLocalAndForgetsTheAddress) {
  session.host.settings[{"LastUsed", "ServerURL"}] = "lab";
  EXPECT_TRUE(Instr().Connect());
  EXPECT_THAT(Calls(), ElementsAre("create(\"KolvenAtl.Kolven\", \"lab\") -> IDriverRoot"));
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Local Connection"));
  EXPECT_EQ((session.host.settings[{"LastUsed", "ServerURL"}]), "");
}

TEST_F(SessionTest, ACreationThatYieldsNothingAsksForAnAddress) {
  session.driver.QueueEmptyCreation();
  session.host.arrInputAnswers = {"bench"};
  EXPECT_TRUE(Instr().Connect());
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Connected to bench"));
  EXPECT_EQ((session.host.settings[{"LastUsed", "ServerURL"}]), "bench");
}

TEST_F(SessionTest, AConnectThatYieldsNothingTwiceFails) {
  session.driver.QueueEmptyCreation();
  session.driver.QueueEmptyCreation();
  EXPECT_FALSE(Instr().Connect());
  EXPECT_THAT(session.host.TakeLines(),
              ElementsAre("get LastUsed/ServerURL=Unknown", "pointer 11", "pointer 0",
                          "input: Please enter the complete URL of the network server.\r\nLeave this blank if the "
                          "server is local [Unknown] -> ",
                          "box stop: Connection Failed!"));
}

TEST_F(SessionTest, ASecondOpenClosesTheFirstSessionFirst) {
  session.driver.Add("Beta");
  Instr().Connect();
  Instr().OpenInstrument("Alpha");
  session.Forget();
  EXPECT_TRUE(Instr().OpenInstrument("Beta"));
  EXPECT_EQ(Calls().front(), "IInstrument{Alpha}.Close() -> ok");
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline", "StatusMessage: Online with Beta (Beta)"));
}

TEST_F(SessionTest, UnlessToldOtherwiseAnInstrumentIsOpenedWithoutAQueryOrResetAndDetectsErrors) {
  Instr().Connect();
  Calls();
  Instr().OpenInstrument("Alpha");
  EXPECT_THAT(Calls(), testing::Contains(testing::StartsWith("IInstrument{Alpha}.Open(False, False, True)")));
  Instr().OpenInstrument("Alpha", True, True, False);
  EXPECT_THAT(Calls(), testing::Contains(testing::StartsWith("IInstrument{Alpha}.Open(True, True, False)")));
}

TEST_F(SessionTest, OpenOnAnUnconnectedClassDoesNothing) {
  EXPECT_FALSE(Instr().OpenInstrument("Alpha"));
  EXPECT_THAT(session.arrEvents, IsEmpty());
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

TEST_F(SessionTest, ANameThatTheListDoesNotKnowAnswersFalseInSilence) {
  Instr().Connect();
  session.Forget();
  EXPECT_FALSE(Instr().OpenInstrument("Omega"));
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline"));
  EXPECT_FALSE(Instr().IsOnline(True));
}

TEST_F(SessionTest, AStoreThatCannotBeReadOrWrittenIsAFailureOfConnect) {
  session.host.arrGetFailures = {ScriptedFailure{75, "Path/File access error"}};
  EXPECT_FALSE(Instr().Connect());
  EXPECT_FALSE(Instr().IsConnected());
  EXPECT_THAT(
      session.host.TakeLines(),
      ElementsAre("get failed LastUsed/ServerURL", OfflineBox, "box stop: Path/File access error",
                  "log: 02/03/01 04:05\r\n  Error: 75 Path/File access error\r\n  Mod: clsInstrInterface; Proc: "
                  "Connect\r\n\r\n\r\n"));
  session.host.arrSaveFailures = {ScriptedFailure{75, "Path/File access error"}};
  EXPECT_FALSE(Instr().Connect());
  EXPECT_TRUE(Instr().IsConnected());
  EXPECT_THAT(session.arrEvents, IsEmpty());
}

TEST_F(SessionTest, AnInstrumentThatIsNotOpenedRaisesOfflineAndNothingMore) {
  session.Renew({{"opens", 0}});
  Instr().Connect();
  session.Forget();
  EXPECT_FALSE(Instr().OpenInstrument("Alpha"));
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline"));
  EXPECT_FALSE(Instr().IsOnline(True));
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

TEST_F(SessionTest, CloseWhileOfflineRaisesOfflineAllTheSame) {
  Instr().CloseInstrument();
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline"));
}

TEST_F(SessionTest, TheEndOfTheClassClosesTheSession) {
  session.Open();
  gobjInstr().reset();
  session.instr.reset();
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.Close() -> ok"));
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline"));
  EXPECT_TRUE(session.driver.References().empty());
}

TEST_F(SessionTest, OnlyALoudQuestionShowsThatNothingIsOpen) {
  EXPECT_FALSE(Instr().IsOnline(True));
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_FALSE(Instr().IsOnline());
  EXPECT_THAT(Boxes(), ElementsAre(OfflineBox));
}

TEST_F(SessionTest, TwoLocalStartsBeginOnce) {
  session.Open();
  EXPECT_TRUE(Instr().TransactionStart(False));
  EXPECT_FALSE(Instr().TransactionStart(False));
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.GetTransactionState() -> 7, False",
                                   "IInstrument{Alpha}.Transaction(0) -> ok"));
}

TEST_F(SessionTest, ALocalFinishWithinAGlobalTransactionCommitsNothing) {
  session.Open();
  Instr().TransactionStart(True);
  session.Forget();
  EXPECT_FALSE(Instr().TransactionFinish(False));
  EXPECT_THAT(Calls(), IsEmpty());
  EXPECT_TRUE(Instr().TransactionFinish(True));
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.GetTransactionState() -> 7, True",
                                   "IInstrument{Alpha}.Transaction(1) -> ok"));
}

TEST_F(SessionTest, AGlobalStartDropsWhatIsRunning) {
  session.Open();
  Instr().TransactionStart(False);
  session.Forget();
  EXPECT_TRUE(Instr().TransactionStart(True));
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.Transaction(2) -> ok",
                                   "IInstrument{Alpha}.GetTransactionState() -> 7, False",
                                   "IInstrument{Alpha}.Transaction(0) -> ok"));
}

TEST_F(SessionTest, ATransactionThatTheDriverHasOpenIsTakenOver) {
  session.Open({{"isOpen", -1}});
  EXPECT_TRUE(Instr().TransactionStart());
  EXPECT_THAT(Calls(), ElementsAre("IInstrument{Alpha}.GetTransactionState() -> 7, True"));
}

TEST_F(SessionTest, RefreshNeedsAConnectionOnlyAndResetAnOpenInstrument) {
  Instr().Connect();
  session.Forget();
  EXPECT_TRUE(Instr().InstrumentCommands(ICRefresh));
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_FALSE(Instr().InstrumentCommands(ICReset));
  EXPECT_THAT(Boxes(), ElementsAre(OfflineBox));
}

TEST_F(SessionTest, AnUnknownCommandIsAnIllegalCaseAndCountsAsDone) {
  session.Open();
  EXPECT_TRUE(Instr().InstrumentCommands(static_cast<InstrCommands>(5)));
  EXPECT_THAT(Boxes(), ElementsAre("box stop: Illegal Case"));
  EXPECT_EQ(session.host.intPointer, 0);
}

TEST_F(SessionTest, TheSelfTestHandsBackItsText) {
  session.Open({{"selftest", "All good"}});
  std::string strText = "before";
  EXPECT_TRUE(Instr().InstrumentCommands(ICSelftest, &strText));
  EXPECT_EQ(strText, "All good");
}

TEST_F(SessionTest, AnInstrumentThatCannotTellItsOptionsShowsADash) {
  session.Open();
  session.driver.FailMatching("IInstrument.GetOptions", 1, {-5, "no options"});
  udtInstrInfo info;
  EXPECT_TRUE(Instr().GetInstrInfo(info));
  EXPECT_EQ(info.strInstOptions, " - ");
  EXPECT_EQ(info.strSysVersion, "V1.0");
}

TEST_F(SessionTest, AnIdentityWithTooFewFieldsKeepsTheFieldsBeforeTheMissingOne) {
  session.Open({{"identity", "MAKER, P ,S"}});
  udtInstrInfo info;
  info.strSysVersion = "old";
  EXPECT_FALSE(Instr().GetInstrInfo(info));
  EXPECT_EQ(info.lngNumChannels, 2);
  EXPECT_EQ(info.strProductId, " P ");
  EXPECT_EQ(info.strSerialNum, "S");
  EXPECT_EQ(info.strSysVersion, "old");
  EXPECT_THAT(Boxes(), ElementsAre("box stop: Subscript out of range"));
}

TEST_F(SessionTest, TheVerboseFormNamesModuleAndProcedureUntilTheNextOpen) {
  session.Open();
  Instr().LetVerboseErrorMsg(True);
  session.driver.FailMatching("IInstrument.Reset", 1, {-5, "stuck"});
  Instr().InstrumentCommands(ICReset);
  EXPECT_THAT(Boxes(), ElementsAre("box stop: clsInstrInterface\r\nInstrumentCommands\r\n\r\nstuck"));
  Instr().OpenInstrument("Alpha");
  EXPECT_FALSE(Instr().GetVerboseErrorMsg());
}

}  // namespace
}  // namespace tarvik::test
