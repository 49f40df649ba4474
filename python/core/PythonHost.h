#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/ConsoleHost.h"

namespace tarvik::python {

/// What the instrument class told while one operation of a session ran.
struct Told {
  std::vector<std::pair<Long, std::string>> arrFailures;  ///< number and description
  std::vector<std::string> arrBoxes;                      ///< stop boxes and questions, in their own words
  std::vector<std::string> arrErrors;                     ///< of the instrument's error queue
  std::vector<std::string> arrWarnings;                   ///< of the instrument
  std::string strConnectionLost;                          ///< why; empty while the connection holds
};

/// The host of all sessions. Nobody looks at a box: what it says goes to the operation that runs on the thread. There
/// is no state besides, since sessions of several threads work at the same time.
class PythonHost : public ConsoleHost {
 public:
  /// The operation of this thread, for as long as the object lives.
  class Operation {
   public:
    Operation(Told &told, const std::string &strServer);
    Operation(const Operation &) = delete;
    Operation &operator=(const Operation &) = delete;
    ~Operation();

   private:
    friend class PythonHost;
    Told &m_told;
    const std::string &m_strServer;
    Operation *const m_outer;
  };

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  Integer MousePointer() const override { return PointerDefault; }
  void SetMousePointer(Integer) override {}
  /// The server is the one that the session was opened with. Nothing that the panel stores is read or written.
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return '.'; }
};

/// Installs the host of this module.
void InstallHost();

}  // namespace tarvik::python
