#include <gmock/gmock.h>

#include <functional>

#include "InstrumentSession.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;
using testing::UnorderedElementsAre;

const DriverFailure TheFailure{Refused, "driver failed"};

std::string Record(const std::string &strProc) {
  return "log: 02/03/01 04:05\r\n  Error: -2147221503 driver failed\r\n  Mod: clsInstrInterface; Proc: " + strProc +
         "\r\n\r\n\r\n";
}

using Operation = std::function<Boolean(clsInstrInterface &)>;

struct Case {
  const char *strName;
  const char *strProc;
  Operation operation;
};

void PrintTo(const Case &item, std::ostream *out) { *out << item.strName; }

udtModeInfo Mode(Long TriggerMode, Long PulseMode) {
  udtModeInfo info;
  info.TriggerMode = TriggerMode;
  info.PulseMode = PulseMode;
  return info;
}

template <class RecordType>
Operation With(Boolean (clsInstrInterface::*operation)(RecordType &)) {
  return [=](clsInstrInterface &instr) {
    std::remove_const_t<RecordType> record{};
    return (instr.*operation)(record);
  };
}

Operation Command(InstrCommands eIC) {
  return [=](clsInstrInterface &instr) {
    std::string strText;
    return instr.InstrumentCommands(eIC, &strText);
  };
}

std::string NameOf(const testing::TestParamInfo<Case> &info) { return info.param.strName; }

class FaultTest : public testing::TestWithParam<Case> {
 protected:
  void Prepare() {
    session.Open();
    session.instr->LetWarningsEnabled(True);
    session.Forget();
  }
  Boolean Run() { return GetParam().operation(*session.instr); }
  /// The driver calls that the operation makes when all goes well.
  std::vector<std::string> Calls() {
    Prepare();
    EXPECT_TRUE(Run());
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    return session.driver.TakeTrace();
  }
  void ExpectNothingLeftOver() {
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.InTransaction());
    EXPECT_FALSE(session.InGlobalTransaction());
    EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value()) << "a transaction stayed open at the driver";
    EXPECT_THAT(session.driver.References(), UnorderedElementsAre(Pair("IDriverRoot", 1), Pair("IInstrument", 1)));
  }
  void ExpectSecondTrySucceeds() {
    session.Forget();
    EXPECT_TRUE(Run());
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    ExpectNothingLeftOver();
  }
  std::vector<std::string> LogsAndBoxes() {
    std::vector<std::string> arrLines;
    for (const std::string &strLine : session.host.TakeLines())
      if (strLine.starts_with("box") || strLine.starts_with("log")) arrLines.push_back(strLine);
    return arrLines;
  }

  InstrumentSession session;
};

bool IsWarningPoll(const std::string &strCall) {
  return strCall.find(".GetErrorQueue()") != std::string::npos || strCall.find(".GetWarnings()") != std::string::npos;
}

/// An operation without a transaction: one report under its own name, the answer false.
class PlainFaultTest : public FaultTest {};

