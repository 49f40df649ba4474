#include "remote/CallTrail.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <sstream>

#include "remote/Stub.h"
#include "remote/UsualReads.h"

namespace tarvik::remote {

namespace {

struct Memory {
  std::mutex mutex;
  std::map<std::string, CallTrail> trails;
};

Memory &TheMemory() {
  static Memory memory;
  return memory;
}

std::string Hex(std::string_view strBytes) {
  constexpr char Digits[] = "0123456789abcdef";
  std::string strHex = strBytes.empty() ? "-" : "";
  for (const char ch : strBytes) {
    strHex += Digits[static_cast<unsigned char>(ch) >> 4];
    strHex += Digits[ch & 0xF];
  }
  return strHex;
}

std::string FromHex(std::string_view strHex) {
  const auto digit = [](char ch) { return ch <= '9' ? ch - '0' : ch - 'a' + 10; };
  std::string strBytes;
  if (strHex != "-")
    for (std::size_t i = 0; i + 1 < strHex.size(); i += 2)
      strBytes += static_cast<char>(digit(strHex[i]) << 4 | digit(strHex[i + 1]));
  return strBytes;
}

}  // namespace

void CallTrail::Trim() {
  while (!m_arrSteps.empty() && !m_arrSteps.back().fWaited) m_arrSteps.pop_back();
}

std::string CallTrail::Text() const {
  std::string strText;
  for (const Step &step : m_arrSteps) {
    const auto &interface = Contract()[step.intInterface];
    strText += std::to_string(step.intOn) + " " + std::string(interface.strName) + " " +
               std::string(interface.operations[step.intOperation].strName) + " " + Hex(step.strInputs) + " " +
               Hex(step.strArguments) + "\n";
  }
  return strText;
}

CallTrail CallTrail::FromText(std::string_view strText) {
  CallTrail trail;
  std::istringstream lines{std::string(strText)};
  Step step;
  std::string strInterface, strOperation, strInputs, strArguments;
  while (lines >> step.intOn >> strInterface >> strOperation >> strInputs >> strArguments) {
    const auto contract = Contract();
    const auto interface = std::ranges::find(contract, strInterface, &InterfaceTable::strName);
    if (interface == contract.end() || step.intOn >= static_cast<int>(trail.m_arrSteps.size())) return {};
    const auto operation = std::ranges::find(interface->operations, strOperation, &Operation::strName);
    if (operation == interface->operations.end()) return {};
    step.intInterface = static_cast<std::uint8_t>(interface - contract.begin());
    step.intOperation = static_cast<std::uint8_t>(operation - interface->operations.begin());
    step.fObject = operation->intResultKind != KindNothing;
    step.fWaited = !operation->fDeferred;
    step.strInputs = FromHex(strInputs);
    step.strArguments = FromHex(strArguments);
    trail.Add(step);
  }
  return trail;
}

CallTrail CallTrail::Known(const std::string &strName) {
  Memory &memory = TheMemory();
  const std::lock_guard lock(memory.mutex);
  const auto found = memory.trails.find(strName);
  return found != memory.trails.end() ? found->second : FromText(UsualReads(strName));
}

void CallTrail::Learn(const std::string &strName, const CallTrail &trail) {
  Memory &memory = TheMemory();
  const std::lock_guard lock(memory.mutex);
  memory.trails[strName] = trail;
}

}  // namespace tarvik::remote
