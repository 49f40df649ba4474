#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scpi/simulator/Command.h"
#include "scpi/simulator/Device.h"
#include "scpi/simulator/ProgramMessage.h"

namespace tarvik::scpisim {

/// Carries out one program message on the device. What is wrong goes to the device's error queue; after a command error
/// the rest of the message is dropped, as the parser has lost its place.
class Interpreter {
 public:
  Interpreter(Device &device, FaultPlan::Client client) : m_device(device), m_client(client) {}

  /// The message comes without its terminator. Returns the answers of its queries, separated by semicolons, without a
  /// terminator; empty when nothing is to be answered.
  std::string Execute(std::string_view strMessage);

  /// A longer response message than this is dropped with -430.
  static constexpr std::size_t LongestResponse = 1 << 20;

 private:
  struct Found {
    const Command *pCommand;
    std::vector<Long> arrSuffixes;
  };
  void ExecuteUnit(const ProgramUnit &unit);
  Found Find(const ProgramUnit &unit);
  Place PlaceOf(const Found &found) const;
  void Set(const Found &found, const ProgramUnit &unit);
  void Ask(const Found &found, const ProgramUnit &unit);
  std::string AnswerOfSetting(const Found &found, const ProgramUnit &unit) const;
  Values ReadParameters(const Found &found, const ProgramUnit &unit) const;
  std::function<Double()> DefaultOf(const Found &found) const;
  /// Hands the settings that were gathered to the device, all or none.
  void TakeGathered();
  void Respond(const Command &command, const std::string &strAnswer);

  Device &m_device;
  const FaultPlan::Client m_client;
  std::vector<std::string> m_arrPath;  ///< what a header that is not absolute goes on from
  std::vector<simulator::Change> m_arrGathered;
  std::string m_strResponse;
  bool m_fAnswered = false;
  bool m_fDeadlocked = false;
  bool m_fIndefinite = false;  ///< the last answer has no end of its own
};

}  // namespace tarvik::scpisim
