#include "panel/SettingControls.h"

#include <QAbstractButton>
#include <algorithm>

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "settings/SetupDifferences.h"
#include "support/Conversions.h"
#include "support/Host.h"

namespace tarvik {

namespace {

/// In a name, '#' stands for the channel from 1 on and '%' for the index of its controls from 0 on.
struct ControlRow {
  std::string_view strKey;
  TabNumEnum ePage;
  std::string_view strName;
  bool fOfPatternMode = false;  ///< shows it in pattern mode only
};
constexpr ControlRow Rows[] = {
    {"mode.trigger", ePageMode, "grpTriggerMode"},
    {"mode.pulse", ePageMode, "grpPulseMode"},
    {"mode.burstLength", ePageMode, "esBurstLength"},
    {"mode.pulseType", ePageMode, "cboPulseType#"},
    {"mode.periodSource", ePageMode, "cboPeriodSource"},
    {"mode.clockEdge", ePageMode, "cboTriggerSlope"},
    {"mode.armingSource", ePageMode, "cboArmingSource"},
    {"mode.armingLevel", ePageMode, "cboArmingLevel"},
    {"mode.pllPeriod", ePageMode, "esPllPeriodOrFreq"},
    {"mode.pllFrequency", ePageMode, "esPllPeriodOrFreq"},
    {"timing.frequency", ePageTiming, "esPeriodOrFreq"},
    {"timing.delay", ePageTiming, "esDelay(%)"},
    {"timing.width", ePageTiming, "esWidth(%)"},
    {"timing.leading", ePageTiming, "esLeadingEdge(%)"},
    {"timing.coupled", ePageTiming, "toolPopupTEdge(%)"},
    {"timing.trailing", ePageTiming, "esTrailingEdge(%)"},
    {"levels.output", ePageTiming, "grpChan#OnOff(0)"},
    {"levels.output", ePageLevels, "grpChan#OnOff(1)"},
    {"levels.complement", ePageTiming, "grpChan#InvOnOff(0)"},
    {"levels.complement", ePageLevels, "grpChan#InvOnOff(1)"},
    {"levels.unit", ePageLevels, "cboLevelUnits(%)"},
    {"levels.high", ePageLevels, "esLevelHigh(%)"},
    {"levels.low", ePageLevels, "esLevelLo(%)"},
    {"levels.offset", ePageLevels, "esLevelHigh(%)"},
    {"levels.amplitude", ePageLevels, "esLevelLo(%)"},
    {"levels.impedance", ePageLevels, "cboOutputImpedance(%)"},
    {"levels.load", ePageLevels, "esLoadCompensation(%)"},
    {"levels.polarity", ePageLevels, "grpNormalCompliment(%)"},
    {"levels.channelMath", ePageLevels, "grpOutputs"},
    {"pattern.rz", ePagePattern, "grpChannelRzOrNrz(%)"},
    {"pattern.rz", ePageMode, "cboPulseType#", true},
    {"pattern.stream[1]", ePagePattern, "BitPattern1"},
    {"pattern.stream[2]", ePagePattern, "BitPattern1"},
    {"pattern.strobe", ePagePattern, "BitPattern1"},
    {"limits.enabled", ePageLimits, "grpLimitsChanel(%)"},
    {"limits.highVoltage", ePageLimits, "esLimitHighVoltage(%)"},
    {"limits.lowVoltage", ePageLimits, "esLimitLowVoltage(%)"},
    {"limits.highCurrent", ePageLimits, "esLimitHighCurrent(%)"},
    {"limits.lowCurrent", ePageLimits, "esLimitLowCurrent(%)"},
    {"trglevels.extInThreshold", ePageTrigLev, "esTrgLevExtInThreshold"},
    {"trglevels.extInImpedance", ePageTrigLev, "grpTrigLevelExtInImp"},
    {"trglevels.clkInThreshold", ePageTrigLev, "esTrgLevClkInThreshold"},
    {"trglevels.clkInImpedance", ePageTrigLev, "grpTrigLevelClkInImp"},
    {"trglevels.triggerOut", ePageTrigLev, "grpTrigLevelTrigOut"},
    {"trglevels.strobeOut", ePageTrigLev, "grpTrigLevelStrobeOut"},
    {"trglevels.vxiLine", ePageTrigLev, "cboVxiTriggerEnable"},
    {"trglevels.vxiSource", ePageTrigLev, "cboVxiTriggerSource"},
    {"pll.source", ePageConfig, "cboPllRefSource"},
    {"pll.frequency", ePageConfig, "cboPllRefFreq"},
};

std::string NameFor(std::string_view strPattern, Long lngChannel) {
  std::string strName;
  for (const char ch : strPattern)
    strName += ch == '#' ? std::to_string(lngChannel) : ch == '%' ? std::to_string(lngChannel - 1) : std::string(1, ch);
  return strName;
}

/// The value as the tags of option buttons carry it.
std::string TagOf(const SettingValue &value) {
  if (const auto *fOn = std::get_if<Boolean>(&value)) return CStr(*fOn);
  if (const auto *lngValue = std::get_if<Long>(&value)) return CStr(*lngValue);
  if (const auto *dblValue = std::get_if<Double>(&value)) return CStr(Variant(*dblValue));
  return {};
}

std::string CaptionOf(const FrameEnhanced &group, const SettingValue &value) {
  const std::vector<OptionButtonControl *> arrButtons = group.OptionButtons();
  const std::string strTag = TagOf(value);
  auto button = std::ranges::find_if(arrButtons, [&](const auto *tagged) { return tagged->Tag() == strTag; });
  // Two buttons without tags are a switch, first the one that turns it on.
  const auto *fOn = std::get_if<Boolean>(&value);
  if (button == arrButtons.end() && fOn && arrButtons.size() == 2) button = arrButtons.begin() + (*fOn ? 0 : 1);
  if (button == arrButtons.end()) return {};
  const auto *widget = dynamic_cast<const QAbstractButton *>(*button);
  return widget ? widget->text().trimmed().toStdString() : std::string();
}

std::string ItemOf(const CboEnhanced &list, const SettingValue &value) {
  std::optional<Long> lngData;
  if (const auto *fOn = std::get_if<Boolean>(&value)) lngData = *fOn ? eFormatRz : eFormatNrz;
  if (const auto *lngValue = std::get_if<Long>(&value)) lngData = *lngValue;
  if (const auto *dblValue = std::get_if<Double>(&value)) IgnoreErrors([&] { lngData = CLng(*dblValue); });
  for (Long i = 0; lngData && i < list.ListCount(); ++i)
    if (list.ItemData(i) == *lngData) return list.ItemText(i);
  return {};
}

}  // namespace

std::vector<SettingControl> ControlsOf(const Setting &setting, Long lngChannel, const Setup &shown) {
  const bool fPatternMode = shown.Mode.PulseMode == ePulsePattern;
  std::vector<SettingControl> arrControls;
  for (const ControlRow &row : Rows)
    if (row.strKey == setting.strKey && (fPatternMode || !row.fOfPatternMode))
      arrControls.push_back({row.ePage, NameFor(row.strName, lngChannel)});
  return arrControls;
}

std::string TextInControl(const QWidget &control, const SetupDifference &difference, const Setup &shown,
                          const Setup &known) {
  const Setting &setting = *difference.setting;
  const SettingValue value = setting.Read(known, difference.lngChannel);
  std::string strText;
  if (const auto *group = dynamic_cast<const FrameEnhanced *>(&control)) strText = CaptionOf(*group, value);
  if (const auto *list = dynamic_cast<const CboEnhanced *>(&control)) strText = ItemOf(*list, value);
  const auto *field = dynamic_cast<const EngrSpin *>(&control);
  if (field && setting.strKey == "timing.frequency" && field->BaseUnit() == "s") {
    const Setting &period = *FindSetting("timing.period")->setting;
    const auto inSeconds = DifferenceIn(period, 0, shown, known, DriverRounding, TheHost().DecimalSeparator());
    if (inSeconds) strText = inSeconds->strSecond;
  }
  if (setting.eKind == SettingKind::Stream)
    strText = setting.Caption(difference.lngChannel) + ": " + difference.strSecond;
  return strText.empty() ? difference.strSecond : strText;
}

}  // namespace tarvik
