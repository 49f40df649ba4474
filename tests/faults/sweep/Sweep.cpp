#include "Sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace tarvik::test {

namespace {

std::string FromEnvironment(const char *strName) {
  const char *strValue = std::getenv(strName);
  return strValue ? strValue : "";
}

/// Always the same number for the same text, in every build.
std::uint32_t NumberOf(const std::string &strText) {
  std::uint32_t lngNumber = 2166136261u;
  for (const char ch : strText) lngNumber = (lngNumber ^ static_cast<unsigned char>(ch)) * 16777619u;
  return lngNumber ^ lngNumber >> 15;
}

/// Null for the creation of the driver, which is no operation of an object.
const Operation *OperationOf(const std::string &strCall) {
  const std::string strPath = strCall.substr(0, strCall.find('('));
  const auto found = std::ranges::find(Operations(), std::string_view(strPath), &Operation::strPath);
  return found == Operations().end() ? nullptr : &*found;
}

bool ConcernsCall(DriverFault eFault, const std::string &strTraceLine) {
  if (const Operation *operation = OperationOf(PlainCall(strTraceLine))) return Concerns(eFault, *operation);
  return eFault == DriverFault::Status || eFault == DriverFault::Nothing || eFault == DriverFault::WrongObject ||
         eFault == DriverFault::Delay;
}

}  // namespace

std::string PlainCall(const std::string &strTraceLine) {
  std::string strCall = strTraceLine.substr(0, strTraceLine.find(" -> "));
  const std::size_t begin = strCall.find('{'), end = strCall.find('}');
  if (begin != std::string::npos && begin < strCall.find('(')) strCall.erase(begin, end - begin + 1);
  return strCall;
}

std::vector<std::string> CallNames(const std::vector<std::string> &arrTrace) {
  std::vector<std::string> arrCalls;
  for (const std::string &strLine : arrTrace) {
    const std::string strCall = PlainCall(strLine);
    const bool fWithCommand = strCall.starts_with("IInstrument.Transaction(");
    arrCalls.push_back(fWithCommand ? strCall : strCall.substr(0, strCall.find('(')));
  }
  return arrCalls;
}

std::vector<std::string> LinesTold(const std::vector<std::string> &arrLines, bool fWordsOfQuestions) {
  std::vector<std::string> arrTold;
  for (const std::string &strLine : arrLines) {
    const bool fQuestion = strLine.starts_with("input");
    if (!fQuestion && !strLine.starts_with("box") && !strLine.starts_with("log")) continue;
    arrTold.push_back(fQuestion && !fWordsOfQuestions ? "input" : strLine);
  }
  return arrTold;
}

std::string SweepCase::Name() const {
  return strWhat + "/" + strState + "/" + NameOf(eFault) + "/" + (fForEver ? "for ever" : "once") + "/" +
         std::to_string(intCall);
}

void Sweep::Print() const {
  int intAll = 0;
  std::string strKinds;
  for (const auto &[strKind, intCount] : m_counts) {
    intAll += intCount;
    strKinds += (strKinds.empty() ? ": " : ", ") + strKind + " " + std::to_string(intCount);
  }
  std::cout << "[ sweep    ] " << intAll << " cases" << strKinds << std::endl;
}

bool Sweep::Wants(const SweepCase &one) const {
  const std::string strFilter = FromEnvironment("TARVIK_SWEEP_CASE");
  if (!strFilter.empty()) return one.Name().find(strFilter) != std::string::npos;
  if (FromEnvironment("TARVIK_SWEEP") == "all") return true;
  const bool fSingleStatus = one.eFault == DriverFault::Status && !one.fForEver;
  return NumberOf(one.Name()) % (fSingleStatus ? m_lngShareOfStatus : m_lngShare) == 0;
}

void Sweep::RunOne(const SweepCase &one, const std::function<void(const SweepCase &)> &run) {
  if (testing::Test::HasFailure() || !Wants(one)) return;
  SCOPED_TRACE("TARVIK_SWEEP_CASE='" + one.Name() + "'");
  ++m_counts[std::string(NameOf(one.eFault)) + (one.fForEver ? " for ever" : "")];
  run(one);
}

void Sweep::Run(const std::string &strWhat, const std::string &strState, const std::vector<std::string> &arrTrace,
                const std::function<void(const SweepCase &)> &run) {
  for (std::size_t k = 0; k < arrTrace.size(); ++k)
    for (const DriverFault eFault : AllDriverFaults)
      if (ConcernsCall(eFault, arrTrace[k]))
        for (const bool fForEver : {false, true})
          RunOne({strWhat, strState, eFault, fForEver, static_cast<int>(k) + 1}, run);
}

}  // namespace tarvik::test
