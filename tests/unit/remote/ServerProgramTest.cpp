#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <sstream>
#include <thread>

#include "ProgramOutput.h"
#include "ServerProcess.h"
#include "TestCertificates.h"
#include "instrument/DriverCall.h"
#include "instrument/KolvenDriver.h"
#include "remote/Connection.h"

namespace tarvik::remote {
namespace {

using namespace kolven;
using automation::Ref;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
namespace fs = std::filesystem;

std::pair<std::string, int> SaidBy(const std::string &strOptions) {
  return test::SaidBy("\"" SERVER_PROGRAM "\" " + strOptions);
}

/// A server process with a rack and a list of clients of its own.
class ServerProgram : public testing::Test {
 protected:
  ServerProgram() {
    fs::create_directories(m_folder / "tarvikvi/drivers");
    Write("tarvikvi/drivers/KolvenAtl.Kolven.rack", "[Slow]\ncalibration delay = 3500 ms\nself test delay = 3500 ms\n");
  }
  ~ServerProgram() override { fs::remove_all(m_folder); }

  std::string Write(const char *strName, const std::string &strText) const {
    std::ofstream(m_folder / strName) << strText;
    return (m_folder / strName).string();
  }
  std::vector<std::string> Environment() const { return {"XDG_DATA_HOME=" + m_folder.string()}; }
  ServerProcess &Start(std::vector<std::string> arrMore = {}) {
    auto arrOptions = ServerProcess::Insecure();
    arrOptions.insert(arrOptions.end(), arrMore.begin(), arrMore.end());
    return server.emplace(arrOptions, Environment());
  }
  Ref<IDriverRoot> Root(const Patience &patience = {}) {
    return automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, server->Url(), patience));
  }
  static Ref<IInstrument> Opened(const Ref<IDriverRoot> &root) {
    const automation::String name("Slow");
    AutomationVariant key{};
    key.vt = automation::VtString;
    key.bstrVal = name.Get();
    const auto list = Fetch(root, &IDriverRoot::GetInstruments);
    const auto instrument = automation::Narrow<IInstrument>(Fetch(list, &IInstrumentList::GetItem, key));
    automation::VariantBool fOpened = 0;
    Call(instrument, &IInstrument::Open, False, False, False, &fOpened);
    EXPECT_TRUE(fOpened);
    return instrument;
  }
  std::vector<std::string> LogLines() const {
    std::vector<std::string> arrLines;
    std::istringstream text(server->LogText());
    for (std::string strLine; std::getline(text, strLine);) arrLines.push_back(strLine);
    return arrLines;
  }

  std::optional<ServerProcess> server;

 private:
  const fs::path m_folder = fs::temp_directory_path() / ("tarvik-server-program-" + std::to_string(getpid()));
};

TEST_F(ServerProgram, RefusesWhatItCannotBeStartedWith) {
  const auto file = Write("some.pem", "no certificate"), readable = Write("readable.key", "no key");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  const auto empty = Write("nobody", "# nobody yet\n\n");
  const std::string strFolder = fs::path(file).parent_path().string();
  const std::string strFiles = "--certificate " + file + " --key " + file + " --authority " + file;
  const struct {
    std::string strOptions;
    std::string strSaid;
  } cases[] = {
      {"", "--certificate, --key and --authority are needed"},
      {"--insecure --listen 0.0.0.0", "listens on a loopback address only, and 0.0.0.0 is none"},
      {"--insecure --listen 192.0.2.1", "listens on a loopback address only, and 192.0.2.1 is none"},
      {strFiles, "The list of clients that may connect is empty"},
      {strFiles + " --allow-file " + empty, "The list of clients that may connect is empty"},
      {strFiles + " --allow bench --listen 127.0.0.1 --port 0",
       "The driver server cannot work: the server's certificate holds no certificate"},
      {"--certificate /nonexistent/server.pem", "/nonexistent/server.pem cannot be read"},
      {"--certificate " + strFolder, strFolder + " cannot be read: It is a folder"},
      {"--certificate /dev/zero", "/dev/zero cannot be read: It is no regular file"},
      {"--insecure --listen 127.0.0.1 --log /nonexistent/log", "/nonexistent/log cannot be written"},
      {"--port 65536", "--port takes a number from 0 to 65535"},
      {"--port 1x", "--port takes a number from 0 to 65535"},
      {"--max-clients 0", "--max-clients takes a number from 1 to 10000"},
      {"--max-objects 15", "--max-objects takes a number from 16 to 1000000"},
      {"--max-message 65535", "--max-message takes a number from 65536 to 67108864"},
      {"--log-format xml", "--log-format takes text or json"},
      {"--key " + readable, "others than its owner can use " + readable + "; chmod 600 \"" + readable + "\" mends it"},
      {"--colour red", "--colour is no option; try --help"},
      {"--insecure --listen 127.0.0.1 --port 0 --log", "--log: 1 required FILE missing; try --help"},
      {"somewhere", "somewhere is not an option"},
  };
  for (const auto &one : cases) {
    const auto [strSaid, intStatus] = SaidBy(one.strOptions);
    EXPECT_EQ(intStatus, 1) << one.strOptions;
    EXPECT_THAT(strSaid, HasSubstr(one.strSaid)) << one.strOptions;
    EXPECT_THAT(strSaid, HasSubstr("tarvik-driver-server: ")) << one.strOptions;
  }
}

