#include "DaySession.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "bitpattern/BitPattern.h"
#include "instrument/Vocabulary.h"
#include "platform/CheckBox.h"
#include "settings/modCboTags.h"

namespace tarvik::test {

using testing::IsEmpty;

namespace {

std::string Indexed(const char *strName, Long k) { return std::string(strName) + "(" + std::to_string(k) + ")"; }

/// What the pages show, in the driver's units and under the driver's names.
class Shown {
 public:
  Shown(const PanelUser &user, const Model &model) : m_user(user), m_model(model) {}

  SettingsByName Read() {
    ReadMode();
    for (Long k = 0; k < m_model.lngChannels; ++k) ReadChannel(k);
    ReadInstrument();
    ReadBits();
    return m_settings;
  }

 private:
  Double Value(const std::string &strName) const { return m_user.Field(strName).Value(); }
  Double Number(const std::string &strGroup) const { return CDbl(m_user.Get<FrameEnhanced>(strGroup).Value()); }
  bool On(const std::string &strOption) const { return m_user.Get<OptionButton>(strOption).Value(); }
  bool HasChoice(const char *strList) const {
    return m_user.List(strList).Enabled() && m_user.List(strList).ListIndex() >= 0;
  }
  Long Choice(const std::string &strList) const { return m_user.List(strList).GetCurrItemData(-7); }

  void ReadMode() {
    auto &numbers = m_settings.numbers;
    numbers["trigger mode"] = Number("grpTriggerMode");
    numbers["pulse mode"] = Number("grpPulseMode");
    // A list without a choice shows nothing that could be compared.
    if (m_user.Field("esBurstLength").Enabled()) numbers["burst length"] = Value("esBurstLength");
    if (HasChoice("cboPeriodSource")) numbers["period source"] = Choice("cboPeriodSource");
    if (HasChoice("cboTriggerSlope")) numbers["clock slope"] = Choice("cboTriggerSlope");
    if (HasChoice("cboArmingSource")) numbers["arming source"] = Choice("cboArmingSource");
    const bool fPll = HasChoice("cboArmingSource") && Choice("cboArmingSource") == eArmPll;
    if (HasChoice("cboArmingLevel") && !fPll) numbers["arm slope"] = Choice("cboArmingLevel");
    if (fPll)
      numbers["PLL frequency"] = Choice("cboArmingLevel") == ePllFrequency
                                     ? Value("esPllPeriodOrFreq")
                                     : m_user.Field("esPllPeriodOrFreq").Reciprocal();
    const bool fPattern = numbers["pulse mode"] == Long{ePulsePattern};
    for (Long k = 0; k < m_model.lngChannels; ++k) {
      const std::string strList = "cboPulseType" + std::to_string(k + 1);
      if (!HasChoice(strList.c_str())) continue;
      numbers[(fPattern ? "format " : "pulse type ") + std::to_string(k + 1)] = Choice(strList);
      // With the external width the panel knows single pulses only.
      if (!fPattern && numbers["trigger mode"] != Long{eTriggerExtWidth})
        numbers["double pulses " + std::to_string(k + 1)] =
            m_user.Field(Indexed("esDelay", k)).Caption() == "Dbl. Delay";
    }
  }

