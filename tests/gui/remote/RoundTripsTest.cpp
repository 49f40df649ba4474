#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>

#include "LoopbackServer.h"
#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "panel/Panel.h"
#include "remote/CallTrail.h"
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
  void Download() { User().Click("cmdDownload"); }

  std::vector<std::string> arrLastCalls;  ///< what the driver was asked in the last piece of work
  StandInDriver driver;
  remote::LoopbackServer server{[this](const std::string &strProgId) { return driver.Create(strProgId, {}); }};
  RegisteredDriver connection{
      [](const std::string &strUrl) { return remote::ConnectDriver(kolven::DriverProgId, strUrl); },
      RegisteredDriver::OnServers};
  std::optional<SimulatorSession> session;
};

/// A panel on the same instrument when no server stands between.
class LocalPanel {
 public:
  LocalPanel() {
    Prepare(driver);
    session.NewPanel();
    session.Show();
    session.Open("Alpha");
    driver.TakeTrace();
  }

  StandInDriver driver;
  const RegisteredDriver here{[&](const std::string &) { return driver.Create(kolven::DriverProgId, {}); },
                              RegisteredDriver::Here};
  SimulatorSession session{SimulatorSession::Settings{{"WorkWithBoxes", "1"}, {"AutoDownload", "0"}}, ""};
};

void UploadAll(const SimulatorSession &session) {
  session.panel->SetTabState(ePageIsDirty, eAllPages);
  session.user->Click("cmdUpload");
}

TEST_F(RoundTrips, UploadsOfAllPagesCostTwelveWithTheSameCallsInTheSameOrder) {
  Open();
  Download();
  const Cost first = Of([&] { UploadAll(*session); });
  const auto arrFirst = arrLastCalls;
  const Cost second = Of([&] { UploadAll(*session); });
  const auto arrSecond = arrLastCalls;
  session.reset();
  LocalPanel local;
  local.session.user->Click("cmdDownload");
  local.driver.TakeTrace();
  UploadAll(local.session);
  const auto arrLocal = local.driver.TakeTrace();
  EXPECT_EQ(arrFirst, arrLocal);
  EXPECT_EQ(arrSecond, arrLocal);
  EXPECT_EQ(first.intAnswered, 66);
  EXPECT_EQ(first.intFetched, 65);
  EXPECT_LE(first.intRoundTrips, 12);
  EXPECT_LE(second.intRoundTrips, 12);
  std::printf("an upload of all pages: %d round trips for %d calls, %d at the second time\n", first.intRoundTrips,
              first.intAnswered + first.intFetched, second.intRoundTrips);
}

/// What an upload leaves behind whose call of this number fails: boxes, pointer and log, page states, and the calls.
struct Upload {
  std::vector<std::string> arrLines;
  std::vector<std::string> arrCalls;
  bool operator==(const Upload &) const = default;
};

std::vector<Upload> UploadsWithEachCallFailing(SimulatorSession &session, StandInDriver &driver, int intCalls) {
  std::vector<Upload> arrUploads;
  session.user->Click("cmdDownload");
  for (int k = 1; k <= intCalls; ++k) {
    remote::SynchroniseConnections();
    driver.TakeTrace();
    session.host.TakeLines();
    driver.FailAt(k, {-2147221000, "call fails"});
    UploadAll(session);
    remote::SynchroniseConnections();
    driver.ClearFaults();
    Upload upload{session.host.TakeLines(), driver.TakeTrace()};
    for (const TabStates eState : TarvikGUI::Panel::Of(*session.panel).state.meTabState)
      upload.arrLines.push_back("state " + std::to_string(eState));
    arrUploads.push_back(std::move(upload));
  }
  return arrUploads;
}

TEST_F(RoundTrips, FailureOfEachCallOfAnUploadIsToldAsWithoutAServer) {
  constexpr int Calls = 131;
  Open();
  const auto arrServed = UploadsWithEachCallFailing(*session, driver, Calls);
  session.reset();
  LocalPanel local;
  const auto arrLocal = UploadsWithEachCallFailing(local.session, local.driver, Calls);
  ASSERT_EQ(arrServed.size(), arrLocal.size());
  int intBoxes = 0;
  for (std::size_t k = 0; k < arrLocal.size(); ++k) {
    SCOPED_TRACE(k + 1);
    EXPECT_EQ(arrServed[k].arrLines, arrLocal[k].arrLines);
    EXPECT_EQ(arrServed[k].arrCalls, arrLocal[k].arrCalls);
    for (const std::string &strLine : arrLocal[k].arrLines) intBoxes += strLine.starts_with("box ");
    if (HasFailure()) break;
  }
  EXPECT_GT(intBoxes, 120);
  std::printf("%zu uploads, each with another call failing, like those without a server: %d boxes\n", arrServed.size(),
              intBoxes);
}

TEST_F(RoundTrips, DownloadsOfAllPagesCostAFewWithTheSameCallsInTheSameOrder) {
  Open();
  const Cost first = Of([&] { Download(); });
  const auto arrFirst = arrLastCalls;
  const Cost second = Of([&] { Download(); });
  const auto arrSecond = arrLastCalls;
  session.reset();
  LocalPanel local;
  local.session.user->Click("cmdDownload");
  const auto arrLocal = local.driver.TakeTrace();
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
    EXPECT_EQ(remote::CallTrail::Known(strName).Text(), remote::UsualReads(strName)) << strName;
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
