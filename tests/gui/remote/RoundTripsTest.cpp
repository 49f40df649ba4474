#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>

#include "LoopbackServer.h"
#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "panel/Panel.h"
#include "remote/ReadTrail.h"
#include "remote/UsualReads.h"
#include "settings/SetupTransfer.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

/// What a piece of work asked of the driver, and what that cost on the wire.
struct Cost {
  int intAnswered = 0;  ///< operations that return a value or can fail
  int intFetched = 0;   ///< objects handed out
  int intLookedUp = 0;  ///< of these: by a key, which may find nothing
  int intRoundTrips = 0;
};

void Prepare(StandInDriver &driver) {
  driver.lngFirstByte = 1;  // as the instruments count the bytes of a pattern
  driver.Add("Alpha");
  driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
}

/// The real panel over a driver that writes down each call, with a server between them.
class RoundTrips : public testing::Test {
 protected:
  RoundTrips() {
    Prepare(driver);
    session.emplace(SimulatorSession::Settings{{"WorkWithBoxes", "1"}, {"AutoDownload", "0"}}, "", server.Url());
    session->NewPanel();
    session->Show();
  }
  ~RoundTrips() override { session.reset(); }

  Cost Of(const std::function<void()> &work) {
    remote::SynchroniseConnections();
    driver.TakeTrace();
    const auto lngBefore = remote::RoundTripsSoFar();
    work();
    Cost cost;
    cost.intRoundTrips = static_cast<int>(remote::RoundTripsSoFar() - lngBefore);
    remote::SynchroniseConnections();
    arrLastCalls = driver.TakeTrace();
    for (const std::string &strLine : arrLastCalls) {
      const bool fObject = strLine.find(" -> I") != std::string::npos;
      ++(fObject ? cost.intFetched : cost.intAnswered);
      if (strLine.starts_with("IInstrumentList.GetItem(")) ++cost.intLookedUp;
    }
    EXPECT_THAT(session->host.TakeBoxes(), IsEmpty());
    return cost;
  }
  const PanelUser &User() const { return *session->user; }
  void Open() { session->Open("Alpha"); }
  void Upload() { User().Click("cmdUpload"); }
  void Download() { User().Click("cmdDownload"); }

  std::vector<std::string> arrLastCalls;  ///< what the driver was asked in the last piece of work
  StandInDriver driver;
  remote::LoopbackServer server{[this](const std::string &strProgId) { return driver.Create(strProgId, {}); }};
  RegisteredDriver connection{
      [](const std::string &strUrl) { return remote::ConnectDriver(kolven::DriverProgId, strUrl); },
      RegisteredDriver::OnServers};
  std::optional<SimulatorSession> session;
};

TEST_F(RoundTrips, UploadOfAllPagesCostsOneForEachOperationThatReturnsOrCanFail) {
  Open();
  Download();
  session->panel->SetTabState(ePageIsDirty, eAllPages);
  const Cost cost = Of([&] { Upload(); });
  EXPECT_EQ(cost.intAnswered, 66);
  EXPECT_EQ(cost.intFetched, 65);
  EXPECT_EQ(cost.intLookedUp, 0);
  EXPECT_EQ(cost.intRoundTrips, cost.intAnswered);
}

/// What the driver is asked by a download when no server stands between.
std::vector<std::string> CallsOfALocalDownload() {
  StandInDriver driver;
  Prepare(driver);
  const RegisteredDriver here{[&](const std::string &) { return driver.Create(kolven::DriverProgId, {}); },
                              RegisteredDriver::Here};
  SimulatorSession session{SimulatorSession::Settings{{"WorkWithBoxes", "1"}, {"AutoDownload", "0"}}, ""};
  session.NewPanel();
  session.Show();
  session.Open("Alpha");
  driver.TakeTrace();
  session.user->Click("cmdDownload");
  return driver.TakeTrace();
}

TEST_F(RoundTrips, DownloadsOfAllPagesCostAFewWithTheSameCallsInTheSameOrder) {
  Open();
  const Cost first = Of([&] { Download(); });
  const auto arrFirst = arrLastCalls;
  const Cost second = Of([&] { Download(); });
  const auto arrSecond = arrLastCalls;
  session.reset();
  const auto arrLocal = CallsOfALocalDownload();
  EXPECT_EQ(arrFirst, arrLocal);
  EXPECT_EQ(arrSecond, arrLocal);
  EXPECT_EQ(first.intAnswered, 71);
  EXPECT_LE(first.intRoundTrips, 10);
  EXPECT_LE(second.intRoundTrips, 10);
  std::printf("a download of all pages: %d round trips, %d when it is known\n", first.intRoundTrips,
              second.intRoundTrips);
}

TEST_F(RoundTrips, SetupOfAnInstrumentIsReadInOne) {
  Open();
  tarvik::Setup setup;
  const Cost cost = Of([&] { EXPECT_TRUE(ReadSetup(TarvikGUI::Panel::Of(*session->panel).ZorvaneInstr(), setup)); });
  EXPECT_LE(cost.intRoundTrips, 10);
}

/// The tables of usual orders are what the procedures do. What is printed here is what belongs into the files.
TEST_F(RoundTrips, UsualOrdersAreWhatIsRead) {
  Open();
  Download();
  tarvik::Setup setup;
  ReadSetup(TarvikGUI::Panel::Of(*session->panel).ZorvaneInstr(), setup);
  remote::SynchroniseConnections();
  for (const char *strName : {"panel download", "setup read"})
    EXPECT_EQ(remote::ReadTrail::Known(strName).Text(), remote::UsualReads(strName)) << strName;
}

TEST_F(RoundTrips, ReadThatFailsWithinADownloadIsToldAtItsCallAndNothingBehindItIsMissed) {
  Open();
  Download();
  driver.FailAt(60, {-2147221000, "the sixtieth fails"});
  Download();
  EXPECT_THAT(session->host.TakeBoxes(), testing::ElementsAre(testing::HasSubstr("the sixtieth fails")));
}

TEST_F(RoundTrips, StartOfASessionWaitsForTheLookUpOfTheInstrumentToo) {
  const Cost cost = Of([&] { Open(); });
  EXPECT_EQ(cost.intAnswered, 6);
  EXPECT_EQ(cost.intFetched, 5);
  EXPECT_EQ(cost.intLookedUp, 1);
  EXPECT_EQ(cost.intRoundTrips, cost.intAnswered + cost.intLookedUp);
}

}  // namespace
}  // namespace tarvik::test
