// The operations over the largest pattern, against moving the same bytes with the C library.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "Ratios.h"
#include "bitpattern/PatternBits.h"

namespace {

using namespace tarvik;

constexpr int Repetitions = 5;

ByteArray Noise() {
  ByteArray arr(1, std::vector<Byte>(PatternArraySize));
  unsigned seed = 1;
  for (Byte &byte : arr.Elements()) byte = static_cast<Byte>((seed = seed * 1103515245 + 12345) >> 16);
  return arr;
}

template <class Work>
void Register(const char *strName, Work work) {
  benchmark::RegisterBenchmark(strName,
                               [work](benchmark::State &state) {
                                 ByteArray arr = Noise();
                                 for (auto _ : state) {
                                   work(arr);
                                   benchmark::DoNotOptimize(arr.Elements().data());
                                   benchmark::ClobberMemory();
                                 }
                               })
      ->Repetitions(Repetitions)
      ->MinTime(0.05)
      ->ReportAggregatesOnly(false);
}

PatternRange Whole() { return ByteRange(1, PatternArraySize); }

void Clock(ByteArray &arr, Long lngPeriod) {
  FillRange(arr, Whole(), False);
  SetClockBits(arr, 1, MaxPatternLength, lngPeriod);
}

void OneBitOnly(ByteArray &arr, Long lngAddress) {
  FillRange(arr, Whole(), False);
  SetBit(arr, lngAddress);
}

}  // namespace

int main(int argc, char **argv) {
  Register("memset", [](ByteArray &arr) { std::memset(arr.Elements().data(), 0x5A, arr.Elements().size()); });
  Register("memmove", [](ByteArray &arr) {
    Byte *const bytes = arr.Elements().data();
    std::memmove(bytes + 1, bytes, arr.Elements().size() - 1);
  });
  Register("Fill0", [](ByteArray &arr) { FillRange(arr, Whole(), False); });
  Register("Fill1", [](ByteArray &arr) { FillRange(arr, ByteRange(4, PatternArraySize), True); });
  Register("Invert", [](ByteArray &arr) { InvertRange(arr, Whole()); });
  Register("InvertFrom4", [](ByteArray &arr) { InvertRange(arr, ByteRange(4, PatternArraySize)); });
  Register("InsertBit", [](ByteArray &arr) { InsertBit(arr, 1, MaxPatternLength); });
  Register("DeleteBit", [](ByteArray &arr) { DeleteBit(arr, 1, MaxPatternLength); });
  Register("Clock2", [](ByteArray &arr) { Clock(arr, 2); });
  Register("Clock3", [](ByteArray &arr) { Clock(arr, 3); });
  Register("Clock65", [](ByteArray &arr) { Clock(arr, 65); });
  Register("Clock1001", [](ByteArray &arr) { Clock(arr, 1001); });
  Register("FirstBitOnly", [](ByteArray &arr) { OneBitOnly(arr, 1); });
  Register("LastBitOnly", [](ByteArray &arr) { OneBitOnly(arr, MaxPatternLength); });

  return bench::RunWithBounds(argc, argv,
                              {{"Fill0", "memset", 2, 50},
                               {"Fill1", "memset", 2, 50},
                               {"Invert", "memset", 2, 50},
                               {"InvertFrom4", "memset", 2, 50},
                               {"InsertBit", "memmove", 10, 100},
                               {"DeleteBit", "memmove", 10, 100},
                               {"Clock2", "memset", 10, 100},
                               {"Clock3", "memset", 10, 100},
                               {"Clock65", "memset", 10, 100},
                               {"Clock1001", "memset", 10, 100},
                               {"FirstBitOnly", "memset", 10, 100},
                               {"LastBitOnly", "memset", 10, 100}});
}
