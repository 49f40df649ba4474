#include <gmock/gmock.h>

#include <QUndoView>

#include "PanelDump.h"
#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "panel/UndoHistory.h"
#include "panel/UndoScope.h"
#include "platform/PlainControls.h"
#include "support/EventBoundary.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class Undo : public testing::Test {
 protected:
  explicit Undo(bool fAutoOutput = false) { Start({.fAutoOutput = fAutoOutput}); }

  void Start(const PanelSession::Start &start) {
    session.reset();
    session.emplace(start);
    TarvikGUI::Panel::Of(*session->panel).undo->Clear();
  }
  PanelSession *operator->() { return &*session; }
  QUndoStack &Stack() { return TarvikGUI::Panel::Of(*session->panel).undo->Stack(); }
  std::vector<std::string> Names() {
    std::vector<std::string> arrNames;
    for (int i = 0; i < Stack().count(); ++i) arrNames.push_back(Stack().text(i).toStdString());
    return arrNames;
  }
  double Width() { return session->Field("esWidth(0)").Value(); }
  std::string Status() { return session->Get<DisplayBox>("txtStatus").Text(); }
  /// A key, wherever the focus is.
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    session->panel->activateWindow();
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }

  std::optional<PanelSession> session;
};

TEST_F(Undo, EachStepIsNamedAfterWhatItDid) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->TakeMenu("toolPopupTEdge(1)", "TeAbs");
  session->Choose("optChannel1Output(0)");
  session->Click("cmdPeriodOrFreq");
  session->ShowPage(ePageLevels);
  session->Take("cboLevelFormat(1)", 0);
  session->ShowPage(ePageMode);
  session->Choose("optTriggerMode(1)");
  session->ShowPage(ePagePattern);
  session->TakeMenu("toolPopup(1)", "Fill1");
  session->Click("cmdDownload");
  EXPECT_THAT(Names(), ElementsAre("Width, channel 1: 100.0 ns to 50.00 ns", "Trailing Edge, channel 2",
                                   "Output, channel 1: On", "Period to Frequency", "Set TTL, channel 2",
                                   "Trigger Mode: Triggered", "Fill 1, channel 2", "Download"));
}

TEST_F(Undo, ATypedValueComesBackAfterADownloadThatOverwroteIt) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->Click("cmdDownload");
  EXPECT_EQ(Width(), 100e-9);
  EXPECT_EQ(session->StateOf(ePageTiming), ePageIsCurrent);
  session->Forget();
  session->panel->undo();
  EXPECT_EQ(Width(), 50e-9);
  EXPECT_EQ(session->Field("esWidth(0)").Text(), "50.00");
  EXPECT_EQ(session->StateOf(ePageTiming), ePageIsDirty);
  EXPECT_EQ(Status(), "Undone: Download");
  EXPECT_THAT(session->driver.arrTrace, IsEmpty());
  session->Click("cmdUpload");
  session->Type("esWidth(0)", "70n");
  session->Click("cmdDownload");
  EXPECT_EQ(Width(), 50e-9);
}

TEST_F(Undo, ALevelFormatThatComesBackIsSentAsBefore) {
  session->ShowPage(ePageLevels);
  session->Type("esLevelHigh(0)", "3V");
  session->Type("esLevelLo(0)", "1V");
  session->Take("cboLevelFormat(0)", 0);
  session->panel->undo();
  session->Click("cmdUpload");
  const ChannelSettings &channel = session->driver.Find("Alpha")->settings.channels[0];
  EXPECT_DOUBLE_EQ(channel.dblHigh, 3);
  EXPECT_DOUBLE_EQ(channel.dblLow, 1);
}

TEST_F(Undo, AnUndoneEditMarksItsPageAndNoOther) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->panel->SetTabState(ePageIsCurrent, eAllPages);
  session->ShowPage(ePageLevels);
  session->panel->undo();
  EXPECT_EQ(session->StateOf(ePageTiming), ePageIsDirty);
  EXPECT_EQ(session->StateOf(ePageLevels), ePageIsCurrent);
  EXPECT_TRUE(session->panel->canRedo());
  EXPECT_EQ(session->panel->redoText(), "Width, channel 1: 100.0 ns to 50.00 ns");
}

TEST_F(Undo, ARunOfTheDigitCursorIsOneStep) {
  session->ShowPage(ePageTiming);
  session->Field("esWidth(0)").SetFocus();
  for (int i = 0; i < 5; ++i) session->PressIn("esWidth(0)", Qt::Key_Up);
  const double dblStepped = Width();
  EXPECT_THAT(Names(), ElementsAre(AllOf(StartsWith("Width, channel 1: 100.0 ns to "), HasSubstr(" ns"))));
  // The focus elsewhere ends the run.
  session->Field("esDelay(0)").SetFocus();
  session->Field("esWidth(0)").SetFocus();
  session->PressIn("esWidth(0)", Qt::Key_Up);
  EXPECT_THAT(Names(), SizeIs(2));
  session->panel->undo();
  EXPECT_EQ(Width(), dblStepped);
  session->panel->undo();
  EXPECT_EQ(Width(), 100e-9);
}

TEST_F(Undo, ARunThatEndsWhereItBeganIsNoStep) {
  session->ShowPage(ePageTiming);
  session->Type("esDelay(0)", "500n");
  session->PressIn("esDelay(0)", Qt::Key_Up);
  EXPECT_THAT(Names(), SizeIs(2));
  session->PressIn("esDelay(0)", Qt::Key_Down);
  EXPECT_THAT(Names(), ElementsAre("Delay, channel 1: 10.00 ns to 500.0 ns"));
}

