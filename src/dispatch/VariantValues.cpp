#include "dispatch/VariantValues.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "support/Conversions.h"

namespace tarvik {

using namespace automation;

namespace {

/// The variant type in which each kind travels, in the order of ValueKind.
constexpr std::uint16_t TypeOf[] = {VtBoolean,        VtInteger,           VtLong,    VtDouble, VtString,
                                    VtArray | VtByte, VtArray | VtBoolean, VtDispatch};

std::uint16_t TypeOfKind(ValueKind eKind) { return TypeOf[static_cast<std::size_t>(eKind)]; }

/// The variant itself, also where others refer to it. The count keeps one that refers to itself from running for ever.
template <class Variant>
Variant &Inner(Variant &vArgument) {
  Variant *v = &vArgument;
  for (int i = 0; i < 8 && v->vt == (VtByRef | VtVariant) && v->pvarVal; ++i) v = v->pvarVal;
  return *v;
}

template <class T>
T At(const void *pPlace) {
  T value;
  // NOLINTNEXTLINE(bugprone-sizeof-expression): where T is a pointer, the pointer itself is read
  std::memcpy(&value, pPlace, sizeof value);
  return value;
}

/// How a number travels. Every one of them fits a Double but the last places of those with 64 bits, which fit no
/// parameter either.
struct NumberType {
  std::uint16_t vt;
  Double (*Read)(const void *pPlace);
  /// False where it does not fit.
  bool (*Write)(void *pPlace, Double dblValue);
};

template <class T>
bool WriteAs(void *pPlace, Double dblValue) {
  T value;
  if constexpr (std::is_floating_point_v<T>) {
    value = static_cast<T>(dblValue);
  } else {
    const Double dblRounded = std::nearbyint(dblValue);
    // Also false for what is no number. The upper bound of 64 bits rounds up to one that does not fit.
    const bool fFits = dblRounded >= static_cast<Double>(std::numeric_limits<T>::min()) &&
                       dblRounded < static_cast<Double>(std::numeric_limits<T>::max()) + 1;
    if (!fFits) return false;
    value = static_cast<T>(dblRounded);
  }
  std::memcpy(pPlace, &value, sizeof value);
  return true;
}

bool WriteTruth(void *pPlace, Double dblValue) {
  const VariantBool value = dblValue != 0 ? -1 : 0;
  std::memcpy(pPlace, &value, sizeof value);
  return true;
}

template <class T>
constexpr NumberType NumberAs(std::uint16_t vt) {
  return {vt, [](const void *pPlace) { return static_cast<Double>(At<T>(pPlace)); }, &WriteAs<T>};
}

constexpr NumberType NumberTypes[] = {
    {VtEmpty, [](const void *) { return 0.0; }, nullptr},
    {VtBoolean, [](const void *pPlace) { return static_cast<Double>(At<VariantBool>(pPlace)); }, &WriteTruth},
    NumberAs<Integer>(VtInteger),
    NumberAs<Long>(VtLong),
    NumberAs<Single>(VtSingle),
    NumberAs<Double>(VtDouble),
    NumberAs<Byte>(VtByte),
    NumberAs<std::int8_t>(VtSignedByte),
    NumberAs<std::uint16_t>(VtUnsignedInteger),
    NumberAs<std::uint32_t>(VtUnsignedLong),
    NumberAs<std::int64_t>(VtHuge),
    NumberAs<std::uint64_t>(VtUnsignedHuge),
    NumberAs<std::int32_t>(VtMachineInteger),
    NumberAs<std::uint32_t>(VtMachineUnsigned),
};

const NumberType *NumberTypeOf(std::uint16_t vt) {
  const auto *type = std::ranges::find(NumberTypes, vt, &NumberType::vt);
  return type == std::end(NumberTypes) ? nullptr : type;
}

bool IsNumber(ValueKind eKind) { return eKind <= ValueKind::DoubleValue; }

template <class T>
Status FromNumber(Double dblNumber, Value &vValue) {
  if constexpr (std::is_same_v<T, Boolean>) {
    vValue = Boolean(dblNumber != 0);
  } else if constexpr (std::is_same_v<T, Double>) {
    vValue = dblNumber;
  } else {
    const Double dblRounded = std::nearbyint(dblNumber);
    // Also false for what is no number.
    const bool fFits = dblRounded >= std::numeric_limits<T>::min() && dblRounded <= std::numeric_limits<T>::max();
    if (!fFits) return StatusOverflow;
    vValue = static_cast<T>(dblRounded);
  }
  return StatusOk;
}

Status ReadNumber(ValueKind eKind, Double dblNumber, Value &vValue) {
  switch (eKind) {
    case ValueKind::BooleanValue: return FromNumber<Boolean>(dblNumber, vValue);
    case ValueKind::IntegerValue: return FromNumber<Integer>(dblNumber, vValue);
    case ValueKind::LongValue: return FromNumber<Long>(dblNumber, vValue);
    default: return FromNumber<Double>(dblNumber, vValue);
  }
}

/// An element of an array as a number: of its own type, or a variant of any number.
std::optional<Double> ElementAt(const AutomationArray &array, std::uint16_t vtElement, std::uint32_t lngElement) {
  const auto *pPlace = static_cast<const std::uint8_t *>(array.pvData) + std::size_t{lngElement} * array.cbElements;
  if (vtElement != VtVariant) return NumberTypeOf(vtElement)->Read(pPlace);
  const auto &vElement = Inner(*reinterpret_cast<const AutomationVariant *>(pPlace));
  const NumberType *type = NumberTypeOf(static_cast<std::uint16_t>(vElement.vt & ~VtByRef));
  if (!type) return std::nullopt;
  return type->Read(vElement.vt & VtByRef ? vElement.byref : &vElement.llVal);
}

template <class T>
bool PutElement(T &element, Double dblValue) {
  if constexpr (std::is_same_v<T, Boolean>)
    element = Boolean(dblValue != 0);
  else
    return WriteAs<T>(&element, dblValue);
  return true;
}

/// An array of another number of dimensions fails in the operation that uses it, as it does for every caller.
template <class T>
Status ReadElements(const AutomationArray *pArray, std::uint16_t vtElement, Value &vValue) {
  DynamicArray<T> arr;
  if (pArray && pArray->cDims != 1) {
    arr = DynamicArray<T>::WithDimensions(static_cast<Integer>(pArray->cDims));
  } else if (pArray) {
    const std::uint32_t lngCount = pArray->pvData ? pArray->rgsabound[0].cElements : 0;
    arr = DynamicArray<T>(pArray->rgsabound[0].lLbound, std::vector<T>(lngCount));
    for (std::uint32_t i = 0; i < lngCount; ++i) {
      const auto number = ElementAt(*pArray, vtElement, i);
      if (!number) return StatusTypeMismatch;
      if (!PutElement(arr.Elements()[i], *number)) return StatusOverflow;
    }
  }
  vValue = std::move(arr);
  return StatusOk;
}

std::uint16_t ElementType(ValueKind eKind) { return eKind == ValueKind::ByteArrayValue ? VtByte : VtBoolean; }

std::uint32_t SizeOf(std::uint16_t vtElement) {
  return vtElement == VtVariant ? sizeof(AutomationVariant) : vtElement == VtByte ? sizeof(Byte) : sizeof(VariantBool);
}

/// Whether arrays with these elements are taken for the kind. Scripts have arrays of variants only.
bool HoldsElements(std::uint16_t vt, ValueKind eKind) {
  return vt == (VtArray | ElementType(eKind)) || vt == (VtArray | VtVariant);
}

Status ReadArray(const AutomationVariant &vInner, const void *pPlace, ValueKind eKind, Value &vValue) {
  const auto vt = static_cast<std::uint16_t>(vInner.vt & ~VtByRef);
  if (vt != VtEmpty && !HoldsElements(vt, eKind)) return StatusTypeMismatch;
  const auto *pArray = vt == VtEmpty ? nullptr : At<AutomationArray *>(pPlace);
  const auto vtElement = static_cast<std::uint16_t>(vt & ~VtArray);
  if (pArray && pArray->cbElements != SizeOf(vtElement)) return StatusTypeMismatch;
  if (eKind == ValueKind::ByteArrayValue) return ReadElements<Byte>(pArray, vtElement, vValue);
  return ReadElements<Boolean>(pArray, vtElement, vValue);
}

void WriteElement(AutomationArray &array, std::uint16_t vtElement, std::uint32_t lngElement, Double dblValue,
                  std::uint16_t vtOwn) {
  auto *pPlace = static_cast<std::uint8_t *>(array.pvData) + std::size_t{lngElement} * array.cbElements;
  if (vtElement == VtVariant) {
    auto &vElement = *reinterpret_cast<AutomationVariant *>(pPlace);
    ClearVariant(vElement);
    vElement.vt = vtOwn;
    pPlace = reinterpret_cast<std::uint8_t *>(&vElement.llVal);
  }
  NumberTypeOf(vtOwn)->Write(pPlace, dblValue);
}

/// Fills the caller's array. One of other bounds takes its place, unless its owner has bound it.
template <class T>
void WriteElements(AutomationArray *&pArray, std::uint16_t vtElement, std::uint16_t vtOwn, const DynamicArray<T> &arr) {
  if (arr.Dimensions() != 1) return;
  const auto lngCount = static_cast<std::uint32_t>(arr.Count());
  const bool fFits = pArray && pArray->cDims == 1 && pArray->rgsabound[0].cElements == lngCount &&
                     pArray->rgsabound[0].lLbound == arr.LowerBound();
  if (!fFits) {
    if (pArray && (pArray->cLocks > 0 || (pArray->fFeatures & ArrayBoundFeatures) != 0)) RaiseError(ErrArrayLocked);
    AutomationArray *pNew = AllocArray(static_cast<VariantType>(vtElement), arr.LowerBound(), lngCount);
    FreeArray(std::exchange(pArray, pNew));
  }
  for (std::uint32_t i = 0; i < lngCount; ++i)
    if constexpr (std::is_same_v<T, Boolean>)
      WriteElement(*pArray, vtElement, i, arr.Elements()[i] ? -1 : 0, vtOwn);
    else
      WriteElement(*pArray, vtElement, i, arr.Elements()[i], vtOwn);
}

/// Writes the value to a place of this type.
struct PlaceWriter {
  void *pPlace;
  std::uint16_t vt;

