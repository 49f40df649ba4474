#include <gmock/gmock.h>

#include <functional>
#include <numeric>

#include "InstrumentSession.h"
#include "automation/ErrorInfo.h"

/// What the instrument class owes the host around it: nothing of the driver is held while a user thinks, and a host's
/// own failures stay the host's.

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes what of the driver is held besides root and instrument whenever somebody else has the word.
class HeldTest : public testing::Test {
 protected:
  HeldTest() {
    session.host.OnEntry = [this](const HostEntry &entry) {
      if (entry.kind == HostEntry::Box || entry.kind == HostEntry::Input) Look(ToLine(entry));
    };
  }
  ~HeldTest() override { session.host.OnEntry = nullptr; }

  void Look(const std::string &strWhere) {
    ++intLooks;
    for (const auto &[strInterface, intCount] : session.driver.References()) {
      const bool fLasting = (strInterface == "IDriverRoot" || strInterface == "IInstrument") && intCount == 1;
      if (!fLasting) arrHeld.push_back(strInterface + " at " + strWhere);
    }
  }
  /// A fresh session in which each poll of the warnings finds another one.
  void Open(const StandInConfig &config = {}) {
    session.Open(config);
    const auto look = [this](const std::string &strText) { Look("event " + strText); };
    session.instr->StatusMessage.Connect(look);
    session.instr->InstrError.Connect(look);
    session.instr->InstrWarnings.Connect(look);
    session.instr->LetWarningsEnabled(True);
    for (int i = 0; i < 50; ++i) session.driver.arrWarnings.push_back("warning " + std::to_string(i));
    session.driver.strErrors = "the error";
    session.Forget();
    arrHeld.clear();
    intLooks = 0;
  }

  InstrumentSession session;
  std::vector<std::string> arrHeld;
  int intLooks = 0;
};

struct Operation {
  const char *strName;
  std::function<void(clsInstrInterface &)> run;
};

template <class Record>
std::function<void(clsInstrInterface &)> With(Boolean (clsInstrInterface::*operation)(Record &)) {
  return [=](clsInstrInterface &instr) {
    std::remove_const_t<Record> record{};
    (instr.*operation)(record);
  };
}

std::function<void(clsInstrInterface &)> Mode(Long TriggerMode, Long PulseMode) {
  return [=](clsInstrInterface &instr) {
    udtModeInfo info;
    info.TriggerMode = TriggerMode;
    info.PulseMode = PulseMode;
    instr.SetMode(info);
  };
}

std::function<void(clsInstrInterface &)> Command(InstrCommands eIC) {
  return [=](clsInstrInterface &instr) { instr.InstrumentCommands(eIC); };
}

std::function<void(clsInstrInterface &)> Pll(Boolean fGet) {
  return [=](clsInstrInterface &instr) {
    Double dblFreq = 1e6;
    Long eSource = 1;
    instr.PllRefSource(dblFreq, eSource, fGet);
  };
}

const std::vector<Operation> &Operations() {
  using I = clsInstrInterface;
  static const std::vector<Operation> arrOperations{
      {"Connect", [](I &i) { i.Connect(); }},
      {"OpenInstrument", [](I &i) { i.OpenInstrument("Alpha"); }},
      {"CloseInstrument", [](I &i) { i.CloseInstrument(); }},
      {"TransactionStart", [](I &i) { i.TransactionStart(True); }},
      {"TransactionFinish", [](I &i) { i.TransactionStart(True), i.TransactionFinish(True); }},
      {"CheckErrors", [](I &i) { i.CheckErrors(True); }},
      {"CheckWarnings", [](I &i) { i.CheckWarnings(True); }},
      {"GetViInfo",
       [](I &i) {
         viInfo record;
         std::string strName;
         i.GetViInfo(1, record, strName);
       }},
      {"GetInstrInfo", With(&I::GetInstrInfo)},
      {"SetMode pulses", Mode(0, 0)},
      {"SetMode pattern", Mode(2, 2)},
      {"SetMode external width", Mode(3, 0)},
      {"SetMode unknown", Mode(7, 0)},
      {"GetMode", With(&I::GetMode)},
      {"SetTiming", With(&I::SetTiming)},
      {"GetTiming", With(&I::GetTiming)},
      {"Output", [](I &i) { i.Output(1, True); }},
      {"Output complement", [](I &i) { i.Output(1, True, True); }},
      {"SetLevels", With(&I::SetLevels)},
      {"GetLevels", With(&I::GetLevels)},
      {"SetLimits", With(&I::SetLimits)},
      {"GetLimits", With(&I::GetLimits)},
      {"SetTriggerLevels", With(&I::SetTriggerLevels)},
      {"GetTriggerLevels", With(&I::GetTriggerLevels)},
      {"SetRz",
       [](I &i) {
         i.SetRz(BooleanArray(1, {True, False}));
       }},
      {"GetRz",
       [](I &i) {
         BooleanArray fRz(1, {False, False});
         i.GetRz(fRz);
       }},
      {"SetPatternArray",
       [](I &i) {
         ByteArray arr(0, {1, 2});
         i.SetPatternArray(1, arr, 16);
       }},
      {"GetPatternArray",
       [](I &i) {
         ByteArray arr(0, {0});
         Long lngLength = 0;
         i.GetPatternArray(2, arr, lngLength);
       }},
      {"CalcPRBS",
       [](I &i) {
         ByteArray arr(0, {0, 0});
         i.CalcPRBS(0, 15, 4, arr);
       }},
      {"LetErrorsEnabled", [](I &i) { IgnoreErrors([&] { i.LetErrorsEnabled(True); }); }},
      {"Reset", Command(ICReset)},
      {"Selftest", Command(ICSelftest)},
      {"Calibrate", Command(ICCalibrate)},
      {"Refresh", Command(ICRefresh)},
      {"Options", Command(ICOptions)},
      {"Unknown command", Command(static_cast<InstrCommands>(5))},
      {"PllRefSource get", Pll(True)},
      {"PllRefSource set", Pll(False)},
      {"GetPnpTimeout", [](I &i) { i.GetPnpTimeout(); }},
      {"LetPnpTimeout", [](I &i) { i.LetPnpTimeout(5000); }},
      {"GetVerboseErrorMsg", [](I &i) { i.GetVerboseErrorMsg(); }},
      {"LetVerboseErrorMsg", [](I &i) { i.LetVerboseErrorMsg(True); }},
  };
  return arrOperations;
}

