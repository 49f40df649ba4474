#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "SessionFrames.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *pData, std::size_t lngSize);

namespace {

using tarvik::remote::Frame;

/// Frames that a client does send; what is tried are these with some bytes changed, cut off or put in.
std::string GoodFrame(int intWhich) {
  switch (intWhich) {
    case 0: return Frame().Fetch(1, "IDriverRoot", "GetInstruments", 2).Bytes();
    case 1:
      return Frame()
          .Fetch(1, "IDriverRoot", "GetInstruments", 2)
          .Call(2, "IInstrumentList", "GetItem", 3)
          .Key("VP-210")
          .Bytes();
    case 2:
      return Frame()
          .Fetch(1, "IDriverRoot", "GetInstruments", 2)
          .Call(2, "IInstrumentList", "GetCount")
          .Argument<tarvik::Long>(0)
          .Bytes();
    case 3: return Frame().Fetch(1, "IDriverRoot", "GetInstruments", 2).Release(2).Release(1).Bytes();
    default: return Frame().Hello().Bytes();
  }
}

}  // namespace

/// Usage: replay_remote COUNT: tries as many malformed frames; the row is the same every time.
int main(int argc, char **argv) {
  const long lngCount = argc > 1 ? std::atol(argv[1]) : 0;
  std::mt19937 random(20);
  const auto below = [&](std::size_t lngBound) { return static_cast<std::size_t>(random() % lngBound); };
  for (long i = 0; i < lngCount; ++i) {
    std::string strBytes(1, static_cast<char>(below(256)));
    strBytes += GoodFrame(static_cast<int>(below(5)));
    for (std::size_t change = 1 + below(6); change > 0; --change) {
      const std::size_t at = below(strBytes.size());
      switch (below(4)) {
        case 0: strBytes[at] = static_cast<char>(below(256)); break;
        case 1: strBytes.resize(at + 1); break;
        case 2: strBytes.insert(at, 1 + below(9), static_cast<char>(below(256))); break;
        default: strBytes[at] = static_cast<char>(strBytes[at] ^ (1 << below(8)));
      }
    }
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(strBytes.data()), strBytes.size());
  }
  std::printf("%ld frames\n", lngCount);
  return lngCount > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
