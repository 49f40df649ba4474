#include <gmock/gmock.h>

#include <QApplication>
#include <chrono>
#include <optional>
#include <thread>

#include "PanelActions.h"
#include "TestName.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/PlainControls.h"
#include "settings/SetupDifferences.h"
#include "settings/SetupTransfer.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

/// After a refresh in a session the commands stay enabled until the next start.
enum class State { Connected, Refreshed, Online, LocalTransaction, GlobalTransaction };
constexpr State AllStates[] = {State::Connected, State::Refreshed, State::Online, State::LocalTransaction,
                               State::GlobalTransaction};

std::string NameOf(State eState) {
  constexpr const char *Names[] = {"connected", "refreshed", "online", "local transaction", "global transaction"};
  return Names[static_cast<std::size_t>(eState)];
}

constexpr TabNumEnum TransferPages[] = {ePageMode,   ePageTiming,  ePageLevels, ePagePattern,
                                        ePageLimits, ePageTrigLev, ePageConfig};

Sweep &TheSweep() {
  static Sweep sweep(150, 20);
  return sweep;
}

class PanelSweep : public testing::TestWithParam<std::size_t> {
 public:
  static void TearDownTestSuite() { TheSweep().Print(); }

 protected:
  PanelSweep() {
    InstrumentSettings &settings = session.driver.Find("Alpha")->settings;
    // What the panel can show: the editor has one length for all rows, and the list of impedances no 100 Ohm.
    settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
    settings.channels[1].dblImpedance = 50;
    m_wellSet = settings;
    session.driver.OnDelay = [] { std::this_thread::sleep_for(std::chrono::microseconds(50)); };
    session.Click("cmdDownload");
    EXPECT_TRUE(ReadSetup(*session.instr, m_setup));
    session.Forget();
  }

  const PanelAction &action = PanelActions()[GetParam()];

  void TakeOptions() {
    const auto choose = [&](const char *strAll, const char *strVisible, bool fAll) {
      session.Get<OptionButton>(fAll ? strAll : strVisible).SetValue(True);
    };
    choose("optUpload(0)", "optUpload(1)", expected->fUploadsAll);
    choose("optDownload(0)", "optDownload(1)", expected->fDownloadsAll);
    session.Get<CheckBox>("chkAutoDownload").SetValue(expected->fAutoDownload ? 1 : 0);
    session.Get<CheckBox>("chkAutoDownOnError").SetValue(expected->fDownloadsOnError ? 1 : 0);
    session.Get<CheckBox>("chkAutoErrors").SetValue(1);
  }

  void ArrangeSession(State eState) {
    expected->instr.fConnected = expected->instr.fErrorsEnabled = expected->instr.fWarningsEnabled = true;
    expected->fTicked = expected->instr.fOnline = eState >= State::Online;
    expected->instr.lngChannels = expected->fTicked ? 2 : 0;
    if (eState == State::Connected) session.Open();
    if (eState == State::Refreshed) session.Click("cmdRefresh");
    if (eState < State::LocalTransaction) return;
    const bool fGlobal = expected->instr.fGlobal = eState == State::GlobalTransaction;
    expected->instr.fTransaction = expected->instr.driver.fTransaction = true;
    session.instr->TransactionStart(fGlobal);
  }

  void Arrange(State eState) {
    expected.emplace();
    if (action.options) action.options(*expected);
    TakeOptions();
    session.ShowPage(ePageInstr);
    ArrangeSession(eState);
    session.ShowPage(static_cast<TabNumEnum>(action.ePage));
    expected->eVisible = action.ePage;
    session.panel->SetTabState(ePageIsCurrent, eAllPages);
    for (const TabNumEnum ePage : TransferPages) {
      session.panel->SetTabState(static_cast<TabStates>(action.eStates), ePage);
      expected->states[static_cast<std::size_t>(ePage)] = action.eStates;
    }
    session.driver.arrWarnings = {"\"too fast\";\"too high\""};
    expected->instr.driver.strWarnings = "\"too fast\";\"too high\"";
    session.driver.strErrors = expected->instr.driver.strErrors = "\"no clock\"";
    session.Forget();
  }

  void Act(State eState) {
    action.run(session);
    if (eState != State::Connected || !action.fNeedsSession) action.expected(*expected);
  }

  void ExpectCallsAsTold() { EXPECT_EQ(CallNames(session.driver.arrTrace), expected->instr.driver.arrCalls); }

