#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "ClassOperations.h"
#include "Sweep.h"
#include "TestName.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

enum class State { Unconnected, Connected, Online, LocalTransaction, GlobalTransaction };
constexpr State AllStates[] = {State::Unconnected, State::Connected, State::Online, State::LocalTransaction,
                               State::GlobalTransaction};

/// An instrument, and how the class is used on it.
struct Instrument {
  const char *strName;
  Long lngChannels, lngMask;
  bool fVerbose, fWarnings;
};
constexpr Instrument Instruments[] = {
    {"two channels", 2, 0, false, true},
    {"one channel without options", 1, AllFunctionality, true, false},
};

std::string NameOf(State eState) {
  constexpr const char *Names[] = {"unconnected", "connected", "online", "local transaction", "global transaction"};
  return Names[static_cast<std::size_t>(eState)];
}

StandInConfig ConfigOf(const Instrument &instrument) {
  return {{"channels", std::int64_t{instrument.lngChannels}}, {"mask", std::int64_t{instrument.lngMask}}};
}

/// What a download answers that begins with empty records.
ClassSettings ReadAnew(clsInstrInterface &instr) {
  ClassSettings settings;
  const auto eOutputLevel = settings.levels.eOutputLevel;
  settings = {{}, {}, {}, {}, {}};
  settings.levels.eOutputLevel = eOutputLevel;
  EXPECT_TRUE(settings.Read(instr));
  return settings;
}

Sweep &TheSweep() {
  static Sweep sweep(12);
  return sweep;
}

class ClassSweep : public testing::TestWithParam<std::size_t> {
 public:
  /// The counts are printed when the last operation is done.
  static void TearDownTestSuite() { TheSweep().Print(); }

 protected:
  const ClassOperation &operation = ClassOperations()[GetParam()];

  void Arrange(State eState, const Instrument &instrument) {
    session.Renew(ConfigOf(instrument));
    session.driver.OnDelay = [] { std::this_thread::sleep_for(std::chrono::microseconds(50)); };
    expected = ReferenceInstrument();
    expected.driver.lngChannels = instrument.lngChannels;
    expected.driver.lngMask = instrument.lngMask;
    if (operation.prepare) operation.prepare(session.driver.Find("Alpha")->settings, expected.driver);
    if (eState != State::Unconnected) {
      ASSERT_TRUE(session.instr->Connect());
      expected.Connect();
    }
    if (eState >= State::Online) {
      ASSERT_TRUE(session.instr->OpenInstrument("Alpha"));
      expected.OpenInstrument();
      session.instr->LetVerboseErrorMsg(instrument.fVerbose);
      expected.LetVerboseErrorMsg(instrument.fVerbose);
    }
    session.instr->LetWarningsEnabled(instrument.fWarnings);
    expected.fWarningsEnabled = instrument.fWarnings;
    if (eState >= State::LocalTransaction) {
      ASSERT_TRUE(session.instr->TransactionStart(eState == State::GlobalTransaction));
      expected.TransactionStart(eState == State::GlobalTransaction);
    }
    session.driver.arrWarnings = {"\"too fast\";\"too high\""};
    expected.driver.strWarnings = "\"too fast\";\"too high\"";
    session.driver.strErrors = expected.driver.strErrors = "\"no clock\"";
    session.Forget();
    expected.arrTold.clear();
    expected.arrEvents.clear();
    expected.driver.arrCalls.clear();
  }

  void Act() {
    const std::string strResult = operation.run(*session.instr);
    EXPECT_EQ(strResult, operation.expected(expected));
  }

  void ExpectCallsAsTold() { EXPECT_EQ(CallNames(session.driver.arrTrace), expected.driver.arrCalls); }

