#pragma once

/// Binary layout of automation: status codes, class and interface identifiers, strings,
/// byte arrays, variants and the three basic interfaces. Where the platform has all of this natively its
/// own declarations are used; elsewhere the declarations below give the same memory layout, so that a
/// driver sees one contract everywhere.

#include <cstdint>

#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// After windows.h, whose declarations they need.
#include <oaidl.h>
#include <oleauto.h>
#include <unknwn.h>

#define TARVIK_CALL STDMETHODCALLTYPE
#define TARVIK_DRIVER_EXPORT extern "C" __declspec(dllexport)

namespace tarvik::automation {
using Status = HRESULT;
using Guid = GUID;
using AutomationString = BSTR;
using VariantBool = VARIANT_BOOL;
using AutomationArray = SAFEARRAY;
using AutomationVariant = VARIANT;
using AutomationDispParams = DISPPARAMS;
using AutomationExcepInfo = EXCEPINFO;
using AutomationChar = OLECHAR;
using Count = ULONG;
using MemberId = DISPID;
using LocaleId = LCID;
using LockFlag = BOOL;
using ::IClassFactory;
using ::IDispatch;
using ::ITypeInfo;
using ::IUnknown;
}  // namespace tarvik::automation

#else

#define TARVIK_CALL
#define TARVIK_DRIVER_EXPORT extern "C" __attribute__((visibility("default")))

namespace tarvik::automation {

/// Below zero: a failure.
using Status = std::int32_t;

struct Guid {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
  bool operator==(const Guid &) const = default;
};

/// Points at the first of its UTF-16 units; the byte count stands in the 32 bits before it and a zero
/// unit behind the last. Null is the empty text.
using AutomationString = char16_t *;
/// A unit of a string.
using AutomationChar = char16_t;

/// How many references an object has.
using Count = std::uint32_t;
/// The number of a member behind IDispatch.
using MemberId = std::int32_t;
using LocaleId = std::uint32_t;
using LockFlag = std::int32_t;

/// 0 or -1.
using VariantBool = std::int16_t;

struct AutomationArrayBound {
  std::uint32_t cElements;
  std::int32_t lLbound;
};

/// Descriptor of an array; bounds stand last dimension first.
struct AutomationArray {
  std::uint16_t cDims;
  std::uint16_t fFeatures;
  std::uint32_t cbElements;
  std::uint32_t cLocks;
  void *pvData;
  AutomationArrayBound rgsabound[1];
};

class IUnknown;
class IDispatch;

/// A record and what describes it; as wide as the native variant has it.
struct AutomationRecord {
  void *pvRecord;
  void *pRecInfo;
};

/// A value with its type in `vt`.
struct AutomationVariant {
  std::uint16_t vt;
  std::uint16_t wReserved1;
  std::uint16_t wReserved2;
  std::uint16_t wReserved3;
  union {
    std::int64_t llVal;
    std::int32_t lVal;
    std::int16_t iVal;
    std::uint8_t bVal;
    float fltVal;
    double dblVal;
    VariantBool boolVal;
    Status scode;
    AutomationString bstrVal;
    IUnknown *punkVal;
    IDispatch *pdispVal;
    AutomationArray *parray;
    std::int16_t *piVal;
    std::int32_t *plVal;
    double *pdblVal;
    VariantBool *pboolVal;
    AutomationString *pbstrVal;
    AutomationArray **pparray;
    AutomationVariant *pvarVal;
    void *byref;
    AutomationRecord record;
  };
};

struct AutomationDispParams {
  AutomationVariant *rgvarg;  ///< last argument first
  std::int32_t *rgdispidNamedArgs;
  std::uint32_t cArgs;
  std::uint32_t cNamedArgs;
};

struct AutomationExcepInfo {
  std::uint16_t wCode;
  std::uint16_t wReserved;
  AutomationString bstrSource;
  AutomationString bstrDescription;
  AutomationString bstrHelpFile;
  std::uint32_t dwHelpContext;
  void *pvReserved;
  Status(TARVIK_CALL *pfnDeferredFillIn)(AutomationExcepInfo *);
  Status scode;
};

/// Reference counting. What a call hands out through an argument belongs to the caller, who releases it.
class IUnknown {
 public:
  virtual Status TARVIK_CALL QueryInterface(const Guid &riid, void **ppvObject) = 0;
  virtual Count TARVIK_CALL AddRef() = 0;
  virtual Count TARVIK_CALL Release() = 0;

