#include "LongRun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace tarvik::test {

namespace {

void Print(long lngSessions, const LiveMemory &memory) {
  std::printf("%ld sessions: %ld allocations, %ld of the driver, %ld KiB resident\n", lngSessions,
              memory.lngAllocations, memory.lngDriver, memory.lngResident / 1024);
}

}  // namespace

long SessionCount(const char *strVariable, long lngDefault) {
  const char *strCount = std::getenv(strVariable);
  return strCount && *strCount ? std::atol(strCount) : lngDefault;
}

LongRun RunSessions(long lngCount, const char *strLibrary, const std::function<void(long)> &session) {
  const auto begin = std::chrono::steady_clock::now();
  session(0);
  EXPECT_TRUE(WatchLibrary(strLibrary));
  long n = 1;
  const auto runTo = [&](long lngEnd) {
    for (; n < lngEnd && !testing::Test::HasFailure(); ++n) session(n);
    const LiveMemory memory = LiveMemory::Now();
    Print(n, memory);
    return memory;
  };
  const LiveMemory early = runTo(lngCount / 10);
  const LiveMemory late = runTo(lngCount);
  std::printf("%.1f s\n", std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  return {early, late};
}

}  // namespace tarvik::test
