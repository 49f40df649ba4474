#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "simulator/model/InstrumentDescription.h"
#include "simulator/model/Settings.h"

namespace tarvik::simulator {

/// One change of settings. May raise Rejected for what it cannot even write down.
using Change = std::function<void(Settings &)>;

/// An instrument of the rack: its settings and its error queue. It lives as long as the rack, whoever has a session
/// with it, and may be asked from several threads.
class SimulatedInstrument {
 public:
  explicit SimulatedInstrument(InstrumentDescription description);

  const InstrumentDescription &Description() const { return m_description; }
  /// A copy of the settings in force.
  Settings CurrentSettings() const;

  /// Takes all changes in their order, or none: raises Rejected with every reason.
  void Apply(const std::vector<Change> &arrChanges);
  /// Puts the defaults in force and ends the warnings that came with the rack; the error queue stays.
  void Reset();

  /// Runs the self test: its code and text; a failure also enters the error queue.
  std::pair<Integer, std::string> SelfTest();
  /// Returns when the calibration has ended.
  void Calibrate() const;

  /// Adds to the error queue. It holds 32 entries; the last one then tells that more got lost.
  void Report(const ScpiError &error);
  /// Empties the error queue.
  std::vector<ScpiError> TakeErrors();
  /// The warnings whose conditions hold.
  std::vector<ScpiError> Warnings() const;

 private:
  const InstrumentDescription m_description;
  mutable std::mutex m_mutex;
  Settings m_settings;
  std::vector<ScpiError> m_arrErrors;
  std::vector<ScpiError> m_arrLastingWarnings;
};

}  // namespace tarvik::simulator
