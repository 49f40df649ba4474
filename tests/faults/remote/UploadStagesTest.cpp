#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>

#include "InstrumentSession.h"
#include "RegisteredDriver.h"
#include "RemoteClient.h"
#include "ServerProcess.h"

namespace tarvik::remote {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct Step {
  const char *strName;
  std::function<Boolean(clsInstrInterface &)> run;
};

/// What the panel's upload does, and one set of settings that is dropped.
std::vector<Step> UploadSteps() {
  udtTimingInfo timing;
  udtLimitsInfo limits;
  for (Long lngChannel = 1; lngChannel <= 2; ++lngChannel) {
    timing.dblWidth[lngChannel] = 2e-7;
    limits.dblHighVoltage[lngChannel] = 4.0;
  }
  return {
      {"TransactionStart(True)", [](auto &instr) { return instr.TransactionStart(True); }},
      {"SetMode", [](auto &instr) { return instr.SetMode({}); }},
      {"SetTiming", [=](auto &instr) { return instr.SetTiming(timing); }},
      {"SetLevels", [](auto &instr) { return instr.SetLevels({}); }},
      {"SetLimits", [=](auto &instr) { return instr.SetLimits(limits); }},
      {"TransactionFinish(True)", [](auto &instr) { return instr.TransactionFinish(True); }},
      {"TransactionStart(False)", [](auto &instr) { return instr.TransactionStart(False); }},
      {"TransactionCancel", [](auto &instr) { return instr.TransactionCancel(), True; }},
  };
}

/// The operations that the driver sees, by the lines of a driver in this process.
std::vector<std::string> UploadOperations() {
  test::InstrumentSession session;
  session.Open();
  for (const Step &step : UploadSteps()) EXPECT_TRUE(step.run(*session.instr)) << step.strName;
  return session.driver.TakeTrace();
}

/// The instrument class on a server, with a host that writes down what the user sees.
class RemoteUser {
 public:
  explicit RemoteUser(const std::string &strUrl) {
    // The error report asks the one instance for the form of its texts.
    gobjInstr() = one;
    instr.InstrError.Connect([this](const std::string &strText) { arrErrors.push_back(strText); });
    Reconnect(strUrl);
  }
  RemoteUser(const RemoteUser &) = delete;
  RemoteUser &operator=(const RemoteUser &) = delete;
  ~RemoteUser() {
    instr.CloseInstrument();
    gobjInstr().reset();
  }
  void Reconnect(const std::string &strUrl) {
    host.settings[{"LastUsed", "ServerURL"}] = strUrl;
    EXPECT_TRUE(instr.Connect());
    EXPECT_TRUE(instr.OpenInstrument("Alpha"));
    EXPECT_THAT(host.TakeBoxes(), IsEmpty());
  }
  /// Runs the steps up to the first that fails, and answers which that was.
  std::string Upload() {
    for (const Step &step : UploadSteps())
      if (!step.run(instr)) return step.strName;
    return {};
  }

  test::RecordingHost host;
  const test::RegisteredDriver connection{
      [](const std::string &strServer) { return ConnectDriver(kolven::DriverProgId, strServer, Short); },
      test::RegisteredDriver::OnServers};
  const std::shared_ptr<clsInstrInterface> one = std::make_shared<clsInstrInterface>();
  clsInstrInterface &instr = *one;
  std::vector<std::string> arrErrors;
};

/// A server whose driver is the mortal one, in a data folder of its own.
class UploadStages : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::filesystem::create_directories(Folder() / "tarvikvi/drivers");
    std::ofstream(Folder() / "tarvikvi/drivers/KolvenAtl.Kolven.driver") << MORTAL_DRIVER << "\n";
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(Folder()); }
  static std::filesystem::path Folder() {
    static const auto folder = std::filesystem::temp_directory_path() / ("tarvik-mortal-" + std::to_string(getpid()));
    return folder;
  }
  static std::vector<std::string> Environment(int intSignal = 0, std::size_t lngAt = 0) {
    return {"XDG_DATA_HOME=" + Folder().string(), "MORTAL_SIGNAL=" + std::to_string(intSignal),
            "MORTAL_AT=" + std::to_string(lngAt)};
  }
  /// Number of the first operation behind `lngAfter` whose line holds the text.
  std::size_t Find(const std::string &strText, std::size_t lngAfter = 0) const {
    for (std::size_t i = lngAfter; i < arrOperations.size(); ++i)
      if (arrOperations[i].find(strText) != std::string::npos) return i + 1;
    ADD_FAILURE() << strText << " is no operation of an upload";
    return 1;
  }

  /// What the user sees and what the class is left with when the connection broke within the step.
  static void ExpectClosedLocally(RemoteUser &user, const std::string &strStep, const char *strWhy) {
    EXPECT_FALSE(clsInstrInterface::Private::Of(user.instr).m_TransActive);
    EXPECT_FALSE(clsInstrInterface::Private::Of(user.instr).m_GlobalTrans);
    EXPECT_EQ(user.host.intPointer, 0);
    const auto arrBoxes = user.host.TakeBoxes();
    if (strStep.starts_with("Set")) {
      ASSERT_FALSE(arrBoxes.empty());
      EXPECT_THAT(arrBoxes.front(), StartsWith("box stop: The driver server tarvik+insecure://127.0.0.1:"));
      EXPECT_THAT(arrBoxes.front(), HasSubstr(strWhy));
    } else if (strStep == "TransactionFinish(True)") {
      EXPECT_THAT(arrBoxes, ElementsAre(AllOf(StartsWith("box exclamation: Instrument Errors(s):\r\nThe driver server"),
                                              HasSubstr(strWhy))));
      EXPECT_THAT(user.arrErrors, ElementsAre(HasSubstr(strWhy)));
    } else {
      // A start that fails and a cancel tell the user nothing.
      EXPECT_THAT(arrBoxes, IsEmpty());
    }
    user.arrErrors.clear();
    // The connection stays lost, and says so without waiting.
    udtTimingInfo timing;
    EXPECT_LT(SecondsOf([&] { EXPECT_FALSE(user.instr.GetTiming(timing)); }), 0.5);
    EXPECT_THAT(user.host.TakeBoxes(), Contains(HasSubstr(strWhy)));
  }

  const std::vector<std::string> arrOperations = UploadOperations();
};

