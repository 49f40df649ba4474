#include "engrspin/ValueList.h"

#include <limits>

#include "support/Conversions.h"

namespace tarvik {

void ValueList::SetText(const std::string &strValueArray) {
  m_strValueArray = strValueArray;
  m_nArrayIndex = 0;
  m_fArrayMode = !strValueArray.empty();
  if (!m_fArrayMode) return;
  const auto count = Split(strValueArray, ';').size();
  if (count > static_cast<std::size_t>(std::numeric_limits<Integer>::max())) RaiseError(ErrOverflow);
  m_nArrayCount = static_cast<Integer>(count);
}

Double ValueList::GetArrayValue(Integer intIndex) {
  const auto arrEntries = Split(m_strValueArray, ';');
  m_nArrayIndex = static_cast<Integer>((m_nArrayCount + intIndex) % m_nArrayCount);
  // % keeps the sign, so an index below -Count is out of bounds.
  if (m_nArrayIndex < 0) RaiseError(ErrSubscriptOutOfRange);
  const auto number = ParseNumber(arrEntries[static_cast<std::size_t>(m_nArrayIndex)], '.');
  if (!number) RaiseError(ErrTypeMismatch);
  return *number;
}

}  // namespace tarvik
