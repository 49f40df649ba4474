#include "platform/ConsoleHost.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "support/Conversions.h"

namespace tarvik {

namespace {

std::string DefaultSettingsFile() {
  namespace fs = std::filesystem;
  const char *config = std::getenv("XDG_CONFIG_HOME");
  const char *home = std::getenv("HOME");
  const fs::path folder = config && *config == '/' ? fs::path(config) : fs::path(home ? home : ".") / ".config";
  return (folder / AppTitle / "console.conf").string();
}

/// A value stays on its line.
std::string Escaped(const std::string &strValue) {
  return Replace(Replace(Replace(strValue, "\\", "\\\\"), "\n", "\\n"), "\r", "\\r");
}

std::string Unescaped(const std::string &strValue) {
  std::string strResult;
  for (std::size_t i = 0; i < strValue.size(); ++i) {
    if (strValue[i] != '\\' || i + 1 == strValue.size()) {
      strResult += strValue[i];
      continue;
    }
    const char ch = strValue[++i];
    strResult += ch == 'n' ? '\n' : ch == 'r' ? '\r' : ch;
  }
  return strResult;
}

}  // namespace

ConsoleHost::ConsoleHost() : ConsoleHost(DefaultSettingsFile()) {}

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

std::map<std::string, std::string> ConsoleHost::ReadSettings() const {
  std::map<std::string, std::string> settings;
  std::ifstream file(m_strSettingsFile);
  for (std::string strLine; std::getline(file, strLine);)
    if (const std::size_t pos = strLine.find('='); pos != std::string::npos)
      settings[strLine.substr(0, pos)] = Unescaped(strLine.substr(pos + 1));
  return settings;
}

std::string ConsoleHost::GetSetting(const std::string &strApplication, const std::string &strSection,
                                    const std::string &strKey, const std::string &strDefault) {
  const auto settings = ReadSettings();
  const auto found = settings.find(strApplication + "/" + strSection + "/" + strKey);
  return found == settings.end() ? strDefault : found->second;
}

void ConsoleHost::SaveSetting(const std::string &strApplication, const std::string &strSection,
                              const std::string &strKey, const std::string &strValue) {
  auto settings = ReadSettings();
  settings[strApplication + "/" + strSection + "/" + strKey] = strValue;
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(m_strSettingsFile).parent_path(), error);
  std::ofstream file(m_strSettingsFile, std::ios::trunc);
  for (const auto &[strName, strText] : settings) file << strName << '=' << Escaped(strText) << '\n';
  file.close();
  if (!file) RaiseError(ErrPathFileAccess);
}

char ConsoleHost::DecimalSeparator() const {
  const char *point = std::localeconv()->decimal_point;
  return point && *point == ',' ? ',' : '.';
}

}  // namespace tarvik
