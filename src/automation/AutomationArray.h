#pragma once

#include "automation/Abi.h"
#include "support/DynamicArray.h"
#include "support/Export.h"

namespace tarvik::automation {

/// A new byte array with the bounds and the bytes of the given one.
TARVIK_AUTOMATION_EXPORT AutomationArray *AllocByteArray(std::int32_t lngLowerBound, const std::uint8_t *pBytes,
                                                         std::uint32_t lngCount);
/// A new array of zeros: of bytes, truth values or variants.
TARVIK_AUTOMATION_EXPORT AutomationArray *AllocArray(VariantType eType, std::int32_t lngLowerBound,
                                                     std::uint32_t lngCount);
TARVIK_AUTOMATION_EXPORT void FreeArray(AutomationArray *pArray);

/// Whether it is a byte array of one dimension.
TARVIK_AUTOMATION_EXPORT bool IsByteArray(const AutomationArray *pArray);

/// Owns an array that crosses the driver's edge.
class ArrayOwner {
 public:
  ArrayOwner() = default;
  /// Error 9 for an array of other than one dimension.
  explicit ArrayOwner(const ByteArray &arr) {
    if (arr.Dimensions() != 1) RaiseError(ErrSubscriptOutOfRange);
    m_pArray = AllocByteArray(arr.LowerBound(), arr.Elements().data(), static_cast<std::uint32_t>(arr.Count()));
  }
  ArrayOwner(const ArrayOwner &) = delete;
  ArrayOwner &operator=(const ArrayOwner &) = delete;
  ~ArrayOwner() { FreeArray(m_pArray); }

  AutomationArray *Get() const { return m_pArray; }
  /// For an argument by reference: the callee may resize or replace the array.
  AutomationArray **InOut() { return &m_pArray; }

 private:
  AutomationArray *m_pArray = nullptr;
};

/// Bounds and bytes of the array; nothing gives an array without elements. Error 13 for an array of
/// other elements, error 9 for one of more dimensions.
TARVIK_AUTOMATION_EXPORT ByteArray ToByteArray(const AutomationArray *pArray);

}  // namespace tarvik::automation
