#include <gmock/gmock.h>

#include <QTest>

#include <functional>
#include <map>

#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "platform/PictureBox.h"
#include "support/Conversions.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Long AllBits = -1;

/// When the gate leaves a control enabled.
struct GateRow {
  const char *strControl;
  std::function<bool(Long lngChannels, Long lngMask)> enabled;
};

bool Session(Long lngChannels, Long) { return lngChannels != 0; }
bool TwoChannels(Long lngChannels, Long) { return lngChannels != 1; }
std::function<bool(Long, Long)> Without(Long lngBits) {
  return [=](Long, Long lngMask) { return (lngMask & lngBits) == 0; };
}
bool Always(Long, Long) { return true; }

const GateRow Rows[] = {
    {"cmdUpload", Session},
    {"cmdDownload", Session},
    {"cmdCheckErrors", Session},
    {"cmdCheckWarnings", Session},
    {"cmdResetInstr", Session},
    {"cmdSelfTest", Session},
    {"cmdCalibrate", Session},
    {"cboPulseType2", TwoChannels},
    {"grpTimingChan2", TwoChannels},
    {"grpChannelOutput(1)", TwoChannels},
    {"grpLevelFormat(1)", TwoChannels},
    {"grpLimitsChanel(1)", TwoChannels},
    {"grpChan1InvOnOff(0)", Without(512)},
    {"grpChan2InvOnOff(0)", Without(512)},
    {"grpChan1InvOnOff(1)", Without(512)},
    {"grpChan2InvOnOff(1)", Without(512)},
    {"toolPopupTEdge(0)", Without(4)},
    {"toolPopupTEdge(1)", Without(4)},
    {"esTrailingEdge(0)", Without(4)},
    {"esTrailingEdge(1)", Without(4)},
    {"grpOutputs", Without(256)},
    {"grpVxiTrigger", Without(7168)},
    // Behind a disabled box the lists keep the state they had, which was enabled.
    {"cboVxiTriggerSource", Always},
    {"cboVxiTriggerEnable", Always},
    // Nothing of channel 1 is ever taken away with a channel.
    {"grpTimingChan1", Always},
    {"grpChannelOutput(0)", Always},
    {"grpLevelFormat(0)", Always},
    {"grpLimitsChanel(0)", Always},
    {"cmdRefresh", Always},
};

/// Opens the one instrument again and again, as different models.
class CapabilityGate : public testing::Test {
 protected:
  void OpenAs(Long lngChannels, Long lngMask) {
    session.driver.Configure("Alpha", {{"channels", lngChannels}, {"mask", lngMask}});
    auto &list = session.Get<ListView>("lvwInstruments");
    if (list.Item(0)->Checked()) session.Open();  // Enter ends the session that there is
    session.State().mfTeEqLe = {};
    session.Open();
  }
  Boolean Enabled(const char *strName) { return dynamic_cast<Control &>(session.Get<QWidget>(strName)).Enabled(); }

  PanelSession session{{.fAutoDownload = false, .fOpen = false}};
};

class CapabilityGateMasks : public CapabilityGate, public testing::WithParamInterface<Long> {};

TEST_P(CapabilityGateMasks, EveryRowHoldsForNoChannelToThreeChannels) {
  const Long lngMask = GetParam();
  for (Long lngChannels = 0; lngChannels <= 3; ++lngChannels) {
    SCOPED_TRACE("channels " + std::to_string(lngChannels));
    OpenAs(lngChannels, lngMask);
    for (const GateRow &row : Rows)
      EXPECT_EQ(Enabled(row.strControl), Boolean(row.enabled(lngChannels, lngMask))) << row.strControl;
    EXPECT_EQ(session.State().mfDualChannel, Boolean(lngChannels != 1));
    EXPECT_EQ(session.State().mfVxiLines, Boolean((lngMask & 4096) == 0));
    EXPECT_EQ(session.State().mfTeEqLe[0], Boolean((lngMask & 4) != 0));
    EXPECT_EQ(session.State().mfTeEqLe[1], Boolean((lngMask & 4) != 0));
    EXPECT_EQ(session.Get<ToolPopup>("toolPopupTEdge(0)").Tag(), (lngMask & 4) != 0 ? "Locked" : "");
    EXPECT_EQ(session.Field("esLeadingEdge(0)").ValueArray(), (lngMask & 16384) != 0 ? "0.8E-9;1.6E-9" : "");
    // The pattern editor's menu of channel 2 goes with the channel.
    EXPECT_EQ(Enabled("toolPopup(1)"), Boolean(lngChannels != 1));
  }
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Masks, CapabilityGateMasks,
                         testing::Values(0, 4, 256, 512, 1024 + 2048 + 4096, 16384, AllBits),
                         [](const testing::TestParamInfo<Long> &test) {
                           return "Mask" + std::to_string(static_cast<std::uint32_t>(test.param));
                         });

TEST_F(CapabilityGate, WithoutASessionTheButtonsAreGreyAndNothingElseIs) {
  for (const GateRow &row : Rows) {
    const bool fButton = std::string(row.strControl).starts_with("cmd") && row.strControl != std::string("cmdRefresh");
    EXPECT_EQ(Enabled(row.strControl), Boolean(!fButton)) << row.strControl;
  }
}