TEST_F(ServerProgram, HelpNamesEveryOptionThatTheManualHas) {
  const auto [strHelp, intStatus] = SaidBy("--help");
  EXPECT_EQ(intStatus, 0);
  std::ifstream manual(SERVER_MANUAL);
  std::string strManual{std::istreambuf_iterator<char>(manual), {}};
  std::erase(strManual, '\\');
  int intOptions = 0;
  std::istringstream lines(strHelp);
  for (std::string strLine; std::getline(lines, strLine);) {
    const auto begin = strLine.find("--");
    if (!strLine.starts_with("  --") || strLine.find("--help") == begin) continue;
    ++intOptions;
    EXPECT_THAT(strManual, HasSubstr(strLine.substr(begin, strLine.find(' ', begin) - begin)));
  }
  EXPECT_EQ(intOptions, 20);
}

TEST_F(ServerProgram, SecondServerOnThePortIsRefused) {
  Start();
  const auto [strSaid, intStatus] = SaidBy("--insecure --listen 127.0.0.1 --port " + server->Port());
  EXPECT_EQ(intStatus, 1);
  EXPECT_THAT(strSaid, HasSubstr("cannot listen on 127.0.0.1:" + server->Port()));
}

TEST_F(ServerProgram, AnAddressThatNobodyKnowsIsRefusedWithTheReason) {
  TestCertificates certificates;
  std::string strOptions;
  for (const std::string &strOption : certificates.ServerOptions())
    strOptions += " " + (strOption == "127.0.0.1" ? "no.such.host.invalid" : strOption);
  const auto [strSaid, intStatus] = SaidBy(strOptions);
  EXPECT_EQ(intStatus, 1);
  // Which of them depends on whether the machine has a name server.
  EXPECT_THAT(strSaid, testing::AnyOf(HasSubstr("no.such.host.invalid:0: Name or service not known"),
                                      HasSubstr("no.such.host.invalid:0: Temporary failure in name resolution")));
}

