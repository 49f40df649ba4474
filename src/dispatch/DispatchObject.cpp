#include "dispatch/DispatchObject.h"

#include <algorithm>
#include <new>

#include "automation/AutomationString.h"
#include "dispatch/InstrRecord.h"
#include "support/RunTimeError.h"

namespace tarvik {

using namespace automation;

namespace {

/// Stands for the value of a property put among the named arguments, and for no member among the members.
constexpr std::int32_t PutArgument = -3, NoMember = -1;

/// A run-time error of this system as an automation status: its number in the range that is kept for that.
constexpr std::uint32_t RunTimeErrorRange = 0x800A0000;

char Lower(char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch; }

bool IsLeftOut(const AutomationVariant &vArgument) {
  return vArgument.vt == VtError && vArgument.scode == StatusParamNotFound;
}

/// Late-bound callers may set the flags of method and property get at once.
bool Serves(CallFlags eUse, std::uint16_t wFlags) {
  if (eUse == CallPropertyPut) return (wFlags & CallPropertyPut) != 0;
  return (wFlags & CallPropertyPut) == 0 && (wFlags & eUse) != 0;
}

Status CheckNamed(const AutomationDispParams &params, CallFlags eUse) {
  if (eUse != CallPropertyPut) return params.cNamedArgs == 0 ? StatusOk : StatusNoNamedArgs;
  if (params.cNamedArgs == 0) return StatusParamNotOptional;
  const bool fValueOnly =
      params.cNamedArgs == 1 && params.rgdispidNamedArgs && *params.rgdispidNamedArgs == PutArgument;
  return fValueOnly ? StatusOk : StatusNoNamedArgs;
}

Status ReadArgument(const AutomationVariant &vArgument, const Parameter &parameter, Value &vValue) {
  if (IsLeftOut(vArgument)) {
    vValue = parameter.vDefault;
    return parameter.IsOptional() ? StatusOk : StatusParamNotOptional;
  }
  if (parameter.fByRef && !CanWriteBack(vArgument, parameter.eKind)) return StatusTypeMismatch;
  if (const Status status = ReadVariant(vArgument, parameter.eKind, vValue); Failed(status)) return status;
  if (parameter.eKind != ValueKind::ObjectValue) return StatusOk;
  const auto &object = std::get<Ref<IDispatch>>(vValue);
  const bool fFits = object && (!*parameter.strRecord || InstrRecord::IsRecord(*object, parameter.strRecord));
  return fFits ? StatusOk : StatusTypeMismatch;
}

Status ReadArguments(const AutomationDispParams &params, const MemberShape &shape, std::vector<Value> &arrValues,
                     std::uint32_t *puArgErr) {
  const auto lngMost = static_cast<std::uint32_t>(shape.arrParameters.size());
  const auto lngLeast =
      static_cast<std::uint32_t>(std::count_if(shape.arrParameters.begin(), shape.arrParameters.end(),
                                               [](const Parameter &parameter) { return !parameter.IsOptional(); }));
  if (params.cArgs > lngMost || params.cArgs < lngLeast) return StatusBadParamCount;
  if (const Status status = CheckNamed(params, shape.eUse); Failed(status)) return status;
  if (params.cArgs > 0 && !params.rgvarg) return StatusPointer;

  for (std::uint32_t i = 0; i < lngMost; ++i) {
    const Parameter &parameter = shape.arrParameters[i];
    arrValues.push_back(parameter.vDefault);
    if (i >= params.cArgs) continue;
    const std::uint32_t lngPlace = params.cArgs - 1 - i;  // the last argument stands first
    const Status status = ReadArgument(params.rgvarg[lngPlace], parameter, arrValues.back());
    if (!Failed(status)) continue;
    if (puArgErr) *puArgErr = lngPlace;
    return status;
  }
  return StatusOk;
}

Status FillException(AutomationExcepInfo *pExcepInfo, const RunTimeError &error, const std::string &strSource) {
  if (!pExcepInfo) return StatusException;
  *pExcepInfo = {};
  pExcepInfo->bstrSource = AllocString(error.Source().empty() ? strSource : error.Source());
  pExcepInfo->bstrDescription = AllocString(error.Description());
  pExcepInfo->scode = error.Number() < 0
                          ? error.Number()
                          : static_cast<Status>(RunTimeErrorRange | static_cast<std::uint32_t>(error.Number()));
  return StatusException;
}

}  // namespace

bool SameName(std::string_view strFirst, std::string_view strSecond) {
  return std::equal(strFirst.begin(), strFirst.end(), strSecond.begin(), strSecond.end(),
                    [](char chFirst, char chSecond) { return Lower(chFirst) == Lower(chSecond); });
}

Status DispatchObject::QueryInterface(const Guid &riid, void **ppvObject) {
  if (!ppvObject) return StatusPointer;
  *ppvObject = nullptr;
  if (!(riid == IidUnknown || riid == IidDispatch)) return StatusNoInterface;
  AddRef();
  *ppvObject = static_cast<IDispatch *>(this);
  return StatusOk;
}

std::uint32_t DispatchObject::Release() {
  const std::uint32_t lngLeft = --m_lngReferences;
  if (lngLeft == 0) delete this;
  return lngLeft;
}

Status DispatchObject::GetTypeInfoCount(std::uint32_t *pctinfo) {
  if (!pctinfo) return StatusPointer;
  *pctinfo = 0;
  return StatusOk;
}

Status DispatchObject::GetTypeInfo(std::uint32_t, std::uint32_t, ITypeInfo **ppTInfo) {
  if (ppTInfo) *ppTInfo = nullptr;
  return StatusBadIndex;
}

Status DispatchObject::GetIDsOfNames(const Guid &riid, char16_t **rgszNames, std::uint32_t cNames, std::uint32_t,
                                     std::int32_t *rgDispId) {
  if (!(riid == GuidNull)) return StatusUnknownInterface;
  if (!rgszNames || !rgDispId) return StatusPointer;
  if (cNames == 0) return StatusInvalidArgument;
  std::fill_n(rgDispId, cNames, NoMember);
  if (!rgszNames[0]) return StatusUnknownName;
  const std::string strName = ToUtf8(rgszNames[0]);
  for (std::size_t i = 0; i < MemberCount(); ++i)
    if (SameName(Member(i).strName, strName)) rgDispId[0] = Member(i).lngNumber;
  return rgDispId[0] == NoMember || cNames > 1 ? StatusUnknownName : StatusOk;
}

Status DispatchObject::FindMember(std::int32_t lngNumber, std::uint16_t wFlags, std::size_t &number) const {
  for (number = 0; number < MemberCount(); ++number)
    if (Member(number).lngNumber == lngNumber && Serves(Member(number).eUse, wFlags)) return StatusOk;
  return StatusMemberNotFound;
}

Status DispatchObject::Invoke(std::int32_t dispIdMember, const Guid &riid, std::uint32_t, std::uint16_t wFlags,
                              AutomationDispParams *pDispParams, AutomationVariant *pVarResult,
                              AutomationExcepInfo *pExcepInfo, std::uint32_t *puArgErr) {
  if (!(riid == GuidNull)) return StatusUnknownInterface;
  if (!pDispParams) return StatusPointer;
  std::size_t number = 0;
  if (const Status status = FindMember(dispIdMember, wFlags, number); Failed(status)) return status;
  try {
    std::vector<Value> arrValues;
    const Status status = ReadArguments(*pDispParams, Member(number), arrValues, puArgErr);
    if (Failed(status)) return status;
    // The caller may release its last reference in an event handler during this call.
    const auto self = Ref<IDispatch>::Share(this);
    RunChecked(number, *pDispParams, std::move(arrValues), pVarResult);
    return StatusOk;
  } catch (const RunTimeError &error) {
    return FillException(pExcepInfo, error, Source());
  } catch (const std::bad_alloc &) {
    return StatusOutOfMemory;
  } catch (const std::exception &error) {
    return FillException(pExcepInfo, RunTimeError(StatusUnexpected, error.what()), Source());
  }
}

void DispatchObject::RunChecked(std::size_t number, AutomationDispParams &params, std::vector<Value> arrValues,
                                AutomationVariant *pVarResult) {
  Arguments arguments(std::move(arrValues));
  const Value vResult = Run(number, arguments);
  const auto &arrParameters = Member(number).arrParameters;
  for (std::uint32_t i = 0; i < params.cArgs; ++i)
    if (AutomationVariant &vArgument = params.rgvarg[params.cArgs - 1 - i];
        arrParameters[i].fByRef && !IsLeftOut(vArgument))
      WriteBack(vArgument, arguments.At(i));
  if (pVarResult) *pVarResult = ToVariant(vResult);
}

}  // namespace tarvik
