#pragma once

#include <string>

namespace tarvik::test {

/// Makes allocations of this thread fail: operator new and, where no sanitizer watches it, malloc and calloc.
class FailingMemory {
 public:
  /// From the allocation of this number on (1: the next), that one alone or all of them. 0 fails none and counts.
  static void FailAt(int intNumber, bool fForEver);
  /// None fails any more. Answers how many were asked for since FailAt.
  static int Stop();
  /// Whether one has failed since FailAt.
  static bool HasFailed();

  /// What the test does itself in the midst of the product gets its memory, and does not count.
  class Suspended {
   public:
    Suspended();
    Suspended(const Suspended &) = delete;
    Suspended &operator=(const Suspended &) = delete;
    ~Suspended();
  };

  /// The same from a pair of calls.
  static void Suspend(bool fSuspends);
};

}  // namespace tarvik::test
