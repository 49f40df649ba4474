#include <gmock/gmock.h>

#include <QTest>

#include "HookedDriver.h"
#include "PanelSession.h"
#include "PanelStart.h"
#include "RecordingHost.h"
#include "RegisteredDriver.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Row(const SimulatorSession &session, int intRow) {
  const ListItem &item = *session->Instruments().Item(intRow);
  return {item.Key(), item.Text(0), item.Text(1), item.Text(2), item.Text(3)};
}

class InstrumentList : public testing::Test {
 protected:
  InstrumentList() { session.host.TakeLines(); }
  std::string Status() { return session->Get<DisplayBox>("txtStatus").Text(); }
  std::array<TabStates, eNumPages> &States() { return TarvikGUI::Panel::Of(*session.panel).state.meTabState; }

  SimulatorSession session;
};

TEST_F(InstrumentList, HasFourColumns) {
  EXPECT_THAT(session->Instruments().Columns(), ElementsAre("Instrument", "Slot", "Log. Addr.", "Model Code"));
}

TEST_F(InstrumentList, ShowsSlotEntriesUnderTheDriversOwnNumbers) {
  EXPECT_THAT(Row(session, 0), ElementsAre("InstrNum1", "VP-210", "3", "24", "0x0210"));
  // Number 2 is a box and not shown.
  EXPECT_THAT(Row(session, 1), ElementsAre("InstrNum3", "VP-110", "4", "32", "0x0110"));
  EXPECT_THAT(Row(session, 3), ElementsAre("InstrNum5", "VP-250F", "7", "48", "0x0FFF"));
}

TEST(InstrumentListWithBoxes, ShowsDashesWhereABoxHasNothing) {
  SimulatorSession session({{"WorkWithBoxes", "1"}});
  EXPECT_THAT(Row(session, 1), ElementsAre("InstrNum2", "VB-200", " - ", "9", " - "));
}

TEST(InstrumentListWithBoxes, TheFirstRowCanBeThatOfTheThirdInstrument) {
  SimulatorSession session({}, "[A]\nkind = box\n[B]\nkind = 7\n[C]\nkind = 3\nslot = 12\naddress = 77\n");
  ASSERT_EQ(session->Instruments().Count(), 1);
  EXPECT_THAT(Row(session, 0), ElementsAre("InstrNum3", "C", "12", "77", "0x0000"));
}

TEST(InstrumentListEmpty, AnEmptyRackIsAnEmptyListAndNoError) {
  SimulatorSession session({}, "# nothing\n");
  EXPECT_EQ(session->Instruments().Count(), 0);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_TRUE(session.ButtonEnabled("cmdRefresh"));
}

/// A driver that has more instruments than a 16-bit number counts, all of them without a slot.
struct EndlessDriver : DriverHook {
  automation::Status Run(HookedCall &call) override {
    if (call.operation.strPath == "IInstrumentList.GetCount") {
      call.Fill(100000);
    } else if (call.operation.strPath == "IInstrumentList.GetItem") {
      intLast = call.In<InstrumentKey>(0).intNumber;
      call.Hand(std::make_shared<HookedInstrument>());
    } else if (call.operation.HandsObject()) {
      call.Hand();
    }
    return automation::StatusOk;
  }

  Integer intLast = 0;
};

TEST(InstrumentListEndless, BehindTheLastNumberOf16BitsTheWalkIsAnOverflow) {
  RecordingHost host;
  EndlessDriver driver;
  const RegisteredDriver registered([&](const std::string &) { return MakeHookedRoot(driver); });
  {
    TarvikGUI panel;
    ShowAndStart(panel);
    EXPECT_EQ(driver.intLast, 32767);
    EXPECT_EQ(panel.findChild<ListView *>("lvwInstruments")->Count(), 0);
    // The report asks the driver for its form, as each does.
    EXPECT_THAT(host.TakeBoxes(),
                ElementsAre("box information: You need to be online to an instrument to perform this operation",
                            "box stop: Overflow"));
  }
  gobjInstr().reset();
}

