#include <gmock/gmock.h>

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QWindow>
#include <functional>
#include <utility>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/Highlight.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> Names(const SimulatorSession &session) {
  std::vector<std::string> arrNames;
  const ListView &list = session->Instruments();
  for (int i = 0; i < list.Count(); ++i) arrNames.push_back(list.Item(i)->Text());
  return arrNames;
}

std::vector<std::string> Saved(RecordingHost &host) {
  std::vector<std::string> arrLines;
  for (const std::string &strLine : host.TakeLines())
    if (strLine.starts_with("save ")) arrLines.push_back(strLine);
  return arrLines;
}

Integer Value(const SimulatorSession &session, const char *strName) { return session->Get<CheckBox>(strName).Value(); }

std::string Choice(const SimulatorSession &session, const char *strName) {
  return CStr(session->Get<FrameEnhanced>(strName).Value());
}

Boolean Enabled(const SimulatorSession &session, const char *strName) {
  return session->Get<CommandButton>(strName).Enabled();
}

/// Counts the events of a type that a widget gets.
class EventCount : public QObject {
 public:
  EventCount(QWidget &widget, QEvent::Type eType, int &intCount) : m_eType(eType), m_intCount(intCount) {
    widget.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == m_eType) ++m_intCount;
    return false;
  }

 private:
  QEvent::Type m_eType;
  int &m_intCount;
};

/// Shows a panel in its host's window and lets the loop turn once before the window's exposure, with what the host
/// does then.
void ShowAndDisturb(QWidget &window, const std::function<void()> &disturb) {
  window.show();
  QCoreApplication::sendPostedEvents();
  disturb();
  LetPanelsStart();
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
  EXPECT_TRUE(PanelTestAccess::State(*session.panel).mfAutoOutputOnOff);
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
  EXPECT_FALSE(PanelTestAccess::State(*session.panel).mfAutoOutputOnOff);
}

TEST(Start, AnUnknownStoredChoiceLeavesTheDesignedOne) {
  SimulatorSession session({{"Upload", "Some"}});
  EXPECT_EQ(Choice(session, "grpUpload"), "All");
}

TEST(Start, BoxEntriesAreListedWhenTheStoreSaysSoAndTheKeyIsNeverWritten) {
  SimulatorSession session({{"WorkWithBoxes", "1"}});
  EXPECT_THAT(Names(session), ElementsAre("VP-210", "VB-200", "VP-110", "VP-220", "VP-250F", "VP-210 reserved"));
  session.Hide();
  EXPECT_THAT(Saved(session.host), Not(Contains(StartsWith("save Config/WorkWithBoxes"))));
}

TEST(Start, AnyTextButZeroAsksForBoxEntries) {
  SimulatorSession session({{"WorkWithBoxes", "no"}});
  EXPECT_THAT(Names(session), Contains("VB-200"));
}

