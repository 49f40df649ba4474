#include "ReferenceDriver.h"

#include <algorithm>

namespace tarvik::test {

void ReferenceDriver::Count(Object object, const std::string &strCall) {
  if (!object) throw Failure{91, "Object variable or With block variable not set"};
  arrCalls.push_back(strCall);
  if (m_case.intCall == 0) return;
  ++m_intCalls;
  if (Is(DriverFault::NotANumber)) m_arrNotNumbers.push_back(strCall);
  if (Is(DriverFault::Status)) throw Failure{-2147221503, "driver failed"};
}

bool ReferenceDriver::Is(DriverFault eFault) const {
  return m_case.eFault == eFault && m_case.intCall != 0 &&
         (m_case.fForEver ? m_intCalls >= m_case.intCall : m_intCalls == m_case.intCall);
}

bool ReferenceDriver::AnswersNoNumber(const std::string &strCall) const {
  return std::ranges::find(m_arrNotNumbers, strCall) != m_arrNotNumbers.end();
}

void ReferenceDriver::Do(Object object, const std::string &strCall) { Count(object, strCall); }

ReferenceDriver::Object ReferenceDriver::Fetch(Object object, const std::string &strCall) {
  Count(object, strCall);
  return !Is(DriverFault::Nothing);
}

ReferenceDriver::Object ReferenceDriver::FetchNarrowed(Object object, const std::string &strCall) {
  const Object handed = Fetch(object, strCall);
  if (handed && Is(DriverFault::WrongObject)) throw Failure{13, "Type mismatch"};
  return handed;
}

ReferenceDriver::Object ReferenceDriver::Create() { return FetchNarrowed(true, "create"); }

long ReferenceDriver::Read(Object object, const std::string &strCall, long lngValue) {
  Count(object, strCall);
  return Is(DriverFault::Unfilled) ? 0 : lngValue;
}

std::string ReferenceDriver::Read(Object object, const std::string &strCall, const std::string &strValue) {
  Count(object, strCall);
  return Is(DriverFault::Unfilled) || Is(DriverFault::EmptyText) ? "" : strValue;
}

}  // namespace tarvik::test
