#pragma once

#include <array>

#include "HookedCall.h"

namespace tarvik::test {

/// How one call of a driver goes wrong.
enum class DriverFault {
  Status,        ///< a failing status with a description
  Nothing,       ///< success, but no object is handed out
  Unfilled,      ///< success, but no value is filled
  WrongObject,   ///< an object of another interface, for references that the caller narrows
  EmptyText,     ///< an empty text
  ShorterArray,  ///< an array without elements
  LongerArray,   ///< an array with more elements than there is room for
  NotANumber,    ///< NaN for every real number
  Delay,         ///< the right answer, late
};
inline constexpr std::array AllDriverFaults{
    DriverFault::Unfilled,    DriverFault::Status,     DriverFault::Nothing,
    DriverFault::WrongObject, DriverFault::EmptyText,  DriverFault::ShorterArray,
    DriverFault::LongerArray, DriverFault::NotANumber, DriverFault::Delay};

const char *NameOf(DriverFault eFault);

/// Whether a call of the operation can go wrong in this way. Setters answer nothing that could be missing.
bool Concerns(DriverFault eFault, const Operation &operation);

/// Makes a call that was answered go wrong: empty texts, another array, NaN. The other ways are not answers.
void SpoilAnswer(HookedCall &call, DriverFault eFault);

}  // namespace tarvik::test
