#include <gmock/gmock.h>

#include <QPushButton>
#include <QVBoxLayout>
#include <functional>
#include <utility>

#include "PanelSession.h"
#include "PanelStart.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> Names(const SimulatorSession &session) {
  std::vector<std::string> arrNames;
  const ListView &list = session->Instruments();
  for (int i = 0; i < list.Count(); ++i) arrNames.push_back(list.Item(i)->Text());
  return arrNames;
}

Integer Value(const SimulatorSession &session, const char *strName) { return session->Get<CheckBox>(strName).Value(); }

std::string Choice(const SimulatorSession &session, const char *strName) {
  return CStr(session->Get<FrameEnhanced>(strName).Value());
}

/// A driver that is not there, as long as the object lives.
class NoDriver {
 public:
  NoDriver() {
    automation::RegisterClass(kolven::DriverProgId, []() -> automation::Ref<automation::IUnknown> {
      throw RunTimeError(ErrCannotCreateObject, "no such driver");
    });
  }
  NoDriver(const NoDriver &) = delete;
  NoDriver &operator=(const NoDriver &) = delete;
  ~NoDriver() { automation::RegisterClass(kolven::DriverProgId, {}); }
};

TEST(Start, AFirstRunShowsTheDefaults) {
  SimulatorSession session;
  EXPECT_EQ(Choice(session, "grpUpload"), "All");
  EXPECT_EQ(Choice(session, "grpDownload"), "All");
  EXPECT_EQ(Value(session, "chkAutoWarnings"), 1);
  EXPECT_EQ(Value(session, "chkAutoErrors"), 1);
  EXPECT_EQ(Value(session, "chkAutoDownOnError"), 0);
  EXPECT_EQ(Value(session, "chkAutoDownload"), 1);
  EXPECT_EQ(Value(session, "chkAutoOutputOnOff"), 1);
  EXPECT_TRUE(session.Instr().GetErrorsEnabled());
  EXPECT_TRUE(session.Instr().GetWarningsEnabled());
  EXPECT_TRUE(TarvikGUI::Panel::Of(*session.panel).state.mfAutoOutputOnOff);
  EXPECT_THAT(Names(session), ElementsAre("VP-210", "VP-110", "VP-220", "VP-250F", "VP-210 reserved"));
}

TEST(Start, SavedOptionsComeBack) {
  SimulatorSession session({{"Upload", ""},
                            {"Download", ""},
                            {"AutoWarnings", "0"},
                            {"AutoErrors", "0"},
                            {"AutoDownOnError", "1"},
                            {"AutoDownload", "0"},
                            {"AutoOutputOnOff", "0"}});
  EXPECT_EQ(Choice(session, "grpUpload"), "");
  EXPECT_EQ(Choice(session, "grpDownload"), "");
  EXPECT_EQ(Value(session, "chkAutoWarnings"), 0);
  EXPECT_EQ(Value(session, "chkAutoErrors"), 0);
  EXPECT_EQ(Value(session, "chkAutoDownOnError"), 1);
  EXPECT_EQ(Value(session, "chkAutoDownload"), 0);
  EXPECT_EQ(Value(session, "chkAutoOutputOnOff"), 0);
  EXPECT_FALSE(session.Instr().GetErrorsEnabled());
  EXPECT_FALSE(session.Instr().GetWarningsEnabled());
  EXPECT_FALSE(TarvikGUI::Panel::Of(*session.panel).state.mfAutoOutputOnOff);
}

TEST(Start, AnUnknownStoredChoiceLeavesTheDesignedOne) {
  SimulatorSession session({{"Upload", "Some"}});
  EXPECT_EQ(Choice(session, "grpUpload"), "All");
}

TEST(Start, BoxEntriesAreListedWhenTheStoreSaysSoAndTheKeyIsNeverWritten) {
  SimulatorSession session({{"WorkWithBoxes", "1"}});
  EXPECT_THAT(Names(session), ElementsAre("VP-210", "VB-200", "VP-110", "VP-220", "VP-250F", "VP-210 reserved"));
  session.Hide();
  EXPECT_THAT(session.host.TakeLines(), Not(Contains(StartsWith("save Config/WorkWithBoxes"))));
}

TEST(Start, AnyTextButZeroAsksForBoxEntries) {
  SimulatorSession session({{"WorkWithBoxes", "no"}});
  EXPECT_THAT(Names(session), Contains("VB-200"));
}

