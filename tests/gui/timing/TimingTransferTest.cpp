#include <gmock/gmock.h>

#include "PanelSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr Long Failing = static_cast<Long>(0x80004005u);

class TimingTransfer : public testing::Test {
 protected:
  explicit TimingTransfer(const StandInConfig &config = {})
      : session({.config = config, .fAutoDownload = false, .fAutoOutput = false}) {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePageTiming);
    ChannelSettings &first = Channel(1), &second = Channel(2);
    first.dblFrequency = second.dblFrequency = 2e6;
    first.dblSingleDelay = 3e-8;
    first.dblWidth = 1e-7;
    first.dblLeading = 4e-9;
    first.dblTrailing = 5e-9;
    first.fOutput = True;
    first.lngCoupling = 0;
    second.dblSingleDelay = 6e-8;
    second.dblWidth = 2e-7;
    second.dblLeading = 7e-9;
    second.dblTrailing = 8e-9;
    second.fComplement = True;
    second.lngCoupling = 1;
    session.Forget();
  }

  ChannelSettings &Channel(Long lngChannel) {
    return session.driver.Find("Alpha")->settings.channels[static_cast<std::size_t>(lngChannel - 1)];
  }
  EngrSpin &Field(const char *strName) { return session.Field(strName); }

  PanelSession session;
};

TEST_F(TimingTransfer, ADownloadFillsBothChannels) {
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esPeriodOrFreq").Value(), 5e-7);
  EXPECT_DOUBLE_EQ(Field("esDelay(0)").Value(), 3e-8);
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Value(), 1e-7);
  EXPECT_DOUBLE_EQ(Field("esLeadingEdge(0)").Value(), 4e-9);
  EXPECT_DOUBLE_EQ(Field("esTrailingEdge(0)").Value(), 5e-9);
  EXPECT_DOUBLE_EQ(Field("esDelay(1)").Value(), 6e-8);
  EXPECT_DOUBLE_EQ(Field("esWidth(1)").Value(), 2e-7);
  EXPECT_TRUE(session.Get<OptionButton>("optChannel1Output(0)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optChannel1InvOutput(1)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optChannel2Output(1)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optChannel2InvOutput(0)").Value());
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageNeedsDownloading);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(TimingTransfer, ACoupledEdgeShowsTheLeadingValueAndStaysEnabled) {
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esLeadingEdge(1)").Value(), 7e-9);
  EXPECT_DOUBLE_EQ(Field("esTrailingEdge(1)").Value(), 7e-9);
  EXPECT_TRUE(session.State().mfTeEqLe[1]);
  EXPECT_TRUE(Field("esTrailingEdge(1)").Enabled());
  EXPECT_TRUE(session.Get<ToolPopup>("toolPopupTEdge(1)").Enabled());
}

TEST_F(TimingTransfer, ADownloadInFrequencyFormShowsTheFrequency) {
  session.Click("cmdPeriodOrFreq");
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esPeriodOrFreq").Value(), 2e6);
  EXPECT_EQ(session.Get<CommandButton>("cmdPeriodOrFreq").Caption(), "Frequency");
}

TEST_F(TimingTransfer, ADownloadNeverPushesThePeriodAndCutsNoWidth) {
  Channel(1).dblWidth = 3e-6;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esPeriodOrFreq").Value(), 5e-7);
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Value(), 3e-6);
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 3e-6);
  EXPECT_DOUBLE_EQ(Field("esWidth(1)").Max(), 5e-7) << "the other channel's fits";
}

TEST_F(TimingTransfer, TheRangesOfWhatStoodThereBeforeCutNothingOfADownload) {
  session.Click("cmdDownload");
  session.Type("esPeriodOrFreq", "1us");
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 1e-6);
  for (const Long i : {1, 2}) {
    Channel(i).dblFrequency = 1e3;
    Channel(i).dblWidth = 1e-4;
    Channel(i).dblSingleDelay = 2e-4;
  }
  session.Click("cmdDownload");
  for (const char *strChannel : {"(0)", "(1)"}) {
    EXPECT_DOUBLE_EQ(Field(("esWidth" + std::string(strChannel)).c_str()).Value(), 1e-4);
    EXPECT_DOUBLE_EQ(Field(("esDelay" + std::string(strChannel)).c_str()).Value(), 2e-4);
    EXPECT_DOUBLE_EQ(Field(("esWidth" + std::string(strChannel)).c_str()).Max(), 1e-3);
    EXPECT_DOUBLE_EQ(Field(("esDelay" + std::string(strChannel)).c_str()).Max(), 1e-3);
  }
}

TEST_F(TimingTransfer, ADownloadInFrequencyFormCutsNothingEither) {
  session.Click("cmdDownload");
  session.Click("cmdPeriodOrFreq");
  session.Type("esPeriodOrFreq", "100MHz");
  for (const Long i : {1, 2}) Channel(i).dblFrequency = 1e3;
  Channel(1).dblWidth = 1e-4;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esPeriodOrFreq").Value(), 1e3);
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Value(), 1e-4);
}

