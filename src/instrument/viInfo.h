#pragma once

#include <algorithm>
#include <array>

#include "automation/AutomationArray.h"
#include "instrument/Vocabulary.h"

namespace tarvik {

/// The driver's own record of an instrument: 28 raw bytes of which five 16-bit words, low byte
/// first, are understood.
struct viInfo {
  static constexpr Long Size = 28;

  std::array<Byte, Size> arrBytes{};

  /// The record of an instrument; what is not understood is 0. Slot and model code count for an entry with a slot only.
  static viInfo Of(Integer intKind, Integer intAddress, Integer intSlot = 0, Integer intModelCode = 0) {
    viInfo record;
    record.Put(KindAt, intKind);
    if (!record.HasSlot()) {
      record.Put(BoxAddressAt, intAddress);
      return record;
    }
    record.Put(SlotAt, intSlot);
    record.Put(SlotAddressAt, intAddress);
    record.Put(ModelCodeAt, intModelCode);
    return record;
  }

  /// Fills the array that the caller of IInstrument::GetViInfo hands over. False, and nothing is written, where it is
  /// no byte array with room for the record.
  bool WriteTo(automation::AutomationArray *pArray) const {
    if (!automation::IsByteArray(pArray) || !pArray->pvData || pArray->rgsabound[0].cElements < arrBytes.size())
      return false;
    std::copy(arrBytes.begin(), arrBytes.end(), static_cast<Byte *>(pArray->pvData));
    return true;
  }
  /// Takes what a driver has filled in; what a shorter array lacks stays as it was. Fails as ToByteArray.
  void ReadFrom(const automation::AutomationArray *pArray) {
    const ByteArray arrFilled = automation::ToByteArray(pArray);
    std::copy_n(arrFilled.Elements().begin(), std::min(arrFilled.Elements().size(), arrBytes.size()), arrBytes.begin());
  }

  /// InstrKind.
  Integer Kind() const { return Word(KindAt); }
  Boolean HasSlot() const { return IsSlotKind(Kind()); }
  Integer LogicalAddress() const { return Word(HasSlot() ? SlotAddressAt : BoxAddressAt); }
  /// Only where HasSlot.
  Integer Slot() const { return Word(SlotAt); }
  /// Only where HasSlot.
  Integer ModelCode() const { return Word(ModelCodeAt); }

  bool operator==(const viInfo &) const = default;

 private:
  static constexpr std::size_t KindAt = 16, BoxAddressAt = 18, SlotAt = 22, SlotAddressAt = 24, ModelCodeAt = 26;

  void Put(std::size_t offset, Integer intValue) {
    const auto word = static_cast<std::uint16_t>(intValue);
    arrBytes[offset] = static_cast<Byte>(word);
    arrBytes[offset + 1] = static_cast<Byte>(word >> 8);
  }
  Integer Word(std::size_t offset) const {
    return static_cast<Integer>(static_cast<unsigned>(arrBytes[offset]) | static_cast<unsigned>(arrBytes[offset + 1])
                                                                              << 8);
  }
};

}  // namespace tarvik
