#include "DaySession.h"
#include "panel/Panel.h"

namespace tarvik::test {

// The day's work itself is proved in a program of its own.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DaySession);

namespace {

std::unique_ptr<RackPlace> BesideThePanel() { return std::make_unique<RackPlace>(); }

class ShownSetup : public DaySession {
 protected:
  TarvikGUI::Panel &Panel() const { return TarvikGUI::Panel::Of(*session.panel); }
  void Open() {
    session.Show();
    session.Open(Instrument().strName);
  }
};
INSTANTIATE_TEST_SUITE_P(OnEachInstrument, ShownSetup,
                         testing::Combine(testing::ValuesIn(Models), testing::Values(&BesideThePanel)),
                         DaySession::NameOf);

TEST_P(ShownSetup, IsShownAgainAsItWas) {
  Open();
  EditEverything(false);
  const tarvik::Setup first = Panel().ShownSetup();
  EditEverything(true);
  const tarvik::Setup second = Panel().ShownSetup();
  ASSERT_NE(first, second);
  for (const tarvik::Setup &setup : {first, second}) {
    Panel().ShowSetup(setup);
    const tarvik::Setup shown = Panel().ShownSetup();
    EXPECT_EQ(shown.Mode, setup.Mode);
    EXPECT_DOUBLE_EQ(shown.Timing.dblFrequency, setup.Timing.dblFrequency);
    tarvik::Setup exact = shown;
    exact.Timing.dblFrequency = setup.Timing.dblFrequency;
    EXPECT_EQ(exact.Timing, setup.Timing);
    EXPECT_EQ(shown.Levels, setup.Levels);
    EXPECT_EQ(shown.Limits, setup.Limits);
    EXPECT_EQ(shown.TrgLevels, setup.TrgLevels);
    EXPECT_EQ(shown.Pattern, setup.Pattern);
    EXPECT_EQ(shown.fRz, setup.fRz);
    EXPECT_EQ(exact, setup);
  }
  ExpectNoBox();
}

TEST_P(ShownSetup, ReachesTheInstrumentByAnUploadOnly) {
  Open();
  const tarvik::Setup before = Panel().ShownSetup();
  EditEverything(false);
  const SettingsByName held = Held();
  Panel().ShowSetup(before);
  EXPECT_EQ(Held().numbers, held.numbers);
  EXPECT_EQ(Held().texts, held.texts);
}

TEST(ShownLevels, AreNotFilledFromAPresetWhenASetupIsShown) {
  SimulatorSession session;
  session.Show();
  session.Open("VP-210");
  auto &panel = TarvikGUI::Panel::Of(*session.panel);
  session->ShowPage(ePageLevels);
  session->Type("esLevelHigh(0)", "3.25");
  session->Type("esLevelLo(0)", "1.25");
  const tarvik::Setup setup = panel.ShownSetup();
  session->Take("cboLevelFormat(0)", 2);
  session->Take("cboLevelUnits(0)", 1);
  panel.ShowSetup(setup);
  EXPECT_EQ(session->Field("esLevelHigh(0)").Value(), 3.25);
  EXPECT_EQ(session->Field("esLevelLo(0)").Value(), 1.25);
  EXPECT_EQ(session->Field("esLevelHigh(0)").Text(), "3.250");
}

TEST(ShownThreshold, KeepsADigitThatThePresetLacks) {
  SimulatorSession session;
  session.Show();
  session.Open("VP-210");
  auto &panel = TarvikGUI::Panel::Of(*session.panel);
  tarvik::Setup setup = panel.ShownSetup();
  setup.TrgLevels.dblExtInThreshold = 2.5000000000000004;
  panel.ShowSetup(setup);
  EXPECT_EQ(panel.ShownSetup().TrgLevels.dblExtInThreshold, 2.5000000000000004);
}

TEST(ShownTiming, IsNotCutByTheRangesOfWhatStoodThereBefore) {
  SimulatorSession session;
  session.Show();
  session.Open("VP-210");
  auto &panel = TarvikGUI::Panel::Of(*session.panel);
  session->ShowPage(ePageTiming);
  session->Choose("optChannel1Output(0)");
  session->Type("esPeriodOrFreq", "1m");
  session->Type("esWidth(0)", "300u");
  const tarvik::Setup setup = panel.ShownSetup();
  session->Type("esWidth(0)", "10n");
  session->Type("esPeriodOrFreq", "100n");
  panel.ShowSetup(setup);
  EXPECT_DOUBLE_EQ(session->Field("esWidth(0)").Value(), 300e-6);
  EXPECT_DOUBLE_EQ(session->Field("esPeriodOrFreq").Value(), 1e-3);
}

}  // namespace
}  // namespace tarvik::test
