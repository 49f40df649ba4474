#include "simulator/model/Ranges.h"

#include <algorithm>
#include <cmath>

namespace tarvik::simulator {

namespace {

constexpr Double Tolerance = 1e-9;

}  // namespace

bool NotAbove(Double dblFirst, Double dblSecond) {
  return dblFirst <= dblSecond + Tolerance * std::max(std::abs(dblFirst), std::abs(dblSecond));
}

bool SameQuantity(Double dblFirst, Double dblSecond) {
  return NotAbove(dblFirst, dblSecond) && NotAbove(dblSecond, dblFirst);
}

void Findings::Add(Long lngNumber, const char *strKind, const std::string &strWhat, const std::string &strDetail) {
  m_arrErrors.push_back({lngNumber, std::string(strKind) + ": " + strWhat, strDetail});
}

void Findings::InRange(const std::string &strWhat, Double dblValue, const Range &range) {
  if (std::isfinite(dblValue) && NotAbove(range.dblMin, dblValue) && NotAbove(dblValue, range.dblMax)) return;
  Add(ScpiDataOutOfRange, "Data out of range", strWhat,
      Quantity(dblValue, range.strUnit) + ", allowed " + Quantity(range.dblMin, range.strUnit) + " to " +
          Quantity(range.dblMax, range.strUnit));
}

void Findings::OneOf(const std::string &strWhat, Long lngValue, std::initializer_list<Long> allowed) {
  if (std::find(allowed.begin(), allowed.end(), lngValue) != allowed.end()) return;
  std::string strAllowed;
  for (const Long lngAllowed : allowed) strAllowed += (strAllowed.empty() ? "" : ", ") + std::to_string(lngAllowed);
  Add(ScpiIllegalParameterValue, "Illegal parameter value", strWhat,
      std::to_string(lngValue) + ", allowed " + strAllowed);
}

void Findings::OneOf(const std::string &strWhat, Double dblValue, std::initializer_list<Double> allowed,
                     const char *strUnit) {
  std::string strAllowed;
  for (const Double dblAllowed : allowed) {
    if (SameQuantity(dblValue, dblAllowed)) return;
    strAllowed += (strAllowed.empty() ? "" : ", ") + Quantity(dblAllowed, strUnit);
  }
  Add(ScpiIllegalParameterValue, "Illegal parameter value", strWhat,
      Quantity(dblValue, strUnit) + ", allowed " + strAllowed);
}

void Findings::Between(const std::string &strWhat, Long lngValue, Long lngMin, Long lngMax) {
  if (lngValue >= lngMin && lngValue <= lngMax) return;
  Add(ScpiIllegalParameterValue, "Illegal parameter value", strWhat,
      std::to_string(lngValue) + ", allowed " + std::to_string(lngMin) + " to " + std::to_string(lngMax));
}

void Findings::Agree(bool fAgree, const std::string &strWhat, const std::string &strDetail) {
  if (!fAgree) Add(ScpiSettingsConflict, "Settings conflict", strWhat, strDetail);
}

void Findings::Present(bool fPresent, const std::string &strWhat) {
  if (!fPresent) Add(ScpiHardwareMissing, "Hardware missing", strWhat, {});
}

}  // namespace tarvik::simulator
