#include "dispatch/LibraryUse.h"

namespace tarvik {

std::atomic<long> &LibraryUse::Count() {
  static std::atomic<long> count{0};
  return count;
}

}  // namespace tarvik
