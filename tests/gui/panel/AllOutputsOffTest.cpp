#include <gmock/gmock.h>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char *OnSwitches[] = {"optChannel1Output(0)", "optChannel2Output(0)", "optChannel1InvOutput(0)",
                                      "optChannel2InvOutput(0)"};
constexpr const char *OffSwitches[] = {"optChannel1Output(1)", "optChannel2Output(1)", "optChannel1InvOutput(1)",
                                       "optChannel2InvOutput(1)"};

/// What went to the outputs, in its order.
std::vector<std::string> Switched(const PanelSession &session) {
  return session.Calls({"SetOutput", "SetComplementOutput"});
}

const auto AllFourOff = ElementsAre(
    "IChannelLevels{Alpha.1}.SetOutput(False)", "IChannelLevels{Alpha.2}.SetOutput(False)",
    "IChannelLevels{Alpha.1}.SetComplementOutput(False)", "IChannelLevels{Alpha.2}.SetComplementOutput(False)");

/// What an instrument with two channels says of its outputs: normal 1 and 2, inverse 1 and 2.
std::vector<bool> Outputs(clsInstrInterface &instr) {
  udtTimingInfo timing;
  instr.GetTiming(timing);
  return {timing.fChannelOutputOn[1], timing.fChannelOutputOn[2], timing.fChannelOutputInvOn[1],
          timing.fChannelOutputInvOn[2]};
}

TEST(AllOutputsOff, SwitchesNormalAndInverseOutputsOfBothChannelsAndThePagesFollow) {
  SimulatorSession session;
  session.Open("VP-210");
  session->ShowPage(ePageTiming);
  for (const char *strOn : OnSwitches) session->Choose(strOn);
  ASSERT_THAT(Outputs(session.Instr()), Each(true));
  const auto marks = TarvikGUI::Panel::Of(*session.panel).state.meTabState;

  EXPECT_TRUE(session.panel->AllOutputsOff());

  EXPECT_THAT(Outputs(session.Instr()), Each(false));
  for (const char *strOff : OffSwitches) EXPECT_TRUE(session->Get<OptionButton>(strOff).isChecked()) << strOff;
  session->ShowPage(ePageLevels);
  EXPECT_TRUE(session->Get<OptionButton>("optChannel1Output(3)").isChecked());
  EXPECT_EQ(TarvikGUI::Panel::Of(*session.panel).state.meTabState, marks);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST(AllOutputsOff, ActsAtOnceAndMarksNothingAlsoWhereSwitchesWaitForTheUpload) {
  PanelSession session({.fAutoOutput = false});
  session.Choose("optChannel1Output(0)");
  session.Click("cmdUpload");
  session.panel->SetTabState(ePageIsDirty, ePageMode);
  ASSERT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
  const auto before = session.State().meTabState;
  session.Forget();
  EXPECT_TRUE(session.panel->AllOutputsOff());
  EXPECT_THAT(Switched(session), AllFourOff);
  EXPECT_FALSE(session.State().mfOutputOn[1]);
  EXPECT_EQ(session.State().meTabState, before) << "what was typed still waits, and nothing else does";
  session.Choose("optChannel2Output(0)");
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsDirty) << "the option is as before";
}

TEST(AllOutputsOff, AsksAnInstrumentWithOneChannelForThatChannelAlone) {
  PanelSession session({.config = {{"channels", 1}}});
  EXPECT_TRUE(session.panel->AllOutputsOff());
  EXPECT_THAT(Switched(session), ElementsAre("IChannelLevels{Alpha.1}.SetOutput(False)",
                                             "IChannelLevels{Alpha.1}.SetComplementOutput(False)"));
}

TEST(AllOutputsOff, WithoutASessionAnswersFalseAndSaysNothing) {
  PanelSession session({.fOpen = false});
  EXPECT_FALSE(session.panel->AllOutputsOff());
  EXPECT_THAT(session.driver.arrTrace, IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_FALSE(TarvikGUI().AllOutputsOff()) << "a panel that was never shown";
}

TEST(AllOutputsOff, OneThatFailsKeepsNoOtherOnAndKeepsItsMark) {
  PanelSession session;
  for (const char *strOn : OnSwitches) session.Choose(strOn);
  session.Forget();
  session.driver.FailMatching("IChannelLevels.SetOutput", 1, {-2147221503, "relay stuck"});
  EXPECT_FALSE(session.panel->AllOutputsOff());
  EXPECT_THAT(Switched(session), AllFourOff);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: relay stuck"));
  EXPECT_TRUE(session.State().mfOutputOn[1]) << "nobody knows that it is off";
  EXPECT_FALSE(session.State().mfOutputOn[2]);
  EXPECT_TRUE(session.Get<OptionButton>("optChannel1Output(0)").isChecked());
  EXPECT_TRUE(session.Get<OptionButton>("optChannel2Output(1)").isChecked());
}

TEST(AllOutputsOff, WarningsAreShownWhenEverythingIsOff) {
  PanelSession session;
  session.driver.arrWarnings = {"101,\"Width\"", "102,\"Delay\"", "103,\"Load\"", "104,\"Heat\"", "105,\"Fan\""};
  std::size_t lngSwitchedAtFirstBox = 0;
  session.host.OnEntry = [&](const HostEntry &entry) {
    if (entry.kind == HostEntry::Box && lngSwitchedAtFirstBox == 0) lngSwitchedAtFirstBox = Switched(session).size();
  };
  EXPECT_TRUE(session.panel->AllOutputsOff());
  EXPECT_EQ(lngSwitchedAtFirstBox, 4U);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre(StartsWith("box exclamation: Instrument Warning(s):")));
  EXPECT_TRUE(session.instr->GetWarningsEnabled());
}

TEST(AllOutputsOff, APanelThatItsHostEndsWhileABoxStandsIsNotTouchedAnyMore) {
  PanelSession session;
  session.driver.FailMatching("IChannelLevels.SetOutput", 1, {-2147221503, "relay stuck"});
  session.host.OnEntry = [&](const HostEntry &entry) {
    if (entry.kind == HostEntry::Box) session.panel.reset();
  };
  EXPECT_FALSE(session.panel->AllOutputsOff());
  EXPECT_EQ(session.panel, nullptr);
}

TEST(AllOutputsOff, ALogThatCannotBeWrittenEndsInABoxAndNotInTheHost) {
  PanelSession session;
  session.driver.FailMatching("IChannelLevels.SetOutput", 1, {-2147221503, "relay stuck"});
  session.host.logFailure = ScriptedFailure{70, "Permission denied"};
  EXPECT_FALSE(session.panel->AllOutputsOff());
  EXPECT_TRUE(session.instr->GetWarningsEnabled());
}

}  // namespace
}  // namespace tarvik::test
