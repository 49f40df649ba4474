#include <gmock/gmock.h>
#include <stdlib.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "ProgramOutput.h"
#include "ServerProcess.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// A folder of its own, where the programs look for whatever a user has, and an instrument on the loopback.
struct ScpiPrograms : testing::Test {
  ScpiPrograms() {
    std::string strName = (fs::temp_directory_path() / "tarvik-scpi-XXXXXX").string();
    folder = ::mkdtemp(strName.data());
    instrument.emplace(std::vector<std::string>{SCPI_SIMULATOR, "--port", "0"});
    const std::string strLine = instrument->ReadLine();
    strAddress = "TCPIP::127.0.0.1::" + strLine.substr(strLine.rfind(':') + 1) + "::SOCKET";
  }
  ~ScpiPrograms() override { fs::remove_all(folder); }

  /// What a program says on both outputs, and behind it the exit status: "text=> 0".
  std::string Says(const std::string &strCommand) const {
    const std::string strFolder = folder.string();
    const auto [strSaid, intExit] =
        SaidBy("cd " + strFolder + "; export HOME=" + strFolder + " XDG_CONFIG_HOME=" + strFolder +
               " XDG_CONFIG_DIRS=" + strFolder + "/none XDG_DATA_HOME=" + strFolder + " XDG_STATE_HOME=" + strFolder +
               "; " + strCommand);
    return strSaid + "=> " + std::to_string(intExit);
  }
  std::string Scpi(const std::string &strArguments) const { return Says(std::string(PROGRAM) + " " + strArguments); }
  std::string Content(const std::string &strName) const {
    std::ifstream stream(folder / strName, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void Put(const std::string &strName, const std::string &strText) const {
    fs::create_directories((folder / strName).parent_path());
    std::ofstream(folder / strName) << strText;
  }
  void UseTheDriver() const { Put("tarvikvi/drivers/KolvenAtl.Kolven.driver", std::string(SCPI_DRIVER) + "\n"); }

  fs::path folder;
  std::optional<remote::ChildProcess> instrument;
  std::string strAddress;
};

TEST_F(ScpiPrograms, InstrumentIsEnteredWithItsProductNameAndTheProfileThatSuitsIt) {
  EXPECT_EQ("Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31\nVP-210 Dual Pulse Generator\t" + strAddress +
                "\tscpi-99-pattern\n=> 0",
            Scpi("add " + strAddress));
  EXPECT_EQ("Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31\nVP-210 Dual Pulse Generator 2\t" + strAddress +
                "\tscpi-99-pattern\n=> 0",
            Scpi("add " + strAddress));
  EXPECT_EQ("VP-210 Dual Pulse Generator\t" + strAddress + "\tscpi-99-pattern\nVP-210 Dual Pulse Generator 2\t" +
                strAddress + "\tscpi-99-pattern\n=> 0",
            Scpi("list"));
  EXPECT_EQ("=> 0", Scpi("remove 'VP-210 Dual Pulse Generator'"));
  EXPECT_EQ("VP-210 Dual Pulse Generator 2\t" + strAddress + "\tscpi-99-pattern\n=> 0", Scpi("list"));
  EXPECT_THAT(Scpi("remove bench"), StartsWith("tarvik-scpi: there is no instrument \"bench\" in "));
}

TEST_F(ScpiPrograms, WithNameAndProfileTheInstrumentNeedNotBeThere) {
  EXPECT_EQ("bench\tUSB::/dev/usbtmc0\tscpi-99\n=> 0", Scpi("add USB::/dev/usbtmc0 --name bench --profile scpi-99"));
  EXPECT_EQ("tarvik-scpi: there is an instrument \"bench\" already\n=> 2",
            Scpi("add USB::/dev/usbtmc1 --name bench --profile scpi-99"));
  EXPECT_EQ("tarvik-scpi: there is no profile \"mine\"\n=> 6", Scpi("add USB::/dev/usbtmc1 --name b --profile mine"));
  EXPECT_EQ("bench\tUSB::/dev/usbtmc0\tscpi-99\n=> 0", Scpi("list"));
}

TEST_F(ScpiPrograms, WhatCannotBeReachedOrReadIsToldAndChangesNothing) {
  instrument.reset();
  EXPECT_EQ("tarvik-scpi: " + strAddress + ": no connection: Connection refused\n=> 5", Scpi("add " + strAddress));
  EXPECT_THAT(Scpi("add bench"), StartsWith("tarvik-scpi: \"bench\" is no address."));
  EXPECT_EQ("=> 0", Scpi("list"));
  Put("tarvikvi/scpi-instruments.json", "{\"format\": \"tarvikvi-scpi-instruments\"");
  EXPECT_THAT(Scpi("list"), HasSubstr("scpi-instruments.json:\r\nline 1, column "));
  EXPECT_THAT(Scpi("add USB::/dev/usbtmc0 --name b --profile scpi-99"), HasSubstr("=> 6"));
  EXPECT_EQ("{\"format\": \"tarvikvi-scpi-instruments\"", Content("tarvikvi/scpi-instruments.json"));
  EXPECT_THAT(Scpi("wander"), HasSubstr("=> 2"));
}

TEST_F(ScpiPrograms, ProfileIsTriedQueryByQuery) {
  const std::string strTable = Scpi("check scpi-99-pattern " + strAddress);
  EXPECT_THAT(strTable, HasSubstr("timing.width[1]\t:SOUR1:PULS:WIDT?\t1.0E-07\n"));
  EXPECT_THAT(strTable, HasSubstr(" queries are answered as the profile says\n=> 0"));
  EXPECT_THAT(Scpi("check scpi-99 " + strAddress), HasSubstr(" queries are answered as the profile says\n=> 0"));
  Put("wrong.json", R"({"format": "tarvikvi-scpi-profile", "version": 1, "extends": "scpi-99", "settings": {
    "timing.width": {"command": ":SOURce{channel}:PULSe:BREAdth"},
    "levels.impedance": {"command": ":SOURce{channel}:FUNCtion:MODE"}}})");
  const std::string strWrong = Scpi("--timeout 200 check wrong.json " + strAddress);
  EXPECT_THAT(strWrong, HasSubstr("timing.width[1]\t:SOUR1:PULS:BREA?\tWRONG: " + strAddress +
                                  ": :SOUR1:PULS:BREA?: no answer within 200 ms\n"));
  EXPECT_THAT(strWrong, HasSubstr("levels.impedance[2]\t:SOUR2:FUNC:MODE?\tWRONG: \"VOLT\" is no number\n"));
  EXPECT_THAT(strWrong, HasSubstr("=> 1"));
}

