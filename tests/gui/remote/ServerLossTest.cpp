#include <gmock/gmock.h>

#include <chrono>

#include "DriverSettings.h"
#include "PanelSession.h"
#include "ServedRack.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// A report asks the instrument how long its texts are to be, and none is open.
constexpr const char *OfflineBox = "box information: You need to be online to an instrument to perform this operation";

/// What a call may take at most, and what a busy machine adds to it.
constexpr double StatedSeconds = 10.0, Margin = 5.0;

double SecondsOf(const std::function<void()> &work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A panel and the server that it is told of.
class ServedPanel : public testing::Test {
 protected:
  const PanelUser &User() const { return *session.user; }
  std::string Status() const { return User().Get<DisplayBox>("txtStatus").Text(); }

  void ExpectPanelUsable() {
    for (Long lngPage = ePageOptions; lngPage >= ePageInstr; --lngPage)
      User().ShowPage(static_cast<TabNumEnum>(lngPage));
    User().ShowPage(ePageOptions);
    auto &box = User().Get<CheckBox>("chkAutoDownOnError");
    const Integer intBefore = box.Value();
    User().Choose("chkAutoDownOnError");
    EXPECT_EQ(box.Value(), 1 - intBefore);
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  }
  /// Hides the panel and shows it again, which connects anew.
  void ConnectAgain() {
    session.Hide();
    session.Show();
  }
  /// The instrument opens, takes an upload and holds it.
  void ExpectSessionWorks() {
    session.Open("VP-210");
    EXPECT_THAT(User().Ticked(), ElementsAre("VP-210"));
    User().ShowPage(ePageTiming);
    User().Type("esWidth(0)", "400ns");
    User().Click("cmdUpload");
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
    EXPECT_DOUBLE_EQ(ReadDriver(session.Instrument("VP-210")).numbers["width 1"], 4e-7);
  }

  ServedRack rack;
  SimulatorSession session{{{"WorkWithBoxes", "1"}}, TestRack, rack.Url()};
};

/// The same with an instrument open and changes on one page.
class ServerLoss : public ServedPanel {
 protected:
  ServerLoss() {
    session.Open("VP-210");
    User().ShowPage(ePageTiming);
    User().Type("esWidth(0)", "250ns");
    EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  }
  TabStates TimingState() { return TarvikGUI::Panel::Of(*session.panel).state.meTabState[ePageTiming]; }
  /// Uploads and answers the seconds that it took; every box of it says this of the server.
  double UploadInVain(const char *strWhy) {
    const double dblSeconds = SecondsOf([&] { User().Click("cmdUpload"); });
    EXPECT_THAT(session.host.TakeBoxes(),
                AllOf(Not(IsEmpty()), Each(StartsWith("box stop: The driver server " + rack.Url() + " " + strWhy))));
    EXPECT_EQ(TimingState(), ePageIsDirty);
    EXPECT_EQ(session.host.intPointer, PointerDefault);
    return dblSeconds;
  }
};

TEST_F(ServerLoss, KilledServerIsToldAtOnceAndANewConnectWorksWhenItIsBack) {
  rack.Server().End(SIGKILL);
  EXPECT_LT(UploadInVain("has gone"), Margin);
  ExpectPanelUsable();
  session.Open("VP-210");  // the tick goes
  EXPECT_EQ(Status(), "Offline");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());

  rack.Restart();
  ConnectAgain();
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_EQ(User().Instruments().Count(), 6);
  ExpectSessionWorks();
}

TEST_F(ServerLoss, ServerThatStopsAnsweringIsToldWithinTheStatedTime) {
  rack.Server().Signal(SIGSTOP);
  const double dblSeconds = UploadInVain("gave no sign of life for 10 seconds");
  EXPECT_GE(dblSeconds, StatedSeconds - 0.5);
  EXPECT_LT(dblSeconds, StatedSeconds + Margin);
  ExpectPanelUsable();

  // It does not answer a new connection either.
  EXPECT_LT(SecondsOf([&] { ConnectAgain(); }), StatedSeconds + Margin);
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre(OfflineBox, StartsWith("box stop: The driver server " + rack.Url() + " does not answer")));
  ExpectPanelUsable();

  rack.Server().Signal(SIGCONT);
  ConnectAgain();
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  ExpectSessionWorks();
}

TEST_F(ServedPanel, WithoutADriverOfItsOwnThePanelAsksForTheServer) {
  EXPECT_THAT(session.host.TakeLines(), AllOf(Contains("input: Please enter the complete URL of the network server.\r\n"
                                                       "Leave this blank if the server is local [Unknown] -> " +
                                                       rack.Url()),
                                              Contains("save LastUsed/ServerURL=" + rack.Url())));
  ExpectSessionWorks();
}

TEST_F(ServedPanel, BadAddressIsToldAndAskedForAgain) {
  session.host.settings.erase({"LastUsed", "ServerURL"});
  for (const auto &[strAddress, strWhy] :
       {std::pair{"rack1", "it does not begin with tarvik://"}, std::pair{"tarvik://rack1:0", "the port is a number"},
        std::pair{"tarvik+insecure://rack1", "without transport security only this machine itself can be reached"}}) {
    SCOPED_TRACE(strAddress);
    session.host.arrInputAnswers = {strAddress};
    ConnectAgain();
    const auto arrBoxes = session.host.TakeBoxes();
    EXPECT_THAT(arrBoxes,
                ElementsAre(OfflineBox, AllOf(StartsWith("box stop: \"" + std::string(strAddress) + "\" is no address"),
                                              HasSubstr(strWhy), HasSubstr("looks like tarvik://host:port"))));
    ExpectPanelUsable();
  }
  session.host.arrInputAnswers = {rack.Url()};
  ConnectAgain();
  ExpectSessionWorks();
}

TEST_F(ServedPanel, ServerThatIsNotThereIsToldAtOnce) {
  rack.Server().End(SIGKILL);
  EXPECT_LT(SecondsOf([&] { ConnectAgain(); }), Margin);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre(OfflineBox, HasSubstr(rack.Url() + " cannot be reached")));
  ExpectPanelUsable();
  rack.Restart();
  ConnectAgain();
  ExpectSessionWorks();
}

}  // namespace
}  // namespace tarvik::test
