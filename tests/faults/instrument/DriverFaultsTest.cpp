#include <gmock/gmock.h>

#include "InstrumentSession.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const DriverFailure TheFailure{Refused, "driver failed"};

std::string Record(const std::string &strProc) {
  return "log: 02/03/01 04:05\r\n  Error: -2147221503 driver failed\r\n  Mod: clsInstrInterface; Proc: " + strProc +
         "\r\n\r\n\r\n";
}

/// What a user meets when the driver or the log fails. Every call that fails in every way is swept elsewhere.
class SessionFaultTest : public testing::Test {
 protected:
  InstrumentSession session;
};

TEST_F(SessionFaultTest, AFailedCreationLeavesTheHourglassAndASecondConnectTakesItAway) {
  session.driver.QueueFailingCreation(TheFailure);
  EXPECT_FALSE(session.instr->Connect());
  EXPECT_THAT(session.host.TakeLines(),
              ElementsAre("get LastUsed/ServerURL=Unknown", "pointer 11",
                          "box information: You need to be online to an instrument to perform this operation",
                          "box stop: driver failed", Record("Connect")));
  EXPECT_EQ(session.host.intPointer, 11);
  EXPECT_FALSE(session.instr->IsConnected());
  EXPECT_TRUE(session.instr->Connect());
  EXPECT_EQ(session.host.intPointer, 0);
}

TEST_F(SessionFaultTest, AFailingCloseStillEndsTheSession) {
  session.Open();
  session.driver.FailAt(1, TheFailure);
  session.instr->CloseInstrument();
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
  EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline"));
  EXPECT_FALSE(session.instr->IsOnline(True));
  EXPECT_THAT(session.driver.References(), ElementsAre(Pair("IDriverRoot", 1)));
}

TEST_F(SessionFaultTest, ADriverThatAnswersNothingAnyMoreComesToAnEnd) {
  session.Open();
  session.driver.FailAt(1, TheFailure, 100);
  EXPECT_FALSE(session.instr->CheckErrors(True));
  const std::vector<std::string> arrLines = session.host.TakeLines();
  // Three reports ask, the fourth does not; innermost first.
  EXPECT_THAT(arrLines, ElementsAre("box stop: driver failed", Record("GetVerboseErrorMsg"), "box stop: driver failed",
                                    Record("GetVerboseErrorMsg"), "box stop: driver failed",
                                    Record("GetVerboseErrorMsg"), "box stop: driver failed", Record("CheckErrors")));
}

TEST_F(SessionFaultTest, WhenTheLogCannotBeWrittenTheFailureLeavesAfterTheCancel) {
  session.Open();
  session.host.logFailure = ScriptedFailure{70, "Permission denied", 1};
  session.driver.FailMatching("ILimitPair.SetHigh", 1, TheFailure);
  try {
    session.instr->SetLimits({});
    FAIL() << "the failure of the log has to leave";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 70);
  }
  EXPECT_EQ(session.driver.arrTrace.back(), "IInstrument{Alpha}.Transaction(2) -> ok");
  EXPECT_FALSE(session.InTransaction());
}

TEST_F(SessionFaultTest, WhenTheLogCannotBeWrittenTheHourglassGoesAllTheSame) {
  session.Open();
  session.host.logFailure = ScriptedFailure{70, "Permission denied", 1};
  session.driver.FailMatching("IInstrument.Calibrate", 1, TheFailure);
  EXPECT_THROW(session.instr->InstrumentCommands(ICCalibrate), RunTimeError);
  EXPECT_EQ(session.host.intPointer, 0);
}

TEST_F(SessionFaultTest, LetErrorsEnabledHandsTheFailureToItsCaller) {
  session.Open();
  session.driver.FailAt(1, TheFailure);
  EXPECT_THROW(session.instr->LetErrorsEnabled(True), RunTimeError);
  EXPECT_TRUE(session.instr->GetErrorsEnabled());
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