  void ReadChannel(Long k) {
    auto &numbers = m_settings.numbers;
    const std::string strChannel = " " + std::to_string(k + 1);
    const auto field = [&](const char *strWhat, const char *strName) {
      numbers[strWhat + strChannel] = Value(Indexed(strName, k));
    };
    field("delay", "esDelay");
    field("width", "esWidth");
    field("leading", "esLeadingEdge");
    field("trailing", "esTrailingEdge");
    const bool fHighLow = m_user.List(Indexed("cboLevelFormat", k)).GetCurrGroupData(-7) == eLevelHighLow;
    field(fHighLow ? "high" : "offset", "esLevelHigh");
    field(fHighLow ? "low" : "amplitude", "esLevelLo");
    const char *strUnit = Choice(Indexed("cboLevelUnits", k)) == eTypeVoltage ? "V" : "A";
    EXPECT_EQ(m_user.Field(Indexed("esLevelHigh", k)).BaseUnit(), strUnit);
    EXPECT_EQ(m_user.Field(Indexed("esLevelLo", k)).BaseUnit(), strUnit);
    if (m_model.Has(eLacksLoadCompensation)) field("load", "esLoadCompensation");
    if (m_model.Has(eLacksImpedance)) numbers["impedance" + strChannel] = Choice(Indexed("cboOutputImpedance", k));
    numbers["level type" + strChannel] = Choice(Indexed("cboLevelUnits", k));
    numbers["polarity" + strChannel] = Number(Indexed("grpNormalCompliment", k));
    const std::string strOutput = "optChannel" + std::to_string(k + 1);
    numbers["output" + strChannel] = On(strOutput + "Output(0)");
    EXPECT_EQ(On(strOutput + "Output(2)"), On(strOutput + "Output(0)"));
    if (m_model.Has(eLacksComplement)) numbers["inverse output" + strChannel] = On(strOutput + "InvOutput(0)");
    const double dblLimits = On(Indexed("optLimitsChanel", 2 * k));
    for (const char *strKind : {"voltage", "current"})
      numbers[std::string("limits on, ") + strKind + strChannel] = dblLimits;
    field("limit high, voltage", "esLimitHighVoltage");
    field("limit low, voltage", "esLimitLowVoltage");
    field("limit high, current", "esLimitHighCurrent");
    field("limit low, current", "esLimitLowCurrent");
  }

  void ReadInstrument() {
    auto &numbers = m_settings.numbers;
    const bool fFrequency = m_user.Get<CommandButton>("cmdPeriodOrFreq").Caption() == "Frequency";
    const EngrSpin &period = m_user.Field("esPeriodOrFreq");
    numbers["frequency"] = fFrequency ? period.Value() : period.Reciprocal();
    if (m_model.Has(eLacksChannelMath)) numbers["channel math"] = Number("grpOutputs");
    numbers["ext threshold"] = Value("esTrgLevExtInThreshold");
    numbers["clock threshold"] = Value("esTrgLevClkInThreshold");
    numbers["ext impedance"] = Number("grpTrigLevelExtInImp");
    numbers["clock impedance"] = Number("grpTrigLevelClkInImp");
    numbers["trigger out"] = Number("grpTrigLevelTrigOut");
    numbers["strobe out"] = Number("grpTrigLevelStrobeOut");
    if (m_model.Has(eLacksVxiSource)) numbers["VXI source"] = Choice("cboVxiTriggerSource");
    if (m_model.Has(eLacksVxiEnable)) numbers["VXI line"] = Choice("cboVxiTriggerEnable");
    numbers["reference source"] = Choice("cboPllRefSource");
    if (HasChoice("cboPllRefFreq")) numbers["reference"] = Choice("cboPllRefFreq");
  }

  void ReadBits() {
    const auto &editor = m_user.Get<BitPattern>("BitPattern1");
    const auto read = [&](const char *strName, Long eChannel) {
      ByteArray arr(1, std::vector<Byte>(2048));
      Long lngSize = 0;
      editor.GetPattern(eChannel, arr, lngSize);
      std::string strBits;
      for (Long i = 0; i < editor.GetPatternLength(); ++i)
        strBits += (arr.Elements()[static_cast<std::size_t>(i / 8)] & (0x80 >> i % 8)) != 0 ? '1' : '0';
      m_settings.texts[strName] = strBits;
    };
    read("bits 1", 1);
    if (m_model.lngChannels > 1) read("bits 2", 2);
    read("bits strobe", 8);
  }

