#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "Recorder.h"
#include "support/Host.h"

namespace tarvik::paneltest {

/// Scripted answers, an in-memory settings store, and a record of every request.
class AdapterHost : public Host {
 public:
  explicit AdapterHost(Recorder &recorder) : m_recorder(recorder) {}

  /// Empty store, no answers, default pointer.
  void Reset();

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override;
  void Beep() override {}
  Integer MousePointer() const override { return intPointer; }
  void SetMousePointer(Integer intNewPointer) override;
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override;
  char DecimalSeparator() const override { return '.'; }
  std::tm Now() const override;
  std::string ErrorLogPath() const override { return "error.log"; }
  void AppendToFile(const std::string &strPath, std::string_view strBytes) override;
  void DoEvents() override;

  std::deque<std::string> arrAnswers;
  std::map<std::pair<std::string, std::string>, std::string> store;
  /// The key whose writing fails, and with which description.
  std::optional<std::pair<std::string, std::string>> failingWrite;
  std::optional<std::string> logFailure;
  Integer intPointer = PointerDefault;

  /// Runs inside the yield.
  std::function<void()> Yielded;
  /// An input box was shown.
  std::function<void()> InputShown;
  /// Takes the bytes of the log instead of the record, where somebody set it.
  std::function<void(std::string_view)> LogWritten;

 private:
  std::optional<std::string> NextAnswer();

  Recorder &m_recorder;
};

}  // namespace tarvik::paneltest
