#include <gmock/gmock.h>

#include "PanelSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr Long Failing = static_cast<Long>(0x80004005u);

class ModeTransfer : public testing::Test {
 protected:
  ModeTransfer() : session({.config = {{"mask", 4096}}, .fAutoDownload = false}) {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePageMode);
  }
  InstrumentSettings &Settings() { return session.driver.Find("Alpha")->settings; }

  PanelSession session;
};

TEST_F(ModeTransfer, ADownloadShowsATriggeredBurstWithThePll) {
  Settings().lngTriggerMode = 1;
  Settings().lngPulseMode = 1;
  Settings().lngBurstLength = 12;
  Settings().channels[0].lngPulseType = 2;
  Settings().lngArmingSource = 1;
  Settings().lngPeriodSource = 2;
  Settings().lngClockSlope = 0;
  Settings().dblPllFrequency = 125000;
  session.Click("cmdDownload");
  EXPECT_EQ(session.State().mintModePos, 6);
  EXPECT_EQ(session.Field("esBurstLength").Value(), 12);
  EXPECT_EQ(session.List("cboPulseType1").Text(), "Double Pulses at Output 1");
  EXPECT_EQ(session.List("cboPulseType2").Text(), "Single Pulses at Output 2");
  EXPECT_EQ(session.List("cboPeriodSource").Text(), "CLK-IN");
  EXPECT_EQ(session.List("cboTriggerSlope").Text(), "Falling");
  EXPECT_EQ(session.List("cboArmingSource").Text(), "Internal PLL");
  EXPECT_EQ(session.List("cboArmingLevel").Text(), "Frequency");
  EXPECT_EQ(session.Field("esPllPeriodOrFreq").Value(), 125000);
  EXPECT_EQ(session.Field("esPllPeriodOrFreq").BaseUnit(), "Hz");
  EXPECT_EQ(session.StateOf(ePageMode), ePageIsCurrent);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(ModeTransfer, ADownloadHandsThePllFromTheArmingToThePeriodWithoutAWord) {
  session.Choose("optTriggerMode(1)");
  session.Choose("optPulseMode(1)");
  session.Take("cboArmingSource", 2);
  EXPECT_EQ(session.List("cboArmingSource").Text(), "Internal PLL");
  Settings().lngTriggerMode = 1;
  Settings().lngPulseMode = 1;
  Settings().lngPeriodSource = 1;
  Settings().lngArmingSource = 3;
  session.Click("cmdDownload");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_EQ(session.List("cboPeriodSource").Text(), "Internal PLL");
  EXPECT_EQ(session.List("cboArmingSource").Text(), "External Input");

  // A user is still held to one use.
  session.Take("cboArmingSource", 2);
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box exclamation: Pll source already in use!"));
  EXPECT_EQ(session.List("cboArmingSource").Text(), "External Input");
}

TEST_F(ModeTransfer, ADownloadOfAPatternShowsTheFormats) {
  Settings().lngPulseMode = 2;
  Settings().channels[0].lngSignalFormat = 0;
  Settings().channels[1].lngSignalFormat = 1;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboPulseType1").Text(), "NRZ Pulses at Output 1");
  EXPECT_EQ(session.List("cboPulseType2").Text(), "RZ Pulses at Output 2");
  EXPECT_FALSE(session.State().mfRz[1]);
  EXPECT_TRUE(session.State().mfRz[2]);
  EXPECT_TRUE(session.Field("esWidth(0)").Locked());
  EXPECT_FALSE(session.Field("esWidth(1)").Locked());
}

TEST_F(ModeTransfer, AnUnknownTriggerModeLeavesTheControlsAndEndsCurrent) {
  Settings().lngTriggerMode = 9;
  Settings().lngBurstLength = 40;
  session.Click("cmdDownload");
  EXPECT_EQ(session.State().meTriggerMode, 0);
  EXPECT_EQ(session.Field("esBurstLength").Value(), 2);
  EXPECT_EQ(session.StateOf(ePageMode), ePageIsCurrent);
}

TEST_F(ModeTransfer, AFailingDriverCallOfTheDownloadLeavesThePage) {
  session.Click("cmdDownload");
  const int intClean = static_cast<int>(session.driver.TakeTrace().size());
  ASSERT_GT(intClean, 10);
  const auto references = session.driver.References();
  Settings().lngTriggerMode = 2;
  int intFailed = 0;
  for (int n = 1; n <= intClean; ++n) {
    SCOPED_TRACE(n);
    session.State().meTabState[ePageMode] = ePageNeedsDownloading;
    session.driver.ClearFaults();
    session.driver.FailAt(n, {Failing, "broken"});
    session.Click("cmdDownload");
    const bool fRead = !session.Failed("GetMode");
    intFailed += fRead ? 0 : 1;
    EXPECT_EQ(session.StateOf(ePageMode), fRead ? ePageIsCurrent : ePageNeedsDownloading);
    if (!fRead) {
      EXPECT_EQ(session.State().meTriggerMode, 0);
    }
    if (!fRead) {
      EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: broken"));
    }
    session.host.arrEntries.clear();
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.State().mfDownloading);
    EXPECT_EQ(session.driver.References(), references);
    if (fRead) session.Choose("optTriggerMode(0)");
  }
  EXPECT_GT(intFailed, 10);
}

TEST_F(ModeTransfer, AFailingDriverCallOfTheUploadLeavesThePageDirty) {
  session.Choose("optTriggerMode(1)");
  session.Forget();
  session.Click("cmdUpload");
  const int intClean = static_cast<int>(session.driver.TakeTrace().size());
  const auto references = session.driver.References();
  int intFailed = 0;
  for (int n = 1; n <= intClean; ++n) {
    SCOPED_TRACE(n);
    session.State().meTabState[ePageMode] = ePageIsDirty;
    session.driver.ClearFaults();
    session.driver.FailAt(n, {Failing, "broken"});
    session.Click("cmdUpload");
    const bool fSent = !session.Failed("SetMode");
    intFailed += fSent ? 0 : 1;
    EXPECT_EQ(session.StateOf(ePageMode), fSent ? ePageIsCurrent : ePageIsDirty);
    if (!fSent) {
      EXPECT_THAT(session.host.TakeBoxes(), Not(IsEmpty()));
    }
    session.host.arrEntries.clear();
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.InTransaction());
    EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value());
    EXPECT_EQ(session.driver.References(), references);
  }
  EXPECT_GT(intFailed, 5);
}

}  // namespace
}  // namespace tarvik::test
