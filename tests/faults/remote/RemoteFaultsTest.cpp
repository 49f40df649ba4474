#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <thread>

#include "ServerProcess.h"
#include "TestCertificates.h"
#include "automation/Activation.h"
#include "instrument/DriverCall.h"
#include "instrument/KolvenDriver.h"
#include "remote/Connection.h"

namespace tarvik::remote {
namespace {

using namespace kolven;
using automation::Ref;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

const Patience Short{5s, 2s, 1s};

std::vector<std::string> Insecure(const std::string &strPort = "0") { return ServerProcess::Insecure(strPort); }
std::string Url(const ServerProcess &server) { return "tarvik+insecure://127.0.0.1:" + server.Port(); }

Ref<IDriverRoot> Root(const std::string &strUrl) {
  return automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, strUrl, Short));
}
Ref<IInstrument> FirstInstrument(const Ref<IDriverRoot> &root) {
  AutomationVariant key{};
  key.vt = automation::VtInteger;
  key.iVal = 1;
  return automation::Narrow<IInstrument>(
      Fetch(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetItem, key));
}
Ref<IInstrument> Opened(const std::string &strUrl) {
  const auto instrument = FirstInstrument(Root(strUrl));
  automation::VariantBool opened = 0;
  Call(instrument, &IInstrument::Open, automation::VariantBool{0}, automation::VariantBool{0},
       automation::VariantBool{0}, &opened);
  if (!opened) throw std::runtime_error("the instrument is not opened");
  return instrument;
}
bool IsInTransaction(const Ref<IInstrument> &instrument) {
  Integer first = 0;
  automation::VariantBool isOpen = 0;
  Call(instrument, &IInstrument::GetTransactionState, &first, &isOpen);
  return isOpen != 0;
}

/// The calls of a small upload, one after the other.
std::vector<std::function<void(const Ref<IInstrument> &)>> UploadSteps() {
  return {
      [](const auto &instrument) { Call(instrument, &IInstrument::Transaction, TransactionBegin); },
      [](const auto &instrument) {
        Call(Fetch(instrument, &IInstrument::GetModeSetup), &IModeSetup::SetContinuousPulses, Long{0}, Long{1});
      },
      [](const auto &instrument) {
        const auto channels = Fetch(instrument, &IInstrument::GetChannels);
        const auto timing = Fetch(Fetch(channels, &IChannelList::GetItem, Long{1}), &IChannel::GetTiming);
        Call(timing, &IChannelTiming::SetWidth, 1e-7);
      },
      [](const auto &instrument) { Call(instrument, &IInstrument::Transaction, TransactionCommit); },
  };
}

RunTimeError ErrorOf(const std::function<void()> &statement) {
  try {
    statement();
  } catch (const RunTimeError &error) {
    return error;
  }
  ADD_FAILURE() << "no failure";
  return RunTimeError(0, "");
}

