#pragma once

#include <stdexcept>

namespace tarvik::driver {

/// A reason, in the words of its message, why a driver cannot carry out a call although nothing is wrong with the call
/// itself: a file that cannot be read, a line that is cut.
class Failure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tarvik::driver
