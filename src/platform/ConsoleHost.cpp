#include "platform/ConsoleHost.h"

#include <clocale>
#include <iostream>

#include "support/Conversions.h"
#include "support/SettingsFile.h"

namespace tarvik {

ConsoleHost::ConsoleHost() = default;

ConsoleHost::ConsoleHost(std::string strSettingsFile) : m_strSettingsFile(std::move(strSettingsFile)) {}

BoxAnswer ConsoleHost::MsgBox(const std::string &strText, BoxIcon, BoxButtons buttons, const std::string &strTitle) {
  const BoxAnswer answer = buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
  std::cerr << strTitle << ": " << Replace(strText, "\r\n", "\n") << (answer == BoxAnswer::Yes ? " [Yes]" : "") << '\n';
  return answer;
}

std::string ConsoleHost::InputBox(const std::string &strPrompt, const std::string &strTitle,
                                  const std::string &strDefault) {
  std::cerr << strTitle << ": " << Replace(strPrompt, "\r\n", "\n") << " [" << strDefault << "]\n";
  return strDefault;
}

SettingsFile ConsoleHost::Settings(const std::string &strApplication) const {
  return m_strSettingsFile.empty() ? SettingsFile::Of(strApplication) : SettingsFile(m_strSettingsFile);
}

std::string ConsoleHost::GetSetting(const std::string &strApplication, const std::string &strSection,
                                    const std::string &strKey, const std::string &strDefault) {
  return Settings(strApplication).Value(strSection, strKey).value_or(strDefault);
}

void ConsoleHost::SaveSetting(const std::string &strApplication, const std::string &strSection,
                              const std::string &strKey, const std::string &strValue) {
  Settings(strApplication).Save(strSection, strKey, strValue);
}

char ConsoleHost::DecimalSeparator() const {
  const char *point = std::localeconv()->decimal_point;
  return point && *point == ',' ? ',' : '.';
}

}  // namespace tarvik
