#pragma once

#include <dlfcn.h>

#include <cstdlib>
#include <deque>
#include <string>
#include <vector>

#include "automation/Abi.h"
#include "automation/Activation.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"

namespace tarvik::test {

using namespace automation;

/// Gives one of the exports of the library under test, which nothing but dlopen brings into the process.
template <class Function>
Function Export(const char *strName) {
  static void *handle = dlopen(TARVIK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (!handle) std::abort();
  return reinterpret_cast<Function>(dlsym(handle, strName));
}

using GetClassObject = Status (*)(const Guid &, const Guid &, void **);
using NoArgument = Status (*)();

inline constexpr std::uint16_t AsMethod = 1, AsGet = 2, AsPut = 4;

inline AutomationVariant Flag(bool fValue) {
  AutomationVariant v{};
  v.vt = VtBoolean;
  v.boolVal = fValue ? -1 : 0;
  return v;
}
inline AutomationVariant Number(std::int32_t lngValue) {
  AutomationVariant v{};
  v.vt = VtLong;
  v.lVal = lngValue;
  return v;
}
inline AutomationVariant Real(double dblValue) {
  AutomationVariant v{};
  v.vt = VtDouble;
  v.dblVal = dblValue;
  return v;
}
/// The text lives until the test ends.
inline AutomationVariant Text(const std::string &strText) {
  static std::deque<String> arrTexts;
  AutomationVariant v{};
  v.vt = VtString;
  v.bstrVal = arrTexts.emplace_back(strText).Get();
  return v;
}
inline AutomationVariant Object(IDispatch *object) {
  AutomationVariant v{};
  v.vt = VtDispatch;
  v.pdispVal = object;
  return v;
}
inline AutomationVariant LeftOut() {
  AutomationVariant v{};
  v.vt = VtError;
  v.scode = StatusParamNotFound;
  return v;
}

/// Calls members by name.
class Client {
 public:
  explicit Client(Ref<IDispatch> object) : m_object(std::move(object)) {}

  IDispatch *Get() const { return m_object.Get(); }
  explicit operator bool() const { return static_cast<bool>(m_object); }

  std::int32_t NumberOf(const std::string &strName, Status *pStatus = nullptr) const {
    std::u16string strWide = ToUtf16(strName);
    char16_t *name = strWide.data();
    std::int32_t lngNumber = -1;
    const Status status = m_object->GetIDsOfNames(GuidNull, &name, 1, 0, &lngNumber);
    if (pStatus) *pStatus = status;
    return lngNumber;
  }

  Status Invoke(const std::string &strName, std::uint16_t wFlags, std::vector<AutomationVariant> arrArguments = {},
                AutomationVariant *pResult = nullptr, AutomationExcepInfo *pInfo = nullptr,
                std::uint32_t *pWhich = nullptr) const {
    std::vector<AutomationVariant> arrReversed(arrArguments.rbegin(), arrArguments.rend());
    std::int32_t lngPut = -3;
    AutomationDispParams params{arrReversed.data(), wFlags == AsPut ? &lngPut : nullptr,
                                static_cast<std::uint32_t>(arrReversed.size()), wFlags == AsPut ? 1u : 0u};
    return m_object->Invoke(NumberOf(strName), GuidNull, 0, wFlags, &params, pResult, pInfo, pWhich);
  }

  /// The result of a call that has to work; a text of the status where it does not.
  AutomationVariant Call(const std::string &strName, std::vector<AutomationVariant> arrArguments = {},
                         std::uint16_t wFlags = AsMethod) const {
    AutomationVariant vResult{};
    if (Failed(Invoke(strName, wFlags, std::move(arrArguments), &vResult))) vResult = Text("failed: " + strName);
    return vResult;
  }
  bool Truth(const std::string &strName, std::vector<AutomationVariant> arrArguments = {}) const {
    const AutomationVariant v = Call(strName, std::move(arrArguments));
    return v.vt == VtBoolean && v.boolVal == -1;
  }
  Client NewRecord(const std::string &strName) const {
    const AutomationVariant v = Call("NewRecord", {Text(strName)});
    return Client(v.vt == VtDispatch ? Ref<IDispatch>::Adopt(v.pdispVal) : nullptr);
  }

 private:
  Ref<IDispatch> m_object;
};

/// A new face of the instrument interface, made by the library's class factory.
inline Client NewFace() {
  Ref<IClassFactory> factory;
  Ref<IDispatch> face;
  const auto getClassObject = Export<GetClassObject>("DllGetClassObject");
  if (Failed(getClassObject(ClassIdOf("TarvikVI.clsInstrInterface"), IidClassFactory,
                            reinterpret_cast<void **>(factory.Out()))))
    return Client(nullptr);
  factory->CreateInstance(nullptr, IidDispatch, reinterpret_cast<void **>(face.Out()));
  return Client(std::move(face));
}

/// Notes the events that it is told of.
class Sink : public IDispatch {
 public:
  std::vector<std::string> Told;
  /// What it answers to an event, and the description that it leaves where that is a failure.
  Status Answer = StatusOk;
  std::string Words;

  Status QueryInterface(const Guid &, void **ppvObject) override {
    *ppvObject = this;
    return StatusOk;
  }
  std::uint32_t AddRef() override { return ++References; }
  std::uint32_t Release() override { return --References; }
  Status GetTypeInfoCount(std::uint32_t *) override { return StatusNotImplemented; }
  Status GetTypeInfo(std::uint32_t, std::uint32_t, ITypeInfo **) override { return StatusNotImplemented; }
  Status GetIDsOfNames(const Guid &, char16_t **, std::uint32_t, std::uint32_t, std::int32_t *) override {
    return StatusNotImplemented;
  }
  Status Invoke(std::int32_t lngEvent, const Guid &, std::uint32_t, std::uint16_t, AutomationDispParams *params,
                AutomationVariant *, AutomationExcepInfo *, std::uint32_t *) override {
    Told.push_back(std::to_string(lngEvent) + " " + ToText(params->rgvarg[0].bstrVal));
    if (Failed(Answer) && !Words.empty()) SetErrorInfo(Words);
    return Answer;
  }

  std::uint32_t References = 1;
};

}  // namespace tarvik::test
