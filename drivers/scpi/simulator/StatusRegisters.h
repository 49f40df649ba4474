#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "scpi/simulator/ScpiNumbers.h"
#include "simulator/model/DriverTypes.h"

namespace tarvik::scpisim {

/// A status register of SCPI: a condition, what of its changes is remembered as an event, and which events count. 15
/// bits.
class StatusRegister {
 public:
  static constexpr std::uint16_t AllBits = 0x7FFF;

  /// Remembers the changes that the transition filters let through.
  void SetCondition(std::uint16_t intCondition);
  std::uint16_t Condition() const { return m_intCondition; }
  /// Reading the events clears them.
  std::uint16_t TakeEvents();
  void ClearEvents() { m_intEvents = 0; }
  /// Enables nothing, and lets all conditions that begin through.
  void Preset();
  /// Whether an enabled event is remembered.
  bool Summary() const { return (m_intEvents & intEnable) != 0; }

  std::uint16_t intEnable = 0;
  std::uint16_t intPositive = AllBits;
  std::uint16_t intNegative = 0;

 private:
  std::uint16_t m_intCondition = 0;
  std::uint16_t m_intEvents = 0;
};

/// Status of the instrument, IEEE 488.2 chapter 11 and SCPI-99 volume 2, chapter 20: one for all clients.
class StatusRegisters {
 public:
  enum EventBit : std::uint8_t {
    OperationComplete = 0x01,
    QueryError = 0x04,
    DeviceError = 0x08,
    ExecutionError = 0x10,
    CommandError = 0x20,
    PowerOn = 0x80,
  };
  /// The error queue holds so many entries; when it is full the last one becomes -350.
  static constexpr std::size_t QueueLength = 32;

  /// Enters an error into queue and event register.
  void Report(const ScpiFault &fault);
  /// An error of the model, whose text repeats the standard's before a colon.
  void Report(const simulator::ScpiError &error);

  std::size_t Errors() const { return m_queue.size(); }
  /// The oldest entry as response data, such as -222,"Data out of range;width"; 0,"No error" without one.
  std::string TakeError();
  /// All entries, separated by commas.
  std::string TakeAllErrors();

  void Complete() { m_byEvents |= OperationComplete; }
  /// Reading the standard events clears them.
  std::uint8_t TakeEvents();
  /// *CLS: events and errors, not what is enabled.
  void Clear();
  /// STATus:PRESet.
  void Preset();
  /// The status byte with the master summary in bit 6.
  std::uint8_t StatusByte(bool fMessageAvailable) const;

  std::uint8_t byEventEnable = 0;
  std::uint8_t byServiceEnable = 0;
  StatusRegister operation, questionable;

 private:
  void Enter(Long lngNumber, const std::string &strText);

  std::deque<std::string> m_queue;
  std::uint8_t m_byEvents = PowerOn;
};

}  // namespace tarvik::scpisim
