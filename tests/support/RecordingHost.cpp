#include "RecordingHost.h"

#include <utility>

#include "support/RunTimeError.h"

namespace tarvik::test {

namespace {

/// Takes one failure off the queue and raises it.
[[noreturn]] void RaiseFirst(std::deque<ScriptedFailure> &arrFailures) {
  const ScriptedFailure failure = arrFailures.front();
  if (failure.intCount > 0 && --arrFailures.front().intCount == 0) arrFailures.pop_front();
  throw RunTimeError(failure.lngNumber, failure.strDescription);
}

}  // namespace

const char *IconName(BoxIcon icon) {
  constexpr const char *Names[] = {"stop", "question", "exclamation", "information", "critical"};
  return Names[static_cast<int>(icon)];
}

const char *ButtonsName(BoxButtons buttons) { return buttons == BoxButtons::Ok ? "ok" : "yesno"; }

std::string ToLine(const HostEntry &entry) {
  const std::string strPlace = entry.strSection + "/" + entry.strKey;
  switch (entry.kind) {
    case HostEntry::Box: return std::string("box ") + IconName(entry.icon) + ": " + entry.strText;
    case HostEntry::Input: return "input: " + entry.strText + " [" + entry.strDefault + "] -> " + entry.strAnswer;
    case HostEntry::Beep: return "beep";
    case HostEntry::Pointer: return "pointer " + std::to_string(entry.intPointer);
    case HostEntry::GetSetting: return "get " + strPlace + "=" + entry.strText;
    case HostEntry::SaveSetting: return "save " + strPlace + "=" + entry.strText;
    case HostEntry::GetFailed: return "get failed " + strPlace;
    case HostEntry::SaveFailed: return "save failed " + strPlace;
    case HostEntry::Log: return "log: " + entry.strText;
    case HostEntry::LogFailed: return "log failed";
    case HostEntry::DoEvents: return "events";
  }
  return {};
}

RecordingHost::RecordingHost() : m_before(SetHost(this)) { Reset(); }

RecordingHost::~RecordingHost() { SetHost(m_before); }

void RecordingHost::Reset() {
  arrEntries.clear();
  arrBoxAnswers.clear();
  arrInputAnswers.clear();
  settings.clear();
  arrGetFailures.clear();
  arrSaveFailures.clear();
  logFailure.reset();
  intPointer = PointerDefault;
  chSeparator = '.';
  intBoxMinutes = 0;
  SetClock(2001, 2, 3, 4, 5);
}

void RecordingHost::SetClock(int intYear, int intMonth, int intDay, int intHour, int intMinute) {
  clock = {};
  clock.tm_year = intYear - 1900;
  clock.tm_mon = intMonth - 1;
  clock.tm_mday = intDay;
  clock.tm_hour = intHour;
  clock.tm_min = intMinute;
}

std::vector<std::string> RecordingHost::TakeLines() {
  std::vector<std::string> arrLines;
  for (const HostEntry &entry : std::exchange(arrEntries, {})) arrLines.push_back(ToLine(entry));
  return arrLines;
}

std::vector<std::string> RecordingHost::TakeBoxes() {
  std::vector<std::string> arrLines;
  for (const HostEntry &entry : std::exchange(arrEntries, {}))
    if (entry.kind == HostEntry::Box) arrLines.push_back(ToLine(entry));
  return arrLines;
}

void RecordingHost::Record(HostEntry entry) {
  arrEntries.push_back(std::move(entry));
  if (OnEntry) {
    const HostEntry last = arrEntries.back();
    OnEntry(last);
  }
}

BoxAnswer RecordingHost::MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons,
                                const std::string &strTitle) {
  Record({.kind = HostEntry::Box, .strText = strText, .strTitle = strTitle, .icon = icon, .buttons = buttons});
  clock.tm_min += intBoxMinutes;
  clock.tm_isdst = -1;
  std::mktime(&clock);
  BoxAnswer answer = buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
  if (buttons != BoxButtons::Ok && !arrBoxAnswers.empty()) {
    answer = arrBoxAnswers.front();
    arrBoxAnswers.pop_front();
  }
  return answer;
}

std::string RecordingHost::InputBox(const std::string &strPrompt, const std::string &strTitle,
                                    const std::string &strDefault) {
  std::string strAnswer;
  if (!arrInputAnswers.empty()) {
    strAnswer = arrInputAnswers.front();
    arrInputAnswers.pop_front();
  }
  Record({.kind = HostEntry::Input,
          .strText = strPrompt,
          .strTitle = strTitle,
          .strDefault = strDefault,
          .strAnswer = strAnswer});
  return strAnswer;
}

void RecordingHost::Beep() { Record({.kind = HostEntry::Beep}); }

void RecordingHost::SetMousePointer(Integer intNewPointer) {
  intPointer = intNewPointer;
  Record({.kind = HostEntry::Pointer, .intPointer = intNewPointer});
}

std::string RecordingHost::GetSetting(const std::string &strApplication, const std::string &strSection,
                                      const std::string &strKey, const std::string &strDefault) {
  if (!arrGetFailures.empty()) {
    Record({.kind = HostEntry::GetFailed, .strTitle = strApplication, .strSection = strSection, .strKey = strKey});
    RaiseFirst(arrGetFailures);
  }
  const auto found = settings.find({strSection, strKey});
  const std::string strAnswer = found == settings.end() ? strDefault : found->second;
  Record({.kind = HostEntry::GetSetting,
          .strText = strAnswer,
          .strTitle = strApplication,
          .strSection = strSection,
          .strKey = strKey,
          .strDefault = strDefault});
  return strAnswer;
}

void RecordingHost::SaveSetting(const std::string &strApplication, const std::string &strSection,
                                const std::string &strKey, const std::string &strValue) {
  HostEntry entry{.kind = HostEntry::SaveSetting,
                  .strText = strValue,
                  .strTitle = strApplication,
                  .strSection = strSection,
                  .strKey = strKey};
  if (!arrSaveFailures.empty()) {
    entry.kind = HostEntry::SaveFailed;
    Record(entry);
    RaiseFirst(arrSaveFailures);
  }
  settings[{strSection, strKey}] = strValue;
  Record(entry);
}

void RecordingHost::AppendToFile(const std::string &, std::string_view strBytes) {
  if (logFailure) {
    const ScriptedFailure failure = *logFailure;
    if (failure.intCount > 0 && --logFailure->intCount == 0) logFailure.reset();
    Record({.kind = HostEntry::LogFailed});
    throw RunTimeError(failure.lngNumber, failure.strDescription);
  }
  Record({.kind = HostEntry::Log, .strText = std::string(strBytes)});
}

void RecordingHost::DoEvents() { Record({.kind = HostEntry::DoEvents}); }

}  // namespace tarvik::test
