#pragma once

#include <memory>
#include <string>

#include "LineProtocol.h"
#include "Session.h"

namespace tarvik::test {

/// Runs one command line on the session and returns its answer.
class Commands {
 public:
  Json Answer(const std::string &strLine);

 private:
  bool Run(const std::string &strWord, const std::string &strRest);
  void Begin(const std::string &strRest);

  std::unique_ptr<Session> m_session;
};

}  // namespace tarvik::test
