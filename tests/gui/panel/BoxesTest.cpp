#include <gmock/gmock.h>

#include <QTest>

#include <ostream>

#include "PanelSession.h"
#include "PanelStart.h"
#include "PanelUser.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"

namespace tarvik::test {
namespace {

using testing::Combine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ValuesIn;

const DriverFailure TheFailure{-2147221503, "driver failed"};

/// What a host does to the panel while a box of it stands.
enum class Interruption { Hide, HideAndShow, Destroy };
constexpr Interruption Interruptions[] = {Interruption::Hide, Interruption::HideAndShow, Interruption::Destroy};

/// What brings a box.
struct Way {
  const char *strName;
  void (*act)(PanelSession &session);
};

void PrintTo(const Way &way, std::ostream *stream) { *stream << way.strName; }
void PrintTo(Interruption eHow, std::ostream *stream) {
  constexpr const char *Names[] = {"hidden", "hidden and shown again", "ended"};
  *stream << Names[static_cast<int>(eHow)];
}

void Mark(PanelSession &session, TabStates eState) {
  for (const TabNumEnum ePage :
       {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
    session.panel->SetTabState(eState, ePage);
}

void StartAnew(PanelSession &session) {
  session.panel->hide();
  session.Forget();
  ShowAndStart(*session.panel);
}

/// The call of this number within the operation fails.
template <int intCall>
void FailingUpload(PanelSession &session) {
  Mark(session, ePageIsDirty);
  session.driver.FailAt(intCall, TheFailure);
  session.Click("cmdUpload");
}
template <int intCall>
void FailingDownload(PanelSession &session) {
  session.driver.FailAt(intCall, TheFailure);
  session.Click("cmdDownload");
}
template <int intCall>
void FailingOpening(PanelSession &session) {
  session.Open();  // ends the session that there is
  session.driver.FailAt(intCall, TheFailure);
  session.Open();
}
template <int intCall>
void FailingRefresh(PanelSession &session) {
  session.driver.FailAt(intCall, TheFailure);
  session.ShowPage(ePageInstr);
  session.Click("cmdRefresh");
}

void AskPattern(PanelSession &session, const char *strKey, const char *strAnswer) {
  session.ShowPage(ePagePattern);
  session.host.arrInputAnswers.push_back(strAnswer);
  session.TakeMenu("toolPopup(0)", strKey);
}

void OnConfig(PanelSession &session, const char *strButton) {
  session.ShowPage(ePageConfig);
  session.Click(strButton);
}

const Way Ways[] = {
    {"question for the server",
     [](PanelSession &session) {
       session.panel->hide();
       session.driver.QueueEmptyCreation();
       StartAnew(session);
     }},
    {"failed connection",
     [](PanelSession &session) {
       session.driver.QueueFailingCreation(TheFailure);
       StartAnew(session);
     }},
    {"setting that is no number",
     [](PanelSession &session) {
       session.panel->hide();
       session.host.settings[{"Config", "AutoErrors"}] = "yes";
       StartAnew(session);
       session.host.settings[{"Config", "AutoErrors"}] = "1";
     }},
    {"instrument that does not open",
     [](PanelSession &session) {
       session.Open();
       session.driver.Configure("Alpha", StandInConfig{{"opens", 0}});
       session.Open();
       session.driver.Configure("Alpha", StandInConfig{{"opens", 1}});
     }},
    {"opening, call 2", FailingOpening<2>},
    {"opening, call 3", FailingOpening<3>},
    {"opening, call 5", FailingOpening<5>},
    {"opening, call 9", FailingOpening<9>},
    {"opening, call 20", FailingOpening<20>},
    {"opening, call 60", FailingOpening<60>},
    {"tick by the mouse",
     [](PanelSession &session) {
       session.Open();
       session.driver.FailAt(3, TheFailure);
       PanelUser(*session.panel).Tick(0);
     }},
    {"tick by the space bar",
     [](PanelSession &session) {
       session.Open();
       session.driver.FailAt(3, TheFailure);
       QTest::keyClick(&session.Get<ListView>("lvwInstruments"), Qt::Key_Space);
     }},
    {"double click",
     [](PanelSession &session) {
       session.Open();
       session.driver.FailAt(3, TheFailure);
       PanelUser(*session.panel).DoubleClick(0);
     }},
    {"refresh, call 2", FailingRefresh<2>},
    {"refresh, call 5", FailingRefresh<5>},
    {"reset question", [](PanelSession &session) { OnConfig(session, "cmdResetInstr"); }},
    {"self-test question", [](PanelSession &session) { OnConfig(session, "cmdSelfTest"); }},
    {"calibration question", [](PanelSession &session) { OnConfig(session, "cmdCalibrate"); }},
    {"no errors", [](PanelSession &session) { session.Click("cmdCheckErrors"); }},
    {"errors",
     [](PanelSession &session) {
       session.driver.strErrors = "-222,\"out of range\"";
       session.Click("cmdCheckErrors");
     }},
    {"warnings behind an upload",
     [](PanelSession &session) {
       session.driver.arrWarnings = {"too hot"};
       FailingUpload<100000>(session);
     }},
    {"upload, call 4", FailingUpload<4>},
    {"upload, call 20", FailingUpload<20>},
    {"upload, call 45", FailingUpload<45>},
    {"upload, call 70", FailingUpload<70>},
    {"upload, call 90", FailingUpload<90>},
    {"upload, call 110", FailingUpload<110>},
    {"refused commit and what is read back then",
     [](PanelSession &session) {
       session.Get<CheckBox>("chkAutoDownOnError").SetValue(1);
       Mark(session, ePageIsDirty);
       session.driver.FailMatching("IInstrument.Transaction(1)", 1, TheFailure);
       session.Click("cmdUpload");
     }},
    {"download, call 2", FailingDownload<2>},
    {"download, call 20", FailingDownload<20>},
    {"download, call 50", FailingDownload<50>},
    {"download, call 90", FailingDownload<90>},
    {"download, call 110", FailingDownload<110>},
    {"question of Clock / n", [](PanelSession &session) { AskPattern(session, "Clock/n", "4"); }},
    {"number that is none", [](PanelSession &session) { AskPattern(session, "PRBS", "4711"); }},
    {"failed sequence",
     [](PanelSession &session) {
       session.driver.FailAt(1, TheFailure);
       AskPattern(session, "PRBS", "7");
     }},
    {"phase-locked loop in use",
     [](PanelSession &session) {
       session.ShowPage(ePageMode);
       session.Choose("optTriggerMode(1)");
       session.Choose("optPulseMode(1)");
       session.Take("cboArmingSource", 1);
       session.Take("cboPeriodSource", 1);
     }},
    {"phase-locked loop in use, by key",
     [](PanelSession &session) {
       session.ShowPage(ePageMode);
       session.Choose("optTriggerMode(1)");
       session.Choose("optPulseMode(1)");
       session.Take("cboArmingSource", 1);
       QTest::keyClick(session.List("cboPeriodSource").findChild<QComboBox *>(), Qt::Key_Down);
     }},
    {"typing into a locked field",
     [](PanelSession &session) {
       session.ShowPage(ePageLimits);
       auto &field = session.Field("esLimitHighVoltage(0)");
       field.LockControl(True, False);
       auto &text = *field.findChild<QLineEdit *>();
       text.setReadOnly(false);
       QTest::keyClick(&text, Qt::Key_7);
     }},
    {"output sent again by a change of page",
     [](PanelSession &session) {
       session.ShowPage(ePageTiming);
       session.Choose("optChannel1Output(0)");
       session.Get<CheckBox>("chkAutoOutputOnOff").SetValue(1);
       session.driver.FailAt(1, TheFailure);
       session.ClickTab(ePageLevels);
     }},
};

class Boxes : public testing::TestWithParam<std::tuple<Way, Interruption>> {
 protected:
  Boxes() {
    session.driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
  }
  void Interrupt() {
    switch (std::get<Interruption>(GetParam())) {
      case Interruption::Hide: session.panel->hide(); break;
      case Interruption::HideAndShow: session.panel->hide(), session.panel->show(); break;
      case Interruption::Destroy: session.panel.reset(); break;
    }
  }

  PanelSession session{{.fAutoDownload = true, .fAutoOutput = false}};
};

TEST_P(Boxes, WhatFollowsTheBoxEndsQuietlyWhenTheHostHidesShowsOrEndsThePanel) {
  int intBoxes = 0;
  session.host.OnEntry = [&](const HostEntry &entry) {
    if ((entry.kind == HostEntry::Box || entry.kind == HostEntry::Input) && ++intBoxes == 1) Interrupt();
  };
  std::get<Way>(GetParam()).act(session);
  session.host.OnEntry = {};
  EXPECT_EQ(intBoxes, 1);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_FALSE(session.InTransaction());
  EXPECT_FALSE(session.instr->IsOnline(True));

  // The panel, or the next one, works.
  session.driver.ClearFaults();
  session.driver.arrWarnings.clear();
  if (!session.panel) {
    session.panel = std::make_unique<TarvikGUI>();
    session.SitDownAt(*session.panel);
  }
  session.panel->show();
  LetPanelsStart();
  session.ShowPage(ePageInstr);
  session.Forget();
  auto &list = session.Get<ListView>("lvwInstruments");
  ASSERT_EQ(list.Count(), 1);
  session.Open();
  EXPECT_TRUE(list.Item(0)->Checked());
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  session.Click("cmdUpload");
  session.Click("cmdDownload");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_EQ(session.host.intPointer, PointerDefault);
  EXPECT_FALSE(session.State().mfDownloading);
}

INSTANTIATE_TEST_SUITE_P(Host, Boxes, Combine(ValuesIn(Ways), ValuesIn(Interruptions)));

/// A panel with an open session in its host's window, whose options cannot be saved once.
class UnsavedOptions : public testing::TestWithParam<Interruption> {
 protected:
  UnsavedOptions() {
    window->resize(session.panel->size());
    session.panel->setParent(window.get());
    window->show();
    ShowAndStart(*session.panel);
    session.Open();
    session.Forget();
    session.host.arrSaveFailures.push_back({ErrPathFileAccess, "disk full", 1});
    session.host.OnEntry = [this](const HostEntry &entry) {
      if (entry.kind == HostEntry::Box) Interrupt();
    };
  }
  ~UnsavedOptions() override {
    session.host.OnEntry = {};
    if (session.panel) session.panel->setParent(nullptr);
  }
  void Interrupt() {
    switch (GetParam()) {
      case Interruption::Hide: session.panel->hide(); break;
      case Interruption::HideAndShow: session.panel->hide(), window->show(), session.panel->show(); break;
      case Interruption::Destroy: session.panel.reset(); break;
    }
  }
  void ExpectToldOnce() {
    EXPECT_TRUE(session.panel) << "no box while the toolkit is at work";
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box information: Unable to save settings: disk full"));
    LetPanelsStart();
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    EXPECT_EQ(session.panel == nullptr, GetParam() == Interruption::Destroy);
  }

  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  PanelSession session;
};

TEST_P(UnsavedOptions, AreToldBehindTheHidingOfThePanel) {
  session.panel->hide();
  ExpectToldOnce();
}

TEST_P(UnsavedOptions, AreToldBehindTheHidingOfTheWindow) {
  window->hide();
  ExpectToldOnce();
}

TEST_P(UnsavedOptions, AreToldBehindTheClosingOfTheWindow) {
  window->close();
  ExpectToldOnce();
}

TEST_P(UnsavedOptions, AreToldBehindAChangeOfTheWindow) {
  session.panel->setParent(nullptr);
  ExpectToldOnce();
}

INSTANTIATE_TEST_SUITE_P(Host, UnsavedOptions, ValuesIn(Interruptions));

TEST(UnsavedOptionsAtTheEnd, AreToldAlsoWhenTheHostDestroysTheWindowMeanwhile) {
  PanelSession session;
  auto window = std::make_unique<QWidget>();
  session.panel->setParent(window.get());
  window->show();
  ShowAndStart(*session.panel);
  session.Forget();
  session.host.arrSaveFailures.push_back({ErrPathFileAccess, "disk full", 1});
  session.host.OnEntry = [&](const HostEntry &entry) {
    if (entry.kind == HostEntry::Box) window.reset();
  };
  session.panel.reset();
  session.host.OnEntry = {};
  EXPECT_EQ(window, nullptr);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box information: Unable to save settings: disk full"));
}

}  // namespace
}  // namespace tarvik::test