 protected:
  ~IUnknown() = default;
};

class ITypeInfo;

/// Calls by name and number.
class IDispatch : public IUnknown {
 public:
  virtual Status TARVIK_CALL GetTypeInfoCount(std::uint32_t *pctinfo) = 0;
  virtual Status TARVIK_CALL GetTypeInfo(std::uint32_t iTInfo, LocaleId lcid, ITypeInfo **ppTInfo) = 0;
  virtual Status TARVIK_CALL GetIDsOfNames(const Guid &riid, AutomationChar **rgszNames, std::uint32_t cNames,
                                           LocaleId lcid, MemberId *rgDispId) = 0;
  virtual Status TARVIK_CALL Invoke(MemberId dispIdMember, const Guid &riid, LocaleId lcid, std::uint16_t wFlags,
                                    AutomationDispParams *pDispParams, AutomationVariant *pVarResult,
                                    AutomationExcepInfo *pExcepInfo, std::uint32_t *puArgErr) = 0;

 protected:
  ~IDispatch() = default;
};

class IClassFactory : public IUnknown {
 public:
  virtual Status TARVIK_CALL CreateInstance(IUnknown *pUnkOuter, const Guid &riid, void **ppvObject) = 0;
  virtual Status TARVIK_CALL LockServer(LockFlag fLock) = 0;

 protected:
  ~IClassFactory() = default;
};

}  // namespace tarvik::automation

#endif

namespace tarvik::automation {

inline constexpr Status StatusOk = 0;
inline constexpr Status StatusFalse = 1;
inline constexpr Status StatusNotImplemented = static_cast<Status>(0x80004001);
inline constexpr Status StatusNoInterface = static_cast<Status>(0x80004002);
inline constexpr Status StatusPointer = static_cast<Status>(0x80004003);
inline constexpr Status StatusFail = static_cast<Status>(0x80004005);
inline constexpr Status StatusUnexpected = static_cast<Status>(0x8000FFFF);
inline constexpr Status StatusAccessDenied = static_cast<Status>(0x80070005);
inline constexpr Status StatusOutOfMemory = static_cast<Status>(0x8007000E);
inline constexpr Status StatusInvalidArgument = static_cast<Status>(0x80070057);
inline constexpr Status StatusUnknownInterface = static_cast<Status>(0x80020001);
inline constexpr Status StatusMemberNotFound = static_cast<Status>(0x80020003);
inline constexpr Status StatusParamNotFound = static_cast<Status>(0x80020004);
inline constexpr Status StatusTypeMismatch = static_cast<Status>(0x80020005);
inline constexpr Status StatusUnknownName = static_cast<Status>(0x80020006);
inline constexpr Status StatusNoNamedArgs = static_cast<Status>(0x80020007);
inline constexpr Status StatusException = static_cast<Status>(0x80020009);
inline constexpr Status StatusOverflow = static_cast<Status>(0x8002000A);
inline constexpr Status StatusBadIndex = static_cast<Status>(0x8002000B);
inline constexpr Status StatusBadParamCount = static_cast<Status>(0x8002000E);
inline constexpr Status StatusParamNotOptional = static_cast<Status>(0x8002000F);
inline constexpr Status StatusNoAggregation = static_cast<Status>(0x80040110);
inline constexpr Status StatusClassNotAvailable = static_cast<Status>(0x80040111);
inline constexpr Status StatusClassNotRegistered = static_cast<Status>(0x80040154);

inline constexpr bool Failed(Status status) { return status < 0; }

/// Types of a variant that this system uses; ByRef is added to one of the others.
enum VariantType : std::uint16_t {
  VtEmpty = 0,
  VtInteger = 2,
  VtLong = 3,
  VtSingle = 4,
  VtDouble = 5,
  VtString = 8,
  VtDispatch = 9,
  VtError = 10,
  VtBoolean = 11,
  VtVariant = 12,
  VtUnknown = 13,
  VtSignedByte = 16,
  VtByte = 17,
  VtUnsignedInteger = 18,
  VtUnsignedLong = 19,
  VtHuge = 20,  ///< 64 bits
  VtUnsignedHuge = 21,
  VtMachineInteger = 22,  ///< 32 bits, as VtLong
  VtMachineUnsigned = 23,
  VtArray = 0x2000,
  VtByRef = 0x4000,
};

/// Features of an array whose memory its owner has bound in some way: it can be filled and not be resized or replaced.
inline constexpr std::uint16_t ArrayBoundFeatures =
    0x0001 | 0x0002 | 0x0004 | 0x0010;  // automatic, static, embedded, fixed

inline constexpr Guid IidUnknown{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr Guid IidClassFactory{0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr Guid IidDispatch{0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr Guid GuidNull{};

}  // namespace tarvik::automation