  void operator()(std::monostate) const {}
  void operator()(Boolean fValue) const { Number(fValue ? -1 : 0); }
  void operator()(Integer intValue) const { Number(intValue); }
  void operator()(Long lngValue) const { Number(lngValue); }
  void operator()(Double dblValue) const { Number(dblValue); }
  void operator()(const std::string &strValue) const {
    // Without memory for the new text the caller keeps the old one.
    AutomationString bstrNew = AllocString(strValue);
    FreeString(std::exchange(*static_cast<AutomationString *>(pPlace), bstrNew));
  }
  void operator()(const ByteArray &arr) const { Elements(VtByte, arr); }
  void operator()(const BooleanArray &arr) const { Elements(VtBoolean, arr); }
  void operator()(const Ref<IDispatch> &) const {}

 private:
  void Number(Double dblValue) const {
    if (!NumberTypeOf(vt)->Write(pPlace, dblValue)) RaiseError(ErrOverflow);
  }
  template <class T>
  void Elements(std::uint16_t vtOwn, const DynamicArray<T> &arr) const {
    WriteElements(*static_cast<AutomationArray **>(pPlace), static_cast<std::uint16_t>(vt & ~VtArray), vtOwn, arr);
  }
};

struct VariantWriter {
  AutomationVariant &vResult;

