#pragma once

#include <string>

#include "support/Export.h"
#include "support/Host.h"

namespace tarvik {

class SettingsFile;

/// A host without any window: boxes and questions are printed to standard error and take their default answer.
/// Settings are those of the panel: "TarvikVI/TarvikVI.conf" in the user's configuration folder.
class TARVIK_EXPORT ConsoleHost : public Host {
 public:
  ConsoleHost();
  /// Keeps the settings in a file of its own.
  explicit ConsoleHost(std::string strSettingsFile);

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override;
  void Beep() override {}
  Integer MousePointer() const override { return m_intPointer; }
  void SetMousePointer(Integer intPointer) override { m_intPointer = intPointer; }
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override;
  char DecimalSeparator() const override;
  void DoEvents() override {}

 private:
  SettingsFile Settings(const std::string &strApplication) const;

  std::string m_strSettingsFile;
  Integer m_intPointer = PointerDefault;
};

}  // namespace tarvik