TEST_F(ScpiPrograms, ProfileIsCheckedWithoutAnInstrument) {
  EXPECT_THAT(Scpi("check scpi-99"), HasSubstr("levels.high[1]\t:SOUR1:VOLT:LEV:IMM:HIGH {value}\t"));
  EXPECT_THAT(Scpi("check scpi-99"), HasSubstr("mode.trigger\t(kept in the driver)\n"));
  Put("wrong.json", R"({"format": "tarvikvi-scpi-profile", "version": 1, "extends": "scpi-99", "speed": 1})");
  EXPECT_EQ("tarvik-scpi: wrong.json:\r\nline 1: speed: there is no such key\n=> 6", Scpi("check wrong.json"));
  EXPECT_THAT(Scpi("profiles"), StartsWith("scpi-99\tThe subsystems of SCPI-99"));
}

TEST_F(ScpiPrograms, CompletionOffersCommandsInstrumentsAndProfiles) {
  Scpi("add USB::/dev/usbtmc0 --name 'left bench' --profile scpi-99");
  const auto offers = [&](const std::string &strWords) {
    return Says("PATH=$(dirname " PROGRAM "):$PATH bash -c '. " COMPLETION "; COMP_WORDS=(" + strWords +
                "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tarvik_scpi; printf \"%s|\" \"${COMPREPLY[@]}\"'");
  };
  EXPECT_EQ("check|=> 0", offers("tarvik-scpi ch"));
  EXPECT_EQ("left\\ bench|=> 0", offers("tarvik-scpi remove \"\""));
  EXPECT_EQ("scpi-99|scpi-99-pattern|=> 0", offers("tarvik-scpi add USB::/dev/usbtmc1 --profile sc"));
}

// ---- The driver ----

TEST_F(ScpiPrograms, SettingsOfTheInstrumentAreReachedFromTheCommandLine) {
  UseTheDriver();
  Scpi("add " + strAddress + " --name bench");
  const std::string strCtl = std::string(TARVIKCTL) + " ";
  EXPECT_EQ("bench (" + strAddress + ")\taddress 1\n=> 0", Says(strCtl + "list"));
  EXPECT_EQ("=> 0", Says(strCtl + "set bench timing.width[1]=50ns levels.high[2]=3.3V"));
  EXPECT_EQ("timing.width[1]=50ns\nlevels.high[2]=3.3V\n=> 0",
            Says(strCtl + "get bench timing.width[1] levels.high[2]"));
  EXPECT_THAT(Says(strCtl + "set bench timing.width[1]=2us"), HasSubstr("period below delay plus width"));
  EXPECT_EQ("timing.width[1]=50ns\n=> 0", Says(strCtl + "get bench timing.width[1]"));
}

