#include "settings/KnownSetup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SetupSamples.h"

namespace tarvik::test {
namespace {

bool Knows(const KnownSetup &known, std::string_view strKey) {
  const auto place = FindSetting(strKey);
  return known.Knows(*place->setting, place->lngChannel);
}

TEST(KnownSetup, KnowsWhatAReadPageTold) {
  KnownSetup known;
  known.TakeRead(ePageLimits, SampleSetup());
  EXPECT_TRUE(Knows(known, "limits.highVoltage[2]"));
  EXPECT_EQ(known.Values().Limits, SampleSetup().Limits);
  EXPECT_FALSE(Knows(known, "timing.width[1]"));
  EXPECT_FALSE(Knows(known, "mode.trigger"));
  known.Forget();
  EXPECT_FALSE(Knows(known, "limits.highVoltage[2]"));
  EXPECT_EQ(known.Values().Limits, udtLimitsInfo());
}

TEST(KnownSetup, TheTimingTellsOutputsAndPulseTypes) {
  tarvik::Setup read = SampleSetup();
  read.Levels = {};
  read.Mode = {};
  KnownSetup known;
  known.TakeRead(ePageTiming, read);
  EXPECT_TRUE(Knows(known, "levels.output[1]"));
  EXPECT_TRUE(known.Values().Levels.fChannelOutputOn[1]);
  EXPECT_TRUE(known.Values().Levels.fChannelOutputInvOn[2]);
  EXPECT_TRUE(Knows(known, "mode.pulseType[2]"));
  EXPECT_TRUE(known.Values().Timing.fDoublePulse[2]);
  EXPECT_FALSE(Knows(known, "levels.high[1]"));
}

TEST(KnownSetup, AModeTellsPulseTypesOrBits) {
  tarvik::Setup read;
  read.Mode = SampleSetup().Mode;
  KnownSetup known;
  known.TakeRead(ePageMode, read);
  EXPECT_TRUE(Knows(known, "mode.pulseType[1]"));
  EXPECT_TRUE(known.Values().Timing.fDoublePulse[2]);
  EXPECT_FALSE(Knows(known, "pattern.rz[1]"));
  read.Mode.PulseMode = ePulsePattern;
  known.TakeRead(ePageMode, read);
  EXPECT_TRUE(Knows(known, "pattern.rz[1]"));
  EXPECT_FALSE(known.Values().fRz[1]);
  EXPECT_TRUE(known.Values().fRz[2]);
  EXPECT_TRUE(known.Values().Timing.fDoublePulse[2]) << "a pattern says nothing about the pulses";
}

TEST(KnownSetup, AnotherPulseTypeHasADelayThatIsNotKnown) {
  KnownSetup known;
  known.TakeRead(ePageMode, SampleSetup());
  known.TakeRead(ePageTiming, SampleSetup());
  ASSERT_TRUE(Knows(known, "timing.delay[1]"));
  tarvik::Setup sent = SampleSetup();
  sent.Timing.fDoublePulse[1] = True;
  sent.Mode.PulseType[1] = eTypeDouble;
  known.TakeSent(ePageMode, sent);
  EXPECT_FALSE(Knows(known, "timing.delay[1]"));
  EXPECT_TRUE(Knows(known, "timing.delay[2]"));
  known.TakeSent(ePageTiming, sent);
  EXPECT_TRUE(Knows(known, "timing.delay[1]"));
}

TEST(KnownSetup, TheModePageSendsNoPulseTypeWithTheExternalWidth) {
  KnownSetup known;
  known.TakeRead(ePageMode, SampleSetup());
  known.TakeRead(ePageTiming, SampleSetup());
  tarvik::Setup sent = SampleSetup();
  sent.Mode.TriggerMode = eTriggerExtWidth;
  sent.Timing.fDoublePulse[1] = True;
  sent.Mode.PulseType[1] = eTypeDouble;
  known.TakeSent(ePageMode, sent);
  EXPECT_EQ(known.Values().Mode.TriggerMode, eTriggerExtWidth);
  EXPECT_FALSE(known.Values().Timing.fDoublePulse[1]);
  EXPECT_TRUE(Knows(known, "timing.delay[1]"));
  known.TakeSent(ePageTiming, sent);
  EXPECT_TRUE(known.Values().Timing.fDoublePulse[1]);
}

TEST(KnownSetup, TheDriverTellsASlopeOrThePll) {
  tarvik::Setup read = SampleSetup();
  KnownSetup known;
  known.TakeRead(ePageMode, read);
  EXPECT_TRUE(Knows(known, "mode.armingLevel"));
  EXPECT_FALSE(Knows(known, "mode.pllFrequency"));
  known.Forget();
  read.Mode.ArmingSource = eArmPll;
  known.TakeRead(ePageMode, read);
  EXPECT_FALSE(Knows(known, "mode.armingLevel"));
  EXPECT_TRUE(Knows(known, "mode.pllFrequency"));
  EXPECT_TRUE(Knows(known, "mode.pllPeriod"));
}

TEST(KnownSetup, AModeThatWasSentLeavesWhatItDoesNotUse) {
  KnownSetup known;
  known.TakeRead(ePageMode, SampleSetup());
  tarvik::Setup sent = SampleSetup();
  sent.Mode.TriggerMode = eTriggerContinuous;
  sent.Mode.PulseMode = ePulseStream;
  sent.Mode.BurstLength = 99;
  sent.Mode.TriggerSlope = eKeepSlope;
  sent.Mode.ArmingSource = eKeepArmingSource;
  known.TakeSent(ePageMode, sent);
  EXPECT_EQ(known.Values().Mode.TriggerMode, eTriggerContinuous);
  EXPECT_EQ(known.Values().Mode.PulseMode, ePulseStream);
  EXPECT_EQ(known.Values().Mode.BurstLength, 7);
  EXPECT_EQ(known.Values().Mode.TriggerSlope, eSlopeRising);
  EXPECT_EQ(known.Values().Mode.ArmingSource, eArmExternal);
}

TEST(KnownSetup, LevelsChangeTheirWayOfWritingAsAWhole) {
  KnownSetup known;
  known.TakeRead(ePageLevels, SampleSetup());
  tarvik::Setup sent = SampleSetup();
  sent.Levels.eOutputLevel[1] = eLevelOffsetAmplitude;
  sent.Levels.dblAmplOrHigh[1] = 1;
  sent.Levels.dblOffsetOrLow[1] = 4;
  known.TakeSent(ePageLevels, sent);
  EXPECT_EQ(std::get<Double>(FindSetting("levels.high[1]")->setting->Read(known.Values(), 1)), 3);
  EXPECT_EQ(std::get<Double>(FindSetting("levels.low[1]")->setting->Read(known.Values(), 1)), -1);
  EXPECT_EQ(known.Values().Levels, sent.Levels);
}

TEST(KnownSetup, AnOutputIsKnownByItself) {
  KnownSetup known;
  known.TakeOutput(2, True, True);
  EXPECT_TRUE(Knows(known, "levels.complement[2]"));
  EXPECT_FALSE(Knows(known, "levels.complement[1]"));
  EXPECT_FALSE(Knows(known, "levels.output[2]"));
  EXPECT_TRUE(known.Values().Levels.fChannelOutputInvOn[2]);
}

TEST(KnownSetup, ARowThatCouldNotBeReadStaysUnknown) {
  tarvik::Setup read = SampleSetup();
  read.Pattern[1] = {};
  KnownSetup known;
  known.TakeRead(ePagePattern, read);
  EXPECT_TRUE(Knows(known, "pattern.stream[1]"));
  EXPECT_FALSE(Knows(known, "pattern.stream[2]"));
}

TEST(KnownSetup, AnUploadHasToSendThePagesThatDifferOrAreUnknown) {
  KnownSetup known;
  EXPECT_THAT(known.PagesToSend(SampleSetup()), testing::ElementsAre(ePageMode, ePageTiming, ePageLevels, ePagePattern,
                                                                     ePageLimits, ePageTrigLev, ePageConfig));
  for (const TabNumEnum ePage :
       {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
    known.TakeRead(ePage, SampleSetup());
  EXPECT_THAT(known.PagesToSend(SampleSetup()), testing::IsEmpty());
  tarvik::Setup setup = SampleSetup();
  setup.Limits.dblHighVoltage[1] = 7;
  EXPECT_THAT(known.PagesToSend(setup), testing::ElementsAre(ePageLimits));
  setup.Levels.fChannelOutputOn[1] = setup.Timing.fChannelOutputOn[1] = False;
  EXPECT_THAT(known.PagesToSend(setup), testing::ElementsAre(ePageTiming, ePageLevels, ePageLimits));
}

}  // namespace
}  // namespace tarvik::test