TEST_F(UploadStages, HoldFetchesWritesCommitAndCancel) {
  EXPECT_GT(arrOperations.size(), 60u);
  for (const char *strText : {"GetModeSetup()", "GetChannels()", "SetContinuousPulses(", "SetWidth(", "SetLevel(",
                              "SetHigh(", "Transaction(0)", "Transaction(1)", "Transaction(2)"})
    EXPECT_THAT(arrOperations, Contains(HasSubstr(strText)));
}

TEST_F(UploadStages, ServerKilledInEachOperationEndsTheUploadAndANewSessionWorks) {
  for (std::size_t at = 1; at <= arrOperations.size(); ++at) {
    SCOPED_TRACE(std::to_string(at) + ": " + arrOperations[at - 1]);
    std::optional<ServerProcess> server(std::in_place, ServerProcess::Insecure(), Environment(SIGKILL, at));
    const std::string strPort = server->Port();
    RemoteUser user(server->Url());
    std::string strStep;
    EXPECT_LT(SecondsOf([&] { strStep = user.Upload(); }), 2.0);
    if (strStep.empty()) {
      // The cancel is the one step that cannot tell.
      EXPECT_EQ(at, arrOperations.size());
      strStep = "TransactionCancel";
    }
    ExpectClosedLocally(user, strStep, "has gone");

    server.reset();
    server.emplace(ServerProcess::Insecure(strPort), Environment());
    user.Reconnect(server->Url());
    EXPECT_EQ(user.Upload(), "");
    EXPECT_THAT(user.host.TakeBoxes(), IsEmpty());
    if (HasFailure()) break;
  }
}

TEST_F(UploadStages, ServerStoppedInTheUploadEndsTheCallInTimeAndClosesTheInstrumentWhenContinued) {
  const std::size_t lngCommit = Find("Transaction(1)");
  const std::pair<const char *, std::size_t> arrStages[] = {{"begin", Find("Transaction(0)")},
                                                            {"fetch", Find("GetModeSetup()")},
                                                            {"write", Find("SetWidth(")},
                                                            {"commit", lngCommit},
                                                            {"cancel", Find("Transaction(2)", lngCommit)}};
  for (const auto &[strStage, lngAt] : arrStages) {
    SCOPED_TRACE(strStage);
    ServerProcess server(ServerProcess::Insecure(), Environment(SIGSTOP, lngAt));
    RemoteUser user(server.Url());
    std::string strStep;
    const double dblSeconds = SecondsOf([&] { strStep = user.Upload(); });
    EXPECT_GT(dblSeconds, 1.9);
    EXPECT_LT(dblSeconds, 4.0);
    ExpectClosedLocally(user, strStep.empty() ? "TransactionCancel" : strStep, "gave no sign of life for 2 seconds");

    server.Signal(SIGCONT);
    EXPECT_TRUE(server.LogSays("closes Alpha, which was left open")) << server.LogText();
    user.Reconnect(server.Url());
    EXPECT_EQ(user.Upload(), "");
    EXPECT_THAT(user.host.TakeBoxes(), IsEmpty());
  }
}

}  // namespace
}  // namespace tarvik::remote