  void operator()(std::monostate) const { vResult.vt = VtEmpty; }
  template <class T>
  void operator()(const T &value) const {
    PlaceWriter{&vResult.llVal, vResult.vt}(value);
  }
  void operator()(const Ref<IDispatch> &object) const { vResult.pdispVal = Ref<IDispatch>(object).Detach(); }
};

}  // namespace

Status ReadVariant(const AutomationVariant &vArgument, ValueKind eKind, Value &vValue) {
  const AutomationVariant &vInner = Inner(vArgument);
  const auto vt = static_cast<std::uint16_t>(vInner.vt & ~VtByRef);
  const void *pPlace = vInner.vt & VtByRef ? vInner.byref : &vInner.llVal;
  if (!pPlace) return StatusTypeMismatch;

  if (IsNumber(eKind)) {
    const NumberType *type = NumberTypeOf(vt);
    return type ? ReadNumber(eKind, type->Read(pPlace), vValue) : StatusTypeMismatch;
  }
  if (eKind == ValueKind::ByteArrayValue || eKind == ValueKind::BooleanArrayValue)
    return ReadArray(vInner, pPlace, eKind, vValue);
  const bool fEmptyText = vt == VtEmpty && eKind == ValueKind::StringValue;
  if (vt != TypeOfKind(eKind) && !fEmptyText) return StatusTypeMismatch;
  if (eKind == ValueKind::StringValue)
    vValue = fEmptyText ? std::string() : ToText(At<AutomationString>(pPlace));
  else
    vValue = Ref<IDispatch>::Share(At<IDispatch *>(pPlace));
  return StatusOk;
}

bool CanWriteBack(const AutomationVariant &vArgument, ValueKind eKind) {
  if (!(vArgument.vt & VtByRef) || vArgument.vt == (VtByRef | VtVariant)) return true;
  const auto vt = static_cast<std::uint16_t>(vArgument.vt & ~VtByRef);
  if (IsNumber(eKind)) return vt != VtEmpty && NumberTypeOf(vt);
  if (eKind == ValueKind::ByteArrayValue || eKind == ValueKind::BooleanArrayValue) return HoldsElements(vt, eKind);
  return vt == TypeOfKind(eKind);
}

void WriteBack(AutomationVariant &vArgument, const Value &vValue) {
  if (!(vArgument.vt & VtByRef) || std::holds_alternative<Ref<IDispatch>>(vValue)) return;
  AutomationVariant &vInner = Inner(vArgument);
  if (vInner.vt & VtByRef) {
    std::visit(PlaceWriter{vInner.byref, static_cast<std::uint16_t>(vInner.vt & ~VtByRef)}, vValue);
  } else if (vInner.vt & VtArray) {
    // The array stays the caller's own: his script may hold it by another name.
    std::visit(PlaceWriter{&vInner.parray, vInner.vt}, vValue);
  } else {
    AutomationVariant vNew = ToVariant(vValue);
    std::swap(vInner, vNew);
    ClearVariant(vNew);
  }
}

AutomationVariant ToVariant(const Value &vValue) {
  AutomationVariant vResult{};
  if (vValue.index() > 0) vResult.vt = TypeOf[vValue.index() - 1];
  std::visit(VariantWriter{vResult}, vValue);
  return vResult;
}

void ClearVariant(AutomationVariant &vValue) {
  if (vValue.vt == VtString) FreeString(vValue.bstrVal);
  if ((vValue.vt & (VtArray | VtByRef)) == VtArray) FreeArray(vValue.parray);
  if (vValue.vt == VtDispatch && vValue.pdispVal) vValue.pdispVal->Release();
  vValue = {};
}

}  // namespace tarvik
