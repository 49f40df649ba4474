#pragma once

#include <new>
#include <string>

#include "automation/ErrorInfo.h"
#include "common/Failure.h"
#include "common/ScpiError.h"

namespace tarvik::driver {

/// The source that the error descriptions name. Each driver defines its own.
extern const char *const DriverSource;

/// A call that cannot be carried out, for a reason that is no refusal of the instrument.
struct CallFailure {
  automation::Status status;
  std::string strDescription;
};

/// Runs the body of an operation and turns what leaves it into a status with a description: no exception may cross
/// the driver's edge.
template <class Body>
automation::Status Guarded(bool fVerbose, Body &&body) {
  using namespace automation;
  try {
    body();
    return StatusOk;
  } catch (const Rejected &rejected) {
    return Fail(StatusFail, JoinEntries(rejected.Errors(), fVerbose), DriverSource);
  } catch (const CallFailure &failure) {
    return Fail(failure.status, failure.strDescription, DriverSource);
  } catch (const Failure &error) {
    return Fail(StatusFail, error.what(), DriverSource);
  } catch (const std::bad_alloc &) {
    return Fail(StatusOutOfMemory, "Out of memory", DriverSource);
  } catch (const std::exception &error) {
    return Fail(StatusUnexpected, error.what(), DriverSource);
  }
}

/// StatusPointer if an output argument is null.
inline void RequirePlace(const void *pPlace) {
  if (!pPlace) throw CallFailure{automation::StatusPointer, "No place for the result"};
}

}  // namespace tarvik::driver