TEST(Start, TheFirstPageIsInFrontAndOnlyRefreshIsReady) {
  SimulatorSession session;
  EXPECT_EQ(session->Get<TabControl>("tabMain").Tab(), ePageInstr);
  EXPECT_TRUE(session.ButtonEnabled("cmdRefresh"));
  for (const char *strName : {"cmdUpload", "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings", "cmdResetInstr",
                              "cmdSelfTest", "cmdCalibrate"})
    EXPECT_FALSE(session.ButtonEnabled(strName)) << strName;
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST(Start, NothingIsOpenedByItself) {
  SimulatorSession session;
  session.Open("VP-210");
  session.Hide();
  session.Show();
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_FALSE(session.Instr().IsOnline(True));
}

TEST(Start, TheMessageLoopIsServedOnceBetweenConnectionAndList) {
  SimulatorSession session;
  int intYields = 0;
  session.Hide();
  session.host.OnEntry = [&](const HostEntry &entry) {
    if (entry.kind != HostEntry::DoEvents) return;
    ++intYields;
    EXPECT_TRUE(session.ButtonEnabled("cmdRefresh"));
    EXPECT_EQ(session->Get<DisplayBox>("txtStatus").Text(), "Local Connection");
  };
  session.Show();
  session.host.OnEntry = {};
  EXPECT_EQ(intYields, 1);
}

TEST(Start, AFailedConnectionLeavesRefreshDisabledAndALaterShowTriesAgain) {
  SimulatorSession session;
  session.NewPanel();
  auto driver = std::make_unique<NoDriver>();
  session.host.TakeLines();
  session.Show();
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box information: You need to be online to an instrument to perform this operation",
                          "box stop: no such driver"));
  EXPECT_FALSE(session.ButtonEnabled("cmdRefresh"));
  EXPECT_FALSE(session.ButtonEnabled("cmdUpload"));
  EXPECT_EQ(session->Instruments().Count(), 0);
  // The gate ran as for no session.
  EXPECT_TRUE(TarvikGUI::Panel::Of(*session.panel).state.mfDualChannel);
  EXPECT_TRUE(TarvikGUI::Panel::Of(*session.panel).state.mfVxiLines);
  // The busy pointer of the search stays until a list is read.
  EXPECT_EQ(session.host.intPointer, PointerHourglass);

  driver.reset();
  session.Hide();
  session.Show();
  EXPECT_TRUE(session.ButtonEnabled("cmdRefresh"));
  EXPECT_EQ(session->Instruments().Count(), 5);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST(Start, ASecondShowFillsTheListsThatNobodyClearsTwice) {
  SimulatorSession session;
  EXPECT_EQ(session->List("cboPllRefSource").ListCount(), 2);
  session.Hide();
  session.Show();
  EXPECT_EQ(session->List("cboPllRefSource").ListCount(), 4);
  EXPECT_EQ(session->List("cboPllRefFreq").ListCount(), 4);
  EXPECT_EQ(session->List("cboLevelFormat(0)").ListCount(), 8);
  EXPECT_EQ(session->List("cboLevelUnits(1)").ListCount(), 4);
  EXPECT_EQ(session->List("cboOutputImpedance(0)").ListCount(), 4);
  EXPECT_EQ(session->List("cboVxiTriggerEnable").ListCount(), 20);
  EXPECT_EQ(session->List("cboVxiTriggerSource").ListCount(), 4);
  // The lists of the mode are cleared or filled once.
  EXPECT_EQ(session->List("cboPulseType1").ListCount(), 2);
  EXPECT_EQ(session->List("cboPeriodSource").ListCount(), 3);
}

TEST(Start, APanelThatWasShownTwiceStillWorks) {
  SimulatorSession session;
  session.Hide();
  session.Show();
  session.host.TakeLines();
  session.Open("VP-210");
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
  EXPECT_EQ(session->List("cboPllRefSource").Text(), "Internal");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST(Start, ThePagesComeBeforeTheHostsNextControlInTheTabOrder) {
  SimulatorSession session;
  session.NewPanel();
  QWidget window;
  QVBoxLayout layout(&window);
  auto *before = new QPushButton(QStringLiteral("Before"), &window);
  auto *after = new QPushButton(QStringLiteral("After"));
  for (QWidget *widget :
       {static_cast<QWidget *>(before), static_cast<QWidget *>(session.panel.get()), static_cast<QWidget *>(after)})
    layout.addWidget(widget);
  ShowAndStart(window);
  window.activateWindow();
  session->ShowPage(ePageLimits);
  before->setFocus();
  std::vector<std::string> arrStops;
  while (!after->hasFocus() && arrStops.size() < 40) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    const QWidget *stop = QApplication::focusWidget();
    while (stop && !stop->objectName().startsWith(QLatin1String("es")) && stop != after && stop->parentWidget())
      stop = stop->parentWidget();
    if (stop && (stop == after || stop->objectName().startsWith(QLatin1String("es"))))
      arrStops.push_back(stop == after ? "After" : stop->objectName().toStdString());
  }
  EXPECT_THAT(arrStops, ElementsAre("esLimitHighVoltage(0)", "esLimitLowVoltage(0)", "esLimitHighCurrent(0)",
                                    "esLimitLowCurrent(0)", "esLimitHighVoltage(1)", "esLimitLowVoltage(1)",
                                    "esLimitHighCurrent(1)", "esLimitLowCurrent(1)", "After"));
  session.panel->setParent(nullptr);
}

