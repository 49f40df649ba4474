#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "AdapterHost.h"
#include "DriverScript.h"
#include "Recorder.h"
#include "RecordingInstr.h"
#include "ScriptedDriver.h"
#include "platform/ControlSite.h"

namespace tarvik::paneltest {

/// The environment of panels and benches: host, instrument class, scripted driver, recorder.
class World {
 public:
  World();
  World(const World &) = delete;
  World &operator=(const World &) = delete;
  ~World();

  /// No instrument class, no settings, no scripts; panels have to be gone before.
  void Reset();

  /// The instrument class in use; null before somebody used it.
  RecordingInstr *Instr() const;

  /// Runs a procedure as an event of the user: a failure that leaves it is written down and ends it.
  void Run(const std::function<void()> &procedure);

  Recorder recorder;
  AdapterHost host{recorder};
  DriverScript script{recorder};
  /// Lines that wait for the next yield.
  std::deque<std::string> arrAtYield;

 private:
  ScriptedDriver m_driver{script, recorder};
};

}  // namespace tarvik::paneltest
