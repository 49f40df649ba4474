#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "support/Export.h"

namespace tarvik {

/// Numbers of the run-time errors that do not come from a driver.
enum RunTimeErrorNumber : std::int32_t {
  ErrInvalidArgument = 5,
  ErrOverflow = 6,
  ErrOutOfMemory = 7,
  ErrSubscriptOutOfRange = 9,
  ErrArrayLocked = 10,
  ErrDivisionByZero = 11,
  ErrTypeMismatch = 13,
  ErrFileNotFound = 53,
  ErrPermissionDenied = 70,
  ErrPathFileAccess = 75,
  ErrPathNotFound = 76,
  ErrObjectNotSet = 91,
  ErrInvalidFileFormat = 321,
  ErrNoSuchElement = 340,
  ErrNotAnArray = 343,
  ErrInvalidPropertyValue = 380,
  ErrCannotCreateObject = 429,
  ErrNoSuchProperty = 438,
};

/// Run-time error. The number of a failing driver call is its status, unchanged.
class TARVIK_EXPORT RunTimeError : public std::exception {
 public:
  RunTimeError(std::int32_t lngNumber, std::string strDescription, std::string strSource = {})
      : m_lngNumber(lngNumber), m_strDescription(std::move(strDescription)), m_strSource(std::move(strSource)) {}

  std::int32_t Number() const { return m_lngNumber; }
  const std::string &Description() const { return m_strDescription; }
  const std::string &Source() const { return m_strSource; }
  const char *what() const noexcept override { return m_strDescription.c_str(); }

 private:
  std::int32_t m_lngNumber;
  std::string m_strDescription;
  std::string m_strSource;
};

/// The standard description of a number, such as "Subscript out of range" for 9.
TARVIK_EXPORT const char *StandardDescription(std::int32_t lngNumber);

/// Throws the RunTimeError of this number with its standard description.
[[noreturn]] TARVIK_EXPORT void RaiseError(std::int32_t lngNumber);

/// Runs a step of a procedure that has an error path. Memory that could not be had is run-time error 7 there.
template <class Step>
decltype(auto) RunCatchable(Step &&step) {
  try {
    return std::forward<Step>(step)();
  } catch (const std::bad_alloc &) {
    RaiseError(ErrOutOfMemory);
  }
}

/// Runs one statement and ignores a RunTimeError that it throws. Other exceptions are
/// programming errors and propagate.
template <class Statement>
void IgnoreErrors(Statement &&statement) {
  try {
    RunCatchable(std::forward<Statement>(statement));
  } catch (const RunTimeError &) {
  }
}

}  // namespace tarvik
