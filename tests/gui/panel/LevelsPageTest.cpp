#include <gmock/gmock.h>

#include "PanelSession.h"
#include "PanelStart.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LevelsPageTest : public testing::Test {
 protected:
  LevelsPageTest() : LevelsPageTest(StandInConfig()) {}
  explicit LevelsPageTest(const StandInConfig &config)
      : session({.config = config, .fAutoDownload = false, .fAutoOutput = false}) {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePageLevels);
    session.Forget();
  }
  ChannelSettings &Channel(Long lngChannel) {
    return session.driver.Find("Alpha")->settings.channels[static_cast<std::size_t>(lngChannel - 1)];
  }
  /// Number and unit as the field shows them.
  std::string Shown(const char *strName) {
    const EngrSpin &field = session.Field(strName);
    const auto *units = field.findChild<QLabel *>(QStringLiteral("lblUnits"));
    return field.Text() + " " + units->text().toStdString();
  }
  Double Value(const char *strName) { return session.Field(strName).Value(); }
  enum Format { Ttl, HighLow, OffsetAmplitude, Ecl };
  void TakeFormat(Format format) { session.Take("cboLevelFormat(0)", format); }

  PanelSession session;
};

TEST_F(LevelsPageTest, TheListsStartAsDesigned) {
  EXPECT_THAT(session.Items("cboLevelFormat(0)"),
              ElementsAre("Set TTL=0", "High-Low=1", "Offset-Amplitude=2", "Set ECL=3"));
  EXPECT_THAT(session.Items("cboLevelUnits(1)"), ElementsAre("Voltage=0", "Current=1"));
  EXPECT_THAT(session.Items("cboOutputImpedance(1)"), ElementsAre("50 Ohm=50", "1 kOhm=1000"));
  EXPECT_EQ(session.List("cboLevelFormat(1)").Text(), "High-Low");
  EXPECT_EQ(session.List("cboLevelUnits(0)").Text(), "Voltage");
  EXPECT_EQ(session.List("cboOutputImpedance(0)").Text(), "50 Ohm");
  EXPECT_EQ(session.Field("esLevelHigh(0)").Caption(), "High");
  EXPECT_EQ(session.Field("esLevelLo(1)").Caption(), "Low");
}

TEST_F(LevelsPageTest, EclShowsItsNumbersLockedAndThenGoesIntoOffsetAndAmplitude) {
  TakeFormat(Ecl);
  EXPECT_EQ(Shown("esLevelHigh(0)"), "-850.0 mV");
  EXPECT_EQ(Shown("esLevelLo(0)"), "-1.800 V");
  EXPECT_EQ(session.Field("esLevelHigh(0)").Caption(), "ECL-High");
  EXPECT_EQ(session.Field("esLevelLo(0)").Caption(), "ECL-Low");
  EXPECT_TRUE(session.Field("esLevelHigh(0)").Locked());
  EXPECT_TRUE(session.Field("esLevelLo(0)").Locked());

  TakeFormat(OffsetAmplitude);
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(0)"), -1.325);
  EXPECT_DOUBLE_EQ(Value("esLevelLo(0)"), 0.95);
  EXPECT_EQ(session.Field("esLevelHigh(0)").Caption(), "Offset");
  EXPECT_EQ(session.Field("esLevelLo(0)").Caption(), "Amplitude");
  EXPECT_FALSE(session.Field("esLevelHigh(0)").Locked());
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsDirty);
}

TEST_F(LevelsPageTest, TheFormatOfOneChannelLeavesTheOtherAlone) {
  session.Type("esLevelHigh(1)", "3V");
  TakeFormat(Ecl);
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(1)"), 3);
  EXPECT_EQ(session.Field("esLevelHigh(1)").Caption(), "High");
}

TEST_F(LevelsPageTest, AfterAFormatThatFailedTheNextOneIsTaken) {
  // An entry that is overwritten while it is typed tells its handlers of the new value.
  session.TypeWithoutEnter("esLevelHigh(0)", "3");
  auto failing = session.Field("esLevelHigh(0)").AfterUpdate.ConnectScoped([] { RaiseError(ErrTypeMismatch); });
  session.List("cboLevelFormat(0)").SetListIndex(Ecl);
  EXPECT_TRUE(session.Failed("cboLevelFormat_Click"));
  failing.Disconnect();

  TakeFormat(OffsetAmplitude);
  EXPECT_EQ(session.Field("esLevelHigh(0)").Caption(), "Offset");
  EXPECT_EQ(session.Field("esLevelLo(0)").Caption(), "Amplitude");
}

