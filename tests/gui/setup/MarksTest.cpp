#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QTabBar>
#include <set>

#include "Contrast.h"
#include "SimulatorSession.h"
#include "panel/MarkLayer.h"
#include "panel/Panel.h"
#include "panel/SettingControls.h"
#include "panel/SettingMarks.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// A panel with an open instrument, and what can be seen of its marks.
class MarkedPanel : public SimulatorSession {
 public:
  explicit MarkedPanel(const std::string &strInstrument = "VP-210", Settings settings = {})
      : SimulatorSession(settings) {
    Show();
    Open(strInstrument);
    QCoreApplication::sendPostedEvents();
  }

  TarvikGUI::Panel &Panel() const { return TarvikGUI::Panel::Of(*panel); }

  /// The sentence at a control; empty where it has none.
  std::string NoteAt(const std::string &strName) const {
    QCoreApplication::sendPostedEvents();
    const QString strToolTip = user->Get<QWidget>(strName).toolTip();
    const auto place = strToolTip.indexOf(QStringLiteral("Instrument: "));
    return place < 0 ? "" : strToolTip.mid(place).toStdString();
  }
  /// The controls that have one, of all that show a setting.
  std::set<std::string> Noted() const {
    std::set<std::string> arrNames;
    const tarvik::Setup shown = Panel().ShownSetup();
    for (const Setting &setting : tarvik::Settings())
      for (const Long lngChannel : setting.Channels())
        for (const SettingControl &control : ControlsOf(setting, lngChannel, shown))
          if (!NoteAt(control.strName).empty()) arrNames.insert(control.strName);
    return arrNames;
  }
  std::string SpokenTab(TabNumEnum ePage) const {
    QCoreApplication::sendPostedEvents();
    return user->Get<QTabWidget>("tabMain").tabBar()->accessibleTabName(ePage).toStdString();
  }
};

TEST(Marks, NothingIsMarkedAfterADownload) {
  for (const char *strInstrument : {"VP-210", "VB-200", "VP-110", "VP-250F"}) {
    const MarkedPanel session(strInstrument, {{"WorkWithBoxes", "1"}});
    EXPECT_THAT(session.Noted(), IsEmpty()) << strInstrument;
  }
}

TEST(Marks, ATypedValueIsMarkedWhenTheEntryIsTaken) {
  const MarkedPanel session;
  session->ShowPage(ePageLevels);
  const std::string strBefore = session->Get<QWidget>("esLevelHigh(0)").toolTip().toStdString();
  session->TypeWithoutEnter("esLevelHigh(0)", "3.3");
  EXPECT_EQ(session.NoteAt("esLevelHigh(0)"), "");
  session->PressIn("esLevelHigh(0)", Qt::Key_Return);
  EXPECT_EQ(session.NoteAt("esLevelHigh(0)"), "Instrument: 2.500 V");
  EXPECT_EQ(session->Get<QWidget>("esLevelHigh(0)").toolTip().toStdString(), strBefore + "\nInstrument: 2.500 V");
  EXPECT_THAT(session.Noted(), ElementsAre("esLevelHigh(0)"));
  session->Type("esLevelHigh(0)", "2.5");
  EXPECT_THAT(session.Noted(), IsEmpty());
  EXPECT_EQ(session->Get<QWidget>("esLevelHigh(0)").toolTip().toStdString(), strBefore);
}

TEST(Marks, ChoicesAreToldInTheWordsOfTheirControls) {
  const MarkedPanel session;
  session->ShowPage(ePageMode);
  session->Choose("optTriggerMode(1)");
  EXPECT_EQ(session.NoteAt("grpTriggerMode"), "Instrument: Continuous");
  EXPECT_EQ(session.NoteAt("optTriggerMode(1)"), "Instrument: Continuous");
  session->ShowPage(ePageTrigLev);
  session->Choose("optTrigLevelExtInImp(1)");
  EXPECT_EQ(session.NoteAt("grpTrigLevelExtInImp"), "Instrument: 10 kOhm");
  session->ShowPage(ePageConfig);
  session->Take("cboPllRefSource", 1);
  EXPECT_EQ(session.NoteAt("cboPllRefSource"), "Instrument: Internal");
}