TEST_F(ServerProgram, LogTellsTimeClientAndWhatHappened) {
  TestCertificates certificates;
  certificates.UseClient("client");
  auto arrOptions = certificates.ServerOptions();
  arrOptions.resize(arrOptions.size() - 2);  // the client stands on a list instead
  arrOptions.insert(arrOptions.end(),
                    {"--allow-file", Write("clients", "# the bench\r\n  bench # in hall 2\r\nhall3\n")});
  server.emplace(arrOptions, Environment());
  const std::string strUrl = "tarvik://127.0.0.1:" + server->Port();
  {
    const auto instrument = Opened(automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, strUrl)));
    Call(instrument, &IInstrument::Close);
  }
  EXPECT_THROW(ConnectDriver("../../tmp/evil", strUrl), RunTimeError);
  certificates.UseClient("stranger");
  EXPECT_THROW(ConnectDriver(DriverProgId, strUrl), RunTimeError);
  EXPECT_EQ(server->End(SIGTERM), 0);

  const std::string strTime = "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}Z ";
  const auto line = [&](const std::string &strText) { return MatchesRegex(strTime + strText); };
  const std::string strBench = "bench at ipv4:127\\.0\\.0\\.1:[0-9]+: ";
  EXPECT_THAT(
      LogLines(),
      ElementsAre(
          line("server: listening on 127\\.0\\.0\\.1:[0-9]+"), line(strBench + "connected"),
          line(strBench + "created KolvenAtl\\.Kolven"), line(strBench + "opened Slow"), line(strBench + "closed Slow"),
          line(strBench + "disconnected"), line(strBench + "connected"),
          line(strBench + "creation of \\.\\./\\.\\./tmp/evil failed: The driver server is sent no ProgID"),
          line(strBench + "disconnected"),
          line("stranger at ipv4:127\\.0\\.0\\.1:[0-9]+: refused: the certificate's name stranger is not on the "
               "list of clients"),
          line("server: stopping"), line("server: stopped")));
}

TEST_F(ServerProgram, CalibrationAndSelfTestMayTakeLongerThanASilentServerIsBorneWith) {
  Start();
  // The server gives a sign of life each second.
  const Patience patience{std::chrono::seconds(5), std::chrono::seconds(3), std::chrono::seconds(1)};
  const auto instrument = Opened(Root(patience));
  Call(instrument, &IInstrument::Calibrate);
  Integer intCode = -1;
  automation::String text;
  Call(instrument, &IInstrument::SelfTest, &intCode, text.Out());
  EXPECT_EQ(intCode, 0);
  EXPECT_EQ(text.Text(), "Self test passed");
}

TEST_F(ServerProgram, CallAtWorkIsFinishedBeforeASignalStopsTheServer) {
  Start();
  const auto instrument = Opened(Root());
  auto calibration = std::async(std::launch::async, [&] { return instrument->Calibrate(); });
  std::this_thread::sleep_for(std::chrono::seconds(1));
  EXPECT_EQ(server->End(SIGTERM), 0);
  EXPECT_EQ(calibration.get(), automation::StatusOk);
  EXPECT_TRUE(automation::Failed(instrument->Reset()));
  EXPECT_THAT(server->LogText(), AllOf(HasSubstr("closes Slow, which was left open"), HasSubstr("server: stopped")));
}

TEST_F(ServerProgram, SecondSignalDoesNotWaitForTheCallAtWork) {
  Start();
  const auto instrument = Opened(Root());
  auto calibration = std::async(std::launch::async, [&] { return instrument->Calibrate(); });
  std::this_thread::sleep_for(std::chrono::seconds(1));
  server->Signal(SIGTERM);
  ASSERT_TRUE(server->LogSays("server: stopping"));
  EXPECT_EQ(server->End(SIGTERM), -1);
  EXPECT_TRUE(automation::Failed(calibration.get()));
}

TEST_F(ServerProgram, ClientsAndObjectsBeyondTheLimitsAreRefusedAndLogged) {
  Start({"--max-clients", "1", "--max-objects", "16"});
  const auto root = Root();
  try {
    Root();
    ADD_FAILURE() << "a second client got in";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), StatusServerTooBusy);
    EXPECT_THAT(error.Description(), HasSubstr("is at a limit: it serves no more than 1 clients at a time"));
  }
  EXPECT_TRUE(server->LogSays("refused: it serves no more than 1 clients at a time"));

  std::vector<Ref<IInstrumentList>> arrLists;
  for (int i = 0; i < 15; ++i) arrLists.push_back(Fetch(root, &IDriverRoot::GetInstruments));
  EXPECT_EQ(Read(arrLists.back(), &IInstrumentList::GetCount), 1);
  arrLists.push_back(Fetch(root, &IDriverRoot::GetInstruments));
  Long lngCount = 0;
  EXPECT_EQ(arrLists.back()->GetCount(&lngCount), automation::StatusOutOfMemory);
  arrLists.resize(14);
  EXPECT_EQ(Read(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetCount), 1);
}

}  // namespace
}  // namespace tarvik::remote
