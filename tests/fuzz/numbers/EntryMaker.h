#pragma once

#include <gmp.h>

#include <cstdint>
#include <string>

#include "EntryRules.h"

namespace tarvik::test {

/// Numbers without end, the same ones for the same start.
class RandomNumbers {
 public:
  explicit RandomNumbers(std::uint64_t lngStart) : m_lngState(lngStart) {}
  std::uint64_t Next();
  /// 0 to lngEnd - 1.
  std::uint64_t Below(std::uint64_t lngEnd) { return Next() % lngEnd; }
  int Between(int intFirst, int intLast) {
    return intFirst + static_cast<int>(Below(static_cast<std::uint64_t>(intLast - intFirst + 1)));
  }
  bool OneIn(std::uint64_t lngCount) { return Below(lngCount) == 0; }

 private:
  std::uint64_t m_lngState;
};

/// Makes texts as users type and paste them, and texts that are hard to round: numbers halfway between two doubles and
/// next to that, subnormal ones, those at the end of the range, hundreds of digits. A part of them is spoiled.
class EntryMaker {
 public:
  EntryMaker();
  EntryMaker(const EntryMaker &) = delete;
  EntryMaker &operator=(const EntryMaker &) = delete;
  ~EntryMaker();

  /// An entry for a field with these rules; the same one for the same random numbers.
  std::string Make(RandomNumbers &random, const FieldRules &rules);

 private:
  std::string Sound(RandomNumbers &random, const FieldRules &rules);
  /// Exact digits of a number halfway between two doubles of about that size, or next to it.
  Decimal Halfway(RandomNumbers &random, int intLowestPower, int intHighestPower);

  mpz_t m_number, m_power;
};

}  // namespace tarvik::test
