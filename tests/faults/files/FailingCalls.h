#pragma once

#include <string>
#include <vector>

namespace tarvik::test {

/// Makes calls of the operating system about files fail, those of the standard library too.
class FailingCalls {
 public:
  /// Not an error number: a write or a read of the first byte only.
  static constexpr int Short = -1;

  /// From the call of this number on (1: the next), that one alone or all of them. 0 fails none and writes down.
  static void FailAt(int intNumber, int intError, bool fForEver);
  /// None fails any more. The names of the calls since FailAt.
  static std::vector<std::string> Stop();
  static bool HasFailed();
};

}  // namespace tarvik::test