double SecondsOf(const std::function<void()> &statement) {
  const auto start = std::chrono::steady_clock::now();
  statement();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(RemoteFaults, ServerKilledAtEachStageOfAnUpload) {
  const auto arrSteps = UploadSteps();
  for (std::size_t stage = 0; stage < arrSteps.size(); ++stage) {
    SCOPED_TRACE(stage);
    ServerProcess server(Insecure());
    const auto instrument = Opened(Url(server));
    for (std::size_t i = 0; i < stage; ++i) arrSteps[i](instrument);
    server.End(SIGKILL);
    const double dblSeconds = SecondsOf([&] {
      EXPECT_NE(ErrorOf([&] { arrSteps[stage](instrument); }).Description().find("The driver server"),
                std::string::npos);
    });
    EXPECT_LT(dblSeconds, 10.0);
    EXPECT_LT(SecondsOf([&] { ErrorOf([&] { Call(instrument, &IInstrument::Close); }); }), 5.0);
  }
}

TEST(RemoteFaults, StoppedServerEndsTheCallInTimeAndServesAgainWhenContinued) {
  ServerProcess server(Insecure());
  const auto instrument = Opened(Url(server));
  server.Signal(SIGSTOP);
  const double dblSeconds = SecondsOf([&] {
    EXPECT_NE(ErrorOf([&] { Call(instrument, &IInstrument::Reset); }).Description().find("no sign of life"),
              std::string::npos);
  });
  EXPECT_GT(dblSeconds, 1.5);
  EXPECT_LT(dblSeconds, 15.0);
  EXPECT_LT(SecondsOf([&] { ErrorOf([&] { Root(Url(server)); }); }), 20.0);
  server.Signal(SIGCONT);
  EXPECT_TRUE(Opened(Url(server)));
}

TEST(RemoteFaults, NewConnectWorksAfterARestartOnTheSamePort) {
  std::optional<ServerProcess> server(std::in_place, Insecure());
  const std::string strPort = server->Port(), strUrl = Url(*server);
  const auto instrument = Opened(strUrl);
  server.reset();
  ErrorOf([&] { Call(instrument, &IInstrument::Reset); });
  EXPECT_EQ(ErrorOf([&] { Root(strUrl); }).Number(), StatusServerUnavailable);
  server.emplace(Insecure(strPort));
  EXPECT_TRUE(Opened(strUrl));
}

TEST(RemoteFaults, VanishedClientsTransactionIsDroppedAndItsSessionClosed) {
  ServerProcess server(Insecure());
  const pid_t client = fork();
  if (client == 0) {
    // exec gives the child a transport of its own; it re-enters below as this program's helper.
    execl("/proc/self/exe", "client", "--client-in-transaction", Url(server).c_str(), nullptr);
    _exit(1);
  }
  for (int i = 0; i < 200 && server.LogText().find("opened") == std::string::npos; ++i)
    std::this_thread::sleep_for(50ms);
  std::this_thread::sleep_for(300ms);
  kill(client, SIGKILL);
  waitpid(client, nullptr, 0);
  for (int i = 0; i < 100 && server.LogText().find("left open in a transaction") == std::string::npos; ++i)
    std::this_thread::sleep_for(50ms);
  EXPECT_NE(server.LogText().find("left open in a transaction"), std::string::npos) << server.LogText();
  EXPECT_FALSE(IsInTransaction(Opened(Url(server))));
}

TEST(RemoteFaults, FiftyClientsAtOnce) {
  const char *strSeconds = std::getenv("TARVIK_SOAK_SECONDS");
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(strSeconds ? std::atoi(strSeconds) : 10);
  ServerProcess server(Insecure());
  std::atomic<int> lngCalls = 0, lngFailures = 0;
  std::vector<std::jthread> clients;
  for (int i = 0; i < 50; ++i)
    clients.emplace_back([&] {
      try {
        const auto root = Root(Url(server));
        while (std::chrono::steady_clock::now() < until) {
          lngCalls += Read(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetCount) > 0;
          FirstInstrument(root);
        }
      } catch (const RunTimeError &error) {
        ++lngFailures;
        ADD_FAILURE() << error.Description();
      }
    });
  clients.clear();
  EXPECT_EQ(lngFailures, 0);
  EXPECT_GT(lngCalls, 50);
}

TEST(RemoteFaults, ServerStopsCleanlyOnASignal) {
  for (const int lngSignal : {SIGTERM, SIGINT}) {
    ServerProcess server(Insecure());
    const auto instrument = Opened(Url(server));
    EXPECT_EQ(server.End(lngSignal), 0);
    EXPECT_NE(server.LogText().find("which was left open"), std::string::npos);
    EXPECT_NE(server.LogText().find("server: stopped"), std::string::npos);
    ErrorOf([&] { Call(instrument, &IInstrument::Reset); });
  }
}

TEST(RemoteFaults, ObjectIsMadeThroughTheLibraryNamedByTheManifest) {
  ServerProcess server(Insecure());
  EXPECT_TRUE(automation::Narrow<IDriverRoot>(automation::CreateObject(DriverProgId, Url(server))));
  EXPECT_EQ(ErrorOf([] { automation::CreateObject(DriverProgId, "rack1"); }).Number(), 5);
}

/// A server with transport security and the configuration folder of a client.
class RemoteSecurity : public testing::Test {
 protected:
  static void TearDownTestSuite() { Certificates().reset(); }
  static std::unique_ptr<TestCertificates> &Certificates() {
    static std::unique_ptr<TestCertificates> certificates;
    if (!certificates) certificates = std::make_unique<TestCertificates>();
    return certificates;
  }
  static void UseClient(const std::string &strName) { Certificates()->UseClient(strName); }
  std::string SecureUrl() const { return "tarvik://localhost:" + server.Port(); }

  ServerProcess server{Certificates()->ServerOptions()};
};

TEST_F(RemoteSecurity, ClientOnTheListIsServed) {
  UseClient("client");
  EXPECT_TRUE(Opened(SecureUrl()));
  EXPECT_NE(server.LogText().find("bench at"), std::string::npos);
}

TEST_F(RemoteSecurity, NameThatIsNotOnTheListIsRefused) {
  UseClient("stranger");
  const RunTimeError error = ErrorOf([&] { Root(SecureUrl()); });
  EXPECT_EQ(error.Number(), automation::StatusAccessDenied);
  EXPECT_NE(error.Description().find("stranger"), std::string::npos) << error.Description();
}

TEST_F(RemoteSecurity, ExpiredOrForeignCertificateIsRefusedAndDisturbsNobody) {
  UseClient("client");
  const auto instrument = Opened(SecureUrl());
  for (const char *strName : {"expired", "foreign"}) {
    UseClient(strName);
    EXPECT_NE(ErrorOf([&] { Root(SecureUrl()); }).Number(), 0);
  }
  EXPECT_FALSE(IsInTransaction(instrument));
}

TEST_F(RemoteSecurity, ClientWithoutSecurityIsRefused) {
  EXPECT_NE(ErrorOf([&] { Root("tarvik+insecure://127.0.0.1:" + server.Port()); }).Number(), 0);
}

TEST_F(RemoteSecurity, MissingCertificateFileIsNamed) {
  setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
  const RunTimeError error = ErrorOf([&] { Root(SecureUrl()); });
  EXPECT_EQ(error.Number(), 53);
  EXPECT_NE(error.Description().find("/nonexistent/tarvikvi/ca.pem"), std::string::npos);
}

/// The client that is to be killed: opens, begins a transaction and waits for its end.
const bool fHelperRan = [] {
  std::ifstream file("/proc/self/cmdline");
  std::string strProgram, strOption, strUrl;
  std::getline(file, strProgram, '\0'), std::getline(file, strOption, '\0'), std::getline(file, strUrl, '\0');
  if (strOption != "--client-in-transaction") return false;
  const auto instrument = Opened(strUrl);
  Call(instrument, &IInstrument::Transaction, TransactionBegin);
  pause();
  return true;
}();

}  // namespace
}  // namespace tarvik::remote
