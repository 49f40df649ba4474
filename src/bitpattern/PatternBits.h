#pragma once

#include "support/DynamicArray.h"
#include "support/Types.h"

/// The bits of one stream. Addresses count from 1; the first address of a byte is its most significant bit, so
/// that the bytes can go to the instrument as they stand. The arrays have the lower bound 1; an address outside
/// of the array is run-time error 9.
namespace tarvik {

/// Bytes of a stream, and the addresses that they hold.
inline constexpr Long PatternArraySize = 2048;
inline constexpr Long MaxPatternLength = PatternArraySize * 8;

/// Byte of an address, counted from 1, and its place in that byte, 0 for the most significant bit.
constexpr Long BitByteIndex(Long lngAddress) { return (lngAddress - 1) / 8 + 1; }
constexpr Long BitMaskIndex(Long lngAddress) { return (lngAddress - 1) % 8; }

void SetBit(ByteArray &arr, Long lngAddress);
void ClearBit(ByteArray &arr, Long lngAddress);
void ToggleBit(ByteArray &arr, Long lngAddress);
void GetBit(const ByteArray &arr, Long lngAddress, Boolean &fValue);

/// 0 clears the bit, 1 sets it, 4 toggles it; any other value changes nothing and is not done.
void WriteBit(ByteArray &arr, Long lngAddress, Long lngValue, Boolean &fDone);

/// How an operation from an address to the end of the pattern is cut: single bits up to the end of the first
/// byte, whole bytes from there on. A phase whose first exceeds its last is empty.
struct PatternRange {
  Long lngFirstBit = 1, lngLastBit = 0;    ///< addresses
  Long lngFirstByte = 1, lngLastByte = 0;  ///< bytes, counted from 1
  bool operator==(const PatternRange &) const = default;
};

/// The cut for a pattern of lngBytesUsed bytes. A single whole byte behind the bit phase is left alone: with a
/// start of 3 in a pattern of 16 the addresses 9 to 16 are not reached. Both phases may pass the pattern's
/// length up to the end of its last byte.
PatternRange ByteRange(Long lngStart, Long lngBytesUsed);

/// Every bit of the range to 0 or 1.
void FillRange(ByteArray &arr, const PatternRange &range, Boolean fValue);
/// Every bit of the range to its complement.
void InvertRange(ByteArray &arr, const PatternRange &range);

/// Moves the bits from lngStart on one address up; the bit at lngStart stays, so it stands twice, and the bit at
/// lngLength drops out. Nothing behind lngLength changes.
void InsertBit(ByteArray &arr, Long lngStart, Long lngLength);
/// Moves the bits behind lngStart one address down. Afterwards the last bit gets the value of the bit before it,
/// also where nothing had to be moved. lngLength is 2 or more.
void DeleteBit(ByteArray &arr, Long lngStart, Long lngLength);

/// Sets the high addresses of a clock of period n between lngStart and lngLength and clears none. The phase
/// counts from address 1: a period begins with its n div 2 high addresses. Below 2 a period has none; n = 0 is
/// run-time error 11 unless the stretch is empty.
void SetClockBits(ByteArray &arr, Long lngStart, Long lngLength, Long lngPeriod);

}  // namespace tarvik
