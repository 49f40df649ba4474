#include "dispatch/DispatchObject.h"

#include <algorithm>
#include <new>
#include <utility>

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

constexpr std::uint32_t NotGiven = ~std::uint32_t{0};

/// For each parameter the place of its argument in the call. Named arguments stand first, by the numbers that
/// GetIDsOfNames tells; the others stand last one first.
class ArgumentPlaces {
 public:
  ArgumentPlaces(const AutomationDispParams &params, const MemberShape &shape)
      : m_params(params), m_arrPlaces(shape.arrParameters.size(), NotGiven), m_fPut(shape.eUse == CallPropertyPut) {}

  Status Find(std::uint32_t *puArgErr) {
    if (m_params.cArgs > m_arrPlaces.size() || m_params.cNamedArgs > m_params.cArgs) return StatusBadParamCount;
    if (m_params.cArgs > 0 && !m_params.rgvarg) return StatusPointer;
    if (m_params.cNamedArgs > 0 && !m_params.rgdispidNamedArgs) return StatusPointer;
    if (m_fPut && !HasValue()) return StatusParamNotOptional;
    for (std::uint32_t i = m_params.cNamedArgs; i < m_params.cArgs; ++i) m_arrPlaces[m_params.cArgs - 1 - i] = i;
    for (std::uint32_t i = 0; i < m_params.cNamedArgs; ++i) {
      const std::size_t parameter = ParameterOf(m_params.rgdispidNamedArgs[i]);
      if (parameter < m_arrPlaces.size() && m_arrPlaces[parameter] == NotGiven) {
        m_arrPlaces[parameter] = i;
        continue;
      }
      if (puArgErr) *puArgErr = i;
      return StatusParamNotFound;
    }
    return StatusOk;
  }
  std::uint32_t operator[](std::size_t parameter) const { return m_arrPlaces[parameter]; }

 private:
  bool HasValue() const {
    const MemberId *const begin = m_params.rgdispidNamedArgs;
    return std::find(begin, begin + m_params.cNamedArgs, PutArgument) != begin + m_params.cNamedArgs;
  }
  /// The value that is put is the last parameter.
  std::size_t ParameterOf(MemberId lngName) const {
    return m_fPut && lngName == PutArgument ? m_arrPlaces.size() - 1 : static_cast<std::size_t>(lngName);
  }

  const AutomationDispParams &m_params;
  std::vector<std::uint32_t> m_arrPlaces;
  const bool m_fPut;
};

Status ReadArguments(const AutomationDispParams &params, const MemberShape &shape, const ArgumentPlaces &places,
                     std::vector<Value> &arrValues, std::uint32_t *puArgErr) {
  for (std::size_t i = 0; i < shape.arrParameters.size(); ++i) {
    const Parameter &parameter = shape.arrParameters[i];
    arrValues.push_back(parameter.vDefault);
    if (places[i] == NotGiven) {
      if (!parameter.IsOptional()) return params.cNamedArgs > 0 ? StatusParamNotOptional : StatusBadParamCount;
      continue;
    }
    const Status status = ReadArgument(params.rgvarg[places[i]], parameter, arrValues.back());
    if (!Failed(status)) continue;
    if (puArgErr) *puArgErr = places[i];
    return status;
  }
  return StatusOk;
}

Status FillException(AutomationExcepInfo *pExcepInfo, const RunTimeError &error, const std::string &strSource) {
  if (!pExcepInfo) return StatusException;
  String source(error.Source().empty() ? strSource : error.Source()), description(error.Description());
  *pExcepInfo = {};
  pExcepInfo->bstrSource = source.Detach();
  pExcepInfo->bstrDescription = description.Detach();
  pExcepInfo->scode = error.Number() < 0
                          ? error.Number()
                          : static_cast<Status>(RunTimeErrorRange | static_cast<std::uint32_t>(error.Number()));
  return StatusException;
}

/// Runs the body of an operation that clients call, which no exception may leave.
template <class Body>
Status WithMemory(Body &&body) {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc &) {
    return StatusOutOfMemory;
  }
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

Count DispatchObject::Release() {
  const Count lngLeft = --m_lngReferences;
  if (lngLeft == 0) delete this;
  return lngLeft;
}

Status DispatchObject::GetTypeInfoCount(std::uint32_t *pctinfo) {
  if (!pctinfo) return StatusPointer;
  *pctinfo = 0;
  return StatusOk;
}

