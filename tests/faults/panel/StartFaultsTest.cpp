#include <gmock/gmock.h>

#include "PanelSession.h"
#include "PanelStart.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char *OnlineBox = "box information: You need to be online to an instrument to perform this operation";
constexpr const char *Manifest = "KolvenAtl.Kolven.driver";

/// A fresh panel that is shown while a manifest in the user's own folder names this library.
class BrokenDriver : public testing::Test {
 protected:
  ~BrokenDriver() override { PrivateDataFolder::Remove(Manifest); }

  std::vector<std::string> BoxesWithManifest(const std::string &strText) {
    session.NewPanel();
    session.host.TakeLines();
    PrivateDataFolder::Write(Manifest, strText);
    session.Show();
    return session.host.TakeBoxes();
  }
  void ExpectNoConnection() {
    EXPECT_FALSE(session->Get<CommandButton>("cmdRefresh").Enabled());
    EXPECT_EQ(session->Instruments().Count(), 0);
    EXPECT_FALSE(session.Instr().IsConnected());
  }

  SimulatorSession session;
};

TEST_F(BrokenDriver, AManifestThatNamesAMissingLibraryIsTold) {
  EXPECT_THAT(BoxesWithManifest("libnowhere.so\n"),
              ElementsAre(OnlineBox, AllOf(StartsWith("box stop: Cannot create KolvenAtl.Kolven: "),
                                           HasSubstr("libnowhere.so"), HasSubstr("cannot be loaded"))));
  ExpectNoConnection();
}

TEST_F(BrokenDriver, AForeignFileIsTold) {
  PrivateDataFolder::Write("text.so", "this is no library\n");
  EXPECT_THAT(BoxesWithManifest("text.so\n"),
              ElementsAre(OnlineBox, AllOf(HasSubstr("text.so"), HasSubstr("cannot be loaded"))));
  ExpectNoConnection();
}

TEST_F(BrokenDriver, ALibraryWithoutTheExportIsTold) {
  EXPECT_THAT(BoxesWithManifest(LIBRARY_WITHOUT_EXPORT "\n"),
              ElementsAre(OnlineBox, HasSubstr("is no driver: it does not export DllGetClassObject")));
  ExpectNoConnection();
}

TEST_F(BrokenDriver, AnEmptyManifestIsTold) {
  EXPECT_THAT(BoxesWithManifest(""), ElementsAre(OnlineBox, HasSubstr(Manifest)));
  ExpectNoConnection();
}

TEST_F(BrokenDriver, ARepairedManifestWorksAtTheNextShow) {
  BoxesWithManifest("libnowhere.so\n");
  PrivateDataFolder::Remove(Manifest);
  session.Hide();
  session.Show();
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_TRUE(session->Get<CommandButton>("cmdRefresh").Enabled());
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST_F(BrokenDriver, ABrokenRackFileIsToldAtTheRefresh) {
  PrivateDataFolder::Write("KolvenAtl.Kolven.rack", "[A]\nslot = many\n");
  session.host.TakeLines();
  session->Click("cmdRefresh");
  EXPECT_THAT(session.host.TakeBoxes(), Contains(HasSubstr("KolvenAtl.Kolven.rack:2:")));
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(StartFaults, ADriverThatHandsBackNothingLeadsToTheQuestionForTheServer) {
  PanelSession session({.fOpen = false});
  session.panel->hide();
  session.driver.QueueEmptyCreation();
  session.driver.QueueEmptyCreation();
  session.Forget();
  ShowAndStart(*session.panel);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Connection Failed!"));
}

TEST(StartFaults, AStoredSettingThatIsNoNumberEndsTheStartAtItsStep) {
  for (const char *strKey : {"AutoWarnings", "AutoErrors", "AutoDownOnError", "AutoDownload", "AutoOutputOnOff"}) {
    SimulatorSession session({{strKey, "yes"}});
    EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Type mismatch")) << strKey;
    EXPECT_EQ(session->Instruments().Count(), 0);
    EXPECT_FALSE(session->Get<CommandButton>("cmdRefresh").Enabled());
    EXPECT_EQ(session->List("cboPllRefSource").ListCount(), 0) << "the lists are filled behind the options";
  }
}

TEST(StartFaults, AStoredNumberBeyondSixteenBitsIsAnOverflow) {
  SimulatorSession session({{"AutoDownload", "40000"}});
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Overflow"));
}

TEST(StartFaults, AStoredNumberThatIsNoStateOfACheckBoxEndsTheStart) {
  SimulatorSession session({{"AutoDownload", "7"}});
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Invalid property value"));
}

TEST(StartFaults, AStoreThatCannotBeReadEndsTheStartInABox) {
  SimulatorSession session;
  session.Hide();
  session.host.TakeLines();
  session.host.arrGetFailures.push_back({ErrPathFileAccess, "no store", 1});
  session.Show();
  EXPECT_THAT(session.host.TakeLines(),
              ElementsAre("get failed Config/Upload", "box stop: no store",
                          "log: 02/03/01 04:05\r\n  Error: 75 no store\r\n  Mod: TarvikGUI; Proc: Show\r\n\r\n\r\n"));
  session.Hide();
  session.Show();
  EXPECT_EQ(session->Instruments().Count(), 5);
}

TEST(StartFaults, AnIdentityWithTooFewFieldsIsReportedAndTheSessionOpens) {
  SimulatorSession session({{"AutoDownload", "0"}}, "[A]\nslot = 1\nidentity = Velmora,VP\n");
  session.host.TakeLines();
  session.Open("A");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Subscript out of range"));
  EXPECT_THAT(session->Ticked(), ElementsAre("A"));
  EXPECT_EQ(session->Get<DisplayBox>("txtStatus").Text(), "Online with A (VP)");
}

TEST(StartFaults, AnUnwritableLogDuringTheStartOfASessionEndsItUnderTheProceduresName) {
  SimulatorSession session({{"AutoDownload", "0"}}, "[A]\nslot = 1\nidentity = Velmora,VP\n");
  session.host.TakeLines();
  session.host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 2};
  session.Open("A");
  const std::vector<std::string> arrLines = session.host.TakeLines();
  EXPECT_THAT(arrLines, Contains("log failed"));
  EXPECT_THAT(arrLines, Contains("box stop: Permission denied"));
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

TEST(StartFaults, ALogThatCanNeverBeWrittenHangsNothing) {
  SimulatorSession session({}, "[A]\nslot = 1\nidentity = Velmora,VP\n");
  session.host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 0};
  session.Open("A");
  session->Click("cmdDownload");
  session->Click("cmdUpload");
  session.host.logFailure.reset();
  session->Click("cmdRefresh");
  EXPECT_EQ(session->Instruments().Count(), 1);
  EXPECT_EQ(session.host.intPointer, PointerDefault);
}

}  // namespace
}  // namespace tarvik::test
