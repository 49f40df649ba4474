#include <gmock/gmock.h>

#include <QCoreApplication>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "SimulatorSession.h"
#include "panel/Panel.h"
#include "panel/TarvikGUI.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SetupFiles : public testing::Test {
 protected:
  SetupFiles() { std::filesystem::create_directories(folder); }
  ~SetupFiles() override { std::filesystem::remove_all(folder); }

  void Start(const std::string &strInstrument = "VP-210") {
    session.emplace();
    session->Show();
    session->Open(strInstrument);
    session->host.TakeBoxes();
  }
  SimulatorSession &At() { return *session; }
  const PanelUser &User() { return *session->user; }
  TarvikGUI &Panel() { return *session->panel; }
  PageStates States() { return TarvikGUI::Panel::Of(Panel()).state.meTabState; }
  QString File(const char *strName = "demo.json") const { return QString::fromStdString((folder / strName).string()); }
  static std::string Content(const QString &strFile) {
    std::ostringstream text;
    text << std::ifstream(strFile.toStdString()).rdbuf();
    return text.str();
  }

  const std::filesystem::path folder = std::filesystem::temp_directory_path() / ("setups-" + std::to_string(getpid()));
  std::optional<SimulatorSession> session;
};

TEST_F(SetupFiles, ASavedSetupComesBackAndGoesToTheInstrumentByAnUploadOnly) {
  Start();
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "60n");
  ASSERT_TRUE(Panel().SaveSetup(File()));
  EXPECT_EQ(Panel().SetupFile(), File());
  EXPECT_FALSE(Panel().IsSetupModified());
  User().Click("cmdDownload");
  EXPECT_EQ(User().Field("esWidth(0)").Text(), "100.0");
  EXPECT_TRUE(Panel().IsSetupModified());
  ASSERT_TRUE(Panel().OpenSetup(File()));
  EXPECT_FALSE(Panel().IsSetupModified());
  EXPECT_EQ(User().Field("esWidth(0)").Text(), "60.00");
  EXPECT_EQ(States()[ePageTiming], ePageIsDirty);
  EXPECT_EQ(States()[ePageLevels], ePageIsCurrent) << "nothing on it differs from the instrument";
  udtTimingInfo held;
  ASSERT_TRUE(SimulatorSession::Instr().GetTiming(held));
  EXPECT_DOUBLE_EQ(held.dblWidth[1], 100e-9);
  User().Click("cmdUpload");
  ASSERT_TRUE(SimulatorSession::Instr().GetTiming(held));
  EXPECT_DOUBLE_EQ(held.dblWidth[1], 60e-9);
  EXPECT_THAT(At().host.TakeBoxes(), IsEmpty());
}

TEST_F(SetupFiles, AnEntryThatIsBeingTypedIsSavedToo) {
  Start();
  User().ShowPage(ePageTiming);
  Panel().activateWindow();
  User().TypeWithoutEnter("esWidth(0)", "70n");
  ASSERT_TRUE(Panel().SaveSetup(File()));
  EXPECT_THAT(Content(File()), HasSubstr("7e-08"));
  EXPECT_EQ(User().Field("esWidth(0)").Text(), "70.00");
}

TEST_F(SetupFiles, AnOutputThatASetupTurnsOnStaysOffUntilTheUpload) {
  Start();
  User().ShowPage(ePageTiming);
  User().Choose("optChannel1Output(0)");
  ASSERT_TRUE(Panel().SaveSetup(File()));
  User().Choose("optChannel1Output(1)");
  ASSERT_TRUE(Panel().OpenSetup(File()));
  udtTimingInfo held;
  ASSERT_TRUE(SimulatorSession::Instr().GetTiming(held));
  EXPECT_FALSE(held.fChannelOutputOn[1]);
  EXPECT_EQ(States()[ePageTiming], ePageIsDirty);
  EXPECT_EQ(States()[ePageLevels], ePageIsDirty);
  User().Click("cmdUpload");
  ASSERT_TRUE(SimulatorSession::Instr().GetTiming(held));
  EXPECT_TRUE(held.fChannelOutputOn[1]);
}

TEST_F(SetupFiles, OpeningIsOneStepThatCanBeUndone) {
  Start();
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "60n");
  User().Type("esDelay(0)", "20n");
  ASSERT_TRUE(Panel().SaveSetup(File()));
  User().Click("cmdDownload");
  ASSERT_TRUE(Panel().OpenSetup(File()));
  EXPECT_EQ(Panel().undoText(), "Open setup demo.json");
  Panel().undo();
  EXPECT_EQ(User().Field("esWidth(0)").Text(), "100.0");
  EXPECT_EQ(User().Field("esDelay(0)").Text(), "0.000");
}

TEST_F(SetupFiles, ABadFileIsToldInOneBoxAndChangesNothing) {
  Start();
  ASSERT_TRUE(Panel().SaveSetup(File()));
  std::string strText = Content(File());
  strText.replace(strText.find("1e-07"), 5, "\"no\"");
  std::ofstream(File("bad.json").toStdString()) << strText;
  const auto before = TarvikGUI::Panel::Of(Panel()).ShownSetup();
  EXPECT_FALSE(Panel().OpenSetup(File("bad.json")));
  EXPECT_THAT(At().host.TakeBoxes(), ElementsAre(HasSubstr("Cannot load")));
  EXPECT_EQ(TarvikGUI::Panel::Of(Panel()).ShownSetup(), before);
  EXPECT_EQ(Panel().SetupFile(), File());
  EXPECT_FALSE(Panel().OpenSetup(File("missing.json")));
  EXPECT_THAT(At().host.TakeBoxes(), ElementsAre(HasSubstr("Cannot load")));
}

TEST_F(SetupFiles, AFileThatCannotBeWrittenIsToldInOneBox) {
  Start();
  EXPECT_FALSE(Panel().SaveSetup(File("no/such/folder.json")));
  EXPECT_THAT(At().host.TakeBoxes(), ElementsAre(HasSubstr("Cannot save")));
  EXPECT_EQ(Panel().SetupFile(), "");
}

TEST_F(SetupFiles, ASetupOfAnotherModelSaysWhatItLeftOut) {
  Start("VP-210");
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "60n");
  User().Type("esWidth(1)", "80n");
  ASSERT_TRUE(Panel().SaveSetup(File()));
  session.reset();
  Start("VP-110");
  ASSERT_TRUE(Panel().OpenSetup(File()));
  EXPECT_THAT(At().host.TakeBoxes(),
              ElementsAre(testing::AllOf(HasSubstr("Not all of demo.json"), HasSubstr("timing.width[2]: "))));
  EXPECT_EQ(User().Field("esWidth(0)").Text(), "60.00");
}

TEST_F(SetupFiles, TheModifiedMarkIsToldWhenItComesAndWhenItGoes) {
  Start();
  int intTold = 0;
  QObject::connect(&Panel(), &TarvikGUI::setupFileChanged, &Panel(), [&] { ++intTold; });
  ASSERT_TRUE(Panel().SaveSetup(File()));
  EXPECT_EQ(intTold, 1);
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "60n");
  User().Type("esWidth(0)", "61n");
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(intTold, 2);
  EXPECT_TRUE(Panel().IsSetupModified());
  User().Type("esWidth(0)", "100n");
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(intTold, 3);
  EXPECT_FALSE(Panel().IsSetupModified());
}

}  // namespace
}  // namespace tarvik::test
