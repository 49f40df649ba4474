#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

#include "LoopbackServer.h"
#include "StandInDriver.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {
namespace {

using namespace kolven;

struct Loopback : testing::Test {
  Loopback() { driver.Add("Alpha"); }
  Ref<IDriverRoot> Connect(const Patience &patience = {}) {
    return automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, server.Url(), patience));
  }
  static Ref<IInstrument> Item(const Ref<IDriverRoot> &root, const char *strName) {
    const automation::String name(strName);
    AutomationVariant key{};
    key.vt = automation::VtString;
    key.bstrVal = name.Get();
    const auto list = Fetch(root, &IDriverRoot::GetInstruments);
    return automation::Narrow<IInstrument>(Fetch(list, &IInstrumentList::GetItem, key));
  }

  test::StandInDriver driver;
  LoopbackServer server{[this](const std::string &strProgId) { return driver.Create(strProgId, {}); }};
};

TEST_F(Loopback, FetchesRideWithTheNextCall) {
  const auto root = Connect();
  const auto instrument = Item(root, "Alpha");
  const auto lngBefore = RoundTripsSoFar();
  const auto channels = Fetch(instrument, &IInstrument::GetChannels);
  const auto timing = Fetch(Fetch(channels, &IChannelList::GetItem, 2), &IChannel::GetTiming);
  EXPECT_EQ(RoundTripsSoFar() - lngBefore, 0u);
  EXPECT_EQ(Read(timing, &IChannelTiming::GetWidth), 2e-7);
  EXPECT_EQ(RoundTripsSoFar() - lngBefore, 1u);
}

TEST_F(Loopback, UnknownInstrumentIsNothing) { EXPECT_FALSE(Item(Connect(), "Beta")); }

TEST_F(Loopback, DriversFailureKeepsStatusAndDescription) {
  const auto instrument = Item(Connect(), "Alpha");
  driver.FailAt(1, {-2147221503,
                    "\xC3\xBC"
                    "ber the limit"});
  try {
    Call(instrument, &IInstrument::Reset);
    ADD_FAILURE() << "no failure";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), -2147221503);
    EXPECT_EQ(error.Description(),
              "\xC3\xBC"
              "ber the limit");
  }
}

TEST_F(Loopback, CreationsFailureKeepsItsNumber) {
  driver.QueueFailingCreation({429, "no such driver"});
  try {
    Connect();
    ADD_FAILURE() << "no failure";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 429);
    EXPECT_EQ(error.Description(), "no such driver");
  }
}

TEST_F(Loopback, CreationThatGivesNothingIsNoFailure) {
  driver.QueueEmptyCreation();
  EXPECT_FALSE(Connect());
}

TEST_F(Loopback, EverythingIsReleasedWhenTheClientLetsGo) {
  { const auto instrument = Item(Connect(), "Alpha"); }
  for (const auto &[strInterface, intCount] : driver.References()) EXPECT_EQ(intCount, 0) << strInterface;
}

TEST_F(Loopback, TooLargeAPatternFailsAndTheConnectionLives) {
  const auto instrument = Item(Connect(), "Alpha");
  const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
  automation::ArrayOwner arr(ByteArray(0, std::vector<Byte>(2'000'000)));
  EXPECT_EQ(memory->SetPattern(1, 2, arr.InOut(), 16'000'000), automation::StatusInvalidArgument);
  EXPECT_EQ(Read(instrument, &IInstrument::GetChannelMath), 0);
}

TEST_F(Loopback, LossIsToldByItsReasonWhateverMeetsItFirst) {
  auto root = Connect();
  auto instrument = Item(root, "Alpha");
  server->Stop();
  // The release of an instrument leaves at once and finds the server gone.
  instrument = nullptr;
  Long lngCount = 0;
  EXPECT_TRUE(automation::Failed(Fetch(root, &IDriverRoot::GetInstruments)->GetCount(&lngCount)));
  const auto info = automation::TakeErrorInfo();
  ASSERT_TRUE(info);
  EXPECT_EQ(info->strDescription.find("takes nothing more"), std::string::npos) << info->strDescription;
}

/// A server that takes small frames only.
struct SmallFrames : Loopback {
  static constexpr std::uint32_t FrameBytes = 16 * 1024;
  SmallFrames() {
    ServerOptions options;
    options.limits = {10'000, FrameBytes};
    small.emplace([this](const std::string &strProgId) { return driver.Create(strProgId, {}); }, options);
  }
  Ref<IInstrument> Alpha() {
    return Item(automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, small->Url())), "Alpha");
  }
  std::optional<LoopbackServer> small;
};

