#pragma once

#include <array>
#include <chrono>
#include <vector>

#include "scpi/simulator/FaultPlan.h"
#include "scpi/simulator/StatusRegisters.h"
#include "simulator/model/SimulatedInstrument.h"

namespace tarvik::scpisim {

/// The instrument behind the SCPI front end: a simulated one, its status, its stored settings. All clients share it.
class Device {
 public:
  using Clock = std::chrono::steady_clock;

  /// What the description has waiting in its error queue is waiting here.
  explicit Device(const simulator::InstrumentDescription &description);

  const simulator::InstrumentDescription &Description() const { return m_description; }
  simulator::Settings CurrentSettings() { return m_instrument.CurrentSettings(); }
  std::vector<simulator::ScpiError> Warnings() { return m_instrument.Warnings(); }
  /// Takes all changes together, or reports every reason why not and takes none.
  void Apply(const std::vector<simulator::Change> &arrChanges);
  void Reset();

  /// 0 passed. The device is busy for as long as the test takes.
  Long SelfTest();
  void Calibrate();
  /// Before this moment the device carries out nothing and answers nothing.
  Clock::time_point BusyUntil() const { return m_busyUntil; }

  static constexpr std::size_t Memories = 10;
  void Save(std::size_t lngMemory);
  /// A memory that nothing was stored in has the settings after a reset.
  void Recall(std::size_t lngMemory);

  StatusRegisters status;
  FaultPlan faults;
  /// How long each answer waits before it leaves.
  std::chrono::milliseconds answerDelay{0};

 private:
  void BusyFor(Long lngMilliseconds);
  void UpdateConditions();

  const simulator::InstrumentDescription m_description;
  simulator::SimulatedInstrument m_instrument;
  std::array<simulator::Settings, Memories> m_arrMemories;
  Clock::time_point m_busyUntil{};
};

}  // namespace tarvik::scpisim
