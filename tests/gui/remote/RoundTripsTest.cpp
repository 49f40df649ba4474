#include <gmock/gmock.h>

#include <algorithm>

#include "LoopbackServer.h"
#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"

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

/// The real panel over a driver that writes down each call, with a server between them.
class RoundTrips : public testing::Test {
 protected:
  RoundTrips() {
    driver.lngFirstByte = 1;  // as the instruments count the bytes of a pattern
    driver.Add("Alpha");
    driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
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
    for (const std::string &strLine : driver.TakeTrace()) {
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

TEST_F(RoundTrips, DownloadOfAllPagesWaitsForOneLookUpBesides) {
  Open();
  const Cost cost = Of([&] { Download(); });
  EXPECT_EQ(cost.intAnswered, 71);
  EXPECT_EQ(cost.intFetched, 64);
  // The Config page asks for the names of the instruments, and a look-up may find nothing.
  EXPECT_EQ(cost.intLookedUp, 1);
  EXPECT_EQ(cost.intRoundTrips, cost.intAnswered + cost.intLookedUp);
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