TEST_F(Undo, EntriesOfOneFieldAreStepsOfTheirOwn) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->Type("esWidth(0)", "60n");
  EXPECT_THAT(Names(), ElementsAre("Width, channel 1: 100.0 ns to 50.00 ns", "Width, channel 1: 50.00 ns to 60.00 ns"));
}

TEST_F(Undo, TheKeysWorkInAFieldAtRestAndLeaveAnEntryToItsText) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Width(), 100e-9);
  Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Width(), 50e-9);

  session->TypeWithoutEnter("esWidth(0)", "70");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Width(), 50e-9);
  EXPECT_NE(session->Field("esWidth(0)").Text(), "70");
  EXPECT_EQ(Stack().index(), 1);
  session->PressIn("esWidth(0)", Qt::Key_Escape);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Width(), 100e-9);
}

TEST_F(Undo, TheMemoriesOfTheModePageComeBack) {
  session->ShowPage(ePageMode);
  session->Take("cboPulseType1", 1);
  session->Choose("optPulseMode(1)");
  session->Choose("optPulseMode(2)");
  for (int i = 0; i < 3; ++i) session->panel->undo();
  const auto arrAtStart = Dump(*session, session->State());
  // The choice that was remembered for the mode has gone with the step that made it.
  session->Choose("optPulseMode(1)");
  session->Choose("optPulseMode(0)");
  EXPECT_EQ(session->List("cboPulseType1").ListIndex(), 0);
  session->panel->undo();
  session->panel->undo();
  EXPECT_EQ(Dump(*session, session->State()), arrAtStart);
}

TEST_F(Undo, AScopeIsOneStepOfItsName) {
  TarvikGUI::Panel &panel = TarvikGUI::Panel::Of(*session->panel);
  RunUserEvent("TarvikGUI", "OpenSetup", [&] {
    const UndoScope step(panel, QStringLiteral("Open setup bench.json"));
    session->Field("esWidth(0)").SetValue(70e-9);
    session->Field("esLevelHigh(0)").SetValue(0.5);
  });
  EXPECT_THAT(Names(), ElementsAre("Open setup bench.json"));
  session->panel->undo();
  EXPECT_EQ(Width(), 100e-9);
  EXPECT_EQ(session->StateOf(ePageTiming), ePageIsDirty);
  EXPECT_EQ(session->StateOf(ePageLevels), ePageIsDirty);
  session->panel->redo();
  EXPECT_EQ(Width(), 70e-9);
}

TEST_F(Undo, SwitchedOffThereIsNone) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->panel->SetUndoEnabled(False);
  EXPECT_FALSE(session->panel->canUndo());
  session->Type("esWidth(0)", "60n");
  session->panel->undo();
  EXPECT_EQ(Width(), 60e-9);
  session->panel->SetUndoEnabled(True);
  session->Type("esWidth(0)", "70n");
  session->panel->undo();
  EXPECT_EQ(Width(), 60e-9);
}

TEST_F(Undo, AfterAnotherKindOfInstrumentWasOpenedIsRefusedWithAText) {
  session->driver.Add("Beta", {{"channels", 1}});
  session->ShowPage(ePageInstr);
  session->Click("cmdRefresh");
  session->Open();
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->ShowPage(ePageInstr);
  session->Tick(session->RowOf("Beta"));
  session->host.TakeBoxes();
  const auto arrShown = Dump(*session, session->State());
  session->panel->undo();
  EXPECT_THAT(session->host.TakeBoxes(), ElementsAre(HasSubstr("made with an instrument of another kind")));
  EXPECT_EQ(Dump(*session, session->State()), arrShown);
  // The first step with the new one begins a new history.
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "60n");
  EXPECT_THAT(Names(), ElementsAre(HasSubstr("60.00 ns")));
}

TEST_F(Undo, TheHistoryGoesToTheStepThatIsClicked) {
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->Type("esWidth(0)", "60n");
  session->Type("esWidth(0)", "70n");
  session->panel->ShowHistory();
  auto *view = session->panel->findChild<QUndoView *>(QStringLiteral("lstHistory"));
  ASSERT_NE(view, nullptr);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->model()->index(1, 0)).center());
  EXPECT_EQ(Width(), 50e-9);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->model()->index(3, 0)).center());
  EXPECT_EQ(Width(), 70e-9);
}

/// The outputs act at once.
class UndoOfOutputs : public Undo {
 protected:
  UndoOfOutputs() : Undo(true) {}
};

TEST_F(UndoOfOutputs, AsksFirstAndSendsTheSwitchAlone) {
  session->ShowPage(ePageTiming);
  session->Choose("optChannel1Output(0)");
  session->Forget();
  session->panel->undo();
  EXPECT_THAT(session->host.TakeBoxes(),
              ElementsAre("box question: This switches outputs of the instrument at once: output 1 off.\r\nGo on?"));
  EXPECT_THAT(session->Calls({"SetOutput", "SetComplementOutput"}),
              ElementsAre("IChannelLevels{Alpha.1}.SetOutput(False)"));
  EXPECT_FALSE(session->State().mfOutputOn[1]);
  EXPECT_FALSE(session->Get<OptionButton>("optChannel1Output(0)").Value());
}

TEST_F(UndoOfOutputs, OnTheAnswerNoNothingChanges) {
  session->ShowPage(ePageTiming);
  session->Choose("optChannel1Output(0)");
  session->Forget();
  const auto arrShown = Dump(*session, session->State());
  session->host.arrBoxAnswers = {BoxAnswer::No};
  session->panel->undo();
  EXPECT_THAT(session->driver.arrTrace, IsEmpty());
  EXPECT_EQ(Dump(*session, session->State()), arrShown);
  EXPECT_TRUE(session->panel->canUndo());
}

}  // namespace
}  // namespace tarvik::test
