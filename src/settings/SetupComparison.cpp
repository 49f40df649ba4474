#include "settings/SetupComparison.h"

#include <algorithm>
#include <cctype>

#include "settings/SettingText.h"
#include "settings/SetupDifferences.h"

namespace tarvik {

namespace {

constexpr ComparedSide Sides[] = {ComparedSide::Panel, ComparedSide::Instrument, ComparedSide::File};
constexpr std::string_view SideCaptions[] = {"Panel", "Instrument", "File"};
constexpr std::string_view PageCaptions[] = {"Instr.", "Mode/Trg", "Timing", "Levels", "Pattern",
                                             "Limits", "Trg-Lev",  "Config", "Options"};

std::string InLowerCase(std::string_view strText) {
  std::string strLower(strText);
  for (char &ch : strLower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return strLower;
}

bool Matches(const ComparedRow &row, const std::string &strFilter) {
  const auto holds = [&](const std::string &strText) {
    return InLowerCase(strText).find(strFilter) != std::string::npos;
  };
  return holds(row.setting->Caption(row.lngChannel)) || holds(row.setting->Key(row.lngChannel)) ||
         std::ranges::any_of(row.arrTexts, holds);
}

void Copy(const Setting &setting, Long lngChannel, const Setup &from, Setup &to) {
  setting.Write(to, lngChannel, setting.Read(from, lngChannel));
}

/// Unit and levels mean something together only.
void CopyLevels(Long lngChannel, const Setup &from, Setup &to) {
  to.Levels.eOutputType[lngChannel] = from.Levels.eOutputType[lngChannel];
  for (const Setting &setting : Settings())
    if (setting.fLevelUnit && setting.IsStored(to, lngChannel)) Copy(setting, lngChannel, from, to);
}

}  // namespace

std::string_view PageCaption(TabNumEnum ePage) { return PageCaptions[static_cast<std::size_t>(ePage)]; }

std::string_view SideCaption(ComparedSide eSide) { return SideCaptions[static_cast<std::size_t>(eSide)]; }

std::optional<ComparedRow> SetupComparison::RowOf(const Setting &setting, Long lngChannel, char chSeparator) const {
  ComparedRow row{&setting, lngChannel, {}};
  bool fDiffers = false;
  for (const ComparedSide eFirst : Sides) {
    for (const ComparedSide eSecond : Sides) {
      if (eFirst >= eSecond || !Has(eFirst) || !Has(eSecond)) continue;
      const Setup &first = SetupOf(eFirst), &second = SetupOf(eSecond);
      const bool fUsed = setting.IsInUse(first, lngChannel) || setting.IsInUse(second, lngChannel);
      const Setup &guide = setting.IsHad(first, lngChannel) ? first : second;
      if (!fUsed || !setting.IsStored(guide, lngChannel)) continue;
      const auto difference = DifferenceIn(setting, lngChannel, first, second, DriverRounding, chSeparator);
      if (!difference) continue;
      fDiffers = true;
      // More digits where they are needed to tell one pair apart.
      const auto take = [&](ComparedSide eSide, const std::string &strText) {
        std::string &strShown = row.arrTexts[static_cast<std::size_t>(eSide)];
        if (strText.size() > strShown.size()) strShown = strText;
      };
      take(eFirst, difference->strFirst);
      take(eSecond, difference->strSecond);
    }
  }
  if (!fDiffers) return std::nullopt;
  for (const ComparedSide eSide : Sides) {
    std::string &strText = row.arrTexts[static_cast<std::size_t>(eSide)];
    if (strText.empty() && Has(eSide) && setting.IsHad(SetupOf(eSide), lngChannel))
      strText = ShownText(setting, SetupOf(eSide), lngChannel, ShownDigits, chSeparator);
  }
  return row;
}

std::vector<ComparedRow> SetupComparison::Rows(TabNumEnum ePage, std::string_view strFilter, char chSeparator) const {
  const std::string strLower = InLowerCase(strFilter);
  std::vector<ComparedRow> arrRows;
  for (const Setting &setting : Settings()) {
    if (setting.fNotation || (ePage != eAllPages && ePage != setting.ePage)) continue;
    for (const Long lngChannel : setting.Channels())
      if (auto row = RowOf(setting, lngChannel, chSeparator); row && Matches(*row, strLower))
        arrRows.push_back(std::move(*row));
  }
  return arrRows;
}

Setup SetupComparison::Taken(ComparedSide eFrom, const std::vector<ComparedRow> &arrRows) const {
  Setup setup = SetupOf(ComparedSide::Panel);
  const Setup &from = SetupOf(eFrom);
  for (const ComparedRow &row : arrRows) {
    const Setting &setting = *row.setting;
    if (!setting.IsHad(from, row.lngChannel) || !setting.IsHad(setup, row.lngChannel)) continue;
    const bool fOfLevels = setting.fLevelUnit || setting.strKey == "levels.unit";
    if (fOfLevels && setup.Levels.eOutputType[row.lngChannel] != from.Levels.eOutputType[row.lngChannel])
      CopyLevels(row.lngChannel, from, setup);
    else
      Copy(setting, row.lngChannel, from, setup);
  }
  return setup;
}

std::string ToText(const std::vector<ComparedRow> &arrRows) {
  std::string strText = "Page\tSetting\tPanel\tInstrument\tFile\n";
  for (const ComparedRow &row : arrRows) {
    strText += std::string(PageCaption(row.setting->ePage)) + "\t" + row.setting->Caption(row.lngChannel);
    for (const std::string &strValue : row.arrTexts) strText += "\t" + strValue;
    strText += "\n";
  }
  return strText;
}

}  // namespace tarvik
