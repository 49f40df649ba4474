#pragma once

#include <string>
#include <vector>

#include "platform/ConsoleHost.h"

namespace tarvik {

/// Boxes are lines on standard error. The settings of the panel are neither read nor written: the driver is the one of
/// this machine or of the server that was named on the command line.
class CtlHost : public ConsoleHost {
 public:
  explicit CtlHost(std::string strServer) : m_strServer(std::move(strServer)) {}

  /// While the object lives boxes are kept, and not printed.
  class Kept {
   public:
    explicit Kept(CtlHost &host) : m_host(host) { m_host.m_pKept = &arrTexts; }
    Kept(const Kept &) = delete;
    Kept &operator=(const Kept &) = delete;
    ~Kept() { m_host.m_pKept = nullptr; }

    std::vector<std::string> arrTexts;

   private:
    CtlHost &m_host;
  };

  /// Boxes shown so far: whoever fails after a box need not say why.
  int Told() const { return m_intTold; }

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  /// Nobody is there to answer.
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  /// What is typed and printed is the same in every country, so that scripts are.
  char DecimalSeparator() const override { return '.'; }

 private:
  const std::string m_strServer;
  std::vector<std::string> *m_pKept = nullptr;
  int m_intTold = 0;
};

/// A text of one or more lines on standard error, each behind the name of the program.
void Complain(const std::string &strText);

}  // namespace tarvik