TEST_F(SmallFrames, ThousandsOfFetchesAndReleasesWithoutACallTravelInParts) {
  const auto instrument = Alpha();
  std::vector<Ref<IChannelList>> arrLists;
  for (int i = 0; i < 5000; ++i) arrLists.push_back(Fetch(instrument, &IInstrument::GetChannels));
  EXPECT_EQ(Read(arrLists.back(), &IChannelList::GetCount), 2);
  arrLists.clear();
  EXPECT_EQ(Read(instrument, &IInstrument::GetChannelMath), 0);
  SynchroniseConnections();
  EXPECT_FALSE(driver.References().contains("IChannelList"));
}

TEST_F(SmallFrames, LargeCallGoesBehindWhatWasPosted) {
  const auto instrument = Alpha();
  std::vector<Ref<IChannelList>> arrLists;
  for (int i = 0; i < 300; ++i) arrLists.push_back(Fetch(instrument, &IInstrument::GetChannels));
  const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
  automation::ArrayOwner arr(ByteArray(0, std::vector<Byte>(FrameBytes - 2048)));
  EXPECT_EQ(memory->SetPattern(1, 2, arr.InOut(), 8), automation::StatusOk);
}

TEST_F(Loopback, NullPlaceForAResultIsRefused) {
  const auto instrument = Item(Connect(), "Alpha");
  EXPECT_EQ(instrument->GetChannelMath(nullptr), automation::StatusPointer);
}

TEST(LoopbackLimits, ClientsBeyondTheLimitAreRefused) {
  test::StandInDriver driver;
  ServerOptions options;
  options.lngClients = 1;
  LoopbackServer server([&](const std::string &strProgId) { return driver.Create(strProgId, {}); }, options);
  const auto first = ConnectDriver(DriverProgId, server.Url());
  try {
    ConnectDriver(DriverProgId, server.Url());
    ADD_FAILURE() << "no failure";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), StatusServerTooBusy);
    EXPECT_NE(error.Description().find("no more than 1 clients"), std::string::npos) << error.Description();
  }
}

/// A root whose creation takes longer than a silent server is borne with.
TEST(LoopbackPatience, LongCallIsNotCutOffWhileTheServerLives) {
  test::StandInDriver driver;
  driver.Add("Alpha");
  driver.OnTrace = [](const std::string &strLine) {
    if (strLine.find("Calibrate") != std::string::npos) std::this_thread::sleep_for(std::chrono::milliseconds(900));
  };
  ServerOptions options;
  options.heartbeat = std::chrono::milliseconds(50);
  LoopbackServer server([&](const std::string &strProgId) { return driver.Create(strProgId, {}); }, options);
  Patience patience;
  patience.silence = std::chrono::milliseconds(300);
  const auto root = automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, server.Url(), patience));
  const auto instrument = Loopback::Item(root, "Alpha");
  EXPECT_EQ(instrument->Calibrate(), automation::StatusOk);
}

TEST(LoopbackPatience, StoppingServerFinishesTheCallAtWork) {
  test::StandInDriver driver;
  driver.Add("Alpha");
  std::atomic<bool> fCalibrating = false;
  driver.OnTrace = [&](const std::string &strLine) {
    if (strLine.find("Calibrate") == std::string::npos) return;
    fCalibrating = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
  };
  LoopbackServer server([&](const std::string &strProgId) { return driver.Create(strProgId, {}); });
  const auto root = automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, server.Url()));
  const auto instrument = Loopback::Item(root, "Alpha");
  std::jthread stopper([&] {
    while (!fCalibrating) std::this_thread::yield();
    server->Stop();
  });
  EXPECT_EQ(instrument->Calibrate(), automation::StatusOk);
  stopper.join();
  EXPECT_TRUE(automation::Failed(instrument->Reset()));
}

TEST(ServerStart, WithoutSecurityOnlyOnALoopbackAddress) {
  std::ostringstream text;
  ServerLog log(text);
  ServerOptions options;
  options.fInsecure = true;
  options.strHost = "0.0.0.0";
  EXPECT_THROW(DriverServer(
                   options, [](const std::string &) { return nullptr; }, log),
               RunTimeError);
}

}  // namespace
}  // namespace tarvik::remote
