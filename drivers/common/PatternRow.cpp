#include "common/PatternRow.h"

#include <algorithm>

#include "common/ScpiError.h"

namespace tarvik::driver {

namespace {
/// Mask of the bits in use in the last byte: the highest ones.
Byte LastByteMask(Long lngLength) { return static_cast<Byte>(0xFF << (7 - (lngLength - 1) % 8)); }
std::size_t BytesFor(Long lngLength) { return static_cast<std::size_t>((lngLength + 7) / 8); }
}  // namespace

void PatternRow::Write(std::span<const Byte> bytes, Long lngLength) {
  if (lngLength < 1 || lngLength > PatternBits)
    Reject(ScpiDataOutOfRange, "Data out of range: pattern length", std::to_string(lngLength) + ", allowed 1 to 16384");
  const std::size_t count = BytesFor(lngLength);
  if (bytes.size() < count)
    Reject(ScpiMissingParameter, "Missing parameter: pattern data",
           std::to_string(bytes.size()) + " bytes for " + std::to_string(lngLength) + " bits");
  const Byte byMask = LastByteMask(lngLength);
  const Byte byKept = static_cast<Byte>(m_arrBytes[count - 1] & ~byMask);
  std::copy_n(bytes.begin(), count, m_arrBytes.begin());
  m_arrBytes[count - 1] = static_cast<Byte>((m_arrBytes[count - 1] & byMask) | byKept);
  m_lngLength = lngLength;
}

std::vector<Byte> PatternRow::Read() const {
  const std::size_t count = BytesFor(m_lngLength);
  std::vector<Byte> bytes(m_arrBytes.begin(), m_arrBytes.begin() + static_cast<std::ptrdiff_t>(count));
  bytes.back() = static_cast<Byte>(bytes.back() & LastByteMask(m_lngLength));
  return bytes;
}

}  // namespace tarvik::driver