TEST_F(LevelsPageTest, CurrentsAreVoltagesOverTheLoad) {
  session.Type("esLoadCompensation(0)", "50Ohm");
  session.Type("esLevelHigh(0)", "1V");
  session.Take("cboLevelUnits(0)", 1);
  EXPECT_EQ(Shown("esLevelHigh(0)"), "20.00 mA");
  session.Type("esLoadCompensation(0)", "100Ohm");
  EXPECT_EQ(Shown("esLevelHigh(0)"), "10.00 mA");
  session.Take("cboLevelUnits(0)", 0);
  EXPECT_EQ(Shown("esLevelHigh(0)"), "1.000 V");
}

TEST_F(LevelsPageTest, ACurrentThatWasTypedIsDroppedByTheNextEditOfTheLoad) {
  session.Type("esLoadCompensation(0)", "50Ohm");
  session.Type("esLevelHigh(0)", "1V");
  session.Take("cboLevelUnits(0)", 1);
  session.Type("esLevelHigh(0)", "40mA");
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(0)"), 0.04);
  EXPECT_DOUBLE_EQ(session.Field("esLevelHigh(0)").AuxValue(), 1);
  session.Type("esLoadCompensation(0)", "100Ohm");
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(0)"), 0.01);
}

TEST_F(LevelsPageTest, TheSourceImpedanceHasNoEffectOnTheFields) {
  session.Type("esLevelHigh(0)", "1V");
  session.Take("cboOutputImpedance(0)", 1);
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(0)"), 1);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsDirty);
}

TEST_F(LevelsPageTest, PolarityAndAddingMarkThePage) {
  session.panel->SetTabState(ePageIsCurrent, eAllPages);
  session.Choose("optNormalCompliment(3)");
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsDirty);
  session.panel->SetTabState(ePageIsCurrent, eAllPages);
  session.Choose("optOutputs(1)");
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsDirty);
}

TEST_F(LevelsPageTest, AnUploadSendsThePage) {
  session.Type("esLoadCompensation(0)", "75Ohm");
  session.Take("cboOutputImpedance(1)", 1);
  session.Type("esLevelHigh(0)", "3V");
  session.Type("esLevelLo(0)", "-1V");
  session.Choose("optNormalCompliment(1)");
  session.Choose("optOutputs(1)");
  session.Choose("optChannel1Output(2)");
  session.Click("cmdUpload");
  EXPECT_DOUBLE_EQ(Channel(1).dblLoadCompensation, 75);
  EXPECT_DOUBLE_EQ(Channel(1).dblImpedance, 50);
  EXPECT_DOUBLE_EQ(Channel(2).dblImpedance, 1000);
  EXPECT_DOUBLE_EQ(Channel(1).dblHigh, 3);
  EXPECT_DOUBLE_EQ(Channel(1).dblLow, -1);
  EXPECT_EQ(Channel(1).lngPolarity, 1);
  EXPECT_EQ(Channel(2).lngPolarity, 0);
  EXPECT_TRUE(Channel(1).fOutput);
  EXPECT_EQ(session.driver.Find("Alpha")->settings.lngChannelMath, 1);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsCurrent);
}

TEST_F(LevelsPageTest, ADownloadFillsThePage) {
  Channel(1).lngPolarity = 1;
  Channel(1).dblImpedance = 1000;
  Channel(1).dblLoadCompensation = 75;
  Channel(1).lngLevelType = 0;
  Channel(2).lngLevelType = 0;
  session.driver.Find("Alpha")->settings.lngChannelMath = 1;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(0)"), Channel(1).dblHigh);
  EXPECT_DOUBLE_EQ(Value("esLevelLo(1)"), Channel(2).dblLow);
  EXPECT_DOUBLE_EQ(Value("esLoadCompensation(0)"), 75);
  EXPECT_EQ(session.List("cboOutputImpedance(0)").Text(), "1 kOhm");
  EXPECT_TRUE(session.Get<OptionButton>("optNormalCompliment(1)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optOutputs(1)").Value());
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsCurrent);
  EXPECT_EQ(session.StateOf(ePageTiming), ePageNeedsDownloading);
}

