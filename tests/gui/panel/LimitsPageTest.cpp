#include <gmock/gmock.h>

#include "PanelSession.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::HasSubstr;
using testing::Not;

class LimitsPageTest : public testing::Test {
 protected:
  LimitsPageTest() : LimitsPageTest(StandInConfig()) {}
  explicit LimitsPageTest(const StandInConfig &config) : session({.config = config, .fAutoDownload = false}) {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePageLimits);
    session.Forget();
  }
  ChannelSettings &Channel(Long lngChannel) {
    return session.driver.Find("Alpha")->settings.channels[static_cast<std::size_t>(lngChannel - 1)];
  }

  PanelSession session;
};

TEST_F(LimitsPageTest, TheFieldsStartAsDesigned) {
  for (const char *strChannel : {"(0)", "(1)"}) {
    const auto value = [&](const char *strName) {
      return session.Field((strName + std::string(strChannel)).c_str()).Value();
    };
    EXPECT_DOUBLE_EQ(value("esLimitHighVoltage"), 0.5);
    EXPECT_DOUBLE_EQ(value("esLimitLowVoltage"), -0.5);
    EXPECT_DOUBLE_EQ(value("esLimitHighCurrent"), 0.01);
    EXPECT_DOUBLE_EQ(value("esLimitLowCurrent"), -0.01);
  }
  EXPECT_TRUE(session.Get<OptionButton>("optLimitsChanel(1)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optLimitsChanel(3)").Value());
}

TEST_F(LimitsPageTest, TheSwitchMarksThePage) {
  session.Choose("optLimitsChanel(2)");
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsDirty);
}

TEST_F(LimitsPageTest, AnUploadSendsBothChannels) {
  session.Choose("optLimitsChanel(0)");
  session.Type("esLimitHighVoltage(0)", "6V");
  session.Type("esLimitLowVoltage(0)", "-6V");
  session.Type("esLimitHighCurrent(1)", "200mA");
  session.Type("esLimitLowCurrent(1)", "-200mA");
  session.Click("cmdUpload");
  EXPECT_TRUE(Channel(1).fLimits);
  EXPECT_FALSE(Channel(2).fLimits);
  EXPECT_DOUBLE_EQ(Channel(1).dblHighVoltage, 6);
  EXPECT_DOUBLE_EQ(Channel(1).dblLowVoltage, -6);
  EXPECT_DOUBLE_EQ(Channel(2).dblHighCurrent, 0.2);
  EXPECT_DOUBLE_EQ(Channel(2).dblLowCurrent, -0.2);
  EXPECT_DOUBLE_EQ(Channel(2).dblHighVoltage, 0.5);
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
}

TEST_F(LimitsPageTest, ADownloadFillsBothChannels) {
  Channel(2).fLimits = True;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighVoltage(0)").Value(), 5);
  EXPECT_DOUBLE_EQ(session.Field("esLimitLowVoltage(1)").Value(), -10);
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighCurrent(1)").Value(), 0.25);
  EXPECT_DOUBLE_EQ(session.Field("esLimitLowCurrent(0)").Value(), -0.125);
  EXPECT_TRUE(session.Get<OptionButton>("optLimitsChanel(1)").Value());
  EXPECT_TRUE(session.Get<OptionButton>("optLimitsChanel(2)").Value());
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
}

TEST_F(LimitsPageTest, AFailedDownloadLeavesPageAndState) {
  session.panel->SetTabState(ePageNeedsDownloading, ePageLimits);
  session.driver.FailMatching("ILimitPair.GetHigh", 1, {-2147221503, "no limits"});
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighVoltage(0)").Value(), 0.5);
  EXPECT_EQ(session.StateOf(ePageLimits), ePageNeedsDownloading);
}

class OneChannelLimits : public LimitsPageTest {
 protected:
  OneChannelLimits() : LimitsPageTest(StandInConfig{{"channels", 1}}) {}
};

TEST_F(OneChannelLimits, TheFieldsOfChannel2AreNeitherReadNorWritten) {
  Channel(2).dblHighVoltage = 13;
  session.Click("cmdDownload");
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighVoltage(0)").Value(), 5);
  EXPECT_DOUBLE_EQ(session.Field("esLimitHighVoltage(1)").Value(), 0.5);
  session.panel->SetTabState(ePageIsDirty, ePageLimits);
  session.Forget();
  session.Click("cmdUpload");
  EXPECT_DOUBLE_EQ(Channel(2).dblHighVoltage, 13);
  EXPECT_THAT(session.driver.arrTrace, Each(Not(HasSubstr("Alpha.2"))));
}

TEST_F(OneChannelLimits, TheSwitchOfChannel2KeepsItsChoice) {
  session.Get<OptionButton>("optLimitsChanel(2)").SetValue(True);
  session.Click("cmdUpload");
  EXPECT_TRUE(session.Get<OptionButton>("optLimitsChanel(2)").Value());
  EXPECT_EQ(session.StateOf(ePageLimits), ePageIsCurrent);
}

}  // namespace
}  // namespace tarvik::test
