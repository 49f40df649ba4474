#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/Host.h"

namespace tarvik::test {

/// One thing that the host was asked for. Which of the texts are filled depends on the kind.
struct HostEntry {
  enum Kind { Box, Input, Beep, Pointer, GetSetting, SaveSetting, GetFailed, SaveFailed, Log, LogFailed, DoEvents };

  Kind kind = Box;
  std::string strText{};     ///< box, prompt, log record, setting's value or answer
  std::string strTitle{};    ///< box and prompt: title; settings: application
  std::string strSection{};  ///< settings
  std::string strKey{};      ///< settings
  std::string strDefault{};  ///< prompt and reading of a setting
  std::string strAnswer{};   ///< prompt
  BoxIcon icon = BoxIcon::Stop;
  BoxButtons buttons = BoxButtons::Ok;
  Integer intPointer = 0;
};

const char *IconName(BoxIcon icon);
const char *ButtonsName(BoxButtons buttons);

/// One short line for an assertion: "box stop: text", "input: prompt [default] -> answer", "pointer 11",
/// "save section/key=value", "log: record".
std::string ToLine(const HostEntry &entry);

/// A failure that occurs `intCount` times; 0 means every time.
struct ScriptedFailure {
  Long lngNumber = 0;
  std::string strDescription;
  int intCount = 1;
};

/// A host without screen, files or clock. Records every request in order. Boxes and prompts take their answers from
/// queues; when those are empty, boxes get OK or Yes and prompts are cancelled.
class RecordingHost : public Host {
 public:
  /// Installs itself; the destructor restores the previous host.
  RecordingHost();
  RecordingHost(const RecordingHost &) = delete;
  RecordingHost &operator=(const RecordingHost &) = delete;
  ~RecordingHost() override;

  /// Everything back to the start; OnEntry stays.
  void Reset();

  /// Called for each entry as it happens.
  std::function<void(const HostEntry &)> OnEntry;

  std::vector<HostEntry> arrEntries;
  std::deque<BoxAnswer> arrBoxAnswers;
  std::deque<std::string> arrInputAnswers;
  /// By section and key; the application is the title of this one.
  std::map<std::pair<std::string, std::string>, std::string> settings;
  std::deque<ScriptedFailure> arrGetFailures, arrSaveFailures;
  std::optional<ScriptedFailure> logFailure;
  Integer intPointer = 0;
  char chSeparator = '.';
  std::tm clock{};
  /// Minutes by which each answered box moves the clock.
  int intBoxMinutes = 0;

  void SetClock(int intYear, int intMonth, int intDay, int intHour, int intMinute);

  /// The lines of all entries so far, which are forgotten.
  std::vector<std::string> TakeLines();
  /// The lines of the boxes only; all entries are forgotten.
  std::vector<std::string> TakeBoxes();

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override;
  void Beep() override;
  Integer MousePointer() const override { return intPointer; }
  void SetMousePointer(Integer intNewPointer) override;
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override;
  char DecimalSeparator() const override { return chSeparator; }
  std::tm Now() const override { return clock; }
  std::string ErrorLogPath() const override { return "error.log"; }
  void AppendToFile(const std::string &strPath, std::string_view strBytes) override;
  void DoEvents() override;

 private:
  void Record(HostEntry entry);

  Host *m_before;
};

}  // namespace tarvik::test