TEST_F(CapabilityGate, TheEndOfASessionGivesBackWhatTheModelLacked) {
  OpenAs(1, AllBits);
  session.Open();
  for (const GateRow &row : Rows) {
    const std::string strName = row.strControl;
    // A trailing edge that was made to follow goes on following.
    if (strName.starts_with("esTrailingEdge")) continue;
    const bool fButton = strName.starts_with("cmd") && strName != "cmdRefresh";
    EXPECT_EQ(Enabled(row.strControl), Boolean(!fButton)) << row.strControl;
  }
  EXPECT_FALSE(Enabled("esTrailingEdge(0)"));
  EXPECT_TRUE(session.State().mfTeEqLe[0]);
}

TEST_F(CapabilityGate, ListsBehindTheDisabledBoxKeepWhatTheyHadAndWhatTheyShow) {
  session.List("cboVxiTriggerSource").SetEnabled(False);
  OpenAs(2, 1024);
  EXPECT_FALSE(Enabled("grpVxiTrigger"));
  EXPECT_FALSE(Enabled("cboVxiTriggerSource"));
  EXPECT_TRUE(Enabled("cboVxiTriggerEnable"));
  EXPECT_EQ(session.List("cboVxiTriggerEnable").Text(), "VXI TTLT 0");
  EXPECT_FALSE(session.List("cboVxiTriggerEnable").isEnabled()) << "the user cannot reach it";
}

TEST_F(CapabilityGate, AFreeVxiGroupSetsItsListsAnew) {
  session.List("cboVxiTriggerSource").SetEnabled(False);
  OpenAs(2, 0);
  EXPECT_TRUE(Enabled("cboVxiTriggerSource"));
}

TEST_F(CapabilityGate, NoChoiceIsLostOnAOneChannelInstrument) {
  session.List("cboLevelFormat(1)").SetListIndex(2);
  session.List("cboOutputImpedance(1)").SetListIndex(1);
  session.List("cboLevelUnits(1)").SetListIndex(1);
  OpenAs(1, 0);
  EXPECT_EQ(session.List("cboLevelFormat(1)").Text(), "Offset-Amplitude");
  EXPECT_EQ(session.List("cboOutputImpedance(1)").Text(), "1 kOhm");
  EXPECT_EQ(session.List("cboLevelUnits(1)").GetCurrItemData(7), 1);
  EXPECT_FALSE(session.List("cboLevelFormat(1)").isEnabled());
}

/// Every value that the pages hold, by the control's name. A list that is out of reach shows none for the time being.
std::map<std::string, std::string> Values(const PanelSession &session) {
  std::map<std::string, std::string> values;
  for (const QWidget *widget : session.panel->findChildren<QWidget *>()) {
    std::string &strValue = values[widget->objectName().toStdString()];
    if (const auto *field = dynamic_cast<const EngrSpin *>(widget))
      strValue = CStr(field->Value()) + " " + field->BaseUnit() + " from " + CStr(field->Min()) + " to " +
                 CStr(field->Max()) + " " + field->Caption();
    else if (const auto *list = dynamic_cast<const CboEnhanced *>(widget))
      strValue = list->Text();
    else if (const auto *option = dynamic_cast<const OptionButton *>(widget))
      strValue = option->Value() ? "on" : "off";
  }
  return values;
}