TEST_F(HeldTest, NothingOfTheDriverIsHeldWhileABoxOrAnEventStands) {
  std::vector<std::string> arrLooked;
  for (const Operation &operation : Operations()) {
    SCOPED_TRACE(operation.strName);
    Open();
    operation.run(*session.instr);
    EXPECT_THAT(arrHeld, IsEmpty());
    if (intLooks > 0) arrLooked.push_back(operation.strName);
  }
  // Those with a warning, an error, an illegal case or a status to show.
  EXPECT_THAT(arrLooked,
              ElementsAre("Connect", "OpenInstrument", "CloseInstrument", "CheckErrors", "CheckWarnings",
                          "SetMode pulses", "SetMode pattern", "SetMode external width", "SetMode unknown", "SetTiming",
                          "Output", "Output complement", "SetLevels", "SetLimits", "SetTriggerLevels", "SetRz",
                          "SetPatternArray", "Unknown command", "PllRefSource set"));
}

TEST_F(HeldTest, NothingOfTheDriverIsHeldWhileAFailureIsReported) {
  for (const Operation &operation : Operations()) {
    SCOPED_TRACE(operation.strName);
    Open();
    const int intBefore = session.driver.Operations();
    operation.run(*session.instr);
    const int intCalls = session.driver.Operations() - intBefore;
    for (int k = 1; k <= intCalls; ++k) {
      Open();
      session.driver.FailAt(k, {Refused, "driver failed"});
      operation.run(*session.instr);
      EXPECT_THAT(arrHeld, IsEmpty()) << "call " << k;
    }
  }
}

TEST_F(HeldTest, NothingOfTheDriverIsHeldWhileTheUserIsAskedForAServer) {
  session.driver.QueueEmptyCreation();
  session.host.arrInputAnswers = {"bench"};
  EXPECT_TRUE(session.instr->Connect());
  EXPECT_EQ(intLooks, 1);
  EXPECT_THAT(arrHeld, IsEmpty());
}

TEST_F(HeldTest, ASessionThatAHandlerEndsInTheMiddleOfAnOperationIsNotTouchedAnyMore) {
  Open();
  bool fEnded = false;
  session.host.OnEntry = [&](const HostEntry &entry) {
    if (entry.kind != HostEntry::Box || std::exchange(fEnded, true)) return;
    session.instr->CloseInstrument();
  };
  session.instr->Output(1, True);
  EXPECT_TRUE(fEnded);
  EXPECT_THAT(session.driver.References(), ElementsAre(testing::Pair("IDriverRoot", 1)));
  EXPECT_EQ(session.driver.arrTrace.back(), "IInstrument{Alpha}.Close() -> ok");
}

class FailingHandlerTest : public testing::Test {
 protected:
  static Event<const std::string &>::Handler Failing() {
    return [](const std::string &) { throw RunTimeError(5, "the host's own mistake"); };
  }
  static std::string Record(const std::string &strEvent) {
    return "log: 02/03/01 04:05\r\n  Error: 5 the host's own mistake\r\n  Mod: clsInstrInterface; Proc: " + strEvent +
           "\r\n\r\n\r\n";
  }

  std::vector<std::string> arrLater;  ///< what a handler behind the failing one heard, the end of the session included
  InstrumentSession session;
};

