#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QTabBar>
#include <cmath>
#include <random>
#include <set>

#include "Contrast.h"
#include "SimulatorSession.h"
#include "panel/MarkLayer.h"
#include "panel/Panel.h"
#include "panel/SettingControls.h"
#include "panel/SettingMarks.h"
#include "settings/SetupTransfer.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
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

// ---- Any session of a user ----

/// The instrument through an interface of its own, as somebody else would read it.
class SecondReader {
 public:
  explicit SecondReader(const std::string &strInstrument) {
    m_instr.Connect();
    m_instr.OpenInstrument(strInstrument);
  }
  tarvik::Setup Read() {
    tarvik::Setup setup;
    EXPECT_TRUE(ReadSetup(m_instr, setup));
    return setup;
  }

 private:
  clsInstrInterface m_instr;
};

class RandomUser {
 public:
  RandomUser(const MarkedPanel &session, unsigned seed) : m_session(session), m_random(seed) {}

  void DoSomething() {
    switch (Below(12)) {
      case 0: return m_session->Click("cmdUpload");
      case 1: return m_session->Click("cmdDownload");
      case 2: return m_session->ShowPage(static_cast<TabNumEnum>(1 + Below(7)));
      default: return ChangeSomething();
    }
  }

 private:
  std::size_t Below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random); }

  void ChangeSomething() {
    QTabWidget &tabs = m_session->Get<QTabWidget>("tabMain");
    std::vector<QWidget *> arrControls;
    for (auto *widget : tabs.currentWidget()->findChildren<QWidget *>())
      if (widget->isVisible() && widget->isEnabled() && IsWorked(*widget)) arrControls.push_back(widget);
    if (!arrControls.empty()) Work(*arrControls[Below(arrControls.size())]);
  }
  static bool IsWorked(const QWidget &widget) {
    if (const auto *field = dynamic_cast<const EngrSpin *>(&widget)) return !field->Locked();
    if (const auto *list = dynamic_cast<const CboEnhanced *>(&widget)) return list->Enabled() && list->ListCount() > 0;
    const QString strName = widget.objectName();
    return strName.startsWith("opt") || strName == "picWave" || strName == "cmdPeriodOrFreq" ||
           strName.startsWith("toolPopupTEdge");
  }
  void Work(QWidget &control) {
    const std::string strName = control.objectName().toStdString();
    m_strDid += strName + " ";
    if (auto *field = dynamic_cast<EngrSpin *>(&control))
      m_session->Type(strName, NumberFor(*field));
    else if (auto *list = dynamic_cast<CboEnhanced *>(&control))
      m_session->Take(strName, static_cast<int>(Below(static_cast<std::size_t>(list->ListCount()))));
    else if (strName == "picWave")
      QTest::keyClick(&control, static_cast<char>('0' + Below(2)));
    else if (strName.starts_with("toolPopupTEdge"))
      m_session->TakeMenu(strName, Below(2) == 0 ? "TeEqLe" : "TeAbs");
    else if (strName == "cmdPeriodOrFreq")
      m_session->Click(strName);
    else
      m_session->Choose(strName);
  }
  std::string NumberFor(const EngrSpin &field) {
    const Double dblPart = std::uniform_real_distribution<Double>(0, 1)(m_random);
    Double dblValue = field.Min() + (field.Max() - field.Min()) * dblPart;
    if (field.Min() >= 0 && field.Max() > 0) {
      const Double dblLow = std::log10(std::max(field.Min(), 1e-9)), dblHigh = std::log10(std::min(field.Max(), 1e9));
      dblValue = std::pow(10, dblLow + (dblHigh - dblLow) * dblPart);
    }
    return QString::number(dblValue, 'e', 4).toStdString();
  }

  const MarkedPanel &m_session;
  std::mt19937 m_random;

 public:
  std::string m_strDid;
};

/// The controls of all settings in which the panel and the instrument differ, as the second reader sees it.
std::set<std::string> Differing(const tarvik::Setup &shown, const tarvik::Setup &held, const KnownSetup &known) {
  std::set<std::string> arrNames;
  for (const SetupDifference &difference : Differences(shown, held)) {
    const Setting &setting = *difference.setting;
    if (!setting.IsInUse(shown, difference.lngChannel)) continue;
    // After the mode went to the other pulse type alone, nobody has told the delay of that one.
    if (setting.strKey == "timing.delay" && !known.Knows(setting, difference.lngChannel)) continue;
    // The driver tells a slope or the PLL, as its arming source is.
    if (setting.strKey == "mode.armingLevel" && held.Mode.ArmingSource == eArmPll) continue;
    if (setting.strKey.starts_with("mode.pll") && held.Mode.ArmingSource != eArmPll) continue;
    for (const SettingControl &control : ControlsOf(setting, difference.lngChannel, shown))
      arrNames.insert(control.strName);
  }
  return arrNames;
}

int ActionCount() {
  bool fIsNumber = false;
  const int intCount = qEnvironmentVariableIntValue("TARVIK_MARK_ACTIONS", &fIsNumber);
  return fIsNumber ? intCount : 300;
}

TEST(Marks, StandWherePanelAndInstrumentDifferAfterAnyAction) {
  for (const char *strInstrument : {"VP-210", "VP-110"}) {
    const MarkedPanel session(strInstrument);
    SecondReader reader(strInstrument);
    RandomUser user(session, 16);
    for (int i = 0; i < ActionCount() / 2; ++i) {
      user.m_strDid.clear();
      user.DoSomething();
      QCoreApplication::sendPostedEvents();
      ASSERT_EQ(session.Noted(), Differing(session.Panel().ShownSetup(), reader.Read(), session.Panel().Known()))
          << strInstrument << ", action " << i << " " << user.m_strDid;
    }
  }
}

}  // namespace
}  // namespace tarvik::test
