#include "settings/RunningOutput.h"

#include <algorithm>

#include "settings/SettingText.h"

namespace tarvik {

namespace {

/// What somebody at the output looks at first.
constexpr std::string_view Keys[] = {"levels.high", "levels.low", "timing.period", "timing.delay", "timing.width"};

bool ShapesOutput(const Setting &setting) { return setting.ePage == ePageLevels || setting.ePage == ePageTiming; }

void Append(std::string &strList, const Setting &setting, const std::string &strValue) {
  strList += (strList.empty() ? "" : ", ") + std::string(setting.strCaption) + " " + strValue;
}

}  // namespace

std::string RunningText(const KnownSetup &known, Long lngChannel, Boolean fIsComplement,
                        const std::vector<SetupDifference> &arrDiffering, char chSeparator) {
  std::string strMarked;
  for (const SetupDifference &difference : arrDiffering)
    if (ShapesOutput(*difference.setting) && (difference.lngChannel == 0 || difference.lngChannel == lngChannel))
      Append(strMarked, *difference.setting, difference.strFirst);
  if (strMarked.empty()) return {};

  std::string strRunning;
  for (const Setting &setting : Settings()) {
    // What is marked is known, and told beside what is always told.
    const bool fMarked = std::ranges::find(arrDiffering, &setting, &SetupDifference::setting) != arrDiffering.end();
    if (std::ranges::find(Keys, setting.strKey) == std::end(Keys) && !(fMarked && ShapesOutput(setting))) continue;
    const Long lngPlace = setting.fPerChannel ? lngChannel : 0;
    if (known.Knows(setting, lngPlace) && setting.IsInUse(known.Values(), lngPlace))
      Append(strRunning, setting, ShownText(setting, known.Values(), lngPlace, ShownDigits, chSeparator));
  }
  return std::string(fIsComplement ? "Inverse output " : "Output ") + std::to_string(lngChannel) + " runs with " +
         strRunning + " and not with the marked " + strMarked;
}

}  // namespace tarvik