TEST_F(FailingHandlerTest, AFailingHandlerOfStatusMessageEndsThereAndTheSessionOpens) {
  session.Renew();
  session.instr->StatusMessage.Connect(Failing());
  session.instr->StatusMessage.Connect([&](const std::string &strText) { arrLater.push_back(strText); });
  EXPECT_TRUE(session.instr->Connect());
  EXPECT_TRUE(session.instr->OpenInstrument("Alpha"));
  EXPECT_THAT(arrLater, ElementsAre("Local Connection", "Offline", "Online with Alpha (Alpha)"));
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box stop: the host's own mistake", "box stop: the host's own mistake",
                          "box stop: the host's own mistake"));
  session.instr->CloseInstrument();
  EXPECT_THAT(session.host.TakeLines(), ElementsAre("box stop: the host's own mistake", Record("StatusMessage")));
}

TEST_F(FailingHandlerTest, AFailingHandlerOfInstrErrorEndsThereAndTheFinishAnswers) {
  session.Open();
  session.instr->InstrError.Connect(Failing());
  session.instr->InstrError.Connect([&](const std::string &strText) { arrLater.push_back(strText); });
  session.instr->TransactionStart(True);
  session.driver.FailMatching("IInstrument.Transaction(1)", 1, {Refused, "driver failed"});
  EXPECT_FALSE(session.instr->TransactionFinish(True));
  EXPECT_THAT(session.host.TakeLines(), ElementsAre("box exclamation: Instrument Errors(s):\r\ndriver failed",
                                                    "box stop: the host's own mistake", Record("InstrError")));
  EXPECT_THAT(arrLater, ElementsAre("driver failed"));
  EXPECT_FALSE(session.InTransaction());
}

TEST_F(FailingHandlerTest, AFailingHandlerWithoutALogIsShownAndEndsAllTheSame) {
  session.Open();
  session.host.logFailure = ScriptedFailure{70, "Permission denied", 1};
  session.instr->StatusMessage.Connect(Failing());
  session.instr->CloseInstrument();
  EXPECT_THAT(session.host.TakeLines(), ElementsAre("box stop: the host's own mistake", "log failed"));
  EXPECT_FALSE(session.instr->IsOnline(True));
}

class DescriptionTest : public testing::Test {
 protected:
  std::vector<std::string> BoxesOfFailingCall(const std::string &strText) {
    session.driver.FailMatching("IInstrument.Calibrate", 1, {Refused, strText});
    session.instr->InstrumentCommands(ICCalibrate);
    return session.host.TakeBoxes();
  }

  InstrumentSession session;
};

/// Counts the driver's calls that were made whenever it is to paint.
class PaintingHost : public RecordingHost {
 public:
  explicit PaintingHost(const StandInDriver &driver) : m_driver(driver) {}
  void Repaint() override { arrCallsSoFar.push_back(m_driver.arrTrace.size()); }

  std::vector<std::size_t> arrCallsSoFar;

 private:
  const StandInDriver &m_driver;
};

TEST(PaintingBeforeTheDriver, EachCallOfTheDriverFindsEverythingPainted) {
  InstrumentSession session;
  session.Open();
  PaintingHost host(session.driver);
  udtLevelInfo info{};
  session.instr->GetLevels(info);
  ASSERT_GT(session.driver.arrTrace.size(), 10u);
  std::vector<std::size_t> arrBeforeEachCall(session.driver.arrTrace.size());
  std::iota(arrBeforeEachCall.begin(), arrBeforeEachCall.end(), std::size_t{0});
  EXPECT_EQ(host.arrCallsSoFar, arrBeforeEachCall);
}

TEST_F(DescriptionTest, AFailureWithoutADescriptionShowsItsStatusInEightHexadecimalDigits) {
  session.Open();
  EXPECT_THAT(BoxesOfFailingCall(""), ElementsAre("box stop: Automation error 80040001"));
}

TEST_F(DescriptionTest, WhatACallThatSucceededLeftBehindIsNotTheDescriptionOfTheNextFailure) {
  session.Open();
  session.driver.strLeftBehind = "left by a success";
  session.instr->CheckWarnings(True);
  EXPECT_THAT(BoxesOfFailingCall(""), ElementsAre("box stop: Automation error 80040001"));
}

TEST_F(DescriptionTest, WhatSomebodyElseLeftBehindIsNotTheDescriptionOfAFailure) {
  session.Open();
  automation::SetErrorInfo("left by another library");
  EXPECT_THAT(BoxesOfFailingCall(""), ElementsAre("box stop: Automation error 80040001"));
  automation::SetErrorInfo("left by another library");
  EXPECT_THAT(BoxesOfFailingCall("the driver's own"), ElementsAre("box stop: the driver's own"));
}

}  // namespace
}  // namespace tarvik::test
