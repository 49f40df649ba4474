#pragma once

#include <exception>
#include <string>
#include <vector>

#include "support/Types.h"

namespace tarvik::driver {

/// Standard numbers of the instrument's error reports.
inline constexpr Long ScpiMissingParameter = -109, ScpiSettingsConflict = -221, ScpiDataOutOfRange = -222,
                      ScpiIllegalParameterValue = -224, ScpiHardwareMissing = -241, ScpiSelfTestFailed = -330,
                      ScpiQueueOverflow = -350;

/// One error or warning of an instrument.
struct ScpiError {
  Long lngNumber = 0;
  std::string strText;    ///< short wording
  std::string strDetail;  ///< what the verbose wording adds: the value met and what is allowed

  /// `-222,"Data out of range: width of channel 1"`; with the detail in parentheses when verbose. Semicolons
  /// and quotes inside, which would tear the entry apart at the reader, are replaced.
  std::string Entry(bool fVerbose) const;
  bool operator==(const ScpiError &) const = default;
};

/// The entries in their order, separated by ";"; empty for none.
std::string JoinEntries(const std::vector<ScpiError> &arrErrors, bool fVerbose);

/// A setting, or a set of settings, that the instrument refuses, with every reason it found.
class Rejected : public std::exception {
 public:
  explicit Rejected(std::vector<ScpiError> arrErrors) : m_arrErrors(std::move(arrErrors)) {}
  const std::vector<ScpiError> &Errors() const { return m_arrErrors; }
  const char *what() const noexcept override { return "settings rejected"; }

 private:
  std::vector<ScpiError> m_arrErrors;
};

/// Refuses with one reason.
[[noreturn]] void Reject(Long lngNumber, std::string strText, std::string strDetail = {});

/// A number with its unit in the shortest form that reads back the same, such as "1.5e-09 s".
std::string Quantity(Double dblValue, const char *strUnit);

}  // namespace tarvik::driver
