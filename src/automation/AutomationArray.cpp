#include "automation/AutomationArray.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace tarvik::automation {

#ifdef _WIN32

AutomationArray *AllocArray(VariantType eType, std::int32_t lngLowerBound, std::uint32_t lngCount) {
  SAFEARRAY *array = SafeArrayCreateVector(eType, lngLowerBound, lngCount);
  if (!array) throw std::bad_alloc();
  return array;
}
void FreeArray(AutomationArray *pArray) {
  if (pArray) SafeArrayDestroy(pArray);
}

#else

AutomationArray *AllocArray(VariantType eType, std::int32_t lngLowerBound, std::uint32_t lngCount) {
  const std::uint32_t lngSize = eType == VtByte ? 1 : eType == VtBoolean ? 2 : sizeof(AutomationVariant);
  std::unique_ptr<void, decltype(&std::free)> data(std::calloc(lngCount ? lngCount : 1, lngSize), &std::free);
  std::unique_ptr<void, decltype(&std::free)> block(std::calloc(1, sizeof(AutomationArray)), &std::free);
  if (!data || !block) throw std::bad_alloc();
  auto *array = static_cast<AutomationArray *>(block.release());
  array->cDims = 1;
  array->cbElements = lngSize;
  array->pvData = data.release();
  array->rgsabound[0] = {lngCount, lngLowerBound};
  return array;
}

void FreeArray(AutomationArray *pArray) {
  if (!pArray) return;
  std::free(pArray->pvData);
  std::free(pArray);
}

#endif

AutomationArray *AllocByteArray(std::int32_t lngLowerBound, const std::uint8_t *pBytes, std::uint32_t lngCount) {
  AutomationArray *array = AllocArray(VtByte, lngLowerBound, lngCount);
  if (pBytes && lngCount) std::memcpy(array->pvData, pBytes, lngCount);
  return array;
}

bool IsByteArray(const AutomationArray *pArray) { return pArray && pArray->cDims == 1 && pArray->cbElements == 1; }

ByteArray ToByteArray(const AutomationArray *pArray) {
  if (!pArray) return {};
  if (pArray->cDims != 1) RaiseError(ErrSubscriptOutOfRange);
  if (pArray->cbElements != 1) RaiseError(ErrTypeMismatch);
  const auto *pBytes = static_cast<const std::uint8_t *>(pArray->pvData);
  const auto lngCount = pBytes ? pArray->rgsabound[0].cElements : 0;
  return ByteArray(pArray->rgsabound[0].lLbound, std::vector<Byte>(pBytes, pBytes + lngCount));
}

}  // namespace tarvik::automation
