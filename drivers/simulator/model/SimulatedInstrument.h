#pragma once

#include <mutex>
#include <vector>

#include "simulator/model/DriverTypes.h"

namespace tarvik::simulator {

/// An instrument of the rack: its settings and its error queue. It lives as long as the rack, whoever has a session
/// with it, and may be asked from several threads.
class SimulatedInstrument final : public driver::Instrument {
 public:
  explicit SimulatedInstrument(InstrumentDescription description);

  const InstrumentDescription &Description() const override { return m_description; }
  bool Connect() override { return m_description.fOpens; }
  void Disconnect() override {}

  Settings CurrentSettings() override;
  PatternRow CurrentPattern(Long lngRow) override;

  void Apply(const std::vector<Change> &arrChanges) override;
  /// Puts the defaults in force and ends the warnings that came with the rack; the error queue stays.
  void Reset() override;

  /// A failure also enters the error queue.
  std::pair<Integer, std::string> SelfTest() override;
  void Calibrate() override;

  /// The queue holds 32 entries; the last one then tells that more got lost.
  void Report(const ScpiError &error) override;
  std::vector<ScpiError> TakeErrors() override;
  std::vector<ScpiError> Warnings() override;

  void SetTimeout(Long) override {}

 private:
  const InstrumentDescription m_description;
  std::mutex m_mutex;
  Settings m_settings;
  std::vector<ScpiError> m_arrErrors;
  std::vector<ScpiError> m_arrLastingWarnings;
};

}  // namespace tarvik::simulator
