#include "dispatch/VariantValues.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

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

/// The variant itself, also where another variant refers to it.
const AutomationVariant &Inner(const AutomationVariant &vArgument) {
  if (vArgument.vt == (VtByRef | VtVariant) && vArgument.pvarVal) return *vArgument.pvarVal;
  return vArgument;
}

template <class T>
T At(const void *pPlace) {
  T value;
  std::memcpy(&value, pPlace, sizeof value);
  return value;
}

std::optional<Double> Number(std::uint16_t vt, const void *pPlace) {
  switch (vt) {
    case VtBoolean:
    case VtInteger: return At<Integer>(pPlace);
    case VtLong: return At<Long>(pPlace);
    case VtByte: return At<Byte>(pPlace);
    case VtSingle: return static_cast<Double>(At<Single>(pPlace));
    case VtDouble: return At<Double>(pPlace);
    default: return std::nullopt;
  }
}

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

Status ReadBooleans(const AutomationArray *pArray, Value &vValue) {
  BooleanArray arr;
  if (pArray) {
    if (pArray->cDims != 1 || pArray->cbElements != sizeof(VariantBool)) return StatusTypeMismatch;
    arr = BooleanArray(pArray->rgsabound[0].lLbound);
    const auto *pWords = static_cast<const VariantBool *>(pArray->pvData);
    for (std::uint32_t i = 0; pWords && i < pArray->rgsabound[0].cElements; ++i)
      arr.Elements().push_back(Boolean::FromWord(pWords[i]));
  }
  vValue = std::move(arr);
  return StatusOk;
}

Status ReadArray(const AutomationArray *pArray, ValueKind eKind, Value &vValue) {
  if (eKind == ValueKind::BooleanArrayValue) return ReadBooleans(pArray, vValue);
  if (pArray && !IsByteArray(pArray)) return StatusTypeMismatch;
  vValue = ToByteArray(pArray);
  return StatusOk;
}

/// Writes the value to a place of its own type.
struct PlaceWriter {
  void *pPlace;

  void operator()(std::monostate) const {}
  void operator()(Boolean fValue) const { *static_cast<VariantBool *>(pPlace) = fValue.Word(); }
  void operator()(Integer intValue) const { *static_cast<Integer *>(pPlace) = intValue; }
  void operator()(Long lngValue) const { *static_cast<Long *>(pPlace) = lngValue; }
  void operator()(Double dblValue) const { *static_cast<Double *>(pPlace) = dblValue; }
  void operator()(const std::string &strValue) const {
    auto &bstr = *static_cast<AutomationString *>(pPlace);
    FreeString(bstr);
    bstr = AllocString(strValue);
  }
  void operator()(const ByteArray &arr) const {
    auto *&pArray = *static_cast<AutomationArray **>(pPlace);
    FreeArray(pArray);
    pArray = AllocByteArray(arr.LowerBound(), arr.Elements().data(), static_cast<std::uint32_t>(arr.Count()));
  }
  void operator()(const BooleanArray &arr) const {
    // Operations change such arrays in place only.
    auto *pArray = *static_cast<AutomationArray **>(pPlace);
    for (Long i = 0; pArray && i < arr.Count(); ++i)
      static_cast<VariantBool *>(pArray->pvData)[i] = arr.Elements()[static_cast<std::size_t>(i)].Word();
  }
  void operator()(const Ref<IDispatch> &) const {}
};

struct VariantWriter {
  AutomationVariant &vResult;

  void operator()(std::monostate) const { vResult.vt = VtEmpty; }
  template <class T>
  void operator()(const T &value) const {
    PlaceWriter{&vResult.llVal}(value);
  }
  void operator()(const Ref<IDispatch> &object) const { vResult.pdispVal = Ref<IDispatch>(object).Detach(); }
};

}  // namespace

Status ReadVariant(const AutomationVariant &vArgument, ValueKind eKind, Value &vValue) {
  const AutomationVariant &vInner = Inner(vArgument);
  const auto vt = static_cast<std::uint16_t>(vInner.vt & ~VtByRef);
  const void *pPlace = vInner.vt & VtByRef ? vInner.byref : &vInner.llVal;
  if (!pPlace) return StatusTypeMismatch;

  if (eKind <= ValueKind::DoubleValue) {
    const auto number = Number(vt, pPlace);
    return number ? ReadNumber(eKind, *number, vValue) : StatusTypeMismatch;
  }
  if (vt != TypeOfKind(eKind)) return StatusTypeMismatch;
  if (eKind == ValueKind::StringValue)
    vValue = ToText(At<AutomationString>(pPlace));
  else if (eKind == ValueKind::ObjectValue)
    vValue = Ref<IDispatch>::Share(At<IDispatch *>(pPlace));
  else
    return ReadArray(At<AutomationArray *>(pPlace), eKind, vValue);
  return StatusOk;
}

bool CanWriteBack(const AutomationVariant &vArgument, ValueKind eKind) {
  if (!(vArgument.vt & VtByRef) || vArgument.vt == (VtByRef | VtVariant)) return true;
  return vArgument.vt == (VtByRef | TypeOfKind(eKind));
}

void WriteBack(AutomationVariant &vArgument, const Value &vValue) {
  if (!(vArgument.vt & VtByRef)) return;
  if (vArgument.vt != (VtByRef | VtVariant)) {
    std::visit(PlaceWriter{vArgument.byref}, vValue);
    return;
  }
  AutomationVariant &vInner = *vArgument.pvarVal;
  if (vInner.vt & VtByRef) {
    WriteBack(vInner, vValue);
    return;
  }
  if (std::holds_alternative<BooleanArray>(vValue)) {
    std::visit(PlaceWriter{&vInner.parray}, vValue);
    return;
  }
  if (std::holds_alternative<Ref<IDispatch>>(vValue)) return;
  ClearVariant(vInner);
  vInner = ToVariant(vValue);
  return;
}

AutomationVariant ToVariant(const Value &vValue) {
  AutomationVariant vResult{};
  if (vValue.index() > 0) vResult.vt = TypeOf[vValue.index() - 1];
  std::visit(VariantWriter{vResult}, vValue);
  return vResult;
}

void ClearVariant(AutomationVariant &vValue) {
  if (vValue.vt == VtString) FreeString(vValue.bstrVal);
  if (vValue.vt == (VtArray | VtByte)) FreeArray(vValue.parray);
  if (vValue.vt == VtDispatch && vValue.pdispVal) vValue.pdispVal->Release();
  vValue = {};
}

}  // namespace tarvik
