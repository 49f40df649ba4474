#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <fstream>
#include <regex>
#include <vector>

#include "Adapter.h"
#include "TextHarvest.h"

namespace tarvik::paneltest {
namespace {

/// A day at the panel on which every text comes up once: each mode, each level format, each question, each refusal.
constexpr const char *Day[] = {
    "reset",
    "surface 6975 1095 90 195",
    "driver none",
    "show",
    "hide",
    "driver ok",
    R"(store set Config WorkWithBoxes "1")",
    R"(instr add name="ALPHA" slot=3 addr=5 model=4095 ident="MAKER,PROD A,SN 17,2.04")",
    R"(instr add name="BETA" kind=1 box=21)",
    R"(instr add name="GAMMA" open=0)",
    R"(instr add name="DELTA" mask=20484)",
    "show",
    "invoke cmdCheckErrors_Click",
    "tick 3",
    "tick 4",
    "tab 1",
    "opt optTriggerMode 1",
    "tab 0",
    "tick 2",
    "tick 1",
    "tab 1",
    "opt optTriggerMode 0",
    "combo cboPulseType1 1",
    "combo cboPulseType2 1",
    "opt optPulseMode 2",
    "opt optPulseMode 1",
    "combo cboPeriodSource 1",
    "opt optTriggerMode 1",
    "combo cboArmingSource 1",
    "combo cboArmingLevel 1",
    "combo cboPeriodSource 1",
    "opt optTriggerMode 2",
    "opt optTriggerMode 3",
    "tab 2",
    "click cmdPeriodOrFreq",
    "tab 3",
    "combo cboLevelFormat 0 0",
    "combo cboLevelFormat 0 2",
    "combo cboLevelFormat 0 3",
    "combo cboLevelFormat 0 1",
    "combo cboLevelUnits 0 1",
    "combo cboLevelFormat 1 0",
    "combo cboLevelFormat 1 2",
    "combo cboLevelFormat 1 3",
    "combo cboLevelFormat 1 1",
    "combo cboLevelUnits 1 1",
    "invoke SetTabState 7 11",
    "tab 4",
    "click cmdNumOrGraph",
    "tab 7",
    "click cmdResetInstr",
    "click cmdSelfTest",
    "click cmdCalibrate",
    "click cmdCheckErrors",
    R"(fake fail CheckWarnings -2147220991 "Timeout")",
    "click cmdCheckWarnings",
    R"(fake errors "-100,A")",
    "click cmdCheckErrors",
    R"(fake warnings "Hot")",
    "click cmdCheckWarnings",
    R"(store failwrite AutoErrors "Permission denied")",
    "hide",
    "store okwrite",
    "terminate",
    "driver none-then-ok",
    R"(answer "lab.example")",
    "show",
};

/// What of the list belongs to controls, boxes and settings of a live panel.
constexpr const char *Areas[] = {"lifecycle", "states", "list",   "commands",   "gate",       "mode",   "config",
                                 "timing",    "levels", "limits", "bitpattern", "instrument", "diagram"};

/// Words of the list that stand for several controls.
const std::map<std::string, std::vector<std::string>> Collective{
    {"output options", {"optChannel1Output", "optChannel1InvOutput", "optChannel2Output", "optChannel2InvOutput"}},
    {"fields of the Timing page", {"esPeriodOrFreq"}},
};

class PanelTexts : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_harvest = std::make_unique<TextHarvest>();
    Adapter adapter;
    for (const std::string strLine : Day) {
      const Json answer = adapter.Answer(strLine);
      ASSERT_FALSE(answer.contains("error")) << strLine << ": " << answer["error"];
      ASSERT_FALSE(answer.contains("refused")) << strLine << ": " << answer["refused"];
      if (answer.contains("out")) s_harvest->Listen(answer["out"]);
      s_harvest->Look(adapter.Front());
    }
  }
  static void TearDownTestSuite() { s_harvest.reset(); }

  /// The controls that the entry speaks of.
  static std::vector<std::string> ControlsOf(const std::string &strOf) {
    for (const auto &[strPhrase, arrControls] : Collective)
      if (strOf.starts_with(strPhrase)) return arrControls;
    if (s_harvest->Knows(strOf)) return {strOf};
    if (strOf.starts_with("tabMain page ") || strOf.starts_with("lvwInstruments column ")) return {strOf};
    static const std::regex name(R"([A-Za-z]\w*(\(\d\))?(\.ValueArray)?)");
    std::vector<std::string> arrControls;
    for (std::sregex_iterator at(strOf.begin(), strOf.end(), name), end; at != end; ++at)
      if (s_harvest->Knows(at->str())) arrControls.push_back(at->str());
    return arrControls;
  }

  static bool Holds(const std::set<std::string> &texts, const std::string &strText, const std::string &strOf) {
    const bool fHead =
        strOf.find("first word") != std::string::npos && strOf.find("behind the first word") == std::string::npos;
    const bool fTail = strOf.find("behind the first word") != std::string::npos;
    return std::any_of(texts.begin(), texts.end(), [&](const std::string &strShown) {
      return fHead ? strShown.starts_with(strText) : fTail ? strShown.ends_with(strText) : strShown == strText;
    });
  }

