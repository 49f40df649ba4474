#pragma once

#include "platform/ConsoleHost.h"

namespace tarvik {

/// The host of a client that created the instrument interface by name: boxes and questions are the system's own. A
/// program that has a standard error gets lines there and default answers, as does whatever runs where nobody sees a
/// window: a box would wait for ever.
class SystemHost final : public ConsoleHost {
 public:
  /// Whether boxes come as windows: the process stands on a visible desktop and has no standard error.
  static bool ShowsWindows();

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override;
  void Beep() override;
};

}  // namespace tarvik
