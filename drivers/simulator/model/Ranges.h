#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "simulator/model/DriverTypes.h"

namespace tarvik::simulator {

/// A closed range of a quantity with its unit.
struct Range {
  Double dblMin;
  Double dblMax;
  const char *strUnit;
};

inline constexpr Range FrequencyRange{1e-3, 330e6, "Hz"};
inline constexpr Range PllRange{1e-3, 330e6, "Hz"};
inline constexpr Range BurstRange{2, 65536, ""};
inline constexpr Range DelayRange{0, 999.5, "s"};
inline constexpr Range WidthRange{1.5e-9, 999.5, "s"};
inline constexpr Range EdgeRange{0.8e-9, 0.2, "s"};
inline constexpr Range VoltageRange{-20, 20, "V"};
inline constexpr Range CurrentRange{-0.8, 0.8, "A"};
inline constexpr Range LoadRange{0.1, 1e6, "Ohm"};
inline constexpr Range ThresholdRange{-10, 10, "V"};

/// Whether the first is not above the second, but for a relative 1e-9 of rounding.
bool NotAbove(Double dblFirst, Double dblSecond);
/// Whether both are the same number, but for a relative 1e-9 of rounding.
bool SameQuantity(Double dblFirst, Double dblSecond);

/// Gathers the reasons for a refusal; each check adds at most one.
class Findings {
 public:
  /// -222 when the value is out of the range or no number.
  void InRange(const std::string &strWhat, Double dblValue, const Range &range);
  /// -224 when the value is none of the allowed ones.
  void OneOf(const std::string &strWhat, Long lngValue, std::initializer_list<Long> allowed);
  void OneOf(const std::string &strWhat, Double dblValue, std::initializer_list<Double> allowed, const char *strUnit);
  /// -224 when the value is not in the closed interval.
  void Between(const std::string &strWhat, Long lngValue, Long lngMin, Long lngMax);
  /// -221 when the settings do not agree with each other.
  void Agree(bool fAgree, const std::string &strWhat, const std::string &strDetail = {});
  /// -241 when something is used that the model does not have.
  void Present(bool fPresent, const std::string &strWhat);

  std::vector<ScpiError> Take() { return std::move(m_arrErrors); }

 private:
  void Add(Long lngNumber, const char *strKind, const std::string &strWhat, const std::string &strDetail);

  std::vector<ScpiError> m_arrErrors;
};

}  // namespace tarvik::simulator
