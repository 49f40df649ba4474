#pragma once

#include <string>

namespace tarvik::test {

/// What the process holds at one moment. A program that links this file counts every `new` and `delete`.
struct LiveMemory {
  long lngAllocations;  ///< made by `new` and not deleted
  long lngDriver;       ///< those of them that code of the watched library made, its objects among them
  long lngResident;     ///< bytes of main memory, with what the allocator keeps given back first

  static LiveMemory Now();
};

/// From now on what the loaded library makes is told apart. The name is a part of its file's; false where none is
/// loaded.
bool WatchLibrary(const std::string &strName);

}  // namespace tarvik::test
