#pragma once

#include <array>
#include <span>
#include <vector>

#include "support/Types.h"

namespace tarvik::driver {

inline constexpr Long PatternBits = 16384;

/// Pattern memory of one row: 16384 bits, of which the first Length() are in use. Address 1 is the highest bit of
/// the first byte.
class PatternRow {
 public:
  Long Length() const { return m_lngLength; }
  /// Takes the first lngLength bits (1 to 16384); the memory behind them keeps its contents. Raises Rejected for a
  /// length out of range or too few bytes.
  void Write(std::span<const Byte> bytes, Long lngLength);
  /// The bits in use; unused bits of the last byte are 0.
  std::vector<Byte> Read() const;
  bool operator==(const PatternRow &) const = default;

 private:
  std::array<Byte, PatternBits / 8> m_arrBytes{};
  Long m_lngLength = 16;
};

}  // namespace tarvik::driver