  void ExpectStateAsTold() {
    EXPECT_EQ(LinesTold(session.host.TakeLines(), true), expected.arrTold);
    EXPECT_EQ(session.arrEvents, expected.arrEvents);
    EXPECT_EQ(session.instr->IsConnected(), Boolean(expected.fConnected));
    EXPECT_EQ(session.instr->IsOnline(True), Boolean(expected.fOnline));
    EXPECT_EQ(session.instr->ChannelCount().value_or(0), expected.fOnline ? expected.lngChannels : 0);
    EXPECT_EQ(session.InTransaction(), expected.fTransaction);
    EXPECT_EQ(session.InGlobalTransaction(), expected.fGlobal);
    EXPECT_EQ(session.driver.Find("Alpha")->copy.has_value(), expected.driver.fTransaction);
    EXPECT_EQ(session.host.intPointer, expected.intPointer);
    ExpectOwnReferencesOnly(expected.fConnected, expected.fOnline);
  }

  void ExpectOwnReferencesOnly(bool fConnected, bool fOnline) {
    std::map<std::string, int> held;
    if (fConnected) held["IDriverRoot"] = 1;
    if (fOnline) held["IInstrument"] = 1;
    EXPECT_EQ(session.driver.References(), held);
  }

  /// A driver that is well again: what is sent is there and what is read is what was sent, and nothing is left behind.
  void ExpectRecovery(const Instrument &instrument, const ClassSettings &asTransferred) {
    session.driver.ClearFaults();
    session.driver.arrWarnings.clear();
    session.Forget();
    if (!session.instr->IsConnected()) {
      EXPECT_TRUE(session.instr->Connect());
    }
    const bool fWhole = session.instr->ChannelCount() == instrument.lngChannels &&
                        session.instr->IsRestricted(eLacksComplement) == ((instrument.lngMask & eLacksComplement) != 0);
    if (!fWhole) {
      EXPECT_TRUE(session.instr->OpenInstrument("Alpha"));
    }
    EXPECT_TRUE(ClassSettings().Send(*session.instr));
    EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value()) << "a transaction is open at the driver";
    EXPECT_EQ(ReadAnew(*session.instr), asTransferred);
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    EXPECT_EQ(session.host.intPointer, PointerDefault);
    ExpectOwnReferencesOnly(true, true);
    session.instr->CloseInstrument();
    ExpectOwnReferencesOnly(true, false);
  }

  InstrumentSession session;
  ReferenceInstrument expected;
};

TEST_P(ClassSweep, EveryCallThatGoesWrongLeavesWhatIsToldAndTheNextTransferAgrees) {
  for (const Instrument &instrument : Instruments) {
    Arrange(State::Online, instrument);
    ASSERT_TRUE(ClassSettings().Send(*session.instr));
    const ClassSettings asTransferred = ReadAnew(*session.instr);
    for (const State eState : AllStates) {
      const std::string strState = NameOf(eState) + " " + instrument.strName;
      SCOPED_TRACE(operation.strName + " " + strState);
      Arrange(eState, instrument);
      Act();
      ExpectCallsAsTold();
      const std::vector<std::string> arrTrace = session.driver.arrTrace;
      ExpectStateAsTold();
      TheSweep().Run(operation.strName, strState, arrTrace, [&](const SweepCase &one) {
        Arrange(eState, instrument);
        session.driver.SpoilAt(one.intCall, one.eFault, one.Count());
        expected.driver.Break(one);
        Act();
        ExpectCallsAsTold();
        ExpectStateAsTold();
        ExpectRecovery(instrument, asTransferred);
      });
    }
  }
}

std::vector<std::size_t> AllNumbers() {
  std::vector<std::size_t> arrNumbers;
  for (std::size_t k = 0; k < ClassOperations().size(); ++k) arrNumbers.push_back(k);
  return arrNumbers;
}

INSTANTIATE_TEST_SUITE_P(Operations, ClassSweep, testing::ValuesIn(AllNumbers()),
                         [](const auto &test) { return TestName(ClassOperations()[test.param].strName); });

/// The expectation above compares transfers with one another; this one with what was sent.
TEST(ClassSweepItself, ATransferToAnInstrumentWithEverythingAnswersWhatWasSent) {
  InstrumentSession session;
  session.Open();
  ASSERT_TRUE(ClassSettings().Send(*session.instr));
  EXPECT_EQ(ReadAnew(*session.instr), [] {
    ClassSettings sent;
    // Told in other modes only, and never by the instrument.
    sent.mode.PllFormat = ePllPeriod;
    return sent;
  }());
}

}  // namespace
}  // namespace tarvik::test