TEST_F(TimingTransfer, ADelayBeyondThePeriodStands) {
  Channel(2).dblSingleDelay = 2e-6;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esDelay(1)").Value(), 2e-6);
  EXPECT_DOUBLE_EQ(Field("esDelay(1)").Max(), 2e-6);
}

TEST_F(TimingTransfer, DoublePulsesThatTheirRangesWouldCutStand) {
  session.State().mfDoublePulse[1] = True;
  Channel(1).lngPulseType = 2;
  Channel(1).dblWidth = 4e-7;
  Channel(1).dblDoubleDelay = 3e-7;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Value(), 4e-7);
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 4e-7) << "half the period is 250 ns";
  EXPECT_DOUBLE_EQ(Field("esDelay(0)").Value(), 3e-7);
  EXPECT_DOUBLE_EQ(Field("esDelay(0)").Min(), 3e-7) << "the width is 400 ns";
}

TEST_F(TimingTransfer, WithNoOutputOnADownloadLeavesTheRangesOfTheForm) {
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 5e-7);
  for (const Long i : {1, 2}) Channel(i).fOutput = Channel(i).fComplement = False;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Min(), 1.5e-9);
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 999.5);
  EXPECT_DOUBLE_EQ(Field("esDelay(1)").Min(), 0);
  EXPECT_DOUBLE_EQ(Field("esDelay(1)").Max(), 999.5);
}

TEST_F(TimingTransfer, AFailingDownloadOpensNoRange) {
  session.Click("cmdDownload");
  session.driver.FailMatching("IChannelTiming.GetWidth", 1, {Failing, "broken"});
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 5e-7);
  EXPECT_DOUBLE_EQ(Field("esDelay(0)").Max(), 5e-7);
}

TEST_F(TimingTransfer, TheNextEditAfterADownloadLimitsAgain) {
  Channel(1).dblWidth = 3e-6;
  Channel(2).dblSingleDelay = 2e-6;
  session.Click("cmdDownload");
  session.Type("esPeriodOrFreq", "1us");
  EXPECT_DOUBLE_EQ(Field("esPeriodOrFreq").Value(), 3e-6) << "the period has to hold the width";
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 3e-6);
  session.Type("esWidth(0)", "100ns");
  session.Type("esPeriodOrFreq", "1us");
  EXPECT_DOUBLE_EQ(Field("esWidth(0)").Max(), 1e-6);
  EXPECT_DOUBLE_EQ(Field("esDelay(1)").Value(), 1e-6);
}

TEST_F(TimingTransfer, ADownloadedDoublePulseIsNotRead) {
  Channel(1).lngPulseType = 2;
  Channel(1).dblDoubleDelay = 9e-8;
  session.Click("cmdDownload");
  EXPECT_FALSE(session.State().mfDoublePulse[1]);
  EXPECT_DOUBLE_EQ(Field("esDelay(0)").Value(), 9e-8);
}

TEST_F(TimingTransfer, AnUploadSendsTheWholePage) {
  session.Click("cmdDownload");
  session.Type("esWidth(0)", "150E-9");
  session.Click("cmdUpload");
  const ChannelSettings &first = Channel(1), &second = Channel(2);
  for (const ChannelSettings &channel : {first, second}) EXPECT_DOUBLE_EQ(channel.dblFrequency, 2e6);
  EXPECT_EQ(first.fOutput, True);
  EXPECT_EQ(first.fComplement, False);
  EXPECT_EQ(second.fOutput, False);
  EXPECT_EQ(second.fComplement, True);
  EXPECT_EQ(first.lngPulseType, 1);
  EXPECT_EQ(second.lngPulseType, 1);
  EXPECT_EQ(first.lngCoupling, 0);
  EXPECT_EQ(second.lngCoupling, 1);
  EXPECT_DOUBLE_EQ(first.dblSingleDelay, 3e-8);
  EXPECT_DOUBLE_EQ(second.dblSingleDelay, 6e-8);
  EXPECT_DOUBLE_EQ(first.dblWidth, 1.5e-7);
  EXPECT_DOUBLE_EQ(second.dblWidth, 2e-7);
  EXPECT_DOUBLE_EQ(first.dblLeading, 4e-9);
  EXPECT_DOUBLE_EQ(second.dblLeading, 7e-9);
  EXPECT_DOUBLE_EQ(first.dblTrailing, 5e-9);
  EXPECT_DOUBLE_EQ(second.dblTrailing, 7e-9);
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
}

