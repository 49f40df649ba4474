#pragma once

#include <array>

#include "bitpattern/PatternBits.h"
#include "bitpattern/RowInfo.h"
#include "support/DynamicArray.h"
#include "support/Types.h"

namespace tarvik {

/// The three streams of a pattern, the record of each row, and the calls by which a host takes the streams out
/// and puts them in. A refused call shows a stop box, answers false and leaves the streams as they were.
class PatternStore {
 public:
  PatternStore();

  /// Addresses in use, 2 to 16384. What lies behind them keeps its bits.
  Long Length() const { return lngLength; }
  void SetLength(Long lngNewLength) { lngLength = lngNewLength; }
  /// Bytes that hold the addresses in use.
  Long BytesUsed() const { return BitByteIndex(lngLength); }

  /// Whether the instrument has a channel 2.
  Boolean Chan2Enabled() const { return fChan2Enabled; }
  void EnableChan2(Boolean fEnable) { fChan2Enabled = fEnable; }

  ByteArray &Chan1() { return arrChan1; }
  ByteArray &Chan2() { return arrChan2; }
  ByteArray &Strobe() { return arrStrobe; }
  const ByteArray &Chan1() const { return arrChan1; }
  const ByteArray &Chan2() const { return arrChan2; }
  const ByteArray &Strobe() const { return arrStrobe; }

  /// The stream of the codes 1, 2 and 8; null for any other.
  ByteArray *StreamOf(Long lngCode);
  const ByteArray *StreamOf(Long lngCode) const;

  /// The row of the codes 1, 2, 4 and 8; null for any other.
  RowInfo *RowOf(Long lngCode);
  const RowInfo *RowOf(Long lngCode) const;
  /// The rows from top to bottom: channel 1, channel 2, both, strobe.
  std::array<RowInfo, 4> &Rows() { return arrRows; }
  const std::array<RowInfo, 4> &Rows() const { return arrRows; }

  /// Writes the bit of one stream, or of both channels: then bit 0 of the value goes to channel 1 and bit 1 to
  /// channel 2, and 4 toggles both. fDone tells whether the value was one that can be written. An unknown code
  /// shows "Illegal case".
  void WriteChannelBit(Long lngCode, Long lngAddress, Long lngValue, Boolean &fDone);
  /// 0 or 1; for both channels 0 to 3 with channel 1 as the low bit. An unknown code shows "Illegal case" and
  /// reads 0.
  void ReadChannelBit(Long lngCode, Long lngAddress, Long &lngValue) const;

  /// Bytes that GetPattern delivers.
  Long GetPatternArraySize() const;
  /// Copies the stream 1, 2 or 8 to the start of arr, which may be larger than the lngArraySize bytes that are
  /// needed; lngArraySize is told also when arr is too small. A failure is reported and answers false.
  Boolean GetPattern(Long eChannel, ByteArray &arr, Long &lngArraySize) const;

  /// Begins the delivery of a pattern: each stream may then come once.
  void SetPatternInit() { lngPendingChannels = AllChannels; }
  /// Takes one stream of a delivery. arr has the lower bound 1 and at most 2048 bytes, and all arrays of one
  /// delivery have the same bounds. Error 9 for an array without elements.
  Boolean TakePattern(Long eChannel, const ByteArray &arr);

  /// Sum of the channel codes that the present delivery has not brought yet.
  Long PendingChannels() const { return lngPendingChannels; }

 private:
  static constexpr Long AllChannels = eChan1 + eChan2 + eBoth + eStrobe;

  Boolean CopyOut(Long eChannel, ByteArray &arr, Long &lngArraySize) const;
  bool FitsSequence(const ByteArray &arr);
  bool ClaimChannel(Long eChannel);

  ByteArray arrChan1, arrChan2, arrStrobe;
  Long lngLength = 2;
  Long lngPendingChannels = 0;
  Long lngSetLBound = 0;
  Long lngSetCount = 0;
  Boolean fChan2Enabled;
  std::array<RowInfo, 4> arrRows;
};

}  // namespace tarvik
