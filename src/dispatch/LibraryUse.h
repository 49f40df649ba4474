#pragma once

#include <atomic>

namespace tarvik {

/// One use of the library by a client: an object handed out or a lock. As long as there is one, the library says that
/// it cannot be unloaded.
class LibraryUse {
 public:
  LibraryUse() { ++Count(); }
  LibraryUse(const LibraryUse &) : LibraryUse() {}
  LibraryUse &operator=(const LibraryUse &) = default;
  ~LibraryUse() { --Count(); }

  static bool Any() { return Count() > 0; }
  /// Locks of a client that come and go without an object.
  static void Lock(bool fLock) { Count() += fLock ? 1 : -1; }

 private:
  static std::atomic<long> &Count();
};

}  // namespace tarvik