TEST_P(PlainFaultTest, EachFailingCallIsReportedOnceAndLeavesNothingBehind) {
  const std::vector<std::string> arrCalls = Calls();
  ASSERT_FALSE(arrCalls.empty());
  for (std::size_t k = 0; k < arrCalls.size(); ++k) {
    SCOPED_TRACE(arrCalls[k]);
    Prepare();
    session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
    EXPECT_FALSE(Run());
    const bool fPoll = IsWarningPoll(arrCalls[k]) && std::string(GetParam().strName).find("Check") != 0 &&
                       std::string(GetParam().strName).find("Verbose") == std::string::npos;
    EXPECT_THAT(LogsAndBoxes(),
                ElementsAre("box stop: driver failed", Record(fPoll ? "CheckWarnings" : GetParam().strProc)));
    ExpectNothingLeftOver();
    ExpectSecondTrySucceeds();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, PlainFaultTest,
    testing::Values(Case{"GetMode", "GetMode", With(&clsInstrInterface::GetMode)},
                    Case{"GetTiming", "GetTiming", With(&clsInstrInterface::GetTiming)},
                    Case{"GetLevels", "GetLevels", With(&clsInstrInterface::GetLevels)},
                    Case{"GetLimits", "GetLimits", With(&clsInstrInterface::GetLimits)},
                    Case{"GetTriggerLevels", "GetTriggerLevels", With(&clsInstrInterface::GetTriggerLevels)},
                    Case{"OutputNormal", "Output", [](auto &instr) { return instr.Output(1, True); }},
                    Case{"OutputComplement", "Output", [](auto &instr) { return instr.Output(2, True, True); }},
                    Case{"SetRz", "SetRz",
                         [](auto &instr) {
                           return instr.SetRz(BooleanArray(1, {True, False}));
                         }},
                    Case{"GetRz", "GetRz",
                         [](auto &instr) {
                           BooleanArray fRz(1, {False, False});
                           return instr.GetRz(fRz);
                         }},
                    Case{"SetPatternArray", "SetPatternArray",
                         [](auto &instr) {
                           ByteArray arr(0, {1, 2});
                           return instr.SetPatternArray(1, arr, 16);
                         }},
                    Case{"GetPatternArray", "GetPatternArray",
                         [](auto &instr) {
                           ByteArray arr(0, {0});
                           Long lngLength = 0;
                           return instr.GetPatternArray(2, arr, lngLength);
                         }},
                    Case{"CalcPRBS", "CalcPRBS",
                         [](auto &instr) {
                           ByteArray arr(0, {0, 0});
                           return instr.CalcPRBS(0, 15, 4, arr);
                         }},
                    Case{"PllRefSourceGet", "PllRefSource",
                         [](auto &instr) {
                           Double dblFreq = 0;
                           Long eSource = 0;
                           return instr.PllRefSource(dblFreq, eSource, True);
                         }},
                    Case{"PllRefSourceSet", "PllRefSource",
                         [](auto &instr) {
                           Double dblFreq = 1e6;
                           Long eSource = 1;
                           return instr.PllRefSource(dblFreq, eSource, False);
                         }},
                    Case{"Reset", "InstrumentCommands", Command(ICReset)},
                    Case{"Selftest", "InstrumentCommands", Command(ICSelftest)},
                    Case{"Calibrate", "InstrumentCommands", Command(ICCalibrate)},
                    Case{"Refresh", "InstrumentCommands", Command(ICRefresh)},
                    Case{"Options", "InstrumentCommands", Command(ICOptions)},
                    Case{"CheckWarnings", "CheckWarnings", [](auto &instr) { return instr.CheckWarnings(True); }},
                    Case{"GetViInfo", "GetViInfo",
                         [](auto &instr) {
                           viInfo entry;
                           std::string strName;
                           return instr.GetViInfo(1, entry, strName);
                         }},
                    Case{"GetPnpTimeout", "GetPnpTimeout",
                         [](auto &instr) { return Boolean(instr.GetPnpTimeout() == 10000); }}),
    NameOf);

/// An operation that wraps its calls in a transaction of its own.
class TransactionFaultTest : public FaultTest {};

TEST_P(TransactionFaultTest, EachFailingCallIsToldAndDropsTheTransaction) {
  const std::vector<std::string> arrCalls = Calls();
  // State and begin, the settings, state and commit, the poll of the warnings.
  ASSERT_GT(arrCalls.size(), 6u);
  const std::size_t poll = arrCalls.size() - 2, finish = poll - 2;
  for (std::size_t k = 0; k < arrCalls.size(); ++k) {
    SCOPED_TRACE(arrCalls[k]);
    Prepare();
    session.driver.FailAt(static_cast<int>(k) + 1, TheFailure);
    const Boolean fResult = Run();
    const std::vector<std::string> arrTold = LogsAndBoxes();
    const std::vector<std::string> arrTrace = session.driver.TakeTrace();
    if (k < 2) {
      // The begin fails in silence, and the settings go out without a transaction.
      EXPECT_TRUE(fResult);
      EXPECT_THAT(arrTold, IsEmpty());
      EXPECT_EQ(arrTrace.at(k + 1), "IInstrument{Alpha}.Transaction(2) -> ok");
    } else if (k >= poll) {
      EXPECT_FALSE(fResult);
      EXPECT_THAT(arrTold, ElementsAre("box stop: driver failed", Record("CheckWarnings")));
    } else if (k >= finish) {
      EXPECT_TRUE(fResult);
      EXPECT_THAT(arrTold, ElementsAre("box exclamation: Instrument Errors(s):\r\ndriver failed"));
      EXPECT_THAT(session.arrEvents, ElementsAre("InstrError: driver failed"));
      EXPECT_THAT(arrTrace, Contains("IInstrument{Alpha}.Transaction(2) -> ok"));
    } else if (IsWarningPoll(arrCalls[k])) {
      // The poll of an output switched on the way tells its own failure; the operation goes on.
      EXPECT_TRUE(fResult);
      EXPECT_THAT(arrTold, ElementsAre("box stop: driver failed", Record("CheckWarnings")));
    } else if (fResult) {
      // An output that could not be switched is told under its own name.
      EXPECT_STREQ(GetParam().strName, "SetTiming");
      EXPECT_THAT(arrTold, ElementsAre("box stop: driver failed", Record("Output")));
      EXPECT_THAT(arrTrace, Contains("IInstrument{Alpha}.Transaction(1) -> ok"));
    } else {
      EXPECT_THAT(arrTold, ElementsAre("box stop: driver failed", Record(GetParam().strProc)));
      EXPECT_EQ(arrTrace.back(), "IInstrument{Alpha}.Transaction(2) -> ok");
    }
    ExpectNothingLeftOver();
    ExpectSecondTrySucceeds();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, TransactionFaultTest,
    testing::Values(Case{"SetModeBurst", "SetMode", [](auto &instr) { return instr.SetMode(Mode(1, 1)); }},
                    Case{"SetModePattern", "SetMode", [](auto &instr) { return instr.SetMode(Mode(2, 2)); }},
                    Case{"SetModeExtWidth", "SetMode", [](auto &instr) { return instr.SetMode(Mode(3, 0)); }},
                    Case{"SetTiming", "SetTiming", With(&clsInstrInterface::SetTiming)},
                    Case{"SetLevels", "SetLevels", With(&clsInstrInterface::SetLevels)},
                    Case{"SetLimits", "SetLimits", With(&clsInstrInterface::SetLimits)},
                    Case{"SetTriggerLevels", "SetTriggerLevels", With(&clsInstrInterface::SetTriggerLevels)}),
    NameOf);

class SessionFaultTest : public testing::Test {
 protected:
  InstrumentSession session;
};

TEST_F(SessionFaultTest, OpenInstrumentTellsEachFailureUnderTheNameOfTheStepThatMetIt) {
  struct Step {
    const char *strCall;
    const char *strProc;
    bool fResult, fOnline;
  };
  const Step arrSteps[] = {
      {"IDriverRoot.GetInstruments", "OpenInstrument", false, false},
      {"IInstrumentList.GetItem", "OpenInstrument", false, false},
      {"IInstrument.Open", "OpenInstrument", false, true},
      {"IInstrument.GetChannels", "OpenInstrument", true, true},
      {"IChannelList.GetCount", "OpenInstrument", true, true},
      {"IErrorQueue.SetVerbose", "LetVerboseErrorMsg", true, true},
      {"IInstrument.GetRestrictions", "OpenInstrument", true, true},
      {"IRestrictions.GetMask", "OpenInstrument", true, true},
      {"IInstrument.GetOptions", "InstrumentCommands", true, true},
      {"IInstrument.GetIdentity", "GetInstrInfo", true, true},
  };
  for (const Step &step : arrSteps) {
    SCOPED_TRACE(step.strCall);
    session.Renew();
    session.instr->Connect();
    session.Forget();
    session.driver.FailMatching(step.strCall, 1, TheFailure);
    EXPECT_EQ(session.instr->OpenInstrument("Alpha"), Boolean(step.fResult));
    EXPECT_EQ(session.instr->IsOnline(True), Boolean(step.fOnline));
    EXPECT_THAT(session.host.TakeLines(), Contains(Record(step.strProc)));
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_THAT(session.arrEvents, Contains("StatusMessage: Offline"));

    session.Forget();
    EXPECT_TRUE(session.instr->OpenInstrument("Alpha"));
    EXPECT_THAT(session.arrEvents, ElementsAre("StatusMessage: Offline", "StatusMessage: Online with Alpha (Alpha)"));
  }
}

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