TEST_F(TimingTransfer, APatternIsNeverSentAsDoublePulses) {
  session.State().mfDoublePulse[1] = True;
  session.Type("esWidth(0)", "150E-9");
  session.Click("cmdUpload");
  EXPECT_EQ(Channel(1).lngPulseType, 2);
  session.State().mePulseMode = 2;
  session.Type("esWidth(0)", "151E-9");
  session.Click("cmdUpload");
  EXPECT_EQ(Channel(1).lngPulseType, 1);
}

TEST_F(TimingTransfer, AFailingDriverCallOfTheDownloadLeavesThePage) {
  session.Click("cmdDownload");
  const int intClean = static_cast<int>(session.driver.TakeTrace().size());
  const auto references = session.driver.References();
  Field("esDelay(0)").SetValue(1e-8);
  int intFailed = 0;
  for (int n = 1; n <= intClean; ++n) {
    SCOPED_TRACE(n);
    session.State().meTabState[ePageTiming] = ePageNeedsDownloading;
    session.driver.ClearFaults();
    session.host.arrEntries.clear();
    session.driver.FailAt(n, {Failing, "broken"});
    session.Click("cmdDownload");
    const bool fRead = !session.Failed("GetTiming");
    EXPECT_EQ(session.StateOf(ePageTiming), fRead ? ePageIsCurrent : ePageNeedsDownloading);
    EXPECT_DOUBLE_EQ(Field("esDelay(0)").Value(), fRead ? 3e-8 : 1e-8);
    if (!fRead) {
      ++intFailed;
      EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: broken"));
    }
    Field("esDelay(0)").SetValue(1e-8);
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.State().mfDownloading);
    EXPECT_EQ(session.driver.References(), references);
  }
  EXPECT_GT(intFailed, 20);
}

TEST_F(TimingTransfer, AFailingDriverCallOfTheUploadLeavesThePageDirty) {
  session.Type("esWidth(0)", "150E-9");
  session.Forget();
  session.Click("cmdUpload");
  const int intClean = static_cast<int>(session.driver.TakeTrace().size());
  const auto references = session.driver.References();
  int intFailed = 0;
  for (int n = 1; n <= intClean; ++n) {
    SCOPED_TRACE(n);
    session.State().meTabState[ePageTiming] = ePageIsDirty;
    session.driver.ClearFaults();
    session.host.arrEntries.clear();
    session.driver.FailAt(n, {Failing, "broken"});
    session.Click("cmdUpload");
    const bool fSent = !session.Failed("SetTiming");
    EXPECT_EQ(session.StateOf(ePageTiming), fSent ? ePageIsCurrent : ePageIsDirty);
    if (!fSent) {
      ++intFailed;
      EXPECT_THAT(session.host.TakeBoxes(), Not(IsEmpty()));
    }
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.InTransaction());
    EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value());
    EXPECT_EQ(session.driver.References(), references);
  }
  EXPECT_GT(intFailed, 20);
}

class OneChannelTransfer : public TimingTransfer {
 protected:
  OneChannelTransfer() : TimingTransfer({{"channels", 1}}) {}
};

TEST_F(OneChannelTransfer, AnUploadSendsTheFirstChannelAlone) {
  session.Click("cmdDownload");
  session.State().mfOutputOn[2] = True;
  session.Type("esWidth(0)", "150E-9");
  session.Click("cmdUpload");
  EXPECT_DOUBLE_EQ(Channel(1).dblWidth, 1.5e-7);
  EXPECT_THAT(session.Calls({"SetWidth"}), ElementsAre("IChannelTiming{Alpha.1}.SetWidth(1.4999999999999999e-07)"));
  EXPECT_THAT(session.Calls({"SetOutput"}), ElementsAre("IChannelLevels{Alpha.1}.SetOutput(True)"));
}

TEST_F(OneChannelTransfer, ADownloadCopiesOneFlagAndRefreshesAllGroups) {
  session.State().mfOutputInvOn[2] = True;
  session.Click("cmdDownload");
  EXPECT_TRUE(session.State().mfOutputInvOn[2]);
  EXPECT_TRUE(session.Get<OptionButton>("optChannel2InvOutput(0)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optChannel1Output(0)").Value());
}

class ThreeChannelTransfer : public TimingTransfer {
 protected:
  ThreeChannelTransfer() : TimingTransfer({{"channels", 3}}) {}
};

TEST_F(ThreeChannelTransfer, AThirdChannelEndsTheEventWithABoundsFailure) {
  session.State().mfOutputOn[1] = True;
  session.Forget();
  Field("esPeriodOrFreq").SetValue(1e-5);
  session.Click("cmdPeriodOrFreq");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box stop: Illegal case", "box stop: Control array element doesn't exist"));
  EXPECT_DOUBLE_EQ(Field("esWidth(1)").Max(), 1e-5);
  EXPECT_EQ(session.Get<CommandButton>("cmdPeriodOrFreq").Caption(), "Frequency");
}

}  // namespace
}  // namespace tarvik::test
