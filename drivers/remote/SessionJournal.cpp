#include "remote/SessionJournal.h"

#include <algorithm>

namespace tarvik::remote {

namespace {

constexpr std::string_view Commands[] = {"Reset", "SelfTest", "Calibrate"};
constexpr std::string_view Outputs[] = {"SetOutput", "SetComplementOutput"};
/// Of the session, not of the instrument.
constexpr std::string_view SessionSetters[] = {"SetVerbose", "SetAutoDetectErrors", "SetPnpTimeout"};
constexpr std::string_view SetterPrefix = "Set";

bool IsOneOf(std::string_view strName, const auto &names) {
  return std::ranges::find(names, strName) != std::end(names);
}

std::string Ending(bool fDone, const std::string &strWhy) { return fDone ? "" : " failed: " + strWhy; }

}  // namespace

/// "ChannelTiming(1).Width"
std::string SessionJournal::SettingOf(const Made &made) {
  std::string strSetting(made.strInterface.substr(1));
  if (made.lngChannel != 0) strSetting += "(" + std::to_string(made.lngChannel) + ")";
  return strSetting + "." + std::string(made.strOperation.substr(SetterPrefix.size()));
}

void SessionJournal::Note(const Made &made) {
  if (IsOneOf(made.strOperation, Commands)) {
    m_log({"command", made.strInstrument + ": " + std::string(made.strOperation) + Ending(made.fDone, made.strWhy)});
    return;
  }
  if (!made.strOperation.starts_with(SetterPrefix) || IsOneOf(made.strOperation, SessionSetters)) return;
  const std::string strSetting = SettingOf(made);
  if (made.fTransaction) {
    auto &arrSettings = m_settings[made.strInstrument];
    if (std::ranges::find(arrSettings, strSetting) == arrSettings.end()) arrSettings.push_back(strSetting);
    if (!made.fDone) m_log({"setting", made.strInstrument + ": " + strSetting + Ending(false, made.strWhy)});
    return;
  }
  const bool fOutput = IsOneOf(made.strOperation, Outputs);
  const char *strState = !fOutput ? "" : made.fSwitchedOn ? " on" : " off";
  m_log({fOutput ? "command" : "setting",
         made.strInstrument + ": " + strSetting + strState + Ending(made.fDone, made.strWhy)});
}

std::string SessionJournal::TakeSettings(const std::string &strInstrument) {
  std::string strSettings;
  for (const std::string &strSetting : m_settings[strInstrument])
    strSettings += (strSettings.empty() ? "" : ", ") + strSetting;
  m_settings.erase(strInstrument);
  return strSettings.empty() ? "no settings" : strSettings;
}

void SessionJournal::NoteCommit(const std::string &strInstrument, bool fDone, const std::string &strWhy) {
  const std::string strSettings = TakeSettings(strInstrument);
  m_log({"transfer",
         strInstrument + ": transfer " + (fDone ? "committed: " : "refused (" + strWhy + "): ") + strSettings});
}

void SessionJournal::NoteAbort(const std::string &strInstrument) {
  if (m_settings.contains(strInstrument))
    m_log({"transfer", strInstrument + ": transfer dropped: " + TakeSettings(strInstrument)});
}

}  // namespace tarvik::remote
