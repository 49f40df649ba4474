#include "bitpattern/PatternBits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>

namespace tarvik {

namespace {

using Word = std::uint64_t;
constexpr std::size_t WordSize = sizeof(Word);

constexpr std::array<Byte, 8> byMask{0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01};
constexpr std::array<Byte, 8> byMaskInv{0x7F, 0xBF, 0xDF, 0xEF, 0xF7, 0xFB, 0xFD, 0xFE};

Byte Mask(const std::array<Byte, 8> &arrMasks, Long lngAddress) {
  const Long lngIndex = BitMaskIndex(lngAddress);
  if (lngIndex < 0) RaiseError(ErrSubscriptOutOfRange);
  return arrMasks[static_cast<std::size_t>(lngIndex)];
}

/// Loads eight bytes as a big-endian word, at any alignment.
Word LoadWord(const Byte *bytes) {
  Word word;
  std::memcpy(&word, bytes, WordSize);
  return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

void StoreWord(Byte *bytes, Word word) {
  if (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  std::memcpy(bytes, &word, WordSize);
}

void InvertBytes(Byte *bytes, std::size_t count) {
  // Fixed-size blocks, so that the compiler vectorizes the loop.
  constexpr std::size_t BlockWords = 8, BlockSize = BlockWords * WordSize;
  for (; count >= BlockSize; bytes += BlockSize, count -= BlockSize) {
    std::array<Word, BlockWords> block;
    std::memcpy(block.data(), bytes, BlockSize);
    for (Word &word : block) word = ~word;
    std::memcpy(bytes, block.data(), BlockSize);
  }
  for (; count > 0; ++bytes, --count) *bytes = static_cast<Byte>(~*bytes);
}

void OrBytes(Byte *bytes, const Byte *other, std::size_t count) {
  constexpr std::size_t BlockWords = 8, BlockSize = BlockWords * WordSize;
  for (; count >= BlockSize; bytes += BlockSize, other += BlockSize, count -= BlockSize) {
    std::array<Word, BlockWords> block, more;
    std::memcpy(block.data(), bytes, BlockSize);
    std::memcpy(more.data(), other, BlockSize);
    for (std::size_t i = 0; i < BlockWords; ++i) block[i] |= more[i];
    std::memcpy(bytes, block.data(), BlockSize);
  }
  for (; count > 0; ++bytes, ++other, --count) *bytes = static_cast<Byte>(*bytes | *other);
}

/// Shifts the bytes one bit toward higher addresses, with carry from word to word.
void ShiftUp(Byte *bytes, std::size_t count) {
  Word carry = 0;
  for (; count >= WordSize; bytes += WordSize, count -= WordSize) {
    const Word word = LoadWord(bytes);
    StoreWord(bytes, (word >> 1) | (carry << 63));
    carry = word & 1;
  }
  for (; count > 0; ++bytes, --count) {
    const unsigned byte = *bytes;
    *bytes = static_cast<Byte>((byte >> 1) | (carry << 7));
    carry = byte & 1;
  }
}

/// Shifts the bytes one bit toward lower addresses.
void ShiftDown(Byte *bytes, std::size_t count) {
  for (; count > WordSize; bytes += WordSize, count -= WordSize)
    StoreWord(bytes, (LoadWord(bytes) << 1) | static_cast<Word>(bytes[WordSize] >> 7));
  for (; count > 1; ++bytes, --count) *bytes = static_cast<Byte>((*bytes << 1) | (bytes[1] >> 7));
  if (count == 1) *bytes = static_cast<Byte>(*bytes << 1);
}

/// The bytes that hold a range of addresses.
struct Stretch {
  Byte *bytes;
  std::size_t count;
  Byte byFirst;  ///< mask of the range's bits in the first byte
  Byte byLast;   ///< and in the last byte
};

Stretch BytesOf(ByteArray &arr, Long lngFirst, Long lngLast) {
  Byte *const last = &arr[BitByteIndex(lngLast)];
  Byte *const first = &arr[BitByteIndex(lngFirst)];
  const unsigned firstMask = Mask(byMask, lngFirst), lastMask = Mask(byMask, lngLast);
  return {first, static_cast<std::size_t>(last - first) + 1, static_cast<Byte>(2 * firstMask - 1),
          static_cast<Byte>(0x100 - lastMask)};
}

Byte Blend(Byte byOld, Byte byNew, Byte byMaskOfNew) {
  return static_cast<Byte>((byOld & ~byMaskOfNew) | (byNew & byMaskOfNew));
}

/// Runs a change of whole bytes on the range and restores the bits at its ends that lie outside.
template <class Change>
void ChangeWithin(const Stretch &stretch, Change change) {
  Byte &first = stretch.bytes[0];
  Byte &last = stretch.bytes[stretch.count - 1];
  const Byte byOldFirst = first, byOldLast = last;
  change(stretch.bytes, stretch.count);
  if (stretch.count == 1) {
    first = Blend(byOldFirst, first, stretch.byFirst & stretch.byLast);
    return;
  }
  first = Blend(byOldFirst, first, stretch.byFirst);
  last = Blend(byOldLast, last, stretch.byLast);
}

/// A run of bits to 1; first counts from 0 at the start of the bytes.
void SetRun(Byte *bytes, std::size_t first, std::size_t count) {
  if (count == 0) return;
  const std::size_t last = first + count - 1;
  const auto byFirst = static_cast<Byte>(0xFF >> first % 8), byLast = static_cast<Byte>(0xFF00 >> (last % 8 + 1));
  Byte *const firstByte = bytes + first / 8, *const lastByte = bytes + last / 8;
  if (firstByte == lastByte) {
    *firstByte |= byFirst & byLast;
    return;
  }
  *firstByte |= byFirst;
  std::memset(firstByte + 1, 0xFF, static_cast<std::size_t>(lastByte - firstByte) - 1);
  *lastByte |= byLast;
}

using StreamBytes = std::array<Byte, PatternArraySize>;

/// Builds the clock from address 1 over at least so many bytes. A clock repeats itself after so many whole bytes
/// as its period has addresses or fewer; within these it has eight runs at most, the rest is copying.
void BuildClock(StreamBytes &arrClock, std::size_t period, std::size_t count) {
  const std::size_t repeat = period / std::gcd(period, std::size_t{8});
  std::size_t done = std::min(repeat, count);
  std::memset(arrClock.data(), 0, done);
  const std::size_t high = period / 2;
  for (std::size_t first = 0; first < done * 8; first += period)
    SetRun(arrClock.data(), first, std::min(high, done * 8 - first));
  while (done < count) {
    const std::size_t more = std::min(done, count - done);
    std::memcpy(arrClock.data() + done, arrClock.data(), more);
    done += more;
  }
}

}  // namespace

void SetBit(ByteArray &arr, Long lngAddress) { arr[BitByteIndex(lngAddress)] |= Mask(byMask, lngAddress); }

void ClearBit(ByteArray &arr, Long lngAddress) { arr[BitByteIndex(lngAddress)] &= Mask(byMaskInv, lngAddress); }

void ToggleBit(ByteArray &arr, Long lngAddress) { arr[BitByteIndex(lngAddress)] ^= Mask(byMask, lngAddress); }

void GetBit(const ByteArray &arr, Long lngAddress, Boolean &fValue) {
  fValue = (arr[BitByteIndex(lngAddress)] & Mask(byMask, lngAddress)) != 0;
}

void WriteBit(ByteArray &arr, Long lngAddress, Long lngValue, Boolean &fDone) {
  fDone = True;
  switch (lngValue) {
    case 0: ClearBit(arr, lngAddress); break;
    case 1: SetBit(arr, lngAddress); break;
    case 4: ToggleBit(arr, lngAddress); break;
    default: fDone = False;
  }
}

PatternRange ByteRange(Long lngStart, Long lngBytesUsed) {
  PatternRange range;
  range.lngFirstByte = BitByteIndex(lngStart);
  range.lngLastByte = lngBytesUsed;
  if (BitMaskIndex(lngStart) == 0) return range;

  range.lngFirstBit = lngStart;
  range.lngLastBit = range.lngFirstByte * 8;
  ++range.lngFirstByte;
  if (range.lngFirstByte == range.lngLastByte) range.lngLastByte = range.lngFirstByte - 1;
  return range;
}

namespace {

/// Runs one change on the bits of the first phase, another on the bytes of the second.
template <class ChangeBits, class ChangeBytes>
void ForRange(ByteArray &arr, const PatternRange &range, ChangeBits changeBits, ChangeBytes changeBytes) {
  for (Long lngAddress = range.lngFirstBit; lngAddress <= range.lngLastBit; ++lngAddress) changeBits(lngAddress);
  if (range.lngFirstByte > range.lngLastByte) return;
  Byte *const last = &arr[range.lngLastByte];
  Byte *const first = &arr[range.lngFirstByte];
  changeBytes(first, static_cast<std::size_t>(last - first) + 1);
}

}  // namespace

void FillRange(ByteArray &arr, const PatternRange &range, Boolean fValue) {
  ForRange(
      arr, range, [&](Long lngAddress) { fValue ? SetBit(arr, lngAddress) : ClearBit(arr, lngAddress); },
      [&](Byte *bytes, std::size_t count) { std::memset(bytes, fValue ? 0xFF : 0, count); });
}

void InvertRange(ByteArray &arr, const PatternRange &range) {
  ForRange(
      arr, range, [&](Long lngAddress) { ToggleBit(arr, lngAddress); }, InvertBytes);
}

void InsertBit(ByteArray &arr, Long lngStart, Long lngLength) {
  if (lngStart >= lngLength) return;
  // The bit at lngStart has to take part in the shift and is then written back by its own value.
  Boolean fStart;
  GetBit(arr, lngStart, fStart);
  ChangeWithin(BytesOf(arr, lngStart, lngLength), ShiftUp);
  fStart ? SetBit(arr, lngStart) : ClearBit(arr, lngStart);
}

void DeleteBit(ByteArray &arr, Long lngStart, Long lngLength) {
  if (lngStart < lngLength) ChangeWithin(BytesOf(arr, lngStart, lngLength), ShiftDown);
  Boolean fLast;
  GetBit(arr, lngLength - 1, fLast);
  fLast ? SetBit(arr, lngLength) : ClearBit(arr, lngLength);
}

void SetClockBits(ByteArray &arr, Long lngStart, Long lngLength, Long lngPeriod) {
  if (lngStart > lngLength) return;
  if (lngPeriod == 0) RaiseError(ErrDivisionByZero);
  if (lngPeriod < 2) return;

  const Stretch stretch = BytesOf(arr, lngStart, lngLength);
  const auto skipped = static_cast<std::size_t>(BitByteIndex(lngStart) - 1);
  StreamBytes arrClock;
  BuildClock(arrClock, static_cast<std::size_t>(lngPeriod), skipped + stretch.count);
  ChangeWithin(stretch, [&](Byte *bytes, std::size_t count) { OrBytes(bytes, arrClock.data() + skipped, count); });
}

}  // namespace tarvik