TEST_F(ScpiPrograms, LogTellsWhatWentOverTheLine) {
  UseTheDriver();
  Scpi("add " + strAddress + " --name bench --log line.log");
  EXPECT_EQ("timing.width[1]=100ns\n=> 0", Says(std::string(TARVIKCTL) + " get bench timing.width[1]"));
  EXPECT_THAT(Content("line.log"), HasSubstr(strAddress + " > *IDN?\n"));
  EXPECT_THAT(Content("line.log"), HasSubstr(strAddress + " < Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31\n"));
}

TEST_F(ScpiPrograms, InstrumentThatIsSwitchedOffIsToldWithItsAddress) {
  UseTheDriver();
  Scpi("add " + strAddress + " --name bench");
  instrument.reset();
  EXPECT_THAT(Says(std::string(TARVIKCTL) + " get bench"),
              HasSubstr(strAddress + ": no connection: Connection refused"));
}

TEST_F(ScpiPrograms, WhatThePanelNeedsOfEveryDriverHoldsForThisOne) {
  Put("tarvikvi/scpi-instruments.json", R"({"format": "tarvikvi-scpi-instruments", "version": 1, "instruments": [
    {"name": "bench", "address": ")" + strAddress +
                                            R"(", "profile": "scpi-99-pattern"}]})");
  const std::string strSaid = Says("TARVIK_TEST_DRIVER=" SCPI_DRIVER " " ANY_DRIVER);
  EXPECT_THAT(strSaid, HasSubstr("[  PASSED  ]"));
  EXPECT_THAT(strSaid, testing::EndsWith("=> 0")) << strSaid;
}

/// Cases of the simulated instruments that an instrument behind SCPI cannot hold.
constexpr struct {
  const char *strCase, *strWhy;
} LeftOut[] = {
    {"DriverTest.ListsTheDefaultRack", "the list is that of scpi-instruments.json"},
    {"DriverTest.InformationRecordOfASlotInstrument", "an instrument on a line has no slot and no model code"},
    {"DriverTest.InformationRecordOfABox", "the address in the record is the number in the list"},
    {"DriverTest.ReservedInstrumentAnswersThatItDidNotOpen", "an instrument that does not answer is a failure"},
    {"DriverTest.WithoutASessionOperationsFailWithAReason", "the name in the reason has the address behind it"},
    {"DriverTest.ChannelsAreCountedFromOne", "the name in the reason has the address behind it"},
    {"DriverTest.RejectedCommitTellsEveryReasonAndLeavesTheInstrument", "the driver has no word for signal format 7"},
    {"DriverTest.VerboseErrorsTellValueAndRange", "the words are those of the SCPI front end"},
    {"DriverTest.WithoutErrorDetectionErrorsWaitInTheQueueOnce", "the words are those of the SCPI front end"},
    {"DriverTest.WarningLastsWhileItsConditionHolds", "the instrument always tells the value as well"},
    {"DriverTest.LimitSwitchIsOneForBothPairs", "the instrument always tells the value as well"},
    {"*/VP_110", "a model that lacks so much needs a profile of its own; the day's session has one"},
    {"*RoundTrip.FreshPanelsDefaultsAreTaken/*", "an edge of a picosecond is out of a command's range"},
};

TEST_F(ScpiPrograms, CasesOfTheSimulatedInstrumentsHoldOverScpiButForThoseThatTheLineForbids) {
  std::string strEntries, strFilter = "-";
  std::vector<std::unique_ptr<remote::ChildProcess>> arrInstruments;
  for (const char *strModel : {"VP-210", "VP-220", "VP-250F", "VB-200"}) {
    auto &process = arrInstruments.emplace_back(std::make_unique<remote::ChildProcess>(
        std::vector<std::string>{SCPI_SIMULATOR, "--port", "0", "--model", strModel}));
    const std::string strLine = process->ReadLine();
    strEntries += (strEntries.empty() ? "" : ",\n") + ("{\"name\": \"" + std::string(strModel)) +
                  "\", \"address\": \"TCPIP::127.0.0.1::" + strLine.substr(strLine.rfind(':') + 1) +
                  "::SOCKET\", \"profile\": \"scpi-99-pattern\"}";
  }
  Put("tarvikvi/scpi-instruments.json",
      "{\"format\": \"tarvikvi-scpi-instruments\", \"version\": 1, \"instruments\": [" + strEntries + "]}");
  for (const auto &[strCase, strWhy] : LeftOut) {
    strFilter += std::string(strCase) + ":";
    std::printf("left out: %s: %s\n", strCase, strWhy);
  }
  const std::string strSaid =
      Says("TARVIK_TEST_DRIVER=" SCPI_DRIVER " " SIMULATOR_CASES " --gtest_filter='" + strFilter + "'");
  EXPECT_THAT(strSaid, HasSubstr("[  PASSED  ] 28 tests."));
  EXPECT_THAT(strSaid, testing::EndsWith("=> 0")) << strSaid;
}

}  // namespace
}  // namespace tarvik::test
