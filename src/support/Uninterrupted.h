#pragma once

#include <cerrno>
#include <utility>

namespace tarvik {

/// Makes a call of the system again for as long as a signal interrupts it. Not for close, which has closed the file by
/// then.
template <class SystemCall>
auto Uninterrupted(SystemCall &&call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace tarvik
