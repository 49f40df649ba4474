#include <gmock/gmock.h>

#include "PanelActions.h"
#include "PanelStart.h"
#include "TestName.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

class PanelStartSweep : public testing::Test {
 protected:
  void Arrange() {
    session.driver.ClearFaults();
    session.panel->hide();
    session.Forget();
    expected.emplace();
    expected->instr.fConnected = session.instr->IsConnected();
    expected->instr.fErrorsEnabled = true;
    expected->instr.intPointer = session.host.intPointer;
    expected->instr.strStoredAddress = "";
    expected->intRows = session.Instruments().Count();
  }
  void Act() {
    ShowAndStart(*session.panel);
    expected->Show();
  }
  void ExpectAsTold() {
    EXPECT_EQ(CallNames(session.driver.arrTrace), expected->instr.driver.arrCalls);
    EXPECT_EQ(LinesTold(session.host.TakeLines(), true), expected->instr.arrTold);
    EXPECT_EQ(session.Instruments().Count(), expected->intRows);
    EXPECT_EQ(session.host.intPointer, expected->instr.intPointer);
    EXPECT_EQ(session.instr->IsConnected(), Boolean(expected->instr.fConnected));
    std::map<std::string, int> held;
    if (expected->instr.fConnected) held["IDriverRoot"] = 1;
    EXPECT_EQ(session.driver.References(), held);
  }
  /// The next start with a driver that is well, and a session.
  void ExpectRecovery() {
    Arrange();
    Act();
    EXPECT_EQ(session.Instruments().Count(), 1);
    session.Open();
    EXPECT_TRUE(session.Instruments().Item(0)->Checked());
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    EXPECT_EQ(session.host.intPointer, PointerDefault);
  }

  PanelSession session{{.fAutoDownload = false, .fOpen = false}};
  std::optional<ReferencePanel> expected;
};

TEST_F(PanelStartSweep, EveryCallThatGoesWrongLeavesWhatIsToldAndTheNextStartSucceeds) {
  Sweep sweep(8, 1);
  Arrange();
  Act();
  const std::vector<std::string> arrTrace = session.driver.arrTrace;
  ExpectAsTold();
  sweep.Run("start", "hidden", arrTrace, [&](const SweepCase &one) {
    Arrange();
    session.driver.SpoilAt(one.intCall, one.eFault, one.Count());
    expected->instr.driver.Break(one);
    Act();
    ExpectAsTold();
    ExpectRecovery();
  });
  sweep.Print();
}

/// The panel of a machine on which no driver can be made.
class PanelWithoutDriver : public testing::TestWithParam<std::size_t> {};

TEST_P(PanelWithoutDriver, AnActionCallsNothingAndTellsAtMostThatThereIsNoSession) {
  const PanelAction &action = PanelActions()[GetParam()];
  PanelSession session({.fOpen = false});
  session.panel->hide();
  session.Instruments().Clear();
  session.driver.QueueEmptyCreation();
  session.driver.QueueEmptyCreation();
  ShowAndStart(*session.panel);
  ASSERT_FALSE(session.instr->IsConnected());
  session.ShowPage(static_cast<TabNumEnum>(action.ePage));
  session.Forget();
  EXPECT_EQ(session.Instruments().Count(), 0);
  // Without a row there is nothing to be ticked.
  const bool fOfList =
      action.ePage == ReferencePanel::Instr && action.strName != "refresh" && !action.strName.starts_with("comparison");
  if (!fOfList) action.run(session);
  EXPECT_THAT(session.driver.arrTrace, IsEmpty());
  for (const std::string &strLine : LinesTold(session.host.TakeLines(), false))
    EXPECT_TRUE(strLine == "input" || strLine == OfflineBox) << strLine;
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

INSTANTIATE_TEST_SUITE_P(Actions, PanelWithoutDriver, testing::Range<std::size_t>(0, PanelActions().size()),
                         [](const auto &test) { return TestName(PanelActions()[test.param].strName); });

}  // namespace
}  // namespace tarvik::test
