#include "common/Prbs.h"

#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "common/PatternRow.h"
#include "common/ScpiError.h"

namespace tarvik::driver {

namespace {

constexpr Long SmallestBase = 7, LargestBase = 14;

constexpr std::uint32_t Tap(int intStage) { return 1u << (intStage - 1); }

// Feedback stages of shift registers with maximal period, one primitive polynomial for each length, as tabulated in
// Xilinx application note XAPP 052 ("Efficient Shift Registers, LFSR Counters, and Long Pseudo-Random Sequence
// Generators", table 3) and in Peterson and Weldon, "Error-Correcting Codes", appendix C:
//    7: x^7 + x^6 + 1                    11: x^11 + x^9 + 1
//    8: x^8 + x^6 + x^5 + x^4 + 1        12: x^12 + x^6 + x^4 + x + 1
//    9: x^9 + x^5 + 1                    13: x^13 + x^4 + x^3 + x + 1
//   10: x^10 + x^7 + 1                   14: x^14 + x^5 + x^3 + x + 1
constexpr std::array<std::uint32_t, LargestBase - SmallestBase + 1> Taps{
    Tap(7) | Tap(6),
    Tap(8) | Tap(6) | Tap(5) | Tap(4),
    Tap(9) | Tap(5),
    Tap(10) | Tap(7),
    Tap(11) | Tap(9),
    Tap(12) | Tap(6) | Tap(4) | Tap(1),
    Tap(13) | Tap(4) | Tap(3) | Tap(1),
    Tap(14) | Tap(5) | Tap(3) | Tap(1),
};

void CheckPrbs(std::size_t bytes, Long lngStart, Long lngLast, Long lngBase) {
  if (lngBase < SmallestBase || lngBase > LargestBase)
    Reject(ScpiDataOutOfRange, "Data out of range: PRBS base", std::to_string(lngBase) + ", allowed 7 to 14");
  if (lngStart < 1 || lngLast < lngStart || lngLast > PatternBits)
    Reject(ScpiDataOutOfRange, "Data out of range: PRBS address",
           std::to_string(lngStart) + " to " + std::to_string(lngLast) + ", allowed 1 to 16384 in rising order");
  if (static_cast<std::size_t>(lngLast) > bytes * 8)
    Reject(ScpiMissingParameter, "Missing parameter: PRBS array",
           std::to_string(bytes) + " bytes do not reach address " + std::to_string(lngLast));
}

}  // namespace

void FillPrbs(std::span<Byte> bytes, Long lngStart, Long lngLast, Long lngBase) {
  CheckPrbs(bytes.size(), lngStart, lngLast, lngBase);
  const std::uint32_t lngTaps = Taps[static_cast<std::size_t>(lngBase - SmallestBase)];
  const std::uint32_t lngAllOnes = (1u << lngBase) - 1;
  std::uint32_t lngState = lngAllOnes;  // the all-zero state is a fixed point
  for (Long lngAddress = lngStart; lngAddress <= lngLast; ++lngAddress) {
    const bool fBit = (lngState >> (lngBase - 1)) & 1;
    const Byte byMask = static_cast<Byte>(0x80 >> ((lngAddress - 1) % 8));
    Byte &byTarget = bytes[static_cast<std::size_t>((lngAddress - 1) / 8)];
    byTarget = static_cast<Byte>(fBit ? byTarget | byMask : byTarget & ~byMask);
    const std::uint32_t lngFeedback = static_cast<std::uint32_t>(std::popcount(lngState & lngTaps)) & 1;
    lngState = ((lngState << 1) | lngFeedback) & lngAllOnes;
  }
}

}  // namespace tarvik::driver