TEST_F(InstrumentList, ATickOpensASessionAndReadsAllPages) {
  session.Open("VP-210");
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
  EXPECT_TRUE(session->Instruments().Item(0)->Selected());
  EXPECT_EQ(Status(), "Online with VP-210 (VP-210 Dual Pulse Generator)");
  EXPECT_EQ(session->Get<TabControl>("tabMain").Tab(), ePageInstr);
  EXPECT_EQ(States()[ePageTiming], ePageIsCurrent);
  EXPECT_EQ(States()[ePageOptions], ePageNeedsDownloading);
  EXPECT_FALSE(TarvikGUI::Panel::Of(*session.panel).state.mfForceDownloadAll);
  EXPECT_TRUE(session.ButtonEnabled("cmdUpload"));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(InstrumentList, TheAutomaticDownloadTakesAllPagesWhateverTheOptionSays) {
  session->ShowPage(ePageOptions);
  session->Choose("optDownload(1)");
  session.Open("VP-210");
  EXPECT_EQ(States()[ePageConfig], ePageIsCurrent);
  EXPECT_EQ(session->Get<DisplayField>("txtProductId").Text(), "VP-210 Dual Pulse Generator");
}

TEST_F(InstrumentList, TakingTheTickAwayEndsTheSession) {
  session.Open("VP-210");
  session->Tick(0);
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_EQ(Status(), "Offline");
  EXPECT_THAT(States(), Each(ePageIsCurrent));
  EXPECT_FALSE(session.ButtonEnabled("cmdUpload"));
  EXPECT_FALSE(session.Instr().IsOnline(True));
}

TEST_F(InstrumentList, ADoubleClickOpensAndTheNextOneEndsTheSession) {
  session->DoubleClick(0);
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
  session->DoubleClick(0);
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_THAT(States(), Each(ePageIsCurrent));
  EXPECT_FALSE(session.ButtonEnabled("cmdDownload"));
}

TEST_F(InstrumentList, EnterTogglesTheSelectedRow) {
  ListView &list = session->Instruments();
  list.Item(2)->SetSelected(True);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-220"));
  QTest::keyClick(&list, Qt::Key_Enter);
  EXPECT_THAT(session->Ticked(), IsEmpty());
}

TEST_F(InstrumentList, EnterWithoutASelectionDoesNothing) {
  ListView &list = session->Instruments();
  list.clearSelection();
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_FALSE(session.Instr().IsOnline(True));
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

TEST_F(InstrumentList, OtherKeysOpenNothing) {
  ListView &list = session->Instruments();
  list.Item(0)->SetSelected(True);
  for (const int intKey : {Qt::Key_A, Qt::Key_Escape, Qt::Key_F2, Qt::Key_Down})
    QTest::keyClick(&list, static_cast<Qt::Key>(intKey));
  EXPECT_THAT(session->Ticked(), IsEmpty());
}

TEST_F(InstrumentList, SpaceTicksTheSelectedRow) {
  ListView &list = session->Instruments();
  list.setFocus();
  list.Item(0)->SetSelected(True);
  QTest::keyClick(&list, Qt::Key_Space);
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
}

TEST_F(InstrumentList, TickingAnotherRowClosesTheFormerSession) {
  session.Open("VP-210");
  session.Open("VP-110");
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-110"));
  EXPECT_EQ(Status(), "Online with VP-110 (VP-110 Pulse Generator)");
  EXPECT_FALSE(TarvikGUI::Panel::Of(*session.panel).state.mfDualChannel);
}

TEST_F(InstrumentList, AnInstrumentThatDoesNotOpenLosesItsTickAndTheFormerSessionIsGone) {
  session.Open("VP-210");
  session.host.TakeLines();
  session.Open("VP-210 reserved");
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_TRUE(session->Instruments().Item(4)->Selected());
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Unable to start a session with this instrument"));
  EXPECT_FALSE(session.Instr().IsOnline(True));
  EXPECT_THAT(States(), Each(ePageIsCurrent));
  EXPECT_FALSE(session.ButtonEnabled("cmdUpload"));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(InstrumentList, ARefreshEndsTheSessionButLeavesPagesAndButtons) {
  session.Open("VP-210");
  session->ShowPage(ePageLimits);
  session->Type("esLimitHighVoltage(0)", "3V");
  session->ShowPage(ePageInstr);
  session->Click("cmdRefresh");
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_EQ(session->Instruments().Count(), 5);
  EXPECT_FALSE(session.Instr().IsOnline(True));
  EXPECT_EQ(States()[ePageLimits], ePageIsDirty);
  EXPECT_TRUE(session.ButtonEnabled("cmdUpload"));
  session.host.TakeLines();
  session->Click("cmdUpload");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box information: You need to be online to an instrument to perform this operation"));
}

TEST_F(InstrumentList, ARefreshShowsWhatCameAndWent) {
  PrivateDataFolder::Write("KolvenAtl.Kolven.rack", "[New]\nkind = slot\nslot = 1\n");
  session->Click("cmdRefresh");
  ASSERT_EQ(session->Instruments().Count(), 1);
  EXPECT_THAT(Row(session, 0), ElementsAre("InstrNum1", "New", "1", "0", "0x0000"));
}

TEST_F(InstrumentList, ARefreshThatFailsLeavesTheOldRowsUnticked) {
  session.Open("VP-210");
  PrivateDataFolder::Write("KolvenAtl.Kolven.rack", "[New]\ncolour = red\n");
  session.host.TakeLines();
  session->Click("cmdRefresh");
  EXPECT_EQ(session->Instruments().Count(), 5);
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box information: You need to be online to an instrument to perform this operation",
                          HasSubstr("KolvenAtl.Kolven.rack:2: unknown key \"colour\"")));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST_F(InstrumentList, AQuickSecondClickOnACheckBoxIsASecondTick) {
  ListView &list = session->Instruments();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, session->BoxOf(0));
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, session->BoxOf(0));
  QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, session->BoxOf(0));
  EXPECT_FALSE(session.Instr().IsOnline(True));
  EXPECT_THAT(session->Ticked(), IsEmpty());
}

