#include <gmock/gmock.h>

#include "CommandLine.h"
#include "ProgramOutput.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::pair<std::string, int> Program(const std::string &strOptions) {
  return SaidBy("env -u QT_QPA_PLATFORM -u DISPLAY -u WAYLAND_DISPLAY XDG_RUNTIME_DIR=/tmp \"" PROGRAM "\" " +
                strOptions);
}

TEST(CommandLine, HelpNeedsNoScreen) {
  for (const char *strOption : {"--help", "-h", "--help-all"}) {
    const auto [strSaid, intStatus] = Program(strOption);
    EXPECT_EQ(intStatus, 0) << strOption;
    EXPECT_THAT(strSaid, AllOf(HasSubstr("Usage: "), HasSubstr("--server"), HasSubstr("--tour"), HasSubstr("--version"),
                               HasSubstr("--help-all")));
    EXPECT_EQ(strSaid.find("-platform") != std::string::npos, std::string(strOption) == "--help-all");
  }
}

TEST(CommandLine, VersionNeedsNoScreen) {
  for (const char *strOption : {"--version", "-v"}) {
    const auto [strSaid, intStatus] = Program(strOption);
    EXPECT_EQ(intStatus, 0) << strOption;
    EXPECT_EQ(strSaid, "TarvikVI " TARVIK_VERSION "\n");
  }
}

TEST(CommandLine, WithoutAScreenTheProgramSaysSoAndEnds) {
  for (const char *strOption : {"", "--server=lab", "-style fusion"}) {
    const auto [strSaid, intStatus] = Program(strOption);
    EXPECT_EQ(intStatus, 1) << strOption;
    EXPECT_THAT(strSaid, HasSubstr("tarvikvi: there is no display to open the panel on")) << strOption;
  }
}

TEST(CommandLine, WhatIsNotUnderstoodIsNamedAndEndsTheProgram) {
  const struct {
    const char *strOptions;
    int intStatus;
    const char *strNamed;
  } cases[] = {
      {"-platform offscreen somewhere", 2, "\"somewhere\" is not understood; tarvikvi --help tells what is"},
      {"-platform offscreen -- somewhere", 2, "\"somewhere\" is not understood; tarvikvi --help tells what is"},
      {"-platform offscreen --colour=red", 1, "colour"},
      {"--colour --platform offscreen", 1, "colour"},
      {"-platform offscreen --server", 1, "--server"},
      {"--tour", 1, "--tour"},
  };
  for (const auto &one : cases) {
    const auto [strSaid, intStatus] = Program(one.strOptions);
    EXPECT_EQ(intStatus, one.intStatus) << one.strOptions;
    EXPECT_THAT(strSaid, AllOf(HasSubstr(one.strNamed), Not(HasSubstr("no display")))) << one.strOptions;
  }
}

CommandLine Read(std::vector<std::string> arrArguments) {
  std::vector<char *> arrPointers;
  for (std::string &strArgument : arrArguments) arrPointers.push_back(strArgument.data());
  return CommandLine(static_cast<int>(arrPointers.size()), arrPointers.data());
}

TEST(CommandLine, AnEmptyServerIsThisMachineAndNoServerTheStoredOne) {
  EXPECT_EQ(Read({"tarvikvi", "--server", ""}).strServer, "");
  EXPECT_EQ(Read({"tarvikvi", "--server="}).strServer, "");
  EXPECT_EQ(Read({"tarvikvi"}).strServer, std::nullopt);
}

TEST(CommandLine, TheLastOfTwoServersCounts) {
  EXPECT_EQ(Read({"tarvikvi", "--server", "lab", "--server=bench"}).strServer, "bench");
}

TEST(CommandLine, WhatItDoesNotKnowIsLeftToTheToolkitInItsOrder) {
  const CommandLine line = Read({"tarvikvi", "-style", "fusion", "--tour", "out", "-reverse", "--platform=offscreen"});
  EXPECT_EQ(line.strTour, "out");
  EXPECT_EQ(line.intExit, std::nullopt);
  EXPECT_THAT(line.arrToolkit, ElementsAre("tarvikvi", "-style", "fusion", "-reverse", "--platform=offscreen"));
}

}  // namespace
}  // namespace tarvik::test