TEST_F(CapabilityGate, NothingThatItDoesChangesAValue) {
  OpenAs(2, 0);
  session.ShowPage(ePageMode);
  session.Choose("optTriggerMode(1)");
  session.Take("cboArmingSource", 4);
  session.Take("cboPulseType2", 1);
  session.ShowPage(ePageLevels);
  session.Take("cboLevelFormat(1)", 2);
  session.Take("cboLevelUnits(1)", 1);
  session.Choose("optOutputs(1)");
  session.ShowPage(ePageTiming);
  session.TakeMenu("toolPopupTEdge(1)", "TeEqLe");
  session.ShowPage(ePageTrigLev);
  session.Take("cboVxiTriggerEnable", 9);
  session.Take("cboVxiTriggerSource", 1);
  session.ShowPage(ePageInstr);
  auto expected = Values(session);
  EXPECT_EQ(expected["cboPulseType2"], "Double Pulses at Output 2");
  EXPECT_EQ(expected["cboArmingSource"], "VXI TTLT 1");

  for (const auto &[lngChannels, lngMask] : {std::pair<Long, Long>{1, 0},
                                             {1, 64 + 128 + 256 + 512},
                                             {2, 7168},
                                             {1, 16384},
                                             {2, 256 + 512},
                                             {2, 1024},
                                             {2, 0}}) {
    OpenAs(lngChannels, lngMask);
    auto values = Values(session);
    // What is disabled by itself shows no choice; it comes back with the page.
    if (values["cboPulseType2"].empty()) values["cboPulseType2"] = expected["cboPulseType2"];
    EXPECT_EQ(values, expected) << lngChannels << " channels, mask " << lngMask;
  }
  session.Open();  // the end of the session
  session.Open();
  session.ShowPage(ePageMode);
  EXPECT_EQ(Values(session), expected);

  session.Take("cboArmingLevel", 1);
  session.Click("cmdUpload");
  EXPECT_THAT(session.Calls({"SetPulseType"}), testing::ElementsAre("IChannelTiming{Alpha.1}.SetPulseType(1)",
                                                                    "IChannelTiming{Alpha.2}.SetPulseType(2)"));
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

/// Sessions of which each begins with a download of everything.
class AutomaticDownloads : public CapabilityGate {
 protected:
  AutomaticDownloads() {
    session.ShowPage(ePageOptions);
    session.Choose("chkAutoDownload");
    session.ShowPage(ePageInstr);
    Held().rows.fill({{0x50}, 4});
  }
  InstrumentSettings &Held() { return session.driver.Find("Alpha")->settings; }
};

TEST_F(AutomaticDownloads, TheFirstOneAfterAOneChannelInstrumentShowsAllOfChannel2) {
  session.driver.Configure("Alpha", {{"channels", 1}});
  session.driver.Add("Beta");
  InstrumentSettings &held = session.driver.Find("Beta")->settings;
  held.channels[1].lngPulseType = 2;
  held.channels[1].dblDoubleDelay = 4e-7;
  held.rows.fill({{0xA0}, 4});
  session.Click("cmdRefresh");
  auto &list = session.Get<ListView>("lvwInstruments");
  for (const int intRow : {0, 1}) {
    list.setCurrentItem(list.topLevelItem(intRow));
    QTest::keyClick(&list, Qt::Key_Return);
  }
  EXPECT_EQ(session.List("cboPulseType2").Text(), "Double Pulses at Output 2");
  EXPECT_TRUE(session.State().mfDoublePulse[2]);
  EXPECT_EQ(session.Field("esDelay(1)").Caption(), "Dbl. Delay");
  EXPECT_DOUBLE_EQ(session.Field("esDelay(1)").Value(), 4e-7);
  EXPECT_THAT(session.Calls({"GetPattern"}), testing::Contains("IPatternMemory{Beta}.GetPattern(2, 2)"));
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(AutomaticDownloads, TheFirstOneOfOtherCapabilitiesShowsTheArmingSource) {
  Held().lngTriggerMode = 2;
  Held().lngArmingSource = 12;
  OpenAs(2, 0);
  EXPECT_EQ(session.List("cboArmingSource").Text(), "VXI TTLT 5");
  Held().lngArmingSource = 4;
  OpenAs(2, 4096);
  EXPECT_EQ(session.List("cboArmingSource").Text(), "Man. Key");
  session.ShowPage(ePageMode);
  EXPECT_EQ(session.List("cboArmingSource").Text(), "Man. Key");
  session.ShowPage(ePageInstr);
  Held().lngArmingSource = 5;
  OpenAs(2, 0);
  EXPECT_EQ(session.List("cboArmingSource").Text(), "VXI ECLT 0");
}

TEST_F(AutomaticDownloads, OutputsOfAChannelThatIsNotThereAreNotSent) {
  OpenAs(2, 0);
  session.ShowPage(ePageTiming);
  session.Choose("optChannel2Output(0)");
  session.Choose("optChannel2InvOutput(0)");
  session.ShowPage(ePageInstr);
  session.Forget();
  OpenAs(1, 0);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  session.ShowPage(ePageLevels);
  session.ShowPage(ePageTiming);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_THAT(session.Calls({"GetItem"}), testing::Contains("IChannelList{Alpha}.GetItem(1)"));
  EXPECT_THAT(session.Calls({"GetItem"}), testing::Not(testing::Contains("IChannelList{Alpha}.GetItem(2)")));
  EXPECT_TRUE(session.State().mfOutputOn[2]) << "the pages keep the choice";
}

TEST_F(AutomaticDownloads, TheDiagramOfAOneChannelInstrumentShowsOneLane) {
  OpenAs(1, 0);
  const auto &picTiming = session.Get<PictureBox>("picTiming");
  const auto lanes = [&] {
    std::string strNumbers;
    for (const DrawPrimitive &primitive : picTiming.Painted()) strNumbers += primitive.strText;
    return strNumbers;
  };
  EXPECT_EQ(lanes(), "1");
  session.ShowPage(ePageTiming);
  EXPECT_EQ(lanes(), "1");
  session.Click("cmdDownload");
  EXPECT_EQ(lanes(), "1");
  session.ShowPage(ePageInstr);
  OpenAs(2, 0);
  EXPECT_EQ(lanes(), "12");
}

TEST_F(CapabilityGate, AThirdChannelIsAnIllegalCaseAndThenABoundsFailureOfTheEvent) {
  PanelSession wide({.config = {{"channels", 3}}, .fOpen = false});
  wide.Open();
  EXPECT_THAT(wide.host.TakeBoxes(), testing::Contains("box stop: Subscript out of range"));
}

}  // namespace
}  // namespace tarvik::test