TEST_F(LevelsPageTest, CurrentsOfADownloadAreNotConverted) {
  for (const int intUnit : {0, 1}) {
    session.Take("cboLevelUnits(0)", intUnit);
    Channel(1).lngLevelType = 1;
    Channel(1).dblHigh = 0.02;
    Channel(1).dblLow = -0.01;
    Channel(1).dblLoadCompensation = 50;
    session.Click("cmdDownload");
    EXPECT_EQ(session.List("cboLevelUnits(0)").Text(), "Current") << intUnit;
    EXPECT_EQ(Shown("esLevelHigh(0)"), "20.00 mA") << intUnit;
    EXPECT_EQ(Shown("esLevelLo(0)"), "-10.00 mA") << intUnit;
  }
}

TEST_F(LevelsPageTest, VoltagesOfADownloadAreNotConverted) {
  for (const int intUnit : {1, 0}) {
    session.Take("cboLevelUnits(0)", intUnit);
    Channel(1).lngLevelType = 0;
    Channel(1).dblHigh = 2.5;
    Channel(1).dblLow = 0;
    Channel(1).dblLoadCompensation = 50;
    session.Click("cmdDownload");
    EXPECT_EQ(session.List("cboLevelUnits(0)").Text(), "Voltage") << intUnit;
    EXPECT_EQ(Shown("esLevelHigh(0)"), "2.500 V") << intUnit;
    EXPECT_EQ(Shown("esLevelLo(0)"), "0.000 V") << intUnit;
  }
}

TEST_F(LevelsPageTest, AfterADownloadOfCurrentsAnEditOfTheLoadKeepsTheVoltage) {
  Channel(1).lngLevelType = 1;
  Channel(1).dblHigh = 0.04;
  Channel(1).dblLow = -0.02;
  Channel(1).dblLoadCompensation = 50;
  session.Click("cmdDownload");
  session.Type("esLoadCompensation(0)", "100Ohm");
  EXPECT_EQ(Shown("esLevelHigh(0)"), "20.00 mA");
  EXPECT_EQ(Shown("esLevelLo(0)"), "-10.00 mA");
}

TEST_F(LevelsPageTest, AUnitThatTheListDoesNotKnowLeavesTheOneShown) {
  session.Take("cboLevelUnits(0)", 1);
  Channel(1).lngLevelType = 7;
  Channel(1).dblHigh = 0.03;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboLevelUnits(0)").Text(), "Current");
  EXPECT_EQ(Shown("esLevelHigh(0)"), "30.00 mA");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(LevelsPageTest, AnImpedanceWithoutAnItemKeepsTheOneShown) {
  session.Take("cboOutputImpedance(0)", 1);
  Channel(1).dblImpedance = 75;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboOutputImpedance(0)").Text(), "1 kOhm");
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(LevelsPageTest, ADownloadOverAPresetShowsThePresetsNumbers) {
  TakeFormat(Ttl);
  Channel(1).dblHigh = 4;
  Channel(1).dblLow = 1;
  Channel(1).lngLevelType = 0;
  session.Click("cmdDownload");
  EXPECT_EQ(session.List("cboLevelFormat(0)").Text(), "High-Low");
  EXPECT_DOUBLE_EQ(Value("esLevelHigh(0)"), 2.5);
  EXPECT_DOUBLE_EQ(Value("esLevelLo(0)"), 0);
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsCurrent);
}

class RestrictedLevels : public LevelsPageTest {
 protected:
  RestrictedLevels() : LevelsPageTest(StandInConfig{{"mask", 64 + 128 + 256}}) {}
};

TEST_F(RestrictedLevels, ADownloadDisablesWhatTheModelLacks) {
  session.Click("cmdDownload");
  EXPECT_FALSE(session.List("cboOutputImpedance(0)").Enabled());
  EXPECT_FALSE(session.Field("esLoadCompensation(1)").Enabled());
}

TEST_F(RestrictedLevels, AnUploadLeavesImpedanceLoadAndAddingAlone) {
  session.Click("cmdDownload");
  session.panel->SetTabState(ePageIsDirty, ePageLevels);
  session.Forget();
  session.Click("cmdUpload");
  for (const std::string &strCall : session.driver.arrTrace)
    for (const char *strName : {".SetImpedance(", ".SetLoadCompensation(", ".SetChannelMath("})
      EXPECT_EQ(strCall.find(strName), std::string::npos) << strCall;
  EXPECT_EQ(session.StateOf(ePageLevels), ePageIsCurrent);
}

}  // namespace
}  // namespace tarvik::test
