#include "scpi/simulator/CommandLine.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "support/RunTimeError.h"

namespace tarvik::scpisim {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

CommandLine Parsed(std::vector<std::string> arrArguments) {
  arrArguments.insert(arrArguments.begin(), "tarvik-scpi-simulator");
  std::vector<char *> arrPointers;
  for (std::string &strArgument : arrArguments) arrPointers.push_back(strArgument.data());
  return CommandLine::Of(static_cast<int>(arrPointers.size()), arrPointers.data());
}

std::string Refusal(const std::vector<std::string> &arrArguments) {
  try {
    Parsed(arrArguments);
    return "taken";
  } catch (const RunTimeError &error) {
    return error.Description();
  }
}

TEST(SimulatorCommandLine, WhatIsNotToldIsAsTheManualSays) {
  const CommandLine line = Parsed({});
  EXPECT_EQ(line.server.strHost, "127.0.0.1");
  EXPECT_EQ(line.server.intPort, 5025);
  EXPECT_EQ(line.server.lngClients, 32u);
  EXPECT_EQ(line.server.lngLongestMessage, 65536u);
  EXPECT_EQ(line.instrument.strName, "VP-210");
  EXPECT_EQ(line.answerDelay, std::chrono::milliseconds(0));
  EXPECT_EQ(line.fault, Fault::None);
  EXPECT_EQ(line.strPrint, "");
}

TEST(SimulatorCommandLine, EachOptionIsTaken) {
  const CommandLine line = Parsed({"--model", "VP-110", "--listen", "::1", "--port=0", "--max-clients", "2",
                                   "--max-message", "256", "--delay", "60000", "--fault", "3:garbage"});
  EXPECT_EQ(line.instrument.strName, "VP-110");
  EXPECT_EQ(line.server.strHost, "::1");
  EXPECT_EQ(line.server.intPort, 0);
  EXPECT_EQ(line.server.lngClients, 2u);
  EXPECT_EQ(line.server.lngLongestMessage, 256u);
  EXPECT_EQ(line.answerDelay, std::chrono::minutes(1));
  EXPECT_EQ(line.fault, Fault::Garbage);
  EXPECT_EQ(line.lngFaultAt, 3);
  EXPECT_FALSE(line.fFaultEver);
  EXPECT_EQ(Parsed({"--port", "1x", "--port", "65535"}).server.intPort, 65535) << "the last one counts";
}

TEST(SimulatorCommandLine, AFaultComesOnceOrForEver) {
  const std::pair<const char *, Fault> arrFaults[] = {
      {"cut", Fault::Cut},         {"half", Fault::Half},   {"silence", Fault::Silence}, {"mute", Fault::Mute},
      {"garbage", Fault::Garbage}, {"error", Fault::Error}, {"endless", Fault::Endless}, {"stale", Fault::Stale}};
  for (const auto &[strFault, fault] : arrFaults) {
    const CommandLine line = Parsed({"--fault", std::string("1:") + strFault + ":ever"});
    EXPECT_EQ(line.fault, fault) << strFault;
    EXPECT_EQ(line.lngFaultAt, 1) << strFault;
    EXPECT_TRUE(line.fFaultEver) << strFault;
  }
  EXPECT_FALSE(Parsed({"--fault", "1:cut:once"}).fFaultEver);
}

TEST(SimulatorCommandLine, WhatIsWrongIsTold) {
  const std::pair<std::vector<std::string>, const char *> arrWrong[] = {
      {{"--port", "65536"}, "--port takes a number from 0 to 65535"},
      {{"--port", "-1"}, "--port takes a number from 0 to 65535"},
      {{"--port", "80x"}, "--port takes a number from 0 to 65535"},
      {{"--max-clients", "0"}, "--max-clients takes a number from 1 to 1000"},
      {{"--max-clients", "1001"}, "--max-clients takes a number from 1 to 1000"},
      {{"--max-message", "255"}, "--max-message takes a number from 256 to 67108864"},
      {{"--delay", "60001"}, "--delay takes a number from 0 to 60000"},
      {{"--fault", "cut"}, "--fault takes N:KIND or N:KIND:ever"},
      {{"--fault", "1:cut:never"}, "--fault takes N:KIND or N:KIND:ever"},
      {{"--fault", "1:cut:ever:more"}, "--fault takes N:KIND or N:KIND:ever"},
      {{"--fault", "0:cut"}, "--fault takes a number from 1 to 1000000"},
      {{"--fault", "1:fire"}, "\"fire\" is no fault; there are cut half silence mute garbage error endless stale"},
      {{"--model", "VP-999"}, "\"VP-999\" is no instrument of the rack; try --list"},
      {{"--model", "VP-210 reserved"}, "\"VP-210 reserved\" does not open: somebody else holds it"},
      {{"--rack", "/nowhere/rack"}, "/nowhere/rack is not there"},
      {{"--nonsense"}, "--nonsense is no option; try --help"},
      {{"more"}, "more is no option; try --help"},
  };
  for (const auto &[arrArguments, strReason] : arrWrong) EXPECT_EQ(Refusal(arrArguments), strReason);
  EXPECT_THAT(Refusal({"--port"}), HasSubstr("; try --help"));
}

TEST(SimulatorCommandLine, WhatIsAskedForIsPrintedInPlaceOfServing) {
  EXPECT_THAT(Parsed({"--help"}).strPrint, HasSubstr("--max-message BYTES"));
  EXPECT_THAT(Parsed({"--version"}).strPrint, StartsWith("tarvik-scpi-simulator "));
  const std::string strList = Parsed({"--list"}).strPrint;
  EXPECT_THAT(strList, StartsWith("VP-210\t"));
  EXPECT_THAT(strList, HasSubstr("\nVP-110\t"));
  EXPECT_THAT(strList, Not(HasSubstr("reserved"))) << "it does not open";
  const std::string strCommands = Parsed({"--commands"}).strPrint;
  EXPECT_THAT(strCommands, HasSubstr("*IDN?\n")) << "a query alone";
  EXPECT_THAT(strCommands, HasSubstr("*RST\n")) << "a command alone";
  EXPECT_THAT(strCommands, HasSubstr("*ESE\t*ESE?\n")) << "a command and its query";
}

TEST(SimulatorCommandLine, ARackFileHasItsOwnInstruments) {
  namespace fs = std::filesystem;
  const fs::path file = fs::temp_directory_path() / ("tarvik-rack-" + std::to_string(getpid()));
  std::ofstream(file) << "[First]\nopens = no\n[Second]\n";
  EXPECT_EQ(Parsed({"--rack", file.string()}).instrument.strName, "Second") << "the first one that opens";
  std::ofstream(file) << "[First]\nopens = no\n";
  EXPECT_EQ(Refusal({"--rack", file.string()}), "the rack has no instrument that opens");
  std::ofstream(file) << "nonsense\n";
  EXPECT_THAT(Refusal({"--rack", file.string()}), StartsWith(file.string()));
  fs::remove(file);
}

}  // namespace
}  // namespace tarvik::scpisim
