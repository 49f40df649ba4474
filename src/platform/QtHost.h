#pragma once

#include "support/Export.h"
#include "support/Host.h"

namespace tarvik {

/// The host with the toolkit's dialogs, its settings store and its pointer. Needs a running application object.
class TARVIK_EXPORT QtHost : public Host {
 public:
  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override;
  void Beep() override;
  Integer MousePointer() const override { return m_intPointer; }
  void SetMousePointer(Integer intPointer) override;
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override;
  char DecimalSeparator() const override;
  void DoEvents() override;

 private:
  Integer m_intPointer = PointerDefault;
};

/// Installs a QtHost for this process where no host is installed yet.
TARVIK_EXPORT void EnsureQtHost();

}  // namespace tarvik
