#pragma once

#include <string>
#include <vector>

#include "CtlSession.h"
#include "settings/Setting.h"
#include "settings/SetupDifferences.h"

namespace tarvik {

/// What the commands print, for people or as JSON. Every text ends with a line break unless it is empty.
std::string InstrumentsText(const std::vector<ListedInstrument> &arrInstruments, bool fJson);
std::string IdentityText(const Setup &identity, bool fJson);
std::string DifferencesText(const std::vector<SetupDifference> &arrDifferences, bool fJson);
/// "timing.width[1]=50ns" for each.
std::string SettingsText(const Setup &setup, const std::vector<SettingPlace> &arrPlaces, bool fJson);
/// Every setting that there is: key, where the panel shows it, what it can be.
std::string KeysText(bool fJson);
/// A list of texts, one a line.
std::string LinesText(const std::vector<std::string> &arrLines, bool fJson);

}  // namespace tarvik