  const PanelUser &m_user;
  const Model &m_model;
  SettingsByName m_settings;
};

}  // namespace

void PrintTo(const Model &model, std::ostream *out) { *out << model.strName; }

std::string DaySession::NameOf(const testing::TestParamInfo<ParamType> &test) {
  std::string strName = std::get<Model>(test.param).strName;
  std::erase(strName, '-');
  return strName;
}

void DaySession::ExpectConnected() {
  EXPECT_TRUE(session.Instr().IsConnected());
  EXPECT_EQ((session.host.settings[{"LastUsed", "ServerURL"}]), place->Server());
}

void DaySession::ExpectPanelAgrees(const char *strWhen) {
  SCOPED_TRACE(strWhen);
  const SettingsByName shown = Shown(User(), Instrument()).Read(), held = Held();
  for (const auto &[strName, dblValue] : shown.numbers) {
    const auto found = held.numbers.find(strName);
    if (found == held.numbers.end()) {
      ADD_FAILURE() << "the driver has no " << strName;
      continue;
    }
    EXPECT_NEAR(dblValue, found->second, 1e-9 * std::fabs(found->second)) << strName;
  }
  EXPECT_EQ(shown.texts, held.texts);
}

void DaySession::ExpectHeld(const char *strName, Double dblValue) {
  EXPECT_NEAR(Held().numbers[strName], dblValue, 1e-9 * std::fabs(dblValue)) << strName;
}

void DaySession::ExpectNoBox() { EXPECT_THAT(session.host.TakeBoxes(), IsEmpty()); }

void DaySession::EditMode(bool fAgain) {
  User().ShowPage(ePageMode);
  User().Choose("optTriggerMode(1)");
  User().Choose("optPulseMode(1)");
  User().Type("esBurstLength", fAgain ? "77" : "12");
  User().Take("cboArmingLevel", 1);
  User().Take("cboPeriodSource", fAgain ? 0 : 2);
  if (!fAgain) User().Take("cboTriggerSlope", 1);
}

void DaySession::EditTiming(bool fAgain) {
  User().ShowPage(ePageTiming);
  User().Type("esPeriodOrFreq", fAgain ? "20us" : "10us");
  for (Long k = 0; k < Instrument().lngChannels; ++k) {
    User().Type(Indexed("esWidth", k), fAgain ? "4us" : "2.5us");
    User().Type(Indexed("esDelay", k), fAgain ? "3us" : "1.25us");
    User().Choose("optChannel" + std::to_string(k + 1) + "Output(0)");
  }
  if (Instrument().Has(eLacksFreeLeadingEdge))
    User().Type("esLeadingEdge(0)", fAgain ? "7ns" : "5ns");
  else
    User().Type("esLeadingEdge(0)", "1.6ns");
  if (Instrument().Has(eLacksTrailingEdge)) {
    User().TakeMenu("toolPopupTEdge(0)", "TeAbs");
    User().Type("esTrailingEdge(0)", fAgain ? "8ns" : "9ns");
  }
}

void DaySession::EditLevels(bool fAgain) {
  User().ShowPage(ePageLevels);
  const Long k = Instrument().lngChannels - 1;
  User().Type(Indexed("esLevelHigh", k), fAgain ? "1.5V" : "3V");
  User().Type(Indexed("esLevelLo", k), fAgain ? "-0.5V" : "-1V");
  User().Choose(Indexed("optNormalCompliment", 2 * k + (fAgain ? 0 : 1)));
  if (Instrument().Has(eLacksImpedance)) User().Take(Indexed("cboOutputImpedance", k), fAgain ? 0 : 1);
  if (Instrument().Has(eLacksLoadCompensation))
    User().Type(Indexed("esLoadCompensation", k), fAgain ? "100Ohm" : "75Ohm");
  if (Instrument().Has(eLacksChannelMath) && Instrument().lngChannels > 1)
    User().Choose(fAgain ? "optOutputs(0)" : "optOutputs(1)");
}

void DaySession::EditPattern(bool fAgain) {
  User().ShowPage(ePagePattern);
  User().Type("esLast", fAgain ? "40" : "100");
  User().Type("esAddress", "1");
  session.host.arrInputAnswers = {fAgain ? "4" : "6"};
  User().TakeMenu("toolPopup(0)", "Clock/n");
  User().TakeMenu("toolPopup(3)", fAgain ? "Invert" : "Fill1");
  if (Instrument().lngChannels > 1) User().TakeMenu("toolPopup(1)", "Fill1");
}

void DaySession::EditLimits(bool fAgain) {
  User().ShowPage(ePageLimits);
  for (Long k = 0; k < Instrument().lngChannels; ++k) {
    User().Type(Indexed("esLimitHighVoltage", k), fAgain ? "6V" : "5V");
    User().Type(Indexed("esLimitLowVoltage", k), fAgain ? "-4V" : "-5V");
    User().Type(Indexed("esLimitHighCurrent", k), fAgain ? "300mA" : "200mA");
  }
  User().Choose("optLimitsChanel(0)");
}

void DaySession::EditTrigLev(bool fAgain) {
  User().ShowPage(ePageTrigLev);
  User().Type("esTrgLevExtInThreshold", fAgain ? "0.75V" : "1.25V");
  User().Choose(fAgain ? "optTrigLevelClkIn(0)" : "optTrigLevelClkIn(1)");
  User().Choose(fAgain ? "optTrigLevelExtInImp(0)" : "optTrigLevelExtInImp(1)");
  User().Choose(fAgain ? "optTrigLevelStrobeOut(0)" : "optTrigLevelStrobeOut(1)");
  if (Instrument().Has(eLacksAnyVxi)) User().Take("cboVxiTriggerEnable", fAgain ? 3 : 8);
}

void DaySession::EditConfig(bool fAgain) {
  User().ShowPage(ePageConfig);
  User().Take("cboPllRefSource", 1);
  User().Take("cboPllRefFreq", fAgain ? 0 : 1);
  if (fAgain) User().Take("cboPllRefFreq", 1);
}

void DaySession::EditEverything(bool fAgain) {
  EditMode(fAgain);
  EditTiming(fAgain);
  EditLevels(fAgain);
  EditPattern(fAgain);
  EditLimits(fAgain);
  EditTrigLev(fAgain);
  EditConfig(fAgain);
}

void DaySession::ExpectAll(TabStates eState) {
  const auto &states = TarvikGUI::Panel::Of(*session.panel).state.meTabState;
  for (const TabNumEnum ePage :
       {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig})
    EXPECT_EQ(states[static_cast<std::size_t>(ePage)], eState) << ePage;
}

void DaySession::UseOptions() {
  User().ShowPage(ePageOptions);
  for (const char *strName : {"chkAutoDownload", "chkAutoDownOnError", "chkAutoOutputOnOff"}) User().Choose(strName);
}

TEST_P(DaySession, WhatThePanelShowsIsWhatTheInstrumentHolds) {
  ExpectConnected();
  UseOptions();
  session.Open(Listed());
  ExpectNoBox();
  ExpectAll(ePageNeedsDownloading);
  User().Click("cmdDownload");
  ExpectNoBox();
  ExpectAll(ePageIsCurrent);
  ExpectPanelAgrees("after the first download");

  EditEverything(false);
  ExpectNoBox();
  ExpectAll(ePageIsDirty);
  User().Click("cmdUpload");
  ExpectNoBox();
  ExpectAll(ePageIsCurrent);
  ExpectPanelAgrees("after the first upload");
  ExpectHeld("burst length", 12);
  ExpectHeld("width 1", 2.5e-6);
  ExpectHeld("frequency", 1e5);
  ExpectHeld("ext threshold", 1.25);
  ExpectHeld("reference", 1e7);
  EXPECT_EQ(Held().texts["bits strobe"], std::string(100, '1'));

  // Somebody else resets the instrument.
  Call(session.Instrument(Listed()), &kolven::IInstrument::Reset);
  User().Click("cmdDownload");
  ExpectNoBox();
  ExpectPanelAgrees("after a reset behind the panel's back");
  EXPECT_DOUBLE_EQ(User().Field("esWidth(0)").Value(), 1e-7);
  EXPECT_DOUBLE_EQ(User().Field("esTrgLevExtInThreshold").Value(), 2.5);
  EXPECT_TRUE(User().Get<OptionButton>("optTriggerMode(0)").Value());
  EXPECT_EQ(User().List("cboPllRefSource").Text(), "Internal");
  EXPECT_EQ(User().Get<BitPattern>("BitPattern1").GetPatternLength(), 16);

  EditEverything(true);
  ExpectAll(ePageIsDirty);
  User().Click("cmdUpload");
  ExpectNoBox();
  ExpectPanelAgrees("after the second upload");
  ExpectHeld("burst length", 77);
  ExpectHeld("frequency", 5e4);
  ExpectHeld("limit high, voltage 1", 6);

  session.Open(Listed());  // the tick goes
  EXPECT_THAT(User().Ticked(), IsEmpty());
  EXPECT_FALSE(session.Instr().IsOnline(True));
  ExpectPanelAgrees("after the end of the session");
  ExpectNoBox();
}

}  // namespace tarvik::test
