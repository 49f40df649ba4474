#include <gmock/gmock.h>

#include "PanelSession.h"
#include "ValueText.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Long Failing = static_cast<Long>(0x80004005u);

class PatternPageTest : public testing::Test {
 protected:
  explicit PatternPageTest(Long lngChannels = 2)
      : session({.config = {{"channels", lngChannels}}, .fAutoDownload = false}) {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePagePattern);
    Settings().rows = {PatternRow{{0x0F}, 8}, PatternRow{{0xA5}, 8}, PatternRow{{0x3C}, 8}};
    session.Forget();
  }

  InstrumentSettings &Settings() { return session.driver.Find("Alpha")->settings; }
  BitPattern &Editor() { return session.Get<BitPattern>("BitPattern1"); }
  std::string Stream(Long eChannel) {
    Long lngSize = Editor().GetPatternArraySize();
    ByteArray arr;
    arr.ReDim(1, lngSize);
    Editor().GetPattern(eChannel, arr, lngSize);
    return ToHex(arr.Elements());
  }
  Boolean IsChosen(const char *strOption) { return session.Get<OptionButton>(strOption).Value(); }
  void EnterPatternMode() {
    session.ShowPage(ePageMode);
    session.Choose("optPulseMode(2)");
    session.ShowPage(ePagePattern);
  }

  PanelSession session;
};

TEST_F(PatternPageTest, ADownloadReadsEachStreamAndTheFlags) {
  Settings().channels[0].lngSignalFormat = 0;
  session.Click("cmdDownload");
  EXPECT_THAT(session.Calls({"GetPattern"}),
              ElementsAre("IPatternMemory{Alpha}.GetPattern(1, 2)", "IPatternMemory{Alpha}.GetPattern(2, 2)",
                          "IPatternMemory{Alpha}.GetPattern(3, 2)"));
  EXPECT_EQ(Editor().GetPatternLength(), 8);
  EXPECT_EQ(Stream(1), "0f");
  EXPECT_EQ(Stream(2), "a5");
  EXPECT_EQ(Stream(8), "3c");
  EXPECT_FALSE(session.State().mfRz[1]);
  EXPECT_TRUE(session.State().mfRz[2]);
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(PatternPageTest, AnUploadSendsTheThreeStreamsInTheirRows) {
  session.Click("cmdDownload");
  session.State().meTabState[ePagePattern] = ePageIsDirty;
  session.Forget();
  session.Click("cmdUpload");
  EXPECT_THAT(session.Calls({"SetPattern"}), ElementsAre("IPatternMemory{Alpha}.SetPattern(1, 2, <0f>, 8)",
                                                         "IPatternMemory{Alpha}.SetPattern(2, 2, <a5>, 8)",
                                                         "IPatternMemory{Alpha}.SetPattern(3, 2, <3c>, 8)"));
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
}

TEST_F(PatternPageTest, AStreamThatCannotBeReadIsLeftOut) {
  session.Click("cmdDownload");
  Settings().rows = {PatternRow{{0x11}, 8}, PatternRow{{0x22}, 8}, PatternRow{{0x33}, 8}};
  session.State().meTabState[ePagePattern] = ePageNeedsDownloading;
  session.Forget();
  session.driver.FailMatching("IPatternMemory.GetPattern", 3, {Failing, "broken"});
  session.Click("cmdDownload");
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: broken"));
  EXPECT_EQ(Stream(1), "11");
  EXPECT_EQ(Stream(2), "22");
  EXPECT_EQ(Stream(8), "3c");
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
}

TEST_F(PatternPageTest, FlagsThatCannotBeReadStay) {
  session.Click("cmdDownload");
  Settings().channels[0].lngSignalFormat = Settings().channels[1].lngSignalFormat = 0;
  session.driver.FailMatching("IChannel.GetSignalFormat", 1, {Failing, "broken"});
  session.Click("cmdDownload");
  EXPECT_TRUE(session.State().mfRz[1]);
  EXPECT_TRUE(session.State().mfRz[2]);
  BooleanArray fRz{1, {False, False}};
  Editor().GetRz(fRz);
  EXPECT_TRUE(fRz[1]);
  EXPECT_TRUE(fRz[2]);
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
}

TEST_F(PatternPageTest, EveryFailingDriverCallOfTheDownloadStillEndsCurrent) {
  session.Click("cmdDownload");
  const int intClean = static_cast<int>(session.driver.TakeTrace().size());
  const auto references = session.driver.References();
  int intReported = 0;
  for (int n = 1; n <= intClean; ++n) {
    SCOPED_TRACE(n);
    session.State().meTabState[ePagePattern] = ePageNeedsDownloading;
    session.driver.ClearFaults();
    session.host.arrEntries.clear();
    session.driver.FailAt(n, {Failing, "broken"});
    session.Click("cmdDownload");
    EXPECT_EQ(session.StateOf(ePagePattern), ePageIsCurrent);
    intReported += static_cast<int>(session.host.TakeBoxes().size());
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.State().mfDownloading);
    EXPECT_EQ(session.driver.References(), references);
  }
  EXPECT_GT(intReported, 5);
}