Status DispatchObject::GetTypeInfo(std::uint32_t, LocaleId, ITypeInfo **ppTInfo) {
  if (ppTInfo) *ppTInfo = nullptr;
  return StatusBadIndex;
}

Status DispatchObject::GetIDsOfNames(const Guid &riid, AutomationChar **rgszNames, std::uint32_t cNames, LocaleId,
                                     MemberId *rgDispId) {
  if (!(riid == GuidNull)) return StatusUnknownInterface;
  if (!rgszNames || !rgDispId) return StatusPointer;
  if (cNames == 0) return StatusInvalidArgument;
  return WithMemory([&] { return FindNames(rgszNames, cNames, rgDispId); });
}

Status DispatchObject::FindNames(AutomationChar **rgszNames, std::uint32_t cNames, MemberId *rgDispId) const {
  std::fill_n(rgDispId, cNames, NoMember);
  const auto nameAt = [&](std::uint32_t i) { return rgszNames[i] ? NameText(rgszNames[i]) : std::string(); };
  std::vector<Parameter> arrParameters;
  for (std::size_t i = 0; i < MemberCount(); ++i)
    if (const MemberShape &member = Member(i); SameName(member.strName, nameAt(0))) {
      rgDispId[0] = member.lngNumber;
      // Get and put of a property have one number; the put has all parameters.
      if (member.arrParameters.size() > arrParameters.size()) arrParameters = member.arrParameters;
    }
  bool fAllKnown = rgDispId[0] != NoMember;
  for (std::uint32_t i = 1; i < cNames; ++i) {
    const auto named = std::ranges::find_if(
        arrParameters, [&](const Parameter &parameter) { return SameName(parameter.strName, nameAt(i)); });
    if (named == arrParameters.end())
      fAllKnown = false;
    else
      rgDispId[i] = static_cast<MemberId>(named - arrParameters.begin());
  }
  return fAllKnown ? StatusOk : StatusUnknownName;
}

Status DispatchObject::FindMember(std::int32_t lngNumber, std::uint16_t wFlags, std::size_t &number) const {
  for (number = 0; number < MemberCount(); ++number)
    if (Member(number).lngNumber == lngNumber && Serves(Member(number).eUse, wFlags)) return StatusOk;
  return StatusMemberNotFound;
}

Status DispatchObject::Invoke(MemberId dispIdMember, const Guid &riid, LocaleId, std::uint16_t wFlags,
                              AutomationDispParams *pDispParams, AutomationVariant *pVarResult,
                              AutomationExcepInfo *pExcepInfo, std::uint32_t *puArgErr) {
  if (!(riid == GuidNull)) return StatusUnknownInterface;
  if (!pDispParams) return StatusPointer;
  std::size_t number = 0;
  return WithMemory([&] {
    if (const Status status = FindMember(dispIdMember, wFlags, number); Failed(status)) return status;
    try {
      return RunMember(number, *pDispParams, pVarResult, puArgErr);
    } catch (const RunTimeError &error) {
      return FillException(pExcepInfo, error, Source());
    } catch (const std::bad_alloc &) {
      return StatusOutOfMemory;
    } catch (const std::exception &error) {
      return FillException(pExcepInfo, RunTimeError(StatusUnexpected, error.what()), Source());
    }
  });
}

Status DispatchObject::RunMember(std::size_t number, AutomationDispParams &params, AutomationVariant *pVarResult,
                                 std::uint32_t *puArgErr) {
  std::vector<Value> arrValues;
  ArgumentPlaces places(params, Member(number));
  if (const Status status = places.Find(puArgErr); Failed(status)) return status;
  const Status status = ReadArguments(params, Member(number), places, arrValues, puArgErr);
  if (Failed(status)) return status;
  // The caller may release its last reference in an event handler during this call.
  const auto self = Ref<IDispatch>::Share(this);
  Arguments arguments(std::move(arrValues));
  const Value vResult = Run(number, arguments);
  for (std::size_t i = 0; i < Member(number).arrParameters.size(); ++i)
    if (Member(number).arrParameters[i].fByRef && places[i] != NotGiven && !IsLeftOut(params.rgvarg[places[i]]))
      WriteBack(params.rgvarg[places[i]], arguments.At(i));
  if (pVarResult) *pVarResult = ToVariant(vResult);
  return StatusOk;
}

}  // namespace tarvik
