#include <QMenu>

#include "DriverMenu.h"
#include "ProgramFixture.h"
#include "SimulatorSession.h"
#include "automation/Activation.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;

/// Beside the stand-in, which is the driver without a name, there are a real one under the name bench and one whose
/// library is missing.
class Drivers : public Program {
 protected:
  Drivers() {
    const std::filesystem::path folder = PrivateDataFolder::DriverFolder() / "KolvenAtl.Kolven";
    std::filesystem::create_directories(folder);
    PrivateDataFolder::Write("KolvenAtl.Kolven/bench.driver", SIMULATOR_LIBRARY);
    PrivateDataFolder::Write("KolvenAtl.Kolven/broken.driver", "missing.so");
    PrivateDataFolder::Write("KolvenAtl.Kolven.rack", TestRack);
  }
  ~Drivers() override {
    automation::ChooseDriver(kolven::DriverProgId, {});
    std::filesystem::remove_all(PrivateDataFolder::DriverFolder() / "KolvenAtl.Kolven");
    PrivateDataFolder::Remove("KolvenAtl.Kolven.rack");
  }

  QMenu &Menu() const { return Get<QMenu>("menuDriver"); }
  /// The user opens the menu and takes the entry.
  void Choose(const char *strEntry) const {
    Menu().popup(QPoint());
    QAction *chosen = nullptr;
    for (QAction *entry : Menu().actions())
      if (entry->text() == QLatin1String(strEntry)) chosen = entry;
    ASSERT_TRUE(chosen) << strEntry;
    Menu().setActiveAction(chosen);
    QTest::keyClick(&Menu(), Qt::Key_Return);
    LetPanelsStart();
  }
  /// Without the driver that not every build has.
  std::vector<std::string> Entries() const {
    Menu().popup(QPoint());
    std::vector<std::string> arrEntries;
    for (const QAction *entry : Menu().actions())
      if (entry->text() != QLatin1String("scpi"))
        arrEntries.push_back((entry->isChecked() ? "* " : "  ") + entry->text().toStdString());
    Menu().hide();
    return arrEntries;
  }
  std::string FirstInstrument() const { return User().Instruments().Item(0)->Text(); }
};

TEST_F(Drivers, WithoutAChoiceTheDriverWithoutANameIsUsed) {
  Start();
  EXPECT_THAT(Entries(), ElementsAre("* &As installed", "  bench", "  broken", "  simulator"));
  EXPECT_EQ(FirstInstrument(), "Alpha");
  EXPECT_EQ(Title(), "TarvikVI - this machine");
}

TEST_F(Drivers, AChoiceIsConnectedToAtOnceAndAtEachStart) {
  Start();
  Choose("bench");
  for (int i = 0; i < 2; ++i) {
    EXPECT_NE(FirstInstrument(), "Alpha");
    EXPECT_EQ(Title(), "TarvikVI - this machine, driver bench");
    EXPECT_THAT(Entries(), ElementsAre("  &As installed", "* bench", "  broken", "  simulator"));
    Start();
  }
  Choose("&As installed");
  EXPECT_EQ(FirstInstrument(), "Alpha");
  Start();
  EXPECT_EQ(FirstInstrument(), "Alpha");
}

TEST_F(Drivers, OneForThisRunIsNotKept) {
  Start({}, "bench");
  EXPECT_NE(FirstInstrument(), "Alpha");
  Start();
  EXPECT_EQ(FirstInstrument(), "Alpha");
}

TEST_F(Drivers, ADriverThatDoesNotLoadIsToldAndAnotherCanBeChosen) {
  Start();
  Choose("broken");
  EXPECT_THAT(host.TakeBoxes(), Contains(HasSubstr("missing.so")));
  EXPECT_EQ(Title(), "TarvikVI - this machine, driver broken (not connected)");
  Choose("bench");
  EXPECT_EQ(Title(), "TarvikVI - this machine, driver bench");
}

TEST_F(Drivers, AChoiceThatIsNoLongerInstalledStaysInTheMenu) {
  host.settings[{"Driver", "Name"}] = "gone";
  Start();
  EXPECT_THAT(host.TakeBoxes(), Contains(ContainsRegex("drivers to choose from: bench, broken, (scpi, )?simulator$")));
  EXPECT_THAT(Entries(),
              ElementsAre("  &As installed", "  bench", "  broken", "  simulator", "* gone (not installed)"));
}

TEST_F(Drivers, TheEndOfAnOpenSessionIsAskedForAndNoLeavesEverything) {
  Start();
  User().OpenFirst();
  host.TakeBoxes();
  host.arrBoxAnswers = {BoxAnswer::No};
  Choose("bench");
  EXPECT_TRUE(InstrInterface()->IsOnline(True));
  EXPECT_EQ(Title(), "TarvikVI - this machine");
  EXPECT_THAT(Entries(), Contains("* &As installed"));
}

}  // namespace
}  // namespace tarvik::test
