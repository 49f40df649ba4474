#include "bitpattern/PatternStore.h"

#include <algorithm>
#include <vector>

#include "support/RunReported.h"

namespace tarvik {

namespace {

ByteArray EmptyStream() { return ByteArray(1, std::vector<Byte>(PatternArraySize)); }

/// Raises error 9 unless the array has one dimension and at least one element.
void RequireElements(const ByteArray &arr) {
  if (arr.Dimensions() != 1 || arr.Count() == 0) RaiseError(ErrSubscriptOutOfRange);
}

Boolean Refused(const char *strText) {
  ShowStopMessage(strText);
  return False;
}

}  // namespace

PatternStore::PatternStore()
    : arrChan1(EmptyStream()),
      arrChan2(EmptyStream()),
      arrStrobe(EmptyStream()),
      arrRows{RowInfo{.fNumeric = False, .fRz = True, .lngChannel = eChan1},
              RowInfo{.fNumeric = False, .fRz = True, .lngChannel = eChan2},
              RowInfo{.fNumeric = True, .fRz = True, .lngChannel = eBoth},
              RowInfo{.fNumeric = False, .fRz = False, .lngChannel = eStrobe}} {}

const ByteArray *PatternStore::StreamOf(Long lngCode) const {
  switch (lngCode) {
    case eChan1: return &arrChan1;
    case eChan2: return &arrChan2;
    case eStrobe: return &arrStrobe;
    default: return nullptr;
  }
}

ByteArray *PatternStore::StreamOf(Long lngCode) {
  return const_cast<ByteArray *>(static_cast<const PatternStore *>(this)->StreamOf(lngCode));
}

const RowInfo *PatternStore::RowOf(Long lngCode) const {
  const auto row =
      std::find_if(arrRows.begin(), arrRows.end(), [&](const RowInfo &info) { return info.lngChannel == lngCode; });
  return row == arrRows.end() ? nullptr : &*row;
}

RowInfo *PatternStore::RowOf(Long lngCode) {
  return const_cast<RowInfo *>(static_cast<const PatternStore *>(this)->RowOf(lngCode));
}

void PatternStore::WriteChannelBit(Long lngCode, Long lngAddress, Long lngValue, Boolean &fDone) {
  fDone = False;
  if (ByteArray *stream = StreamOf(lngCode)) {
    WriteBit(*stream, lngAddress, lngValue, fDone);
    return;
  }
  if (lngCode != eBoth) {
    ShowIllegalCase();
    return;
  }
  const bool fToggle = lngValue == 4;
  Boolean fDone1, fDone2;
  WriteBit(arrChan1, lngAddress, fToggle ? 4 : lngValue & 1, fDone1);
  WriteBit(arrChan2, lngAddress, fToggle ? 4 : (lngValue >> 1) & 1, fDone2);
  fDone = fDone1 && fDone2;
}

void PatternStore::ReadChannelBit(Long lngCode, Long lngAddress, Long &lngValue) const {
  lngValue = 0;
  Boolean fBit;
  if (const ByteArray *stream = StreamOf(lngCode)) {
    GetBit(*stream, lngAddress, fBit);
    lngValue = fBit ? 1 : 0;
    return;
  }
  if (lngCode != eBoth) {
    ShowIllegalCase();
    return;
  }
  GetBit(arrChan1, lngAddress, fBit);
  Boolean fBit2;
  GetBit(arrChan2, lngAddress, fBit2);
  lngValue = (fBit ? 1 : 0) + (fBit2 ? 2 : 0);
}

Long PatternStore::GetPatternArraySize() const { return BytesUsed() - arrChan1.LowerBound() + 1; }

Boolean PatternStore::GetPattern(Long eChannel, ByteArray &arr, Long &lngArraySize) const {
  Boolean fResult;
  RunReported("BitPattern", "GetPattern", [&] { fResult = CopyOut(eChannel, arr, lngArraySize); });
  return fResult;
}

Boolean PatternStore::CopyOut(Long eChannel, ByteArray &arr, Long &lngArraySize) const {
  lngArraySize = BytesUsed();
  if (arr.Dimensions() != 1) RaiseError(ErrSubscriptOutOfRange);
  if (arr.Count() < lngArraySize) return Refused("Illegal Array size");
  const ByteArray *stream = StreamOf(eChannel);
  if (!stream) return Refused("Illegal Case");
  std::copy_n(stream->Elements().begin(), lngArraySize, arr.Elements().begin());
  return True;
}

Boolean PatternStore::TakePattern(Long eChannel, const ByteArray &arr) {
  RequireElements(arr);
  if (arr.LowerBound() != arrChan1.LowerBound() || arr.UpperBound() > arrChan1.UpperBound())
    return Refused("Array boundary mismatch");
  if (!FitsSequence(arr)) return Refused("Illegal use of SetPattern()");

  ByteArray *stream = StreamOf(eChannel);
  if (!stream) return Refused("Illegal Case");
  if (eChannel == eChan2 && !fChan2Enabled) return Refused("Channel 2 Disabled!");
  if (!ClaimChannel(eChannel)) return Refused("Duplicate call to SetPattern");
  std::copy(arr.Elements().begin(), arr.Elements().end(), stream->Elements().begin());
  return True;
}

bool PatternStore::FitsSequence(const ByteArray &arr) {
  if (lngPendingChannels == AllChannels) {
    lngSetLBound = arr.LowerBound();
    lngSetCount = arr.Count();
  }
  return arr.LowerBound() == lngSetLBound && arr.Count() == lngSetCount;
}

bool PatternStore::ClaimChannel(Long eChannel) {
  if ((eChannel & lngPendingChannels) == 0) return false;
  lngPendingChannels -= eChannel;
  return true;
}

}  // namespace tarvik
