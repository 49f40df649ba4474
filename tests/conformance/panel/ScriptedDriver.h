#pragma once

#include "DriverScript.h"
#include "HookedDriver.h"
#include "RegisteredDriver.h"

namespace tarvik::paneltest {

/// The driver's side of the contract as the script has it: leaf calls are recorded, then they fail as scripted or
/// answer what the script says. What is sent to it is forgotten. Registered on this machine and on every server.
class ScriptedDriver : private test::DriverHook {
 public:
  ScriptedDriver(DriverScript &script, Recorder &recorder);
  ScriptedDriver(const ScriptedDriver &) = delete;
  ScriptedDriver &operator=(const ScriptedDriver &) = delete;

 private:
  automation::Ref<automation::IUnknown> Create(const std::string &strServer);
  automation::Status Run(test::HookedCall &call) override;

  DriverScript &m_script;
  Recorder &m_recorder;
  test::RegisteredDriver m_registered;
};

}  // namespace tarvik::paneltest