TEST(InstrumentListFaults, AFailureWhileASessionStartsIsReportedUnderTheProceduresName) {
  PanelSession session({.fOpen = false});
  session.driver.FailMatching("IInstrument.GetTransactionState", 1, {Refused, "odd"});
  session.host.logFailure.reset();
  // The driver's close fails silently; a failing log lets the failure of the opening leave to the procedure.
  session.driver.FailMatching("IInstrument.Open", 1, {Refused, "no opening"});
  session.host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 1};
  session.Forget();
  session.Open();
  const auto lines = session.host.TakeLines();
  EXPECT_THAT(lines, testing::Contains("log: 02/03/01 04:05\r\n  Error: 70 Permission denied\r\n  Mod: TarvikVI; Proc: "
                                       "InstrStartStop\r\n\r\n\r\n"));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST(InstrumentListFaults, AFailureThatLeavesTheTickingOfARowLeavesTheListAlive) {
  PanelSession session({.fOpen = false});
  session.driver.FailMatching("IInstrument.Open", 1, {Refused, "no opening"});
  session.host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 0};
  session.Tick(0);
  EXPECT_THAT(session.Ticked(), IsEmpty());
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  session.host.logFailure.reset();
  session.Forget();
  session.Tick(0);
  EXPECT_THAT(session.Ticked(), ElementsAre("Alpha"));
  EXPECT_THAT(session.Calls({"Open"}), ElementsAre("IInstrument{Alpha}.Open(False, False, True)"));
}

}  // namespace
}  // namespace tarvik::test