/// Does something in the yield of the next start.
void InTheYield(SimulatorSession &session, std::function<void()> step) {
  session.host.OnEntry = [step = std::move(step), fDone = false](const HostEntry &entry) mutable {
    if (entry.kind == HostEntry::DoEvents && !std::exchange(fDone, true)) step();
  };
}

TEST(Start, APanelHiddenInItsYieldAsksNothingMore) {
  SimulatorSession session;
  session.NewPanel();
  InTheYield(session, [&] { session.Hide(); });
  session.Show();
  session.host.OnEntry = {};
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_EQ(session->Instruments().Count(), 0);
}

TEST(Start, APanelHiddenAndShownAgainInItsYieldStartsAnew) {
  SimulatorSession session;
  session.NewPanel();
  InTheYield(session, [&] { session.Hide(), session.panel->show(); });
  session.Show();
  session.host.OnEntry = {};
  LetPanelsStart();
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(Start, APanelThatIsEndedInItsYieldIsGone) {
  SimulatorSession session;
  session.NewPanel();
  InTheYield(session, [&] { session.user.reset(), session.panel.reset(); });
  session.panel->show();
  LetPanelsStart();
  session.host.OnEntry = {};
  EXPECT_EQ(session.panel, nullptr);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST(Start, AClickWithinTheYieldRuns) {
  SimulatorSession session;
  session.NewPanel();
  std::vector<std::string> arrLines;
  session.host.OnEntry = [&, fDone = false](const HostEntry &entry) mutable {
    if (entry.kind != HostEntry::DoEvents || std::exchange(fDone, true)) return;
    session.host.TakeLines();
    session->Click("cmdCheckErrors");
    arrLines = session.host.TakeLines();
  };
  session.Show();
  session.host.OnEntry = {};
  EXPECT_THAT(arrLines,
              ElementsAre("box information: You need to be online to an instrument to perform this operation"));
}

TEST(Start, ThePanelShownLastIsTheOneThatIsToldWheneverTheStartsRun) {
  SimulatorSession session;
  session.NewPanel();
  TarvikGUI second;
  session.panel->show();
  second.show();
  EXPECT_EQ(gobjPanel(), &second);
  int intAsked = 0;
  session.host.OnEntry = [&](const HostEntry &) {
    ++intAsked;
    EXPECT_EQ(gobjPanel(), &second);
  };
  LetPanelsStart();
  session.host.OnEntry = {};
  EXPECT_GT(intAsked, 0);
  session.Hide();
  session.panel->show();
  EXPECT_EQ(gobjPanel(), session.panel.get());
  LetPanelsStart();
}

TEST(Start, TwoPanelsShareTheInstrumentAndTheLastOneShownIsTold) {
  SimulatorSession session;
  const auto instr = gobjInstr();
  TarvikGUI second;
  ShowAndStart(second);
  EXPECT_EQ(gobjInstr(), instr);
  EXPECT_EQ(gobjPanel(), &second);
  // A choice in a list of the first panel marks the visible page of the second one.
  session->ShowPage(ePageConfig);
  session->Take("cboPllRefSource", 1);
  EXPECT_EQ(TarvikGUI::Panel::Of(*session.panel).state.meTabState[ePageConfig], ePageIsCurrent);
  EXPECT_EQ(TarvikGUI::Panel::Of(second).state.meTabState[ePageInstr], ePageIsDirty);
}

TEST(Start, BothPanelsShowTheStatusOfTheOneInstrument) {
  SimulatorSession session;
  TarvikGUI second;
  ShowAndStart(second);
  session.Open("VP-210");
  const PanelUser other(second);
  EXPECT_EQ(session->Get<DisplayBox>("txtStatus").Text(), "Online with VP-210 (VP-210 Dual Pulse Generator)");
  EXPECT_EQ(other.Get<DisplayBox>("txtStatus").Text(), "Online with VP-210 (VP-210 Dual Pulse Generator)");
}

TEST(Start, TheHiddenConnectButtonStaysInert) {
  SimulatorSession session;
  auto &button = session->Get<CommandButton>("cmdConnect");
  EXPECT_FALSE(button.Visible());
  EXPECT_EQ(button.Caption(), "&Connect");
  session.host.TakeLines();
  button.click();
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