TEST_F(PatternPageTest, TheFirstFailingStreamEndsTheUpload) {
  session.Click("cmdDownload");
  for (int n = 1; n <= 3; ++n) {
    SCOPED_TRACE(n);
    session.State().meTabState[ePagePattern] = ePageIsDirty;
    session.driver.ClearFaults();
    session.Forget();
    session.driver.FailMatching("IPatternMemory.SetPattern", n, {Failing, "broken"});
    session.Click("cmdUpload");
    EXPECT_EQ(session.Calls({"SetPattern"}).size(), static_cast<std::size_t>(n));
    EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: broken"));
    EXPECT_EQ(session.StateOf(ePagePattern), ePageIsDirty);
    EXPECT_EQ(session.host.intPointer, 0);
    EXPECT_FALSE(session.InTransaction());
  }
}

TEST_F(PatternPageTest, FailingFlagsKeepTheBitsFromBeingSent) {
  session.Click("cmdDownload");
  session.State().meTabState[ePagePattern] = ePageIsDirty;
  session.Forget();
  session.driver.FailMatching("IChannel.SetSignalFormat", 2, {Failing, "broken"});
  session.Click("cmdUpload");
  EXPECT_THAT(session.Calls({"SetPattern"}), IsEmpty());
  EXPECT_EQ(session.StateOf(ePagePattern), ePageIsDirty);
  EXPECT_FALSE(session.InTransaction());
}

TEST_F(PatternPageTest, TheEditorsOptionLeadsInPatternMode) {
  EnterPatternMode();
  session.Choose("optChannelRzNrz(1)");
  EXPECT_FALSE(session.State().mfRz[1]);
  EXPECT_EQ(session.List("cboPulseType1").Text(), "NRZ Pulses at Output 1");
  EXPECT_TRUE(session.Field("esWidth(0)").Locked());
  session.Choose("optChannelRzNrz(0)");
  EXPECT_TRUE(session.State().mfRz[1]);
  EXPECT_EQ(session.List("cboPulseType1").Text(), "RZ Pulses at Output 1");
  EXPECT_EQ(session.List("cboPulseType1").GetCurrItemData(), 1);
  EXPECT_FALSE(session.Field("esWidth(0)").Locked());
  EXPECT_TRUE(session.State().mfRz[2]);
}

TEST_F(PatternPageTest, OutsideOfPatternModeThePulseTypesStay) {
  session.Choose("optChannelRzNrz(3)");
  EXPECT_FALSE(session.State().mfRz[2]);
  BooleanArray fRz{1, {True, True}};
  Editor().GetRz(fRz);
  EXPECT_FALSE(fRz[2]);
  EXPECT_EQ(session.List("cboPulseType2").Text(), "Single Pulses at Output 2");
  EXPECT_FALSE(session.Field("esWidth(1)").Locked());
}

TEST_F(PatternPageTest, ThePulseTypeLeadsTheEditorsOptions) {
  EnterPatternMode();
  session.ShowPage(ePageMode);
  session.Take("cboPulseType2", 1);
  EXPECT_TRUE(IsChosen("optChannelRzNrz(3)"));
  EXPECT_TRUE(IsChosen("optChannelRzNrz(0)"));
  EXPECT_FALSE(session.State().mfRz[2]);
  EXPECT_EQ(session.List("cboPulseType2").Text(), "NRZ Pulses at Output 2");
  EXPECT_TRUE(session.Field("esWidth(1)").Locked());
  session.Take("cboPulseType2", 0);
  EXPECT_TRUE(IsChosen("optChannelRzNrz(2)"));
  EXPECT_TRUE(session.State().mfRz[2]);
}

TEST_F(PatternPageTest, ADownloadLeadsThePulseTypesButNotTheEditorsOptions) {
  EnterPatternMode();
  Settings().channels[1].lngSignalFormat = 0;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboPulseType2").Text(), "NRZ Pulses at Output 2");
  BooleanArray fRz{1, {True, True}};
  Editor().GetRz(fRz);
  EXPECT_TRUE(fRz[1]);
  EXPECT_FALSE(fRz[2]);
}

TEST_F(PatternPageTest, TheEditorHasTheFocusOnEntry) {
  session.ShowPage(ePageOptions);
  session.ShowPage(ePagePattern);
  QWidget *focus = session.panel->focusWidget();
  ASSERT_TRUE(focus);
  EXPECT_TRUE(focus == &Editor() || Editor().isAncestorOf(focus));
}

class OneChannelPattern : public PatternPageTest {
 protected:
  OneChannelPattern() : PatternPageTest(1) {}
};

TEST_F(OneChannelPattern, TheSecondStreamIsNeverTouched) {
  const std::string strBefore = Stream(2);
  session.Click("cmdDownload");
  EXPECT_THAT(session.Calls({"GetPattern"}),
              ElementsAre("IPatternMemory{Alpha}.GetPattern(1, 2)", "IPatternMemory{Alpha}.GetPattern(3, 2)"));
  EXPECT_EQ(Stream(1), "0f");
  EXPECT_EQ(Stream(2), strBefore);
  EXPECT_EQ(Stream(8), "3c");
  session.State().meTabState[ePagePattern] = ePageIsDirty;
  session.Forget();
  session.Click("cmdUpload");
  EXPECT_THAT(session.Calls({"SetPattern"}), ElementsAre("IPatternMemory{Alpha}.SetPattern(1, 2, <0f>, 8)",
                                                         "IPatternMemory{Alpha}.SetPattern(3, 2, <3c>, 8)"));
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
