#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Abi.h"
#include "support/Export.h"

namespace tarvik::automation {

/// Description of a failing status.
struct ErrorInfo {
  std::string strDescription;
  std::string strSource;
  /// The run-time error that the status stands for, where it is not the status itself.
  std::optional<std::int32_t> lngRunTimeError{};
};

/// Leaves a description for the status that the driver is about to return. One for each thread; the
/// next one replaces it.
TARVIK_AUTOMATION_EXPORT void SetErrorInfo(std::string_view strDescription, std::string_view strSource = {});

/// The same for a failure that is a run-time error of its own number, which RaiseStatus then raises instead of
/// the status. For what stands between driver and caller; a driver fails by status.
TARVIK_AUTOMATION_EXPORT void SetRunTimeErrorInfo(std::int32_t lngNumber, std::string_view strDescription,
                                                  std::string_view strSource = {});

/// Takes the description left for the last failing status.
TARVIK_AUTOMATION_EXPORT std::optional<ErrorInfo> TakeErrorInfo();

/// To be called right before a call whose status is going to be asked for its description: a description counts only
/// for the call that left it.
TARVIK_AUTOMATION_EXPORT void ForgetErrorInfo();

/// Takes the description of this status; without one "Automation error 80004005" with its number.
TARVIK_AUTOMATION_EXPORT std::string TakeDescription(Status status);

/// For a driver: leaves the description and hands the status back, to be returned at once.
inline Status Fail(Status status, std::string_view strDescription, std::string_view strSource = {}) {
  SetErrorInfo(strDescription, strSource);
  return status;
}

/// Turns a failing status into the RunTimeError of the same number, with the driver's own description
/// when it left one.
[[noreturn]] TARVIK_AUTOMATION_EXPORT void RaiseStatus(Status status);

/// Throws if the status is a failure.
inline void Check(Status status) {
  if (Failed(status)) RaiseStatus(status);
}

}  // namespace tarvik::automation
