#include "engrspin/EngrNumber.h"

#include <algorithm>
#include <cmath>

#include "engrspin/EngrFormat.h"
#include "support/Conversions.h"
#include "support/NumberText.h"
#include "support/modErrorLog.h"

namespace tarvik {

void EngrNumber::InitProperties() {
  m_strBaseUnit.clear();
  m_dblMax = DefaultMax;
  m_lngMaxExponent = HighestExponent;
  // A new field holds one single number until its designer says otherwise, unlike a stored one.
  m_dblMin = DefaultMax;
  SetMinExponent(LowestExponent);
  m_strNumberFormat = DefaultFormat;
  m_lngSignificantDigits = MinDigits;
  m_lngExponent = 0;
  m_fEngrMode = True;
  ++m_lngFormatVersion;
}

void EngrNumber::ForgetValue() {
  m_dblValue = 0;
  m_dblOldValue = 0;
  m_lngExponent = 0;
}

void EngrNumber::Assign(Double dblValue) {
  m_dblOldValue = m_dblValue;
  if (dblValue < m_dblMin) {
    m_dblValue = m_dblMin;
  } else if (dblValue > m_dblMax) {
    m_dblValue = m_dblMax;
  } else if (std::fabs(dblValue) >= m_dblSmallest) {
    m_dblValue = dblValue;
  } else if (dblValue == 0) {
    m_dblValue = 0;
  } else if (std::isnan(dblValue)) {
    m_dblValue = std::clamp(m_dblSmallest, m_dblMin, m_dblMax);
  } else if (dblValue < m_dblOldValue) {
    m_dblValue = m_dblMin;
  } else {
    m_dblValue = m_dblSmallest;
  }
}

Double EngrNumber::Reciprocal() const { return m_dblValue == 0 ? m_dblMax : 1 / m_dblValue; }

Double EngrNumber::ValueOfReciprocal(Double dblReciprocal) const {
  return dblReciprocal == 0 ? m_dblMax : 1 / dblReciprocal;
}

void EngrNumber::SetMax(Double dblMax) {
  if (std::isnan(dblMax)) return;
  m_dblMax = dblMax;
  if (m_dblMin > m_dblMax) m_dblMin = m_dblMax;
}

void EngrNumber::SetMin(Double dblMin) {
  if (std::isnan(dblMin)) return;
  m_dblMin = dblMin;
  if (m_dblMax < m_dblMin) m_dblMax = m_dblMin;
}

void EngrNumber::SetMinExponent(Long lngExponent) {
  m_lngMinExponent = lngExponent;
  // One rounding: dividing 10^MinExponent by 100 could land on the neighbour.
  m_dblSmallest = PowerOfTen(lngExponent - 2);
}

std::string EngrNumber::ExponentToPrefix(Long lngExponent) const {
  return m_fEngrMode ? std::string(PrefixOfExponent(lngExponent)) : std::string{};
}

void EngrNumber::UnitsToExponent(std::string &strUnits, Long &lngExponent, Boolean &fFound) const {
  fFound = False;
  strUnits = Trim(strUnits);
  if (strUnits == m_strBaseUnit) {
    lngExponent = 0;
    fFound = True;
    return;
  }
  if (strUnits.ends_with(m_strBaseUnit)) strUnits.resize(strUnits.size() - m_strBaseUnit.size());
  if (strUnits.empty() || !m_fEngrMode) return;
  for (Long lngTry = m_lngMinExponent; lngTry <= m_lngMaxExponent; ++lngTry) {
    if (PrefixOfExponent(lngTry) != strUnits) continue;
    lngExponent = lngTry;
    fFound = True;
    return;
  }
}

void EngrNumber::FormatEngr(Double dblValue, Long &lngExponent, std::string &strText) const {
  FormatMantissa(dblValue, m_lngSignificantDigits, m_chDecimal, lngExponent, strText);
}

std::string EngrNumber::ConvertValue2Engr() {
  try {
    return (m_fEngrMode ? m_engineering : m_plain)->Text(*this, m_lngExponent);
  } catch (const RunTimeError &error) {
    ++m_lngFormatVersion;
    LogError("EngrSpin", "ConvertValue2Engr", error.Number(), error.Description());
    return {};
  }
}

Entry EngrNumber::ReadEntry(std::string strEntry) const {
  // No key types them: they came along with a text from a table or a mail.
  std::replace_if(
      strEntry.begin(), strEntry.end(), [](char ch) { return ch == '\t' || ch == '\n' || ch == '\r'; }, ' ');
  if (strEntry.empty()) return {Entry::Kind::Empty, 0};
  const NumberText number(strEntry, m_chDecimal);
  if (number.IsWhole())
    // A bare number is read in the prefix now shown.
    return {Entry::Kind::Number, number.HasExponent() ? number.Value() : number.MantissaTimesPower(m_lngExponent)};
  const std::size_t tail = strEntry.find_last_of("0123456789") + 1;
  if (tail == 0 || tail == strEntry.size()) return {};
  std::string strUnits = strEntry.substr(tail);
  Long lngExponent = 0;
  Boolean fFound;
  UnitsToExponent(strUnits, lngExponent, fFound);
  if (!fFound) return {};
  if (number.MantissaEnd() != tail) RaiseError(ErrTypeMismatch);
  return {Entry::Kind::Number, number.MantissaTimesPower(lngExponent)};
}

}  // namespace tarvik