TEST(Marks, APeriodIsToldAsAPeriod) {
  const MarkedPanel session;
  session->ShowPage(ePageTiming);
  const std::string strBefore = session.NoteAt("esPeriodOrFreq");
  EXPECT_EQ(strBefore, "");
  session->Type("esPeriodOrFreq", "2u");
  EXPECT_EQ(session.NoteAt("esPeriodOrFreq"), "Instrument: 1.000 us");
  session->Click("cmdPeriodOrFreq");
  session->Type("esPeriodOrFreq", "2M");
  EXPECT_EQ(session.NoteAt("esPeriodOrFreq"), "Instrument: 1.000 MHz");
}

TEST(Marks, APresetThatOverwritesWhatWasReadIsMarked) {
  const MarkedPanel session;
  session->ShowPage(ePageLevels);
  session->Take("cboLevelFormat(0)", 3);
  EXPECT_EQ(session.NoteAt("esLevelHigh(0)"), "Instrument: 2.500 V");
  EXPECT_THAT(session.Noted(), UnorderedElementsAre("esLevelHigh(0)", "esLevelLo(0)"));
}

TEST(Marks, AnUploadOrADownloadThatAgreesClearsThem) {
  const MarkedPanel session;
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "60n");
  EXPECT_EQ(session.SpokenTab(ePageTiming), "Timing, changed, not uploaded");
  session->Click("cmdUpload");
  EXPECT_THAT(session.Noted(), IsEmpty());
  EXPECT_EQ(session.SpokenTab(ePageTiming), "Timing");
  session->Type("esWidth(0)", "70n");
  EXPECT_EQ(session.NoteAt("esWidth(0)"), "Instrument: 60.00 ns");
  session->Click("cmdDownload");
  EXPECT_THAT(session.Noted(), IsEmpty());
}

TEST(Marks, AfterARefusedCommitThePagesTellTheTruth) {
  const MarkedPanel session;
  session->ShowPage(ePageLevels);
  // Above the high level.
  session->Type("esLevelLo(0)", "5");
  session->Click("cmdUpload");
  ASSERT_EQ(session.Panel().state.meTabState[ePageLevels], ePageIsCurrent);
  EXPECT_EQ(session.NoteAt("esLevelLo(0)"), "Instrument: 0.000 V");
  EXPECT_EQ(session.SpokenTab(ePageLevels), "Levels, differs from the instrument");
  EXPECT_EQ(session->Get<QTabWidget>("tabMain").tabToolTip(ePageLevels), "Differs from the instrument");
}

TEST(Marks, GoWithAStepThatIsUndoneThoughItMarksNoPage) {
  const MarkedPanel session;
  session->ShowPage(ePageTiming);
  session->TakeMenu("toolPopupTEdge(0)", "TeAbs");
  EXPECT_THAT(session.Noted(), ElementsAre("toolPopupTEdge(0)"));
  session.panel->undo();
  EXPECT_THAT(session.Noted(), IsEmpty());
  session.panel->redo();
  EXPECT_THAT(session.Noted(), ElementsAre("toolPopupTEdge(0)"));
}

TEST(Marks, ABitThatIsTypedAtTheLastAddressIsMarked) {
  const MarkedPanel session;
  session->ShowPage(ePagePattern);
  session->Type("esLast", "8");
  session->Type("esAddress", "8");
  auto &picture = session->Get<QWidget>("picWave");
  for (int y = 0; y < picture.height(); y += 4) QTest::mouseClick(&picture, Qt::LeftButton, {}, QPoint(100, y));
  session->Click("cmdUpload");
  ASSERT_THAT(session.Noted(), IsEmpty());
  QTest::keyClick(&picture, Qt::Key_Plus);
  EXPECT_THAT(session.Noted(), ElementsAre("BitPattern1"));
}

TEST(Marks, GoWhenTheTimingPageHasSentThePulsesOfTheModePage) {
  const MarkedPanel session;
  session->ShowPage(ePageOptions);
  session->Choose("optUpload(1)");
  session->ShowPage(ePageMode);
  session->Take("cboPulseType2", 1);
  EXPECT_THAT(session.Noted(), Contains("cboPulseType2"));
  session->ShowPage(ePageTiming);
  session->Type("esWidth(1)", "60n");
  session->Click("cmdUpload");
  EXPECT_THAT(session.Noted(), Not(Contains("cboPulseType2")));
}