  void ExpectStateAsTold() {
    EXPECT_EQ(LinesTold(session.host.TakeLines(), false), expected->instr.arrTold);
    for (std::size_t i = 0; i < expected->states.size(); ++i)
      EXPECT_EQ(static_cast<int>(session.State().meTabState[i]), static_cast<int>(expected->states[i])) << "page " << i;
    ASSERT_EQ(session.Instruments().Count(), expected->intRows);
    if (expected->intRows != 0) {
      EXPECT_EQ(session.Instruments().Item(0)->Checked(), Boolean(expected->fTicked));
    }
    EXPECT_EQ(session.instr->IsOnline(True), Boolean(expected->instr.fOnline));
    EXPECT_EQ(session.instr->ChannelCount().value_or(0), expected->instr.fOnline ? expected->instr.lngChannels : 0);
    ExpectNothingStuck();
  }

  void ExpectNothingStuck() {
    EXPECT_EQ(session.InTransaction(), expected->instr.fTransaction);
    EXPECT_EQ(session.driver.Find("Alpha")->copy.has_value(), expected->instr.driver.fTransaction);
    EXPECT_EQ(session.host.intPointer, expected->instr.intPointer);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(session.State().mfDownloading, Boolean(expected->fDownloading));
    EXPECT_FALSE(session.State().mfForceDownloadAll);
    std::map<std::string, int> held{{"IDriverRoot", 1}};
    if (expected->instr.fOnline) held["IInstrument"] = 1;
    EXPECT_EQ(session.driver.References(), held);
  }

  /// The user goes on with a driver that is well again.
  void GoOn() {
    expected.emplace();
    session.driver.ClearFaults();
    session.driver.arrWarnings.clear();
    session.driver.strErrors.clear();
    // A reset has made the rows unlike.
    session.driver.Find("Alpha")->settings.rows = m_wellSet.rows;
    TakeOptions();
    session.Forget();
    session.ShowPage(ePageInstr);
    const auto hasAlpha = [&] { return session.RowOf("Alpha") == 0; };
    if (!hasAlpha()) session.Click("cmdRefresh");
    ASSERT_TRUE(hasAlpha());
    const auto ticked = [&]() -> bool { return session.Instruments().Item(0)->Checked(); };
    const bool fWhole = session.Get<CommandButton>("cmdDownload").Enabled() && ticked() &&
                        session.instr->ChannelCount() == 2 && !session.instr->IsRestricted(AllFunctionality);
    if (fWhole) return;
    if (ticked()) session.Open();
    session.Open();
    EXPECT_TRUE(ticked());
  }

  void EndDownload() {
    // A download that failed holds every edit back until one that works.
    if (session.State().mfDownloading) session.Click("cmdDownload");
  }

  void ExpectAllCurrent() {
    for (const TabNumEnum ePage : TransferPages) EXPECT_EQ(session.StateOf(ePage), ePageIsCurrent) << ePage;
  }
  void ExpectShown(const tarvik::Setup &setup) {
    for (const SetupDifference &difference : Differences(setup, TarvikGUI::Panel::Of(*session.panel).ShownSetup(), 0))
      ADD_FAILURE() << difference.Key() << ": " << difference.strFirst << " is shown as " << difference.strSecond;
  }

  void ExpectRecovery() {
    GoOn();
    EndDownload();
    for (const TabNumEnum ePage : TransferPages) session.panel->SetTabState(ePageIsDirty, ePage);
    session.Click("cmdUpload");
    ExpectAllCurrent();
    tarvik::Setup sent;
    EXPECT_TRUE(ReadSetup(*session.instr, sent));
    ExpectShown(sent);
    session.driver.Find("Alpha")->settings = m_wellSet;
    session.Click("cmdDownload");
    ExpectAllCurrent();
    ExpectShown(m_setup);
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    expected->instr.fOnline = true;
    ExpectNothingStuck();
  }

  PanelSession session;
  std::optional<ReferencePanel> expected;

 private:
  InstrumentSettings m_wellSet;
  tarvik::Setup m_setup;
};

TEST_P(PanelSweep, EveryCallThatGoesWrongLeavesWhatIsToldAndTheNextTransferAgrees) {
  for (const State eState : AllStates) {
    SCOPED_TRACE(action.strName + " " + NameOf(eState));
    Arrange(eState);
    Act(eState);
    ExpectCallsAsTold();
    const std::vector<std::string> arrTrace = session.driver.arrTrace;
    ExpectStateAsTold();
    ExpectRecovery();
    TheSweep().Run(action.strName, NameOf(eState), arrTrace, [&](const SweepCase &one) {
      Arrange(eState);
      session.driver.SpoilAt(one.intCall, one.eFault, one.Count());
      expected->instr.driver.Break(one);
      Act(eState);
      ExpectCallsAsTold();
      ExpectStateAsTold();
      ExpectRecovery();
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Actions, PanelSweep, testing::Range<std::size_t>(0, PanelActions().size()),
                         [](const auto &test) { return TestName(PanelActions()[test.param].strName); });

}  // namespace
}  // namespace tarvik::test
