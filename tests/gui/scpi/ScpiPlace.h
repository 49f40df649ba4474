#pragma once

#include <map>
#include <memory>

#include "DaySession.h"
#include "ServerProcess.h"

namespace tarvik::test {

/// Every model of the day as an instrument that speaks SCPI: a program each on the loopback, entered in this process's
/// own scpi-instruments.json, with a profile that says what the model lacks. The panel's driver is the one for SCPI.
class ScpiPlace final : public RackPlace {
 public:
  ScpiPlace();
  ~ScpiPlace() override;
  std::string Listed(const std::string &strModel) const override;

  /// Where everything that goes over the lines is written.
  static std::filesystem::path Log();
  /// One of the programs.
  remote::ChildProcess &Program(const std::string &strModel) { return *m_programs.at(strModel).process; }

 private:
  struct Running {
    std::unique_ptr<remote::ChildProcess> process;
    std::string strAddress;
  };

  std::map<std::string, Running> m_programs;
};

}  // namespace tarvik::test