TEST(Marks, AnotherSessionBeginsWithoutThem) {
  MarkedPanel session;
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "60n");
  ASSERT_NE(session.NoteAt("esWidth(0)"), "");
  session->ShowPage(ePageInstr);
  session->Tick(session->RowOf("VP-210"));
  EXPECT_THAT(session.Noted(), IsEmpty());
}

TEST(Marks, AHostCanSwitchThemOff) {
  const MarkedPanel session;
  EXPECT_TRUE(session.panel->Marks());
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "60n");
  session.panel->SetMarks(False);
  EXPECT_FALSE(session.panel->Marks());
  EXPECT_THAT(session.Noted(), IsEmpty());
  session->Type("esWidth(1)", "60n");
  EXPECT_THAT(session.Noted(), IsEmpty());
  session.panel->SetMarks(True);
  EXPECT_THAT(session.Noted(), UnorderedElementsAre("esWidth(0)", "esWidth(1)"));
}

TEST(Marks, TakeNoMouseNoFocusAndNoRoom) {
  const MarkedPanel session;
  session->ShowPage(ePageTiming);
  const QSize hint = session.panel->sizeHint();
  const QRect place = session->Get<QWidget>("esWidth(0)").geometry();
  session->Type("esWidth(0)", "60n");
  ASSERT_NE(session.NoteAt("esWidth(0)"), "");
  EXPECT_EQ(session.panel->sizeHint(), hint);
  EXPECT_EQ(session->Get<QWidget>("esWidth(0)").geometry(), place);
  const auto &text = *session->Field("esWidth(0)").findChild<QLineEdit *>();
  const QPoint corner = text.mapTo(session.panel.get(), QPoint(2, 2));
  EXPECT_EQ(session.panel->childAt(corner), &text);
}

TEST(Marks, StandOutAgainstLightAndDarkBackgrounds) {
  for (int grey = 0; grey <= 0xFF; ++grey) {
    const QColor back(grey, grey, grey);
    EXPECT_GE(Contrast(MarkColour(back), back), 3.0) << grey;
  }
}

TEST(Marks, AnOutputThatIsSwitchedAtOnceIsKnownToBeOn) {
  const MarkedPanel session;
  session->ShowPage(ePageTiming);
  session->Choose("optChannel1Output(0)");
  EXPECT_THAT(session.Noted(), IsEmpty());
  ASSERT_TRUE(session.panel->AllOutputsOff());
  EXPECT_THAT(session.Noted(), IsEmpty());
}

TEST(Marks, AnOutputSwitchedOnOverMarkedValuesTellsWhatItRunsWith) {
  const MarkedPanel session;
  std::vector<std::string> arrLines;
  QObject::connect(session.panel.get(), &TarvikGUI::outputRunsWithOthers, session.panel.get(),
                   [&](const QString &text) { arrLines.push_back(text.toStdString()); });
  session->ShowPage(ePageTiming);
  session->Choose("optChannel1Output(0)");
  EXPECT_THAT(arrLines, IsEmpty()) << "nothing is marked";
  session->Type("esWidth(0)", "60n");
  session->Choose("optChannel2Output(0)");
  EXPECT_THAT(arrLines, IsEmpty()) << "what is marked belongs to the other channel";
  session->Choose("optChannel1Output(1)");
  EXPECT_THAT(arrLines, IsEmpty()) << "switched off";
  session->Choose("optChannel1Output(0)");
  EXPECT_THAT(arrLines, ElementsAre(AllOf(StartsWith("Output 1 runs with "), HasSubstr("Width 100.0 ns"),
                                          EndsWith(" and not with the marked Width 60.00 ns"))));
  session.panel->SetMarks(False);
  session->Choose("optChannel1InvOutput(0)");
  ASSERT_EQ(arrLines.size(), 2u) << "told without marks, too";
  EXPECT_THAT(arrLines.back(), StartsWith("Inverse output 1 runs with "));
}

}  // namespace
}  // namespace tarvik::test