TEST(Start, TheFirstPageIsInFrontAndOnlyRefreshIsReady) {
  SimulatorSession session;
  EXPECT_EQ(session->Get<TabControl>("tabMain").Tab(), ePageInstr);
  EXPECT_TRUE(Enabled(session, "cmdRefresh"));
  for (const char *strName : {"cmdUpload", "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings", "cmdResetInstr",
                              "cmdSelfTest", "cmdCalibrate"})
    EXPECT_FALSE(Enabled(session, strName)) << strName;
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
    EXPECT_TRUE(Enabled(session, "cmdRefresh"));
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
  EXPECT_FALSE(Enabled(session, "cmdRefresh"));
  EXPECT_FALSE(Enabled(session, "cmdUpload"));
  EXPECT_EQ(session->Instruments().Count(), 0);
  // The gate ran as for no session.
  EXPECT_TRUE(PanelTestAccess::State(*session.panel).mfDualChannel);
  EXPECT_TRUE(PanelTestAccess::State(*session.panel).mfVxiLines);
  // The busy pointer of the search stays until a list is read.
  EXPECT_EQ(session.host.intPointer, PointerHourglass);

  driver.reset();
  session.Hide();
  session.Show();
  EXPECT_TRUE(Enabled(session, "cmdRefresh"));
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

TEST(Start, TheFirstFrameIsPaintedBeforeAnythingIsAsked) {
  SimulatorSession session;
  session.NewPanel();
  session.host.TakeLines();
  int intFrames = 0;
  const EventCount frames(*session.panel, QEvent::Paint, intFrames);
  session.panel->show();
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(intFrames, 0);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << "no frame, no start";
  QCoreApplication::processEvents();
  EXPECT_EQ(intFrames, 1);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << "the frame stands, the start waits behind it";
  QCoreApplication::sendPostedEvents();
  EXPECT_THAT(session.host.TakeLines(), Contains(StartsWith("get Config/Upload")));
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(Start, APanelThatNobodyPaintsStartsAllTheSame) {
  const std::pair<const char *, std::function<void(QWidget &)>> ways[] = {
      {"no updates", [](QWidget &panel) { panel.setUpdatesEnabled(false); }},
      {"minimized", [](QWidget &panel) { panel.setWindowState(Qt::WindowMinimized); }},
      {"not on the screen", [](QWidget &panel) { panel.setAttribute(Qt::WA_DontShowOnScreen); }},
  };
  for (const auto &[strWay, prevent] : ways) {
    SimulatorSession session;
    session.NewPanel();
    prevent(*session.panel);
    session.Show();
    EXPECT_EQ(session->Instruments().Count(), 5) << strWay;
  }
}

TEST(Start, AMinimizedWindowIsNotWaitedFor) {
  SimulatorSession session;
  session.NewPanel();
  session.panel->showMinimized();
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(Start, APanelWhoseFirstFrameWasPreventedStartsAllTheSame) {
  const std::pair<const char *, std::function<void(QScrollArea &, QWidget &)>> ways[] = {
      {"scrolled away", [](QScrollArea &area, QWidget &) { area.ensureVisible(1999, 1999); }},
      {"covered",
       [](QScrollArea &area, QWidget &) {
         auto *cover = new QWidget(area.widget());
         cover->setAutoFillBackground(true);
         cover->resize(2000, 2000);
         cover->show();
       }},
      {"no updates", [](QScrollArea &, QWidget &panel) { panel.setUpdatesEnabled(false); }},
      {"no updates of the window", [](QScrollArea &area, QWidget &) { area.setUpdatesEnabled(false); }},
  };
  for (const auto &[strWay, prevent] : ways) {
    SimulatorSession session;
    session.NewPanel();
    int intFrames = 0;
    const EventCount frames(*session.panel, QEvent::Paint, intFrames);
    QScrollArea area;
    area.resize(700, 500);
    auto *contents = new QWidget;
    contents->resize(2000, 2000);
    session.panel->setParent(contents);
    area.setWidget(contents);
    ShowAndDisturb(area, [&, &prevent = prevent] { prevent(area, *session.panel); });
    EXPECT_EQ(intFrames, 0) << strWay;
    EXPECT_EQ(session->Instruments().Count(), 5) << strWay;
    session.panel->setParent(nullptr);
  }
}

TEST(Start, APictureTakenBeforeTheShowIsNoFirstFrame) {
  SimulatorSession session;
  session.NewPanel();
  session.panel->grab();
  session.host.TakeLines();
  session.panel->show();
  QCoreApplication::sendPostedEvents();
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
}

TEST(Start, APanelThatComesToAStandingWindowIsPaintedFirst) {
  SimulatorSession session;
  session.NewPanel();
  QWidget window;
  window.resize(session.panel->size());
  window.show();
  QCoreApplication::processEvents();
  session.panel->setParent(&window);
  session.host.TakeLines();
  int intFrames = 0;
  const EventCount frames(*session.panel, QEvent::Paint, intFrames);
  session.host.OnEntry = [&](const HostEntry &) { EXPECT_EQ(intFrames, 1); };
  session.panel->show();
  QCoreApplication::sendPostedEvents();
  session.host.OnEntry = {};
  EXPECT_EQ(session->Instruments().Count(), 5);
  session.panel->setParent(nullptr);
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

TEST(Start, APanelOutOfSightInItsHostsWindowStartsAllTheSame) {
  SimulatorSession session;
  session.NewPanel();
  QScrollArea area;
  area.resize(100, 100);
  auto *contents = new QWidget;
  contents->resize(2000, 2000);
  session.panel->setParent(contents);
  session.panel->move(1000, 1000);
  area.setWidget(contents);
  area.show();
  LetPanelsStart();
  EXPECT_EQ(session->Instruments().Count(), 5);
  session.panel->setParent(nullptr);
}

/// A panel on its second show, with a field in front and its buttons enabled as an open session left them, that waits
/// for its start.
class WaitingPanel : public testing::Test {
 protected:
  WaitingPanel() {
    session.Open("VP-210");
    session->ShowPage(ePageLimits);
    session.Hide();
    session.host.TakeLines();
    session.panel->show();
    session.panel->activateWindow();
  }
  QLineEdit &Text() const { return *session->Field("esLimitHighVoltage(0)").findChild<QLineEdit *>(); }
  bool IsLit(const char *strName) const { return session->Get<Highlight>(strName).Visible(); }
  void ExpectDeaf(const char *strWhat) {
    EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << strWhat;
    EXPECT_FALSE(IsLit("picUploadHighlight")) << strWhat;
    EXPECT_FALSE(IsLit("picDownloadHighlight")) << strWhat;
    EXPECT_EQ(session->Get<TabControl>("tabMain").Tab(), ePageLimits) << strWhat;
    EXPECT_EQ(Text().text().toStdString(), m_strBefore) << strWhat;
  }
  void TurnWheel(QWidget &widget) {
    const QPointF place = widget.rect().center();
    QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&widget, &event);
  }
  bool OfferDrop(QWidget &widget) {
    QMimeData text;
    text.setText(QStringLiteral("7"));
    const QPoint place = widget.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &enter);
    QDropEvent drop(place, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &drop);
    return enter.isAccepted();
  }

  SimulatorSession session;

 private:
  const std::string m_strBefore = Text().text().toStdString();
};

TEST_F(WaitingPanel, TakesNoCommandBeforeItsStart) {
  for (const char *strButton : {"cmdUpload", "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings"}) {
    ASSERT_TRUE(Enabled(session, strButton)) << strButton;
    session->Click(strButton);
    ExpectDeaf(strButton);
    EXPECT_TRUE(Enabled(session, strButton)) << "the form's own";
  }
  for (const Qt::Key key : {Qt::Key_U, Qt::Key_D, Qt::Key_T}) {
    QTest::keyClick(session.panel.get(), key, Qt::AltModifier);
    ExpectDeaf("access key");
  }
  QTabBar &tabs = *session->Get<QTabWidget>("tabMain").tabBar();
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(ePageTiming).center());
  ExpectDeaf("tab");

  Text().setFocus();
  QTest::keyClicks(&Text(), QStringLiteral("3"));
  QTest::keyClick(&Text(), Qt::Key_Return);
  ExpectDeaf("keys in a field");
  TurnWheel(Text());
  ExpectDeaf("wheel");
  EXPECT_FALSE(OfferDrop(Text()));
  ExpectDeaf("drop");
  QContextMenuEvent menu(QContextMenuEvent::Mouse, Text().rect().center(), QPoint(1, 1));
  QCoreApplication::sendEvent(&Text(), &menu);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  QTest::mouseClick(&session->Get<QWidget>("optLimitsChanel(0)"), Qt::LeftButton, {}, QPoint(8, 8));
  ExpectDeaf("option");

  LetPanelsStart();
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_FALSE(IsLit("picUploadHighlight"));
  EXPECT_EQ(session->Instruments().Count(), 5);
  session.Open("VP-210");
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
}

TEST_F(WaitingPanel, KeepsTheFocusWhereItIsWhateverIsClicked) {
  auto &errors = session->Get<QWidget>("cmdCheckErrors");
  errors.setFocus();
  const QPointF place = Text().mapTo(session.panel.get(), Text().rect().center());
  QMouseEvent press(QEvent::MouseButtonPress, place, session.panel->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(session.panel->windowHandle(), &press);
  EXPECT_EQ(session.panel->focusWidget(), &errors);
  LetPanelsStart();
}

TEST_F(WaitingPanel, LeavesTheRowsOfTheFormerListAlone) {
  session->Get<QTabWidget>("tabMain").setCurrentIndex(ePageInstr);
  session.host.TakeLines();
  session->Tick(0);
  session->DoubleClick(0);
  QTest::keyClick(&session->Instruments(), Qt::Key_Return);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
  LetPanelsStart();
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(WaitingPanel, IsNotMarkedByAnEditInAnotherPanel) {
  session.panel->SetTabState(ePageIsDirty, ePageLimits);
  EXPECT_FALSE(IsLit("picUploadHighlight"));
  LetPanelsStart();
  EXPECT_FALSE(IsLit("picUploadHighlight"));
  session.panel->SetTabState(ePageIsDirty, eCurrPage);
  EXPECT_TRUE(IsLit("picUploadHighlight"));
}

TEST(Start, TheHostsOwnControlsWorkWhileThePanelWaits) {
  SimulatorSession session;
  session.NewPanel();
  QWidget window;
  QVBoxLayout layout(&window);
  auto *button = new QPushButton(QStringLiteral("Host's"));
  layout.addWidget(button);
  layout.addWidget(session.panel.get());
  int intClicks = 0;
  QObject::connect(button, &QPushButton::clicked, [&] { ++intClicks; });
  window.show();
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(intClicks, 1);
  LetPanelsStart();
  session.panel->setParent(nullptr);
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

TEST(Start, AStartThatFailedHalfwayCountsAsStarted) {
  SimulatorSession session;
  session.NewPanel();
  session.host.arrGetFailures.push_back({ErrPathFileAccess, "no store", 1});
  session.Show();
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: no store"));
  session->Click("cmdCheckErrors");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box information: You need to be online to an instrument to perform this operation"));
  session.user.reset();
  session.panel.reset();
  EXPECT_EQ(Saved(session.host).size(), 7u);
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

TEST(Start, APanelHiddenBeforeItsFirstFrameStartsNothing) {
  SimulatorSession session;
  session.NewPanel();
  session.host.TakeLines();
  session.panel->show();
  session.panel->hide();
  LetPanelsStart();
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
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
  EXPECT_EQ(PanelTestAccess::State(*session.panel).meTabState[ePageConfig], ePageIsCurrent);
  EXPECT_EQ(PanelTestAccess::State(second).meTabState[ePageInstr], ePageIsDirty);
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

TEST(End, HidingSavesTheOptionsInTheirOrderAndEndsTheSession) {
  SimulatorSession session;
  session.Open("VP-210");
  session->ShowPage(ePageOptions);
  session->Choose("chkAutoDownload");
  session->Choose("optUpload(1)");
  session.host.TakeLines();
  session.Hide();
  EXPECT_THAT(Saved(session.host),
              ElementsAre("save Config/Upload=", "save Config/Download=All", "save Config/AutoWarnings=1",
                          "save Config/AutoErrors=1", "save Config/AutoDownOnError=0", "save Config/AutoDownload=0",
                          "save Config/AutoOutputOnOff=1"));
  EXPECT_FALSE(session.Instr().IsOnline(True));
}

TEST(End, TheOptionsOfTheMomentAreSavedAlsoLongAfterTheSession) {
  SimulatorSession session;
  session.Open("VP-210");
  session->Tick(0);
  session->ShowPage(ePageOptions);
  session->Choose("chkAutoErrors");
  session.Hide();
  EXPECT_EQ((session.host.settings[{"Config", "AutoErrors"}]), "0");
}

TEST(End, TheEndAfterAHideSavesOnceMoreAndClosesNothing) {
  SimulatorSession session;
  session.Open("VP-210");
  session.Hide();
  std::vector<std::string> arrStatus;
  session.Instr().StatusMessage.Connect([&](const std::string &strStatus) { arrStatus.push_back(strStatus); });
  session.host.TakeLines();
  session.user.reset();
  session.panel.reset();
  EXPECT_EQ(Saved(session.host).size(), 7u);
  EXPECT_THAT(arrStatus, IsEmpty());
}

TEST(End, APanelThatWasNeverStartedSavesNothing) {
  SimulatorSession session;
  session.Hide();
  session.NewPanel();
  session.host.TakeLines();
  session.user.reset();
  session.panel.reset();
  EXPECT_THAT(Saved(session.host), IsEmpty());
}

TEST(End, APanelThatWasHiddenBeforeItsStartSavesNothing) {
  SimulatorSession session;
  session.Hide();
  session.NewPanel();
  session.host.TakeLines();
  session.panel->show();
  session.panel->hide();
  session.user.reset();
  session.panel.reset();
  EXPECT_THAT(Saved(session.host), IsEmpty());
}

TEST(End, AfterAHideNoMessageReachesThePanel) {
  SimulatorSession session;
  session.Hide();
  session->Get<DisplayBox>("txtStatus").SetText("left as it was");
  session.Instr().StatusMessage.Raise("a message");
  EXPECT_EQ(session->Get<DisplayBox>("txtStatus").Text(), "left as it was");
}

TEST(End, AStoreThatCannotBeWrittenIsToldInABox) {
  SimulatorSession session;
  session.Open("VP-210");
  session.host.TakeLines();
  session.host.arrSaveFailures.push_back({ErrPathFileAccess, "disk full", 1});
  session.Hide();
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box information: Unable to save settings: disk full"));
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
