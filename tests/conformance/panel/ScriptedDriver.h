#pragma once

#include "DriverScript.h"

namespace tarvik::paneltest {

/// Registers the scripted driver as the driver's class, on this machine and on every server, as long as it lives.
class ScriptedDriver {
 public:
  ScriptedDriver(DriverScript &script, Recorder &recorder);
  ScriptedDriver(const ScriptedDriver &) = delete;
  ScriptedDriver &operator=(const ScriptedDriver &) = delete;
  ~ScriptedDriver();
};

}  // namespace tarvik::paneltest