  static bool IsShownBy(const std::string &strControl, const Json &entry) {
    const std::string strKind = entry["kind"], strText = entry["text"], strOf = entry["of"];
    if (Holds(s_harvest->Texts(strKind, strControl), strText, strOf)) return true;
    // Some entries name a field that takes the text as its caption.
    return strOf.find("caption of " + strControl) != std::string::npos &&
           s_harvest->Texts("caption", strControl).contains(strText);
  }

  static bool AnyHolds(const std::set<std::string> &texts, const std::string &strPart) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string &strShown) { return strShown.find(strPart) != std::string::npos; });
  }

  static std::vector<Json> Entries(std::initializer_list<std::string_view> arrKinds) {
    std::ifstream file(TARVIK_TEXTS);
    std::vector<Json> arrEntries;
    for (const Json &entry : Json::parse(file)) {
      const std::string strArea = entry["area"], strKind = entry["kind"];
      const bool fArea = std::find(std::begin(Areas), std::end(Areas), strArea) != std::end(Areas);
      if (fArea && std::find(arrKinds.begin(), arrKinds.end(), strKind) != arrKinds.end()) arrEntries.push_back(entry);
    }
    return arrEntries;
  }

  static std::unique_ptr<TextHarvest> s_harvest;
};

std::unique_ptr<TextHarvest> PanelTexts::s_harvest;

TEST_F(PanelTexts, EachTextOfAControlStandsOnTheControlsItBelongsTo) {
  const auto arrEntries = Entries({"caption", "tooltip", "tag", "unit", "format", "item", "menu", "menukey", "header"});
  ASSERT_GT(arrEntries.size(), 200U);
  for (const Json &entry : arrEntries) {
    const std::string strOf = entry["of"];
    auto arrControls = ControlsOf(strOf);
    if (strOf == "fields of the two pages")
      arrControls = entry["text"] == "V" ? std::vector<std::string>{"esLimitHighVoltage", "esTrgLevExtInThreshold"}
                                         : std::vector<std::string>{"esLimitHighCurrent"};
    // There are four trigger modes but three pulse modes.
    if (entry["kind"] == "tag" && entry["text"] == "3") arrControls = {"optTriggerMode"};
    EXPECT_FALSE(arrControls.empty()) << entry;
    for (const std::string &strControl : arrControls) EXPECT_TRUE(IsShownBy(strControl, entry)) << strControl << entry;
  }
}

TEST_F(PanelTexts, EachLabelStandsBesideItsTextBoxOrInThePicture) {
  const auto arrEntries = Entries({"label"});
  ASSERT_GE(arrEntries.size(), 13U);
  for (const Json &entry : arrEntries) {
    // A label that the editor's form never shows.
    if (entry["of"] == "lblTip, unused") continue;
    const auto arrControls = ControlsOf(entry["of"]);
    EXPECT_FALSE(arrControls.empty()) << entry;
    for (const std::string &strControl : arrControls) EXPECT_TRUE(IsShownBy(strControl, entry)) << strControl << entry;
  }
}

TEST_F(PanelTexts, EachMaskOfAListIsTheOneItRemembersBy) {
  for (const Json &entry : Entries({"mask"})) {
    if (entry["of"] == "esBurstLength") continue;  // a field has no list to remember
    for (const std::string &strControl : ControlsOf(entry["of"]))
      EXPECT_TRUE(IsShownBy(strControl, entry)) << strControl << entry;
  }
}

TEST_F(PanelTexts, EachMessageOfThePanelCameUpInABox) {
  for (const Json &entry : Entries({"message"})) {
    if (entry["area"] == "bitpattern") continue;  // refusals that a user of the panel cannot provoke
    const std::string strOf = entry["of"];
    if (strOf.find("unknown") != std::string::npos) continue;  // likewise
    EXPECT_TRUE(AnyHolds(s_harvest->Messages(), entry["text"])) << entry;
  }
}

TEST_F(PanelTexts, EachTitleBehindTheApplicationsCameUpOnABox) {
  for (const Json &entry : Entries({"title"})) {
    if (entry["area"] == "bitpattern") continue;
    EXPECT_TRUE(s_harvest->Titles().contains("TarvikVI" + entry["text"].get<std::string>())) << entry;
  }
}

TEST_F(PanelTexts, EachStatusTextCameUpInTheStatusBox) {
  for (const Json &entry : Entries({"status"}))
    EXPECT_TRUE(AnyHolds(s_harvest->Texts("status", "txtStatus"), entry["text"])) << entry;
}

TEST_F(PanelTexts, EachSettingThatThePanelWritesWentToTheStore) {
  for (const Json &entry : Entries({"setting"})) {
    const std::string strOf = entry["of"];
    if (strOf.starts_with("mfWorkWithBoxes")) continue;  // read only
    EXPECT_TRUE(s_harvest->Texts("setting", "store").contains(entry["text"].get<std::string>())) << entry;
  }
}

TEST_F(PanelTexts, TheListOfALockedLeadingEdgeHoldsItsTwoTimes) {
  EXPECT_TRUE(s_harvest->Texts("word", "esLeadingEdge(0).ValueArray").contains("0.8E-9;1.6E-9"));
}

}  // namespace
}  // namespace tarvik::paneltest

int main(int argc, char **argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
