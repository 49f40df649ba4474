#pragma once

#include <array>

#include "support/Types.h"

namespace tarvik {

/// The driver's own record of an instrument: 28 raw bytes of which five 16-bit words are understood.
struct viInfo {
  static constexpr Long Size = 28;

  std::array<Byte, Size> arrBytes{};

  /// 2 and 3: an entry with a slot and a model code; others have a logical address only.
  Integer Kind() const { return Word(16); }
  Boolean HasSlot() const { return Kind() == 2 || Kind() == 3; }
  Integer LogicalAddress() const { return Word(HasSlot() ? 24 : 18); }
  /// Only where HasSlot.
  Integer Slot() const { return Word(22); }
  /// Only where HasSlot.
  Integer ModelCode() const { return Word(26); }

  bool operator==(const viInfo &) const = default;

 private:
  Integer Word(std::size_t offset) const {
    return static_cast<Integer>(static_cast<unsigned>(arrBytes[offset]) | static_cast<unsigned>(arrBytes[offset + 1])
                                                                              << 8);
  }
};

}  // namespace tarvik
