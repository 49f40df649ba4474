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
  Integer MousePointer() const override;
  void SetMousePointer(Integer intPointer) override;
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override;
  char DecimalSeparator() const override;
  void DoEvents() override;
  void Repaint() override;
  void DropInput() override;

 private:
  /// The hourglass is among the pointers that were set over the program's own.
  mutable bool m_fHourglass = false;
};

/// Installs a QtHost for this process where no host is installed yet.
TARVIK_EXPORT void EnsureQtHost();

}  // namespace tarvik
