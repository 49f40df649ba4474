#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "ProgramOutput.h"
#include "ServerProcess.h"
#include "settings/SetupFile.h"

namespace tarvik::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// A folder of its own, which is also where the program looks for whatever a user has.
struct TarvikCtl : testing::Test {
  TarvikCtl() {
    std::string strName = (fs::temp_directory_path() / "tarvikctl-XXXXXX").string();
    folder = ::mkdtemp(strName.data());
  }
  ~TarvikCtl() override { fs::remove_all(folder); }

  std::string Environment() const {
    const std::string strFolder = folder.string();
    return "cd " + strFolder + "; HOME=" + strFolder + " XDG_CONFIG_HOME=" + strFolder + " XDG_DATA_HOME=" + strFolder +
           " XDG_STATE_HOME=" + strFolder + " ";
  }
  /// What the program says on both outputs, and behind it the exit status: "text=> 0".
  std::string Says(const std::string &strArguments, const std::string &strAfter = "") const {
    const auto [strSaid, intExit] = SaidBy(Environment() + PROGRAM + " " + strOptions + strArguments + strAfter);
    return strSaid + "=> " + std::to_string(intExit);
  }
  std::string Content(const std::string &strName) const {
    std::ifstream stream(folder / strName, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void Put(const std::string &strName, const std::string &strText) const { std::ofstream(folder / strName) << strText; }

  fs::path folder;
  std::string strOptions;
};

// ---- On the instruments of this machine ----

TEST_F(TarvikCtl, ListsTheInstrumentsOfTheDriver) {
  EXPECT_EQ(Says("list"),
            "VP-210\tslot 3, address 24\nVP-110\tslot 4, address 32\nVP-220\tslot 5, address 40\n"
            "VP-250F\tslot 7, address 48\nVB-200\taddress 9\nVP-210 reserved\tslot 9, address 56\n=> 0");
  EXPECT_THAT(Says("list --json"),
              StartsWith("[\n  {\"name\": \"VP-210\", \"address\": 24, \"slot\": 3, \"model\": 528},\n"));
}

TEST_F(TarvikCtl, TellsWhoAnInstrumentIs) {
  EXPECT_EQ(Says("info VP-110"),
            "product: VP-110 Pulse Generator\nserial: V110-01932\nversion: 2.30\noptions: 010 VXI trigger\n"
            "channels: 1\nlacks: ChannelMath, Complement, Impedance, LoadCompensation, TrailingEdge\n=> 0");
  EXPECT_THAT(Says("info VP-110 --json"), HasSubstr("  \"channels\": 1,\n  \"lacks\": [\"ChannelMath\", "));
}

TEST_F(TarvikCtl, AnswersSettingsExactly) {
  EXPECT_EQ(Says("get VP-210 timing.width[1] timing.period levels.offset[2] mode.trigger levels.output[1]"),
            "timing.width[1]=100ns\ntiming.period=1us\nlevels.offset[2]=1.25V\nmode.trigger=Continuous\n"
            "levels.output[1]=Off\n=> 0");
  EXPECT_EQ(Says("get VP-210 --json timing.width[1] levels.output[1] pattern.strobe"),
            "{\n  \"timing.width[1]\": 1e-07,\n  \"levels.output[1]\": false,\n"
            "  \"pattern.strobe\": {\"length\": 16, \"words\": [\"1: 0000\"]}\n}\n=> 0");
  const std::string strAll = Says("get VP-110");
  EXPECT_THAT(strAll, StartsWith("mode.trigger=Continuous\n"));
  EXPECT_THAT(strAll, testing::EndsWith("pll.frequency=5MHz\n=> 0"));
  EXPECT_THAT(strAll, testing::Not(HasSubstr("[2]")));
}

TEST_F(TarvikCtl, ListsAllSettings) {
  const std::string strKeys = Says("keys");
  EXPECT_THAT(strKeys, StartsWith("mode.trigger\tMode: Trigger Mode\tContinuous, Triggered, Gated or ExtWidth\n"));
  EXPECT_THAT(strKeys, HasSubstr("\ntiming.width[2]\tTiming: Width, channel 2\t1.5ns to 999.5s\n"));
  EXPECT_THAT(Says("keys --json"),
              HasSubstr("{\"key\": \"timing.width[1]\", \"page\": \"Timing\", \"caption\": \"Width\", \"unit\": \"s\", "
                        "\"min\": 1.5e-09, \"max\": 999.5}"));
}

TEST_F(TarvikCtl, SaysWhatIsWrongWithTheArguments) {
  EXPECT_EQ(Says(""), "tarvikctl: A subcommand is required; tarvikctl --help tells what is possible\n=> 2");
  EXPECT_EQ(Says("get"), "tarvikctl: NAME is required; tarvikctl --help tells what is possible\n=> 2");
  EXPECT_EQ(Says("get VP-210 timing.wid mode"),
            "tarvikctl: there is no setting \"timing.wid\"; tarvikctl keys lists all\n"
            "tarvikctl: there is no setting \"mode\"; tarvikctl keys lists all\n=> 2");
  EXPECT_EQ(Says("set VP-210 timing.width[1]"), "tarvikctl: \"timing.width[1]\" is not KEY=VALUE\n=> 2");
  EXPECT_EQ(Says("set VP-210 timing.width[1]=5kV timing.delay[1]=-5 levels.output[1]=on mode.trigger=never"),
            "tarvikctl: timing.width[1]: \"5kV\" is no number with a unit like 50ns\n"
            "tarvikctl: mode.trigger: \"never\" is not Continuous, Triggered, Gated or ExtWidth\n"
            "tarvikctl: timing.delay[1]: -5s is out of the range 0s to 999.5s\n=> 2");
  EXPECT_THAT(Says("--help"), HasSubstr("Exit status: 0 done"));
  EXPECT_EQ(Says("--version"), "TarvikVI " TARVIK_VERSION "\n=> 0");
}

TEST_F(TarvikCtl, AnInstrumentThatIsNotThereIsToldByItsName) {
  EXPECT_EQ(Says("info VP-999"),
            "tarvikctl: there is no instrument \"VP-999\"; the driver knows \"VP-210\", \"VP-110\", \"VP-220\", "
            "\"VP-250F\", \"VB-200\", \"VP-210 reserved\"\n=> 3");
  EXPECT_THAT(Says("diff VP-210 nothing.json"), testing::EndsWith("; nor is there a file of this name\n=> 3"));
  EXPECT_EQ(Says("info 'VP-210 reserved'"), "tarvikctl: \"VP-210 reserved\" does not open\n=> 4");
}

TEST_F(TarvikCtl, WhatAModelLacksIsRefused) {
  EXPECT_EQ(Says("get VP-110 timing.width[2] levels.load[1]"),
            "tarvikctl: timing.width[2]: the instrument does not have it\n"
            "tarvikctl: levels.load[1]: the instrument does not have it\n=> 4");
  EXPECT_EQ(Says("set VP-220 mode.trigger=gated mode.armingSource=ttlt3"),
            "tarvikctl: mode.armingSource: the instrument does not have Ttlt3\n=> 2");
  EXPECT_EQ(Says("pattern get VP-110 2"), "tarvikctl: the instrument has one channel\n=> 4");
}

TEST_F(TarvikCtl, SavesAFileThatAgreesWithItsInstrument) {
  EXPECT_EQ(Says("save VP-210 a.json"), "=> 0");
  EXPECT_EQ(SetupToText(LoadSetup(folder / "a.json")), Content("a.json"));
  EXPECT_EQ(Says("save VP-210 -"), Content("a.json") + "=> 0");
  EXPECT_EQ(Says("diff a.json VP-210"), "=> 0");
  EXPECT_EQ(Says("diff --json a.json a.json"), "[]\n=> 0");
  EXPECT_EQ(Says("load VP-210 a.json"), "=> 0");
  EXPECT_EQ(Says("load VP-210 - < a.json"), "=> 0");
}

TEST_F(TarvikCtl, DifferencesAreAnExitStatus) {
  EXPECT_EQ(Says("diff VP-210 VP-220"), "trglevels.vxiLine: Ttlt0 | -\ntrglevels.vxiSource: Trigger | -\n=> 1");
  EXPECT_EQ(Says("diff --json VP-220 VP-210"),
            "[\n  {\"key\": \"trglevels.vxiLine\", \"page\": \"Trg-Lev\", \"setting\": \"VXI Trigger Enable\", "
            "\"first\": \"\", \"second\": \"Ttlt0\"},\n"
            "  {\"key\": \"trglevels.vxiSource\", \"page\": \"Trg-Lev\", \"setting\": \"VXI Trigger Source\", "
            "\"first\": \"\", \"second\": \"Trigger\"}\n]\n=> 1");
  Says("save VP-210 a.json");
  std::string strOther = Content("a.json");
  strOther.replace(strOther.find("1e-07"), 5, "1.0000001e-07");
  Put("b.json", strOther);
  EXPECT_EQ(Says("diff a.json b.json"), "=> 0");
  EXPECT_EQ(Says("diff --exact a.json b.json"), "timing.width[1]: 100.00000 ns | 100.00001 ns\n=> 1");
}

TEST_F(TarvikCtl, AFileThatIsNotUnderstoodReachesNoInstrument) {
  EXPECT_EQ(Says("load VP-210 ./none.json"), "tarvikctl: Cannot load ./none.json: There is no such file\n=> 6");
  Put("bad.json", "{\"format\": \"tarvikvi-setup\", \"version\": 7}");
  EXPECT_EQ(Says("load VP-210 bad.json"),
            "tarvikctl: Cannot load bad.json:\n"
            "tarvikctl: line 1: version: the file has version 7, this program reads version 1\n=> 6");
  EXPECT_EQ(Says("save VP-210 none/a.json"), "tarvikctl: Cannot save none/a.json: No such file or directory\n=> 6");
  EXPECT_EQ(Says("save VP-210 /dev/full"), "tarvikctl: Cannot save /dev/full: It is no regular file\n=> 6");
  EXPECT_EQ(Says("get VP-210", " > /dev/full"), "=> 6");
}

TEST_F(TarvikCtl, ASetupOfAnotherModelListsWhatItLeftOut) {
  Says("save VB-200 a.json");
  const std::string strSaid = Says("load VP-110 a.json");
  EXPECT_THAT(strSaid, StartsWith("tarvikctl: left out: mode.pulseType[2]: the instrument has one channel\n"));
  EXPECT_THAT(strSaid, HasSubstr("tarvikctl: left out: levels.load[1]: the instrument does not have it\n"));
  EXPECT_THAT(strSaid,
              testing::EndsWith("tarvikctl: kept, since the file does not tell it: trglevels.vxiLine\n"
                                "tarvikctl: kept, since the file does not tell it: trglevels.vxiSource\n=> 0"));
  EXPECT_THAT(Says("load --strict VP-110 a.json"), testing::EndsWith("=> 4"));
}

TEST_F(TarvikCtl, RunsCommandsOfTheInstrument) {
  EXPECT_EQ(Says("errors VP-210"), "=> 0");
  EXPECT_EQ(Says("reset VP-210"), "=> 0");
  EXPECT_EQ(Says("selftest VP-210"), "Self test passed\n=> 0");
  EXPECT_EQ(Says("selftest VP-210 --json"), "[\n  \"Self test passed\"\n]\n=> 0");
}

TEST_F(TarvikCtl, WithoutADriverThereIsNoConnection) {
  EXPECT_EQ(Says("--server tarvik+insecure://127.0.0.1:1 list").substr(0, 11), "tarvikctl: ");
  EXPECT_THAT(Says("--server tarvik+insecure://127.0.0.1:1 list"), testing::EndsWith("=> 5"));
  EXPECT_THAT(Says("--server nonsense list"), testing::EndsWith("=> 5"));
}

// ---- On the instruments of a server, which keep their settings between two runs ----

struct TarvikCtlOnServer : TarvikCtl {
  TarvikCtlOnServer() : server(remote::ServerProcess::Insecure(), {"XDG_DATA_HOME=" + folder.string()}) {
    strOptions = "--server " + server.Url() + " ";
  }

  remote::ServerProcess server;
};

TEST_F(TarvikCtlOnServer, ListsTheInstrumentsOfTheServer) { EXPECT_THAT(Says("list"), StartsWith("VP-210\tslot 3")); }

TEST_F(TarvikCtlOnServer, SetsSeveralSettingsInOneTransaction) {
  EXPECT_EQ(Says("set VP-210 timing.width[1]=50ns levels.high[2]=3.3V levels.output[2]=on mode.trigger=gated "
                 "mode.armingSource=Ttlt3"),
            "=> 0");
  EXPECT_EQ(Says("get VP-210 timing.width[1] levels.high[2] levels.output[2] mode.trigger mode.armingSource"),
            "timing.width[1]=50ns\nlevels.high[2]=3.3V\nlevels.output[2]=On\nmode.trigger=Gated\n"
            "mode.armingSource=Ttlt3\n=> 0");
}

TEST_F(TarvikCtlOnServer, AnotherLevelFormatLeavesTheLevelsAlone) {
  Says("set VP-210 levels.high[1]=3V levels.low[1]=1V");
  EXPECT_EQ(Says("set VP-210 levels.format[1]=OffsetAmplitude"), "=> 0");
  EXPECT_EQ(Says("get VP-210 levels.high[1] levels.low[1]"), "levels.high[1]=3V\nlevels.low[1]=1V\n=> 0");
}

TEST_F(TarvikCtlOnServer, WhatTheInstrumentRefusesChangesNothing) {
  Says("save VP-210 before.json");
  EXPECT_EQ(Says("set VP-210 timing.delay[2]=10ns timing.width[1]=5ms levels.low[1]=10V"),
            "tarvikctl: Instrument Errors(s):\n"
            "tarvikctl: -221,Settings conflict: period below delay plus width of channel 1\n"
            "tarvikctl: -221,Settings conflict: low level above high level of channel 1\n=> 4");
  EXPECT_EQ(Says("diff --exact before.json VP-210"), "=> 0");
}

TEST_F(TarvikCtlOnServer, TakesBackWhatItAnswered) {
  Says("set VP-210 timing.frequency=3MHz levels.format[1]=HighLow levels.high[1]=1.2345678V pattern.rz[2]=off");
  Says("get VP-210", " > all.txt");
  Says("reset VP-210");
  EXPECT_THAT(Says("diff VP-210 VB-200"), testing::Not(HasSubstr("timing.frequency")));
  const auto [strSaid, intExit] =
      SaidBy(Environment() + "xargs -d '\\n' " PROGRAM " " + strOptions + "set VP-210 < all.txt");
  EXPECT_EQ(strSaid, "");
  EXPECT_EQ(intExit, 0);
  EXPECT_EQ(Says("get VP-210", " | diff - all.txt"), "=> 0");
}

TEST_F(TarvikCtlOnServer, SaysWhatTheModesDoNotUse) {
  EXPECT_EQ(Says("set VP-210 mode.burstLength=7 timing.width[1]=50ns"),
            "tarvikctl: mode.burstLength: not used in these modes, so the instrument may not have taken it\n=> 0");
  EXPECT_EQ(Says("set VP-210 mode.burstLength=7 mode.pulse=burst"), "=> 0");
  EXPECT_EQ(Says("get VP-210 mode.burstLength timing.width[1]"), "mode.burstLength=7\ntiming.width[1]=50ns\n=> 0");
  EXPECT_EQ(Says("set VP-210 mode.burstLength=1"),
            "tarvikctl: mode.burstLength: 1 is out of the range 2 to 65536\n=> 2");
}

TEST_F(TarvikCtlOnServer, ASavedSetupComesBackAfterAReset) {
  Says("set VP-210 timing.frequency=3MHz levels.high[1]=1.2345678V pattern.rz[2]=off mode.pulse=pattern");
  Says("pattern prbs VP-210 strobe 9 16384");
  Says("save VP-210 a.json");
  EXPECT_EQ(Says("reset VP-210"), "=> 0");
  EXPECT_THAT(Says("diff a.json VP-210"), testing::EndsWith("=> 1"));
  EXPECT_EQ(Says("load VP-210 a.json"), "=> 0");
  EXPECT_EQ(Says("diff --exact a.json VP-210"), "=> 0");
}

TEST_F(TarvikCtlOnServer, MovesPatternsFromAndToFiles) {
  Put("bits.txt", "1010 1010\n1\n");
  EXPECT_EQ(Says("pattern set VP-210 1 bits.txt"), "=> 0");
  EXPECT_EQ(Says("pattern get VP-210 1"), "9 bits\n1: AA80\n=> 0");
  EXPECT_EQ(Says("pattern get VP-210 1 --bits"), "101010101\n=> 0");
  EXPECT_EQ(Says("pattern get VP-210 1 words.txt"), "=> 0");
  EXPECT_EQ(Content("words.txt"), "9 bits\n1: AA80\n");
  EXPECT_EQ(Says("pattern set VP-210 2 words.txt"), "=> 0");
  EXPECT_EQ(Says("pattern get VP-210 2 --bits"), "101010101\n=> 0");
  EXPECT_EQ(Says("pattern prbs VP-210 strobe 7 127"), "=> 0");
  const std::string strBits = Says("pattern get VP-210 strobe --bits");
  EXPECT_EQ(std::count(strBits.begin(), strBits.end() - 4, '1'), 64);
  Put("bad.txt", "4 bits\n1: FF00\n");
  EXPECT_EQ(Says("pattern set VP-210 1 bad.txt"), "tarvikctl: no pattern: bits are set behind the length of 4\n=> 6");
  Put("bad.txt", "hello\n");
  EXPECT_EQ(
      Says("pattern set VP-210 1 bad.txt"),
      "tarvikctl: no pattern: it begins neither with its length, as \"16 bits\", nor with the digits 0 and 1\n=> 6");
  EXPECT_EQ(Says("pattern get VP-210 1"), "9 bits\n1: AA80\n=> 0");
}

TEST_F(TarvikCtlOnServer, AServerThatIsGoneIsNoConnection) {
  EXPECT_EQ(Says("reset VP-210"), "=> 0");
  server.End(SIGTERM);
  EXPECT_THAT(Says("reset VP-210"), testing::EndsWith("=> 5"));
}

// ---- In a shell ----

std::string Completed(const std::string &strWords, const std::string &strEnvironment) {
  const std::string strScript =
      "source " COMPLETION "; COMP_WORDS=(" + strWords +
      "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); PATH=" + fs::path(PROGRAM).parent_path().string() +
      ":$PATH; _tarvikctl; printf \"%s\\n\" \"${COMPREPLY[@]}\"";
  return SaidBy(strEnvironment + "bash -c '" + strScript + "'").first;
}

TEST_F(TarvikCtl, TheShellCompletesCommandsInstrumentsAndSettings) {
  EXPECT_EQ(Completed("tarvikctl se", Environment()), "set\nselftest\n");
  EXPECT_EQ(Completed("tarvikctl info VB", Environment()), "VB-200\n");
  EXPECT_EQ(Completed("tarvikctl get VP-210 timing.w", Environment()), "timing.width[1]\ntiming.width[2]\n");
  EXPECT_EQ(Completed("tarvikctl set VP-210 pll.", Environment()), "pll.source=\npll.frequency=\n");
  EXPECT_EQ(Completed("tarvikctl pattern p", Environment()), "prbs\n");
  EXPECT_EQ(Completed("tarvikctl pattern get VP-210 s", Environment()), "strobe\n");
  EXPECT_EQ(Completed("tarvikctl --js", Environment()), "--json\n");
}

}  // namespace
}  // namespace tarvik::test
