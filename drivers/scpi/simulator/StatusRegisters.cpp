#include "scpi/simulator/StatusRegisters.h"

#include <string_view>
#include <utility>

namespace tarvik::scpisim {

namespace {

/// SCPI-99 volume 2, 21.8: the text of an entry is at most 255 characters long.
constexpr std::size_t LongestText = 255;

/// A class of numbers sets a bit of the standard event register.
std::uint8_t EventOf(Long lngNumber) {
  switch (-lngNumber / 100) {
    case 1: return StatusRegisters::CommandError;
    case 2: return StatusRegisters::ExecutionError;
    case 4: return StatusRegisters::QueryError;
    default: return StatusRegisters::DeviceError;
  }
}

/// A text between double quotes: control characters and what is no ASCII would tear the line apart.
std::string Quoted(std::string_view strText) {
  std::string strQuoted = "\"";
  for (const char ch : strText.substr(0, LongestText)) {
    const bool fPrintable = ch >= ' ' && ch < 0x7F;
    strQuoted += !fPrintable ? '?' : ch == '"' ? '\'' : ch;
  }
  return strQuoted + '"';
}

}  // namespace

void StatusRegister::SetCondition(std::uint16_t intCondition) {
  const auto intBegun = static_cast<std::uint16_t>(intCondition & ~m_intCondition & intPositive);
  const auto intEnded = static_cast<std::uint16_t>(m_intCondition & ~intCondition & intNegative);
  m_intEvents = static_cast<std::uint16_t>(m_intEvents | intBegun | intEnded);
  m_intCondition = intCondition;
}

std::uint16_t StatusRegister::TakeEvents() { return std::exchange(m_intEvents, std::uint16_t{0}); }

void StatusRegister::Preset() {
  intEnable = 0;
  intPositive = AllBits;
  intNegative = 0;
}

void StatusRegisters::Enter(Long lngNumber, const std::string &strText) {
  m_byEvents |= EventOf(lngNumber);
  if (m_queue.size() < QueueLength) {
    m_queue.push_back(std::to_string(lngNumber) + ',' + Quoted(strText));
    return;
  }
  m_queue.back() = std::to_string(ScpiQueueOverflow) + ',' + Quoted(StandardText(ScpiQueueOverflow));
  m_byEvents |= DeviceError;
}

void StatusRegisters::Report(const ScpiFault &fault) {
  Enter(fault.lngNumber, StandardText(fault.lngNumber) + (fault.strDetail.empty() ? "" : ";" + fault.strDetail));
}

void StatusRegisters::Report(const simulator::ScpiError &error) {
  const std::string strStandard = StandardText(error.lngNumber);
  std::string strText = error.strText;
  if (!strStandard.empty() && strText.starts_with(strStandard + ": ")) strText.replace(strStandard.size(), 2, ";");
  if (!error.strDetail.empty()) strText += " (" + error.strDetail + ")";
  Enter(error.lngNumber, strText);
}

std::string StatusRegisters::TakeError() {
  if (m_queue.empty()) return std::string("0,") + Quoted(StandardText(ScpiNoError));
  std::string strEntry = std::move(m_queue.front());
  m_queue.pop_front();
  return strEntry;
}

std::string StatusRegisters::TakeAllErrors() {
  std::string strAll = TakeError();
  while (!m_queue.empty()) strAll += ',' + TakeError();
  return strAll;
}

std::uint8_t StatusRegisters::TakeEvents() { return std::exchange(m_byEvents, std::uint8_t{0}); }

void StatusRegisters::Clear() {
  m_queue.clear();
  m_byEvents = 0;
  operation.ClearEvents();
  questionable.ClearEvents();
}

void StatusRegisters::Preset() {
  operation.Preset();
  questionable.Preset();
}

std::uint8_t StatusRegisters::StatusByte(bool fMessageAvailable) const {
  constexpr unsigned ErrorsWait = 0x04, Questionable = 0x08, Available = 0x10, Event = 0x20, Master = 0x40,
                     Operation = 0x80;
  unsigned lngByte = 0;
  if (!m_queue.empty()) lngByte |= ErrorsWait;
  if (questionable.Summary()) lngByte |= Questionable;
  if (fMessageAvailable) lngByte |= Available;
  if (m_byEvents & byEventEnable) lngByte |= Event;
  if (operation.Summary()) lngByte |= Operation;
  if (lngByte & byServiceEnable) lngByte |= Master;
  return static_cast<std::uint8_t>(lngByte);
}

}  // namespace tarvik::scpisim
